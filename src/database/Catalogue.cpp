#include "database/Catalogue.h"

namespace kelvo {
namespace {

std::string Utf8(const QString& text) {
  return text.toStdString();
}

}  // namespace

double Catalogue::TrackDurations(Mref row) const {
  return ToInt(row) >= 0 && ToInt(row) <= LastTrack() ? durations_[static_cast<std::size_t>(row)] : 0.0;
}

void Catalogue::SetTrackDuration(Mref row, double seconds) {
  if (IsTrack(row)) durations_[static_cast<std::size_t>(row)] = seconds;
}

QString Catalogue::TrackPaths(Mref row) const {
  if (!IsTrack(row)) return {};
  return musicFolder_ + QLatin1Char('/') + TrackNames[row] + extensions_[row];
}

QString Catalogue::MainGenre(Mref row, const QString& none) const {
  const QString& line = TrackGenres[row];
  if (!line.contains(QLatin1Char(','))) return none;
  const QList<QStringView> shown = ShownItems(line);
  return shown.isEmpty() ? none : shown.first().toString();
}

void Catalogue::Clear(const QString& musicFolder) {
  musicFolder_ = musicFolder;
  TrackNames.Clear();
  for (PooledTextColumn* column : {&TrackGenres, &TrackArtists, &TrackAlbums, &TrackDates, &TrackBpm,
                                   &TrackHi, &TrackStartEnd, &TrackGain, &extensions_}) {
    column->Clear();
    column->Append({});
  }
  TrackNames.Append({});
  durations_.assign(1, 0.0);
  for (QStringList* list :
       {&GenreList, &ArtistList, &AlbumList, &PlaylistNames, &SoundBiteNames, &SoundBitePaths}) {
    list->clear();
  }
  UtilityCount = 0;
}

void Catalogue::Reserve(std::size_t tracks, std::size_t nameBytes) {
  TrackNames.Reserve(tracks + 1, nameBytes);
  for (PooledTextColumn* column : {&TrackGenres, &TrackArtists, &TrackAlbums, &TrackDates, &TrackBpm,
                                   &TrackHi, &TrackStartEnd, &TrackGain, &extensions_}) {
    column->Reserve(tracks + 1);
  }
  durations_.reserve(tracks + 1);
}

Mref Catalogue::Append(const CatalogueRow& row) {
  TrackNames.Append(Utf8(row.name));
  extensions_.Append(Utf8(row.extension));
  TrackGenres.Append(Utf8(row.genres));
  TrackArtists.Append(Utf8(row.artists));
  TrackAlbums.Append(Utf8(row.albums));
  TrackDates.Append(Utf8(row.date));
  TrackBpm.Append(Utf8(row.bpm));
  TrackHi.Append(Utf8(row.hi));
  TrackStartEnd.Append(Utf8(row.startEnd));
  TrackGain.Append(Utf8(row.gain));
  durations_.push_back(row.duration);
  return ToMref(LastTrack());
}

Mref Catalogue::AppendRecord(const InfoBatch& batch, const InfoBatch::Record& record) {
  TrackNames.Append(batch.Text(record, InfoBatch::Name));
  extensions_.Append(batch.Text(record, InfoBatch::Extension));
  TrackGenres.Append(batch.Text(record, InfoBatch::Genres));
  TrackArtists.Append(batch.Text(record, InfoBatch::Artists));
  TrackAlbums.Append(batch.Text(record, InfoBatch::Albums));
  TrackDates.Append(batch.Text(record, InfoBatch::Date));
  TrackBpm.Append(batch.Text(record, InfoBatch::Bpm));
  TrackHi.Append(batch.Text(record, InfoBatch::Hi));
  TrackStartEnd.Append(batch.Text(record, InfoBatch::StartEnd));
  TrackGain.Append(batch.Text(record, InfoBatch::Gain));
  durations_.push_back(record.duration);
  return ToMref(LastTrack());
}

std::size_t Catalogue::TableBytes() const {
  std::size_t bytes = TrackNames.Bytes() + durations_.capacity() * sizeof(double);
  for (const PooledTextColumn* column : {&TrackGenres, &TrackArtists, &TrackAlbums, &TrackDates, &TrackBpm,
                                         &TrackHi, &TrackStartEnd, &TrackGain, &extensions_}) {
    bytes += column->Bytes();
  }
  return bytes;
}

}  // namespace kelvo
