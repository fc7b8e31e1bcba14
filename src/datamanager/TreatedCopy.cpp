#include "datamanager/TreatedCopy.h"

#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/NewFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>

namespace kelvo {
namespace {

const QString kFolder = QStringLiteral(".kelvo-gain");
/// Tags that the tool writes or rewrites at the end of a file.
constexpr std::int64_t kTagBytes = 64 * 1024;
constexpr qint64 kBlock = 256 * 1024;
/// A gain is one byte of some hundred, in up to two pieces; of the smallest frames one of ten.
constexpr std::int64_t kMostChanged = 4;

QString Real(const QString& path) {
  return QFile::decodeName(BehindLinks(EncodedPath(path)));
}

QString FolderOfCopies(const QFileInfo& file) {
  return file.path() + QLatin1Char('/') + kFolder;
}

struct Difference {
  std::int64_t compared = 0;
  std::int64_t bytes = 0;
};

QFile& Opened(QFile& file) {
  if (!file.open(QIODevice::ReadOnly))
    throw Failure(QStringLiteral("%1 cannot be read: %2").arg(file.fileName(), file.errorString()), 0,
                  file.fileName());
  return file;
}

Difference Compare(const QString& path, const QString& other) {
  QFile left(path);
  QFile right(other);
  Opened(left);
  Opened(right);
  Difference difference;
  for (;;) {
    const QByteArray before = left.read(kBlock);
    const QByteArray after = right.read(kBlock);
    const qsizetype both = std::min(before.size(), after.size());
    if (both == 0) return difference;
    difference.compared += both;
    for (qsizetype at = 0; at < both; ++at) difference.bytes += before[at] != after[at] ? 1 : 0;
    if (before.size() != after.size()) return difference;
  }
}

void Check(const QString& path, const QString& copy) {
  const std::int64_t size = QFileInfo(path).size();
  const std::int64_t now = QFileInfo(copy).size();
  const auto refuse = [&path](const char* why) { throw Failure(QString::fromLatin1(why), 0, path); };
  const std::int64_t slack = std::min(kTagBytes, size / 2);
  if (now < size - slack || now > size + kTagBytes) refuse("The tool gave back a file of another length.");
  const Difference difference = Compare(path, copy);
  if (difference.bytes == 0) refuse("The tool changed nothing.");
  if (difference.bytes > difference.compared / kMostChanged) refuse("The tool gave back another file.");
}

}  // namespace

QString PrepareTreatedCopy(const QString& path) {
  const QFileInfo file(Real(path));
  const QString folder = FolderOfCopies(file);
  if (!QDir().mkpath(folder)) FailOn("make", EncodedPath(folder), EACCES);
  return folder + QLatin1Char('/') + file.fileName();
}

void TakeTreatedCopy(const QString& copy, const QString& path) {
  Check(path, copy);
  MoveOver(copy, path);
}

void DropCopies(const QString& path) {
  try {
    QDir old(FolderOfCopies(QFileInfo(Real(path))));
    if (!old.exists()) return;
    for (const QString& name : old.entryList(QDir::Files | QDir::Hidden)) old.remove(name);
    QDir().rmdir(old.path());
  } catch (const Failure&) {
    // A loop of links: there is nothing of ours behind it.
  }
}

FileMark MarkOf(const QString& path) {
  const QFileInfo file(path);
  if (!file.isFile()) return {};
  return {file.size(), file.lastModified().toMSecsSinceEpoch()};
}

void ClearReadOnly(const QString& path) {
  QFile file(path);
  const QFileDevice::Permissions permissions = file.permissions();
  if (!(permissions & QFileDevice::WriteUser)) file.setPermissions(permissions | QFileDevice::WriteOwner);
}

}  // namespace kelvo
