#include "audio/engine/SndfileDecoder.h"

#include "platform/ErrorLog.h"

#include <algorithm>
#include <cstdio>
#include <limits>

namespace kelvo {

namespace {

SoundFile& FileOf(void* user) {
  return *static_cast<SoundFile*>(user);
}

SF_VIRTUAL_IO FileAccess() {
  SF_VIRTUAL_IO access{};
  access.get_filelen = [](void* user) -> sf_count_t { return FileOf(user).Size(); };
  access.seek = [](sf_count_t offset, int whence, void* user) -> sf_count_t {
    return FileOf(user).Seek(offset, whence);
  };
  access.read = [](void* target, sf_count_t count, void* user) -> sf_count_t {
    return std::max<std::int64_t>(FileOf(user).Read(target, count), 0);
  };
  access.write = [](const void*, sf_count_t, void*) -> sf_count_t { return 0; };
  access.tell = [](void* user) -> sf_count_t { return FileOf(user).Position(); };
  return access;
}

/// The sample format of `header` for a file without its header; 0 when it needs one.
int RawFormat(const WaveHeader& header) {
  int format = 0;
  if (header.format == WaveHeader::kFloat) {
    format = header.bits == 32 ? SF_FORMAT_FLOAT : header.bits == 64 ? SF_FORMAT_DOUBLE : 0;
  } else if (header.format == WaveHeader::kPcm) {
    switch (header.bits) {
      case 8:
        format = SF_FORMAT_PCM_U8;
        break;
      case 16:
        format = SF_FORMAT_PCM_16;
        break;
      case 24:
        format = SF_FORMAT_PCM_24;
        break;
      case 32:
        format = SF_FORMAT_PCM_32;
        break;
      default:
        break;
    }
  }
  if (format == 0) return 0;
  return SF_FORMAT_RAW | format | (header.littleEndian ? SF_ENDIAN_LITTLE : SF_ENDIAN_BIG);
}

}  // namespace

SndfileDecoder::SndfileDecoder(std::unique_ptr<SoundFile> file, const WaveHeader& header)
    : file_(std::move(file)) {
  SF_VIRTUAL_IO access = FileAccess();
  sound_.reset(sf_open_virtual(&access, SFM_READ, &info_, file_.get()));
  if ((!sound_ || info_.frames <= 0) && header.Unfinished()) OpenAsRaw(header);
  if (!sound_) {
    // What the library says of a failed open it keeps in one place for the whole process, which another
    // thread may be writing at this moment: it is not read.
    throw Failure(QStringLiteral("%1 is a WAV file that can't be read.").arg(file_->Path()), 0,
                  file_->Path());
  }
  rate_ = info_.samplerate;
  frames_ = info_.frames;
}

void SndfileDecoder::OpenAsRaw(const WaveHeader& header) {
  const int format = RawFormat(header);
  if (format == 0 || header.channels == 0) return;
  file_->LimitTo(header.dataOffset, std::numeric_limits<std::int64_t>::max());
  info_ = {};
  info_.format = format;
  info_.channels = header.channels;
  info_.samplerate = static_cast<int>(header.rate);
  SF_VIRTUAL_IO access = FileAccess();
  sound_.reset(sf_open_virtual(&access, SFM_READ, &info_, file_.get()));
}

void SndfileDecoder::Seek(FrameIndex frame) {
  sf_seek(sound_.get(), std::clamp<FrameIndex>(frame, 0, frames_), SEEK_SET);
}

std::size_t SndfileDecoder::ReadSome(std::span<float> target) {
  const std::size_t wanted = target.size() / kChannels;
  if (info_.channels == 2) {
    const sf_count_t got = sf_readf_float(sound_.get(), target.data(), static_cast<sf_count_t>(wanted));
    return static_cast<std::size_t>(std::max<sf_count_t>(got, 0));
  }
  const auto channels = static_cast<std::size_t>(info_.channels);
  raw_.resize(std::min<std::size_t>(wanted, kBlockFrames) * channels);
  const auto asked = static_cast<sf_count_t>(raw_.size() / channels);
  const auto got =
      static_cast<std::size_t>(std::max<sf_count_t>(sf_readf_float(sound_.get(), raw_.data(), asked), 0));
  for (std::size_t frame = 0; frame < got; ++frame) {
    const float left = raw_[frame * channels];
    target[frame * kChannels] = left;
    target[frame * kChannels + 1] = channels == 1 ? left : raw_[frame * channels + 1];
  }
  return got;
}

}  // namespace kelvo
