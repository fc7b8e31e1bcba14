#include "database/TrackInfo.h"

#include <QDir>
#include <QFileInfo>

namespace kelvo {

QString TrackInfoPath(const Paths& paths, const QString& baseName) {
  return paths(Paths::Info) + QLatin1Char('/') + baseName + QStringLiteral(".kif");
}

QString FindFile(const QString& path) {
  const QFileInfo wanted(path);
  if (wanted.exists()) return path;
  const QDir folder = wanted.dir();
  const QString name = wanted.fileName().toUpper();
  const QStringList entries = folder.entryList(QDir::Files | QDir::Hidden, QDir::NoSort);
  for (const QString& entry : entries) {
    if (entry.toUpper() == name) return folder.filePath(entry);
  }
  return {};
}

TextFile ReadTrackInfo(const Paths& paths, const QString& baseName) {
  const QString path = TrackInfoPath(paths, baseName);
  const QString found = FindFile(path);
  return TextFile::Read(found.isEmpty() ? path : found);
}

void WriteTrackInfo(const Paths& paths, const QString& baseName, const TextFile& lines) {
  const QString path = TrackInfoPath(paths, baseName);
  const QString found = FindFile(path);
  lines.Write(found.isEmpty() ? path : found);
}

QString ArtistsFromName(const QString& baseName) {
  const qsizetype dash = baseName.indexOf(QLatin1Char('-'));
  if (dash < 2) return kAllArtists;
  return kAllArtists + QLatin1Char(',') + baseName.left(dash).trimmed();
}

TextFile DefaultTrackInfo(const QString& baseName, double durationSeconds, const TrackDefaults& defaults,
                          const QStringList& comments) {
  return TextFile(QStringList{
                      kAllCategories,
                      ArtistsFromName(baseName),
                      kAllAlbums,
                      QStringLiteral("0000-xxx"),
                      QStringLiteral("?"),
                      QStringLiteral("?"),
                      QString::number(defaults.DefaultFade),
                      QString::number(defaults.DefaultDelta),
                      QString::number(defaults.DefaultFadeSpeed),
                      QString::number(defaults.DefaultStartType),
                      QString::number(defaults.DefaultEndType),
                      QStringLiteral("?"),
                      DurationText(durationSeconds),
                  } +
                  comments);
}

void CreateDefaultTrackInfo(const Paths& paths, const QString& baseName, double durationSeconds,
                            const TrackDefaults& defaults, const QStringList& comments) {
  DefaultTrackInfo(baseName, durationSeconds, defaults, comments).Write(TrackInfoPath(paths, baseName));
}

QStringList ReplacedFileComments(const QString& title, const QString& date) {
  return {title + QStringLiteral(" Replaced This File On ") + date, QStringLiteral("Please Re-Edit !")};
}

QStringList References(const QString& line) {
  QStringList names = line.split(QLatin1Char(','));
  names.removeFirst();
  names.removeIf([](const QString& name) { return name.isEmpty() || name.startsWith(QLatin1Char('~')); });
  return names;
}

QString CompletePlayMode(const QString& line) {
  switch (line.count(QLatin1Char(','))) {
    case 0:
      return line + QStringLiteral(",1,1");
    case 1:
      return line + QStringLiteral(",1");
    default:
      return line;
  }
}

QString DurationText(double seconds) {
  return QString::number(seconds, 'g', 12);
}

}  // namespace kelvo
