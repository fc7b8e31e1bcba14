#include "datamanager/Mp3Info.h"

#include "database/InfoFields.h"
#include "platform/Words.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kelvo {
namespace {

constexpr double kFullScale = 32767;
/// A peak above it is no peak.
constexpr double kMostAmp = 1'000'000;
/// Steps that double the amplitude.
constexpr double kStepsPerOctave = 4;

std::int16_t Clamped16(double value) {
  using Limits = std::numeric_limits<std::int16_t>;
  return static_cast<std::int16_t>(
      std::clamp<double>(std::nearbyint(value), Limits::lowest(), Limits::max()));
}

}  // namespace

std::int16_t Mp3Info::Steps(const std::optional<double>& gain) const {
  return gain ? Clamped16((*gain + ModifydBGain.value_or(0)) / kStep) : std::int16_t{0};
}

std::int32_t Mp3Info::MaxNoclipMp3Gain() const {
  if (!CurrMaxAmp || !(*CurrMaxAmp > 0) || !(*CurrMaxAmp < kMostAmp)) return 0;
  return static_cast<std::int32_t>(Int(kStepsPerOctave * std::log2(kFullScale / *CurrMaxAmp)));
}

void Mp3Info::AlterDb(double decibels) {
  for (std::optional<double>* gain : {&RadiodBGain, &AlbumdBGain}) {
    if (*gain) **gain += decibels;
  }
  const double steps = -decibels / kStep;
  if (CurrMaxAmp) *CurrMaxAmp *= std::exp2(steps / kStepsPerOctave);
  for (std::optional<std::int16_t>* gain : {&CurrMaxGain, &CurrMinGain}) {
    if (*gain) **gain = Clamped16(**gain + steps);
  }
}

std::optional<Gain> Mp3Info::Shown() const {
  if (!RadiodBGain) return std::nullopt;
  return Gain{kUnityVolume + ModifydBGain.value_or(0) - *RadiodBGain, RadioMp3Gain() * kShownStep};
}

}  // namespace kelvo
