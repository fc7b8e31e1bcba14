#pragma once

#include <cstdint>
#include <optional>

namespace kelvo {

class SoundFile;

/// What the chunks of a RIFF/WAVE file say of its sound. Sizes are as written, not checked against the file.
struct WaveHeader {
  std::uint16_t format = 0;  ///< the format tag; that of the sub-format for the extensible kind
  std::uint16_t channels = 0;
  std::uint32_t rate = 0;
  std::uint16_t bits = 0;
  std::int64_t dataOffset = 0;  ///< 0 when there is no data chunk
  std::uint32_t dataSize = 0;
  bool littleEndian = true;

  static constexpr std::uint16_t kPcm = 1;
  static constexpr std::uint16_t kFloat = 3;
  static constexpr std::uint16_t kMpeg = 0x50;
  static constexpr std::uint16_t kMpegLayer3 = 0x55;

  /// True when the writer of the file never came to fill in how much data there is.
  [[nodiscard]] bool Unfinished() const {
    return dataOffset > 0 && (dataSize == 0 || dataSize == 0xFFFFFFFF);
  }
};

/// Reads the header at the start of `file`; nothing when it is no RIFF/WAVE file (RF64 and RIFX count as
/// one). Leaves the file's position anywhere.
[[nodiscard]] std::optional<WaveHeader> ReadWaveHeader(SoundFile& file);

}  // namespace kelvo
