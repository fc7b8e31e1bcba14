#include "audio/engine/VarispeedReader.h"

#include <algorithm>
#include <cmath>

namespace kelvo {

namespace {

/// 20 ms to go from one rate to another.
constexpr int kRateSteps = kEngineRate / 50;

/// How much faster than 1 it reads for a moment to reach whole frames again: three hundredths of a
/// semitone.
constexpr double kCatchUp = 1.0 / 512;

}  // namespace

void VarispeedReader::Begin(Generation generation, double rate) {
  at_ = {.generation = generation, .rate = Ramp<double>(rate)};
  DropOlder();
  FindStretch();
}

void VarispeedReader::GoTo(const Mark& mark) {
  at_ = mark;
  FindStretch();
}

void VarispeedReader::FindStretch() {
  stretch_ = tape_.Find(at_.generation);
  if (stretch_ && !at_.started) at_.index = stretch_->begin;
  at_.started = stretch_ != nullptr;
}

void VarispeedReader::SetRate(double rate) {
  at_.rate.Aim(rate, kRateSteps);
}

bool VarispeedReader::Pull() {
  if ((stretch_ && stretch_->complete) || !tape_.Pull(at_.generation)) return false;
  if (!stretch_) FindStretch();
  return true;
}

void VarispeedReader::Ensure(std::size_t frames) {
  while (Ready() < frames && Pull()) {
  }
}

std::size_t VarispeedReader::Read(std::span<float> target) {
  const std::size_t wanted = target.size() / kChannels;
  std::size_t done = 0;
  while (done < wanted) {
    if (!at_.rate.Moving() && at_.rate.Value() == 1.0 && at_.fraction == 0.0) {
      return done + Copy(target.subspan(done * kChannels));
    }
    if (!Interpolate(&target[done * kChannels])) return done;
    Advance();
    ++done;
  }
  return done;
}

std::size_t VarispeedReader::Copy(std::span<float> target) {
  const std::size_t wanted = target.size() / kChannels;
  std::size_t done = 0;
  while (done < wanted) {
    Ensure(1);
    const std::size_t part = std::min({wanted - done, Ready(), tape_.Together(at_.index)});
    if (part == 0) break;
    std::copy_n(tape_.Frame(at_.index), part * kChannels,
                target.begin() + static_cast<std::ptrdiff_t>(done * kChannels));
    at_.index += part;
    done += part;
  }
  return done;
}

bool VarispeedReader::Interpolate(float* frame) {
  Ensure(kHistory);
  const std::size_t ready = Ready();
  if (ready == 0 || (!stretch_->complete && ready < kHistory)) return false;
  // Above the recorded speed the kernel is stretched, so that what would fold back is filtered out.
  const double scale = std::min(1.0, 1.0 / at_.rate.Value());
  const auto reach = static_cast<std::ptrdiff_t>(std::ceil(SincTable::kReach / scale));
  float left = 0;
  float right = 0;
  float sum = 0;
  for (std::ptrdiff_t off = 1 - reach; off <= reach; ++off) {
    const double distance = std::abs(static_cast<double>(off) - at_.fraction);
    const float weight = sinc_.At(distance * scale);
    sum += weight;
    if (off >= static_cast<std::ptrdiff_t>(ready)) continue;
    const float* const sample = tape_.Frame(at_.index + static_cast<SoundTape::Place>(off));
    left += sample[0] * weight;
    right += sample[1] * weight;
  }
  frame[0] = left / sum;
  frame[1] = right / sum;
  return true;
}

void VarispeedReader::Advance() {
  const bool closing = !at_.rate.Moving() && at_.rate.Value() == 1.0;
  if (closing && 1.0 - at_.fraction <= kCatchUp) {
    at_.index += 2;
    at_.fraction = 0;
  } else {
    at_.fraction += closing ? 1.0 + kCatchUp : at_.rate.Value();
    const double whole = std::floor(at_.fraction);
    at_.index += static_cast<std::size_t>(whole);
    at_.fraction -= whole;
    at_.rate.Step();
  }
  at_.index = std::min(at_.index, stretch_->end);
}

}  // namespace kelvo
