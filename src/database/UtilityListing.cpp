#include "database/UtilityListing.h"

#include "database/FolderListing.h"
#include "platform/ErrorLog.h"

#include <QDir>
#include <QFileInfo>

#include <vector>

namespace kelvo {
namespace {

/// The database's own folders, which the operator may have put into the utility folder.
class OwnFolders {
 public:
  explicit OwnFolders(const Paths& paths) {
    for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) {
      folders_.append(QFileInfo(paths(slot)).canonicalFilePath());
    }
    folders_.removeAll(QString());
  }
  [[nodiscard]] bool Hold(const QString& folder) const {
    return folders_.contains(QFileInfo(folder).canonicalFilePath());
  }

 private:
  QStringList folders_;
};

}  // namespace

UtilityListing ListUtilityFolder(const Paths& paths) {
  const QString& utility = paths(Paths::Utility);
  const OwnFolders own(paths);
  const auto nameless = [](const QString& folder, const QString& name) {
    return QStringLiteral("A name in %1 is no valid text and is passed over: %2").arg(folder, name);
  };
  UtilityListing waiting;
  const FolderListing folders = ListFolder(utility, EntryKind::Folders);
  for (const QString& name : folders.unusable) waiting.passedOver.append(nameless(utility, name));
  for (const QString& name : folders.names) {
    const QString folder = utility + QLatin1Char('/') + name;
    if (own.Hold(folder)) continue;
    try {
      const FolderListing files = ListFolder(folder, EntryKind::Files);
      for (const QString& file : files.names) waiting.files.append(folder + QLatin1Char('/') + file);
      for (const QString& file : files.unusable) waiting.passedOver.append(nameless(folder, file));
    } catch (const Failure& unreadable) {
      waiting.passedOver.append(QString::fromUtf8(unreadable.what()));
    }
  }
  return waiting;
}

QStringList CleanUtilityFolder(const Paths& paths) {
  const QString& utility = paths(Paths::Utility);
  const OwnFolders own(paths);
  try {
    const FolderListing listing = ListFolder(utility, EntryKind::Folders);
    for (const QString& name : listing.names) {
      const QString folder = utility + QLatin1Char('/') + name;
      // A folder with deeper folders in it is not empty: rmdir leaves it alone.
      if (!own.Hold(folder) && !HoldsFiles(folder)) QDir().rmdir(folder);
    }
    return ListUtilityFolder(paths).files;
  } catch (const Failure&) {
    return {};  // nothing waits where nothing can be read
  }
}

Job<> FindStagedFiles(EventLoop& loop, Catalogue& catalogue, Paths paths) {
  std::vector<StagedFileChanged> meanwhile;
  const QObject listener;
  catalogue.Listen(&listener, [&meanwhile](const StagedFileChanged& change) { meanwhile.push_back(change); });
  const auto list = [paths] { return ListUtilityFolder(paths); };
  UtilityListing waiting = co_await loop.Offload(EventLoop::Lane::Apart, list);
  for (const QString& line : waiting.passedOver) NoteInLog(line);
  for (const StagedFileChanged& change : meanwhile) {
    waiting.files.removeOne(change.path);
    if (change.waits) waiting.files.append(change.path);
  }
  catalogue.SetStagedFiles(waiting.files);
}

}  // namespace kelvo
