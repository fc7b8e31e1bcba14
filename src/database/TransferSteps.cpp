#include "database/TransferSteps.h"

#include "database/FolderListing.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <algorithm>
#include <map>

namespace kelvo {
namespace {

QString JoinedPair(int value) {
  return QString::number(value) + QLatin1Char(',') + QString::number(value);
}

QString WithReference(const QString& baseItem, const QString& name) {
  return name.isEmpty() ? baseItem : baseItem + QLatin1Char(',') + name;
}

QString ExtensionOf(const QString& fileName) {
  return fileName.mid(BaseName(fileName).size());
}

/// A file that the catalogue load made for a music file without one, and that bears nothing of the operator.
bool IsUntouchedDefault(const TextFile& info, const QString& baseName, const TrackDefaults& defaults) {
  const QStringList comments = ReplacedFileComments({}, {});
  const QStringList lines = info.Lines();
  return lines.size() == kFixedInfoLines + comments.size() && lines.last() == comments.last() &&
         lines.first(InfoLine::DurationSeconds) ==
             DefaultTrackInfo(baseName, 0, defaults, {}).Lines().first(InfoLine::DurationSeconds);
}

}  // namespace

DatabaseNames DatabaseNames::Read(const Paths& paths) {
  DatabaseNames all;
  const auto read = [&](Paths::Slot slot, EntryKind kind) {
    const FolderListing listing = ListFolder(paths(slot), kind);
    for (const QString& name : listing.names) all.Add(slot, name);
  };
  read(Paths::Music, EntryKind::Files);
  read(Paths::Info, EntryKind::Files);
  for (const Paths::Slot slot : {Paths::Categories, Paths::Artists, Paths::Albums}) {
    read(slot, EntryKind::Folders);
  }
  return all;
}

void DatabaseNames::Add(Paths::Slot slot, const QString& name) {
  names_[static_cast<std::size_t>(slot)].insert(name.toUpper(), name);
  if (slot == Paths::Music) musicBases_.insert(BaseName(name).toUpper());
}

void DatabaseNames::Rename(const QString& pathBefore, const QString& path) {
  const auto infoName = [](const QString& fileName) { return BaseName(fileName) + QStringLiteral(".kif"); };
  const QString before = QFileInfo(pathBefore).fileName();
  // Its base stays taken: another music file may share it.
  names_[Paths::Music].remove(before.toUpper());
  names_[Paths::Info].remove(infoName(before).toUpper());
  if (path.isEmpty()) return;
  const QString name = QFileInfo(path).fileName();
  Add(Paths::Music, name);
  Add(Paths::Info, infoName(name));
}

void DatabaseNames::Rename(const ReferenceChanged& change) {
  static const std::map<ReferenceSet, Paths::Slot> slots{{ReferenceSet::Genres, Paths::Categories},
                                                         {ReferenceSet::Artists, Paths::Artists},
                                                         {ReferenceSet::Albums, Paths::Albums}};
  const auto slot = slots.find(change.set);
  if (slot == slots.end()) return;
  names_[static_cast<std::size_t>(slot->second)].remove(change.before.toUpper());
  if (!change.name.isEmpty()) Add(slot->second, change.name);
}

QString DatabaseNames::FirstFree(const QString& fileName) const {
  const QString base = BaseName(fileName);
  for (int number = 1;; ++number) {
    QString free = FittingName(base, QLatin1Char('_') + QString::number(number) + ExtensionOf(fileName));
    // The info file belongs to the base name: that of another track, or of one that has gone, is not this
    // one's.
    const QString freeBase = BaseName(free);
    if (!musicBases_.contains(freeBase.toUpper()) &&
        Find(Paths::Info, freeBase + QStringLiteral(".kif")).isEmpty())
      return free;
  }
}

QString MusicFileName(const QString& trackName) {
  QString name = ProperCase(trackName);
  for (QChar& each : name) {
    if (each.category() == QChar::Other_Control || each == QLatin1Char('/')) each = QLatin1Char('_');
  }
  if (name.startsWith(QLatin1Char('.'))) name.prepend(QLatin1Char('_'));
  return FittingName(BaseName(name), ExtensionOf(name));
}

TextFile NewTrackInfo(const TransferRow& row, double durationSeconds, const TrackDefaults& defaults,
                      const QString& today) {
  return TextFile({
      WithReference(kAllCategories, row.category),
      WithReference(kAllArtists, row.artist),
      WithReference(kAllAlbums, row.album),
      row.date,
      QStringLiteral("0"),
      QStringLiteral("0"),
      CompletePlayMode(QString::number(defaults.DefaultFade)),
      JoinedPair(defaults.DefaultDelta),
      JoinedPair(defaults.DefaultFadeSpeed),
      QString::number(defaults.DefaultStartType),
      QString::number(defaults.DefaultEndType),
      QStringLiteral("?"),
      DurationText(durationSeconds),
      QStringLiteral("Track Added On ") + today,
  });
}

TextFile ReplacedTrackInfo(TextFile old, const TextFile& fresh, const QString& baseName,
                           const TrackDefaults& defaults, const QString& today) {
  if (IsUntouchedDefault(old, baseName, defaults)) {
    for (const int line :
         {InfoLine::Categories, InfoLine::Artists, InfoLine::Albums, InfoLine::ReleaseDate}) {
      old.SetLine(line, fresh.Line(line));
    }
  }
  for (qsizetype line = old.Count(); line < kFixedInfoLines; ++line) old.SetLine(line, fresh.Line(line));
  old.SetLine(InfoLine::GainRecord, QStringLiteral("?"));
  old.Append(QStringLiteral("Track Was Replaced On ") + today);
  return old;
}

CatalogueRow RowFrom(const TextFile& info, const QString& fileName, double durationSeconds) {
  CatalogueRow row;
  row.name = BaseName(fileName);
  row.extension = ExtensionOf(fileName);
  row.genres = info.Line(InfoLine::Categories);
  row.artists = info.Line(InfoLine::Artists);
  row.albums = info.Line(InfoLine::Albums);
  row.date = info.Line(InfoLine::ReleaseDate);
  row.bpm = info.Line(InfoLine::Bpm);
  row.hi = info.Line(InfoLine::HiPos);
  row.startEnd = info.Line(InfoLine::StartStyle) + QLatin1Char(',') + info.Line(InfoLine::EndStyle);
  row.gain = info.Line(InfoLine::GainRecord);
  row.duration = durationSeconds;
  return row;
}

void StoreRow(Catalogue& catalogue, const CatalogueRow& row, const QString& path) {
  const Mref track = catalogue.Find(path);
  if (track == Mref::None) {
    catalogue.Append(row);
    return;
  }
  TrackEdit edit;
  edit.genres = row.genres;
  edit.artists = row.artists;
  edit.albums = row.albums;
  edit.date = row.date;
  edit.gain = row.gain;
  edit.duration = row.duration;
  catalogue.Change(track, edit);
}

}  // namespace kelvo
