#include "encoding/cWavReader.h"

#include <QFile>
#include <QtEndian>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace kelvo {

namespace {

constexpr int kHeadSize = 12;
constexpr int kChunkHead = 8;
/// A file that has more chunks is none.
constexpr std::size_t kMostChunks = 10'000;
constexpr int kMostBuffer = 1 << 24;

constexpr std::uint16_t kPcm = 1;
constexpr std::uint16_t kExtensible = 0xFFFE;
constexpr int kFormatSize = 16;
constexpr int kSubFormatAt = 24;  ///< within the format of the extensible kind
constexpr int kExtensibleSize = 40;
constexpr std::uint32_t kLeastRate = 1000;
constexpr std::uint32_t kMostRate = 768'000;

std::uint16_t Word(const char* at) {
  return qFromLittleEndian<std::uint16_t>(at);
}
std::uint32_t Long(const char* at) {
  return qFromLittleEndian<std::uint32_t>(at);
}

}  // namespace

QString cWavReader::ErrorText(Error error) {
  switch (error) {
    case NoError:
      return {};
    case NotStereo16:
      return QStringLiteral("Only stereo 16 bit wave files supported.");
    case CannotOpen:
      return QStringLiteral("Unable to open file.");
    case NotWave:
      return QStringLiteral("Not a Wave file.");
    case NoFormatChunk:
      return QStringLiteral("Unable to retrieve format chunk");
    case BadFormatChunk:
      return QStringLiteral("Error reading format");
    case NoFileOpen:
      return QStringLiteral("No Wave File Open");
    case NoMemory:
      return QStringLiteral("Insufficient memory");
    case OutOfRange:
      return QStringLiteral("Position out of range");
    case BufferInUse:
      return QStringLiteral("Cannot change buffer size whilst a file is open.");
    case CannotRead:
      break;
  }
  return QStringLiteral("Unable to read the file to its end.");
}

bool cWavReader::Fail(Error error) {
  error_ = error;
  return error == NoError;
}

std::int64_t cWavReader::ReadAt(std::int64_t position, void* target, std::int64_t count) const {
  std::int64_t done = 0;
  while (done < count) {
    const ssize_t part = ::pread(file_.Number(), static_cast<char*>(target) + done,
                                 static_cast<std::size_t>(count - done), position + done);
    if (part < 0 && errno == EINTR) continue;
    if (part < 0) return -1;
    if (part == 0) break;
    done += part;
  }
  return done;
}

