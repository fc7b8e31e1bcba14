#include "audio/engine/Voice.h"

#include <algorithm>
#include <bit>

namespace kelvo {

static_assert(std::atomic<std::uint64_t>::is_always_lock_free && std::atomic<double>::is_always_lock_free);

namespace {

/// 5 ms for a start or a stop, 10 ms for a change of level.
constexpr int kEnvelopeSteps = kEngineRate / 200;
constexpr int kGainSteps = kEngineRate / 100;

constexpr int kFrameBits = 40;
constexpr std::uint64_t kFrameMask = (std::uint64_t{1} << kFrameBits) - 1;

std::uint64_t GenerationPart(Generation generation) {
  return std::uint64_t{generation} << kFrameBits;
}

}  // namespace

void Voice::Want(Generation generation, bool playing) {
  wanted_.store(std::uint64_t{generation} << 1 | (playing ? 1U : 0U), std::memory_order_release);
}

void Voice::SetGains(float left, float right) {
  const std::uint64_t word =
      std::uint64_t{std::bit_cast<std::uint32_t>(left)} << 32 | std::bit_cast<std::uint32_t>(right);
  wantedGains_.store(word, std::memory_order_relaxed);
}

std::optional<FrameIndex> Voice::PositionIn(Generation generation) const {
  const std::uint64_t word = position_.load(std::memory_order_acquire);
  if ((word & ~kFrameMask) != GenerationPart(generation)) return std::nullopt;
  return static_cast<FrameIndex>(word & kFrameMask);
}

bool Voice::HasEnded(Generation generation) const {
  return ended_.load(std::memory_order_acquire) == (std::uint64_t{generation} << 1 | 1U);
}

void Voice::Publish() {
  if (!reader_.Started()) return;
  const auto frame = static_cast<std::uint64_t>(std::max<FrameIndex>(reader_.Position(), 0));
  position_.store(GenerationPart(reader_.Current()) | (frame & kFrameMask), std::memory_order_release);
}

bool Voice::Mix(std::span<float> target) noexcept {
  const std::uint64_t wanted = wanted_.load(std::memory_order_acquire);
  const auto generation = static_cast<Generation>(wanted >> 1);
  const bool playing = (wanted & 1U) != 0;
  const std::uint64_t gains = wantedGains_.load(std::memory_order_relaxed);
  const auto left = std::bit_cast<float>(static_cast<std::uint32_t>(gains >> 32));
  const auto right = std::bit_cast<float>(static_cast<std::uint32_t>(gains));
  const double rate = wantedRate_.load(std::memory_order_relaxed);

  AddTail(target);
  left_.Aim(left, kGainSteps);
  right_.Aim(right, kGainSteps);
  reader_.SetRate(rate);

  const std::size_t frames = target.size() / kChannels;
  bool fed = true;
  bool cameToEnd = false;
  std::size_t done = 0;
  while (done < frames) {
    if (reader_.Current() != generation && envelope_.Value() == 0.0F) reader_.Begin(generation, rate);
    const bool current = reader_.Current() == generation;
    const bool sounding = current && playing && !reader_.AtEnd();
    if (envelope_.Value() == 0.0F) {
      // Nobody hears these now: the next start is at the level that is wanted.
      left_.JumpTo(left);
      right_.JumpTo(right);
    }
    envelope_.Aim(sounding ? 1.0F : 0.0F, kEnvelopeSteps);
    if (!sounding && envelope_.Value() == 0.0F) break;

    std::size_t part = std::min(frames - done, kChunk);
    if (!sounding) part = std::min(part, static_cast<std::size_t>(envelope_.StepsLeft()));
    const std::size_t got = Sound(target.data() + done * kChannels, part);
    done += got;
    if (got == part) continue;

    // The data is over. What the end of a file does is its own affair; everything else fades.
    if (!reader_.AtEnd()) {
      fed = fed && !(sounding && reader_.Started() && !reader_.Overtaken());
      if (envelope_.Value() > 0.0F) {
        tail_ = last_;
        tailLeft_ = kEnvelopeSteps;
        AddTail(target.subspan(done * kChannels));
      }
    }
    envelope_.JumpTo(0.0F);
    if (!current) continue;
    cameToEnd = reader_.AtEnd();
    break;
  }
  reader_.DropOlder();
  Publish();
  if (reader_.Current() == generation && reader_.AtEnd() && reader_.Started()) {
    const std::uint64_t word = std::uint64_t{generation} << 1 | 1U;
    if (playing || envelope_.Value() > 0.0F || cameToEnd) ended_.store(word, std::memory_order_release);
    envelope_.JumpTo(0.0F);
  }
  silent_.store(envelope_.Value() == 0.0F && tailLeft_ == 0, std::memory_order_release);
  return fed;
}

std::size_t Voice::Sound(float* target, std::size_t frames) {
  const std::size_t got = reader_.Read(std::span(chunk_).first(frames * kChannels));
  for (std::size_t frame = 0; frame < got; ++frame) {
    envelope_.Step();
    left_.Step();
    right_.Step();
    last_.left = chunk_[frame * kChannels] * (left_.Value() * envelope_.Value());
    last_.right = chunk_[frame * kChannels + 1] * (right_.Value() * envelope_.Value());
    target[frame * kChannels] += last_.left;
    target[frame * kChannels + 1] += last_.right;
  }
  return got;
}

void Voice::AddTail(std::span<float> target) {
  for (std::size_t at = 0; at + 1 < target.size() && tailLeft_ > 0; at += kChannels) {
    --tailLeft_;
    const float level = static_cast<float>(tailLeft_) / kEnvelopeSteps;
    target[at] += tail_.left * level;
    target[at + 1] += tail_.right * level;
  }
}

}  // namespace kelvo
