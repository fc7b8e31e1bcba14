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

constexpr std::int64_t kPieceBytes = 65536;
/// Room for 20 minutes of MPEG audio at 320 kbit/s. What is beyond is read again when it is needed.
constexpr std::int64_t kMostKept = 48 << 20;

QString ErrorText(int number) {
  return QString::fromStdString(std::error_code(number, std::generic_category()).message());
}

}  // namespace

SoundFile::SoundFile(const QString& path, OpeningPtr opening) : path_(path), opening_(std::move(opening)) {
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
  pieces_.resize(static_cast<std::size_t>((size_ + kPieceBytes - 1) / kPieceBytes));
}

SoundFile::~SoundFile() {
  ::close(descriptor_);
}

void SoundFile::LimitTo(std::int64_t begin, std::int64_t size) {
  const std::int64_t whole = begin_ + size_;
  begin_ = std::clamp<std::int64_t>(begin, 0, whole);
  size_ = std::clamp<std::int64_t>(size, 0, whole - begin_);
  position_ = 0;
}

const SoundFile::Piece* SoundFile::PieceAt(std::int64_t offset) {
  const std::int64_t index = offset / kPieceBytes;
  Piece& piece = pieces_[static_cast<std::size_t>(index)];
  if (!piece.empty()) return &piece;
  if (passingAt_ == index) return &passing_;
  Piece fresh(static_cast<std::size_t>(kPieceBytes));
  ssize_t got = 0;
  do {
    got = ::pread(descriptor_, fresh.data(), fresh.size(), index * kPieceBytes);
  } while (got < 0 && errno == EINTR);
  if (got < 0) return nullptr;
  if (opening_) opening_->steps.fetch_add(1, std::memory_order_relaxed);
  fresh.resize(static_cast<std::size_t>(got));
  // A short one may be the end of a file that still grows.
  if (got == kPieceBytes && kept_ + got <= kMostKept) {
    kept_ += got;
    piece = std::move(fresh);
    return &piece;
  }
  passing_ = std::move(fresh);
  passingAt_ = index;
  return &passing_;
}

std::int64_t SoundFile::Read(void* target, std::int64_t count) {
  if (opening_ && opening_->cancelled.load(std::memory_order_relaxed)) return -1;
  auto* out = static_cast<char*>(target);
  std::int64_t done = 0;
  while (done < count && position_ < size_) {
    const std::int64_t at = begin_ + position_;
    const Piece* const piece = PieceAt(at);
    if (piece == nullptr) return done > 0 ? done : -1;
    const std::int64_t offset = at % kPieceBytes;
    const std::int64_t there = static_cast<std::int64_t>(piece->size()) - offset;
    const std::int64_t part = std::min({count - done, there, size_ - position_});
    if (part <= 0) break;  // The file was cut shorter while it was open.
    std::memcpy(out + done, piece->data() + offset, static_cast<std::size_t>(part));
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
