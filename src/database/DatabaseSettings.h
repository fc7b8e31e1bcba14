#pragma once

#include "database/Paths.h"
#include "database/TrackInfo.h"
#include "platform/Setting.h"

namespace kelvo {

namespace setting {

/// The folders of the media database.
inline constexpr RecordSetting<kelvo::Paths> Paths{{kStartup, QLatin1StringView("Paths")},
                                                   QLatin1StringView("NoPaths")};
/// Free access to the Data Manager and its tools; otherwise the password guards them.
inline constexpr TruthSetting DmanAccess{{kStartup, QLatin1StringView("DmanAccess")}, true};
inline constexpr TextSetting DmanPassWord{{kStartup, QLatin1StringView("DmanPassWord")}};
// What a new track info file says of how its track is played.
inline constexpr NumberSetting DefaultFade{
    {kStartup, QLatin1StringView("DefaultFade")}, 0, -kMost16, kMost16};
inline constexpr NumberSetting DefaultFadeSpeed{
    {kStartup, QLatin1StringView("DefaultFadeSpeed")}, 25, -kMost16, kMost16};
/// Seconds before the end of a track.
inline constexpr NumberSetting DefaultDelta{
    {kStartup, QLatin1StringView("DefaultDelta")}, 3, -kMost16, kMost16};

}  // namespace setting

/// The defaults of this moment.
[[nodiscard]] TrackDefaults ReadTrackDefaults(const ProgramSettings& settings);

}  // namespace kelvo
