#include "console/scope/ProgrammeLevels.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kWordsEvery = 200ms;
/// A single peak is to be seen.
constexpr Nanoseconds kLampStays = 400ms;
/// Less than this nobody hears, nor is it worth a lamp.
constexpr double kLeastReduction = 0.05;

QString InWords(double loudness) {
  return loudness > -70 ? QString::number(loudness, 'f', 1) : QStringLiteral("-\u221e");
}

}  // namespace

ProgrammeLevels::ProgrammeLevels(PictureBeat& beat, EventLoop& loop, AudioSystem& audio)
    : MovingPicture(beat), loop_(loop), audio_(audio), loudness_(InWords(MeterLevels::kSilence)) {}

ProgrammeLevels::~ProgrammeLevels() = default;

double ProgrammeLevels::Deflection(double decibels) {
  struct Mark {
    double decibels;
    double place;
  };
  static constexpr std::array kMarks{Mark{-70, 0},    Mark{-60, 0.025}, Mark{-50, 0.075}, Mark{-40, 0.15},
                                     Mark{-30, 0.30}, Mark{-20, 0.50},  Mark{0, 1}};
  if (decibels <= kMarks.front().decibels) return 0;
  const auto* above = std::find_if(kMarks.begin(), kMarks.end(),
                                   [decibels](const Mark& mark) { return mark.decibels >= decibels; });
  if (above == kMarks.end()) return 1;
  const Mark& below = *(above - 1);
  const double share = (decibels - below.decibels) / (above->decibels - below.decibels);
  return below.place + share * (above->place - below.place);
}

void ProgrammeLevels::Rest() {
  unheard_.clear();
}

void ProgrammeLevels::Renew() {
  const auto tap = audio_.TapOf();
  if (tap != tap_) {
    tap_ = tap;
    meter_ = tap ? std::make_unique<ProgrammeMeter>(tap) : nullptr;
  }
  if (!meter_) return;
  const Nanoseconds now = loop_.Elapsed();
  const MeterLevels before = std::exchange(levels_, meter_->Look());
  FollowLimiter(*tap_, now);
  if (now >= loudnessAt_ + kWordsEvery) {
    loudnessAt_ = now;
    loudness_ = InWords(levels_.momentary);
  }
  const auto silent = [](const MeterLevels& levels) {
    return std::all_of(levels.sides.begin(), levels.sides.end(), [](const MeterLevels::Side& side) {
      return side.peak <= MeterLevels::kSilence && side.hold <= MeterLevels::kSilence &&
             side.rms <= MeterLevels::kSilence;
    });
  };
  if (!silent(before) || !silent(levels_)) Q_EMIT Renewed();
}

// The limiter tells of what it renders; the lamp is lit when that is heard.
void ProgrammeLevels::FollowLimiter(const Tap& tap, Nanoseconds now) {
  const FrameIndex waits = std::max<FrameIndex>(tap.Settled() - tap.Heard(), 0);
  unheard_.push_back({now + Nanoseconds(waits * 1'000'000'000 / kEngineRate), audio_.GainReduction()});
  const double before = reduction_;
  if (now >= litUntil_) reduction_ = 0;
  while (!unheard_.empty() && unheard_.front().heardAt <= now) {
    const double decibels = unheard_.front().decibels;
    unheard_.pop_front();
    if (decibels < kLeastReduction) continue;
    reduction_ = std::max(reduction_, decibels);
    litUntil_ = now + kLampStays;
  }
  if (reduction_ != before) Q_EMIT LampChanged();
}

}  // namespace kelvo
