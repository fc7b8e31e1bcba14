#pragma once

#include "platform/NewFile.h"

#include <QString>

#include <cstdint>
#include <span>
#include <vector>

namespace kelvo {

/// Reads the sound of a WAV file of two sides of 16 bits, buffer by buffer. Sizes and positions are bytes of
/// sound, counted from its start. Nothing that the header says is believed: what it promises beyond the end
/// of the file is not there. Blocks; one thread at a time.
class cWavReader {
 public:
  enum Error {
    NoError = 0,
    NotStereo16 = 1,
    CannotOpen = 2,
    NotWave = 3,
    NoFormatChunk = 4,
    BadFormatChunk = 5,
    NoFileOpen = 6,
    NoMemory = 7,
    OutOfRange = 8,
    BufferInUse = 9,
    CannotRead = 10,  ///< the file ended before its sound did, or its disk gave an error
  };
  /// A chunk of the file.
  struct Chunk {
    QByteArray id;
    std::int64_t position = 0;  ///< of its content, from the start of the file
    std::int64_t size = 0;      ///< as the file has it, cut at the file's end
  };
  static constexpr int kBytesPerFrame = 4;

  void SetFileName(const QString& path) { fileName_ = path; }
  [[nodiscard]] const QString& FileName() const { return fileName_; }

  // Each returns whether it went through; cWaveError tells why not.
  bool OpenFile();
  void CloseWaveFile();
  /// Fills the buffer from the present position on. False at the end of the sound too.
  bool Read();
  bool SeekAbsolute(std::int64_t position);
  bool SeekRelative(std::int64_t step);
  /// While no file is open. In 16-bit values, both sides together.
  bool SetReadBufferSize(int values);

  [[nodiscard]] int ReadBufferSize() const { return static_cast<int>(buffer_.size()); }
  /// Frames that the last Read filled.
  [[nodiscard]] int ReadSize() const { return readFrames_; }
  [[nodiscard]] const std::int16_t* ReadBufferPtr() const { return buffer_.data(); }
  /// What of the buffer the last Read did not fill becomes silence.
  void ZeroUnusedBufferBytes();
  /// Where the buffer's first frame is.
  [[nodiscard]] std::int64_t BufferStartPosition() const { return bufferStart_; }
  [[nodiscard]] std::int64_t AudioLength() const { return audioLength_; }
  [[nodiscard]] int SampleRate() const { return rate_; }
  /// In the order of the file.
  [[nodiscard]] const std::vector<Chunk>& Chunks() const { return chunks_; }

  [[nodiscard]] Error cWaveError() const { return error_; }
  [[nodiscard]] QString cWaveErrorMsg() const { return ErrorText(error_); }
  [[nodiscard]] static QString ErrorText(Error error);

 private:
  bool Fail(Error error);
  [[nodiscard]] Error ReadHeader();
  [[nodiscard]] Error ReadFormat(const Chunk& chunk);
  void TakeData(const Chunk& chunk, std::int64_t riffEnd, std::int64_t told);
  /// Bytes that were read, fewer at the end of the file; -1 on an error.
  [[nodiscard]] std::int64_t ReadAt(std::int64_t position, void* target, std::int64_t count) const;

  QString fileName_;
  Descriptor file_;
  std::int64_t fileSize_ = 0;
  std::vector<Chunk> chunks_;
  int rate_ = 0;
  std::int64_t dataPosition_ = 0;
  std::int64_t audioLength_ = 0;
  std::int64_t position_ = 0;
  std::int64_t bufferStart_ = 0;
  std::vector<std::int16_t> buffer_ = std::vector<std::int16_t>(2304);
  int readFrames_ = 0;
  Error error_ = NoError;
};

}  // namespace kelvo
