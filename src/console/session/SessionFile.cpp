#include "console/session/SessionFile.h"

#include "database/FolderListing.h"
#include "platform/AppendLine.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"

#include <QFileInfo>

#include <algorithm>

namespace kelvo {
namespace {

const QString kDayForm = QStringLiteral("dd-MM-yyyy");
const QString kNameMiddle = QStringLiteral(", Session Events ");
const QString kNameEnd = QStringLiteral(".tsv");
constexpr double kDaySeconds = 24 * 3600;
/// A session that goes on over midnight belongs to the evening before until then, in seconds.
constexpr double kNightEnds = kDaySeconds + 6 * 3600;

/// Seconds since the midnight with which `day` began, where the session did.
double SecondsOfDay(const SessionLine& line, const QDate& day) {
  return static_cast<double>(day.daysTo(line.sessionStart.date())) * kDaySeconds +
         line.sessionStart.time().msecsSinceStartOfDay() / 1000.0 + line.event.Time;
}

}  // namespace

QString SessionArchive::FilePath(const QDate& day) const {
  return folder + QLatin1Char('/') + title + kNameMiddle + day.toString(kDayForm) + kNameEnd;
}

std::vector<QDate> SessionArchive::Days() const {
  std::vector<QDate> days;
  if (!QFileInfo(folder).isDir()) return days;
  const QString begin = title + kNameMiddle;
  for (const QString& name : ListFolder(folder, EntryKind::Files).names) {
    if (!name.startsWith(begin) || !name.endsWith(kNameEnd)) continue;
    const QDate day = QDate::fromString(name.sliced(begin.size()).chopped(kNameEnd.size()), kDayForm);
    if (day.isValid()) days.push_back(day);
  }
  std::sort(days.begin(), days.end(), std::greater<>());
  return days;
}

std::vector<SessionLine> SessionArchive::LinesOf(const QDate& day) const {
  std::vector<SessionLine> lines;
  if (!QFileInfo::exists(FilePath(day))) return lines;
  QByteArrayList texts = ReadWholeFile(FilePath(day)).split('\n');
  // What stands behind the last line end was broken off.
  texts.removeLast();
  for (const QByteArray& text : std::as_const(texts)) {
    if (std::optional<SessionLine> line = SessionLine::Parse(text)) lines.push_back(std::move(*line));
  }
  return lines;
}

std::vector<SessionEvent> SessionArchive::ReadDay(const QDate& day) const {
  std::vector<SessionLine> lines = LinesOf(day);
  if (!lines.empty()) {
    const QDateTime evening = lines.back().sessionStart;
    for (SessionLine& line : LinesOf(day.addDays(1))) {
      if (line.sessionStart == evening && SecondsOfDay(line, day) < kNightEnds)
        lines.push_back(std::move(line));
    }
  }
  std::vector<SessionEvent> events;
  QDateTime session;
  for (SessionLine& line : lines) {
    line.event.Time = std::max(SecondsOfDay(line, day), 0.0);
    const bool follows = !events.empty() && session == line.sessionStart;
    if (follows && PullsForward(line.event.Code, events.back().Code)) events.back().Time = line.event.Time;
    session = line.sessionStart;
    events.push_back(std::move(line.event));
  }
  return events;
}

SessionFile::SessionFile(EventLoop& loop, SessionArchive archive, const QDateTime& sessionStart)
    : loop_(loop), archive_(std::move(archive)), sessionStart_(sessionStart) {}

void SessionFile::Append(const SessionEvent& event) {
  writing_.Add(Write(archive_.FilePath(loop_.Now().date()), SessionLine{sessionStart_, event}.Print()));
}

Job<> SessionFile::Write(QString path, QByteArray line) {
  const auto work = [path, line] { AppendWholeLine(path, line); };
  try {
    co_await loop_.Offload(EventLoop::Lane::Files, work);
  } catch (...) {
    NoteInLog(ErrorLog::Compose(std::current_exception(), QStringLiteral(" SessionFile")));
  }
}

}  // namespace kelvo
