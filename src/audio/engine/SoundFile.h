#pragma once

#include <QString>

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace kelvo {

/// A file that is being opened, as seen by the thread that opens it and by whoever waits.
struct Opening {
  std::atomic<bool> cancelled{false};   ///< it is no longer needed: its reads fail, and the opening with them
  std::atomic<std::uint64_t> steps{0};  ///< counts up as long as its disk answers and there is work to do
};
using OpeningPtr = std::shared_ptr<Opening>;

/// A regular file, or a part of one. What was read of it is kept, up to a limit: a track that was looked
/// through when it was opened plays to its end though its disk has died. Owned by a decoder; used by one
/// thread at a time.
class SoundFile {
 public:
  /// Throws Failure when `path` is no readable, regular, non-empty file. Never waits for a pipe or a device.
  explicit SoundFile(const QString& path, OpeningPtr opening = {});
  ~SoundFile();
  SoundFile(const SoundFile&) = delete;
  SoundFile& operator=(const SoundFile&) = delete;

  /// From now on the file is the `size` bytes from `begin` on (cut at the real end), positioned at its start.
  void LimitTo(std::int64_t begin, std::int64_t size);
  /// The file is wanted for good.
  void EndOpening() { opening_.reset(); }

  [[nodiscard]] const QString& Path() const { return path_; }
  [[nodiscard]] std::int64_t Size() const { return size_; }
  [[nodiscard]] std::int64_t Position() const { return position_; }
  /// Reads up to `count` bytes; fewer at the end; -1 on an error or when cancelled.
  std::int64_t Read(void* target, std::int64_t count);
  /// As lseek: the new position, or -1.
  std::int64_t Seek(std::int64_t offset, int whence);

 private:
  using Piece = std::vector<char>;
  /// The piece of the file that holds `offset`; empty behind the end, none on an error.
  [[nodiscard]] const Piece* PieceAt(std::int64_t offset);

  QString path_;
  OpeningPtr opening_;
  int descriptor_ = -1;
  std::int64_t begin_ = 0;
  std::int64_t size_ = 0;
  std::int64_t position_ = 0;
  std::vector<Piece> pieces_;  ///< of the whole file, as far as they are kept
  std::int64_t kept_ = 0;      ///< bytes in them
  Piece passing_;              ///< the one that was read last, when there is no room to keep it
  std::int64_t passingAt_ = -1;
};

}  // namespace kelvo
