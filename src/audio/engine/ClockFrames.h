#pragma once

#include "audio/engine/SoundBlock.h"
#include "platform/EventLoop.h"

namespace kelvo {

/// The whole frames that fit into `time`. Exact for years.
[[nodiscard]] inline FrameIndex FramesIn(Nanoseconds time) {
  constexpr std::int64_t kSecond = 1'000'000'000;
  const std::int64_t seconds = time.count() / kSecond;
  return seconds * kEngineRate + (time.count() % kSecond) * kEngineRate / kSecond;
}

}  // namespace kelvo
