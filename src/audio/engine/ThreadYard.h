#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace kelvo {

/// Threads that may take their time to end: a file on a slow disk is waited for here and not by the logic.
/// Logic thread.
class ThreadYard {
 public:
  ThreadYard() = default;
  /// Asks all to stop and waits for them.
  ~ThreadYard();
  ThreadYard(const ThreadYard&) = delete;
  ThreadYard& operator=(const ThreadYard&) = delete;

  /// Runs `work` on a thread of its own; `work` owns all that it touches.
  std::stop_source Start(std::function<void(std::stop_token)> work);
  /// Lets go of the threads that have ended.
  void Sweep();

 private:
  struct Entry {
    std::shared_ptr<std::atomic<bool>> done;
    std::jthread thread;
  };
  std::vector<Entry> threads_;
};

}  // namespace kelvo
