#include "console/ConsoleOnScreen.h"

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ConsoleOnScreen;

/// What may be pressed on the decks while something else is under way.
class DeckCommands : public ConsoleOnScreen {
 protected:
  /// Deck 1 plays alone, Deck 2 is loaded.
  void OpenOnAir() {
    OpenWindow();
    EnqueueAll();
    Load(Deck::One, 1);
    Load(Deck::Two, 2);
    Decks().ManualStart(Deck::One);
    desk_->Fades().SetCrossPan(kDeckOneAlone);
    loop_.RunFor(1s);
  }
  [[nodiscard]] bool Enabled(const QString& name) { return Find<QPushButton>(name).isEnabled(); }
};

TEST_F(DeckCommands, RestWhileTheDecksDipForTheVoiceAndComeBackUnderIt) {
  OpenOnAir();
  desk_->Speak().SetDepthSlider(0);
  desk_->Speak().SetSpeedSlider(10);
  QTest::keyPress(&*window_, Qt::Key_Space);
  loop_.RunFor(500ms);
  ASSERT_TRUE(desk_->Speak().AfadeRunning());
  for (const QString& name : {u"CmdLoad2"_s, u"CmdDeckStop1"_s, u"CMdD3Pan"_s, u"CmdPFade3"_s, u"CmdDub3"_s})
    EXPECT_FALSE(Enabled(name)) << name.toStdString();
  QTest::keyClick(&*window_, Qt::Key_F11);
  loop_.RunFor(100ms);
  EXPECT_FALSE(desk_->Fades().Starting());
  loop_.RunFor(3s);
  ASSERT_TRUE(desk_->Speak().AfadeDown());
  for (const QString& name : {u"CmdLoad2"_s, u"CmdDeckStop1"_s, u"CMdD3Pan"_s, u"CmdPFade3"_s, u"CmdDub3"_s})
    EXPECT_TRUE(Enabled(name)) << name.toStdString();
  QTest::keyRelease(&*window_, Qt::Key_Space);
  loop_.RunFor(500ms);
  EXPECT_FALSE(Enabled(u"CmdPFade3"_s));
  loop_.RunFor(3s);
  EXPECT_TRUE(Enabled(u"CmdPFade3"_s));
  EXPECT_EQ(Record(Deck::One).Loss, 0);
}

TEST_F(DeckCommands, ADubThatIsHeldKeepsItsButtonUnderTheVoice) {
  OpenOnAir();
  desk_->Speak().SetSpeedSlider(10);
  QTest::keyPress(&*window_, Qt::Key_F12);
  loop_.RunFor(500ms);
  QTest::keyPress(&*window_, Qt::Key_Space);
  loop_.RunFor(3s);
  EXPECT_TRUE(Find<QPushButton>(u"CmdDub3"_s).isDown());
  EXPECT_EQ(desk_->Fades().CrossPan(), 1) << "no fade before the key is let go";
}

TEST_F(DeckCommands, EscapeTakesAFadeOfTheOperatorBackAndNoneOfAutomaticPlay) {
  OpenOnAir();
  QTest::keyClick(&*window_, Qt::Key_F10);
  ASSERT_TRUE(loop_.RunUntil([this] { return desk_->Fades().WalkActive(); }, 5s));
  loop_.RunFor(3s);
  EXPECT_TRUE(Find<QPushButton>(u"CmdConfirm2"_s).isVisible());
  QTest::keyClick(&*window_, Qt::Key_Escape);
  loop_.RunFor(1s);
  ASSERT_EQ(desk_->Fades().CrossPan(), kDeckOneAlone);
  Decks().StopDeck(Deck::Two);

  desk_->Automatic().ToggleAutoPlay();
  ASSERT_TRUE(loop_.RunUntil([this] { return desk_->Fades().WalkActive(); }, 90s));
  loop_.RunFor(300ms);
  EXPECT_FALSE(Find<QPushButton>(u"CmdConfirm2"_s).isVisible());
  QTest::keyClick(&*window_, Qt::Key_Escape);
  loop_.RunFor(20s);
  EXPECT_EQ(desk_->Fades().CrossPan(), kDeckTwoAlone);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Playing);
}

}  // namespace
}  // namespace kelvo
