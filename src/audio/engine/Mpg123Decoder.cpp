#include "audio/engine/Mpg123Decoder.h"

#include "platform/ErrorLog.h"

namespace kelvo {

namespace {

/// How far the decoder looks for the next frame: past a damaged stretch, yet not through a whole file of
/// something else.
constexpr long kLookAheadBytes = 262144;

/// Frames that are decoded unheard before the target of a seek. A frame may keep its data in as many as ten
/// smaller ones before it.
constexpr long kFramesBeforeSeek = 12;

ssize_t ReadFile(void* file, void* target, std::size_t count) {
  return static_cast<SoundFile*>(file)->Read(target, static_cast<std::int64_t>(count));
}

off_t SeekFile(void* file, off_t offset, int whence) {
  return static_cast<SoundFile*>(file)->Seek(offset, whence);
}

}  // namespace

Mpg123Decoder::Mpg123Decoder(std::unique_ptr<SoundFile> file, Extent extent) : file_(std::move(file)) {
  const auto refuse = [this](int number) {
    throw Failure(
        QStringLiteral("%1 is no sound file: neither WAV nor MPEG audio was found in it.").arg(file_->Path()),
        number, file_->Path());
  };
  int error = MPG123_OK;
  handle_.reset(mpg123_new(nullptr, &error));
  if (!handle_) refuse(error);
  mpg123_param(handle_.get(), MPG123_ADD_FLAGS,
               MPG123_QUIET | MPG123_FORCE_STEREO | MPG123_FORCE_FLOAT | MPG123_GAPLESS | MPG123_SKIP_ID3V2,
               0);
  mpg123_param(handle_.get(), MPG123_RESYNC_LIMIT, kLookAheadBytes, 0);
  mpg123_param(handle_.get(), MPG123_PREFRAMES, kFramesBeforeSeek, 0);
  mpg123_replace_reader_handle(handle_.get(), ReadFile, SeekFile, nullptr);

  long rate = 0;
  int channels = 0;
  int encoding = 0;
  error = mpg123_open_handle(handle_.get(), file_.get());
  if (error == MPG123_OK) error = mpg123_getformat(handle_.get(), &rate, &channels, &encoding);
  if (error != MPG123_OK || encoding != MPG123_ENC_FLOAT_32 || channels != 2) refuse(error);
  if (extent == Extent::Whole) error = mpg123_scan(handle_.get());
  if (error != MPG123_OK) refuse(error);
  rate_ = static_cast<int>(rate);
  frames_ = mpg123_length(handle_.get());
}

void Mpg123Decoder::Seek(FrameIndex frame) {
  ended_ = mpg123_seek(handle_.get(), frame, SEEK_SET) < 0;
}

std::size_t Mpg123Decoder::ReadSome(std::span<float> target) {
  // A frame that cannot be decoded is passed over; a file of nothing else ends.
  constexpr int kMostFaults = 16;
  for (int faults = 0; !ended_ && faults < kMostFaults;) {
    std::size_t bytes = 0;
    const int outcome = mpg123_read(handle_.get(), target.data(), target.size_bytes(), &bytes);
    if (outcome == MPG123_NEW_FORMAT) {
      long rate = 0;
      int channels = 0;
      int encoding = 0;
      mpg123_getformat(handle_.get(), &rate, &channels, &encoding);
      ended_ = rate != rate_ || channels != 2 || encoding != MPG123_ENC_FLOAT_32;
    } else if (outcome == MPG123_DONE) {
      ended_ = true;
    } else if (outcome != MPG123_OK) {
      ++faults;
    }
    if (bytes > 0) return bytes / (sizeof(float) * kChannels);
  }
  ended_ = true;
  return 0;
}

}  // namespace kelvo
