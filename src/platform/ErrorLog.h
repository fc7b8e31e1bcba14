#pragma once

#include "platform/EventLoop.h"

#include <QHash>
#include <QString>

#include <exception>
#include <functional>
#include <stdexcept>
#include <string>

namespace kelvo {

class Prompter;

/// A failure with the facts that the error log writes.
class Failure : public std::runtime_error {
 public:
  /// `number` as the failing call gave it (errno, a library's code; 0 when there is none); `source` names
  /// what failed (a file, a device, a library); `line` is a line mark, 0 for none.
  explicit Failure(const QString& description, int number = 0, QString source = {}, int line = 0);

  [[nodiscard]] int Number() const { return number_; }
  [[nodiscard]] const QString& Source() const { return source_; }
  [[nodiscard]] int Line() const { return line_; }

 private:
  int number_;
  QString source_;
  int line_;
};

/// The one error path of the program: it tells the operator what failed, writes one line to the log file, and
/// the program goes on. Owned by the program's entry; one at a time is installed for basHandleError. Logic
/// thread.
class ErrorLog {
 public:
  /// `filePath` is appended to, one line a failure: date and time, a tab, the text.
  ErrorLog(EventLoop& loop, Prompter& prompter, QString filePath);
  ~ErrorLog();
  ErrorLog(const ErrorLog&) = delete;
  ErrorLog& operator=(const ErrorLog&) = delete;

  void Handle(const std::exception_ptr& failure, const QString& tag);
  /// Writes a line to the log without a message: for what was put right by itself. The same line within an
  /// hour is only counted, so that what fails again and again all night does not fill the disk.
  void Note(const QString& text);

  /// "ERROR " number " in " tag, and what else is known of the failure.
  [[nodiscard]] static QString Compose(const std::exception_ptr& failure, const QString& tag);

 private:
  void Write(const QString& text);

  struct Written {
    Nanoseconds at{0};
    int repeats = 0;  ///< since then, not written
  };

  EventLoop& loop_;
  Prompter& prompter_;
  QString filePath_;
  QHash<QString, Written> written_;
};

/// Handles the exception being caught, or `failure`. `tag` tells the place in the logs (" conc4"). Without an
/// installed ErrorLog it writes to stderr.
void basHandleError(const QString& tag);
void basHandleError(const QString& tag, const std::exception_ptr& failure);
/// Writes a line to the installed log without a message.
void NoteInLog(const QString& text);

/// Runs `work`; any failure goes to basHandleError under `tag`. Returns whether it went through.
template <typename Work>
bool Guarded(const QString& tag, Work&& work) {
  try {
    work();
    return true;
  } catch (...) {
    basHandleError(tag);
    return false;
  }
}

}  // namespace kelvo
