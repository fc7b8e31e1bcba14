#pragma once

#include "platform/EventLoop.h"

#include <cstdint>

namespace kelvo {

/// Watches how much sound waits in front of the device of the programme: it grows when the device ran dry and
/// goes back after quiet minutes; the operator hears of both. A value; the Console asks it each second.
class ReserveWatch {
 public:
  enum class State {
    Calm,
    Dropped,  ///< the device ran dry, and its reserve did not grow
    Grown,
    Back,  ///< it has been as small as before for less than kToldFor
  };
  static constexpr Nanoseconds kToldFor = std::chrono::minutes(1);

  /// `reserve` is 0 while there is no device; `dropouts` only counts up.
  void Look(Nanoseconds reserve, std::uint64_t dropouts, Nanoseconds now) {
    const bool known = reserve_ > Nanoseconds(0);
    const bool dropped = known && dropouts > seen_;
    if (dropped && (state_ == State::Calm || state_ == State::Back)) before_ = seen_;
    // Another device has another reserve.
    if (!dropped && state_ == State::Calm) least_ = reserve;
    if (dropped) changedAt_ = now;
    seen_ = dropouts;
    reserve_ = reserve;
    const bool warned = dropped || state_ == State::Dropped || state_ == State::Grown;
    if (warned && reserve > least_) {
      state_ = State::Grown;
    } else if (dropped) {
      state_ = State::Dropped;
    } else if (state_ == State::Grown) {
      // A device that is gone tells nothing by that.
      state_ = reserve == Nanoseconds(0) ? State::Calm : State::Back;
      changedAt_ = now;
    } else if (now - changedAt_ >= kToldFor) {
      state_ = State::Calm;
    }
  }

  [[nodiscard]] State Now() const { return state_; }
  [[nodiscard]] Nanoseconds Reserve() const { return reserve_; }
  /// The reserve of before.
  [[nodiscard]] Nanoseconds Least() const { return least_; }
  /// How often the device ran dry meanwhile.
  [[nodiscard]] std::int64_t Dropouts() const { return static_cast<std::int64_t>(seen_ - before_); }

 private:
  State state_ = State::Calm;
  Nanoseconds reserve_{0};
  Nanoseconds least_{0};
  Nanoseconds changedAt_{0};
  std::uint64_t seen_ = 0;
  std::uint64_t before_ = 0;
};

}  // namespace kelvo
