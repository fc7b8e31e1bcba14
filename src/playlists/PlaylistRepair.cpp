#include "playlists/PlaylistRepair.h"

#include "database/FolderListing.h"
#include "database/LinkResolver.h"
#include "platform/ErrorLog.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(PlaylistRepair)
};

const QString kQuestion = QStringLiteral(
    "This Function Repairs Broken Links to the Tracks Data Base\r\n"
    " If Even After the Repair, A link Still Cannot be Established (Track Is Missing Etc.)\r\n"
    "The Playlist Entry will be Deleted ! \r\n"
    " Continue with Repair ?");

/// What is to become of an entry.
struct Mending {
  QString path;
  PlaylistLink link;     ///< what is to be in it
  bool deleted = false;  ///< it goes
};

}  // namespace

QString RepairSum::Words() const {
  return QStringLiteral("Total Files Scanned  : %1\r\nTotal Files Repaired : %2\r\nTotal Files Deleted  : %3")
      .arg(scanned)
      .arg(repaired)
      .arg(deleted);
}

Job<> PlaylistRepair::Run() {
  Prompt question;
  question.text = kQuestion;
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer != Answer::Yes) co_return;
  stop_ = false;
  // Without the music every link would count as broken.
  const QString music = services_.paths(Paths::Music);
  const auto look = [music] { return QFileInfo(music).isDir(); };
  const std::optional<bool> there = co_await services_.disks.Look(music, look);
  if (!there.value_or(false)) {
    services_.prompter.Tell({Text::tr("The Music Folder Cannot Be Read : %1").arg(music), {}});
    co_return;
  }
  RepairSum sum;
  QStringList mended;
  try {
    const QStringList folders = co_await FindPlaylists();
    for (qsizetype place = 0; place < folders.size() && !stop_; ++place) {
      const double share = static_cast<double>(place) / static_cast<double>(folders.size());
      const int deleted = sum.deleted;
      co_await Repair(folders[place], share, sum);
      if (sum.deleted != deleted) mended.append(folders[place]);
    }
  } catch (...) {
    basHandleError(QStringLiteral(" PlaySave repair"), QStringLiteral("The repair could not go on."));
  }
  services_.prompter.Tell({sum.Words(), {}});
  const auto closeGaps = [mended] {
    for (const QString& folder : mended) CloseGaps(folder);
  };
  co_await services_.loop.Offload(EventLoop::Lane::Files, closeGaps);
}

Job<QStringList> PlaylistRepair::FindPlaylists() {
  const QString root = services_.paths(Paths::Playlists);
  const auto look = [root] {
    QStringList folders;
    for (const QString& category : ListFolder(root, EntryKind::Folders).names) {
      const QString place = root + QLatin1Char('/') + category;
      for (const QString& name : ListFolder(place, EntryKind::Folders).names) {
        folders.append(place + QLatin1Char('/') + name);
      }
    }
    return folders;
  };
  const std::optional<QStringList> folders = co_await services_.disks.Look(root, look);
  if (!folders) services_.prompter.Tell({Text::tr("Disk Does Not Answer : %1").arg(root), {}});
  co_return folders.value_or(QStringList());
}

Job<> PlaylistRepair::Repair(QString folder, double share, RepairSum& sum) {
  if (OnProgress) OnProgress(QStringLiteral("Scanning ") + folder, share);
  const auto look = [folder] { return ReadPlaylist(folder); };
  const std::optional<PlaylistFolder> found = co_await services_.disks.Look(folder, look);
  if (!found) co_return;
  sum.scanned += found->files;
  std::vector<PlaylistEntry> entries;
  std::vector<LinkQuestion> links;
  for (const PlaylistEntry& entry : found->entries) {
    if (!entry.IsLinkFile()) continue;
    entries.push_back(entry);
    links.push_back({entry.link ? entry.link->targetPath : QString(), entry.name.name});
  }
  const std::vector<ResolvedLink> resolved = co_await ResolveLinks(
      services_.loop, services_.disks, services_.catalogue, services_.paths(Paths::Music), std::move(links));
  std::vector<Mending> mendings;
  for (std::size_t place = 0; place < entries.size(); ++place) {
    const PlaylistEntry& entry = entries[place];
    const ResolvedLink& means = resolved[place];
    Mending mending{folder + QLatin1Char('/') + entry.file, entry.link.value_or(PlaylistLink()), false};
    if (!entry.link && !IsGroupName(folder)) mending.link.arguments = QStringLiteral("Std");
    mending.deleted = means.state == LinkState::NotFound;
    const bool whole =
        means.state == LinkState::NoAnswer || (entry.link && mending.link.targetPath == means.path);
    if (whole && !mending.deleted) continue;
    mending.link.targetPath = means.path;
    (mending.deleted ? sum.deleted : sum.repaired) += 1;
    if (!mending.deleted && OnProgress)
      OnProgress(QStringLiteral("Repairing ") + FileNameOf(means.path), share);
    mendings.push_back(std::move(mending));
  }
  if (mendings.empty()) co_return;
  const auto work = [mendings, trash = services_.trash] {
    for (const Mending& each : mendings) {
      if (!each.deleted) {
        each.link.Write(each.path);
      } else if (!trash(each.path)) {
        QFile::remove(each.path);
      }
    }
  };
  co_await services_.loop.Offload(EventLoop::Lane::Files, work);
}

}  // namespace kelvo
