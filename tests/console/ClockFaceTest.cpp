#include "console/status/ClockFace.h"

#include <gtest/gtest.h>

namespace kelvo {
namespace {

void ExpectAt(const ClockPoint& point, double x, double y) {
  EXPECT_NEAR(point.x, x, 0.001);
  EXPECT_NEAR(point.y, y, 0.001);
}

TEST(ClockFaceTest, TheHandsPointWhereAClocksHandsPoint) {
  const ClockHands three = HandsAt(QTime(15, 0, 30));
  ExpectAt(three.hour, 400, 0);
  ExpectAt(three.minute, 0, -600);
  ExpectAt(three.second, 0, 800);

  const ClockHands nine = HandsAt(QTime(21, 45, 0));
  ExpectAt(nine.minute, -600, 0);
  ExpectAt(nine.second, 0, -800);
  // A quarter to ten: the hour hand is three quarters of the way from 9 to 10.
  const ClockPoint expected = OnFace(400, 292.5);
  ExpectAt(nine.hour, expected.x, expected.y);
  EXPECT_LT(nine.hour.y, 0);
}

}  // namespace
}  // namespace kelvo
