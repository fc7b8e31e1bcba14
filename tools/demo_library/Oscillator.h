#pragma once

#include <cstdint>

namespace kelvo::demo {

enum class Wave { Sine, Triangle, Saw, Square, Pulse };

/// The sine of `turns` (1.0 is a whole round), from a table: the same bits on every machine that builds it.
[[nodiscard]] double SineOf(double turns);

/// A tone without audible fold-over: the corners of saw and pulse are rounded over one sample to either side.
class Oscillator {
 public:
  /// `phase` 0 .. 1 is where in its round it begins.
  Oscillator(Wave wave, double phase) : wave_(wave), phase_(phase) {}

  /// The next sample, -1 .. 1; `step` is the part of a round that one sample takes (hertz / sample rate).
  [[nodiscard]] double Next(double step);

 private:
  Wave wave_;
  double phase_;
};

/// White noise, -1 .. 1, the same for the same seed.
class Noise {
 public:
  explicit Noise(std::uint32_t seed) : state_(seed * 2654435761U + 1U) {}
  [[nodiscard]] double Next() {
    state_ ^= state_ << 13U;
    state_ ^= state_ >> 17U;
    state_ ^= state_ << 5U;
    return static_cast<double>(state_) * 0x1.0p-31 - 1.0;
  }

 private:
  std::uint32_t state_;
};

}  // namespace kelvo::demo
