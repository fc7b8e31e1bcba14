#pragma once

#include "audio/engine/SoundBlock.h"
#include "audio/engine/SoundFile.h"

#include <memory>
#include <span>

namespace kelvo {

/// Turns a file into stereo float samples at the file's own rate. Owned by a feeder; one thread at a time.
/// Mono comes on both sides; of more than two channels the first two are taken.
class Decoder {
 public:
  virtual ~Decoder() = default;

  [[nodiscard]] int Rate() const { return rate_; }
  /// The true length in frames.
  [[nodiscard]] FrameIndex Frames() const { return frames_; }

  /// Fills `target` (interleaved stereo) and returns the frames filled. Fewer than asked for is the end, be
  /// it the file's or that of what could be read of a damaged one. The samples are finite and within +-4.
  [[nodiscard]] std::size_t Read(std::span<float> target);
  /// The next Read starts at `frame`, to the sample.
  virtual void Seek(FrameIndex frame) = 0;

 protected:
  [[nodiscard]] virtual std::size_t ReadSome(std::span<float> target) = 0;

  int rate_ = 0;
  FrameIndex frames_ = 0;
};

/// Whether anything can be heard in the file: a sample above -66 dB of full scale within its first ten
/// minutes. It reads no further than it must, so music answers at once. The decoder is at its start
/// afterwards.
[[nodiscard]] bool HoldsSound(Decoder& decoder, const OpeningPtr& opening);

}  // namespace kelvo
