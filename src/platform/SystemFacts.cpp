#include "platform/SystemFacts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
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

std::vector<DisplayMode> ReadDisplayModes(const QString& folder) {
  std::vector<DisplayMode> modes;
  const QDir connectors(folder);
  const QStringList names = connectors.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
  for (const QString& name : names) {
    QFile file(connectors.filePath(name + QStringLiteral("/modes")));
    if (!file.open(QIODevice::ReadOnly)) continue;
    // Lines such as "1920x1080" and "1920x1080i".
    static const QRegularExpression size(QStringLiteral("^([0-9]+)x([0-9]+)"));
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
      const QRegularExpressionMatch match = size.match(QString::fromUtf8(line));
      if (match.hasMatch()) modes.push_back({match.captured(1).toInt(), match.captured(2).toInt()});
    }
  }
  return modes;
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
  return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/kelvo");
}

QString CacheFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + QStringLiteral("/kelvo");
}

}  // namespace kelvo
