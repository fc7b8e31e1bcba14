#include "console/DeskFixture.h"

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::DeskTest;

/// A desk on which a preview has run, at nine o'clock.
class TimedStartTest : public DeskTest {
 protected:
  void OpenAfterAPreview() {
    for (int each = 0; each < 9; ++each) AddTrack(QString(QChar(u'a' + each)), 60, 60);
    Open();
    Play().SetMode(AutoMode::Preview);
    Play().ToggleAutoPlay();
    loop_.RunFor(40s);
    ASSERT_GT(Play().UsedPicks(), 0);
    Play().ToggleAutoPlay();
    for (const Deck deck : kDecks) Decks().StopByHand(deck);
    Play().SetMode(AutoMode::Preview);
  }
  [[nodiscard]] AutoPlay& Play() { return desk_->Automatic(); }
  [[nodiscard]] bool Sounds() {
    return Player(Deck::One).State() == PlayState::Playing || Player(Deck::Two).State() == PlayState::Playing;
  }
};

TEST_F(TimedStartTest, AQuestionThatNobodyAnswersDoesNotHoldItUp) {
  OpenAfterAPreview();
  const int used = Play().UsedPicks();
  const std::size_t asked = prompter_.asked.size();
  Play().ArmTimer(9, 2);
  loop_.RunFor(2min);
  EXPECT_TRUE(Sounds());
  EXPECT_EQ(prompter_.asked.size(), asked) << "nobody is there to be asked";
  EXPECT_GT(Play().UsedPicks(), used) << "it goes on with the last session";
}

TEST_F(TimedStartTest, OneThatStandsWhenTheTimeComesIsTakenAway) {
  OpenAfterAPreview();
  prompter_.away = true;
  Play().ArmTimer(9, 2);
  Play().ToggleAutoPlay();
  loop_.RunFor(20s);
  EXPECT_TRUE(prompter_.asked.back().text.contains(u"have Already been Previewed"_s));
  EXPECT_FALSE(Sounds());
  loop_.RunFor(2min);
  EXPECT_TRUE(Sounds());
}

}  // namespace
}  // namespace kelvo
