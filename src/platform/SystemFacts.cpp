#include "platform/SystemFacts.h"

#include "platform/ErrorLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QSysInfo>

namespace kelvo {
namespace {

/// The bytes of a line "MemTotal:       16384 kB".
std::int64_t BytesOf(const QByteArray& line) {
  constexpr std::int64_t kKilobyte = 1024;
  return line.mid(line.indexOf(':') + 1).trimmed().split(' ').value(0).toLongLong() * kKilobyte;
}

}  // namespace

MemoryStatus ReadMemoryStatus() {
  MemoryStatus status;
  QFile file(QStringLiteral("/proc/meminfo"));
  if (!file.open(QIODevice::ReadOnly)) return status;
  const QByteArray text = file.readAll();
  for (const QByteArray& line : text.split('\n')) {
    if (line.startsWith("MemTotal:")) status.total = BytesOf(line);
    if (line.startsWith("MemAvailable:")) status.available = BytesOf(line);
  }
  return status;
}

PlatformFacts ReadPlatformFacts() {
  QString name = QSysInfo::kernelType();
  if (!name.isEmpty()) name[0] = name[0].toUpper();
  return {name, QSysInfo::prettyProductName() + QStringLiteral(", kernel ") + QSysInfo::kernelVersion()};
}

std::int64_t FreeBytes(const QString& path) {
  // What is yet to be made will lie on the file system of the nearest folder above it.
  QString existing = QFileInfo(path).absoluteFilePath();
  while (!QFileInfo::exists(existing)) {
    const QString above = QFileInfo(existing).path();
    if (above == existing) return -1;
    existing = above;
  }
  const QStorageInfo storage(existing);
  return storage.isValid() && storage.isReady() ? storage.bytesAvailable() : -1;
}

QString DocumentsFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QString ProgramFolder() {
  QString folder =
      QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/kelvo");
  if (!QDir().mkpath(folder)) throw Failure(QStringLiteral("Cannot make the folder ") + folder, 0, folder);
  return folder;
}

}  // namespace kelvo
