#pragma once

#include "audio/engine/SoundBlock.h"

#include <QByteArray>
#include <QString>

#include <atomic>
#include <cstdint>
#include <vector>

namespace kelvo {

/// A piece of music for a disc.
struct DiscTrack {
  QString path;
  QString performer;
  QString title;
};

/// What an audio CD is made of. 75 sectors are a second.
inline constexpr FrameIndex kSectorFrames = 588;
inline constexpr int kSectorBytes = 2352;
inline constexpr std::int64_t kDiscSectors = 75;  ///< a second
inline constexpr std::int64_t kLeastTrackSectors = 4 * kDiscSectors;
inline constexpr std::size_t kMostDiscTracks = 99;
/// Of a disc of 80 minutes.
inline constexpr std::int64_t kUsualDiscSectors = 359'845;

struct AudioDiscOrder {
  std::vector<DiscTrack> tracks;
  QString title;          ///< of the disc
  QString binFile;        ///< gets the sectors
  QString cueFile;        ///< gets the sheet that tells of them, in the same folder
  bool forDrive = false;  ///< the sheet is for the burner: in the letters that discs know
  std::int64_t mostSectors = kUsualDiscSectors;
};

/// The two ends of the work.
struct AudioDiscControl {
  std::atomic<bool> stop{false};
  std::atomic<double> share{0};  ///< 0 to 1
};

struct AudioDisc {
  bool stopped = false;
  std::vector<std::int64_t> starts;  ///< the first sector of each track
  std::int64_t sectors = 0;
  QByteArray sum;  ///< over all bytes of sound
};

/// Writes the sound of the tracks as the sectors of an audio CD, one track right behind the other: between
/// two there is not a sample that is not theirs. A track begins with the sector that has its first sample.
/// Files get their names when they are whole. Throws Failure: a track can't be read, there are too many, one
/// is shorter than discs allow, all together are too long, the disk is full. Blocks; any thread.
[[nodiscard]] AudioDisc WriteAudioDisc(const AudioDiscOrder& order, AudioDiscControl& control);
/// Reads the sectors back; throws Failure when they are not those that were written. Blocks; any thread.
void ProveAudioDisc(const QString& binFile, const AudioDisc& disc);

/// Sectors as minutes and seconds.
[[nodiscard]] QString SectorsText(std::int64_t sectors);

}  // namespace kelvo
