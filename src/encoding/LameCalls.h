#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>
#include <span>

struct lame_global_struct;

namespace kelvo {

/// The record that an encoder stream is opened with. A value.
struct LameConfig {
  static constexpr int kType = 256;
  static constexpr int kVersion = 1;
  static constexpr int kRecordSize = 331;

  int configType = kType;
  int version = kVersion;
  int size = kRecordSize;
  int sampleRate = 44100;  ///< Hz
  int resampleRate = 0;    ///< Hz; 0: none
  int outputMode = 1;      ///< 0 stereo, 1 joint stereo, 3 mono
  int bitRate = 128;       ///< kbit/s
  int preset = 4;          ///< see EncodingPresets
  int mpegVersion = 1;
  int psychoModel = 0;
  int emphasis = 0;
  bool vbrEnabled = false;
  int vbrQuality = 0;
  bool crc = false;
  bool copyright = false;
  bool original = true;
  bool writeVbrHeader = true;
  bool noBitReservoir = true;
};

/// What a call came to.
enum class BeResult {
  Successful = 0,
  InvalidFormat = 1,
  InvalidFormatParameters = 2,
  NoMoreHandles = 3,
  InvalidHandle = 4,
  BufferTooSmall = 5,
  NoMemory = 6,
};
/// The words of a result for the operator.
[[nodiscard]] QString BeResultText(BeResult result);

struct BeCloser {
  void operator()(lame_global_struct* stream) const;
};
/// A stream of the encoder. One thread at a time.
using BeHandle = std::unique_ptr<lame_global_struct, BeCloser>;

struct BeStream {
  BeHandle handle;
  int samples = 0;     ///< 16-bit values, of both sides together, that a chunk holds
  int bufferSize = 0;  ///< bytes that a chunk or the rest can come to
};

// The calls by which an encoder is worked; the library is libmp3lame.
[[nodiscard]] BeResult beInitStream(const LameConfig& config, BeStream& stream);
/// Encodes interleaved sound, no more than a chunk of it. `bytes`: how many of `target` are filled.
[[nodiscard]] BeResult beEncodeChunk(const BeHandle& handle, std::span<const std::int16_t> sound,
                                     std::span<std::uint8_t> target, int& bytes);
/// What the encoder still holds.
[[nodiscard]] BeResult beDeinitStream(const BeHandle& handle, std::span<std::uint8_t> target, int& bytes);
void beCloseStream(BeHandle& handle);
/// The frame with length, delay and seek table, which takes the place of the file's first one. Between
/// beDeinitStream and beCloseStream; empty when the stream was opened without.
[[nodiscard]] QByteArray beWriteVBRHeader(const BeHandle& handle);

/// What the encoder tells of itself.
struct cLameEncoderVersion {
  int DllMajorVersion = 0;
  int DllMinorVersion = 0;
  int MajorVersion = 0;
  int MinorVersion = 0;
  QString ReleaseDate;  ///< the library does not tell it
  QString HomePage;
  int AlphaLevel = 0;
  int BetaLevel = 0;
  bool MMXEnabled = false;
};
[[nodiscard]] cLameEncoderVersion beVersion();

}  // namespace kelvo
