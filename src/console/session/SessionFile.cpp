#include "console/session/SessionFile.h"

#include "database/FolderListing.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/NewFile.h"

#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

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

void AppendWholeLine(const QString& path, const QByteArray& line) {
  const QString folder = QFileInfo(path).path();
  if (!QDir().mkpath(folder)) throw Failure(QStringLiteral("Cannot make the folder ") + folder, 0, folder);
  const QByteArray encoded = EncodedPath(path);
  const Descriptor file(
      ::open(encoded.constData(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666));
  struct stat facts {};
  if (!file.Valid() || ::fstat(file.Number(), &facts) != 0) FailOn("write", encoded, errno);
  if (!S_ISREG(facts.st_mode)) FailOn("write", encoded, EINVAL);
  char last = '\n';
  if (facts.st_size > 0 && ::pread(file.Number(), &last, 1, facts.st_size - 1) != 1)
    FailOn("read", encoded, errno);
  const QByteArray bytes = last == '\n' ? line : '\n' + line;
  for (qsizetype written = 0; written < bytes.size();) {
    const ssize_t some =
        ::write(file.Number(), bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
    if (some < 0 && errno == EINTR) continue;
    if (some < 0) {
      const int error = errno;
      // Without it the line is broken, and passed over: no worse.
      (void)!::ftruncate(file.Number(), facts.st_size);
      FailOn("write", encoded, error);
    }
    written += some;
  }
  if (::fsync(file.Number()) != 0) FailOn("flush", encoded, errno);
}

}  // namespace kelvo
