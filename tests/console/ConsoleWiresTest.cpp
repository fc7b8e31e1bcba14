// What the desk decides by itself, as the operator sees it in the joined window.

#include "console/ConsoleOnScreen.h"
#include "console/windows/TimerForm.h"
#include "console/windows/WarningLamp.h"
#include "ui/Panel.h"

#include <QAction>
#include <QCheckBox>
#include <QPainter>
#include <QRadioButton>
#include <QSpinBox>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class ConsoleWires : public ConsoleOnScreen {
 protected:
  void TearDown() override {
    // The colours belong to the process.
    Theme::SetGroupColour(Group::Console, QColor(164, 117, 56));
    Theme::SetGroupColour(Group::Decks, QColor(44, 166, 211));
    Theme::SetGroupColour(Group::Lists, QColor(66, 189, 166));
    Theme::SetGroupColour(Group::Bites, QColor(44, 166, 211));
  }
  QString Mode() { return Find<QLabel>(u"LblMode"_s).text(); }
  /// The ground of a queue row as it is painted, beside its words.
  QColor GroundOf(int row) {
    const QRect place = QueueList().visualRect(QueueList().model()->index(row - 1, TrackColumn));
    return QueueList().viewport()->grab().toImage().pixelColor(place.right() - 2, place.center().y());
  }
  /// The brightest ink of a queue row as it is painted.
  QColor InkOf(int row) {
    const QRect place = QueueList().visualRect(QueueList().model()->index(row - 1, TrackColumn));
    const QImage picture = QueueList().viewport()->grab().toImage();
    QColor brightest = Qt::black;
    const auto light = [](const QColor& colour) { return colour.red() + colour.green() + colour.blue(); };
    for (int x = place.left() + 1; x < place.right(); ++x) {
      for (int y = place.top() + 1; y < place.bottom(); ++y) {
        const QColor here = picture.pixelColor(x, y);
        if (light(here) > light(brightest)) brightest = here;
      }
    }
    return brightest;
  }
  /// The ground of a panel's head as it is painted.
  QColor HeadOf(const QString& name) {
    auto& panel = Find<kelvo::Panel>(name);
    return panel.grab().toImage().pixelColor(panel.width() / 2, panel.HeaderRect().bottom() - 2);
  }
};

TEST_F(ConsoleWires, AShowThatIsTimedBeginsAtItsMinute) {
  OpenWindow();
  EnqueueAll();
  Click(u"CmdSetTimer"_s);
  Find<QSpinBox>(u"TimerMinute"_s).setValue(2);
  auto& armed = Find<QCheckBox>(u"ChkTimerSet"_s);
  QTest::mouseClick(&armed, Qt::LeftButton, {}, QPoint(5, armed.height() / 2));
  loop_.RunFor(2s);
  EXPECT_EQ(window_->windowTitle(), u"AutoPlay Timer On :09:02"_s);
  const auto second = [this] { return loop_.Now().time().minute() * 60 + loop_.Now().time().second(); };
  ASSERT_TRUE(loop_.RunUntil([&] { return Record(Deck::One).State == DeckState::Playing; }, 5min));
  EXPECT_EQ(second() / 60, 2) << "not before it";
  EXPECT_EQ(Find<QPushButton>(u"CmdAutoPlay"_s).text(), u"STOP"_s);
  loop_.RunFor(2s);
  EXPECT_FALSE(armed.isChecked());
  EXPECT_FALSE(window_->windowTitle().startsWith(u"AutoPlay Timer"_s));
}

TEST_F(ConsoleWires, TheModeWordSaysByWhatRuleTheDeskRuns) {
  OpenWindow();
  EnqueueAll();
  Queue().Select(1);
  loop_.RunFor(2s);
  EXPECT_EQ(Mode(), u"AUTOMATIC PLAY"_s);
  const auto runsAs = [this](const QString& option) {
    auto& choice = Find<QAbstractButton>(option);
    QTest::mouseClick(&choice, Qt::LeftButton, {}, QPoint(8, choice.height() / 2));
    Click(u"CmdAutoPlay"_s);
    loop_.RunFor(3s);
    const QString word = Mode();
    Click(u"CmdAutoPlay"_s);
    loop_.RunFor(20s);
    EXPECT_EQ(Mode(), u"AUTOMATIC PLAY"_s);
    return word;
  };
  EXPECT_EQ(runsAs(u"OptKelvo"_s), u"KELVO MODE"_s);
  EXPECT_EQ(runsAs(u"OptJukebox"_s), u"JUKEBOX MODE"_s);
  EXPECT_EQ(runsAs(u"ChkRandom"_s), u"RANDOM"_s);
}

