#include "database/UtilityListing.h"

#include "database/FolderListing.h"
#include "platform/ErrorLog.h"

#include <QFileInfo>

namespace kelvo {
namespace {

QStringList RootsOfTheDatabase(const Paths& paths) {
  QStringList roots;
  for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) {
    roots.append(QFileInfo(paths(slot)).canonicalFilePath());
  }
  return roots;
}

}  // namespace

UtilityListing ListUtilityFolder(const Paths& paths) {
  const QString& utility = paths(Paths::Utility);
  const QStringList roots = RootsOfTheDatabase(paths);
  const auto nameless = [](const QString& folder, const QString& name) {
    return QStringLiteral("A name in %1 is no valid text and is passed over: %2").arg(folder, name);
  };
  UtilityListing waiting;
  const FolderListing folders = ListFolder(utility, EntryKind::Folders);
  for (const QString& name : folders.unusable) waiting.passedOver.append(nameless(utility, name));
  for (const QString& name : folders.names) {
    const QString folder = utility + QLatin1Char('/') + name;
    if (roots.contains(QFileInfo(folder).canonicalFilePath())) continue;
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

}  // namespace kelvo
