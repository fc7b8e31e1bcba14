#include "datamanager/TrackLinks.h"

#include "database/FolderListing.h"
#include "database/LinkResolver.h"
#include "database/StagedName.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QFileInfo>

namespace kelvo {
namespace {

constexpr qint64 kLargestFile = qint64{1} << 20;

QByteArray BytesOf(const QString& path) {
  try {
    return ReadWholeFile(path, kLargestFile);
  } catch (const Failure&) {
    return {};
  }
}

QStringList FoldersIn(const QString& folder) {
  QStringList folders;
  const QStringList names = ListFolder(folder, EntryKind::Folders).names;
  for (const QString& name : names) folders.append(folder + QLatin1Char('/') + name);
  return folders;
}

/// The entries of a folder that may lead to a track of this name, whatever else their links say.
std::vector<TrackLink> CandidatesIn(const QString& folder, const QString& key) {
  std::vector<TrackLink> candidates;
  for (const PlaylistEntry& entry : ReadPlaylist(folder).entries) {
    if (!entry.IsLinkFile() || !entry.link) continue;
    const bool named =
        LinkKey(entry.name.name) == key || LinkKey(BaseName(FileNameOf(entry.link->targetPath))) == key;
    if (!named) continue;
    TrackLink link{folder, entry.file, BytesOf(folder + QLatin1Char('/') + entry.file), *entry.link};
    if (entry.line) {
      link.companion = entry.name.Companion();
      link.companionBytes = BytesOf(folder + QLatin1Char('/') + link.companion);
    }
    candidates.push_back(std::move(link));
  }
  return candidates;
}

/// Those that lead to the file, as the resolver of all links sees it, or by the very words of their target:
/// the file may have vanished.
Job<std::vector<TrackLink>> LeadingTo(EventLoop& loop, Disks& disks, const Catalogue& catalogue,
                                      QString musicFile, std::vector<TrackLink> candidates) {
  std::vector<LinkQuestion> questions;
  for (const TrackLink& each : candidates)
    questions.push_back({each.link.targetPath, EntryFileName::Parse(each.file).name});
  const std::vector<ResolvedLink> resolved =
      co_await ResolveLinks(loop, disks, catalogue, QString(), std::move(questions));
  const QString wanted = musicFile.toUpper();
  std::vector<TrackLink> links;
  for (std::size_t place = 0; place < candidates.size(); ++place) {
    const bool leads =
        resolved[place].path.toUpper() == wanted || candidates[place].link.targetPath.toUpper() == wanted;
    if (leads) links.push_back(std::move(candidates[place]));
  }
  co_return links;
}

}  // namespace

QString TrackLink::FileFor(const QString& baseName) const {
  const QString prefix = file.first(file.indexOf(QLatin1Char('~')) + 1);
  return FittingName(prefix + baseName, QStringLiteral(".lnk"));
}

Job<TrackLinks> FindTrackLinks(EventLoop& loop, Disks& disks, const Catalogue& catalogue, Paths paths,
                               QString musicFile, std::function<bool(double share)> progress) {
  TrackLinks found;
  const QString root = paths(Paths::Playlists);
  const QString key = LinkKey(BaseName(QFileInfo(musicFile).fileName()));
  std::vector<TrackLink> candidates;
  const auto list = [root] { return FoldersIn(root); };
  const std::optional<QStringList> top = co_await disks.Look(root, list);
  if (!top) found.unseen.append(root);
  const QStringList folders = top.value_or(QStringList());
  for (qsizetype place = 0; place < folders.size(); ++place) {
    const QString folder = folders[place];
    const auto look = [folder, key] {
      std::vector<TrackLink> all = CandidatesIn(folder, key);
      for (const QString& inner : FoldersIn(folder)) {
        for (TrackLink& each : CandidatesIn(inner, key)) all.push_back(std::move(each));
      }
      return all;
    };
    std::optional<std::vector<TrackLink>> some;
    try {
      some = co_await disks.Look(folder, look);
    } catch (const Failure& failure) {
      NoteInLog(QString::fromUtf8(failure.what()));
    }
    if (some) {
      for (TrackLink& each : *some) candidates.push_back(std::move(each));
    } else {
      found.unseen.append(folder);
    }
    found.stopped = !progress(static_cast<double>(place + 1) / static_cast<double>(folders.size()));
    if (found.stopped) co_return found;
  }
  found.links = co_await LeadingTo(loop, disks, catalogue, musicFile, std::move(candidates));
  co_return found;
}

}  // namespace kelvo