TEST_F(ConsoleWires, TheTitleOfTheWindowNamesTheSession) {
  OpenWindow();
  auto& name = Find<QLineEdit>(u"TxtPlayListName"_s);
  name.selectAll();
  QTest::keyClicks(&name, u"Wedding"_s);
  loop_.RunFor(2s);
  EXPECT_TRUE(window_->windowTitle().contains(u" Console  - Wedding - : Free Memory : / "_s))
      << window_->windowTitle().toStdString();
  EXPECT_TRUE(window_->windowTitle().endsWith(u" K.bytes"_s));
}

TEST_F(ConsoleWires, TheMenusQuitWorksWhileTheDeskIsIdle) {
  OpenWindow();
  EnqueueAll();
  auto& quit = *window_->findChild<QAction*>(u"mnuQuit"_s);
  loop_.RunFor(2s);
  EXPECT_TRUE(quit.isEnabled());
  Load(Deck::One, 1);
  Click(u"CmdMan2"_s);
  loop_.RunFor(2s);
  EXPECT_FALSE(quit.isEnabled());
  EXPECT_EQ(quit.toolTip(), u"Not while deck 1 plays. Closing the window asks at any time"_s);
  Decks().StopDeck(Deck::One);
  loop_.RunFor(2s);
  EXPECT_TRUE(quit.isEnabled());
  Queue().SetName(u"Wedding"_s);
  loop_.RunFor(2s);
  EXPECT_FALSE(quit.isEnabled()) << "a session that has a name goes on";
  EXPECT_EQ(quit.toolTip(),
            u"Not while the queue has a name: Wedding. Closing the window asks at any time"_s);
}

TEST_F(ConsoleWires, TheRowThatAutomaticPlayIsAtBlinks) {
  OpenWindow();
  EnqueueAll();
  Queue().Select(1);
  Click(u"CmdAutoPlay"_s);
  loop_.RunFor(10s);
  const int row = Queue().IndexOf(Record(*Decks().OnAir()).Row);
  ASSERT_GT(row, 0);
  // The selection would lie over it.
  QueueList().clearSelection();
  int lit = 0;
  int changes = 0;
  QColor before = GroundOf(row);
  for (int beat = 0; beat < 10; ++beat) {
    loop_.RunFor(1s);
    const QColor ground = GroundOf(row);
    QueueList().clearSelection();
    changes += ground != before ? 1 : 0;
    lit += ground == QColor(0x1E, 0x5A, 0x46) ? 1 : 0;
    before = ground;
  }
  EXPECT_EQ(lit, 5);
  EXPECT_EQ(changes, 10);
  Click(u"CmdAutoPlay"_s);
  loop_.RunFor(2s);
  QueueList().clearSelection();
  EXPECT_NE(GroundOf(row), QColor(0x1E, 0x5A, 0x46));
}

TEST_F(ConsoleWires, TheColourOfAQueueRowTellsWhatBecameOfItsTrack) {
  OpenWindow();
  EnqueueAll();
  QueueEntry wish = Queue().Row(1);
  wish.requestText = u"Request From: Ann"_s;
  wish.requests = 1;
  Queue().AppendRow(wish, 0);
  const auto hue = [this](int row) {
    QueueList().clearSelection();
    return InkOf(row).hslHue();
  };
  const auto colourless = [this](int row) {
    QueueList().clearSelection();
    const QColor ink = InkOf(row);
    return std::max({ink.red(), ink.green(), ink.blue()}) - std::min({ink.red(), ink.green(), ink.blue()}) <
           24;
  };
  EXPECT_TRUE(colourless(1)) << "not yet played";
  const QColor plain = InkOf(1);
  EXPECT_NEAR(hue(4), 60, 8) << "a request is yellow";
  Load(Deck::One, 1);
  Click(u"CmdMan2"_s);
  loop_.RunFor(5s);
  EXPECT_NEAR(hue(1), 300, 8) << "what plays is magenta";
  Load(Deck::Two, 2);
  Click(u"CmdMan3"_s);
  loop_.RunFor(5s);
  Click(u"CmdDeckStop2"_s);
  Click(u"CmdConfirmAction"_s);
  loop_.RunFor(1s);
  EXPECT_NEAR(hue(2), 120, 8) << "what was stopped is green";
  Queue().Click(3);
  Click(u"CmdLoad2"_s);
  Click(u"CmdConfirmAction"_s);
  loop_.RunFor(1s);
  ASSERT_EQ(Record(Deck::One).Title, u"Gamma"_s);
  EXPECT_TRUE(colourless(1)) << "what was loaded over is white";
  EXPECT_GT(InkOf(1).lightness(), plain.lightness());
  Click(u"CmdAutoPlay"_s);
  EXPECT_NEAR(hue(2), 180, 8) << "automatic play begins anew with cyan";
}

