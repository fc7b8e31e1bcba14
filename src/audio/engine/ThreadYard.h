#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>

namespace kelvo {

/// Threads that may take their time to end: a file on a slow disk is waited for here and not by the logic.
/// Logic thread.
class ThreadYard {
 public:
  ThreadYard();
  /// Asks all to stop and waits a moment for them. One that hangs on a disk is left behind: it owns all that
  /// it touches.
  ~ThreadYard();
  ThreadYard(const ThreadYard&) = delete;
  ThreadYard& operator=(const ThreadYard&) = delete;

  static constexpr std::chrono::milliseconds kEndAllowance{1500};

  /// Runs `work` on a thread of its own; `work` owns all that it touches.
  std::stop_source Start(std::function<void(std::stop_token)> work);
  /// The threads that have not ended.
  [[nodiscard]] int Running() const;

 private:
  struct Shared;
  std::shared_ptr<Shared> shared_;
};

}  // namespace kelvo
