#include "burning/AudioReadBack.h"

#include "platform/ErrorLog.h"

#include <QCoreApplication>
#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <optional>
#include <vector>

namespace kelvo {

namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(AudioDisc)
};

using Sound = std::vector<std::int16_t>;

/// No drive shifts by more, in frames: three sectors.
constexpr FrameIndex kMostShift = 3 * kSectorFrames;
constexpr int kPart = 25;  ///< sectors that are read at once
constexpr int kSides = 2;

/// The sectors that were written.
class Written {
 public:
  explicit Written(const QString& path) : file_(path) {
    if (!file_.open(QIODevice::ReadOnly)) throw Failure(Text::tr("%1 can't be read").arg(path), 0, path);
  }
  [[nodiscard]] Sound Frames(FrameIndex first, FrameIndex count) {
    Sound sound(static_cast<std::size_t>(count * kSides));
    const qint64 bytes = count * kSides * 2;
    if (!file_.seek(first * kSides * 2) || file_.read(reinterpret_cast<char*>(sound.data()), bytes) != bytes)
      throw Failure(Text::tr("%1 can't be read").arg(file_.fileName()), 0, file_.fileName());
    qFromLittleEndian<std::int16_t>(sound.data(), static_cast<qsizetype>(sound.size()), sound.data());
    return sound;
  }

 private:
  QFile file_;
};

[[noreturn]] void FailAt(std::int64_t sector) {
  throw Failure(Text::tr("What was read back is not what was written, at %1").arg(SectorsText(sector)));
}

/// A sector that is loud enough to tell its place, from the middle on; the middle one where there is none.
std::int64_t Landmark(Written& written, std::int64_t sectors) {
  constexpr int kQuiet = 500;
  const std::int64_t middle = sectors / 2;
  for (std::int64_t sector = middle; sector + 4 < sectors; ++sector) {
    const Sound sound = written.Frames(sector * kSectorFrames, kSectorFrames);
    const auto loud = std::count_if(sound.begin(), sound.end(),
                                    [](std::int16_t each) { return each > kQuiet || each < -kQuiet; });
    if (static_cast<std::size_t>(loud) > sound.size() / 4) return sector;
  }
  return middle;
}

/// By how many frames the drive's sound comes late; the smallest of those that fit.
FrameIndex ShiftOf(Written& written, const AudioDisc& disc, const ReadSectors& read) {
  const std::int64_t mark = Landmark(written, disc.sectors);
  const Sound wanted = written.Frames(mark * kSectorFrames, kSectorFrames);
  const std::int64_t first = std::max<std::int64_t>(mark - 3, 0);
  const std::int64_t end = std::min(mark + 4, disc.sectors);
  Sound sound(static_cast<std::size_t>((end - first) * kSectorFrames * kSides));
  read(static_cast<int>(first), sound);
  const FrameIndex place = (mark - first) * kSectorFrames;
  const auto fits = [&](FrameIndex shift) {
    const FrameIndex from = place + shift;
    if (from < 0 || (from + kSectorFrames) * kSides > static_cast<FrameIndex>(sound.size())) return false;
    return std::equal(wanted.begin(), wanted.end(), sound.begin() + from * kSides);
  };
  for (FrameIndex shift = 0; shift <= kMostShift; ++shift) {
    if (fits(shift)) return shift;
    if (fits(-shift)) return -shift;
  }
  FailAt(mark);
}

}  // namespace

void CompareAudioDisc(const QString& binFile, const AudioDisc& disc, const ReadSectors& read,
                      AudioDiscControl& control) {
  Written written(binFile);
  const FrameIndex shift = ShiftOf(written, disc, read);
  const FrameIndex all = disc.sectors * kSectorFrames;
  Sound sound;
  for (std::int64_t sector = 0; sector < disc.sectors && !control.stop; sector += kPart) {
    const std::int64_t count = std::min<std::int64_t>(kPart, disc.sectors - sector);
    sound.resize(static_cast<std::size_t>(count * kSectorFrames * kSides));
    read(static_cast<int>(sector), sound);
    // What the shift brings in at the two ends is not of the disc.
    const FrameIndex begin = std::clamp<FrameIndex>(sector * kSectorFrames - shift, 0, all);
    const FrameIndex end = std::clamp<FrameIndex>((sector + count) * kSectorFrames - shift, 0, all);
    const Sound wanted = written.Frames(begin, end - begin);
    const FrameIndex from = begin + shift - sector * kSectorFrames;
    if (!std::equal(wanted.begin(), wanted.end(), sound.begin() + from * kSides)) FailAt(sector);
    control.share = static_cast<double>(sector + count) / static_cast<double>(disc.sectors);
  }
}

}  // namespace kelvo
