#pragma once

#include "playlists/TimeFit.h"

#include <span>

namespace kelvo {

/// The tracks that a list may be made of, in the orders in which FitToTime looks for them; those that are as
/// good come in an order by chance. Tracks without a length, or more than twice as long as the list, are left
/// out. The question outlives it.
class FitPool {
 public:
  using Track = std::uint32_t;  ///< its place among those of the question

  explicit FitPool(const FitQuestion& question);

  [[nodiscard]] int Seconds(Track track) const { return question_.tracks[track].seconds; }
  /// A tempo that is not known counts as infinitely fast.
  [[nodiscard]] double Bpm(Track track) const { return bpm_[track]; }
  /// Equal for equal titles, below Titles().
  [[nodiscard]] std::uint32_t Title(Track track) const { return titles_[track]; }
  [[nodiscard]] std::size_t Titles() const { return titleCount_; }
  [[nodiscard]] bool ShareArtist(Track one, Track other) const;

  /// From the slowest.
  [[nodiscard]] const std::vector<Track>& ByTempo() const { return byTempo_; }
  /// Those that last so many seconds.
  [[nodiscard]] std::span<const Track> OfLength(int seconds) const;
  /// The lengths that there are, in seconds, rising.
  [[nodiscard]] const std::vector<int>& Lengths() const { return lengths_; }
  [[nodiscard]] int MedianSeconds() const;

 private:
  void ReadNames();
  void Sort();

  const FitQuestion& question_;
  std::vector<double> bpm_;
  std::vector<std::uint32_t> titles_;
  std::size_t titleCount_ = 0;
  std::vector<std::uint32_t> artists_;  ///< of all tracks, one behind the other
  std::vector<std::uint32_t> artistEnds_;
  std::vector<Track> byTempo_;
  std::vector<Track> byLength_;
  std::vector<std::uint32_t> lengthStarts_;  ///< by seconds: where they begin in byLength_
  std::vector<int> lengths_;
};

}  // namespace kelvo
