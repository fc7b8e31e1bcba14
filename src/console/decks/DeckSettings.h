#pragma once

#include "platform/Setting.h"

namespace kelvo::setting {

/// Seconds that one pulse of fast forward or rewind moves a deck.
inline constexpr NumberSetting FFwFRev{{kStartup, QLatin1StringView("FFwFRev")}, 5, 0, kMost32};
/// A stored length that is wrong is corrected at the end of a stream.
inline constexpr SwitchSetting FixTrackDurErrors{{kStartup, QLatin1StringView("FixTrackDurErrors")}, true};
/// A load takes the track's own fade-in speed.
inline constexpr TruthSetting AfadeSet{{kStartup, QLatin1StringView("AfadeSet")}, true};

}  // namespace kelvo::setting
