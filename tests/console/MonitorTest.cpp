#include "console/ConsoleOnScreen.h"

using namespace kelvo;
using namespace kelvo::testing;

namespace {

/// The desk on its screen, with a second output chosen for the monitor.
class TheMonitor : public ConsoleOnScreen {
 protected:
  void OpenDesk() {
    Set(u"PFLDeviceName"_s, u"Headphones"_s);
    OpenWindow();
    EnqueueAll();
    Load(Deck::One, 1);
    Load(Deck::Two, 3);
  }
  Monitor& Pfl() { return desk_->Pfl(); }
  QWidget& Panel() { return Find<QWidget>(u"Monitor"_s); }
  void Press(const QString& name) {
    Click(name);
    loop_.RunFor(200ms);
  }
  /// Holds a button down for so long.
  void Hold(const QString& name, Nanoseconds time) {
    auto& button = Find<QPushButton>(name);
    QTest::mousePress(&button, Qt::LeftButton);
    loop_.RunFor(time);
    QTest::mouseRelease(&button, Qt::LeftButton);
  }
};

TEST_F(TheMonitor, OpensWhatADeckHoldsAndTheDeckTakesItsPlaceFromThere) {
  OpenDesk();
  EXPECT_FALSE(Panel().isVisible());
  Press(u"CmdPfl1"_s);
  ASSERT_TRUE(Panel().isVisible());
  EXPECT_TRUE(Find<QLabel>(u"LblPflTitle"_s).text().startsWith(u"PFL DECK 1"_s));
  EXPECT_FALSE(Find<QLabel>(u"LblPflTrouble"_s).isVisible());
  EXPECT_TRUE(Pfl().Running());
  EXPECT_EQ(Player(Deck::One).State(), PlayState::Stopped) << "the deck itself is not heard";
  loop_.RunFor(5s);
  Press(u"CmdPflPause"_s);
  const int place = Pfl().Position();
  EXPECT_NEAR(place, 5, 1);
  loop_.RunFor(5s);
  EXPECT_EQ(Pfl().Position(), place);
  Press(u"CmdPflSync"_s);
  EXPECT_FALSE(Panel().isVisible());
  EXPECT_NEAR(Player(Deck::One).CurrentPosition(), place, 1);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Loaded);

  Press(u"CmdPfl2"_s);
  EXPECT_TRUE(Find<QLabel>(u"LblPflTitle"_s).text().startsWith(u"PFL 2"_s));
  Pfl().Seek(30);
  Press(u"CmdSyncStart"_s);
  ASSERT_TRUE(loop_.RunUntil([this] { return Record(Deck::Two).State == DeckState::Playing; }, 5s));
  EXPECT_GE(Player(Deck::Two).CurrentPosition(), 30);
  EXPECT_LT(Player(Deck::Two).CurrentPosition(), 33);
}

TEST_F(TheMonitor, ADeckWithAnotherTrackMeanwhileIsLeftAlone) {
  OpenDesk();
  Press(u"CmdPfl1"_s);
  Load(Deck::One, 2);
  Press(u"CmdSyncStart"_s);
  EXPECT_TRUE(Panel().isVisible());
  EXPECT_TRUE(Find<QLabel>(u"LblPflTitle"_s).text().startsWith(u"Track No Longer In Deck !"_s));
  loop_.RunFor(3s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Loaded) << "not started";
  EXPECT_EQ(Player(Deck::One).CurrentPosition(), 0);
  Press(u"CmdPflClose"_s);
  EXPECT_FALSE(Panel().isVisible());
}

TEST_F(TheMonitor, AHeldNudgeGathersSpeedAndStaysInTheTrack) {
  OpenDesk();
  Press(u"CmdPfl2"_s);
  Press(u"CmdPflPause"_s);
  Pfl().Seek(0);
  Hold(u"CmdNudgeBack"_s, 500ms);
  EXPECT_EQ(Pfl().Position(), 0) << "at the start it stays";
  Hold(u"CmdNudgeForward"_s, 100ms);
  const double slow = Pfl().Position();
  Pfl().Seek(0);
  Hold(u"CmdNudgeForward"_s, 300ms);
  EXPECT_GT(Pfl().Position(), 3 * slow);
  const int there = Pfl().Position();
  loop_.RunFor(1s);
  EXPECT_EQ(Pfl().Position(), there) << "let go, it stays";
  Hold(u"CmdNudgeForward"_s, 5s);
  EXPECT_FALSE(Panel().isVisible()) << "at its end the monitor closes";
}

TEST_F(TheMonitor, ListensToTheRowUnderTheCursorByKeyAndRunsOutByItself) {
  OpenDesk();
  Find<QLineEdit>(u"TrackFilter"_s).setText(u"gamma"_s);
  loop_.RunFor(100ms);
  Library().setFocus();
  Library().setCurrentIndex(Library().model()->index(0, 0));
  QTest::keyClick(&Library(), Qt::Key_M, Qt::ControlModifier);
  loop_.RunFor(200ms);
  ASSERT_TRUE(Pfl().Running());
  EXPECT_EQ(Pfl().Duration(), 90);
  EXPECT_FALSE(Find<QPushButton>(u"CmdPflSync"_s).isEnabled()) << "it is in no deck";
  loop_.RunFor(92s);
  EXPECT_FALSE(Panel().isVisible());
}

