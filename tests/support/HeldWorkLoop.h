#pragma once

#include "platform/SimulatedEventLoop.h"

#include <utility>
#include <vector>

namespace kelvo::testing {

/// A simulated loop that can hold back what is done off the logic's thread, as a slow disk does.
class HeldWorkLoop : public SimulatedEventLoop {
 public:
  using SimulatedEventLoop::SimulatedEventLoop;

  /// From now on such work waits.
  void Hold() { holding_ = true; }
  [[nodiscard]] bool Holds() const { return !held_.empty(); }
  /// Does what waits, and no longer holds.
  void LetGo() {
    holding_ = false;
    for (auto& [work, done] : std::exchange(held_, {})) {
      SimulatedEventLoop::RunOffThread(Lane::Apart, std::move(work), std::move(done));
    }
  }
  void RunOffThread(Lane lane, std::function<void()> work, Callback done) override {
    if (holding_) {
      held_.emplace_back(std::move(work), std::move(done));
    } else {
      SimulatedEventLoop::RunOffThread(lane, std::move(work), std::move(done));
    }
  }

 private:
  bool holding_ = false;
  std::vector<std::pair<std::function<void()>, Callback>> held_;
};

}  // namespace kelvo::testing
