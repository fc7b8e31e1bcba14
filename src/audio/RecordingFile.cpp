#include "audio/RecordingFile.h"

#include "audio/engine/SoundBlock.h"
#include "platform/ErrorLog.h"

#include <fcntl.h>
#include <sndfile.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace kelvo {

namespace {

int FormatOf(RecordingFile::Kind kind) {
  switch (kind) {
    case RecordingFile::Kind::Flac:
      return SF_FORMAT_FLAC | SF_FORMAT_PCM_24;
    case RecordingFile::Kind::Wav:
      return SF_FORMAT_RF64 | SF_FORMAT_PCM_24;
    case RecordingFile::Kind::Mp3:
      break;
  }
  return SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
}

}  // namespace

void RecordingFile::Closer::operator()(sf_private_tag* file) const {
  sf_close(file);
}

RecordingFile::RecordingFile(const QString& path, Kind kind, int kbps) : path_(path) {
  const QByteArray place = EncodedPath(path);
  file_ = Descriptor(::open(place.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!file_.Valid()) FailOn("write", place, errno);
  // The library's own files do not tell which bytes the disk has taken.
  static constexpr auto kSelf = [](void* self) -> RecordingFile& {
    return *static_cast<RecordingFile*>(self);
  };
  SF_VIRTUAL_IO disk{.get_filelen = [](void* self) -> sf_count_t { return kSelf(self).size_; },
                     .seek = [](sf_count_t offset, int whence, void* self) -> sf_count_t {
                       return kSelf(self).Seek(offset, whence);
                     },
                     .read = [](void* bytes, sf_count_t count, void* self) -> sf_count_t {
                       return kSelf(self).Get(bytes, count);
                     },
                     .write = [](const void* bytes, sf_count_t count, void* self) -> sf_count_t {
                       return kSelf(self).Put(bytes, count);
                     },
                     .tell = [](void* self) -> sf_count_t { return kSelf(self).place_; }};
  SF_INFO info{};
  info.samplerate = kEngineRate;
  info.channels = static_cast<int>(kChannels);
  info.format = FormatOf(kind);
  writer_.reset(sf_open_virtual(&disk, SFM_WRITE, &info, this));
  if (!writer_) {
    ::unlink(place.constData());
    if (error_ != 0) FailOn("write", place, error_);
    throw Failure(
        QStringLiteral("%1 can't be written: %2").arg(path, QString::fromUtf8(sf_strerror(nullptr))),
        sf_error(nullptr), path);
  }
  // Below 4 GB it is an ordinary WAV file.
  if (kind == Kind::Wav) sf_command(writer_.get(), SFC_RF64_AUTO_DOWNGRADE, nullptr, SF_TRUE);
  if (kind == Kind::Mp3) {
    int constant = SF_BITRATE_MODE_CONSTANT;
    // The library wants the rate as a share of the way from the highest to the lowest.
    double level = static_cast<double>(kMostKbps - kbps) / (kMostKbps - kLeastKbps);
    sf_command(writer_.get(), SFC_SET_BITRATE_MODE, &constant, sizeof constant);
    sf_command(writer_.get(), SFC_SET_COMPRESSION_LEVEL, &level, sizeof level);
  }
  sf_command(writer_.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
}

void RecordingFile::Close() {
  writer_.reset();
  if (file_.Valid()) static_cast<void>(::fdatasync(file_.Number()));
  static_cast<void>(file_.Close());
}

void RecordingFile::Write(std::span<const float> sound) {
  if (error_ == 0) {
    const auto frames = static_cast<sf_count_t>(sound.size() / kChannels);
    const bool taken = sf_writef_float(writer_.get(), sound.data(), frames) == frames;
    if (!taken && error_ == 0) error_ = EIO;
    if (error_ == 0) {
      frames_ += frames;
      TellLength();
    }
  }
  if (error_ != 0) FailOn("write", EncodedPath(path_), error_);
}

void RecordingFile::Flush() {
  sf_command(writer_.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0);
  static_cast<void>(::fdatasync(file_.Number()));
}

void RecordingFile::TellLength() {
  constexpr std::size_t kCountAt = 21;  // 36 bits, behind 4 of another field
  std::array<unsigned char, 26> head{};
  const ssize_t got = ::pread(file_.Number(), head.data(), head.size(), 0);
  if (got != static_cast<ssize_t>(head.size()) || std::memcmp(head.data(), "fLaC", 4) != 0) return;
  // A block is written when a sample of the next one is there.
  const std::int64_t block = head[8] << 8 | head[9];
  const std::int64_t told = block > 0 ? (frames_ - 1) / block * block : 0;
  head[kCountAt] = static_cast<unsigned char>((head[kCountAt] & 0xF0) | (told >> 32 & 0x0F));
  for (std::size_t i = 1; i < 5; ++i)
    head[kCountAt + i] = static_cast<unsigned char>(told >> (32 - 8 * static_cast<int>(i)) & 0xFF);
  static_cast<void>(::pwrite(file_.Number(), head.data() + kCountAt, 5, kCountAt));
}

std::int64_t RecordingFile::Put(const void* bytes, std::int64_t count) {
  // Headers may still be put right when there is no room for more.
  if (error_ != 0 && place_ + count > size_) return 0;
  const auto* const from = static_cast<const char*>(bytes);
  std::int64_t done = 0;
  while (done < count) {
    const ssize_t part =
        ::pwrite(file_.Number(), from + done, static_cast<std::size_t>(count - done), place_ + done);
    if (part < 0 && errno == EINTR) continue;
    if (part <= 0) {
      error_ = part < 0 ? errno : ENOSPC;
      // What is half a block can't be read.
      if (place_ + done > size_) static_cast<void>(::ftruncate(file_.Number(), size_));
      return 0;
    }
    done += part;
  }
  place_ += count;
  size_ = std::max(size_, place_);
  return count;
}

std::int64_t RecordingFile::Get(void* bytes, std::int64_t count) {
  const ssize_t got = ::pread(file_.Number(), bytes, static_cast<std::size_t>(count), place_);
  if (got > 0) place_ += got;
  return std::max<ssize_t>(got, 0);
}

std::int64_t RecordingFile::Seek(std::int64_t offset, int whence) {
  place_ = offset + (whence == SEEK_CUR ? place_ : whence == SEEK_END ? size_ : 0);
  return place_;
}

std::optional<double> RecordedSeconds(const QString& path) {
  SF_INFO info{};
  SNDFILE* const file = sf_open(EncodedPath(path).constData(), SFM_READ, &info);
  if (!file) return std::nullopt;
  sf_close(file);
  if (info.frames == SF_COUNT_MAX) return 0;  // too short to have a length
  return static_cast<double>(info.frames) / info.samplerate;
}

}  // namespace kelvo
