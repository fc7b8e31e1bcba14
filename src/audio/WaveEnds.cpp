#include "audio/WaveEnds.h"

#include "audio/engine/OpenDecoder.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <vector>

namespace kelvo {
namespace {

constexpr int kMostPeaks = kWaveSeconds * kWavePeaksPerSecond;
constexpr qint64 kMostBytes = 16 * 1024;
constexpr double kMostLength = 1e7;
const QByteArray kMark = QByteArrayLiteral("KelvoWave1");
const QString kSuffix = QStringLiteral(".wave");

/// The peaks of the next sound of the decoder, `most` of them or up to its end.
QByteArray Peaks(Decoder& decoder, int most, const OpeningPtr& opening) {
  QByteArray peaks;
  std::vector<float> samples(static_cast<std::size_t>(decoder.Rate() / kWavePeaksPerSecond) * kChannels);
  while (peaks.size() < most) {
    if (opening->cancelled) throw Failure(QStringLiteral("The look at the sound was cancelled."));
    const std::size_t frames = decoder.Read(samples);
    if (frames == 0) break;
    float peak = 0;
    for (std::size_t sample = 0; sample < frames * kChannels; ++sample)
      peak = std::max(peak, std::abs(samples[sample]));
    peaks.append(static_cast<char>(static_cast<unsigned char>(std::lround(std::min(peak, 1.0F) * 255))));
  }
  return peaks;
}

QString CacheName(const QFileInfo& file) {
  const QString key = file.absoluteFilePath() + QLatin1Char('\n') + QString::number(file.size()) +
                      QLatin1Char('\n') + QString::number(file.lastModified().toMSecsSinceEpoch());
  const QByteArray hash = QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha1);
  return QString::fromLatin1(hash.toHex()) + kSuffix;
}

std::optional<WaveEnds> FromCache(const QString& path) {
  if (!QFileInfo(path).isFile()) return std::nullopt;
  try {
    return WaveEndsIn(ReadWholeFile(path, kMostBytes));
  } catch (const Failure&) {
    return std::nullopt;
  }
}

void IntoCache(const QDir& cache, const QString& name, const WaveEnds& ends, int most) {
  if (!cache.mkpath(QStringLiteral("."))) return;
  try {
    ReplaceFile(cache.filePath(name), WaveBytes(ends));
  } catch (const Failure&) {
    return;
  }
  const QFileInfoList kept =
      cache.entryInfoList({QLatin1Char('*') + kSuffix}, QDir::Files | QDir::Hidden, QDir::Time);
  for (qsizetype place = most; place < kept.size(); ++place) QFile::remove(kept[place].filePath());
}

}  // namespace

WaveEnds ReadWaveEnds(const QString& path, const OpeningPtr& opening) {
  const std::unique_ptr<Decoder> decoder = OpenDecoder(path, opening);
  WaveEnds ends;
  ends.seconds = static_cast<double>(decoder->Frames()) / decoder->Rate();
  ends.start = Peaks(*decoder, kMostPeaks, opening);
  const FrameIndex shown = static_cast<FrameIndex>(decoder->Rate()) * kWaveSeconds;
  decoder->Seek(std::max<FrameIndex>(decoder->Frames() - shown, 0));
  ends.end = Peaks(*decoder, kMostPeaks, opening);
  return ends;
}

QByteArray WaveBytes(const WaveEnds& ends) {
  QByteArray body;
  QDataStream stream(&body, QIODevice::WriteOnly);
  stream.setVersion(QDataStream::Qt_6_0);
  stream << ends.seconds << ends.start << ends.end;
  return kMark + QCryptographicHash::hash(body, QCryptographicHash::Sha1) + body;
}

std::optional<WaveEnds> WaveEndsIn(const QByteArray& bytes) {
  const qsizetype head = kMark.size() + QCryptographicHash::hashLength(QCryptographicHash::Sha1);
  if (bytes.size() < head || !bytes.startsWith(kMark)) return std::nullopt;
  const QByteArray body = bytes.mid(head);
  if (bytes.mid(kMark.size(), head - kMark.size()) !=
      QCryptographicHash::hash(body, QCryptographicHash::Sha1))
    return std::nullopt;
  QDataStream stream(body);
  stream.setVersion(QDataStream::Qt_6_0);
  WaveEnds ends;
  stream >> ends.seconds >> ends.start >> ends.end;
  const bool good = stream.status() == QDataStream::Ok && ends.start.size() <= kMostPeaks &&
                    ends.end.size() <= kMostPeaks && ends.seconds >= 0 && ends.seconds < kMostLength;
  return good ? std::optional(ends) : std::nullopt;
}

WaveEnds CachedWaveEnds(const QString& folder, const QString& path, const OpeningPtr& opening, int most) {
  if (folder.isEmpty()) return ReadWaveEnds(path, opening);
  const QDir cache(folder);
  const QString name = CacheName(QFileInfo(path));
  if (std::optional<WaveEnds> kept = FromCache(cache.filePath(name))) return *std::move(kept);
  WaveEnds ends = ReadWaveEnds(path, opening);
  IntoCache(cache, name, ends, most);
  return ends;
}

}  // namespace kelvo
