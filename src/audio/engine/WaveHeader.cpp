#include "audio/engine/WaveHeader.h"

#include "audio/engine/SoundFile.h"

#include <array>
#include <cstdio>
#include <cstring>

namespace kelvo {

namespace {

/// A real file has a handful; a damaged one must not keep us reading.
constexpr int kMostChunks = 200;

std::uint32_t Number(const unsigned char* bytes, int count, bool littleEndian) {
  std::uint32_t value = 0;
  for (int i = 0; i < count; ++i) value = value << 8 | bytes[littleEndian ? count - 1 - i : i];
  return value;
}

bool Is(const unsigned char* bytes, const char* id) {
  return std::memcmp(bytes, id, 4) == 0;
}

void ReadFormat(SoundFile& file, std::uint32_t size, WaveHeader& header) {
  std::array<unsigned char, 40> bytes{};
  if (file.Read(bytes.data(), std::min<std::int64_t>(size, bytes.size())) < 16) return;
  const auto word = [&](int at) {
    return static_cast<std::uint16_t>(Number(bytes.data() + at, 2, header.littleEndian));
  };
  header.format = word(0);
  header.channels = word(2);
  header.rate = Number(bytes.data() + 4, 4, header.littleEndian);
  header.bits = word(14);
  if (header.format == 0xFFFE && size >= 26) header.format = word(24);
}

}  // namespace

std::optional<WaveHeader> ReadWaveHeader(SoundFile& file) {
  std::array<unsigned char, 12> bytes{};
  file.Seek(0, SEEK_SET);
  if (file.Read(bytes.data(), 12) != 12 || !Is(bytes.data() + 8, "WAVE")) return std::nullopt;
  if (!Is(bytes.data(), "RIFF") && !Is(bytes.data(), "RF64") && !Is(bytes.data(), "RIFX"))
    return std::nullopt;

  WaveHeader header;
  header.littleEndian = !Is(bytes.data(), "RIFX");
  for (int chunk = 0; chunk < kMostChunks && file.Read(bytes.data(), 8) == 8; ++chunk) {
    const std::uint32_t size = Number(bytes.data() + 4, 4, header.littleEndian);
    const std::int64_t content = file.Position();
    if (Is(bytes.data(), "fmt ")) ReadFormat(file, size, header);
    if (Is(bytes.data(), "data")) {
      header.dataOffset = content;
      header.dataSize = size;
      break;
    }
    file.Seek(content + size + (size & 1), SEEK_SET);
  }
  return header;
}

}  // namespace kelvo
