#include "audio/engine/FileWalk.h"

#include "audio/engine/OpenDecoder.h"
#include "platform/ErrorLog.h"

#include <algorithm>

namespace kelvo {
namespace {

constexpr std::size_t kPieceFrames = 16384;

}  // namespace

FileWalk::FileWalk(const QString& path, OpeningPtr opening, std::function<void(int)> onPercent)
    : opening_(std::move(opening)),
      onPercent_(std::move(onPercent)),
      decoder_(OpenDecoder(path, opening_)),
      piece_(kPieceFrames * kChannels) {}

std::span<const float> FileWalk::Next() {
  if (opening_ && opening_->cancelled) throw Failure(QStringLiteral("The look at the sound was cancelled."));
  const std::size_t frames = decoder_->Read(piece_);
  done_ += static_cast<FrameIndex>(frames);
  const FrameIndex all = std::max<FrameIndex>(decoder_->Frames(), 1);
  const int percent = static_cast<int>(std::min<FrameIndex>(done_ * 100 / all, 100));
  if (onPercent_ && percent != std::exchange(percent_, percent)) onPercent_(percent);
  return {piece_.data(), frames * kChannels};
}

}  // namespace kelvo
