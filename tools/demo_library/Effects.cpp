#include "demo_library/Effects.h"

#include "demo_library/Filters.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>

namespace kelvo::demo {

namespace {

constexpr double kPeak = 0.891;  // -1 dB

/// A ring of samples with a low-pass in its feedback.
class Comb {
 public:
  Comb(std::size_t frames, double feedback) : line_(frames), feedback_(feedback) {}
  double Next(double in) {
    const double out = line_.Out();
    dull_ = out * 0.75 + dull_ * 0.25;
    line_.In(in + dull_ * feedback_);
    return out;
  }

 private:
  DelayLine line_;
  double feedback_;
  double dull_ = 0.0;
};

/// Spreads a sound in time without colouring it.
class AllPass {
 public:
  explicit AllPass(std::size_t frames) : line_(frames) {}
  double Next(double in) {
    const double held = line_.Out();
    const double fed = in + 0.5 * held;
    line_.In(fed);
    return held - 0.5 * fed;
  }

 private:
  DelayLine line_;
};

/// One side of the room.
class RoomSide {
 public:
  /// `offset` samples set the two sides apart.
  RoomSide(double feedback, std::size_t offset)
      : combs_{Comb(1557 + offset, feedback), Comb(1617 + offset, feedback), Comb(1491 + offset, feedback),
               Comb(1422 + offset, feedback), Comb(1277 + offset, feedback), Comb(1356 + offset, feedback)},
        passes_{AllPass(556 + offset), AllPass(441 + offset), AllPass(225 + offset)} {}
  double Next(double in) {
    double sum = 0.0;
    for (Comb& comb : combs_) sum += comb.Next(in);
    for (AllPass& pass : passes_) sum = pass.Next(sum);
    return sum;
  }

