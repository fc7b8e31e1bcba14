#include "burning/BurnWords.h"

#include <QRegularExpression>

#include <algorithm>

namespace kelvo {

namespace {

constexpr qsizetype kLongestLine = 4096;
constexpr int kMostTrouble = 4;

/// xorriso told to read no settings, to say how far it is, and to do this.
QStringList Xorriso(QStringList commands) {
  return QStringList{QStringLiteral("-no_rc"), QStringLiteral("-pacifier"), QStringLiteral("interval=0.2")} +
         std::move(commands);
}

std::optional<std::int64_t> SectorsBehind(const QByteArray& output, const char* words) {
  const QRegularExpression line(QLatin1StringView(words) + QStringLiteral("\\s*:\\s*(\\d+)s"));
  const QRegularExpressionMatch match = line.match(QString::fromUtf8(output));
  if (!match.hasMatch()) return std::nullopt;
  return match.captured(1).toLongLong();
}

}  // namespace

std::vector<BurnDrive> DrivesIn(const QByteArray& output) {
  // 0  -dev '/dev/sr0' rwrw-- :  'MAKER   ' 'MODEL'
  static const QRegularExpression line(
      QStringLiteral("-dev\\s+'([^']+)'\\s+\\S+\\s*:\\s*'([^']*)'\\s*'([^']*)'"));
  std::vector<BurnDrive> drives;
  for (auto each = line.globalMatch(QString::fromUtf8(output)); each.hasNext();) {
    const QRegularExpressionMatch match = each.next();
    drives.push_back({match.captured(1),
                      QStringLiteral("%1 %2 (%3)")
                          .arg(match.captured(2).trimmed(), match.captured(3).trimmed(), match.captured(1))});
  }
  return drives;
}

BurnMedium MediumIn(const QByteArray& output) {
  BurnMedium medium;
  medium.there = output.contains("Media current:") &&
                 !output.contains("Media current: is not recognizable") &&
                 !output.contains("Media status : is not present");
  medium.blank = output.contains("Media status : is blank");
  static const QRegularExpression again(
      QStringLiteral("Media current:[^\n]*(RW|RAM|BD-RE|overwriteable)|Media status :[^\n]*appendable"));
  medium.writable = medium.blank || again.match(QString::fromUtf8(output)).hasMatch();
  medium.freeSectors = SectorsBehind(output, "Media space").value_or(0);
  return medium;
}

std::optional<std::int64_t> ImageSectorsIn(const QByteArray& output) {
  return SectorsBehind(output, "Image size");
}

std::optional<double> ShareIn(const QByteArray& line) {
  static const QRegularExpression image(QStringLiteral("Writing:.*?(\\d+(?:\\.\\d+)?)%"));
  static const QRegularExpression track(QStringLiteral("Track \\d+:\\s*(\\d+) of\\s+(\\d+) MB written"));
  static const QRegularExpression done(QStringLiteral("UPDATE :.*?(\\d+(?:\\.\\d+)?)% done"));
  const QString text = QString::fromUtf8(line);
  for (const QRegularExpression& each : {image, done}) {
    const QRegularExpressionMatch match = each.match(text);
    if (match.hasMatch()) return std::clamp(match.captured(1).toDouble() / 100, 0.0, 1.0);
  }
  const QRegularExpressionMatch match = track.match(text);
  if (!match.hasMatch() || match.captured(2).toDouble() <= 0) return std::nullopt;
  return std::clamp(match.captured(1).toDouble() / match.captured(2).toDouble(), 0.0, 1.0);
}

bool SaysEqual(const QByteArray& output) {
  return output.contains("Both file objects match") && !output.contains("Differences detected");
}

std::vector<std::int64_t> TrackStartsIn(const QByteArray& output) {
  static const QRegularExpression line(QStringLiteral("track:\\s*(\\d+)\\s+lba:\\s*(-?\\d+)"));
  std::vector<std::int64_t> starts;
  for (auto each = line.globalMatch(QString::fromUtf8(output)); each.hasNext();)
    starts.push_back(each.next().captured(2).toLongLong());
  return starts;
}

QString TroubleIn(const QByteArray& output) {
  QStringList all;
  QStringList troubles;
  for (const QByteArray& each : QByteArray(output).replace('\r', '\n').split('\n')) {
    const QString line = QString::fromUtf8(each).trimmed();
    if (line.isEmpty() || line.contains(QStringLiteral("UPDATE"))) continue;
    all.append(line);
    const bool bad = line.contains(QStringLiteral("FAILURE")) || line.contains(QStringLiteral("FATAL")) ||
                     line.contains(QStringLiteral("SORRY")) || line.contains(QStringLiteral("ABORT"));
    if (bad) troubles.append(line);
  }
  const QStringList& told = troubles.isEmpty() ? all : troubles;
  return told.mid(std::max<qsizetype>(told.size() - kMostTrouble, 0)).join(QLatin1Char('\n'));
}

QStringList ListDrives() {
  return {QStringLiteral("-no_rc"), QStringLiteral("-devices")};
}

QStringList LookAtMedium(const QString& device) {
  return Xorriso({QStringLiteral("-outdev"), device, QStringLiteral("-tell_media_space")});
}

namespace {

/// The image of the folder, not yet written: names of 103 letters for other systems beside the full ones, and
/// links as what they lead to.
QStringList ImageOf(const QString& device, const QString& folder) {
  return Xorriso({QStringLiteral("-outdev"), device, QStringLiteral("-blank"), QStringLiteral("as_needed"),
                  QStringLiteral("-joliet"), QStringLiteral("on"), QStringLiteral("-compliance"),
                  QStringLiteral("joliet_long_names:joliet_long_paths"), QStringLiteral("-follow"),
                  QStringLiteral("on"), QStringLiteral("-volid"), QStringLiteral("KELVO"),
                  QStringLiteral("-map"), folder, QStringLiteral("/")});
}

}  // namespace

QStringList MeasureImage(const QString& device, const QString& folder) {
  QStringList commands = ImageOf(device, folder);
  // Only to measure: nothing may be blanked.
  const qsizetype blank = commands.indexOf(QStringLiteral("-blank"));
  commands.remove(blank, 2);
  return commands + QStringList{QStringLiteral("-print_size"), QStringLiteral("-rollback_end")};
}

QStringList BurnFolder(const QString& device, const QString& folder) {
  return ImageOf(device, folder) + QStringList{QStringLiteral("-commit_eject"), QStringLiteral("none")};
}

QStringList CompareFolder(const QString& device, const QString& folder) {
  return Xorriso(
      {QStringLiteral("-indev"), device, QStringLiteral("-compare_r"), folder, QStringLiteral("/")});
}

QStringList BurnAudio(const QString& device, const QString& cueSheet) {
  return {QStringLiteral("-v"),   QStringLiteral("dev=") + device, QStringLiteral("blank=as_needed"),
          QStringLiteral("-sao"), QStringLiteral("-text"),         QStringLiteral("cuefile=") + cueSheet};
}

QStringList ReadContents(const QString& device) {
  return {QStringLiteral("dev=") + device, QStringLiteral("-toc")};
}

void LineCutter::Take(const QByteArray& piece) {
  rest_ += piece;
  qsizetype from = 0;
  for (qsizetype at = 0; at < rest_.size(); ++at) {
    const bool end = rest_[at] == '\n' || rest_[at] == '\r';
    if (!end && at - from < kLongestLine) continue;
    if (at > from) onLine_(rest_.mid(from, at - from));
    from = end ? at + 1 : at;
  }
  rest_ = rest_.mid(from);
}

}  // namespace kelvo
