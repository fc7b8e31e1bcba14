#include "app/FolderChooser.h"

#include "database/FolderListing.h"
#include "platform/ErrorLog.h"
#include "platform/MountedVolumes.h"
#include "platform/SystemFacts.h"

#include <QDir>
#include <QFileInfo>

#include <filesystem>

namespace kelvo {
namespace {

bool LiesIn(const QString& folder, const QString& drive) {
  return drive == QStringLiteral("/") || folder == drive || folder.startsWith(drive + QLatin1Char('/'));
}

}  // namespace

QString FreeSpaceText(std::int64_t bytes) {
  if (bytes < 0) return {};
  constexpr double kMegabyte = 1024.0 * 1024.0;
  constexpr double kGigabyte = 1024.0 * kMegabyte;
  const auto free = static_cast<double>(bytes);
  if (free < kMegabyte) return QStringLiteral("0 MB");
  const bool large = free >= kGigabyte;
  return QString::number(free / (large ? kGigabyte : kMegabyte), 'f', 2) +
         (large ? QStringLiteral(" GB") : QStringLiteral(" MB"));
}

FolderChooser::FolderChooser(EventLoop& loop, const QString& start) : loop_(loop) {
  seen_.folder = start;
  look_ = Look(start, Step::OpenNearest);
}

int FolderChooser::Drive() const {
  int best = -1;
  for (int row = 0; row < seen_.drives.size(); ++row) {
    const bool holds = LiesIn(seen_.folder, seen_.drives[row]);
    if (holds && (best < 0 || seen_.drives[row].size() > seen_.drives[best].size())) best = row;
  }
  return best;
}

void FolderChooser::Open(const QString& path) {
  look_ = Look(path.trimmed(), Step::Open);
}

void FolderChooser::Enter(const QString& subfolder) {
  Open(QDir(seen_.folder).filePath(subfolder));
}

void FolderChooser::Up() {
  Open(QFileInfo(seen_.folder).path());
}

void FolderChooser::MakeFolder(const QString& name) {
  const QString clean = name.trimmed();
  if (clean.isEmpty()) return;
  if (clean.contains(QLatin1Char('/'))) {
    trouble_ = tr("The name of a folder cannot hold \"/\".");
    Q_EMIT Changed();
    return;
  }
  look_ = Look(QDir(seen_.folder).filePath(clean), Step::Make);
}

FolderChooser::Seen FolderChooser::LookAt(const QString& path, Step step) {
  Seen seen;
  seen.folder = QDir::cleanPath(path);
  if (!QDir::isAbsolutePath(path)) throw Failure(QStringLiteral("Not a whole path : ") + path);
  while (step == Step::OpenNearest && !QFileInfo(seen.folder).isDir() && seen.folder != QStringLiteral("/"))
    seen.folder = QFileInfo(seen.folder).path();
  if (step == Step::Make) {
    std::error_code error;
    std::filesystem::create_directory(seen.folder.toStdString(), error);
    if (error) {
      throw Failure(QStringLiteral("Cannot create the folder %1: %2")
                        .arg(seen.folder, QString::fromStdString(error.message())));
    }
  }
  seen.subfolders = ListFolder(seen.folder, EntryKind::Folders).names;
  seen.freeBytes = FreeBytes(seen.folder);
  for (const MountedVolume& volume : ListVolumes()) seen.drives.append(volume.path);
  return seen;
}

Job<> FolderChooser::Look(QString path, Step step) {
  looking_ = true;
  Q_EMIT Changed();
  const auto look = [path, step] { return LookAt(path, step); };
  try {
    seen_ = co_await loop_.Offload(EventLoop::Lane::Apart, look);
    trouble_.clear();
  } catch (const std::exception& failure) {
    trouble_ = QString::fromUtf8(failure.what());
  }
  looking_ = false;
  Q_EMIT Changed();
}

}  // namespace kelvo
