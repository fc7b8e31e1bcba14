#include "demo_library/Instruments.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace kelvo::demo {

namespace {

/// How often the slow things (filter, vibrato) are worked out again: 0.36 ms is finer than the ear.
constexpr std::size_t kControlFrames = 16;

struct Span {
  std::size_t first;
  std::size_t release;
};

Span SpanOf(const Note& note) {
  return {FramesOf(note.start), FramesOf(note.start + note.length)};
}

void Put(StereoSound& target, std::size_t frame, double left, double right) {
  target.left[frame] += static_cast<float>(left);
  target.right[frame] += static_cast<float>(right);
}

double Driven(double sample, double drive) {
  if (drive <= 0.0) return sample;
  const double pushed = sample * (1.0 + 14.0 * drive);
  return pushed / (1.0 + std::abs(pushed)) * (1.0 - 0.45 * drive) + sample * 0.1;
}

void AddSubtractive(const Patch& patch, const Note& note, std::uint32_t seed, StereoSound& target) {
  struct Copy {
    Oscillator oscillator;
    double ratio;
    double left;
    double right;
  };
  Noise chance(seed);
  std::vector<Copy> copies;
  const int count = std::max(patch.copies, 1);
  for (int i = 0; i < count; ++i) {
    const double place = count == 1 ? 0.0 : 2.0 * i / (count - 1) - 1.0;
    const double phase = count == 1 ? 0.0 : 0.5 + 0.499 * chance.Next();
    const double level = 1.0 / std::sqrt(static_cast<double>(count));
    copies.push_back({Oscillator(patch.wave, phase), std::exp2(place * patch.detuneCents / 1200.0),
                      level * std::min(1.0, 1.0 - 0.85 * place), level * std::min(1.0, 1.0 + 0.85 * place)});
  }
  Oscillator sub(Wave::Sine, 0.0);
  Envelope loudness(patch.loudness);
  StateVariableFilter leftFilter;
  StateVariableFilter rightFilter;

  const double step = HertzOf(note.pitch) / kSampleRate;
  const double cutoff = patch.cutoff * std::exp2((note.pitch - 60.0) / 24.0) * (0.6 + 0.4 * note.velocity);
  const double sweepFactor =
      std::exp(-3.0 * kControlFrames / (std::max(patch.sweepTime, 0.005) * kSampleRate));
  double sweep = patch.sweep;
  double bent = step;
  const Span span = SpanOf(note);
  for (std::size_t frame = span.first; frame < target.Frames() && !loudness.Over(); ++frame) {
    const std::size_t age = frame - span.first;
    if (frame >= span.release) loudness.Release();
    if (age % kControlFrames == 0) {
      const double hertz = cutoff * std::exp2(sweep);
      sweep *= sweepFactor;
      leftFilter.Set(hertz, patch.resonance);
      if (count > 1) rightFilter.Set(hertz, patch.resonance);
      if (patch.vibratoCents > 0.0) {
        const double seconds = static_cast<double>(age) / kSampleRate;
        const double depth = patch.vibratoCents * std::clamp((seconds - 0.3) / 0.4, 0.0, 1.0);
        bent = step * std::exp2(depth * SineOf(5.3 * seconds) / 1200.0);
      }
    }
    double left = 0.0;
    double right = 0.0;
    for (Copy& copy : copies) {
      const double sample = copy.oscillator.Next(bent * copy.ratio);
      left += sample * copy.left;
      right += sample * copy.right;
    }
    if (patch.sub > 0.0) {
      const double sample = patch.sub * sub.Next(bent * 0.5);
      left += sample;
      right += sample;
    }
    const double level = loudness.Next() * note.velocity;
    const double filtered = Driven(leftFilter.Next(left).low, patch.drive) * level;
    Put(target, frame, filtered,
        count == 1 ? filtered : Driven(rightFilter.Next(right).low, patch.drive) * level);
  }
}

void AddPlucked(const Patch& patch, const Note& note, std::uint32_t seed, StereoSound& target) {
  const double period = kSampleRate / HertzOf(note.pitch);
  // The averaging in the loop delays by a part of a sample; the line and the interpolation make up the rest.
  const double smoothing = 0.5 - 0.42 * patch.brightness;
  const auto whole = static_cast<std::size_t>(period - smoothing);
  const double part = period - smoothing - static_cast<double>(whole);
  std::vector<double> line(std::max<std::size_t>(whole, 2));

  Noise noise(seed);
  StateVariableFilter pick;
  pick.Set(800.0 + 9000.0 * patch.brightness * note.velocity, 0.0);
  for (double& sample : line) sample = pick.Next(noise.Next()).low;
  double mean = 0.0;
  for (const double sample : line) mean += sample;
  mean /= static_cast<double>(line.size());
  for (double& sample : line) sample -= mean;

  const double loss = std::exp(-6.9 * period / (patch.ring * kSampleRate));
  Envelope loudness(patch.loudness);
  double before = 0.0;
  double beforeThat = 0.0;
  std::size_t place = 0;
  const Span span = SpanOf(note);
  for (std::size_t frame = span.first; frame < target.Frames() && !loudness.Over(); ++frame) {
    if (frame >= span.release) loudness.Release();
    const double sample = line[place];
    const double tuned = sample * (1.0 - part) + before * part;
    before = sample;
    line[place] = loss * (tuned * (1.0 - smoothing) + beforeThat * smoothing);
    beforeThat = tuned;
    if (++place == line.size()) place = 0;
    const double out = 1.6 * tuned * loudness.Next() * note.velocity;
    Put(target, frame, out, out);
  }
}

void AddBell(const Patch& patch, const Note& note, StereoSound& target) {
  const double step = HertzOf(note.pitch) / kSampleRate;
  const double bendFactor = std::exp(-3.0 / (std::max(patch.bendTime, 0.005) * kSampleRate));
  double bend = patch.bend * (0.4 + 0.6 * note.velocity) / 6.2832;
  double phase = 0.0;
  double bendPhase = 0.0;
  Envelope loudness(patch.loudness);
  const Span span = SpanOf(note);
  for (std::size_t frame = span.first; frame < target.Frames() && !loudness.Over(); ++frame) {
    if (frame >= span.release) loudness.Release();
    const double turn = bend * SineOf(bendPhase);
    const double level = 0.8 * loudness.Next() * note.velocity;
    // The two sides lie a little apart in phase, as from a chorus.
    Put(target, frame, level * SineOf(phase + turn), level * SineOf(phase * 1.0007 + turn));
    phase += step;
    bendPhase += step * patch.ratio;
    bend *= bendFactor;
  }
}

void AddOrgan(const Patch& patch, const Note& note, StereoSound& target) {
  struct Drawbar {
    double ratio;
    double level;
  };
  static constexpr std::array<Drawbar, 5> kDrawbars{
      {{0.5, 0.5}, {1.0, 0.8}, {1.5, 0.35}, {2.0, 0.4}, {4.0, 0.18}}};
  const double step = HertzOf(note.pitch) / kSampleRate;
  Envelope loudness(patch.loudness);
  const Span span = SpanOf(note);
  double phase = 0.0;
  double rotor = 0.0;
  for (std::size_t frame = span.first; frame < target.Frames() && !loudness.Over(); ++frame) {
    if (frame >= span.release) loudness.Release();
    if ((frame - span.first) % kControlFrames == 0) {
      rotor = SineOf(6.1 * static_cast<double>(frame) / kSampleRate);
    }
    double sample = 0.0;
    for (const Drawbar& drawbar : kDrawbars) sample += drawbar.level * SineOf(phase * drawbar.ratio);
    phase += step * (1.0 + 0.0015 * rotor);
    const double level = 0.6 * loudness.Next() * note.velocity;
    Put(target, frame, level * sample * (1.0 + 0.15 * rotor), level * sample * (1.0 - 0.15 * rotor));
  }
}

}  // namespace

void AddNote(const Patch& patch, const Note& note, std::uint32_t seed, StereoSound& target) {
  switch (patch.voice) {
    case Voice::Subtractive:
      AddSubtractive(patch, note, seed, target);
      break;
    case Voice::Plucked:
      AddPlucked(patch, note, seed, target);
      break;
    case Voice::Bell:
      AddBell(patch, note, target);
      break;
    case Voice::Organ:
      AddOrgan(patch, note, target);
      break;
  }
}

}  // namespace kelvo::demo
