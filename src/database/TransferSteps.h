#pragma once

#include "database/Catalogue.h"
#include "database/Paths.h"
#include "database/TrackInfo.h"
#include "database/TransferRows.h"
#include "platform/Prompter.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <array>

namespace kelvo {

/// The names in the folders of the database, so that a run over many files looks at each folder
/// once. Names that differ in case only count as one. A value.
class DatabaseNames {
 public:
  /// Throws Failure. Blocks; any thread.
  [[nodiscard]] static DatabaseNames Read(const Paths& paths);

  /// The name as it is spelled on disk; empty when there is none.
  [[nodiscard]] QString Find(Paths::Slot slot, const QString& name) const {
    return names_[static_cast<std::size_t>(slot)].value(name.toUpper());
  }
  void Add(Paths::Slot slot, const QString& name);
  /// A music file, with its track info file, has another path, or is gone when `path` is empty.
  void Rename(const QString& pathBefore, const QString& path);
  void Rename(const ReferenceChanged& change);
  /// The music file name with the first running number before its extension that no track has.
  [[nodiscard]] QString FirstFree(const QString& fileName) const;

 private:
  std::array<QHash<QString, QString>, Paths::kLast + 1> names_;  ///< by their upper-cased form
  QSet<QString> musicBases_;                                     ///< upper case
};

/// The name that a waiting file gets in the music folder: in proper case, with nothing that hides it, breaks
/// a line or is too long.
[[nodiscard]] QString MusicFileName(const QString& trackName);

/// Asks what is to be done with a file whose name in the music folder, `fileName`, is taken by `standing`;
/// `free` is a name that is not. Yes replaces, No stores under the free name, Cancel leaves out.
[[nodiscard]] Prompt DuplicationQuestion(const QString& fileName, const QString& standing,
                                         const QString& free);

/// What a track info file made from the row says.
[[nodiscard]] TrackInfo NewTrackInfo(const TransferRow& row, double durationSeconds,
                                     const TrackDefaults& defaults, const QString& today);
/// What a track info file says after its music file was replaced: the old text, its gain unknown again. Lines
/// that it lacks, and the references of a file that nobody has edited since the system made it, are those of
/// `fresh`.
[[nodiscard]] TrackInfo ReplacedTrackInfo(TrackInfo old, const TrackInfo& fresh, const QString& baseName,
                                          const TrackDefaults& defaults, const QString& today);

/// What it says when its music file came in by a move that was cut short: the old text when that is of the
/// move or of the operator, `fresh` when the system made it since.
[[nodiscard]] TrackInfo FinishedTrackInfo(TrackInfo old, const TrackInfo& fresh, const QString& baseName,
                                          const TrackDefaults& defaults);

/// The catalogue's row of a track with such an info file.
[[nodiscard]] CatalogueRow RowFrom(const TrackInfo& info, const QString& fileName, double durationSeconds);
/// Puts the row into the catalogue: in the place of the row of the same file, or behind the last.
void StoreRow(Catalogue& catalogue, const CatalogueRow& row, const QString& path);
}  // namespace kelvo
