#include "audio/engine/Limiter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <type_traits>
#include <utility>

namespace kelvo {

static_assert(std::is_trivially_copyable_v<Limiter>);

namespace {

/// A peak holds the gain down for this long, 15 ms at least and twice that at most: the waves of the lowest
/// bass must not let go of it between their crests, for that would distort them.
constexpr int kStretch = kEngineRate * 15 / 1000;

/// A single peak is forgotten quickly; after a loud passage the gain comes back slowly, so that it does not
/// pump.
constexpr double kRecoverSeconds = 0.06;
constexpr double kLastingDownSeconds = 0.6;
constexpr double kLastingUpSeconds = 0.4;

/// A thousandth of a decibel: from there the gain goes to 1 at once.
constexpr double kAsGoodAsOne = 1 - 1e-4;

constexpr std::size_t kPlaces = 3;  ///< between two samples
constexpr std::size_t kTaps = 16;

double Approach(double seconds) {
  return 1 - std::exp(-1 / (seconds * kEngineRate));
}

/// The value at a quarter, a half and three quarters of the way from one sample to the next, from eight
/// samples on each side.
struct Between {
  std::array<std::array<float, kTaps>, kPlaces> taps{};
  Between() {
    for (std::size_t place = 0; place < kPlaces; ++place) {
      std::array<double, kTaps> exact{};
      double sum = 0;
      for (std::size_t tap = 0; tap < kTaps; ++tap) {
        const double distance = static_cast<double>(tap) - 7 - (static_cast<double>(place) + 1) / 4;
        const double x = std::numbers::pi * distance;
        const double edge = std::cos(x / kTaps);
        exact[tap] = std::sin(x) / x * edge * edge;
        sum += exact[tap];
      }
      for (std::size_t tap = 0; tap < kTaps; ++tap) taps[place][tap] = static_cast<float>(exact[tap] / sum);
    }
  }
};
const Between between;

const double recover = Approach(kRecoverSeconds);
const double lastingDown = Approach(kLastingDownSeconds);
const double lastingUp = Approach(kLastingUpSeconds);

}  // namespace

void Limiter::Process(std::span<float> sound) noexcept {
  constexpr std::size_t kPart = kChunk * kChannels;
  for (std::size_t at = 0; at < sound.size(); at += kPart) {
    ProcessChunk(sound.subspan(at, std::min(kPart, sound.size() - at)));
  }
}

void Limiter::ProcessChunk(std::span<float> sound) noexcept {
  const std::size_t frames = sound.size() / kChannels;
  std::copy(sound.begin(), sound.end(), line_.begin() + kLookAhead * kChannels);
  FindPeaks(frames);
  const float highest =
      *std::max_element(peaks_.begin(), peaks_.begin() + static_cast<std::ptrdiff_t>(frames));
  if (highest <= kCeiling && AtRest()) {
    std::copy_n(line_.begin(), sound.size(), sound.begin());
  } else {
    for (std::size_t frame = 0; frame < frames; ++frame) {
      gain_ = NextGain(peaks_[frame]);
      for (std::size_t side = 0; side < kChannels; ++side) {
        const std::size_t at = frame * kChannels + side;
        // The rounding of the last bit is all that can be above it.
        sound[at] = gain_ == 1 ? line_[at] : std::clamp(line_[at] * gain_, -kCeiling, kCeiling);
      }
    }
  }
  std::copy_n(line_.begin() + static_cast<std::ptrdiff_t>(sound.size()), kLookAhead * kChannels,
              line_.begin());
}

void Limiter::FindPeaks(std::size_t frames) noexcept {
  // What is between sample i and the next is known once eight more have come.
  constexpr std::size_t kFirst = kLookAhead - kReach;
  const float* const from = line_.data() + (kFirst - (kReach - 1)) * kChannels;
  std::array<float, kChunk * kChannels> highest{};
  // Several samples at once, their sums in registers.
  using Lanes = float __attribute__((vector_size(16)));
  constexpr std::size_t kLanes = sizeof(Lanes) / sizeof(float);
  for (std::size_t first = 0; first < frames * kChannels; first += kLanes) {
    Lanes sums[kPlaces]{};
    for (std::size_t tap = 0; tap < kTaps; ++tap) {
      Lanes sound;
      std::memcpy(&sound, from + first + tap * kChannels, sizeof sound);
      for (std::size_t place = 0; place < kPlaces; ++place) sums[place] += between.taps[place][tap] * sound;
    }
    Lanes most{};
    for (const Lanes& sum : sums) {
      const Lanes size = sum < 0 ? -sum : sum;
      most = size > most ? size : most;
    }
    std::memcpy(&highest[first], &most, sizeof most);
  }
  for (std::size_t frame = 0; frame < frames; ++frame) {
    const float* const sample = line_.data() + (kFirst + frame) * kChannels;
    const float next = std::max(highest[frame * kChannels], highest[frame * kChannels + 1]);
    const float here = std::max(std::abs(sample[0]), std::abs(sample[1]));
    peaks_[frame] = std::max({here, next, lastBetween_});
    lastBetween_ = next;
  }
}

bool Limiter::AtRest() const {
  return sumOfSums_ == kUnit * std::int64_t{kBox} * std::int64_t{kBox} && level_ == 1 && lasting_ == 1 &&
         least_ == 1 && leastBefore_ == 1;
}

float Limiter::NextGain(float peak) noexcept {
  least_ = std::min(least_, peak > kCeiling ? kCeiling / peak : 1.0F);
  const double held = std::min(least_, leastBefore_);
  // Stretches are counted from a peak on, so that what comes out does not depend on the parts that came in.
  if (held == 1) {
    inStretch_ = 0;
  } else if (++inStretch_ == kStretch) {
    leastBefore_ = std::exchange(least_, 1.0F);
    inStretch_ = 0;
  }

  lasting_ += (held - lasting_) * (held < lasting_ ? lastingDown : lastingUp);
  if (lasting_ > kAsGoodAsOne && held == 1) lasting_ = 1;
  const double goal = std::min(held, lasting_);
  level_ = held < level_ ? held : level_ + (goal - level_) * recover;
  if (level_ > kAsGoodAsOne && goal == 1) level_ = 1;

  // Every gain in both boxes is one that the oldest of their frames can bear, and so is their average.
  const auto newest = static_cast<std::int64_t>(level_ * static_cast<double>(kUnit));
  sum_ += newest - std::exchange(levels_[box_], newest);
  sumOfSums_ += sum_ - std::exchange(sums_[box_], sum_);
  box_ = (box_ + 1) % kBox;
  constexpr double kAll = static_cast<double>(kUnit) * kBox * kBox;
  return static_cast<float>(static_cast<double>(sumOfSums_) / kAll);
}

}  // namespace kelvo
