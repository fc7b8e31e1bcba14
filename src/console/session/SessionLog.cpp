#include "console/session/SessionLog.h"

#include "platform/ErrorLog.h"
#include "platform/TextFile.h"
#include "platform/Words.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>

namespace kelvo {

Q_LOGGING_CATEGORY(logOnAir, "kelvo.console.onair", QtWarningMsg)

namespace {

const QString kFolder = QStringLiteral("Kelvo2007 - Reports/Sessions");
constexpr qsizetype kRuleLength = 61;

constexpr QFile::Permissions kWriters =
    QFile::WriteOwner | QFile::WriteUser | QFile::WriteGroup | QFile::WriteOther;

/// Opens the log for a line and protects it again when that is done, also when it went wrong.
class Unprotected {
 public:
  explicit Unprotected(const QString& path) : path_(path) {
    if (QFile::exists(path_)) QFile::setPermissions(path_, QFile::permissions(path_) | QFile::WriteOwner);
  }
  ~Unprotected() { QFile::setPermissions(path_, QFile::permissions(path_) & ~kWriters); }
  Unprotected(const Unprotected&) = delete;
  Unprotected& operator=(const Unprotected&) = delete;

 private:
  const QString path_;
};

/// A line break in a file's name would make two lines of one play.
QString OneLine(const QString& text) {
  QString line = text;
  return line.replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
}

void AppendLine(const QString& path, const QString& header, const QString& line) {
  const QString folder = QFileInfo(path).path();
  if (!QDir().mkpath(folder)) throw Failure(QStringLiteral("Cannot make the folder ") + folder, 0, folder);
  const Unprotected opened(path);
  // Whole, so that a title beyond the code page takes the file to another encoding and not to question marks.
  TextFile log = QFile::exists(path) ? TextFile::Read(path)
                                     : TextFile({header, QString(kRuleLength, QLatin1Char('-')), QString()});
  log.Append(line);
  log.Write(path);
}

}  // namespace

SessionLog::SessionLog(EventLoop& loop, QString documents, QString title)
    : loop_(loop), folder_(QDir(documents).filePath(kFolder)), title_(std::move(title)) {}

QString SessionLog::FileTitle(const QDate& day) const {
  const QString name = title_ + QStringLiteral(", Session Log ") +
                       day.toString(QStringLiteral("dd/MM/yyyy")) + QStringLiteral(".txt");
  return QString(name)
      .replace(QLatin1Char('/'), QLatin1Char('-'))
      .replace(QLatin1Char(':'), QLatin1Char('-'));
}

QString SessionLog::FilePath(const QDate& day) const {
  return folder_ + QLatin1Char('/') + FileTitle(day);
}

void SessionLog::LogPlay(const QString& text, bool automatic) {
  qCInfo(logOnAir).noquote() << text;
  const QDateTime now = loop_.Now();
  const QString line = (automatic ? QStringLiteral("Auto Play : ") : QStringLiteral("Manual Play : ")) +
                       QString::number(now.time().hour()) + QStringLiteral(" : ") +
                       Format00(now.time().minute()) + QStringLiteral(" ~ ") + OneLine(text);
  writing_.Add(Write(now.date(), line));
}

Job<> SessionLog::Write(QDate day, QString line) {
  const QString header = FileTitle(day) + QStringLiteral(" ( ") + title_ + QStringLiteral(" ) ");
  const auto work = [path = FilePath(day), header, line] { AppendLine(path, header, line); };
  try {
    co_await loop_.Offload(EventLoop::Lane::Files, work);
  } catch (...) {
    NoteInLog(ErrorLog::Compose(std::current_exception(), QStringLiteral(" LogPlay")));
  }
}

}  // namespace kelvo
