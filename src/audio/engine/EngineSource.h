#pragma once

#include "audio/engine/Decoder.h"

#include <memory>
#include <span>
#include <vector>

struct soxr;

namespace kelvo {

/// A decoder brought to the engine's rate. Positions are frames at that rate. Owned by a feeder; one thread
/// at a time.
class EngineSource {
 public:
  explicit EngineSource(std::unique_ptr<Decoder> decoder);
  ~EngineSource();

  [[nodiscard]] double Seconds() const;
  /// Stereo frames into `target`; fewer than asked for is the end.
  [[nodiscard]] std::size_t Read(std::span<float> target);
  void Seek(FrameIndex frame);

 private:
  [[nodiscard]] std::size_t ReadConverted(std::span<float> target);

  struct Deleter {
    void operator()(soxr* state) const;
  };
  using Converter = std::unique_ptr<soxr, Deleter>;
  [[nodiscard]] Converter MakeConverter() const;

  std::unique_ptr<Decoder> decoder_;
  double ratio_;
  Converter converter_;
  std::vector<float> input_;
  std::size_t inputStart_ = 0;   ///< the first frame in `input_` that the converter has not taken
  std::size_t inputFrames_ = 0;  ///< the frames behind it
  bool decoderEnded_ = false;
  bool converterEnded_ = false;
};

}  // namespace kelvo
