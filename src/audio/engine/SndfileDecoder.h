#pragma once

#include "audio/engine/Decoder.h"
#include "audio/engine/WaveHeader.h"

#include <sndfile.h>

#include <vector>

namespace kelvo {

/// WAV files of every kind that holds no MPEG data.
class SndfileDecoder : public Decoder {
 public:
  /// Throws Failure when the file cannot be read. Of a file whose writer never finished the header everything
  /// that is there is played.
  SndfileDecoder(std::unique_ptr<SoundFile> file, const WaveHeader& header);

  void Seek(FrameIndex frame) override;

 protected:
  [[nodiscard]] std::size_t ReadSome(std::span<float> target) override;

 private:
  struct Closer {
    void operator()(SNDFILE* file) const { sf_close(file); }
  };
  void OpenAsRaw(const WaveHeader& header);

  std::unique_ptr<SoundFile> file_;
  SF_INFO info_{};
  std::unique_ptr<SNDFILE, Closer> sound_;
  std::vector<float> raw_;
};

}  // namespace kelvo
