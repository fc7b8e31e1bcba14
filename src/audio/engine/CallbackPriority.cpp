#include "audio/engine/CallbackPriority.h"

#include <sched.h>

namespace kelvo {

namespace {

/// Above everything of the desktop, below a sound server of its own.
constexpr int kPriority = 5;

}  // namespace

bool RaiseCallbackPriority() {
  sched_param wanted{};
  wanted.sched_priority = kPriority;
  return ::sched_setscheduler(0, SCHED_RR | SCHED_RESET_ON_FORK, &wanted) == 0;
}

}  // namespace kelvo
