#include "console/recorder/RecordingPlace.h"

#include "platform/ErrorLog.h"
#include "platform/SystemFacts.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace kelvo {

namespace {

constexpr qsizetype kMostListed = 100;
const QString kBegins = QStringLiteral("On air ");
const std::array kEndings{QStringLiteral(".flac"), QStringLiteral(".wav"), QStringLiteral(".cue")};

}  // namespace

RecordingPlace PlaceForRecording(const QString& folder, const QDateTime& now, RecordingFile::Kind kind) {
  if (!QDir().mkpath(folder))
    throw Failure(QStringLiteral("The folder %1 can't be made.").arg(folder), 0, folder);
  const QString first = QDir(folder).filePath(kBegins + now.toString(QStringLiteral("yyyy-MM-dd HH-mm-ss")));
  const auto taken = [](const QString& name) {
    return std::any_of(kEndings.begin(), kEndings.end(),
                       [&name](const QString& ending) { return QFileInfo::exists(name + ending); });
  };
  QString name = first;
  for (int number = 2; taken(name); ++number) name = first + QStringLiteral(" (%1)").arg(number);
  return {name + kEndings[kind == RecordingFile::Kind::Flac ? 0 : 1], FreeBytes(folder)};
}

std::vector<KeptRecording> RecordingsIn(const QString& folder) {
  static const QRegularExpression ours(
      QLatin1Char('^') + kBegins +
      QStringLiteral("\\d{4}-\\d\\d-\\d\\d \\d\\d-\\d\\d-\\d\\d( \\(\\d+\\))?\\.(flac|wav)$"));
  // The name tells the time, so the last by name is the latest.
  const QStringList names = QDir(folder).entryList(QDir::Files, QDir::Name | QDir::Reversed).filter(ours);
  std::vector<KeptRecording> found;
  for (const QString& name : names.first(std::min(names.size(), kMostListed))) {
    const QString path = QDir(folder).filePath(name);
    found.push_back({name, path, QFileInfo(path).size(), RecordedSeconds(path)});
  }
  return found;
}

QString SizeText(std::int64_t bytes) {
  constexpr double kStep = 1024;
  const double kilobytes = static_cast<double>(bytes) / kStep;
  if (kilobytes < kStep) return QStringLiteral("%1 kB").arg(kilobytes, 0, 'f', 0);
  if (kilobytes < kStep * kStep) return QStringLiteral("%1 MB").arg(kilobytes / kStep, 0, 'f', 0);
  return QStringLiteral("%1 GB").arg(kilobytes / kStep / kStep, 0, 'f', 1);
}

}  // namespace kelvo
