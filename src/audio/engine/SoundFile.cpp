#include "audio/engine/SoundFile.h"

#include "platform/ErrorLog.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

namespace kelvo {

namespace {

constexpr std::size_t kBufferBytes = 65536;

QString ErrorText(int number) {
  return QString::fromStdString(std::error_code(number, std::generic_category()).message());
}

}  // namespace

SoundFile::SoundFile(const QString& path, CancelFlag cancelled)
    : path_(path), cancelled_(std::move(cancelled)), buffer_(kBufferBytes) {
  // Non-blocking, or a named pipe would hold the thread until somebody writes to it.
  descriptor_ = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor_ < 0) {
    const int error = errno;
    throw Failure(QStringLiteral("%1 can't be opened: %2.").arg(path, ErrorText(error)), error, path);
  }
  struct stat facts {};
  const bool known = ::fstat(descriptor_, &facts) == 0;
  QString refusal;
  if (!known || !S_ISREG(facts.st_mode)) {
    refusal = known && S_ISDIR(facts.st_mode) ? QStringLiteral("%1 is a folder, not a sound file.")
                                              : QStringLiteral("%1 is not a regular file.");
  } else if (facts.st_size == 0) {
    refusal = QStringLiteral("%1 is empty.");
  }
  if (!refusal.isEmpty()) {
    ::close(descriptor_);
    throw Failure(refusal.arg(path), 0, path);
  }
  size_ = facts.st_size;
}

SoundFile::~SoundFile() {
  ::close(descriptor_);
}

void SoundFile::LimitTo(std::int64_t begin, std::int64_t size) {
  const std::int64_t whole = begin_ + size_;
  begin_ = std::clamp<std::int64_t>(begin, 0, whole);
  size_ = std::clamp<std::int64_t>(size, 0, whole - begin_);
  position_ = 0;
  bufferSize_ = 0;
}

bool SoundFile::FillBuffer() {
  const auto wanted =
      static_cast<std::size_t>(std::min(static_cast<std::int64_t>(buffer_.size()), size_ - position_));
  ssize_t got = 0;
  do {
    got = ::pread(descriptor_, buffer_.data(), wanted, begin_ + position_);
  } while (got < 0 && errno == EINTR);
  bufferStart_ = position_;
  bufferSize_ = std::max<ssize_t>(got, 0);
  return got >= 0;
}

std::int64_t SoundFile::Read(void* target, std::int64_t count) {
  if (cancelled_ && cancelled_->load(std::memory_order_relaxed)) return -1;
  auto* out = static_cast<char*>(target);
  std::int64_t done = 0;
  while (done < count && position_ < size_) {
    if (position_ < bufferStart_ || position_ >= bufferStart_ + bufferSize_) {
      if (!FillBuffer()) return done > 0 ? done : -1;
      if (bufferSize_ == 0) break;  // The file was cut shorter while it was open.
    }
    const std::int64_t offset = position_ - bufferStart_;
    const std::int64_t part = std::min(count - done, bufferSize_ - offset);
    std::memcpy(out + done, buffer_.data() + offset, static_cast<std::size_t>(part));
    done += part;
    position_ += part;
  }
  return done;
}

std::int64_t SoundFile::Seek(std::int64_t offset, int whence) {
  const std::int64_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? position_ : size_;
  const std::int64_t to = base + offset;
  if (to < 0) return -1;
  position_ = to;
  return position_;
}

}  // namespace kelvo
