#include "audio/engine/SoundTape.h"

#include <algorithm>

namespace kelvo {

SoundTape::SoundTape(SoundRing& ring) : ring_(ring), samples_(kFrames * kChannels) {}

void SoundTape::DropOlder(Generation generation) {
  while (ring_.read_available() > 0 && IsOlder(ring_.front().generation, generation)) ring_.pop();
}

bool SoundTape::Overtaken(Generation generation) const {
  if (IsOlder(generation, Newest().generation)) return true;
  return ring_.read_available() > 0 && IsOlder(generation, ring_.front().generation);
}

const SoundTape::Stretch* SoundTape::Find(Generation generation) const {
  for (std::size_t back = 0; back < std::min(begun_, kStretches); ++back) {
    const Stretch& each = stretches_[(begun_ - back) % kStretches];
    if (each.generation == generation) return &each;
  }
  return nullptr;
}

bool SoundTape::Pull(Generation generation) {
  DropOlder(generation);
  if (ring_.read_available() == 0) return false;
  const SoundBlock& block = ring_.front();
  if (block.generation != generation) return false;
  if (begun_ == 0 || Newest().generation != generation) {
    static constexpr std::array<float, kLeader * kChannels> kSilence{};
    Append(kSilence.data(), kLeader);
    ++begun_;
    stretches_[begun_ % kStretches] = {generation, end_, end_, block.start, false};
  }
  Append(block.samples.data(), block.frames);
  Stretch& stretch = stretches_[begun_ % kStretches];
  stretch.end = end_;
  stretch.complete = block.end;
  ring_.pop();
  return true;
}

void SoundTape::Append(const float* samples, std::size_t frames) {
  while (frames > 0) {
    const std::size_t part = std::min(frames, Together(end_));
    std::copy_n(samples, part * kChannels, &samples_[(end_ & (kFrames - 1)) * kChannels]);
    samples += part * kChannels;
    frames -= part;
    end_ += part;
  }
}

}  // namespace kelvo
