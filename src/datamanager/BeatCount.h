#pragma once

#include <array>
#include <optional>
#include <span>

namespace kelvo {

/// Taps in time with a piece of music, and the figure that they make. Times are places in the track, in
/// seconds, so nothing that holds up the program spoils them. A value.
class BeatCount {
 public:
  static constexpr int kMostTaps = 59;
  static constexpr int kFewestTaps = 5;

  void Clear() { count_ = 0; }
  /// Takes a tap; one after the last of those that it holds is not taken.
  void Tap(double position);
  [[nodiscard]] int Count() const { return count_; }
  [[nodiscard]] bool Enough() const { return count_ >= kFewestTaps; }

  /// The count: 60 divided by the mean of the intervals, 0.05 and 1 added, cut to a whole number. The added 1
  /// belongs to it: 120 beats tapped exactly read 121, as every figure in the databases was counted. None
  /// when there are too few taps, or they did not move on in the track.
  [[nodiscard]] std::optional<int> Result() const;
  /// Beats a minute of the interval that half of all are longer than, with nothing added; a tap that was
  /// missed or came twice does not count in it. None as for Result.
  [[nodiscard]] std::optional<double> Median() const;
  /// Seconds from one flash of the lamp to the next: the time from the first to the last tap over the number
  /// of taps, not of intervals. 0 when there is no result.
  [[nodiscard]] double FlashPeriod() const;
  [[nodiscard]] double First() const { return times_[0]; }

 private:
  [[nodiscard]] double Sum() const { return times_[static_cast<std::size_t>(count_ - 1)] - times_[0]; }

  std::array<double, kMostTaps> times_{};
  int count_ = 0;
};

/// The lamp that goes on with each beat. A value.
class BeatFlash {
 public:
  /// Flashes from `first` on, each `period` seconds; none with a period of 0.
  void Begin(double first, double period);
  /// The lamp at this place in the track; asked each 100 ms. A track that was moved finds its beat again.
  [[nodiscard]] bool On(double position);

 private:
  double next_ = 0;
  double period_ = 0;
};

}  // namespace kelvo
