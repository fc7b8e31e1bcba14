#include "encoding/RateChange.h"

#include "audio/engine/SoundBlock.h"
#include "platform/ErrorLog.h"

#include <soxr.h>

#include <cmath>

namespace kelvo {

namespace {

/// What the converter may hold back and then give at once.
constexpr std::size_t kHeldBack = 8192;

}  // namespace

void RateChange::Deleter::operator()(soxr* state) const {
  soxr_delete(state);
}

RateChange::RateChange(int from, int to) : ratio_(static_cast<double>(to) / from) {
  soxr_error_t error = nullptr;
  const soxr_io_spec_t samples = soxr_io_spec(SOXR_INT16_I, SOXR_INT16_I);
  const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
  state_.reset(soxr_create(from, to, kChannels, &error, &samples, &quality, nullptr));
  if (!state_) throw Failure(QString::fromUtf8(soxr_strerror(error)), 0, QStringLiteral("libsoxr"));
}

std::span<const std::int16_t> RateChange::Take(std::span<const std::int16_t> sound) {
  return Process(sound.data(), sound.size() / kChannels);
}

std::span<const std::int16_t> RateChange::Rest() {
  return Process(nullptr, 0);
}

std::span<const std::int16_t> RateChange::Process(const std::int16_t* from, std::size_t frames) {
  const std::size_t room =
      static_cast<std::size_t>(std::ceil(static_cast<double>(frames) * ratio_)) + kHeldBack;
  out_.resize(room * kChannels);
  std::size_t used = 0;
  std::size_t made = 0;
  const soxr_error_t error = soxr_process(state_.get(), from, frames, &used, out_.data(), room, &made);
  if (error != nullptr) throw Failure(QString::fromUtf8(soxr_strerror(error)), 0, QStringLiteral("libsoxr"));
  return std::span<const std::int16_t>(out_).first(made * kChannels);
}

}  // namespace kelvo
