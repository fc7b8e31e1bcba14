#pragma once

#include "platform/EventLoop.h"

#include <thread>

namespace kelvo {

/// Sees to it that a program which is ending does end: when this object still lives after `limit`, because a
/// thread hangs on a disk that does not answer, the process ends where it stands, with a failure as its exit
/// code. Any thread.
class EndLimit {
 public:
  explicit EndLimit(Nanoseconds limit);

 private:
  std::jthread watch_;
};

}  // namespace kelvo
