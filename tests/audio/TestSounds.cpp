#include "audio/TestSounds.h"

#include <QFile>

#include <lame/lame.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <numbers>
#include <stdexcept>

namespace kelvo::testing {

namespace {

template <typename Number>
void Append(QByteArray& bytes, Number number) {
  char raw[sizeof(Number)];
  std::memcpy(raw, &number, sizeof(Number));
  bytes.append(raw, sizeof(Number));
}

QByteArray Chunk(const char* id, const QByteArray& content, quint32 size) {
  QByteArray chunk(id, 4);
  Append(chunk, size);
  return chunk + content;
}

QByteArray Riff(const QByteArray& format, const QByteArray& data, WaveKind::Header header) {
  const auto size = static_cast<quint32>(data.size());
  const quint32 dataSize = header == WaveKind::Header::Right       ? size
                           : header == WaveKind::Header::SizesZero ? 0
                                                                   : ~0U;
  const QByteArray chunks = QByteArray("WAVE") + Chunk("fmt ", format, static_cast<quint32>(format.size())) +
                            Chunk("data", data, dataSize);
  const quint32 whole = header == WaveKind::Header::Right ? static_cast<quint32>(chunks.size()) : dataSize;
  return Chunk("RIFF", chunks, whole);
}

QByteArray Format(int tag, int channels, int rate, int bits, int align) {
  QByteArray format;
  Append(format, static_cast<quint16>(tag));
  Append(format, static_cast<quint16>(channels));
  Append(format, static_cast<quint32>(rate));
  Append(format, static_cast<quint32>(rate * align));
  Append(format, static_cast<quint16>(align));
  Append(format, static_cast<quint16>(bits));
  return format;
}

}  // namespace

Samples Sine(double hertz, double seconds, int rate) {
  const auto frames = static_cast<std::size_t>(std::llround(seconds * rate));
  Samples sound(frames * 2);
  for (std::size_t i = 0; i < frames; ++i) {
    const double phase = 2 * std::numbers::pi * hertz * static_cast<double>(i) / rate;
    sound[2 * i] = sound[2 * i + 1] = 0.5F * static_cast<float>(std::sin(phase));
  }
  return sound;
}

Samples Noise(std::size_t frames, std::uint32_t seed) {
  std::mt19937 generator(seed);
  std::uniform_int_distribution<int> value(-12000, 12000);
  Samples sound(frames * 2);
  std::generate(sound.begin(), sound.end(), [&] { return static_cast<float>(value(generator)) / 32768.0F; });
  return sound;
}

QByteArray WaveFile(const Samples& sound, const WaveKind& kind) {
  const bool isFloat = kind.coding == WaveKind::Coding::Float32;
  QByteArray data;
  for (std::size_t frame = 0; frame < sound.size() / 2; ++frame) {
    for (int channel = 0; channel < kind.channels; ++channel) {
      const float sample = channel < 2 ? sound[2 * frame + static_cast<std::size_t>(channel)] : 0.9F;
      if (isFloat) {
        Append(data, sample);
      } else {
        Append(data, static_cast<qint16>(std::lround(sample * 32768.0F)));
      }
    }
  }
  const int bytes = isFloat ? 4 : 2;
  return Riff(Format(isFloat ? 3 : 1, kind.channels, kind.rate, bytes * 8, bytes * kind.channels), data,
              kind.header);
}

QByteArray WaveAroundMpeg(const QByteArray& mpeg) {
  QByteArray format = Format(0x55, 2, 44100, 0, 1);
  const QByteArray extra = QByteArray::fromHex("010002000000a20101007105");
  Append(format, static_cast<quint16>(extra.size()));
  return Riff(format + extra, mpeg, WaveKind::Header::Right);
}

QByteArray Mp3File(const Samples& sound, Mp3Kind kind, int rate) {
  lame_t lame = lame_init();
  lame_set_in_samplerate(lame, rate);
  lame_set_out_samplerate(lame, rate);
  lame_set_num_channels(lame, 2);
  if (kind == Mp3Kind::Cbr) {
    lame_set_brate(lame, 128);
  } else {
    lame_set_VBR(lame, vbr_mtrh);
    lame_set_VBR_q(lame, 4);
    lame_set_bWriteVbrTag(lame, 0);
  }
  if (lame_init_params(lame) < 0) throw std::runtime_error("the encoder refuses");
  const auto frames = static_cast<int>(sound.size() / 2);
  QByteArray bytes(frames * 5 / 4 * 2 + 20000, '\0');
  auto* out = reinterpret_cast<unsigned char*>(bytes.data());
  const int room = static_cast<int>(bytes.size());
  int size = lame_encode_buffer_interleaved_ieee_float(lame, sound.data(), frames, out, room);
  size += lame_encode_flush(lame, out + size, room - size);
  bytes.truncate(size);
  if (kind == Mp3Kind::Cbr) {
    // The encoder left room for its tag at the start; the tag tells how much padding to cut.
    QByteArray tag(8192, '\0');
    const std::size_t length = lame_get_lametag_frame(lame, reinterpret_cast<unsigned char*>(tag.data()),
                                                      static_cast<std::size_t>(tag.size()));
    bytes.replace(qsizetype{0}, static_cast<qsizetype>(length), tag.constData(),
                  static_cast<qsizetype>(length));
  }
  lame_close(lame);
  return bytes;
}

void Save(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
    throw std::runtime_error("cannot write " + path.toStdString());
  }
}

double Amplitude(const Samples& sound, double hertz, std::size_t frames) {
  std::complex<double> sum = 0;
  const std::size_t first = sound.size() / 2 - frames;
  for (std::size_t i = 0; i < frames; ++i) {
    const double angle = -2 * std::numbers::pi * hertz * static_cast<double>(i) / 44100;
    sum += static_cast<double>(sound[(first + i) * 2]) * std::polar(1.0, angle);
  }
  return 2 * std::abs(sum) / static_cast<double>(frames);
}

double Distortion(const Samples& sound, double hertz, std::size_t frames) {
  const double tone = Amplitude(sound, hertz, frames);
  double power = 0;
  for (std::size_t i = sound.size() - frames * 2; i < sound.size(); i += 2) {
    power += static_cast<double>(sound[i]) * sound[i];
  }
  const double rest = std::max(power / static_cast<double>(frames) - tone * tone / 2, 1e-20);
  return 20 * std::log10(std::sqrt(2 * rest) / tone);
}

float LargestStep(const Samples& sound) {
  float largest = 0;
  for (std::size_t i = 2; i < sound.size(); ++i)
    largest = std::max(largest, std::abs(sound[i] - sound[i - 2]));
  return largest;
}

}  // namespace kelvo::testing
