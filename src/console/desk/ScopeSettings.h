#pragma once

#include "platform/Setting.h"

namespace kelvo::setting {

/// By how much the traces of the scope are drawn larger than the sound is.
inline constexpr NumberSetting SpectralDisplay{{kStartup, QLatin1StringView("SpectralDisplay")}, 5, 1, 20};

}  // namespace kelvo::setting
