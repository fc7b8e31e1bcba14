#pragma once

#include "platform/EventLoop.h"

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace kelvo {

/// Makes sure that a program which is ending does end: when this object still lives after `limit`, because a
/// thread hangs on a disk that does not answer, the process ends at once. Its exit code is that of a
/// failure, unless all that had to be written is written by then. Any thread.
class EndLimit {
 public:
  explicit EndLimit(Nanoseconds limit);

  /// To be called, from any thread, when nothing is left to be written: what is still waited for can cost
  /// nothing any more, and the process ends with `exitCode` at the limit. May be called when this object is
  /// gone.
  [[nodiscard]] std::function<void()> WhenWritten(int exitCode) const;

 private:
  std::shared_ptr<std::atomic<int>> exitCode_;
  std::jthread watch_;
};

}  // namespace kelvo
