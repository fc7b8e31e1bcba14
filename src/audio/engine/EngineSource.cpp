#include "audio/engine/EngineSource.h"

#include "platform/ErrorLog.h"

#include <soxr.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace kelvo {

namespace {

constexpr std::size_t kInputFrames = 1024;

/// Frames of the file that the converter hears before a seek's target, so that it does not start from silence
/// there.
constexpr FrameIndex kRunUp = 1024;

}  // namespace

void EngineSource::Deleter::operator()(soxr* state) const {
  soxr_delete(state);
}

EngineSource::EngineSource(std::unique_ptr<Decoder> decoder)
    : decoder_(std::move(decoder)), ratio_(static_cast<double>(kEngineRate) / decoder_->Rate()) {
  if (decoder_->Rate() == kEngineRate) return;
  converter_ = MakeConverter();
  input_.resize(kInputFrames * kChannels);
}

EngineSource::Converter EngineSource::MakeConverter() const {
  soxr_error_t error = nullptr;
  const soxr_io_spec_t samples = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
  const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
  Converter made(soxr_create(decoder_->Rate(), kEngineRate, kChannels, &error, &samples, &quality, nullptr));
  if (!made) throw Failure(QString::fromUtf8(soxr_strerror(error)), 0, QStringLiteral("libsoxr"));
  return made;
}

EngineSource::~EngineSource() = default;

double EngineSource::Seconds() const {
  return static_cast<double>(decoder_->Frames()) / decoder_->Rate();
}

std::size_t EngineSource::Read(std::span<float> target) {
  return converter_ ? ReadConverted(target) : decoder_->Read(target);
}

std::size_t EngineSource::ReadConverted(std::span<float> target) {
  const std::size_t wanted = target.size() / kChannels;
  std::size_t done = 0;
  while (done < wanted && !converterEnded_) {
    if (inputFrames_ == 0 && !decoderEnded_) {
      inputFrames_ = decoder_->Read(input_);
      inputStart_ = 0;
      decoderEnded_ = inputFrames_ < kInputFrames;
    }
    // No input: it gives what it still holds.
    const bool over = inputFrames_ == 0;
    std::size_t used = 0;
    std::size_t made = 0;
    const soxr_error_t error =
        soxr_process(converter_.get(), over ? nullptr : input_.data() + inputStart_ * kChannels, inputFrames_,
                     &used, target.data() + done * kChannels, wanted - done, &made);
    if (error != nullptr) break;
    inputStart_ += used;
    inputFrames_ -= used;
    done += made;
    converterEnded_ = over && made == 0;
  }
  return done;
}

void EngineSource::Seek(FrameIndex frame) {
  if (!converter_) {
    decoder_->Seek(std::clamp<FrameIndex>(frame, 0, decoder_->Frames()));
    return;
  }
  const auto target =
      std::min(std::llround(static_cast<double>(frame) / ratio_), static_cast<long long>(decoder_->Frames()));
  const FrameIndex from = std::max<FrameIndex>(target - kRunUp, 0);
  decoder_->Seek(from);
  converter_ = MakeConverter();
  inputFrames_ = 0;
  decoderEnded_ = false;
  converterEnded_ = false;
  auto skip = static_cast<std::size_t>(std::llround(static_cast<double>(target - from) * ratio_));
  std::array<float, kBlockFrames * kChannels> dropped{};
  while (skip > 0) {
    const std::size_t part = std::min(skip, kBlockFrames);
    if (Read(std::span(dropped).first(part * kChannels)) < part) break;
    skip -= part;
  }
}

}  // namespace kelvo
