#include "demo_library/Filters.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kelvo::demo {

namespace {

/// The factor per sample of a fall that has a twentieth left after `seconds`.
double FactorOf(double seconds) {
  return std::exp(-3.0 / (std::max(seconds, 0.001) * kSampleRate));
}

}  // namespace

void StateVariableFilter::Set(double hertz, double resonance) {
  g_ = std::tan(std::numbers::pi * std::clamp(hertz, 20.0, 18000.0) / kSampleRate);
  damping_ = 2.0 * (1.0 - std::clamp(resonance, 0.0, 0.95));
  divisor_ = 1.0 / (1.0 + g_ * (g_ + damping_));
}

StateVariableFilter::Outputs StateVariableFilter::Next(double in) {
  const double high = (in - (g_ + damping_) * first_ - second_) * divisor_;
  const double band = g_ * high + first_;
  first_ = g_ * high + band;
  const double low = g_ * band + second_;
  second_ = g_ * band + low;
  return {low, band, high};
}

Envelope::Envelope(const EnvelopeShape& shape)
    : sustain_(shape.sustain),
      rise_(1.0 / (std::max(shape.attack, 0.001) * kSampleRate)),
      decay_(FactorOf(shape.decay)),
      release_(FactorOf(shape.release)) {}

double Envelope::Next() {
  if (released_) {
    level_ *= release_;
  } else if (rising_) {
    level_ += rise_;
    if (level_ >= 1.0) {
      level_ = 1.0;
      rising_ = false;
    }
  } else {
    level_ = sustain_ + (level_ - sustain_) * decay_;
  }
  return level_;
}

}  // namespace kelvo::demo
