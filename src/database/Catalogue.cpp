#include "database/Catalogue.h"

#include "database/TrackInfo.h"
#include "platform/Words.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <string>
#include <unordered_set>

namespace kelvo {
namespace {

/// Inserts a name at its place among the others.
void InsertInOrder(QStringList& list, const QString& name) {
  const QString upper = name.toUpper();
  const auto place =
      std::lower_bound(list.begin(), list.end(), upper,
                       [](const QString& left, const QString& right) { return left.toUpper() < right; });
  list.insert(place, name);
}

}  // namespace

QString Catalogue::MainGenre(Mref row, const QString& none) const {
  const QString& line = TrackGenres[row];
  if (!line.contains(QLatin1Char(','))) return none;
  const QList<QStringView> shown = ShownItems(line);
  return shown.isEmpty() ? none : shown.first().toString();
}

Mref Catalogue::Find(const QString& path) const {
  const std::string name = BaseName(QFileInfo(path).fileName()).toStdString();
  for (int row = 1; row <= LastTrack(); ++row) {
    // Two music files may share a name and differ in the extension.
    if (TrackNames.Utf8(ToMref(row)) == name && TrackPaths(ToMref(row)) == path) return ToMref(row);
  }
  return Mref::None;
}

QHash<QString, Mref> Catalogue::Find(const QStringList& paths) const {
  std::unordered_set<std::string> names;
  for (const QString& path : paths) names.insert(BaseName(QFileInfo(path).fileName()).toStdString());
  QHash<QString, Mref> all;
  std::string name;
  for (int row = 1; !names.empty() && row <= LastTrack(); ++row) {
    name = TrackNames.Utf8(ToMref(row));
    if (names.contains(name)) all.insert(TrackPaths(ToMref(row)), ToMref(row));
  }
  return all;
}

CatalogueTables Catalogue::Replace(CatalogueTables tables) {
  const QStringList staged = std::exchange(tables.StagedFiles, StagedFiles);
  CatalogueTables before = std::exchange(tables_, std::move(tables));
  Q_EMIT Changed(CatalogueReplaced{});
  SetStagedFiles(staged);
  return before;
}

Mref Catalogue::Append(const CatalogueRow& row) {
  const Mref track = tables_.Append(row);
  Q_EMIT Changed(TrackAdded{track});
  return track;
}

void Catalogue::Change(Mref track, const TrackEdit& edit) {
  if (!IsTrack(track)) return;
  TrackChanged change{track, {}, TrackDurations(track)};
  const auto set = [&](PooledTextColumn& column, const std::optional<QString>& text, TrackField field) {
    if (!text || *text == column[track]) return;
    column.Set(track, *text);
    change.fields |= field;
  };
  set(tables_.TrackGenres, edit.genres, TrackField::Genres);
  set(tables_.TrackArtists, edit.artists, TrackField::Artists);
  set(tables_.TrackAlbums, edit.albums, TrackField::Albums);
  set(tables_.TrackDates, edit.date, TrackField::Date);
  set(tables_.TrackBpm, edit.bpm, TrackField::Bpm);
  set(tables_.TrackHi, edit.hi, TrackField::Hi);
  set(tables_.TrackStartEnd, edit.startEnd, TrackField::StartEnd);
  set(tables_.TrackGain, edit.gain, TrackField::Gain);
  if (edit.duration && *edit.duration != change.durationBefore) {
    tables_.SetTrackDuration(track, *edit.duration);
    change.fields |= TrackField::Duration;
  }
  if (change.fields) Q_EMIT Changed(change);
}

void Catalogue::TakeInfo(Mref track, const TrackInfo& info) {
  if (!IsTrack(track)) return;
  TrackEdit edit;
  edit.genres = info.Text(InfoLine::Categories);
  edit.artists = info.Text(InfoLine::Artists);
  edit.albums = info.Text(InfoLine::Albums);
  edit.date = info.Text(InfoLine::ReleaseDate);
  edit.bpm = info.Text(InfoLine::Bpm);
  edit.hi = info.Text(InfoLine::HiPos);
  edit.startEnd = StylesText(info.Text(InfoLine::StartStyle), info.Text(InfoLine::EndStyle));
  edit.gain = info.Text(InfoLine::GainRecord);
  edit.duration = info.Get(InfoFields::DurationSeconds).value_or(-1);
  Change(track, edit);
  Q_EMIT Changed(TrackInfoSaved{track, info});
}

void Catalogue::Rename(Mref track, const QString& fileName) {
  if (!IsTrack(track)) return;
  TrackRenamed renamed{track, TrackPaths(track), {}};
  const QString name = BaseName(fileName);
  tables_.TrackNames.Set(track, name);
  tables_.TrackExtensions.Set(track, fileName.mid(name.size()));
  renamed.path = TrackPaths(track);
  if (renamed.path != renamed.pathBefore) Q_EMIT Changed(renamed);
}

void Catalogue::Remove(Mref track) {
  if (!IsTrack(track)) return;
  const TrackRemoved removed{track, TrackPaths(track), TrackDurations(track)};
  tables_.Remove(track);
  Q_EMIT Changed(removed);
}

QStringList CatalogueTables::*Catalogue::ListOf(ReferenceSet set) {
  switch (set) {
    case ReferenceSet::Genres:
      return &CatalogueTables::GenreList;
    case ReferenceSet::Artists:
      return &CatalogueTables::ArtistList;
    case ReferenceSet::Albums:
      return &CatalogueTables::AlbumList;
    case ReferenceSet::Playlists:
      break;
  }
  return &CatalogueTables::PlaylistNames;
}

void Catalogue::AddReference(ReferenceSet set, const QString& name) {
  QStringList& list = tables_.*ListOf(set);
  if (name.isEmpty() || list.contains(name)) return;
  InsertInOrder(list, name);
  Q_EMIT Changed(ReferenceChanged{set, {}, name});
}

void Catalogue::RenameReference(ReferenceSet set, const QString& name, const QString& newName) {
  QStringList& list = tables_.*ListOf(set);
  if (name == newName || newName.isEmpty() || !list.removeOne(name)) return;
  if (!list.contains(newName)) InsertInOrder(list, newName);
  Q_EMIT Changed(ReferenceChanged{set, name, newName});
}

void Catalogue::RemoveReference(ReferenceSet set, const QString& name) {
  QStringList& list = tables_.*ListOf(set);
  if (list.removeOne(name)) Q_EMIT Changed(ReferenceChanged{set, name, {}});
}

void Catalogue::AddJingle(const QString& path) {
  if (SoundBitePaths.contains(path)) return;
  tables_.SoundBiteNames.append(BaseName(QFileInfo(path).fileName()));
  tables_.SoundBitePaths.append(path);
  Q_EMIT Changed(JingleChanged{{}, path});
}

void Catalogue::RenameJingle(const QString& path, const QString& newPath) {
  const qsizetype place = SoundBitePaths.indexOf(path);
  if (place < 0 || path == newPath) return;
  tables_.SoundBiteNames[place] = BaseName(QFileInfo(newPath).fileName());
  tables_.SoundBitePaths[place] = newPath;
  Q_EMIT Changed(JingleChanged{path, newPath});
}

void Catalogue::RemoveJingle(const QString& path) {
  const qsizetype place = SoundBitePaths.indexOf(path);
  if (place < 0) return;
  tables_.SoundBiteNames.removeAt(place);
  tables_.SoundBitePaths.removeAt(place);
  Q_EMIT Changed(JingleChanged{path, {}});
}

void Catalogue::AddStagedFile(const QString& path) {
  if (StagedFiles.contains(path)) return;
  tables_.StagedFiles.append(path);
  Q_EMIT Changed(StagedFileChanged{path, true});
}

void Catalogue::RemoveStagedFile(const QString& path) {
  if (tables_.StagedFiles.removeOne(path)) Q_EMIT Changed(StagedFileChanged{path, false});
}

void Catalogue::SetStagedFiles(const QStringList& paths) {
  const QStringList before = std::exchange(tables_.StagedFiles, paths);
  const QSet<QString> there(paths.begin(), paths.end());
  const QSet<QString> known(before.begin(), before.end());
  for (const QString& path : before) {
    if (!there.contains(path)) Q_EMIT Changed(StagedFileChanged{path, false});
  }
  for (const QString& path : paths) {
    if (!known.contains(path)) Q_EMIT Changed(StagedFileChanged{path, true});
  }
}

}  // namespace kelvo
