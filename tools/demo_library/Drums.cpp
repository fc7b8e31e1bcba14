#include "demo_library/Drums.h"

#include "demo_library/Filters.h"
#include "demo_library/Oscillator.h"
#include "demo_library/Sound.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

namespace kelvo::demo {

namespace {

using Maker = std::function<double(double seconds)>;

double Fall(double seconds, double time) {
  return std::exp(-4.6 * seconds / time);
}

/// Fills `length` seconds from a function of time, fades the last tenth and brings the peak to 1.
std::vector<float> Fill(double length, const Maker& maker) {
  std::vector<float> samples(FramesOf(length));
  float peak = 1e-6F;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double seconds = static_cast<double>(i) / kSampleRate;
    const double tail = std::min(1.0, 10.0 * (length - seconds) / length);
    samples[i] = static_cast<float>(maker(seconds) * tail);
    peak = std::max(peak, std::abs(samples[i]));
  }
  for (float& sample : samples) sample /= peak;
  return samples;
}

/// A skin: a sine that falls from `from` to `to` hertz.
Maker Skin(double from, double to, double sweepTime, double time, double click) {
  return [=, phase = 0.0](double seconds) mutable {
    phase += (to + (from - to) * Fall(seconds, sweepTime)) / kSampleRate;
    return SineOf(phase) * Fall(seconds, time) + click * SineOf(1900.0 * seconds) * Fall(seconds, 0.006);
  };
}

/// Noise above or around a frequency.
class NoiseBand {
 public:
  NoiseBand(std::uint32_t seed, double hertz, double resonance) : noise_(seed) {
    filter_.Set(hertz, resonance);
  }
  double High() { return filter_.Next(noise_.Next()).high; }
  double Band() { return filter_.Next(noise_.Next()).band; }

 private:
  Noise noise_;
  StateVariableFilter filter_;
};

/// The clang of metal: six squares that fit nowhere together, above 6 kHz, with noise.
class Metal {
 public:
  Metal(std::uint32_t seed, double hertz) : noise_(seed) { filter_.Set(hertz, 0.1); }
  double Next() {
    static constexpr std::array<double, 6> kTones{205.3, 304.4, 369.6, 522.7, 540.0, 800.0};
    double sum = 1.2 * noise_.Next();
    for (std::size_t i = 0; i < kTones.size(); ++i)
      sum += tones_[i].Next(2.6 * kTones[i] / kSampleRate) * 0.4;
    return filter_.Next(sum).high;
  }

 private:
  Noise noise_;
  StateVariableFilter filter_;
  std::array<Oscillator, 6> tones_{Oscillator(Wave::Square, 0.0), Oscillator(Wave::Square, 0.1),
                                   Oscillator(Wave::Square, 0.3), Oscillator(Wave::Square, 0.5),
                                   Oscillator(Wave::Square, 0.6), Oscillator(Wave::Square, 0.8)};
};

std::vector<float> MakeMetal(std::uint32_t seed, double hertz, double length, double time, double stroke) {
  return Fill(length, [metal = Metal(seed, hertz), time, stroke](double seconds) mutable {
    return metal.Next() * (Fall(seconds, time) + stroke * Fall(seconds, 0.02));
  });
}

}  // namespace

std::vector<float> MakeDrum(Drum drum, const KitSound& kit, std::uint32_t seed) {
  const double bright = kit.brightness;
  switch (drum) {
    case Drum::Kick:
      return Fill(kit.kickTime * 1.2, Skin(kit.kickHertz * 4.2, kit.kickHertz, 0.07, kit.kickTime, 0.25));
    case Drum::LowTom:
      return Fill(0.45, Skin(150.0, 84.0, 0.15, 0.4, 0.1));
    case Drum::HighTom:
      return Fill(0.4, Skin(230.0, 138.0, 0.13, 0.34, 0.1));
    case Drum::Conga:
      return Fill(0.3, Skin(330.0, 268.0, 0.04, 0.22, 0.25));
    case Drum::Snare:
      return Fill(
          kit.snareTime * 1.6, [=, rattle = NoiseBand(seed, 1500.0 * bright, 0.1)](double seconds) mutable {
            const double skin = SineOf(kit.snareHertz * seconds + 0.4 * Fall(seconds, 0.02)) +
                                0.5 * SineOf(kit.snareHertz * 1.78 * seconds);
            return 0.55 * skin * Fall(seconds, 0.1) + 0.6 * rattle.High() * Fall(seconds, kit.snareTime);
          });
    case Drum::Clap:
      return Fill(0.3, [hands = NoiseBand(seed, 1250.0 * bright, 0.55)](double seconds) mutable {
        // Three hands that come a hundredth of a second apart, then the room.
        const double again = seconds < 0.03 ? std::fmod(seconds, 0.01) : seconds - 0.03;
        return hands.Band() * (seconds < 0.03 ? Fall(again, 0.012) : Fall(again, 0.16));
      });
    case Drum::Hat:
      return MakeMetal(seed, 8200.0 * bright, 0.08, 0.05, 0.4);
    case Drum::OpenHat:
      return MakeMetal(seed, 7400.0 * bright, 0.36, 0.3, 0.2);
    case Drum::Ride:
      return MakeMetal(seed, 6200.0 * bright, 0.9, 0.7, 1.2);
    case Drum::Crash:
      return MakeMetal(seed, 4200.0 * bright, 1.9, 1.5, 0.3);
    case Drum::Rim:
      return Fill(0.06, [](double seconds) {
        return (SineOf(1720.0 * seconds) + SineOf(480.0 * seconds)) * Fall(seconds, 0.03);
      });
    case Drum::Shaker:
      return Fill(0.1, [grains = NoiseBand(seed, 6000.0 * bright, 0.2)](double seconds) mutable {
        return grains.High() * std::min(1.0, seconds / 0.02) * Fall(seconds, 0.08);
      });
    case Drum::Cowbell:
      return Fill(0.3, [low = Oscillator(Wave::Square, 0.0),
                        high = Oscillator(Wave::Square, 0.3)](double seconds) mutable {
        return (low.Next(562.0 / kSampleRate) + high.Next(845.0 / kSampleRate)) * Fall(seconds, 0.2);
      });
  }
  return {};
}

double PlaceOf(Drum drum) {
  switch (drum) {
    case Drum::Hat:
    case Drum::OpenHat:
      return 0.3;
    case Drum::Ride:
      return -0.4;
    case Drum::Crash:
      return -0.25;
    case Drum::LowTom:
      return 0.45;
    case Drum::HighTom:
      return -0.3;
    case Drum::Shaker:
      return -0.5;
    case Drum::Conga:
      return 0.4;
    case Drum::Cowbell:
      return -0.35;
    case Drum::Rim:
      return 0.15;
    case Drum::Kick:
    case Drum::Snare:
    case Drum::Clap:
      break;
  }
  return 0.0;
}

double LevelOf(Drum drum) {
  switch (drum) {
    case Drum::Kick:
      return 1.0;
    case Drum::Snare:
      return 0.7;
    case Drum::Clap:
      return 0.6;
    case Drum::Hat:
      return 0.22;
    case Drum::OpenHat:
      return 0.24;
    case Drum::Ride:
      return 0.2;
    case Drum::Crash:
      return 0.36;
    case Drum::LowTom:
      return 0.75;
    case Drum::HighTom:
      return 0.65;
    case Drum::Rim:
      return 0.35;
    case Drum::Shaker:
      return 0.16;
    case Drum::Conga:
      return 0.4;
    case Drum::Cowbell:
      return 0.18;
  }
  return 1.0;
}

}  // namespace kelvo::demo
