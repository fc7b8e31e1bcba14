#include "audio/engine/EngineSource.h"

#include "platform/ErrorLog.h"

#include <samplerate.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace kelvo {

namespace {

constexpr std::size_t kInputFrames = 1024;

/// Frames of the file that the converter hears before a seek's target, so that it does not start from silence
/// there.
constexpr FrameIndex kRunUp = 256;

}  // namespace

void EngineSource::Deleter::operator()(SRC_STATE_tag* state) const {
  src_delete(state);
}

EngineSource::EngineSource(std::unique_ptr<Decoder> decoder)
    : decoder_(std::move(decoder)), ratio_(static_cast<double>(kEngineRate) / decoder_->Rate()) {
  if (decoder_->Rate() == kEngineRate) return;
  int error = 0;
  converter_.reset(src_new(SRC_SINC_FASTEST, static_cast<int>(kChannels), &error));
  if (!converter_)
    throw Failure(QString::fromUtf8(src_strerror(error)), error, QStringLiteral("libsamplerate"));
  input_.resize(kInputFrames * kChannels);
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
    SRC_DATA data{};
    data.data_in = input_.data() + inputStart_ * kChannels;
    data.input_frames = static_cast<long>(inputFrames_);
    data.data_out = target.data() + done * kChannels;
    data.output_frames = static_cast<long>(wanted - done);
    data.src_ratio = ratio_;
    data.end_of_input = decoderEnded_ ? 1 : 0;
    if (src_process(converter_.get(), &data) != 0) break;
    const auto used = static_cast<std::size_t>(data.input_frames_used);
    inputStart_ += used;
    inputFrames_ -= used;
    done += static_cast<std::size_t>(data.output_frames_gen);
    converterEnded_ = decoderEnded_ && data.output_frames_gen == 0;
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
  src_reset(converter_.get());
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
