#include "platform/ErrorLog.h"

#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <filesystem>
#include <mutex>
#include <system_error>

namespace kelvo {

Q_LOGGING_CATEGORY(logErrors, "kelvo.errors")

namespace {

using namespace std::chrono_literals;

constexpr Nanoseconds kSameLineAgain = 1h;
constexpr int kSameLineWritten = 10;
constexpr qsizetype kLinesKnown = 500;
constexpr qsizetype kLongestLine = 4000;
constexpr qint64 kMostBytes = qint64{4} << 20;
constexpr int kMostOnStderr = 100;

ErrorLog*& Installed() {
  thread_local ErrorLog* log = nullptr;
  return log;
}

/// What is known of a failure.
struct Facts {
  int number = 0;
  int line = 0;
  QString source;
  QString description;
};

Facts FactsOf(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const Failure& known) {
    return {known.Number(), known.Line(), known.Source(), QString::fromStdString(known.what())};
  } catch (const std::system_error& system) {
    return {system.code().value(), 0, QString::fromUtf8(system.code().category().name()),
            QString::fromStdString(system.what())};
  } catch (const std::exception& other) {
    return {0, 0, {}, QString::fromStdString(other.what())};
  } catch (...) {
    return {0, 0, {}, QStringLiteral("unknown failure")};
  }
}

}  // namespace

class ErrorLog::File {
 public:
  explicit File(QString path) : path_(std::move(path)) {}

  [[nodiscard]] const QString& Path() const { return path_; }

  /// Returns whether a write has to be asked for: none is on its way.
  bool Add(const QByteArray& line) {
    const std::lock_guard lock(waitingMutex_);
    const bool first = waiting_.isEmpty();
    // A disk that hangs meets a flood: the first lines tell what began.
    if (waiting_.size() < kMostBytes) waiting_ += line;
    return first;
  }

  /// Appends what waits. Gives what went wrong; empty when nothing did.
  QString WriteWaiting() {
    const std::lock_guard lock(fileMutex_);
    QByteArray lines;
    {
      const std::lock_guard waitingLock(waitingMutex_);
      lines.swap(waiting_);
    }
    if (lines.isEmpty() || path_.isEmpty()) return {};
    QDir().mkpath(QFileInfo(path_).path());
    if (QFileInfo(path_).size() + lines.size() > kMostBytes) {
      std::error_code fails;
      std::filesystem::rename(path_.toStdString(), path_.toStdString() + ".old", fails);
    }
    QFile file(path_);
    const bool written = file.open(QIODevice::WriteOnly | QIODevice::Append) &&
                         file.write(lines) == lines.size() && file.flush();
    if (written) return {};
    SayOnStderr(lines);
    return file.errorString();
  }

 private:
  void SayOnStderr(const QByteArray& lines) {
    const QList<QByteArray> each = lines.trimmed().split('\n');
    for (const QByteArray& line : each) {
      if (onStderr_ > kMostOnStderr) return;
      if (onStderr_++ == kMostOnStderr) {
        qCWarning(logErrors) << "More lines come, which are not shown";
      } else {
        qCWarning(logErrors).noquote() << line.trimmed();
      }
    }
  }

  const QString path_;
  std::mutex waitingMutex_;
  QByteArray waiting_;
  std::mutex fileMutex_;
  int onStderr_ = 0;
};

Failure::Failure(const QString& description, int number, QString source, int line)
    : std::runtime_error(description.toStdString()),
      number_(number),
      source_(std::move(source)),
      line_(line) {}

ErrorLog::ErrorLog(EventLoop& loop, Prompter& prompter, QString filePath)
    : loop_(loop),
      prompter_(prompter),
      file_(std::make_shared<File>(std::move(filePath))),
      before_(std::exchange(Installed(), this)) {
  SetJobFailureHandler(
      [](const std::exception_ptr& failure) { basHandleError(QStringLiteral(" job"), failure); });
}

ErrorLog::~ErrorLog() {
  Flush();
  Installed() = before_;
  if (before_ == nullptr) SetJobFailureHandler(nullptr);
}

