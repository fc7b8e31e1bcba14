#pragma once

#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QString>

namespace kelvo {

/// The day's log of what went on air, a text file for the reports: one line a started track. The file is
/// read-only between two lines. A log that cannot be written is noted in the program's own log and stops
/// nothing else. Owned by the Console; logic thread, the disk off it.
class SessionLog {
 public:
  /// `documents` is the operator's folder of documents, `title` the program's.
  SessionLog(EventLoop& loop, QString documents, QString title);

  /// Appends a line with the present time; `automatic` when the desk plays by itself.
  void LogPlay(const QString& text, bool automatic);

  [[nodiscard]] const QString& Folder() const { return folder_; }
  /// The file with the lines of `day`.
  [[nodiscard]] QString FilePath(const QDate& day) const;

 private:
  [[nodiscard]] QString FileTitle(const QDate& day) const;
  [[nodiscard]] Job<> Write(QDate day, QString line);

  EventLoop& loop_;
  QString folder_;
  QString title_;
  JobList writing_;
};

}  // namespace kelvo
