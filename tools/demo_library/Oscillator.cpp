#include "demo_library/Oscillator.h"

#include "demo_library/Sound.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>

namespace kelvo::demo {

namespace {

constexpr std::size_t kTableSize = 4096;

std::array<float, kTableSize + 1> MakeSineTable() {
  std::array<float, kTableSize + 1> table{};
  for (std::size_t i = 0; i <= kTableSize; ++i) {
    table[i] = static_cast<float>(std::sin(2.0 * std::numbers::pi * static_cast<double>(i) / kTableSize));
  }
  return table;
}

/// What a jump of height 2 at phase 0 lacks of its band-limited form, in the samples next to it.
double CornerOf(double phase, double step) {
  if (phase < step) {
    const double x = phase / step;
    return x + x - x * x - 1.0;
  }
  if (phase > 1.0 - step) {
    const double x = (phase - 1.0) / step;
    return x * x + x + x + 1.0;
  }
  return 0.0;
}

double PulseOf(double phase, double step, double width) {
  double behind = phase + 1.0 - width;
  if (behind >= 1.0) behind -= 1.0;
  // The second term takes away the constant part, which a narrow pulse would otherwise carry.
  return (phase < width ? 1.0 : -1.0) - (2.0 * width - 1.0) + CornerOf(phase, step) - CornerOf(behind, step);
}

}  // namespace

double HertzOf(double note) {
  return 440.0 * std::exp2((note - 69.0) / 12.0);
}

double GainOf(double decibels) {
  return std::pow(10.0, decibels / 20.0);
}

double SineOf(double turns) {
  static const std::array<float, kTableSize + 1> table = MakeSineTable();
  // A conversion rounds towards zero; a call of floor here would take most of the time.
  const auto whole = static_cast<double>(static_cast<std::int64_t>(turns));
  const double part = turns < whole ? turns - whole + 1.0 : turns - whole;
  const double place = part * kTableSize;
  const std::size_t index = static_cast<std::size_t>(place) % kTableSize;
  const double low = table[index];
  return low + (table[index + 1] - low) * (place - static_cast<double>(static_cast<std::size_t>(place)));
}

double Oscillator::Next(double step) {
  const double phase = phase_;
  phase_ += step;
  if (phase_ >= 1.0) phase_ -= 1.0;
  switch (wave_) {
    case Wave::Sine:
      return SineOf(phase);
    case Wave::Triangle:
      return phase < 0.5 ? 4.0 * phase - 1.0 : 3.0 - 4.0 * phase;
    case Wave::Saw:
      return 2.0 * phase - 1.0 - CornerOf(phase, step);
    case Wave::Square:
      return PulseOf(phase, step, 0.5);
    case Wave::Pulse:
      return PulseOf(phase, step, 0.25);
  }
  return 0.0;
}

}  // namespace kelvo::demo