TEST_F(ConsoleWires, EachGroupOfPanelsHasTheColourOfItsSetting) {
  Set(u"ConBackCol"_s, u"200,10,20"_s);
  Set(u"DeckBackCol"_s, u"30,200,40"_s);
  Set(u"SlistsBackCol"_s, u"50,60,200"_s);
  Set(u"SbitesBackCol"_s, u"210,200,70"_s);
  OpenWindow();
  for (const QString& name : {u"AutoFade"_s, u"AutoPlay"_s})
    EXPECT_EQ(HeadOf(name), QColor(200, 10, 20)) << name.toStdString();
  for (const QString& name : {u"Deck1"_s, u"Deck2"_s})
    EXPECT_EQ(HeadOf(name), QColor(30, 200, 40)) << name.toStdString();
  for (const QString& name : {u"Library"_s, u"PlayQueue"_s})
    EXPECT_EQ(HeadOf(name), QColor(50, 60, 200)) << name.toStdString();
  EXPECT_EQ(Theme::GroupColour(Group::Bites), QColor(210, 200, 70));
  Set(u"DeckBackCol"_s, u"1,2"_s);
  Set(u"ConBackCol"_s, u"90,90,90"_s);
  EXPECT_EQ(HeadOf(u"Deck1"_s), QColor(30, 200, 40)) << "no colour: it keeps the one it has";
  EXPECT_EQ(HeadOf(u"AutoFade"_s), QColor(90, 90, 90));
}

TEST_F(ConsoleWires, ADeckThatRunsOutIsWarnedOfByLampAndSound) {
  const QString sound = database_.tree.Write(u"warn.mp3"_s, "sound");
  audio_.SetDuration(sound, 1);
  Set(u"AudioWarningFilePath"_s, sound);
  Set(u"AudioWarnings"_s, u"1"_s);
  OpenWindow();
  EnqueueAll();
  Load(Deck::Two, 1);
  Click(u"CmdMan3"_s);
  auto& lamp = Find<WarningLamp>(u"WarningLamp2"_s);
  const auto sounds = [&] {
    return std::any_of(audio_.players.begin(), audio_.players.end(), [&](const FaultyPlayer* each) {
      return each->FileName() == sound && each->State() == PlayState::Playing;
    });
  };
  const auto red = [&lamp] {
    const QColor glass = lamp.grab().toImage().pixelColor(lamp.rect().center());
    return glass.red() > 200 && glass.red() > glass.green() + 60;
  };
  loop_.RunFor(45s);
  EXPECT_FALSE(red());
  EXPECT_FALSE(sounds());
  ASSERT_TRUE(loop_.RunUntil([&] { return lamp.Red(); }, 10s));
  EXPECT_LT(Record(Deck::Two).RemainSeconds, 10);
  EXPECT_TRUE(red());
  EXPECT_FALSE(Find<WarningLamp>(u"WarningLamp1"_s).Red());
  ASSERT_TRUE(loop_.RunUntil([&] { return sounds(); }, 3s));
  ASSERT_TRUE(loop_.RunUntil([&] { return !lamp.Red(); }, 2s)) << "it blinks";
  EXPECT_FALSE(red());
}

TEST_F(ConsoleWires, AListThatHoldsOnlyAPartSaysSoAndBlinks) {
  database_.tree.MakeFolder(Paths::FolderName(Paths::Categories) + u"/Rock"_s);
  OpenWindow();
  const auto shown = [this] {
    int count = 0;
    const QList<QLabel*> labels = window_->findChildren<QLabel*>();
    for (const QLabel* label : labels)
      count += label->text() == u"FILTERED LIST"_s && label->isVisible() ? 1 : 0;
    return count;
  };
  loop_.RunFor(2s);
  EXPECT_EQ(shown(), 0);
  DoubleClick(Find<ListTable>(u"GenreList"_s), 0);
  loop_.RunFor(500ms);
  ASSERT_TRUE(loop_.RunUntil([&] { return shown() == 1; }, 2s)) << "the artists of the genre";
  ASSERT_TRUE(loop_.RunUntil([&] { return shown() == 0; }, 2s));
  ASSERT_TRUE(loop_.RunUntil([&] { return shown() == 1; }, 2s));
  Click(u"CmdAllArtists"_s);
  loop_.RunFor(1s);
  EXPECT_EQ(shown(), 0);
  loop_.RunFor(1s);
  EXPECT_EQ(shown(), 0) << "all artists again";
}

}  // namespace
