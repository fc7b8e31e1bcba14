#pragma once

#include "platform/NewFile.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

struct sf_private_tag;

namespace kelvo {

/// A recording on disk while it grows: FLAC or WAV in 24 bits, RF64 from 4 GB on, or MP3. A FLAC or WAV file
/// can be read at any moment: when this process is killed, when the disk is full. Owned by whoever records;
/// one thread, which waits for the disk.
class RecordingFile {
 public:
  enum class Kind { Flac, Wav, Mp3 };
  static constexpr int kLeastKbps = 32;
  static constexpr int kMostKbps = 320;

  /// Makes the file; throws Failure when it can't be made or is there already. `kbps` is the rate of an MP3
  /// file, kilobits a second.
  RecordingFile(const QString& path, Kind kind, int kbps = kMostKbps);
  ~RecordingFile() { Close(); }
  RecordingFile(const RecordingFile&) = delete;
  RecordingFile& operator=(const RecordingFile&) = delete;

  /// Adds interleaved stereo at the engine's rate. Throws Failure when the disk takes no more; what was added
  /// before stays, and nothing can be added any more.
  void Write(std::span<const float> sound);
  /// Makes the header true up to here and gives all to the disk.
  void Flush();
  /// Makes the header true and closes the file; only Bytes and Error may be asked for then.
  void Close();
  [[nodiscard]] std::int64_t Bytes() const { return size_; }
  /// Why the disk took no more, also at Close: an error number; 0 when it took all.
  [[nodiscard]] int Error() const { return error_; }

 private:
  struct Closer {
    void operator()(sf_private_tag* file) const;
  };
  /// A FLAC encoder writes the length into the header when it ends, and a kill is no end: tells what can be
  /// read so far.
  void TellLength();
  std::int64_t Put(const void* bytes, std::int64_t count);
  std::int64_t Get(void* bytes, std::int64_t count);
  std::int64_t Seek(std::int64_t offset, int whence);

  const QString path_;
  Descriptor file_;
  std::int64_t place_ = 0;
  std::int64_t size_ = 0;
  std::int64_t frames_ = 0;
  int error_ = 0;  ///< why the disk took no more
  std::unique_ptr<sf_private_tag, Closer> writer_;
};

/// Seconds of sound in a recording, also in one that grows or that a kill has ended; none where it is no
/// recording. Blocks; any thread.
[[nodiscard]] std::optional<double> RecordedSeconds(const QString& path);

}  // namespace kelvo
