#pragma once

#include "platform/Setting.h"
#include "playlists/TempoOutline.h"

namespace kelvo::setting {

inline constexpr QLatin1StringView kGenerator("Generator");

/// Seconds that a generated list is to last.
inline constexpr NumberSetting GeneratorSeconds{{kGenerator, QLatin1StringView("Duration")}, 3600, 60, 86399};
/// Between two tracks of the same artist; 0: they may follow each other.
inline constexpr NumberSetting GeneratorArtistMinutes{
    {kGenerator, QLatin1StringView("ArtistMinutes")}, 60, 0, 1440};
/// What played within them is left out; 0: nothing is.
inline constexpr NumberSetting GeneratorPlayedHours{
    {kGenerator, QLatin1StringView("PlayedHours")}, 4, 0, 168};
inline constexpr TruthSetting GeneratorFollowsTempo{{kGenerator, QLatin1StringView("FollowTempo")}, true};
/// Beats per minute by which a track may be beside the outline.
inline constexpr NumberSetting GeneratorTempoWithin{
    {kGenerator, QLatin1StringView("TempoWithin")}, 8, 1, 100};
inline constexpr RecordSetting<TempoOutline> GeneratorOutline{{kGenerator, QLatin1StringView("Outline")},
                                                              QLatin1StringView("")};

}  // namespace kelvo::setting
