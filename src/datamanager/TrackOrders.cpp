#include "datamanager/TrackOrders.h"

#include "database/TrackInfo.h"
#include "platform/AtomicFile.h"
#include "platform/ShellLink.h"
#include "platform/Words.h"

#include <QFileInfo>
#include <QSet>

namespace kelvo {
namespace {

const QString kRenameTag = QStringLiteral(" fileed rename");
const QString kDeleteTag = QStringLiteral(" fileed delete");

QString InFolder(const QString& folder, const QString& name) {
  return folder + QLatin1Char('/') + name;
}

/// The other music files that this base name may have.
QStringList MusicFilesOf(const QString& folder, const QString& base) {
  QStringList files;
  for (const QString& extension : {QStringLiteral(".mp3"), QStringLiteral(".wav")}) {
    const QString found = FindFile(InFolder(folder, base + extension));
    if (!found.isEmpty()) files.append(found);
  }
  return files;
}

/// Points an entry at the new path, and renames it and its companion. A name that is taken leaves the entry
/// under the one that it has.
void AddLinkSteps(const TrackLink& link, const QString& newPath, QSet<QString>& taken,
                  std::vector<ChangeStep>& steps) {
  const QString linkFile = InFolder(link.folder, link.file);
  const QByteArray bytes = ShellLink{newPath, link.link.arguments}.ToBytes();
  steps.push_back(SetContent{linkFile, link.bytes, bytes});
  const QString newFile = link.FileFor(BaseName(QFileInfo(newPath).fileName()));
  const QString renamed = InFolder(link.folder, newFile);
  if (newFile == link.file || taken.contains(renamed) || QFileInfo::exists(renamed)) return;
  taken.insert(renamed);
  steps.push_back(MoveEntry{linkFile, renamed});
  if (link.companion.isEmpty()) return;
  const QString companion = EntryFileName::Parse(newFile).Companion();
  if (companion != link.companion)
    steps.push_back(MoveEntry{InFolder(link.folder, link.companion), InFolder(link.folder, companion)});
}

}  // namespace

LibraryFile LookAtFile(const Paths& paths, const QString& path) {
  const QFileInfo named(path);
  LibraryFile file{path, named.path() == paths(Paths::Music)};
  if (!file.track) return file;
  const QString base = BaseName(named.fileName());
  file.infoPath = FindFile(TrackInfoPath(paths, base));
  if (!file.infoPath.isEmpty()) file.info = ReadWholeFile(file.infoPath, qint64{1} << 20);
  QStringList others = MusicFilesOf(named.path(), base);
  others.removeAll(path);
  file.infoShared = !others.isEmpty();
  return file;
}

bool NameTaken(const Paths& paths, const QString& newPath) {
  const QFileInfo named(newPath);
  if (!FindFile(newPath).isEmpty()) return true;
  return named.path() == paths(Paths::Music) &&
         !MusicFilesOf(named.path(), BaseName(named.fileName())).isEmpty();
}

LibraryChanges::Order RenameOrder(const Paths& paths, const LibraryFile& file, const QString& newPath,
                                  const std::vector<TrackLink>& links, const QString& leftInfo) {
  const QString newName = QFileInfo(newPath).fileName();
  LibraryChanges::Order order;
  order.what = QStringLiteral("Rename %1 To %2").arg(QFileInfo(file.path).fileName(), newName);
  order.tag = kRenameTag;
  const QString words = QStringLiteral("ReNaming Playlist Entries ");
  LibraryChanges::Phase entries{.words = words};
  QSet<QString> taken;
  for (const TrackLink& link : links) AddLinkSteps(link, newPath, taken, entries.steps);
  order.phases.push_back(std::move(entries));
  order.phases.push_back({.words = words, .steps = {MoveEntry{file.path, newPath}}, .needed = true});
  LibraryChanges::Phase info{.words = words};
  if (file.info) {
    const QString newInfo = TrackInfoPath(paths, BaseName(newName));
    if (!leftInfo.isEmpty()) info.steps.push_back(DiscardEntry{.path = leftInfo});
    if (file.infoShared) {
      info.steps.push_back(SetContent{newInfo, std::nullopt, *file.info});
    } else {
      info.steps.push_back(MoveEntry{file.infoPath, newInfo});
    }
  }
  order.phases.push_back(std::move(info));
  return order;
}

LibraryChanges::Order DeleteOrder(const LibraryFile& file, const std::vector<TrackLink>& links) {
  LibraryChanges::Order order;
  order.what = QStringLiteral("Delete %1").arg(QFileInfo(file.path).fileName());
  order.tag = kDeleteTag;
  LibraryChanges::Phase entries{.words = QStringLiteral("Checking Playlists ")};
  for (const TrackLink& link : links) {
    entries.steps.push_back(DiscardEntry{.path = InFolder(link.folder, link.file), .bytes = link.bytes});
    if (!link.companion.isEmpty())
      entries.steps.push_back(
          DiscardEntry{.path = InFolder(link.folder, link.companion), .bytes = link.companionBytes});
  }
  order.phases.push_back(std::move(entries));
  const QString cleaning = QStringLiteral("Cleaning Up ");
  order.phases.push_back({.words = cleaning, .steps = {DiscardEntry{.path = file.path}}, .needed = true});
  LibraryChanges::Phase info{.words = cleaning};
  if (file.info && !file.infoShared)
    info.steps.push_back(DiscardEntry{.path = file.infoPath, .bytes = file.info});
  order.phases.push_back(std::move(info));
  return order;
}

}  // namespace kelvo
