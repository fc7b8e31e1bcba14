#pragma once

#include "audio/engine/SoundFile.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace kelvo {

/// So much of each end of a track is shown, and so finely.
inline constexpr int kWaveSeconds = 40;
inline constexpr int kWavePeaksPerSecond = 10;

/// How loud a track is at its two ends, for a picture. A value.
struct WaveEnds {
  QByteArray start;    ///< peaks from the first sample on, a byte each: 0 silent, 255 full scale
  QByteArray end;      ///< peaks up to the last sample
  double seconds = 0;  ///< length of the track
  bool operator==(const WaveEnds&) const = default;
};

/// Reads the two ends of a sound file. Throws Failure when it can't be played, or `opening` was cancelled.
/// Blocks for the disk; any thread but the logic's.
[[nodiscard]] WaveEnds ReadWaveEnds(const QString& path, const OpeningPtr& opening);

// As a file of the cache keeps them. Reading takes any bytes: none for all that WaveBytes did not make.
[[nodiscard]] QByteArray WaveBytes(const WaveEnds& ends);
[[nodiscard]] std::optional<WaveEnds> WaveEndsIn(const QByteArray& bytes);

/// So many tracks are kept in the cache, at about a kilobyte each; the oldest go.
inline constexpr int kMostCachedWaves = 4000;

/// The same as ReadWaveEnds, by way of the cache in `folder` (empty: there is none): what it holds is taken
/// when the file has the size and the date of then. What is damaged there is made anew, and a cache that
/// can't be written is none.
[[nodiscard]] WaveEnds CachedWaveEnds(const QString& folder, const QString& path, const OpeningPtr& opening,
                                      int most = kMostCachedWaves);

}  // namespace kelvo
