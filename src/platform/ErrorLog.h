#pragma once

#include "platform/EventLoop.h"

#include <QHash>
#include <QString>

#include <exception>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

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
/// the program goes on. Owned by the program's entry. basHandleError uses the one that was made last on its
/// thread; when that goes, the one before. Logic thread, the disk off it.
///
/// What fails again and again does not fill the disk: the same line is written ten times within an hour and
/// then only counted, and the count is written when it goes on after that hour or the log closes. A file that
/// has grown to 4 MB becomes FILE.old, in the place of the one before. When the file cannot be written the
/// operator sees one message, and the lines go to stderr, a hundred of them at most.
class ErrorLog {
 public:
  /// `filePath` is appended to, one line a failure: date and time, a tab, the text. Empty: no line is kept.
  ErrorLog(EventLoop& loop, Prompter& prompter, QString filePath);
  /// Flushes.
  ~ErrorLog();
  ErrorLog(const ErrorLog&) = delete;
  ErrorLog& operator=(const ErrorLog&) = delete;

  /// `what` could not be done, in words for the operator: then the message is Words, and number and tag are
  /// in the log alone.
  void Handle(const std::exception_ptr& failure, const QString& tag, const QString& what = {});
  /// Writes a line to the log without a message: for what was put right by itself.
  void Note(const QString& text);
  /// Writes what is not on disk yet, and the counts, before it returns. For the end of the program.
  void Flush();

  /// "ERROR " number " in " tag, and what else is known of the failure.
  [[nodiscard]] static QString Compose(const std::exception_ptr& failure, const QString& tag);
  /// What could not be done, why, and with which file where neither tells it.
  [[nodiscard]] static QString Words(const std::exception_ptr& failure, const QString& what);
  /// What is known of the failure, in its own words.
  [[nodiscard]] static QString Describe(const std::exception_ptr& failure);

 private:
  /// The file, on whatever thread.
  class File;
  struct Known {
    Nanoseconds since{0};
    int written = 0;
    int gathered = 0;  ///< not written any more
  };
  void Write(const QString& text);
  void Written(const QString& trouble);
  /// Writes the counts of lines that were first seen before `time`, and forgets those lines.
  void TellGathered(Nanoseconds time);

  EventLoop& loop_;
  Prompter& prompter_;
  std::shared_ptr<File> file_;
  ErrorLog* before_;  ///< of this thread
  QHash<QString, Known> known_;
  bool toldTrouble_ = false;
};

/// Handles the exception being caught, or `failure`, in its thread's log. `tag` tells the place (" conc4"),
/// `what` the operator what could not be done. Without an installed ErrorLog it writes to stderr.
void basHandleError(const QString& tag, const QString& what = {});
void basHandleError(const QString& tag, const std::exception_ptr& failure, const QString& what = {});
/// Writes a line to the installed log without a message.
void NoteInLog(const QString& text);

/// Runs `work`; any failure goes to basHandleError. Returns whether it went through.
template <typename Work>
bool Guarded(const QString& tag, const QString& what, Work&& work) {
  try {
    work();
    return true;
  } catch (...) {
    basHandleError(tag, what);
    return false;
  }
}
template <typename Work>
bool Guarded(const QString& tag, Work&& work) {
  return Guarded(tag, QString(), std::forward<Work>(work));
}

}  // namespace kelvo
