#include "database/StagedName.h"

#include "database/InfoFields.h"
#include "platform/Words.h"

#include <QStringList>

namespace kelvo {
namespace {

const QChar kMark = QLatin1Char('#');
constexpr qsizetype kMostBytes = 255;

}  // namespace

QString StagedPath(const QString& utilityFolder, const StagedName& name) {
  const QString album = name.album.isEmpty() ? QStringLiteral(" ") : name.album;
  return utilityFolder + QLatin1Char('/') + name.artist + QLatin1Char('/') + name.title + kMark + name.date +
         kMark + album + kMark + name.extension;
}

StagedFile ReadStagedPath(const QString& path) {
  const QString fileName = path.section(QLatin1Char('/'), -1);
  StagedFile file;
  file.name.artist = path.section(QLatin1Char('/'), -2, -2).trimmed();
  const QStringList fields = fileName.split(kMark);
  if (fields.size() == 4) {
    file.name.title = fields[0].trimmed();
    file.name.date = fields[1].trimmed();
    file.name.album = fields[2].trimmed();
    file.name.extension = fields[3].trimmed();
  } else {
    file.name.title = BaseName(fileName).trimmed();
    file.name.date = kNoDate;
    file.name.album = QStringLiteral("Unknown");
    file.name.extension = fileName.mid(BaseName(fileName).size()).trimmed();
  }
  file.trackName = file.name.title + file.name.extension;
  return file;
}

QString FittingName(const QString& base, const QString& ending) {
  const qsizetype room = kMostBytes - ending.toUtf8().size();
  QString fitting = base.left(kMostBytes);
  const auto endsHalfway = [&fitting] { return !fitting.isEmpty() && fitting.back().isHighSurrogate(); };
  while (fitting.toUtf8().size() > room || endsHalfway()) fitting.chop(1);
  return (fitting.size() < base.size() ? fitting.trimmed() : fitting) + ending;
}

}  // namespace kelvo
