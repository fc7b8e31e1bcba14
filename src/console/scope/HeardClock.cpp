#include "console/scope/HeardClock.h"

#include <algorithm>

namespace kelvo {

namespace {

/// A device that has told nothing for so long is gone.
constexpr Nanoseconds kStandsStill = std::chrono::milliseconds(500);

}  // namespace

std::optional<FrameIndex> HeardClock::At(const Tap& tap, Nanoseconds now) {
  const FrameIndex heard = tap.Heard();
  if (heard < 0) return std::nullopt;
  if (heard != told_) {
    told_ = heard;
    toldAt_ = now;
  }
  const Nanoseconds since = now - toldAt_;
  if (since > kStandsStill) return std::nullopt;
  const FrameIndex reckoned = told_ + since.count() * kEngineRate / 1'000'000'000;
  shown_ = std::max(shown_, std::min(reckoned, tap.Settled()));
  return shown_;
}

}  // namespace kelvo
