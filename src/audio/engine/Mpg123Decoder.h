#pragma once

#include "audio/engine/Decoder.h"

#include <mpg123.h>

namespace kelvo {

/// MPEG audio, layers 1 to 3. The whole file is scanned when it is opened, so that length and seeks are true
/// with variable rates too, header or not.
class Mpg123Decoder : public Decoder {
 public:
  /// Head: it is only asked whether there is sound; length and seeks are guesses then.
  enum class Extent { Whole, Head };
  /// Throws Failure when no MPEG audio is found near the start.
  explicit Mpg123Decoder(std::unique_ptr<SoundFile> file, Extent extent = Extent::Whole);

  void Seek(FrameIndex frame) override;

 protected:
  [[nodiscard]] std::size_t ReadSome(std::span<float> target) override;

 private:
  struct Deleter {
    void operator()(mpg123_handle* handle) const { mpg123_delete(handle); }
  };
  std::unique_ptr<SoundFile> file_;
  std::unique_ptr<mpg123_handle, Deleter> handle_;
  bool ended_ = false;
};

}  // namespace kelvo