 private:
  std::array<Comb, 6> combs_;
  std::array<AllPass, 3> passes_;
};

/// The mean power of the parts of a tenth of a second that are not far below the loudest of them.
double LoudnessOf(const StereoSound& sound) {
  const std::size_t part = FramesOf(0.1);
  std::vector<double> powers;
  for (std::size_t first = 0; first + part <= sound.Frames(); first += part) {
    double sum = 0.0;
    for (std::size_t i = first; i < first + part; ++i) {
      sum += static_cast<double>(sound.left[i]) * sound.left[i] +
             static_cast<double>(sound.right[i]) * sound.right[i];
    }
    powers.push_back(sum / (2.0 * static_cast<double>(part)));
  }
  if (powers.empty()) return 0.0;
  const double gate = *std::max_element(powers.begin(), powers.end()) * 0.01;
  double sum = 0.0;
  double count = 0.0;
  for (const double power : powers) {
    if (power < gate) continue;
    sum += power;
    count += 1.0;
  }
  return std::sqrt(sum / count);
}

void Scale(StereoSound& sound, double gain) {
  for (float& sample : sound.left) sample = static_cast<float>(sample * gain);
  for (float& sample : sound.right) sample = static_cast<float>(sample * gain);
}

double PeakOf(const StereoSound& sound) {
  float peak = 0.0F;
  for (const float sample : sound.left) peak = std::max(peak, std::abs(sample));
  for (const float sample : sound.right) peak = std::max(peak, std::abs(sample));
  return peak;
}

/// Turns peaks above `ceiling` down, beginning 3 ms before them and letting go over about 80 ms.
void Limit(StereoSound& sound, double ceiling) {
  const std::size_t frames = sound.Frames();
  const std::size_t ahead = FramesOf(0.003);
  const double recover = 1.0 - std::exp(-1.0 / (0.08 * kSampleRate));
  std::vector<float> wanted(frames);
  for (std::size_t i = 0; i < frames; ++i) {
    const double peak = std::max(std::abs(sound.left[i]), std::abs(sound.right[i]));
    wanted[i] = static_cast<float>(peak > ceiling ? ceiling / peak : 1.0);
  }
  // The least of the next `ahead` gains, then a mean over as many: down in a straight line, in time, never
  // too little.
  std::deque<std::size_t> least;
  std::vector<float> held(frames);
  double gain = 1.0;
  for (std::size_t next = 0; next < frames + ahead; ++next) {
    if (next < frames) {
      while (!least.empty() && wanted[least.back()] >= wanted[next]) least.pop_back();
      least.push_back(next);
    }
    if (next < ahead) continue;
    const std::size_t now = next - ahead;
    while (least.front() < now) least.pop_front();
    const double target = wanted[least.front()];
    gain = target < gain ? target : gain + (target - gain) * recover;
    held[now] = static_cast<float>(gain);
  }
  double sum = static_cast<double>(ahead + 1);
  for (std::size_t i = 0; i < frames; ++i) {
    const double leaving = i > ahead ? held[i - ahead - 1] : 1.0;
    sum += held[i] - leaving;
    const double smooth = sum / static_cast<double>(ahead + 1);
    sound.left[i] = static_cast<float>(sound.left[i] * smooth);
    sound.right[i] = static_cast<float>(sound.right[i] * smooth);
  }
}

}  // namespace

void AddReverb(const StereoSound& in, double size, StereoSound& out) {
  const double feedback = 0.68 + 0.26 * std::clamp(size, 0.0, 1.0);
  RoomSide left(feedback, 0);
  RoomSide right(feedback, 23);
  StateVariableFilter leftTone;
  StateVariableFilter rightTone;
  leftTone.Set(220.0, 0.0);
  rightTone.Set(220.0, 0.0);
  for (std::size_t i = 0; i < in.Frames(); ++i) {
    const double both = 0.35 * (in.left[i] + in.right[i]);
    const double wetLeft = left.Next(leftTone.Next(both + 0.3 * in.left[i]).high);
    const double wetRight = right.Next(rightTone.Next(both + 0.3 * in.right[i]).high);
    out.left[i] += static_cast<float>(0.16 * wetLeft);
    out.right[i] += static_cast<float>(0.16 * wetRight);
  }
}

void AddEcho(const StereoSound& in, double seconds, StereoSound& out) {
  DelayLine left(FramesOf(seconds));
  DelayLine right(FramesOf(seconds));
  double dullLeft = 0.0;
  double dullRight = 0.0;
  for (std::size_t i = 0; i < in.Frames(); ++i) {
    dullLeft += 0.35 * (left.Out() - dullLeft);
    dullRight += 0.35 * (right.Out() - dullRight);
    left.In(0.5 * (in.left[i] + in.right[i]) + 0.45 * dullRight);
    right.In(0.9 * dullLeft);
    out.left[i] += static_cast<float>(dullLeft);
    out.right[i] += static_cast<float>(dullRight);
  }
}

void RemoveRumble(StereoSound& sound) {
  for (std::vector<float>* side : {&sound.left, &sound.right}) {
    StateVariableFilter filter;
    filter.Set(28.0, 0.3);
    for (float& sample : *side) sample = static_cast<float>(filter.Next(sample).high);
  }
}

void Fade(StereoSound& sound, double in, double out) {
  const std::size_t frames = sound.Frames();
  const std::size_t rise = std::min(frames, FramesOf(std::max(in, 0.001)));
  const std::size_t fall = std::min(frames, FramesOf(std::max(out, 0.05)));
  const auto turn = [&sound](std::size_t frame, double gain) {
    sound.left[frame] = static_cast<float>(sound.left[frame] * gain);
    sound.right[frame] = static_cast<float>(sound.right[frame] * gain);
  };
  for (std::size_t i = 0; i < rise; ++i) turn(i, static_cast<double>(i) / static_cast<double>(rise));
  for (std::size_t i = 0; i < fall; ++i) {
    const double left = static_cast<double>(i) / static_cast<double>(fall);
    turn(frames - 1 - i, left * left);
  }
}

void Master(StereoSound& sound, double loudness) {
  const double now = LoudnessOf(sound);
  if (now <= 0.0) return;
  // Twice: the limiter takes away some of the loudness that it was given.
  Scale(sound, GainOf(loudness) / now);
  Limit(sound, kPeak);
  Scale(sound, std::min(1.5, GainOf(loudness) / LoudnessOf(sound)));
  Limit(sound, kPeak);
  Scale(sound, kPeak / std::max(PeakOf(sound), 0.3));
}

}  // namespace kelvo::demo
