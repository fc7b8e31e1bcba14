#pragma once

#include "database/CatalogueChange.h"
#include "database/CatalogueTables.h"

#include <QHash>
#include <QObject>
#include <QStringList>

#include <optional>
#include <utility>

namespace kelvo {

namespace detail {

template <typename... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <typename... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

}  // namespace detail

/// New values for some facts of a track.
struct TrackEdit {
  std::optional<QString> genres = {};
  std::optional<QString> artists = {};
  std::optional<QString> albums = {};
  std::optional<QString> date = {};
  std::optional<QString> bpm = {};
  std::optional<QString> hi = {};
  std::optional<QString> startEnd = {};
  std::optional<QString> gain = {};
  std::optional<double> duration = {};  ///< seconds
};

/// The whole media database in memory, and the only one who tells what happens to it: everybody may read its
/// tables, but they change through its methods alone, and each change is reported to all who listen before
/// the method returns. The files on disk are the caller's business. Owned by the program's entry; logic
/// thread.
class Catalogue : public QObject {
  Q_OBJECT

  CatalogueTables tables_;

 public:
  // The tables, to be read. Rows are numbered from 1: row 0 exists, stays empty and is no track.
  const PackedTextColumn& TrackNames = tables_.TrackNames;
  const PooledTextColumn& TrackGenres = tables_.TrackGenres;
  const PooledTextColumn& TrackArtists = tables_.TrackArtists;
  const PooledTextColumn& TrackAlbums = tables_.TrackAlbums;
  const PooledTextColumn& TrackDates = tables_.TrackDates;
  const PooledTextColumn& TrackBpm = tables_.TrackBpm;
  const PooledTextColumn& TrackHi = tables_.TrackHi;
  const PooledTextColumn& TrackStartEnd = tables_.TrackStartEnd;
  const PooledTextColumn& TrackGain = tables_.TrackGain;
  const PooledTextColumn& TrackExtensions = tables_.TrackExtensions;
  const QStringList& GenreList = tables_.GenreList;
  const QStringList& ArtistList = tables_.ArtistList;
  const QStringList& AlbumList = tables_.AlbumList;
  const QStringList& PlaylistNames = tables_.PlaylistNames;
  const QStringList& SoundBiteNames = tables_.SoundBiteNames;
  const QStringList& SoundBitePaths = tables_.SoundBitePaths;
  const QStringList& StagedFiles = tables_.StagedFiles;
  /// Seconds by row; below 0 is unknown. 0 for a row that is none.
  [[nodiscard]] double TrackDurations(Mref row) const { return tables_.TrackDurations(row); }
  /// Full path of the music file; empty for a row that is none.
  [[nodiscard]] QString TrackPaths(Mref row) const { return tables_.TrackPaths(row); }
  /// First genre that does not begin with "~"; `none` when the line has no second item.
  [[nodiscard]] QString MainGenre(Mref row, const QString& none = QStringLiteral("UnDefined")) const;
  /// Number of files that wait in the utility folder.
  [[nodiscard]] int UtilityCount() const { return static_cast<int>(StagedFiles.size()); }
  /// The row number of the last track; 0 when there is none.
  [[nodiscard]] int LastTrack() const { return tables_.LastTrack(); }
  [[nodiscard]] bool IsTrack(Mref row) const { return tables_.IsTrack(row); }
  /// The track whose music file has this path; None when there is none. Looks through all names.
  [[nodiscard]] Mref Find(const QString& path) const;
  /// The same for many paths in one go: the tracks by their paths, of names that are among those of `paths`.
  [[nodiscard]] QHash<QString, Mref> Find(const QStringList& paths) const;
  /// Memory that the track tables hold, in bytes.
  [[nodiscard]] std::size_t TableBytes() const { return tables_.TableBytes(); }

  /// Takes tables that were read anew, and gives back those from before: to free many texts takes its time.
  CatalogueTables Replace(CatalogueTables tables);

  // Tracks. A number that is no track's does nothing.
  /// Adds a track behind the last and returns its number.
  Mref Append(const CatalogueRow& row);
  void Change(Mref track, const TrackEdit& edit);
  /// The track's info file holds this now: the tables take what they keep of it, and the rest is reported.
  /// Called in the turn in which the write is known to be done, so that file and tables never disagree.
  void TakeInfo(Mref track, const TrackInfo& info);
  /// The music file has this name now, with its extension, in the same folder.
  void Rename(Mref track, const QString& fileName);
  void Remove(Mref track);

  // Names of genres, artists, albums and playlists. They keep the order of their upper-cased forms.
  [[nodiscard]] const QStringList& References(ReferenceSet set) const { return tables_.*ListOf(set); }
  /// A name that is there already is not added again.
  void AddReference(ReferenceSet set, const QString& name);
  /// The lines of the tracks that bear the name are changed one by one, through Change.
  void RenameReference(ReferenceSet set, const QString& name, const QString& newName);
  void RemoveReference(ReferenceSet set, const QString& name);

  // Files of the jingle folder, by their full path.
  void AddJingle(const QString& path);
  void RenameJingle(const QString& path, const QString& newPath);
  void RemoveJingle(const QString& path);

  // Files that wait in the utility folder, by their full path.
  void AddStagedFile(const QString& path);
  void RemoveStagedFile(const QString& path);
  /// What was found there; each difference is reported.
  void SetStagedFiles(const QStringList& paths);

  /// Calls the handler whose argument is the kind of change that happened, as long as `listener` lives:
  /// `Listen(this, [this](const TrackRemoved& removed) { ... }, ...)`. Listeners are called in the order in
  /// which they began to listen; they must not change the catalogue in turn.
  template <typename... Handlers>
  void Listen(const QObject* listener, Handlers... handlers) const {
    connect(this, &Catalogue::Changed, listener,
            [handle = detail::Overloaded{std::move(handlers)..., [](const auto&) {}}](
                const CatalogueChange& change) { std::visit(handle, change); });
  }

 Q_SIGNALS:
  void Changed(const kelvo::CatalogueChange& change);

 private:
  [[nodiscard]] static QStringList CatalogueTables::*ListOf(ReferenceSet set);
};

}  // namespace kelvo
