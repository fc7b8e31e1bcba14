#include "demo_library/MusicFile.h"

#include "platform/ErrorLog.h"

#include <QString>
#include <QtEndian>

#include <lame/lame.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

namespace kelvo::demo {

namespace {

template <typename Number>
void Append(QByteArray& bytes, Number value) {
  std::array<char, sizeof(Number)> raw{};
  qToLittleEndian(value, raw.data());
  bytes.append(raw.data(), static_cast<qsizetype>(raw.size()));
}

std::int16_t Sample(float value) {
  return static_cast<std::int16_t>(std::lround(std::clamp(value, -1.0F, 1.0F) * 32767.0F));
}

QByteArray EncodeWave(const StereoSound& sound) {
  constexpr std::uint16_t kChannels = 2;
  constexpr std::uint16_t kBits = 16;
  constexpr std::uint32_t kFrameBytes = kChannels * kBits / 8;
  const auto dataBytes = static_cast<std::uint32_t>(sound.Frames()) * kFrameBytes;
  QByteArray bytes;
  bytes.reserve(static_cast<qsizetype>(dataBytes) + 44);
  bytes.append("RIFF");
  Append<std::uint32_t>(bytes, 36 + dataBytes);
  bytes.append("WAVEfmt ");
  Append<std::uint32_t>(bytes, 16);
  Append<std::uint16_t>(bytes, 1);
  Append<std::uint16_t>(bytes, kChannels);
  Append<std::uint32_t>(bytes, kSampleRate);
  Append<std::uint32_t>(bytes, kSampleRate * kFrameBytes);
  Append<std::uint16_t>(bytes, kFrameBytes);
  Append<std::uint16_t>(bytes, kBits);
  bytes.append("data");
  Append<std::uint32_t>(bytes, dataBytes);
  for (std::size_t i = 0; i < sound.Frames(); ++i) {
    Append(bytes, Sample(sound.left[i]));
    Append(bytes, Sample(sound.right[i]));
  }
  return bytes;
}

struct LameCloser {
  void operator()(lame_t encoder) const { lame_close(encoder); }
};
using Encoder = std::unique_ptr<lame_global_flags, LameCloser>;

Encoder MakeEncoder(Coding coding) {
  Encoder encoder(lame_init());
  if (!encoder) throw Failure(QStringLiteral("no MP3 encoder"), 0, QStringLiteral("lame"));
  lame_set_in_samplerate(encoder.get(), kSampleRate);
  lame_set_out_samplerate(encoder.get(), kSampleRate);
  lame_set_num_channels(encoder.get(), 2);
  lame_set_mode(encoder.get(), JOINT_STEREO);
  lame_set_quality(encoder.get(), 7);
  lame_set_bWriteVbrTag(encoder.get(), 1);
  if (coding == Coding::Mp3Variable2) {
    lame_set_VBR(encoder.get(), vbr_mtrh);
    lame_set_VBR_quality(encoder.get(), 2.0F);
  } else {
    lame_set_VBR(encoder.get(), vbr_off);
    lame_set_brate(encoder.get(), 192);
  }
  if (lame_init_params(encoder.get()) < 0) {
    throw Failure(QStringLiteral("the MP3 encoder refuses its settings"), 0, QStringLiteral("lame"));
  }
  return encoder;
}

QByteArray EncodeMp3(const StereoSound& sound, Coding coding) {
  const Encoder encoder = MakeEncoder(coding);
  const auto check = [](int written) {
    if (written < 0) throw Failure(QStringLiteral("the MP3 encoder failed"), written, QStringLiteral("lame"));
    return written;
  };
  constexpr std::size_t kPiece = 73728;  // 64 frames of the format
  std::vector<unsigned char> piece(kPiece * 5 / 4 + 7200);
  const int room = static_cast<int>(piece.size());
  QByteArray bytes;
  const auto keep = [&](int count) { bytes.append(reinterpret_cast<const char*>(piece.data()), count); };
  for (std::size_t first = 0; first < sound.Frames(); first += kPiece) {
    const int count = static_cast<int>(std::min(kPiece, sound.Frames() - first));
    keep(check(lame_encode_buffer_ieee_float(encoder.get(), sound.left.data() + first,
                                             sound.right.data() + first, count, piece.data(), room)));
  }
  keep(check(lame_encode_flush(encoder.get(), piece.data(), room)));
  // The place of the first frame was kept free by the encoder.
  const std::size_t tagBytes = lame_get_lametag_frame(encoder.get(), piece.data(), piece.size());
  if (tagBytes == 0 || tagBytes > piece.size() || static_cast<qsizetype>(tagBytes) > bytes.size()) {
    throw Failure(QStringLiteral("the MP3 encoder gave no header"), 0, QStringLiteral("lame"));
  }
  std::copy_n(piece.data(), tagBytes, reinterpret_cast<unsigned char*>(bytes.data()));
  return bytes;
}

}  // namespace

QByteArray Encode(const StereoSound& sound, Coding coding) {
  return coding == Coding::Wave16 ? EncodeWave(sound) : EncodeMp3(sound, coding);
}

}  // namespace kelvo::demo