bool cWavReader::OpenFile() {
  CloseWaveFile();
  // Without waiting: the name may be a pipe's.
  file_ = Descriptor(
      ::open(QFile::encodeName(fileName_).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat facts {};
  if (!file_.Valid() || ::fstat(file_.Number(), &facts) != 0 || !S_ISREG(facts.st_mode)) {
    CloseWaveFile();
    return Fail(CannotOpen);
  }
  fileSize_ = facts.st_size;
  const Error error = ReadHeader();
  if (error != NoError) CloseWaveFile();
  return Fail(error);
}

void cWavReader::CloseWaveFile() {
  file_ = Descriptor();
  chunks_.clear();
  rate_ = 0;
  fileSize_ = dataPosition_ = audioLength_ = position_ = bufferStart_ = 0;
  readFrames_ = 0;
  error_ = NoError;
}

cWavReader::Error cWavReader::ReadHeader() {
  std::array<char, kHeadSize> head{};
  if (ReadAt(0, head.data(), kHeadSize) != kHeadSize || std::memcmp(head.data(), "RIFF", 4) != 0 ||
      std::memcmp(head.data() + 8, "WAVE", 4) != 0) {
    return NotWave;
  }
  const std::int64_t riffEnd = std::int64_t{Long(head.data() + 4)} + kChunkHead;
  bool knowsFormat = false;
  for (std::int64_t at = kHeadSize; at + kChunkHead <= fileSize_ && chunks_.size() < kMostChunks;) {
    std::array<char, kChunkHead> name{};
    if (ReadAt(at, name.data(), kChunkHead) != kChunkHead) return CannotRead;
    const std::int64_t told = Long(name.data() + 4);
    const std::int64_t begin = at + kChunkHead;
    chunks_.push_back({QByteArray(name.data(), 4), begin, std::min(told, fileSize_ - begin)});
    const Chunk& chunk = chunks_.back();
    if (chunk.id == "fmt " && !knowsFormat) {
      if (const Error error = ReadFormat(chunk); error != NoError) return error;
      knowsFormat = true;
    }
    if (chunk.id == "data" && dataPosition_ == 0) TakeData(chunk, riffEnd, told);
    if (knowsFormat && dataPosition_ > 0) return NoError;
    at = begin + told + (told & 1);
  }
  return knowsFormat ? NotWave : NoFormatChunk;
}

cWavReader::Error cWavReader::ReadFormat(const Chunk& chunk) {
  std::array<char, kExtensibleSize> format{};
  const std::int64_t size = std::min<std::int64_t>(chunk.size, kExtensibleSize);
  if (size < kFormatSize || ReadAt(chunk.position, format.data(), size) != size) return BadFormatChunk;
  std::uint16_t tag = Word(format.data());
  if (tag == kExtensible && size >= kSubFormatAt + 2) tag = Word(format.data() + kSubFormatAt);
  const std::uint32_t rate = Long(format.data() + 4);
  if (rate < kLeastRate || rate > kMostRate) return BadFormatChunk;
  constexpr std::uint16_t kSides = 2;
  constexpr std::uint16_t kBits = 16;
  if (tag != kPcm || Word(format.data() + 2) != kSides || Word(format.data() + 14) != kBits)
    return NotStereo16;
  rate_ = static_cast<int>(rate);
  return NoError;
}

void cWavReader::TakeData(const Chunk& chunk, std::int64_t riffEnd, std::int64_t told) {
  dataPosition_ = chunk.position;
  // A writer that never came to fill in how much there is leaves both sizes at nothing, or at the highest.
  const bool unfinished = told == 0 && riffEnd <= chunk.position;
  const std::int64_t size = unfinished ? fileSize_ - chunk.position : chunk.size;
  audioLength_ = std::max<std::int64_t>(size, 0) / kBytesPerFrame * kBytesPerFrame;
}

bool cWavReader::Read() {
  readFrames_ = 0;
  if (!file_.Valid()) return Fail(NoFileOpen);
  bufferStart_ = position_;
  const std::int64_t size = static_cast<std::int64_t>(buffer_.size() * sizeof(std::int16_t));
  const std::int64_t wanted = std::min(size, audioLength_ - position_) / kBytesPerFrame * kBytesPerFrame;
  if (wanted <= 0) return false;
  if (ReadAt(dataPosition_ + position_, buffer_.data(), wanted) != wanted) return Fail(CannotRead);
  if constexpr (Q_BYTE_ORDER == Q_BIG_ENDIAN) {
    qFromLittleEndian<std::int16_t>(buffer_.data(), wanted / 2, buffer_.data());
  }
  position_ += wanted;
  readFrames_ = static_cast<int>(wanted / kBytesPerFrame);
  return true;
}

void cWavReader::ZeroUnusedBufferBytes() {
  std::fill(buffer_.begin() + readFrames_ * 2, buffer_.end(), std::int16_t{0});
}

bool cWavReader::SeekAbsolute(std::int64_t position) {
  if (!file_.Valid()) return Fail(NoFileOpen);
  if (position < 0 || position > audioLength_) return Fail(OutOfRange);
  position_ = position / kBytesPerFrame * kBytesPerFrame;
  return Fail(NoError);
}

bool cWavReader::SeekRelative(std::int64_t step) {
  if (!file_.Valid()) return Fail(NoFileOpen);
  if (step < -position_ || step > audioLength_ - position_) return Fail(OutOfRange);
  return SeekAbsolute(position_ + step);
}

bool cWavReader::SetReadBufferSize(int values) {
  if (file_.Valid()) return Fail(BufferInUse);
  if (values < 2 || values > kMostBuffer) return Fail(NoMemory);
  buffer_.assign(static_cast<std::size_t>(values), 0);
  return Fail(NoError);
}

}  // namespace kelvo
