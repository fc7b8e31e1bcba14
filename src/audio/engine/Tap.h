#pragma once

#include "audio/engine/SoundBlock.h"

#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

namespace kelvo {

/// The last six seconds of what an output plays, behind its limiter, for those who look on: meters, scope,
/// recorder. Frames are counted from the output's first one. Shared by the mixer that writes it and by any
/// number of readers, none of which it waits for.
class Tap {
 public:
  static constexpr FrameIndex kFrames = 1 << 18;

  Tap() : sound_(kFrames) {}

  // The rendering thread.
  /// `sound` is rendered as frame `at` and on; what is taken back is written again.
  void Write(FrameIndex at, std::span<const float> sound) noexcept;
  /// Up to `settled` nothing is written again; what is before `heard` has left the loudspeaker.
  void Publish(FrameIndex settled, FrameIndex heard) noexcept;

  // Any thread.
  /// The first frame that may still be rendered anew; nothing is known yet while it is negative. What is
  /// before it goes on air as it is: this is what a recorder reads up to.
  [[nodiscard]] FrameIndex Settled() const { return settled_.load(std::memory_order_acquire); }
  /// The frame that is heard now: this is what meters read up to. Negative like Settled.
  [[nodiscard]] FrameIndex Heard() const { return heard_.load(std::memory_order_acquire); }
  /// Copies the frames from `from` on, which must be settled. Returns false, and rubbish, when they have been
  /// written over meanwhile.
  [[nodiscard]] bool Read(FrameIndex from, std::span<float> target) const;

 private:
  std::vector<std::atomic<std::uint64_t>> sound_;  ///< both sides of a frame in one word
  std::atomic<FrameIndex> reach_{0};               ///< what is more than kFrames before it is lost
  std::atomic<FrameIndex> settled_{-1};
  std::atomic<FrameIndex> heard_{-1};
  FrameIndex first_ = -1;  ///< the first frame written; the rendering thread's
};

}  // namespace kelvo
