#include "database/TransferSteps.h"

#include "database/FolderListing.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <algorithm>
#include <map>

namespace kelvo {
namespace {

const QString kLineBreak = QStringLiteral("\r\n");

/// The line that has this base item and, unless it is empty, this name.
ReferenceLine OneReference(const QString& base, const QString& name) {
  return {base, name.isEmpty() ? QStringList() : QStringList(name)};
}

QString ExtensionOf(const QString& fileName) {
  return fileName.mid(BaseName(fileName).size());
}

/// A file that the catalogue load made for a music file without one, and that bears nothing of the operator.
bool IsUntouchedDefault(const TrackInfo& info, const QString& baseName, const TrackDefaults& defaults) {
  const QStringList ours = ReplacedFileComments({}, {});
  const QStringList comments = info.Comments();
  if (comments.size() != ours.size() || comments.last() != ours.last()) return false;
  const TrackInfo made = DefaultTrackInfo(baseName, 0, defaults, {});
  for (int line = 0; line < InfoLine::DurationSeconds; ++line) {
    if (info.Text(InfoLine::Line(line)) != made.Text(InfoLine::Line(line))) return false;
  }
  return true;
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

Prompt DuplicationQuestion(const QString& fileName, const QString& standing, const QString& free) {
  Prompt question;
  question.text =
      QStringLiteral("The File ") + fileName + QStringLiteral(" Already Exists On The Data Base ! ") +
      kLineBreak + QStringLiteral("Do You Wish To Replace the Existing Track ") + kLineBreak +
      QStringLiteral("Click CANCEL To Cancel The Move and Proceed to the Next Track In the List (If Any)") +
      kLineBreak + kLineBreak +
      QStringLiteral("Yes: the waiting file takes the place of \"%1\", whose sound is lost.").arg(standing) +
      kLineBreak + QStringLiteral("No: both stay; the waiting file comes in as \"%1\".").arg(free) +
      kLineBreak +
      QStringLiteral("Cancel: \"%1\" stays as it is; the file waits on in this list.").arg(standing);
  question.title = QStringLiteral("File Duplication");
  question.buttons = Buttons::YesNoCancel;
  question.icon = PromptIcon::Question;
  return question;
}

TrackInfo NewTrackInfo(const TransferRow& row, double durationSeconds, const TrackDefaults& defaults,
                       const QString& today) {
  TrackInfo info =
      DefaultTrackInfo({}, durationSeconds, defaults, {QStringLiteral("Track Added On ") + today});
  info.Set(InfoFields::Categories, OneReference(kAllCategories, row.category));
  info.Set(InfoFields::Artists, OneReference(kAllArtists, row.artist));
  info.Set(InfoFields::Albums, OneReference(kAllAlbums, row.album));
  info.SetText(InfoLine::ReleaseDate, row.date);
  info.Set(InfoFields::Bpm, row.bpm);
  info.Set(InfoFields::HiPos, 0);
  info.CompletePlayLines();
  return info;
}

TrackInfo ReplacedTrackInfo(TrackInfo old, const TrackInfo& fresh, const QString& baseName,
                            const TrackDefaults& defaults, const QString& today) {
  if (IsUntouchedDefault(old, baseName, defaults)) {
    for (const InfoLine::Line line :
         {InfoLine::Categories, InfoLine::Artists, InfoLine::Albums, InfoLine::ReleaseDate, InfoLine::Bpm}) {
      old.SetText(line, fresh.Text(line));
    }
  }
  old.AddMissing(fresh);
  old.Set(InfoFields::GainRecord, std::nullopt);
  const QString comment = QStringLiteral("Track Was Replaced On ") + today;
  // A run that a crash cut short has said it already.
  if (old.Comments().isEmpty() || old.Comments().last() != comment) old.AddComment(comment);
  return old;
}

TrackInfo FinishedTrackInfo(TrackInfo old, const TrackInfo& fresh, const QString& baseName,
                            const TrackDefaults& defaults) {
  if (IsUntouchedDefault(old, baseName, defaults)) return fresh;
  old.AddMissing(fresh);
  return old;
}

CatalogueRow RowFrom(const TrackInfo& info, const QString& fileName, double durationSeconds) {
  CatalogueRow row;
  row.name = BaseName(fileName);
  row.extension = ExtensionOf(fileName);
  row.genres = info.Text(InfoLine::Categories);
  row.artists = info.Text(InfoLine::Artists);
  row.albums = info.Text(InfoLine::Albums);
  row.date = info.Text(InfoLine::ReleaseDate);
  row.bpm = info.Text(InfoLine::Bpm);
  row.hi = info.Text(InfoLine::HiPos);
  row.startEnd = StylesText(info.Text(InfoLine::StartStyle), info.Text(InfoLine::EndStyle));
  row.gain = info.Text(InfoLine::GainRecord);
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
  edit.bpm = row.bpm;
  edit.gain = row.gain;
  edit.duration = row.duration;
  catalogue.Change(track, edit);
}

}  // namespace kelvo
