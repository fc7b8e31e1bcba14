#pragma once

#include "database/TextColumns.h"

#include <QFlags>
#include <QString>

#include <variant>
#include <vector>

namespace kelvo {

class TrackInfo;

/// The facts of a track that change without its file.
enum class TrackField : unsigned {
  Genres = 1,
  Artists = 2,
  Albums = 4,
  Date = 8,
  Bpm = 16,
  Hi = 32,
  StartEnd = 64,
  Gain = 128,
  Duration = 256,
};
Q_DECLARE_FLAGS(TrackFields, TrackField)

/// The sets of names in which tracks are filed, each name a folder.
enum class ReferenceSet { Genres, Artists, Albums, Playlists };

// What can happen to the catalogue. Each is reported after the tables have changed.

/// All tables were read anew: every track number from before means nothing any more.
struct CatalogueReplaced {};

/// A track came behind the last one.
struct TrackAdded {
  Mref track;
};

struct TrackChanged {
  Mref track;
  TrackFields fields;         ///< those that have another value now
  double durationBefore = 0;  ///< seconds
};

/// The track info file was saved: all that it says now, also what the tables do not keep (how the track is
/// played, its comments). What the tables keep was reported before, as TrackChanged.
struct TrackInfoSaved {
  Mref track;
  const TrackInfo& info;  ///< as long as the call lasts
};

/// The music file, and its track info file with it, has another name.
struct TrackRenamed {
  Mref track;
  QString pathBefore;
  QString path;
};

/// A track is gone; the numbers of all tracks behind it went down by one.
struct TrackRemoved {
  Mref track;  ///< the number that it had
  QString path;
  double duration = 0;  ///< seconds

  /// The number now of the track that had the number `before`; None for the one that is gone.
  [[nodiscard]] constexpr Mref Renumbered(Mref before) const {
    if (before == track) return Mref::None;
    return before > track ? ToMref(ToInt(before) - 1) : before;
  }
  /// Takes it out of a list of numbers; the others get their numbers of now.
  void TakeFrom(std::vector<Mref>& tracks) const {
    std::erase(tracks, track);
    for (Mref& each : tracks) each = Renumbered(each);
  }
};

/// A name in a set is new (`before` is empty), has become another, or is gone (`name` is empty). The lines of
/// the tracks that bear it change one by one, each reported as TrackChanged.
struct ReferenceChanged {
  ReferenceSet set;
  QString before;
  QString name;
};

/// A file of the jingle folder, by its path: new (`before` is empty), renamed, or gone (`path` is empty).
struct JingleChanged {
  QString before;
  QString path;
};

/// A file waits in the utility folder, or waits no more.
struct StagedFileChanged {
  QString path;
  bool waits;
};

using CatalogueChange =
    std::variant<CatalogueReplaced, TrackAdded, TrackChanged, TrackInfoSaved, TrackRenamed, TrackRemoved,
                 ReferenceChanged, JingleChanged, StagedFileChanged>;

}  // namespace kelvo
