#include "audio/engine/Tap.h"

#include <algorithm>
#include <bit>

namespace kelvo {

static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

void Tap::Write(FrameIndex at, std::span<const float> sound) noexcept {
  if (first_ < 0 || at < first_) first_ = at;
  const auto frames = static_cast<FrameIndex>(sound.size() / kChannels);
  // Before the sound itself: a reader that gets a new frame in an old one's place also sees that.
  reach_.store(std::max(reach_.load(std::memory_order_relaxed), at + frames), std::memory_order_relaxed);
  for (FrameIndex frame = 0; frame < frames; ++frame) {
    const float* const sample = &sound[static_cast<std::size_t>(frame) * kChannels];
    const std::uint64_t word = std::uint64_t{std::bit_cast<std::uint32_t>(sample[0])} << 32 |
                               std::bit_cast<std::uint32_t>(sample[1]);
    sound_[static_cast<std::size_t>((at + frame) % kFrames)].store(word, std::memory_order_release);
  }
}

void Tap::Publish(FrameIndex settled, FrameIndex heard) noexcept {
  // What was queued before the tap was opened never came by here.
  if (first_ < 0 || settled < first_) return;
  settled_.store(settled, std::memory_order_release);
  const FrameIndex before = heard_.load(std::memory_order_relaxed);
  heard_.store(std::max(before, std::clamp(heard, first_, settled)), std::memory_order_release);
}

bool Tap::Read(FrameIndex from, std::span<float> target) const {
  for (std::size_t i = 0; i + 1 < target.size(); i += kChannels) {
    const auto place = static_cast<std::size_t>((from + static_cast<FrameIndex>(i / kChannels)) % kFrames);
    const std::uint64_t word = sound_[place].load(std::memory_order_acquire);
    target[i] = std::bit_cast<float>(static_cast<std::uint32_t>(word >> 32));
    target[i + 1] = std::bit_cast<float>(static_cast<std::uint32_t>(word));
  }
  return from + kFrames >= reach_.load(std::memory_order_relaxed);
}

}  // namespace kelvo
