#pragma once

#include <QTime>

namespace kelvo {

/// A point of the clock's face: its centre is 0,0, x grows to the right and y downwards.
struct ClockPoint {
  double x = 0;
  double y = 0;
};

/// The lengths of the hands, in units of the face.
inline constexpr double kHourHandLength = 400;
inline constexpr double kMinuteHandLength = 600;
inline constexpr double kSecondHandLength = 800;
/// The radius of the rim that a face with these hands has.
inline constexpr double kFaceRadius = 1000;

/// The tips of the three hands; all of them begin at the centre.
struct ClockHands {
  ClockPoint hour;
  ClockPoint minute;
  ClockPoint second;
};

/// The point `length` from the centre in the direction `degrees`: 0 is 12 o'clock, 90 is 3 o'clock.
[[nodiscard]] ClockPoint OnFace(double length, double degrees);

/// The hour hand creeps with the minutes; the other two step.
[[nodiscard]] ClockHands HandsAt(const QTime& time);

}  // namespace kelvo
