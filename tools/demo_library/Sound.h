#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

namespace kelvo::demo {

inline constexpr int kSampleRate = 44100;

/// Stereo sound in floating point, 1.0 is full scale. Both sides have the same number of frames.
struct StereoSound {
  std::vector<float> left;
  std::vector<float> right;

  explicit StereoSound(std::size_t frames = 0) : left(frames), right(frames) {}
  [[nodiscard]] std::size_t Frames() const { return left.size(); }
};

[[nodiscard]] inline std::size_t FramesOf(double seconds) {
  return seconds > 0.0 ? static_cast<std::size_t>(std::llround(seconds * kSampleRate)) : 0;
}

/// Hertz of a note number: 69 is the A of 440 Hz, 12 to the octave, fractions allowed.
[[nodiscard]] double HertzOf(double note);

/// The gain of a level in decibels.
[[nodiscard]] double GainOf(double decibels);

}  // namespace kelvo::demo
