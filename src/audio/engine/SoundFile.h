#pragma once

#include <QString>

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace kelvo {

/// Set by whoever no longer wants a file that is being opened; its reads then fail, and the opening with
/// them.
using CancelFlag = std::shared_ptr<const std::atomic<bool>>;

/// A regular file, or a part of one, read through a buffer. Owned by a decoder; used by one thread at a time.
class SoundFile {
 public:
  /// Throws Failure when `path` is no readable, regular, non-empty file. Never waits for a pipe or a device.
  explicit SoundFile(const QString& path, CancelFlag cancelled = {});
  ~SoundFile();
  SoundFile(const SoundFile&) = delete;
  SoundFile& operator=(const SoundFile&) = delete;

  /// From now on the file is the `size` bytes from `begin` on (cut at the real end), positioned at its start.
  void LimitTo(std::int64_t begin, std::int64_t size);
  /// The file is wanted for good: the flag is looked at no more.
  void ForgetCancel() { cancelled_.reset(); }

  [[nodiscard]] const QString& Path() const { return path_; }
  [[nodiscard]] std::int64_t Size() const { return size_; }
  [[nodiscard]] std::int64_t Position() const { return position_; }
  /// Reads up to `count` bytes; fewer at the end; -1 on an error or when cancelled.
  std::int64_t Read(void* target, std::int64_t count);
  /// As lseek: the new position, or -1.
  std::int64_t Seek(std::int64_t offset, int whence);

 private:
  bool FillBuffer();

  QString path_;
  CancelFlag cancelled_;
  int descriptor_ = -1;
  std::int64_t begin_ = 0;
  std::int64_t size_ = 0;
  std::int64_t position_ = 0;
  std::vector<char> buffer_;
  std::int64_t bufferStart_ = 0;
  std::int64_t bufferSize_ = 0;
};

}  // namespace kelvo
