#pragma once

#include "audio/RecordingFile.h"
#include "audio/engine/Tap.h"

#include <QByteArray>

#include <atomic>
#include <memory>
#include <mutex>
#include <stop_token>
#include <vector>

namespace kelvo {

/// One recording under way: takes what has settled from a tap and writes it. Shared by the recorder, on the
/// logic's thread, and the thread that does the work, which may hang on its disk: then the tap is written
/// over, and the stretch that is lost is silence in the file.
class Recording {
 public:
  Recording(std::shared_ptr<const Tap> tap, QString path, RecordingFile::Kind kind)
      : tap_(std::move(tap)), path_(std::move(path)), kind_(kind) {}

  // The working thread.
  /// Records until `stop`, then closes the file.
  void Run(const std::stop_token& stop);
  /// Writes what has settled since the last step; the first one makes the file. Returns false when the
  /// recording is over because the disk takes no more. Where there are no threads, the recorder calls it.
  bool Step();
  /// Closes the file.
  void Finish();

  // The logic's thread.
  /// The text of the sheet that stands beside the sound; written with the next step.
  void SetCueSheet(QByteArray text);
  /// The tap's frame with which the recording begins; negative before it does.
  [[nodiscard]] FrameIndex First() const { return first_.load(std::memory_order_acquire); }
  [[nodiscard]] FrameIndex Frames() const { return frames_.load(std::memory_order_relaxed); }
  /// Frames of silence in place of what came too fast for the disk.
  [[nodiscard]] FrameIndex Lost() const { return lost_.load(std::memory_order_relaxed); }
  [[nodiscard]] std::int64_t Bytes() const { return bytes_.load(std::memory_order_relaxed); }
  /// Free bytes on its disk; negative while not known.
  [[nodiscard]] std::int64_t BytesLeft() const { return left_.load(std::memory_order_relaxed); }
  /// True when the file is closed; then Error is why it ended by itself, or empty.
  [[nodiscard]] bool Ended() const { return ended_.load(std::memory_order_acquire); }
  [[nodiscard]] QString Error() const;

  /// Where the cue sheet of the recording `path` is.
  [[nodiscard]] static QString CueSheetOf(const QString& path);

 private:
  void WriteSettled();
  void LookAfterDisk();

  const std::shared_ptr<const Tap> tap_;
  const QString path_;
  const RecordingFile::Kind kind_;
  std::atomic<FrameIndex> first_{-1};
  std::atomic<FrameIndex> frames_{0};
  std::atomic<FrameIndex> lost_{0};
  std::atomic<std::int64_t> bytes_{0};
  std::atomic<std::int64_t> left_{-1};
  std::atomic<bool> ended_{false};
  mutable std::mutex mutex_;
  QString error_;
  QByteArray cueSheet_;  ///< not written yet; empty: nothing new

  // The working thread alone:
  std::unique_ptr<RecordingFile> file_;
  std::vector<float> part_;
  FrameIndex next_ = -1;
  FrameIndex flushed_ = 0;
};

}  // namespace kelvo
