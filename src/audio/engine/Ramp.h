#pragma once

namespace kelvo {

/// A value that moves to its goal in even steps, one a frame, each time from its present value.
template <typename Number>
class Ramp {
 public:
  explicit Ramp(Number value) : value_(value), goal_(value) {}

  [[nodiscard]] Number Value() const { return value_; }
  [[nodiscard]] bool Moving() const { return left_ > 0; }
  [[nodiscard]] int StepsLeft() const { return left_; }

  void Aim(Number goal, int steps) {
    if (goal == goal_) return;
    goal_ = goal;
    left_ = steps;
    step_ = (goal - value_) / static_cast<Number>(steps);
  }
  void JumpTo(Number value) {
    value_ = goal_ = value;
    left_ = 0;
  }
  void Step() {
    if (left_ == 0) return;
    // The last step lands on the goal itself, whatever the rounding of the others.
    value_ = --left_ == 0 ? goal_ : value_ + step_;
  }

 private:
  Number value_;
  Number goal_;
  Number step_{0};
  int left_ = 0;
};

}  // namespace kelvo
