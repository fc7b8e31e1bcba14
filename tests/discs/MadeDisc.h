#pragma once

#include "discs/CdioDrive.h"
#include "support/TemporaryTree.h"

#include <random>
#include <vector>

namespace kelvo::testing {

using namespace Qt::StringLiterals;

/// The samples of a made disc, sector for sector.
struct MadeDisc {
  std::vector<std::int16_t> samples;

  /// Noise: no two places are alike.
  explicit MadeDisc(int sectors) {
    std::minstd_rand random(7);
    samples.resize(static_cast<std::size_t>(sectors) * kCdSectorSamples);
    // A quarter of full scale, so that no limiter touches it.
    for (std::int16_t& sample : samples)
      sample = static_cast<std::int16_t>(static_cast<int>(random() >> 17) - 8192);
  }
  [[nodiscard]] std::vector<std::int16_t> Cut(int first, int sectors) const {
    const auto begin = samples.begin() + static_cast<std::ptrdiff_t>(first) * kCdSectorSamples;
    return {begin, begin + static_cast<std::ptrdiff_t>(sectors) * kCdSectorSamples};
  }
};

/// Five tracks; three and a half seconds hidden before the first; CD-Text, one name not of this alphabet; the
/// third with pre-emphasis.
inline const QByteArray kFiveTracks =
    "TITLE \"The Album\"\r\nPERFORMER \"The Band\"\r\nFILE \"disc.bin\" BINARY\r\n"
    "  TRACK 01 AUDIO\r\n    TITLE \"First\"\r\n    INDEX 00 00:00:00\r\n    INDEX 01 00:03:40\r\n"
    "  TRACK 02 AUDIO\r\n    TITLE \"Second: Part 1/2\"\r\n    PERFORMER \"A Guest\"\r\n    INDEX 01 "
    "00:07:00\r\n"
    "  TRACK 03 AUDIO\r\n    TITLE \"Dr\xc3\xbc"
    "ben\"\r\n    FLAGS PRE\r\n    INDEX 01 00:10:11\r\n"
    "  TRACK 04 AUDIO\r\n    INDEX 00 00:12:00\r\n    INDEX 01 00:13:00\r\n"
    "  TRACK 05 AUDIO\r\n    TITLE \"Last\"\r\n    INDEX 01 00:16:02\r\n";
inline constexpr int kFiveSectors = 20 * kCdSectorsPerSecond + 7;

/// Writes the disc as an image and returns the place of its sheet.
inline QString WriteImage(const TemporaryTree& folder, const MadeDisc& disc,
                          const QByteArray& sheet = kFiveTracks) {
  (void)folder.Write(u"disc.bin"_s,
                     QByteArray(reinterpret_cast<const char*>(disc.samples.data()),
                                static_cast<qsizetype>(disc.samples.size() * sizeof(std::int16_t))));
  return folder.Write(u"disc.cue"_s, sheet);
}

}  // namespace kelvo::testing
