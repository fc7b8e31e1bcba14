#pragma once

#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace kelvo {

/// Sends signals to a child that runs. Made by whoever starts it; logic thread.
class ChildControl {
 public:
  /// Nothing while the child does not run.
  void Send(int signal) const {
    if (send_) send_(signal);
  }

 private:
  friend class RunningChild;
  std::function<void(int signal)> send_;
};

/// Another program to run: no shell, arguments as they are.
struct ChildCommand {
  QString program;  ///< a name on the PATH or a path
  QStringList arguments;
  QStringList environment;  ///< "NAME=value" lines that are set on top of ours
  QString workingFolder;
  QByteArray input;  ///< its whole standard input
  /// Bytes of each output that are kept for the result, the last ones; below 0: all.
  qsizetype keep = -1;
  std::shared_ptr<ChildControl> control = {};  ///< may be empty
  bool gentle = false;  ///< it gets what others leave of the processors: for long work beside the sound
};

/// How a child ended. `started` false: it could not be run, `error` says why.
struct ChildResult {
  bool started = false;
  bool crashed = false;
  int exitCode = -1;
  QByteArray output;       ///< its standard output
  QByteArray errorOutput;  ///< its standard error
  QString error;
};

/// Runs `command` and gives its output as it comes: `onOutput` gets each piece of standard output, `onError`
/// of standard error (either may be empty). Cancelling the job stops the child: asked first, killed after two
/// seconds. Nothing blocks; in simulated time the child is waited for on the spot. Callbacks that capture
/// something are named before the `co_await` (see Job).
[[nodiscard]] Job<ChildResult> RunChild(EventLoop& loop, ChildCommand command,
                                        std::function<void(const QByteArray&)> onOutput = {},
                                        std::function<void(const QByteArray&)> onError = {});

}  // namespace kelvo
