#pragma once

#include "platform/EventLoop.h"

#include <optional>

namespace kelvo {

/// Estimates how long a job still takes from how far it came since it began. Says nothing at first, while a
/// guess would jump about. A value.
class TimeLeft {
 public:
  TimeLeft() = default;
  explicit TimeLeft(Nanoseconds began) : began_(began) {}

  /// `share`: how much is done, 0 to 1.
  [[nodiscard]] std::optional<std::chrono::seconds> At(Nanoseconds now, double share) const;

 private:
  Nanoseconds began_{};
};

}  // namespace kelvo
