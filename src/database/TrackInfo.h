#pragma once

#include "database/Paths.h"
#include "platform/TextFile.h"

#include <QString>
#include <QStringList>

namespace kelvo {

/// What a track without settings of its own is played with. The first three come from the settings, the last
/// two are fixed.
struct TrackDefaults {
  int DefaultFade = 0;
  int DefaultFadeSpeed = 25;
  int DefaultDelta = 3;
  int DefaultStartType = 1;
  int DefaultEndType = 0;
};

/// The lines of a track info file, from 0; line 13 is the first comment line.
namespace InfoLine {
enum Line : int {
  Categories,
  Artists,
  Albums,
  ReleaseDate,
  Bpm,
  HiPos,
  PlayMode,
  FadePosition,
  FadeSpeed,
  StartStyle,
  EndStyle,
  GainRecord,
  DurationSeconds,
  Comments,
};
}  // namespace InfoLine
inline constexpr int kFixedInfoLines = 13;

inline const QString kAllCategories = QStringLiteral("~ALL CATEGORIES");
inline const QString kAllArtists = QStringLiteral("~ALL ARTISTS");
inline const QString kAllAlbums = QStringLiteral("~ALL ALBUMS");

/// `PathInfo`, the base name, ".kif".
[[nodiscard]] QString TrackInfoPath(const Paths& paths, const QString& baseName);

/// `path` itself when it is there, else the file in its folder whose name differs in case only; empty when
/// there is none.
[[nodiscard]] QString FindFile(const QString& path);

/// The whole file, unparsed. Throws Failure. Any thread.
[[nodiscard]] TextFile ReadTrackInfo(const Paths& paths, const QString& baseName);
/// Replaces the file. Throws Failure. Blocks: off the logic's thread.
void WriteTrackInfo(const Paths& paths, const QString& baseName, const TextFile& lines);

/// The lines of a new track info file: the defaults, the artist of the name, `comments` behind.
[[nodiscard]] TextFile DefaultTrackInfo(const QString& baseName, double durationSeconds,
                                        const TrackDefaults& defaults, const QStringList& comments);
/// Writes such a file. Throws Failure. Blocks: off the logic's thread.
void CreateDefaultTrackInfo(const Paths& paths, const QString& baseName, double durationSeconds,
                            const TrackDefaults& defaults, const QStringList& comments);
/// The two comment lines of a file that the system made by itself.
[[nodiscard]] QStringList ReplacedFileComments(const QString& title, const QString& date);

/// Line 2 for a track of this name: "~ALL ARTISTS", and the text before the first "-" when that stands at the
/// third character or later.
[[nodiscard]] QString ArtistsFromName(const QString& baseName);

/// The references of a line: its items behind the first that do not begin with "~".
[[nodiscard]] QStringList References(const QString& line);

/// `PlayMode` in full: one field gets ",1,1" behind it, two get ",1".
[[nodiscard]] QString CompletePlayMode(const QString& line);

/// A duration as the file keeps it: a decimal number, "." as its point.
[[nodiscard]] QString DurationText(double seconds);

}  // namespace kelvo
