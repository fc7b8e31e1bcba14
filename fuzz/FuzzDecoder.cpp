#include "FileInMemory.h"
#include "audio/engine/OpenDecoder.h"
#include "platform/ErrorLog.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const FileInMemory file(data, size);
  try {
    const auto decoder = kelvo::OpenDecoder(file.Path());
    if (decoder->Frames() <= 0 || decoder->Rate() <= 0) std::abort();
    (void)kelvo::HoldsSound(*decoder, {});
    std::array<float, 1024> sound{};
    for (const kelvo::FrameIndex place :
         {decoder->Frames() / 2, decoder->Frames() - 1, kelvo::FrameIndex{0}}) {
      decoder->Seek(place);
      std::size_t frames = 0;
      for (int blocks = 0; blocks < 40 && (frames = decoder->Read(sound)) > 0; ++blocks) {
        if (frames > sound.size() / 2) std::abort();
        for (std::size_t i = 0; i < 2 * frames; ++i) {
          if (!(std::abs(sound[i]) <= 4.0F)) std::abort();
        }
      }
    }
  } catch (const kelvo::Failure&) {
    // Refusing is right; anything else that is thrown is a fault.
  }
  return 0;
}
