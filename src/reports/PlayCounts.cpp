#include "reports/PlayCounts.h"

#include "platform/ErrorLog.h"
#include "platform/TextFile.h"
#include "reports/Report.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>

namespace kelvo {
namespace {

const QString kAutomatic = QStringLiteral("Auto Play : ");
const QString kManual = QStringLiteral("Manual Play : ");
const QString kBetween = QStringLiteral(" ~ ");

}  // namespace

std::optional<LoggedPlay> LoggedPlay::Parse(const QString& line) {
  LoggedPlay play;
  play.automatic = line.startsWith(kAutomatic);
  if (!play.automatic && !line.startsWith(kManual)) return std::nullopt;
  const qsizetype begin = play.automatic ? kAutomatic.size() : kManual.size();
  const qsizetype end = line.indexOf(kBetween, begin);
  if (end < 0) return std::nullopt;
  const QList<QStringView> clock = QStringView(line).sliced(begin, end - begin).split(QLatin1Char(':'));
  if (clock.size() != 2) return std::nullopt;
  bool hour = false;
  bool minute = false;
  play.at = QTime(clock[0].trimmed().toInt(&hour), clock[1].trimmed().toInt(&minute));
  play.text = ReportLine(line.sliced(end + kBetween.size()));
  if (!hour || !minute || !play.at.isValid() || play.text.isEmpty()) return std::nullopt;
  return play;
}

PlayCounts CountPlays(const std::vector<LogDay>& days) {
  PlayCounts counts;
  QHash<QString, std::size_t> places;
  const auto count = [&](const LoggedPlay& play, const QDate& day) {
    const QDateTime at(day, play.at);
    const QString key = play.text.toUpper();
    const auto known = places.constFind(key);
    if (known == places.constEnd()) {
      places.insert(key, counts.titles.size());
      counts.titles.push_back({play.text, 1, at, at});
    } else {
      PlayCount& title = counts.titles[*known];
      ++title.times;
      title.first = std::min(title.first, at);
      title.last = std::max(title.last, at);
    }
    ++counts.total;
  };
  QSet<QString> read;
  for (const LogDay& day : days) {
    bool found = false;
    for (const QString& file : day.files) {
      // One place may be the other by a link.
      const QString whole = QFileInfo(file).canonicalFilePath();
      if (whole.isEmpty() || read.contains(whole)) continue;
      read.insert(whole);
      try {
        for (const QString& line : TextFile::Read(file).Lines()) {
          if (const std::optional<LoggedPlay> play = LoggedPlay::Parse(line)) count(*play, day.day);
        }
        found = true;
      } catch (const Failure&) {
        counts.unreadable.append(file);
      }
    }
    if (found) ++counts.days;
  }
  return counts;
}

}  // namespace kelvo
