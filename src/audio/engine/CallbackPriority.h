#pragma once

#include <thread>

namespace kelvo {

/// Real-time priority for the thread that makes it, which works for a device. Where the system doesn't grant
/// it directly, the desktop's broker (RealtimeKit) is asked, on a thread of its own: the answer may take its
/// time. A thread that then works for 150 ms without a pause loses the priority again, for the broker demands
/// a bound. Lives on that thread's stack, as long as it runs.
class CallbackPriority {
 public:
  CallbackPriority();
  /// Waits for the broker's answer, three seconds at most.
  ~CallbackPriority() = default;
  CallbackPriority(const CallbackPriority&) = delete;
  CallbackPriority& operator=(const CallbackPriority&) = delete;

  /// True when it was granted directly.
  [[nodiscard]] bool Granted() const { return granted_; }

  /// Asks the broker for `thread` of this process; waits for its answer and returns whether it granted it.
  static bool AskBroker(int thread);

 private:
  bool granted_ = false;
  std::jthread asking_;
};

}  // namespace kelvo
