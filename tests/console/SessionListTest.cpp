#include "console/session/SessionList.h"
#include "database/Catalogue.h"

#include <gmock/gmock.h>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;

class SessionListTest : public ::testing::Test {
 protected:
  SessionListTest() {
    CatalogueRow row;
    row.name = u"amber - waterline"_s;
    catalogue_.Append(row);
  }
  void Record(SessionCode code, double clock, double position = -1) {
    facts_.sessionClock = clock;
    list_.RecordSessionEvent({code, Deck::Two, ToMref(1), position});
  }
  [[nodiscard]] const SessionEvent& Event(std::size_t number) const { return list_.Events().at(number); }

  Catalogue catalogue_;
  SessionFacts facts_{0, 20, 163.9};
  SessionList list_{catalogue_, [this](Deck) { return facts_; }};
};

TEST_F(SessionListTest, ARowTellsWhatHappenedWhenAndToWhich) {
  Record(SessionCode::Loaded, 10);
  Record(SessionCode::FadeStarted, 20);
  Record(SessionCode::PositionChangedDeckTwo, 30, 12.5);
  EXPECT_EQ(Event(0).Description, u"amber - waterline"_s);
  EXPECT_EQ(Event(0).Speed, -1);
  EXPECT_EQ(Event(0).Length, 163);
  EXPECT_EQ(Event(1).Description, u"Fade Started"_s);
  EXPECT_EQ(Event(1).Speed, 30) << "50 less the slider";
  EXPECT_EQ(Event(2).Pos, 12.5);
  EXPECT_EQ(Event(2).OnDeck, Deck::Two);
  EXPECT_EQ(list_.Label(), u"Listed Element 3 Of 200"_s);
  facts_.fadeSpeed = 50;
  Record(SessionCode::FadeEnded, 40);
  EXPECT_EQ(Event(3).Speed, 1);
}

TEST_F(SessionListTest, AnEndWithoutItsStartPullsTheRowBeforeIt) {
  Record(SessionCode::DubStarted, 10);
  Record(SessionCode::DubEnded, 12);
  EXPECT_EQ(Event(0).Time, 10) << "start and end keep their own times";
  Record(SessionCode::PositionChangedDeckOne, 20);
  Record(SessionCode::DubEnded, 25);
  EXPECT_EQ(Event(2).Time, 25);
  Record(SessionCode::FadeStarted, 30);
  Record(SessionCode::FadeEnded, 35);
  EXPECT_EQ(Event(4).Time, 30);
  Record(SessionCode::TrackStarted, 40);
  Record(SessionCode::FadeEnded, 45);
  EXPECT_EQ(Event(6).Time, 45);
}

TEST_F(SessionListTest, TheListStartsOverAtTwoHundredRows) {
  for (int number = 0; number < 200; ++number) Record(SessionCode::TrackStarted, number);
  EXPECT_EQ(list_.Events().size(), 200U);
  EXPECT_EQ(list_.Label(), u"Listed Element 200 Of 200"_s);
  Record(SessionCode::TrackStopped, 500);
  EXPECT_TRUE(list_.Events().empty()) << "the event itself is not kept";
  EXPECT_EQ(list_.Label(), u"Listing Last 200 Elements in Current Session"_s);
  Record(SessionCode::DubEnded, 501);
  EXPECT_EQ(list_.Events().size(), 1U);
  EXPECT_EQ(list_.Label(), u"Listed Element 1 Of 200"_s);
}

}  // namespace
}  // namespace kelvo
