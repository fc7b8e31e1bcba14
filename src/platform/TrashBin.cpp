#include "platform/TrashBin.h"

#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStorageInfo>

#include <unistd.h>

namespace kelvo {
namespace {

const QString kInfoEnding = QStringLiteral(".trashinfo");

/// A folder of the trash: `files` holds what was deleted, `info` tells where each was.
struct TrashFolder {
  QString folder;
  QString top;  ///< the paths in `info` begin here, unless they are absolute
};

std::vector<TrashFolder> TrashFoldersFor(const QString& path) {
  const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  std::vector<TrashFolder> folders{{data + QStringLiteral("/Trash"), {}}};
  const QString top = QStorageInfo(QFileInfo(path).absolutePath()).rootPath();
  const QString user = QString::number(::getuid());
  folders.push_back({QDir(top).filePath(QStringLiteral(".Trash-") + user), top});
  folders.push_back({QDir(top).filePath(QStringLiteral(".Trash/") + user), top});
  return folders;
}

/// What an info file says of where its file was; empty when it can't be read.
QString OriginIn(const QString& infoFile, const QString& top) {
  try {
    const QList<QByteArray> lines = ReadWholeFile(infoFile, qint64{1} << 16).split('\n');
    for (const QByteArray& line : lines) {
      if (!line.startsWith("Path=")) continue;
      const QString origin = QFile::decodeName(QByteArray::fromPercentEncoding(line.mid(5).trimmed()));
      return origin.startsWith(QLatin1Char('/')) || top.isEmpty() ? origin : QDir(top).filePath(origin);
    }
  } catch (const Failure&) {
    // As if it told nothing.
  }
  return {};
}

class OfDesktop final : public TrashBin {
 public:
  std::optional<QString> Put(const QString& path) override {
    QString place;
    if (!QFile::moveToTrash(path, &place)) return std::nullopt;
    return place.isEmpty() ? Find(path) : place;
  }

  QString Find(const QString& path) const override {
    QString found;
    QDateTime latest;
    for (const TrashFolder& trash : TrashFoldersFor(path)) {
      const QFileInfoList infos =
          QDir(trash.folder + QStringLiteral("/info")).entryInfoList({QLatin1Char('*') + kInfoEnding});
      for (const QFileInfo& info : infos) {
        const QString place = trash.folder + QStringLiteral("/files/") + info.completeBaseName();
        if (OriginIn(info.filePath(), trash.top) != path || !QFileInfo::exists(place)) continue;
        if (latest.isValid() && info.lastModified() < latest) continue;
        latest = info.lastModified();
        found = place;
      }
    }
    return found;
  }

  bool TakeBack(const QString& place, const QString& path) override {
    // A folder too; over what is there neither is moved.
    if (!QDir().rename(place, path)) return false;
    const QFileInfo lay(place);
    QFile::remove(QDir::cleanPath(lay.path() + QStringLiteral("/../info/") + lay.fileName() + kInfoEnding));
    return true;
  }
};

}  // namespace

std::shared_ptr<TrashBin> DesktopTrashBin() {
  return std::make_shared<OfDesktop>();
}

}  // namespace kelvo