TEST_F(TheMonitor, AMissingDeviceIsToldAndWithoutASecondOneThereIsNoMonitor) {
  Set(u"PFLDeviceName"_s, u"Old Card"_s);
  OpenWindow();
  EnqueueAll();
  Press(u"CmdPfl1"_s);
  EXPECT_FALSE(Panel().isVisible()) << "the deck is empty";
  Load(Deck::One, 1);
  Press(u"CmdPfl1"_s);
  EXPECT_TRUE(Panel().isVisible());
  EXPECT_EQ(Find<QLabel>(u"LblPflTrouble"_s).text(), u"Old Card isn't there: nothing is heard"_s);
  Pfl().Seek(20);
  Pfl().SetDevice(u"Headphones"_s);
  loop_.RunFor(200ms);
  EXPECT_TRUE(Pfl().Running());
  EXPECT_EQ(Pfl().Position(), 20) << "it goes on there";
  EXPECT_FALSE(Find<QLabel>(u"LblPflTrouble"_s).isVisible());
  Press(u"CmdPflClose"_s);
  audio_.outputNames = {u"Main"_s};
  Press(u"CmdPfl1"_s);
  EXPECT_FALSE(Panel().isVisible());
}

TEST_F(TheMonitor, KeepsSilentWhereTheProgrammeIsHeard) {
  OpenDesk();
  audio_.outputNames = {u"Main"_s, u"Headphones"_s, u"Booth"_s};
  Press(u"CmdPfl1"_s);
  auto& devices = Find<QComboBox>(u"CboPflDevice"_s);
  EXPECT_EQ(devices.findText(u"Main"_s), -1) << "the programme's own is no choice";
  EXPECT_NE(devices.findText(u"Booth"_s), -1);
  auto& trouble = Find<QLabel>(u"LblPflTrouble"_s);
  EXPECT_FALSE(trouble.isVisible());
  // The main device is pulled, and the programme goes on on the headphones.
  audio_.outputNames = {u"Headphones"_s, u"Booth"_s};
  audio_.SetDefaultOutputStatus({OutputStatus::Kind::OnDefault, u"Main"_s});
  loop_.RunFor(200ms);
  EXPECT_TRUE(Pfl().HeldBack());
  EXPECT_EQ(trouble.text(), u"Headphones plays the programme: nothing is heard"_s);
  EXPECT_TRUE(trouble.isVisible());
  audio_.outputNames = {u"Main"_s, u"Headphones"_s, u"Booth"_s};
  audio_.SetDefaultOutputStatus({OutputStatus::Kind::OnAir, u"Main"_s});
  loop_.RunFor(200ms);
  EXPECT_FALSE(Pfl().HeldBack());
  EXPECT_FALSE(trouble.isVisible());
}

TEST_F(TheMonitor, IsNotHeardOnTheTwinOfItsDevice) {
  OpenDesk();
  audio_.outputNames = {u"Main"_s, u"Headphones"_s, u"Headphones (2)"_s};
  audio_.outputIds = {{u"Headphones"_s, u"usb-1"_s}, {u"Headphones (2)"_s, u"usb-2"_s}};
  Press(u"CmdPfl1"_s);
  Pfl().SetDevice(u"Headphones (2)"_s);
  loop_.RunFor(200ms);
  EXPECT_FALSE(Pfl().DeviceMissing());
  // The other way round, as when only one of them is there at the start.
  audio_.outputNames = {u"Main"_s, u"Headphones (2)"_s};
  audio_.outputIds = {{u"Headphones (2)"_s, u"usb-1"_s}};
  loop_.RunFor(200ms);
  EXPECT_TRUE(Pfl().DeviceMissing());
  EXPECT_TRUE(Find<QLabel>(u"LblPflTrouble"_s).isVisible());
  EXPECT_EQ(Find<QComboBox>(u"CboPflDevice"_s).currentText(), u"Headphones (2) (not there)"_s);
  audio_.outputNames = {u"Main"_s, u"Headphones"_s};
  audio_.outputIds = {{u"Headphones"_s, u"usb-2"_s}};
  loop_.RunFor(200ms);
  EXPECT_FALSE(Pfl().DeviceMissing());
  EXPECT_EQ(Pfl().Device(), u"Headphones"_s);
}

TEST_F(TheMonitor, LeavesTheCommandsOfASmallScreenInSight) {
  OpenDesk();
  Press(u"CmdPfl1"_s);
  Resize(1024, 680);
  EXPECT_LE(window_->minimumSizeHint().width(), 1024);
  EXPECT_LE(window_->minimumSizeHint().height(), 680);
  for (const QPushButton* button : window_->findChildren<QPushButton*>()) {
    if (!button->isVisible()) continue;
    EXPECT_GE(button->width(), button->fontMetrics().horizontalAdvance(button->text()))
        << button->objectName().toStdString();
  }
  for (const QString& name : {u"CmdDeckLoad1"_s, u"CmdDeckStart1"_s, u"CmdDeckStop1"_s})
    EXPECT_GE(Find<QPushButton>(name).width(), Find<QPushButton>(name).minimumSizeHint().width());
}

}  // namespace
