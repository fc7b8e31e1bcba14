#include "audio/engine/OpenDecoder.h"

#include "audio/engine/Mpg123Decoder.h"
#include "audio/engine/SndfileDecoder.h"
#include "audio/engine/WaveHeader.h"
#include "platform/ErrorLog.h"

#include <array>
#include <map>
#include <mutex>

namespace kelvo {

namespace {

using Extent = Mpg123Decoder::Extent;

std::unique_ptr<Decoder> Choose(std::unique_ptr<SoundFile> file, Extent extent) {
  const auto wave = ReadWaveHeader(*file);
  file->Seek(0, SEEK_SET);
  if (!wave) return std::make_unique<Mpg123Decoder>(std::move(file), extent);
  if (wave->format == WaveHeader::kMpeg || wave->format == WaveHeader::kMpegLayer3) {
    const std::int64_t size = wave->Unfinished() ? file->Size() : wave->dataSize;
    file->LimitTo(wave->dataOffset, size);
    return std::make_unique<Mpg123Decoder>(std::move(file), extent);
  }
  return std::make_unique<SndfileDecoder>(std::move(file), *wave);
}

std::unique_ptr<Decoder> ChooseSounding(std::unique_ptr<SoundFile> file, Extent extent) {
  const QString path = file->Path();
  auto decoder = Choose(std::move(file), extent);
  const bool rateIsSane = decoder->Rate() >= 1000 && decoder->Rate() <= 768000;
  const bool hasLength = extent == Extent::Head || decoder->Frames() > 0;
  std::array<float, kChannels * 64> first{};
  if (!rateIsSane || !hasLength || decoder->Read(first) == 0) {
    throw Failure(QStringLiteral("%1 holds no sound that can be played.").arg(path), 0, path);
  }
  return decoder;
}

struct Schemes {
  std::mutex mutex;
  std::map<QString, SourceScheme::Opener> openers;
};
Schemes& AllSchemes() {
  static Schemes schemes;
  return schemes;
}

/// The opener of the name's scheme; empty for the name of a file.
SourceScheme::Opener OpenerOf(const QString& path) {
  const qsizetype colon = path.indexOf(QLatin1Char(':'));
  if (colon <= 0 || path.startsWith(QLatin1Char('/'))) return nullptr;
  Schemes& schemes = AllSchemes();
  const std::lock_guard lock(schemes.mutex);
  const auto found = schemes.openers.find(path.left(colon));
  return found == schemes.openers.end() ? nullptr : found->second;
}

}  // namespace

SourceScheme::SourceScheme(QString scheme, Opener opener) : scheme_(std::move(scheme)) {
  Schemes& schemes = AllSchemes();
  const std::lock_guard lock(schemes.mutex);
  schemes.openers[scheme_] = std::move(opener);
}

SourceScheme::~SourceScheme() {
  Schemes& schemes = AllSchemes();
  const std::lock_guard lock(schemes.mutex);
  schemes.openers.erase(scheme_);
}

std::unique_ptr<Decoder> OpenDecoder(const QString& path, OpeningPtr opening) {
  if (const SourceScheme::Opener opener = OpenerOf(path)) return opener(path.section(QLatin1Char(':'), 1), opening);
  auto file = std::make_unique<SoundFile>(path, std::move(opening));
  SoundFile& opened = *file;
  auto decoder = ChooseSounding(std::move(file), Extent::Whole);
  decoder->Seek(0);
  opened.EndOpening();
  return decoder;
}

void LookForSound(const QString& path) {
  (void)ChooseSounding(std::make_unique<SoundFile>(path), Extent::Head);
}

}  // namespace kelvo
