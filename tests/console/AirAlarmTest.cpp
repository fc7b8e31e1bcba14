#include "console/ConsoleOnScreen.h"

#include <QTest>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class AirAlarmTest : public testing::ConsoleOnScreen {};

TEST_F(AirAlarmTest, TheDesksOwnSilenceShowsItAndAClickTakesItAway) {
  OpenWindow();
  auto& alarm = Find<QWidget>(u"AirAlarm"_s);
  EnqueueAll();
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(60s);
  EXPECT_FALSE(alarm.isVisible());
  loop_.RunFor(5s);
  ASSERT_TRUE(alarm.isVisible()) << "the track ran out and nothing follows";
  QTest::mouseClick(&alarm, Qt::LeftButton);
  EXPECT_FALSE(alarm.isVisible());
  loop_.RunFor(1min);
  EXPECT_FALSE(alarm.isVisible());
}

TEST_F(AirAlarmTest, ADiskThatHangsIsNamedByTheDesk) {
  OpenWindow();
  EnqueueAll();
  const QString hung = catalogue_.TrackPaths(ToMref(1));
  loop_.HangDisk(hung);
  Queue().Click(1);
  Decks().LoadCommand(Deck::One);
  loop_.RunFor(3s);
  auto& notices = *window_->findChild<NoticeBar*>();
  EXPECT_TRUE(notices.Text().contains(hung)) << notices.Text().toStdString();
  loop_.AnswerAgain(hung);
  loop_.RunFor(1s);
  EXPECT_EQ(notices.Text(), QString());
}

}  // namespace
}  // namespace kelvo
