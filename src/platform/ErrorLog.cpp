#include "platform/ErrorLog.h"

#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QFile>
#include <QLoggingCategory>

#include <system_error>

namespace kelvo {

Q_LOGGING_CATEGORY(logErrors, "kelvo.errors")

namespace {

using namespace std::chrono_literals;

/// After so long a line that was written is written again.
constexpr Nanoseconds kSameLineAgain = 1h;
constexpr qsizetype kLinesKnown = 500;

ErrorLog*& Installed() {
  static ErrorLog* log = nullptr;
  return log;
}

}  // namespace

Failure::Failure(const QString& description, int number, QString source, int line)
    : std::runtime_error(description.toStdString()),
      number_(number),
      source_(std::move(source)),
      line_(line) {}

ErrorLog::ErrorLog(EventLoop& loop, Prompter& prompter, QString filePath)
    : loop_(loop), prompter_(prompter), filePath_(std::move(filePath)) {
  Installed() = this;
  SetJobFailureHandler(
      [](const std::exception_ptr& failure) { basHandleError(QStringLiteral(" job"), failure); });
}

ErrorLog::~ErrorLog() {
  Installed() = nullptr;
  SetJobFailureHandler(nullptr);
}

QString ErrorLog::Compose(const std::exception_ptr& failure, const QString& tag) {
  int number = 0;
  int line = 0;
  QString source;
  QString description;
  try {
    std::rethrow_exception(failure);
  } catch (const Failure& known) {
    number = known.Number();
    line = known.Line();
    source = known.Source();
    description = QString::fromStdString(known.what());
  } catch (const std::system_error& system) {
    number = system.code().value();
    source = QString::fromUtf8(system.code().category().name());
    description = QString::fromStdString(system.what());
  } catch (const std::exception& other) {
    description = QString::fromStdString(other.what());
  } catch (...) {
    description = QStringLiteral("unknown failure");
  }
  QString text = QStringLiteral("ERROR %1 in %2").arg(QString::number(number), tag);
  if (!source.isEmpty()) text += QStringLiteral(" (") + source + QLatin1Char(')');
  if (line != 0) text += QStringLiteral(" line ") + QString::number(line);
  return text + QStringLiteral(" : ") + description;
}

void ErrorLog::Handle(const std::exception_ptr& failure, const QString& tag) {
  const QString text = Compose(failure, tag);
  prompter_.Tell({text, {}, Buttons::Ok, PromptIcon::Exclamation});
  Note(text);
}

void ErrorLog::Note(const QString& text) {
  const Nanoseconds now = loop_.Elapsed();
  const auto old = [now](const Written& each) { return each.at + kSameLineAgain <= now; };
  const auto known = written_.constFind(text);
  if (known != written_.constEnd() && !old(*known)) {
    ++written_[text].repeats;
    return;
  }
  const int repeats = known == written_.constEnd() ? 0 : known->repeats;
  if (written_.size() >= kLinesKnown) {
    written_.removeIf([&old](const auto& each) { return old(each.value()); });
    if (written_.size() >= kLinesKnown) written_.clear();
  }
  written_[text] = {now, 0};
  Write(repeats == 0 ? text : text + QStringLiteral(" (and %1 times before)").arg(repeats));
}

void ErrorLog::Write(const QString& text) {
  const QString oneLine =
      QString(text).replace(QLatin1Char('\r'), QString()).replace(QLatin1Char('\n'), QLatin1Char(' '));
  const QByteArray entry = (loop_.Now().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")) + QLatin1Char('\t') +
                            oneLine + QStringLiteral("\r\n"))
                               .toUtf8();
  loop_.RunOffThread(
      EventLoop::Lane::Files,
      [path = filePath_, entry] {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Append) || file.write(entry) != entry.size()) {
          qCWarning(logErrors).noquote()
              << "cannot write" << path << "-" << file.errorString() << "-" << entry.trimmed();
        }
      },
      [] {});
}

void basHandleError(const QString& tag, const std::exception_ptr& failure) {
  if (Installed() != nullptr) {
    Installed()->Handle(failure, tag);
  } else {
    qCWarning(logErrors).noquote() << ErrorLog::Compose(failure, tag);
  }
}

void basHandleError(const QString& tag) {
  basHandleError(tag, std::current_exception());
}

void NoteInLog(const QString& text) {
  if (Installed() != nullptr) {
    Installed()->Note(text);
  } else {
    qCWarning(logErrors).noquote() << text;
  }
}

}  // namespace kelvo
