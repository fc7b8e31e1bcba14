#include "database/TransferSteps.h"

#include "database/FolderListing.h"
#include "platform/Words.h"

#include <algorithm>

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
  const std::string name = row.name.toStdString();
  int number = 1;
  while (number <= catalogue.LastTrack() && (catalogue.TrackNames.Utf8(ToMref(number)) != name ||
                                             catalogue.TrackPaths(ToMref(number)) != path)) {
    ++number;
  }
  if (number > catalogue.LastTrack()) {
    catalogue.Append(row);
    return;
  }
  const Mref track = ToMref(number);
  catalogue.TrackGenres.Set(track, row.genres);
  catalogue.TrackArtists.Set(track, row.artists);
  catalogue.TrackAlbums.Set(track, row.albums);
  catalogue.TrackDates.Set(track, row.date);
  catalogue.TrackGain.Set(track, row.gain);
  catalogue.SetTrackDuration(track, row.duration);
}

void AddInOrder(QStringList& list, const QString& name) {
  const auto place = std::lower_bound(
      list.begin(), list.end(), name,
      [](const QString& left, const QString& right) { return left.toUpper() < right.toUpper(); });
  list.insert(place, name);
}

}  // namespace kelvo
