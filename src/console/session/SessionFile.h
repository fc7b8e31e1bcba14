#pragma once

#include "console/session/SessionLine.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <vector>

namespace kelvo {

/// The files that keep every event of all sessions, one a day, beside the session log. A value; any thread.
struct SessionArchive {
  QString folder;  ///< that of the session log
  QString title;   ///< the program's

  [[nodiscard]] QString FilePath(const QDate& day) const;
  /// The days that have a file, the last one first; none without a folder. Throws Failure. Blocks.
  [[nodiscard]] std::vector<QDate> Days() const;
  /// The events of a day, with what ends were to pull forward pulled; their Time is the seconds since its
  /// midnight. A session that went on into the night is told to its end, or to six in the morning. Broken
  /// lines are passed over. Throws Failure. Blocks.
  [[nodiscard]] std::vector<SessionEvent> ReadDay(const QDate& day) const;

 private:
  [[nodiscard]] std::vector<SessionLine> LinesOf(const QDate& day) const;
};

/// Writes the present session into the archive: what falls out of the list, and what a crash would take with
/// it, is there. Lines are only ever added, each flushed, so a kill at any moment loses no more than the line
/// being written. Owned by the Console; logic thread, the disk off it.
class SessionFile {
 public:
  SessionFile(EventLoop& loop, SessionArchive archive, const QDateTime& sessionStart);

  /// Adds an event to the file of the present day. One that can't be written is noted in the program's log
  /// and stops nothing else.
  void Append(const SessionEvent& event);

  [[nodiscard]] const SessionArchive& Archive() const { return archive_; }

 private:
  [[nodiscard]] Job<> Write(QString path, QByteArray line);

  EventLoop& loop_;
  SessionArchive archive_;
  QDateTime sessionStart_;
  JobList writing_;
};

}  // namespace kelvo
