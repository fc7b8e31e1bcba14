#include "audio/ProgrammeMeter.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>

namespace kelvo {

namespace {

constexpr FrameIndex kHoldFrames = 2 * kEngineRate;
constexpr std::size_t kPartFrames = 1024;

/// A look at the loudness goes over 400 ms of sound: ten times a second is enough for an eye.
constexpr std::size_t kLoudnessFrames = kEngineRate / 10;

/// Further back than this nobody has looked: the levels of that time are of no use.
constexpr FrameIndex kMostBehind = kEngineRate;

const double kPeakFall = std::pow(10, -20.0 / 20 / (1.5 * kEngineRate));
const double kRmsShare = 1 - std::exp(-1 / (0.3 * kEngineRate));

double Decibels(double level) {
  return level > 1e-6 ? 20 * std::log10(level) : MeterLevels::kSilence;
}

}  // namespace

/// The library's measure, where it has the memory for it.
struct ProgrammeMeter::Loudness {
  ebur128_state* state = ebur128_init(kChannels, kEngineRate, EBUR128_MODE_M);
  Loudness() = default;
  ~Loudness() {
    if (state) ebur128_destroy(&state);
  }
  Loudness(const Loudness&) = delete;
  Loudness& operator=(const Loudness&) = delete;

  [[nodiscard]] double Momentary(std::span<const float> sound) {
    if (!state) return momentary;
    const std::size_t frames = sound.size() / kChannels;
    ebur128_add_frames_float(state, sound.data(), frames);
    fresh += frames;
    if (fresh < kLoudnessFrames) return momentary;
    fresh = 0;
    ebur128_loudness_momentary(state, &momentary);
    momentary = std::max(momentary, MeterLevels::kSilence);
    return momentary;
  }

 private:
  std::size_t fresh = kLoudnessFrames;  ///< frames since the last look at the measure
  double momentary = MeterLevels::kSilence;
};

ProgrammeMeter::ProgrammeMeter(std::shared_ptr<const Tap> tap)
    : tap_(std::move(tap)), part_(kPartFrames * kChannels) {}

ProgrammeMeter::~ProgrammeMeter() = default;

void ProgrammeMeter::Begin(FrameIndex at) {
  next_ = at;
  falls_ = {};
  levels_ = {};
  loudness_ = std::make_unique<Loudness>();
}

const MeterLevels& ProgrammeMeter::Look() {
  const FrameIndex heard = tap_->Heard();
  if (heard < 0) return levels_;
  if (next_ < 0 || heard - next_ > kMostBehind) Begin(heard);
  while (next_ < heard) {
    const auto frames = std::min(static_cast<std::size_t>(heard - next_), kPartFrames);
    const auto part = std::span(part_).first(frames * kChannels);
    if (!tap_->Read(next_, part)) {
      Begin(heard);
      break;
    }
    Take(part);
    next_ += static_cast<FrameIndex>(frames);
  }
  return levels_;
}

void ProgrammeMeter::Take(std::span<const float> sound) {
  for (std::size_t side = 0; side < kChannels; ++side) {
    Fall& fall = falls_[side];
    for (std::size_t i = side; i < sound.size(); i += kChannels) {
      const double level = std::abs(sound[i]);
      fall.peak = std::max(level, fall.peak * kPeakFall);
      fall.square += (level * level - fall.square) * kRmsShare;
      if (level >= fall.hold || ++fall.heldFor > kHoldFrames) {
        fall.hold = level >= fall.hold ? level : fall.peak;
        fall.heldFor = 0;
      }
    }
    levels_.sides[side] = {Decibels(fall.peak), Decibels(fall.hold), Decibels(std::sqrt(fall.square))};
  }
  levels_.momentary = loudness_->Momentary(sound);
}

}  // namespace kelvo
