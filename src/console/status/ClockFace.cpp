#include "console/status/ClockFace.h"

#include <cmath>
#include <numbers>

namespace kelvo {

ClockPoint OnFace(double length, double degrees) {
  const double radians = (degrees - 90) * std::numbers::pi / 180;
  return {length * std::cos(radians), length * std::sin(radians)};
}

ClockHands HandsAt(const QTime& time) {
  const double hours = time.hour() + time.minute() / 60.0;
  return {OnFace(kHourHandLength, 30 * hours), OnFace(kMinuteHandLength, 6.0 * time.minute()),
          OnFace(kSecondHandLength, 6.0 * time.second())};
}

}  // namespace kelvo