QString ErrorLog::Compose(const std::exception_ptr& failure, const QString& tag) {
  const Facts facts = FactsOf(failure);
  QString text = QStringLiteral("ERROR %1 in %2").arg(QString::number(facts.number), tag);
  if (!facts.source.isEmpty()) text += QStringLiteral(" (") + facts.source + QLatin1Char(')');
  if (facts.line != 0) text += QStringLiteral(" line ") + QString::number(facts.line);
  return text + QStringLiteral(" : ") + facts.description;
}

QString ErrorLog::Words(const std::exception_ptr& failure, const QString& what) {
  const Facts facts = FactsOf(failure);
  QString words = what + QStringLiteral("\r\n") + facts.description;
  const bool isFile = facts.source.startsWith(QLatin1Char('/'));
  if (isFile && !words.contains(facts.source)) words += QStringLiteral("\r\n") + facts.source;
  return words;
}

QString ErrorLog::Describe(const std::exception_ptr& failure) {
  return FactsOf(failure).description;
}

void ErrorLog::Handle(const std::exception_ptr& failure, const QString& tag, const QString& what) {
  const QString text = Compose(failure, tag);
  prompter_.Tell({what.isEmpty() ? text : Words(failure, what), {}, Buttons::Ok, PromptIcon::Exclamation});
  Note(text);
}

void ErrorLog::Note(const QString& text) {
  const Nanoseconds now = loop_.Elapsed();
  TellGathered(now - kSameLineAgain);
  if (known_.size() >= kLinesKnown && !known_.contains(text)) TellGathered(now);
  Known& known = known_[text];
  if (known.written == 0) known.since = now;
  if (known.written == kSameLineWritten) {
    ++known.gathered;
    return;
  }
  ++known.written;
  Write(text);
}

void ErrorLog::TellGathered(Nanoseconds time) {
  known_.removeIf([this, time](const auto& each) {
    if (each.value().since > time) return false;
    if (each.value().gathered > 0) {
      Write(each.key() + QStringLiteral(" (and %1 times more)").arg(each.value().gathered));
    }
    return true;
  });
}

void ErrorLog::Write(const QString& text) {
  const QString oneLine = QString(text)
                              .left(kLongestLine)
                              .replace(QLatin1Char('\r'), QString())
                              .replace(QLatin1Char('\n'), QLatin1Char(' '));
  const QByteArray entry = (loop_.Now().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")) + QLatin1Char('\t') +
                            oneLine + QStringLiteral("\r\n"))
                               .toUtf8();
  if (!file_->Add(entry)) return;
  const auto trouble = std::make_shared<QString>();
  loop_.RunOffThread(
      EventLoop::Lane::Files, [file = file_, trouble] { *trouble = file->WriteWaiting(); },
      [this, trouble] {
        if (Installed() == this) Written(*trouble);
      });
}

void ErrorLog::Written(const QString& trouble) {
  if (trouble.isEmpty() || std::exchange(toldTrouble_, true)) return;
  Prompt message;
  message.text = QStringLiteral("The Error Log %1 Cannot Be Written !\r\n%2").arg(file_->Path(), trouble);
  message.icon = PromptIcon::Exclamation;
  prompter_.Tell(message);
}

void ErrorLog::Flush() {
  TellGathered(loop_.Elapsed());
  file_->WriteWaiting();
}

void basHandleError(const QString& tag, const std::exception_ptr& failure, const QString& what) {
  if (Installed() != nullptr) {
    Installed()->Handle(failure, tag, what);
  } else {
    qCWarning(logErrors).noquote() << ErrorLog::Compose(failure, tag);
  }
}

void basHandleError(const QString& tag, const QString& what) {
  basHandleError(tag, std::current_exception(), what);
}

void NoteInLog(const QString& text) {
  if (Installed() != nullptr) {
    Installed()->Note(text);
  } else {
    qCWarning(logErrors).noquote() << text;
  }
}

}  // namespace kelvo
