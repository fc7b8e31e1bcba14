#include "audio/engine/OpenDecoder.h"

#include "audio/engine/Mpg123Decoder.h"
#include "audio/engine/SndfileDecoder.h"
#include "audio/engine/WaveHeader.h"
#include "platform/ErrorLog.h"

#include <array>

namespace kelvo {

namespace {

std::unique_ptr<Decoder> Choose(std::unique_ptr<SoundFile> file) {
  const auto wave = ReadWaveHeader(*file);
  file->Seek(0, SEEK_SET);
  if (!wave) return std::make_unique<Mpg123Decoder>(std::move(file));
  if (wave->format == WaveHeader::kMpeg || wave->format == WaveHeader::kMpegLayer3) {
    const std::int64_t size = wave->Unfinished() ? file->Size() : wave->dataSize;
    file->LimitTo(wave->dataOffset, size);
    return std::make_unique<Mpg123Decoder>(std::move(file));
  }
  return std::make_unique<SndfileDecoder>(std::move(file), *wave);
}

}  // namespace

std::unique_ptr<Decoder> OpenDecoder(const QString& path, OpeningPtr opening) {
  auto file = std::make_unique<SoundFile>(path, std::move(opening));
  SoundFile& opened = *file;
  auto decoder = Choose(std::move(file));
  const bool rateIsSane = decoder->Rate() >= 1000 && decoder->Rate() <= 768000;
  std::array<float, kChannels * 64> first{};
  if (!rateIsSane || decoder->Frames() <= 0 || decoder->Read(first) == 0) {
    throw Failure(QStringLiteral("%1 holds no sound that can be played.").arg(path), 0, path);
  }
  decoder->Seek(0);
  opened.EndOpening();
  return decoder;
}

}  // namespace kelvo
