#pragma once

#include "audio/engine/Decoder.h"

#include <QString>

#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace kelvo {

/// A whole file listened to from start to end, for those who measure it. One thread, not the logic's.
class FileWalk {
 public:
  /// `onPercent` is called when another per cent is through. Throws Failure when the file can't be played.
  FileWalk(const QString& path, OpeningPtr opening, std::function<void(int)> onPercent);

  [[nodiscard]] int Rate() const { return decoder_->Rate(); }
  /// The next piece, interleaved stereo; empty at the end. Throws Failure when `opening` was cancelled.
  [[nodiscard]] std::span<const float> Next();

 private:
  OpeningPtr opening_;
  std::function<void(int)> onPercent_;
  std::unique_ptr<Decoder> decoder_;
  std::vector<float> piece_;
  FrameIndex done_ = 0;
  int percent_ = -1;
};

}  // namespace kelvo
