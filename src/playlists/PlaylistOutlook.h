#pragma once

#include "playlists/PlaylistServices.h"

#include <QDateTime>

namespace kelvo {

/// What is known of a playlist before it is played. A value.
struct PlaylistOutlook {
  int tracks = 0;          ///< that can be played
  int missing = 0;         ///< entries that lead to no track of the database
  int unknownLengths = 0;  ///< tracks of which the length is not known; they count nothing
  qint64 seconds = 0;      ///< the sum of the tracks
  qint64 onAir = 0;        ///< seconds from the start of the first to the end of the last

  /// For the eye: length, end time when it starts now, and what is missing; empty for no entries.
  [[nodiscard]] QString Words(const QDateTime& now) const;
};

/// A track of a playlist, as its outlook is reckoned.
struct OutlookTrack {
  QString baseName;
  double seconds = -1;  ///< below 0: unknown
};

/// Reads how each of the tracks is started and ended, and reckons the outlook of playing them in this order.
[[nodiscard]] Job<PlaylistOutlook> ReckonOutlook(const PlaylistServices& services,
                                                 std::vector<OutlookTrack> tracks, int missing);

}  // namespace kelvo
