#pragma once

#include "audio/CueSheet.h"
#include "audio/RecordingFile.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

namespace kelvo {

/// A sound file that gets its name when it is whole: until then it grows beside it, as NAME.part, and it goes
/// when it is not committed. A thread of its own encodes and writes. All calls on one thread.
class RenderFile {
 public:
  using Kind = RecordingFile::Kind;

  /// Makes its folder where there is none. Throws Failure when the file can't be made.
  RenderFile(QString path, Kind kind, int mp3Kbps);
  /// Takes away what was not committed.
  ~RenderFile();
  RenderFile(const RenderFile&) = delete;
  RenderFile& operator=(const RenderFile&) = delete;

  /// Adds interleaved stereo at the engine's rate; waits while the disk is behind. False once the disk takes
  /// no more: Commit tells why.
  bool Write(std::span<const float> sound);
  [[nodiscard]] FrameIndex Frames() const { return frames_; }
  /// Writes the rest, and the cue sheet beside the file, and gives the file its name: in the place of one
  /// that is there if `replace`. Throws Failure; nothing is left then. Returns the file's bytes.
  std::int64_t Commit(const std::vector<CueTitle>& titles, bool replace);

 private:
  void Run(const std::stop_token& stop);
  void HandOver();
  void Close();

  const QString path_;
  const QString part_;
  RecordingFile file_;
  FrameIndex frames_ = 0;
  std::vector<float> gathered_;
  bool committed_ = false;

  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::deque<std::vector<float>> waiting_;
  bool closed_ = false;
  std::exception_ptr failure_;
  std::atomic<bool> failed_{false};
  std::jthread thread_;
};

}  // namespace kelvo
