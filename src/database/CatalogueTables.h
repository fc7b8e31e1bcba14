#pragma once

#include "database/InfoBatch.h"
#include "database/InfoFields.h"
#include "database/TextColumns.h"

#include <QStringList>

#include <vector>

namespace kelvo {

/// A track as the tables keep it, to be added or read whole.
struct CatalogueRow {
  QString name;       ///< base name of the music file
  QString extension;  ///< with its dot, as on disk
  QString genres = kAllCategories;
  QString artists = kAllArtists;
  QString albums = kAllAlbums;
  QString date = kNoDate;
  QString bpm = QStringLiteral("0");
  QString hi = QStringLiteral("0");
  QString startEnd = QStringLiteral("1,0");
  QString gain = QStringLiteral("?");
  double duration = -1;  ///< seconds; below 0 is unknown
};

/// The tables of the media database, by row number. Rows are numbered from 1: row 0 exists, stays empty and
/// is no track. A value: the CatalogueLoader fills one and hands it to the Catalogue, which everybody else
/// reads.
class CatalogueTables {
 public:
  /// Empty tables; `musicFolder` is where the tracks to come lie.
  explicit CatalogueTables(QString musicFolder = {});

  PackedTextColumn TrackNames;
  PooledTextColumn TrackGenres;
  PooledTextColumn TrackArtists;
  PooledTextColumn TrackAlbums;
  PooledTextColumn TrackDates;
  PooledTextColumn TrackBpm;
  PooledTextColumn TrackHi;
  PooledTextColumn TrackStartEnd;
  PooledTextColumn TrackGain;
  PooledTextColumn TrackExtensions;  ///< of the music files, each with its dot
  /// Seconds by row; below 0 is unknown. 0 for a row that is none.
  [[nodiscard]] double TrackDurations(Mref row) const;
  void SetTrackDuration(Mref row, double seconds);
  /// Full path of the music file: the music folder, the name and its own extension.
  [[nodiscard]] QString TrackPaths(Mref row) const;

  QStringList GenreList;
  QStringList ArtistList;
  QStringList AlbumList;
  QStringList PlaylistNames;
  QStringList SoundBiteNames;
  QStringList SoundBitePaths;
  QStringList StagedFiles;  ///< full paths of the files that wait in the utility folder

  /// The row number of the last track; 0 when there is none.
  [[nodiscard]] int LastTrack() const { return static_cast<int>(durations_.size()) - 1; }
  [[nodiscard]] bool IsTrack(Mref row) const { return ToInt(row) >= 1 && ToInt(row) <= LastTrack(); }

  /// Room for so many tracks, whose names take `nameBytes` in UTF-8.
  void Reserve(std::size_t tracks, std::size_t nameBytes = 0);
  /// Adds a track behind the last and returns its number.
  Mref Append(const CatalogueRow& row);
  /// The same from a record whose track info file was read.
  Mref AppendRecord(const InfoBatch& batch, const InfoBatch::Record& record);
  /// Takes a track out: those behind it move up by one.
  void Remove(Mref row);
  /// Memory that the track tables hold, in bytes.
  [[nodiscard]] std::size_t TableBytes() const;

 private:
  std::vector<double> durations_;
  QString musicFolder_;
};

}  // namespace kelvo
