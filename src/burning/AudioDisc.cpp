#include "burning/AudioDisc.h"

#include "audio/CueSheet.h"
#include "audio/engine/EngineSource.h"
#include "audio/engine/OpenDecoder.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/FileCopy.h"
#include "platform/NewFile.h"
#include "platform/Words.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>

namespace kelvo {

namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(AudioDisc)
};

constexpr std::size_t kPartFrames = 4096;
constexpr float kFullScale = 32768;
constexpr std::int64_t kBytesPerFrame = 4;

/// The share of the work that looking through the files is.
constexpr double kLookShare = 0.2;

std::int16_t Sample(float value) {
  return static_cast<std::int16_t>(std::clamp(std::lround(value * kFullScale), -32768L, 32767L));
}

/// The letters of a disc's own names: of others what is below their marks, or a question mark.
QByteArray DiscLetters(const QString& text) {
  QString plain;
  for (const QChar each : text) {
    constexpr char16_t kLast = 0xFF;
    const QString parts = each.unicode() > kLast ? each.decomposition() : QString();
    plain += parts.isEmpty() || parts[0].unicode() > kLast ? each : parts[0];
  }
  return plain.toLatin1();
}

/// How long all of it will be, in frames. Throws when it fits on no disc.
FrameIndex Measured(const AudioDiscOrder& order, AudioDiscControl& control) {
  if (order.tracks.empty()) throw Failure(Text::tr("No track was given."));
  if (order.tracks.size() > kMostDiscTracks)
    throw Failure(
        Text::tr("A disc holds %1 tracks; these are %2.").arg(kMostDiscTracks).arg(order.tracks.size()));
  double seconds = 0;
  std::size_t looked = 0;
  for (const DiscTrack& track : order.tracks) {
    if (control.stop) return 0;
    const double length = EngineSource(OpenDecoder(track.path)).Seconds();
    if (length < static_cast<double>(kLeastTrackSectors) / kDiscSectors)
      throw Failure(
          Text::tr("%1 is shorter than the 4 seconds that a track of a disc must have.").arg(track.title));
    seconds += length;
    control.share = kLookShare * static_cast<double>(++looked) / static_cast<double>(order.tracks.size());
  }
  const auto sectors = static_cast<std::int64_t>(std::ceil(seconds * kDiscSectors));
  if (sectors > order.mostSectors)
    throw Failure(Text::tr("The tracks last %1, the disc holds %2.")
                      .arg(SectorsText(sectors), SectorsText(order.mostSectors)));
  return static_cast<FrameIndex>(seconds * kEngineRate);
}

/// The file of the sectors, and the sum over them.
class Sectors {
 public:
  explicit Sectors(const QString& path) : file_(EncodedPath(path), 0666), sum_(QCryptographicHash::Sha1) {}

  [[nodiscard]] FrameIndex Frames() const { return frames_; }
  void Write(std::span<const float> sound) {
    bytes_.resize(static_cast<qsizetype>(sound.size() * 2));
    for (std::size_t i = 0; i < sound.size(); ++i) qToLittleEndian(Sample(sound[i]), bytes_.data() + i * 2);
    file_.Write(bytes_.constData(), bytes_.size());
    sum_.addData(QByteArrayView(bytes_));
    frames_ += static_cast<FrameIndex>(sound.size() / kChannels);
  }
  /// Fills the last sector with silence.
  void Complete() {
    const FrameIndex over = frames_ % kSectorFrames;
    if (over > 0) Write(std::vector<float>(static_cast<std::size_t>(kSectorFrames - over) * kChannels));
  }
  QByteArray Commit() {
    static_cast<void>(file_.Commit(NewFile::Place::Replace));
    return sum_.result();
  }

 private:
  NewFile file_;
  QCryptographicHash sum_;
  QByteArray bytes_;
  FrameIndex frames_ = 0;
};

QByteArray SheetOf(const AudioDiscOrder& order, const AudioDisc& disc) {
  std::vector<CueTitle> titles;
  for (std::size_t i = 0; i < order.tracks.size(); ++i)
    titles.push_back({order.tracks[i].performer, order.tracks[i].title, disc.starts[i] * kSectorFrames});
  QString title = order.title;
  title.replace(QLatin1Char('"'), QLatin1Char('\''));
  const QByteArray sheet =
      "TITLE \"" + title.toUtf8() + "\"\r\n" + CueSheetText(QFileInfo(order.binFile).fileName(), titles);
  return order.forDrive ? DiscLetters(QString::fromUtf8(sheet)) : sheet;
}

}  // namespace

QString SectorsText(std::int64_t sectors) {
  return MinutesSeconds(static_cast<double>(sectors) / kDiscSectors);
}

AudioDisc WriteAudioDisc(const AudioDiscOrder& order, AudioDiscControl& control) {
  AudioDisc disc;
  const FrameIndex all = Measured(order, control);
  const QString folder = QFileInfo(order.binFile).path();
  if (!HasRoomFor(folder, all * kBytesPerFrame))
    throw Failure(QStringLiteral("Cannot Continue...Not Enough Free Disc Space on Drive ") + folder, 0,
                  folder);
  Sectors sectors(order.binFile);
  std::array<float, kPartFrames * kChannels> part{};
  for (const DiscTrack& track : order.tracks) {
    disc.starts.push_back(sectors.Frames() / kSectorFrames);
    EngineSource source(OpenDecoder(track.path));
    for (std::size_t got = kPartFrames; got == kPartFrames && !control.stop;) {
      got = source.Read(part);
      sectors.Write(std::span<const float>(part).first(got * kChannels));
      const double share =
          static_cast<double>(sectors.Frames()) / static_cast<double>(std::max<FrameIndex>(all, 1));
      control.share = kLookShare + (1 - kLookShare) * std::min(share, 1.0);
    }
    disc.stopped = control.stop;
    if (disc.stopped) return disc;
  }
  sectors.Complete();
  disc.sectors = sectors.Frames() / kSectorFrames;
  if (disc.sectors > order.mostSectors)
    throw Failure(Text::tr("The tracks last %1, the disc holds %2.")
                      .arg(SectorsText(disc.sectors), SectorsText(order.mostSectors)));
  // A sheet of before would tell wrong things of these sectors.
  QFile::remove(order.cueFile);
  disc.sum = sectors.Commit();
  ReplaceFile(order.cueFile, SheetOf(order, disc));
  return disc;
}

void ProveAudioDisc(const QString& binFile, const AudioDisc& disc) {
  QFile file(binFile);
  QCryptographicHash sum(QCryptographicHash::Sha1);
  if (!file.open(QIODevice::ReadOnly) || !sum.addData(&file) || file.size() != disc.sectors * kSectorBytes ||
      sum.result() != disc.sum) {
    throw Failure(Text::tr("%1 does not hold what was written").arg(binFile), 0, binFile);
  }
}

}  // namespace kelvo
