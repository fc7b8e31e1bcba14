#pragma once

#include "audio/engine/Tap.h"
#include "platform/EventLoop.h"

#include <optional>

namespace kelvo {

/// Which frame of a tap is heard at a moment. The device tells it once a period, 20 ms or so; in between it
/// is reckoned by the clock, so that pictures move evenly, and never beyond what goes on air as it is. For
/// one tap; one thread.
class HeardClock {
 public:
  /// Nothing while the tap stands still: its device is lost.
  [[nodiscard]] std::optional<FrameIndex> At(const Tap& tap, Nanoseconds now);

 private:
  FrameIndex told_ = -1;
  Nanoseconds toldAt_{0};
  FrameIndex shown_ = 0;
};

}  // namespace kelvo
