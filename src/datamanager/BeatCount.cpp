#include "datamanager/BeatCount.h"

#include "platform/Words.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace kelvo {
namespace {

constexpr double kMinute = 60;
constexpr double kRounding = 0.05;
constexpr double kAdded = 1.0;

}  // namespace

void BeatCount::Tap(double position) {
  if (count_ < kMostTaps) times_[static_cast<std::size_t>(count_++)] = position;
}

std::optional<int> BeatCount::Result() const {
  if (!Enough() || !(Sum() > 0)) return std::nullopt;
  const double mean = Sum() / (count_ - 1);
  const double beats = kMinute / mean + kRounding + kAdded;
  return static_cast<int>(std::min<double>(std::trunc(beats), std::numeric_limits<int>::max()));
}

std::optional<double> BeatCount::Median() const {
  if (!Result()) return std::nullopt;
  std::vector<double> intervals;
  for (int tap = 1; tap < count_; ++tap)
    intervals.push_back(times_[static_cast<std::size_t>(tap)] - times_[static_cast<std::size_t>(tap - 1)]);
  std::sort(intervals.begin(), intervals.end());
  const std::size_t middle = intervals.size() / 2;
  const double median =
      intervals.size() % 2 == 1 ? intervals[middle] : (intervals[middle - 1] + intervals[middle]) / 2;
  return median > 0 ? std::optional(kMinute / median) : std::nullopt;
}

double BeatCount::FlashPeriod() const {
  return Result() ? Sum() / count_ : 0;
}

void BeatFlash::Begin(double first, double period) {
  next_ = first;
  period_ = period;
}

bool BeatFlash::On(double position) {
  if (!(period_ > 0)) return false;
  // Moved back by more than a beat: the beats before are the same ones.
  if (position < next_ - period_) next_ -= std::floor((next_ - position) / period_) * period_;
  const bool on = position >= next_;
  if (position > next_) next_ += std::ceil((position - next_) / period_) * period_;
  return on;
}

}  // namespace kelvo
