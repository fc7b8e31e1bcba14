#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace kelvo {

/// An audio disc is a row of sectors of 588 frames, stereo, 16 bits, 44100 Hz: 75 of them a second.
inline constexpr int kCdSectorFrames = 588;
inline constexpr int kCdSectorSamples = kCdSectorFrames * 2;
inline constexpr int kCdSectorBytes = 2352;
inline constexpr int kCdSectorsPerSecond = 75;

/// A track as the disc's table of contents tells it. A value.
struct TocTrack {
  int number = 0;  ///< from 1; 0 for what is hidden before the first track
  int first = 0;   ///< its first sector
  int sectors = 0;
  bool audio = true;
  bool preEmphasis = false;  ///< recorded with raised treble: a player has to lower it again
  QString title = {};        ///< of CD-Text; empty: the disc has none
  QString performer = {};

  [[nodiscard]] int End() const { return first + sectors; }
  [[nodiscard]] double Seconds() const { return static_cast<double>(sectors) / kCdSectorsPerSecond; }
  bool operator==(const TocTrack&) const = default;
};

/// The table of contents of a disc. A value.
struct DiscToc {
  std::vector<TocTrack> tracks;  ///< by their numbers
  QString title = {};            ///< of CD-Text
  QString performer = {};

  /// What is before an audio disc's first track, where it is longer than the pause that discs have there.
  [[nodiscard]] std::optional<TocTrack> Hidden() const;
  /// The first sector behind the last track; 0 without tracks.
  [[nodiscard]] int End() const { return tracks.empty() ? 0 : tracks.back().End(); }
  /// The track that holds the sector, or the one before it in a gap; none before the first track.
  [[nodiscard]] const TocTrack* TrackAt(int sector) const;
  [[nodiscard]] const TocTrack* Track(int number) const;
  [[nodiscard]] int AudioTracks() const;

  /// A run of sectors that hold sound.
  struct Zone {
    int first = 0;
    int end = 0;
  };
  /// The run around the sector: the audio tracks that follow each other without data between them, and what
  /// is hidden before the first. Empty where the sector holds data.
  [[nodiscard]] Zone AudioZone(int sector) const;

  bool operator==(const DiscToc&) const = default;
};

}  // namespace kelvo
