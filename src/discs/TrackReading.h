#pragma once

#include "discs/DiscDrive.h"

#include <boost/crc.hpp>
#include <optional>
#include <vector>

namespace kelvo {

/// How much is done to be sure of what a disc holds.
enum class ReadMode {
  Once,   ///< as the drive gives it
  Twice,  ///< two passes over the track; where they differ the sectors are read carefully
  Full,   ///< everything is read carefully
};

/// What came of the reading of a track. A value.
struct ReadFacts {
  std::uint32_t checksum = 0;  ///< CRC-32 of its samples, as a WAV file holds them
  int careful = 0;             ///< sectors that were read carefully
  int unsure = 0;              ///< of these, sectors that never agreed: silence or a click may be in them
};

/// Reads one track, some seconds at a time. A first pass keeps no samples, only a checksum of each sector;
/// the second gives them, so that a track of any length takes no memory, and the drive's own memory can't
/// answer for the disc. A read offset moves the whole track by so many frames; what that asks for before the
/// first and behind the last audio sector is silence. Owned by the rip; off the logic's thread, one thread at
/// a time.
class TrackReading {
 public:
  TrackReading(DiscDrive& drive, const DiscToc& toc, const TocTrack& track, int offsetFrames, ReadMode mode);

  /// Goes on by a stretch. What is sure is in the samples; in the first pass there are none. Throws
  /// DriveFailure when the disc is gone; sectors that cannot be read are silence, and counted.
  [[nodiscard]] std::vector<std::int16_t> Next();
  [[nodiscard]] bool AtEnd() const { return !comparing_ && place_ == track_.sectors; }

  /// How much of its way is done, 0 to 1.
  [[nodiscard]] double Share() const;
  [[nodiscard]] const ReadFacts& Facts() const { return facts_; }

 private:
  using Samples = std::vector<std::int16_t>;
  /// Reads sectors of the track, moved by the offset. Returns the sectors that are unsure.
  int ReadSectors(int sector, std::span<std::int16_t> target, bool carefully);
  /// One stretch of the first pass.
  void Compare(int sectors);
  [[nodiscard]] Samples Take(int sectors);
  void ReadCarefully(int sector, std::span<std::int16_t> target);
  /// Reads elsewhere on the disc, so that a short track is not given out of the drive's memory.
  void EmptyDriveMemory();

  DiscDrive& drive_;
  TocTrack track_;
  DiscToc::Zone zone_;
  int offset_;
  ReadMode mode_;
  bool comparing_;                                   ///< the first of two passes
  int place_ = 0;                                    ///< sectors done of the present pass
  std::vector<std::optional<std::uint32_t>> first_;  ///< the sectors of the first pass; none: not readable
  boost::crc_32_type sum_;
  ReadFacts facts_;
};

}  // namespace kelvo
