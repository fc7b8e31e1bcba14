#pragma once

#include "database/TrackPlaySettings.h"

#include <QString>

namespace kelvo {

class TrackInfo;

/// What a deck tells of its track, for eyes alone.

/// All that the track info file says; `duration` in seconds.
[[nodiscard]] QString TrackInfoWords(const TrackInfo& info, double duration);
/// "Starts: Soft : Ends: Strong".
[[nodiscard]] QString StyleWords(const TrackPlaySettings& play);
/// The request that goes above the track's words, under a banner as wide as two times `halfWidth` letters.
[[nodiscard]] QString RequestWords(const QString& request, int halfWidth);

}  // namespace kelvo
