#pragma once

#include "demo_library/Sound.h"

#include <vector>

namespace kelvo::demo {

/// Two poles, low, band and high at once; steady at any cutoff, also while it moves.
class StateVariableFilter {
 public:
  /// `resonance` 0 (none) .. 0.95 (rings).
  void Set(double hertz, double resonance);

  struct Outputs {
    double low;
    double band;
    double high;
  };
  [[nodiscard]] Outputs Next(double in);

 private:
  double g_ = 0.1;
  double damping_ = 2.0;
  double divisor_ = 1.0;
  double first_ = 0.0;
  double second_ = 0.0;
};

/// Attack, decay, sustain and release; times in seconds, sustain 0 .. 1.
struct EnvelopeShape {
  double attack = 0.005;
  double decay = 0.2;
  double sustain = 0.7;
  double release = 0.1;
};

/// The loudness of a note over time: a straight rise, then falls that slow down as they near their level.
class Envelope {
 public:
  explicit Envelope(const EnvelopeShape& shape);
  [[nodiscard]] double Next();
  void Release() { released_ = true; }
  /// True when nothing more will be heard.
  [[nodiscard]] bool Over() const { return released_ && level_ < 1e-4; }

 private:
  double sustain_;
  double rise_;
  double decay_;
  double release_;
  double level_ = 0.0;
  bool rising_ = true;
  bool released_ = false;
};

/// A line of samples that comes out later.
class DelayLine {
 public:
  explicit DelayLine(std::size_t frames) : samples_(frames > 0 ? frames : 1) {}
  [[nodiscard]] double Out() const { return samples_[place_]; }
  void In(double sample) {
    samples_[place_] = static_cast<float>(sample);
    if (++place_ == samples_.size()) place_ = 0;
  }

 private:
  std::vector<float> samples_;
  std::size_t place_ = 0;
};

}  // namespace kelvo::demo
