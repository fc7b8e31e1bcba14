#include "database/CatalogueTables.h"

namespace kelvo {
namespace {

std::string Utf8(const QString& text) {
  return text.toStdString();
}

/// The columns of pooled texts, one by one.
template <typename Tables, typename Work>
void ForEachPool(Tables& tables, Work work) {
  for (auto* column :
       {&tables.TrackGenres, &tables.TrackArtists, &tables.TrackAlbums, &tables.TrackDates, &tables.TrackBpm,
        &tables.TrackHi, &tables.TrackStartEnd, &tables.TrackGain, &tables.TrackExtensions}) {
    work(*column);
  }
}

}  // namespace

CatalogueTables::CatalogueTables(QString musicFolder)
    : durations_(1, 0.0), musicFolder_(std::move(musicFolder)) {
  TrackNames.Append({});
  ForEachPool(*this, [](PooledTextColumn& column) { column.Append({}); });
}

double CatalogueTables::TrackDurations(Mref row) const {
  return ToInt(row) >= 0 && ToInt(row) <= LastTrack() ? durations_[static_cast<std::size_t>(row)] : 0.0;
}

void CatalogueTables::SetTrackDuration(Mref row, double seconds) {
  if (IsTrack(row)) durations_[static_cast<std::size_t>(row)] = seconds;
}

QString CatalogueTables::TrackPaths(Mref row) const {
  if (!IsTrack(row)) return {};
  return musicFolder_ + QLatin1Char('/') + TrackNames[row] + TrackExtensions[row];
}

void CatalogueTables::Reserve(std::size_t tracks, std::size_t nameBytes) {
  TrackNames.Reserve(tracks + 1, nameBytes);
  ForEachPool(*this, [tracks](PooledTextColumn& column) { column.Reserve(tracks + 1); });
  durations_.reserve(tracks + 1);
}

Mref CatalogueTables::Append(const CatalogueRow& row) {
  TrackNames.Append(Utf8(row.name));
  TrackExtensions.Append(Utf8(row.extension));
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

Mref CatalogueTables::AppendRecord(const InfoBatch& batch, const InfoBatch::Record& record) {
  TrackNames.Append(batch.Text(record, InfoBatch::Name));
  TrackExtensions.Append(batch.Text(record, InfoBatch::Extension));
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

void CatalogueTables::Remove(Mref row) {
  if (!IsTrack(row)) return;
  TrackNames.Remove(row);
  ForEachPool(*this, [row](PooledTextColumn& column) { column.Remove(row); });
  durations_.erase(durations_.begin() + ToInt(row));
}

std::size_t CatalogueTables::TableBytes() const {
  std::size_t bytes = TrackNames.Bytes() + durations_.capacity() * sizeof(double);
  ForEachPool(*this, [&bytes](const PooledTextColumn& column) { bytes += column.Bytes(); });
  return bytes;
}

}  // namespace kelvo
