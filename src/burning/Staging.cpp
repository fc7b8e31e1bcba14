#include "burning/Staging.h"

#include "platform/NewFile.h"
#include "platform/Words.h"

#include <QDir>
#include <QFileInfo>

#include <unistd.h>

#include <cerrno>

namespace kelvo {

std::vector<StagedCopy> StagedIn(const QString& folder) {
  std::vector<StagedCopy> copies;
  for (const QFileInfo& each : QDir(folder).entryInfoList(QDir::Files, QDir::Name | QDir::IgnoreCase))
    copies.push_back({each.absoluteFilePath(), each.size()});
  return copies;
}

QString PlaceInStaging(const QString& folder, const QString& name) {
  if (!QDir().mkpath(folder)) FailOn("make the folder", EncodedPath(folder), errno);
  const QString base = BaseName(name);
  const QString ending = name.mid(base.size());
  QString path = folder + QLatin1Char('/') + name;
  for (int number = 1; QFileInfo::exists(path); ++number)
    path = folder + QLatin1Char('/') + base + QLatin1Char('_') + QString::number(number) + ending;
  return path;
}

void DeleteStaged(const QString& path) {
  const QByteArray place = EncodedPath(path);
  if (::unlink(place.constData()) != 0 && errno != ENOENT) FailOn("delete", place, errno);
}

}  // namespace kelvo
