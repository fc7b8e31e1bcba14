#include "console/session/SessionFile.h"

#include "database/FolderListing.h"
#include "database/GroupElement.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/NewFile.h"
#include "platform/Words.h"

#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>

namespace kelvo {
namespace {

enum Field : qsizetype { kStart, kClock, kCode, kDeck, kFade, kSpeed, kPos, kLength, kPath, kEnd, kFields };

constexpr char kEndMark[] = ".";
const QString kDayForm = QStringLiteral("dd-MM-yyyy");
const QString kNameMiddle = QStringLiteral(", Session Events ");
const QString kNameEnd = QStringLiteral(".tsv");
constexpr double kDaySeconds = 24 * 3600;
/// A session that goes on over midnight belongs to the evening before until then, in seconds.
constexpr double kNightEnds = kDaySeconds + 6 * 3600;

/// A path without the characters that end a field or a line.
QByteArray Escaped(const QString& path) {
  return path.toUtf8().replace("%", "%25").replace("\t", "%09").replace("\n", "%0A").replace("\r", "%0D");
}

QString Unescaped(const QByteArray& text) {
  return QString::fromUtf8(
      QByteArray(text).replace("%0D", "\r").replace("%0A", "\n").replace("%09", "\t").replace("%25", "%"));
}

/// Seconds since the midnight with which `day` began, where the session did.
double SecondsOfDay(const SessionLine& line, const QDate& day) {
  return static_cast<double>(day.daysTo(line.sessionStart.date())) * kDaySeconds +
         line.sessionStart.time().msecsSinceStartOfDay() / 1000.0 + line.event.Time;
}

}  // namespace

std::optional<SessionLine> SessionLine::Parse(const QByteArray& line) {
  const QList<QByteArray> fields = line.split('\t');
  if (fields.size() != kFields || fields[kEnd] != kEndMark) return std::nullopt;
  SessionLine read;
  read.sessionStart = QDateTime::fromString(QString::fromLatin1(fields[kStart]), Qt::ISODateWithMs);
  bool ok = false;
  read.event.Time = fields[kClock].toDouble(&ok);
  if (!ok || !read.sessionStart.isValid() || !(std::abs(read.event.Time) < 1e8)) return std::nullopt;
  // All but the clock's fraction is what an element of a group playlist holds: one reader judges both.
  const std::optional<GroupElement> element =
      GroupElement::Parse(QStringLiteral("0,0:00,0,%1,%2,%3,%4,%5,%6")
                              .arg(QString::fromLatin1(fields[kDeck]), QString::fromLatin1(fields[kFade]),
                                   QString::fromLatin1(fields[kSpeed]), QString::fromLatin1(fields[kCode]),
                                   QString::fromLatin1(fields[kPos]), QString::fromLatin1(fields[kLength])));
  if (!element || element->code == SessionCode::Repeat) return std::nullopt;
  SessionEvent& event = read.event;
  event.OnDeck = DeckOfPlayer(element->deck);
  event.FadeType = element->fade;
  event.Speed = element->speed;
  event.Code = element->code;
  event.Pos = element->position;
  event.Length = element->length;
  event.Path = Unescaped(fields[kPath]);
  event.Description = SessionDescription(event.Code, BaseName(QFileInfo(event.Path).fileName()));
  return read;
}

QByteArray SessionLine::Print() const {
  const QDateTime start = sessionStart.toOffsetFromUtc(sessionStart.offsetFromUtc());
  QByteArrayList fields(kFields);
  fields[kStart] = start.toString(Qt::ISODateWithMs).toLatin1();
  fields[kClock] = QByteArray::number(event.Time, 'f', 3);
  fields[kCode] = event.CodeWords().toLatin1();
  fields[kDeck] = event.DeckWords().toLatin1();
  fields[kFade] = event.FadeNumber().toLatin1();
  fields[kSpeed] = event.SpeedWords().toLatin1();
  fields[kPos] = event.PosWords().toLatin1();
  fields[kLength] = event.LengthWords().toLatin1();
  fields[kPath] = Escaped(event.Path);
  fields[kEnd] = kEndMark;
  return fields.join('\t') + '\n';
}

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
