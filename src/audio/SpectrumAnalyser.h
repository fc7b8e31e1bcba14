#pragma once

#include "audio/engine/SoundBlock.h"

#include <array>
#include <complex>
#include <memory>
#include <span>
#include <vector>

namespace kelvo {

/// How loud a sound is at each pitch: bands of equal width to the ear, from 20 Hz to 20 kHz. Of both sides
/// the louder one counts. Rises at once and falls slowly, so that an eye can follow. One thread.
class SpectrumAnalyser {
 public:
  static constexpr std::size_t kWindow = 4096;  ///< frames that are looked at: 93 ms
  static constexpr std::size_t kBands = 96;
  static constexpr float kFloor = -90;
  static constexpr float kFallPerSecond = 30;
  /// Of each band, in decibels: 0 is a sine of full scale.
  using Levels = std::array<float, kBands>;

  SpectrumAnalyser();
  ~SpectrumAnalyser();

  /// The levels of the last kWindow frames, `seconds` after those before.
  const Levels& Take(std::span<const float> sound, double seconds);
  void Clear() { levels_.fill(kFloor); }
  [[nodiscard]] const Levels& Now() const { return levels_; }

  /// The pitch at a place of the axis in hertz, 0 its left end and 1 its right one.
  [[nodiscard]] static double PitchAt(double place);
  [[nodiscard]] static double PlaceOf(double hertz);
  [[nodiscard]] static std::size_t BandOf(double hertz);

 private:
  struct Transform;
  /// Where a band lies among the lines of the transform.
  struct Reach {
    std::size_t first;  ///< whole lines inside of it: first to last
    std::size_t last;
    std::size_t below;  ///< its middle lies behind this line,
    float share;        ///< so much of the way to the next
  };

  [[nodiscard]] float PowerOf(std::size_t line) const;

  std::unique_ptr<Transform> transform_;
  std::vector<float> window_;
  std::array<Reach, kBands> reaches_;
  std::vector<float> powers_;
  Levels levels_;
};

}  // namespace kelvo
