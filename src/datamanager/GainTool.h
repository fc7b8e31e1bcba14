#pragma once

#include "datamanager/GainOutput.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace kelvo {

/// The operator's hand on what is under way for one file: a call of the tool, a copy, a look. The latest one
/// that began puts its end here. Owned by the worker; logic thread.
class GainStop {
 public:
  /// Ends what is under way, and everything that begins later.
  void Stop();
  [[nodiscard]] bool Stopped() const { return stopped_; }
  /// What ends the present piece of work; called at once where the stop came before.
  void Arm(std::function<void()> end);
  void Disarm() { end_ = nullptr; }

 private:
  std::function<void()> end_;
  bool stopped_ = false;
};

/// The measuring tool mp3gain, a child process for each call. Whatever it does (hang, write without end, lie,
/// die), a call ends, and what it wrote is judged by its fields. A value; logic thread.
class GainTool {
 public:
  struct Limits {
    /// A tool that has written nothing for so long hangs.
    Nanoseconds silence = std::chrono::minutes(2);
    /// One that writes more has gone mad.
    qsizetype bytes = qsizetype{1} << 20;
  };
  enum class End { Done, NotStarted, Hung, Flooded, Stopped };

  /// `program`: a path, or a name on the PATH.
  GainTool(EventLoop& loop, QString program) : GainTool(loop, std::move(program), Limits()) {}
  GainTool(EventLoop& loop, QString program, Limits limits)
      : loop_(&loop), program_(std::move(program)), limits_(limits) {}
  /// The one in the program's folder, or else the one that is installed.
  [[nodiscard]] static QString Find(const QString& programFolder);

  /// What an earlier measurement left in the file. `record` is none where the tool gave no answer.
  struct Tags {
    End end = End::Done;
    std::optional<Mp3Info> record = {};
  };
  [[nodiscard]] Job<Tags> ReadTags(QString path, GainStop& stop) const;

  struct Analysis {
    End end = End::Done;
    AnalysisAnswer answer = {};
  };
  /// Measures the file. Reads only: neither the file nor its tags change. `onPercent` hears how far it is.
  [[nodiscard]] Job<Analysis> Analyse(QString path, QString trackName, GainStop& stop,
                                      std::function<void(int)> onPercent) const;

  struct Applied {
    End end = End::Done;
    ApplyWords words = ApplyWords::Nothing;
    QString said = {};    ///< what else it wrote, for the log
    bool failed = false;  ///< it died
  };
  /// Changes the gain of the file by so many steps, in the file itself: the tool's own temporary file would
  /// have the name of one that may be the operator's. Only for a file that nobody else knows.
  [[nodiscard]] Job<Applied> Apply(QString path, int steps, GainStop& stop) const;

 private:
  struct Call {
    End end = End::Done;
    QByteArray output = {};
    QByteArray errorOutput = {};
    bool failed = false;
  };
  [[nodiscard]] Job<Call> Run(QStringList arguments, GainStop& stop,
                              std::function<void(const QByteArray&)> onError) const;

  EventLoop* loop_;
  QString program_;
  Limits limits_;
};

}  // namespace kelvo
