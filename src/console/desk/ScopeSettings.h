#pragma once

#include "platform/Setting.h"

namespace kelvo::setting {

/// By how much the traces of the scope are drawn larger than the sound is.
inline constexpr NumberSetting SpectralDisplay{{kStartup, QLatin1StringView("SpectralDisplay")}, 5, 1, 20};

/// The device whose sound the scope shows, by the id of SoundInput; empty: what goes on air.
inline constexpr TextSetting ScopeInput{{kConStartup, QLatin1StringView("ScopeInput")}};
/// The scope shows the spectrum in place of the traces.
inline constexpr TruthSetting ScopeSpectrum{{kConStartup, QLatin1StringView("ScopeSpectrum")}, false};
// What is on the console.
inline constexpr TruthSetting ScopeShown{{kConStartup, QLatin1StringView("ScopeShown")}, true};
inline constexpr TruthSetting MetersShown{{kConStartup, QLatin1StringView("MetersShown")}, true};

}  // namespace kelvo::setting
