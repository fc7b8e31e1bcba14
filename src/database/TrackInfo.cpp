#include "database/TrackInfo.h"

#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <cerrno>

namespace kelvo {

namespace {

/// Where the file is on disk, or would be.
QString PlaceOf(const QString& path) {
  const QString found = FindFile(path);
  return found.isEmpty() ? path : found;
}

QString OneLine(QString text) {
  return text.replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
}

}  // namespace

void TrackInfo::SetText(InfoLine::Line line, const QString& text) {
  lines_.SetLine(line, OneLine(text));
}

TrackPlaySettings TrackInfo::Play(const TrackDefaults& defaults) const {
  return {Get(InfoFields::PlayMode), Get(InfoFields::FadePosition), Get(InfoFields::FadeSpeed),
          Get(InfoFields::StartStyle).value_or(0),
          Get(InfoFields::EndStyle).value_or(defaults.DefaultEndType)};
}

void TrackInfo::CompletePlayLines() {
  Set(InfoFields::PlayMode, Get(InfoFields::PlayMode));
  Set(InfoFields::FadePosition, Get(InfoFields::FadePosition));
  Set(InfoFields::FadeSpeed, Get(InfoFields::FadeSpeed));
}

QStringList TrackInfo::Comments() const {
  return lines_.Lines().mid(InfoLine::Comments);
}

void TrackInfo::SetComments(const QString& text) {
  static const QRegularExpression lineEnd(QStringLiteral("\r\n|\r|\n"));
  const QString trimmed = text.trimmed();
  const QStringList comments =
      trimmed.isEmpty() ? QStringList(QStringLiteral("No Comments")) : trimmed.split(lineEnd);
  lines_.RemoveFrom(InfoLine::Comments);
  for (const QString& comment : comments) AddComment(comment);
}

void TrackInfo::AddComment(const QString& line) {
  while (lines_.Count() < kFixedInfoLines) lines_.Append({});
  lines_.Append(OneLine(line));
}

void TrackInfo::AddMissing(const TrackInfo& other) {
  for (qsizetype line = lines_.Count(); line < kFixedInfoLines; ++line)
    lines_.Append(other.lines_.Line(line));
}

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

std::optional<TrackInfo> ReadTrackInfo(const QString& path) {
  const QString found = FindFile(path);
  if (found.isEmpty()) return std::nullopt;
  return TrackInfo(TextFile::Read(found));
}

void WriteTrackInfo(const QString& path, const TrackInfo& info) {
  const QString place = PlaceOf(path);
  if (!ReplaceExistingFile(place, info.ToBytes()))
    throw Failure(QStringLiteral("Could Not Save info File !"), ENOENT, place);
}

void CreateTrackInfo(const QString& path, const TrackInfo& info) {
  ReplaceFile(PlaceOf(path), info.ToBytes());
}

ReferenceLine ArtistsFromName(const QString& baseName) {
  const qsizetype dash = baseName.indexOf(QLatin1Char('-'));
  if (dash < 2) return {kAllArtists, {}};
  return {kAllArtists, {baseName.left(dash).trimmed()}};
}

TrackInfo DefaultTrackInfo(const QString& baseName, double durationSeconds, const TrackDefaults& defaults,
                           const QStringList& comments) {
  TrackInfo info;
  info.SetText(InfoLine::Categories, kAllCategories);
  info.Set(InfoFields::Artists, ArtistsFromName(baseName));
  info.SetText(InfoLine::Albums, kAllAlbums);
  info.SetText(InfoLine::ReleaseDate, kNoDate);
  info.Set(InfoFields::Bpm, std::nullopt);
  info.Set(InfoFields::HiPos, std::nullopt);
  // The short form: one number a line.
  info.SetText(InfoLine::PlayMode, QString::number(defaults.DefaultFade));
  info.SetText(InfoLine::FadePosition, QString::number(defaults.DefaultDelta));
  info.SetText(InfoLine::FadeSpeed, QString::number(defaults.DefaultFadeSpeed));
  info.Set(InfoFields::StartStyle, defaults.DefaultStartType);
  info.Set(InfoFields::EndStyle, defaults.DefaultEndType);
  info.Set(InfoFields::GainRecord, std::nullopt);
  info.Set(InfoFields::DurationSeconds, durationSeconds);
  for (const QString& comment : comments) info.AddComment(comment);
  return info;
}

QStringList ReplacedFileComments(const QString& title, const QString& date) {
  return {title + QStringLiteral(" Replaced This File On ") + date, QStringLiteral("Please Re-Edit !")};
}

}  // namespace kelvo
