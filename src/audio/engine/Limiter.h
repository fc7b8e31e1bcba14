#pragma once

#include "audio/engine/SoundBlock.h"

#include <array>
#include <cstdint>
#include <span>

namespace kelvo {

/// Keeps a programme below its ceiling by turning it down in time, never by cutting it. It hears each peak 2
/// ms before it is due, also one between two samples, and turns both sides down alike. What is below the
/// ceiling passes bit for bit, that much later. Part of a mixer; runs in the device's callback. It is plain
/// data: a copy of it goes on exactly as the original would.
class Limiter {
 public:
  /// How much later everything comes out, in frames.
  static constexpr std::size_t kLookAhead = 88;
  /// -1 dB of full scale.
  static constexpr float kCeiling = 0.891250938F;

  /// Limits interleaved stereo in place. Every sample is finite.
  void Process(std::span<float> sound) noexcept;
  /// The factor that the last frame was played with; 1 is untouched.
  [[nodiscard]] float Gain() const { return gain_; }

 private:
  static constexpr std::size_t kChunk = 64;
  /// Samples on each side of the one that the value between two samples is worked out from.
  static constexpr std::size_t kReach = 8;
  /// The gain is averaged twice over so many frames, which makes a smooth slope of every step.
  static constexpr std::size_t kBox = 41;
  static_assert(kReach + 2 * (kBox - 1) == kLookAhead);

  void ProcessChunk(std::span<float> sound) noexcept;
  /// The highest level at each of `frames` frames and on the way to its neighbours.
  void FindPeaks(std::size_t frames) noexcept;
  [[nodiscard]] bool AtRest() const;
  /// The gain for the frame that is `kLookAhead` behind the newest, given the newest peak that is known.
  [[nodiscard]] float NextGain(float peak) noexcept;

  std::array<float, (kLookAhead + kChunk) * kChannels> line_{};  ///< what has come in and not gone out
  std::array<float, kChunk> peaks_{};
  float lastBetween_ = 0;

  // The gain that the peaks ask for, held: the least of this stretch and of the one before.
  float least_ = 1;
  float leastBefore_ = 1;
  int inStretch_ = 0;

  double lasting_ = 1;  ///< what the programme asks for over seconds
  double level_ = 1;    ///< the gain before it is averaged
  std::size_t box_ = 0;
  std::array<std::int64_t, kBox> levels_ = Filled(kUnit);
  std::array<std::int64_t, kBox> sums_ = Filled(kUnit * std::int64_t{kBox});
  std::int64_t sum_ = kUnit * std::int64_t{kBox};
  std::int64_t sumOfSums_ = kUnit * std::int64_t{kBox} * std::int64_t{kBox};
  float gain_ = 1;

  /// Gains are averaged as whole numbers, so that nothing adds up over a night and 1 stays 1.
  static constexpr std::int64_t kUnit = std::int64_t{1} << 30;
  static constexpr std::array<std::int64_t, kBox> Filled(std::int64_t value) {
    std::array<std::int64_t, kBox> all{};
    all.fill(value);
    return all;
  }
};

}  // namespace kelvo
