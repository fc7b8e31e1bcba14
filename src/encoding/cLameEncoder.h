#pragma once

#include "audio/EncodingPresets.h"
#include "audio/engine/SoundBlock.h"
#include "encoding/LameCalls.h"
#include "platform/ErrorLog.h"

#include <QString>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

namespace kelvo {

/// Why a file was not encoded; its text is that of the tables of errors.
class EncodeFailure : public Failure {
 public:
  enum class Kind {
    NoSource,   ///< it can't be opened
    BadSource,  ///< it is no WAV file that can be encoded
    Other,      ///< of the encoder, or of the disk that is written
  };
  EncodeFailure(Kind kind, const QString& text, const QString& source)
      : Failure(text, 0, source), kind_(kind) {}
  [[nodiscard]] Kind What() const { return kind_; }

 private:
  Kind kind_;
};

/// Encodes to MP3: a WAV file, or sound as it comes. The file is written beside its name and gets it when it
/// is whole (cMp3Writer), with a header that tells its true length and what the encoder put in front of it.
/// Sound at another rate than SampleRate is brought to that. Blocks; one thread at a time, but for
/// EncodeCancel.
class cLameEncoder {
 public:
  enum class End { Done, Cancelled };
  /// `total` and `done` are 16-bit values of the source, both sides together. The listener may set `cancel`.
  using ProgressEvent = std::function<void(std::int64_t total, std::int64_t done, bool& cancel)>;

  cLameEncoder();
  ~cLameEncoder();

  [[nodiscard]] static QString LameVersion();
  // These write through to the record that the stream is opened with.
  [[nodiscard]] int& EncodingPreset() { return config_.preset; }
  [[nodiscard]] int& BitRate() { return config_.bitRate; }
  [[nodiscard]] bool& VbrEnabled() { return config_.vbrEnabled; }
  [[nodiscard]] int& VbrQuality() { return config_.vbrQuality; }
  [[nodiscard]] int& SampleRate() { return config_.sampleRate; }
  [[nodiscard]] int& OutputMode() { return config_.outputMode; }
  [[nodiscard]] const LameConfig& Config() const { return config_; }
  /// All of them at once.
  void SetPresets(const EncodingPresets& presets);
  /// The file that OpenFile began; empty when there is none.
  [[nodiscard]] const QString& FileName() const { return fileName_; }
  /// 16-bit values that make a chunk; 0 while no stream is open.
  [[nodiscard]] int BufferSize() const;
  QString WavFile;
  QString Mp3File;
  std::atomic<bool> EncodeCancel{false};  ///< any thread; ends Encode soon
  /// What the last failure told.
  [[nodiscard]] const QString& EncodeWMes() const { return message_; }
  ProgressEvent Progress;

  /// Encodes WavFile into Mp3File. When it is cancelled or fails, what has that name stays as it was. Throws
  /// EncodeFailure.
  [[nodiscard]] End Encode();

  // The same for sound as it comes: interleaved, of two sides, at `rate`. Each throws EncodeFailure; the file
  // is given up then, and when the encoder goes before CloseLameFile.
  void OpenFile(const QString& mp3File, int rate = kEngineRate);
  void WriteData(std::span<const std::int16_t> sound);
  void CloseLameFile();
  /// As CloseLameFile, where no file has that name: false, with nothing left, where one has.
  [[nodiscard]] bool CloseAsNew();

  /// Frames of sound in the file that was made last, at SampleRate: what a decoder gives back.
  [[nodiscard]] FrameIndex Frames() const { return frames_; }

 private:
  struct Stream;
  /// Gives up the stream, which may hold the texts: they are copies.
  [[noreturn]] void Raise(EncodeFailure::Kind kind, QString text, QString reason = {});
  void Check(BeResult result);
  void lameInit(const QString& mp3File);
  void ConvertFrom(int rate);
  void EncodePart(std::span<const std::int16_t> sound);
  void WriteOut(int bytes);
  void Finish();
  void Flush();
  /// Writes the header with the file's length.
  void lameVbrHead();
  void lameClose();

  LameConfig config_;
  QString fileName_;
  QString message_;
  FrameIndex frames_ = 0;
  std::unique_ptr<Stream> stream_;
};

/// Reads an encoded file to its end and throws Failure unless it has this many frames. Blocks; any thread.
void ProveWhole(const QString& mp3File, FrameIndex frames);

}  // namespace kelvo
