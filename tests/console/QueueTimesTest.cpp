#include "console/QueueTimes.h"

#include <gmock/gmock.h>

namespace kelvo::testing {
namespace {

using ::testing::ElementsAre;

constexpr std::nullopt_t kNone = std::nullopt;

OutlookQuestion FourRows() {
  OutlookQuestion question;
  question.rows = {{100, true}, {60, true}, {60, false}, {30, true}};
  question.onAir = 1;
  question.left = 40;
  return question;
}

TEST(QueueOutlook, RowsBehindTheOneOnAirPlayOneAfterTheOther) {
  OutlookQuestion question = FourRows();
  EXPECT_THAT(QueueOutlook(question), ElementsAre(kNone, 40.0, kNone, 100.0));
  question.next = 4;
  EXPECT_THAT(QueueOutlook(question), ElementsAre(kNone, kNone, kNone, 40.0))
      << "the other deck holds the last";
  question.next = 3;
  EXPECT_THAT(QueueOutlook(question), ElementsAre(kNone, kNone, 40.0, 100.0)) << "loaded by hand once more";
}

TEST(QueueOutlook, AutomaticPlayOverlapsAndGoesRound) {
  OutlookQuestion question = FourRows();
  question.again = true;
  question.overlap = 5;
  question.onAir = 3;
  EXPECT_THAT(QueueOutlook(question), ElementsAre(60.0, 155.0, kNone, 35.0));
}

TEST(QueueOutlook, NothingIsToldBehindAnUnknownLengthOrWhileNothingPlays) {
  OutlookQuestion question = FourRows();
  question.rows[1].seconds = -1;
  EXPECT_THAT(QueueOutlook(question), ElementsAre(kNone, 40.0, kNone, kNone));
  question.onAir = 0;
  EXPECT_THAT(QueueOutlook(question), ElementsAre(kNone, kNone, kNone, kNone));
  EXPECT_TRUE(QueueOutlook({}).empty());
}

}  // namespace
}  // namespace kelvo::testing
