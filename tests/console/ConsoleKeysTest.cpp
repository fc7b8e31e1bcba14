// Whom a key belongs to: the desk, a list, or a box that takes text.

#include "console/ConsoleOnScreen.h"
#include "console/windows/TimerForm.h"
#include "ui/Fader.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QSpinBox>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class ConsoleKeys : public ConsoleOnScreen {
 protected:
  /// All tracks in the queue, the first one on air in deck 1, the second one loaded in deck 2.
  void OpenOnAir() {
    OpenWindow();
    EnqueueAll();
    Load(Deck::One, 1);
    Load(Deck::Two, 2);
    Key(Qt::Key_F7);
    loop_.RunFor(10s);
    ASSERT_TRUE(Record(Deck::One).Live());
  }
  /// To whatever has the keyboard, as from the window system.
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(window_->windowHandle(), key, modifiers);
  }
  void Type(const QString& letters) {
    for (const QChar letter : letters) QTest::keyClick(window_->windowHandle(), letter.toLatin1());
  }
  void AskToReplace() {
    Queue().Click(3);
    Key(Qt::Key_1, Qt::ControlModifier);
    ASSERT_TRUE(Panel().Visible());
  }
  QLineEdit& Box() { return Find<QLineEdit>(u"TrackFilter"_s); }
};

TEST_F(ConsoleKeys, AFadeAndAQuestionLeaveTheKeyboardAndWhatIsTypedWhereTheyAre) {
  OpenOnAir();
  EXPECT_TRUE(Box().hasFocus());
  Key(Qt::Key_F10);
  loop_.RunFor(2s);
  ASSERT_TRUE(desk_->Fades().WalkActive());
  EXPECT_TRUE(Box().hasFocus());
  Type(u"be"_s);
  EXPECT_EQ(Box().text(), u"be"_s);
  EXPECT_EQ(Library().model()->rowCount(), 1) << "the list follows";
  loop_.RunFor(10s);
  Type(u"t"_s);
  EXPECT_EQ(Box().text(), u"bet"_s);

  QueueList().setFocus();
  Key(Qt::Key_F7);
  loop_.RunFor(10s);
  EXPECT_TRUE(QueueList().hasFocus());
  AskToReplace();
  Key(Qt::Key_Escape);
  EXPECT_TRUE(QueueList().hasFocus());
  AskToReplace();
  loop_.RunFor(3100ms);
  EXPECT_TRUE(QueueList().hasFocus()) << "also from a question that nobody answered";
}

TEST_F(ConsoleKeys, EnterAnswersTheDeskAndNotTheBoxThatIsTypedInto) {
  OpenOnAir();
  Type(u"a"_s);
  AskToReplace();
  Type(u"l"_s);
  EXPECT_EQ(Box().text(), u"al"_s);
  Key(Qt::Key_Return);
  EXPECT_FALSE(Panel().Visible());
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Title, u"Gamma"_s);
  EXPECT_TRUE(Box().hasFocus());
}

TEST_F(ConsoleKeys, WhileAFadeRunsTheListsRefuseWhatChangesTheQueueAndSayWhy) {
  AddTrack(u"zeta"_s, 60, 60);
  OpenWindow();
  Enqueue({ToMref(1), ToMref(2), ToMref(3)});
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  Key(Qt::Key_F7);
  loop_.RunFor(10s);
  Type(u"zet"_s);
  Queue().Click(2);
  auto& down = Find<QPushButton>(u"CmdQueDown"_s);
  down.setFocus();
  Key(Qt::Key_F10);
  loop_.RunFor(2s);
  ASSERT_TRUE(desk_->Fades().SectionsDisabled());
  EXPECT_FALSE(down.isEnabled());
  EXPECT_TRUE(down.toolTip().endsWith(u"\nA fade runs"_s)) << down.toolTip().toStdString();
  EXPECT_EQ(window_->focusWidget(), nullptr) << "no key works the button beside it";
  const QStringList before = Column(TrackColumn);
  DoubleClick(Library(), 0);
  QTest::mouseClick(QueueList().horizontalHeader()->viewport(), Qt::LeftButton, {}, QPoint(10, 5));
  const std::unique_ptr<QMimeData> row(QueueList().model()->mimeData({QueueList().model()->index(0, 0)}));
  static_cast<void>(QueueList().model()->dropMimeData(row.get(), Qt::MoveAction, 3, 0, {}));
  loop_.RunFor(50ms);
  ASSERT_TRUE(desk_->Fades().SectionsDisabled());
  EXPECT_EQ(Column(TrackColumn), before);
  EXPECT_EQ(Library().selectionModel()->selectedRows().size(), 1) << "what was refused stays selected";
  EXPECT_EQ(QueueList().model()->headerData(BpmColumn, Qt::Horizontal, Qt::ToolTipRole),
            u"Bpm\nA fade runs"_s);
  EXPECT_EQ(desk_->StatusLine(), u"Tracks Not Added : A fade runs"_s);
  EXPECT_FALSE(Find<QPushButton>(u"CmdAddToQueue"_s).isEnabled());
  loop_.RunFor(10s);
  EXPECT_TRUE(down.isEnabled());
  EXPECT_FALSE(down.toolTip().contains(u'\n'));
  DoubleClick(Library(), 0);
  EXPECT_EQ(Queue().Count(), 4);
}

TEST_F(ConsoleKeys, AButtonThatWasOffForATimeHasTheKeyboardAgain) {
  OpenOnAir();
  Queue().Click(2);
  auto& cut = Find<QPushButton>(u"CmdQueCut"_s);
  cut.setFocus();
  Key(Qt::Key_F10);
  loop_.RunFor(2s);
  ASSERT_FALSE(cut.isEnabled());
  loop_.RunFor(10s);
  EXPECT_TRUE(cut.hasFocus());
}

TEST_F(ConsoleKeys, AHandThatWentElsewhereDuringAFadeStaysThere) {
  OpenOnAir();
  Key(Qt::Key_F10);
  loop_.RunFor(2s);
  auto& text = Find<QPlainTextEdit>(u"TrackInfoText1"_s);
  QTest::mouseClick(text.viewport(), Qt::LeftButton);
  ASSERT_TRUE(text.hasFocus());
  loop_.RunFor(10s);
  EXPECT_TRUE(text.hasFocus());
}

TEST_F(ConsoleKeys, AQuestionIsAnsweredByEnterAndEscapeAndTheSpaceBarSpeaksMeanwhile) {
  OpenOnAir();
  QueueList().setFocus();
  AskToReplace();
  QTest::keyPress(window_->windowHandle(), Qt::Key_Space);
  loop_.RunFor(500ms);
  EXPECT_TRUE(Panel().Visible());
  EXPECT_EQ(Record(Deck::One).Loss, 1000);
  Key(Qt::Key_Escape);
  QTest::keyRelease(window_->windowHandle(), Qt::Key_Space);
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Loss, 0) << "let go after the answer";
  QTest::keyPress(window_->windowHandle(), Qt::Key_Space);
  loop_.RunFor(500ms);
  AskToReplace();
  QTest::keyRelease(window_->windowHandle(), Qt::Key_Space);
  loop_.RunFor(1s);
  EXPECT_TRUE(Panel().Visible());
  EXPECT_EQ(Record(Deck::One).Loss, 0) << "let go while the question stands";
  Key(Qt::Key_Escape);
  EXPECT_FALSE(Panel().Visible());
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Title, u"Alpha"_s);

  // The key that was held since before the question is no answer to it.
  AskToReplace();
  QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
  QApplication::sendEvent(&*window_, &repeated);
  EXPECT_TRUE(Panel().Visible());
  Key(Qt::Key_Return);
  EXPECT_FALSE(Panel().Visible());
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Title, u"Gamma"_s);
  EXPECT_EQ(Queue().Count(), 3) << "the lists had no part in it";
}

TEST_F(ConsoleKeys, TheSpaceBarSpeaksFromAnEmptyFilterBoxAndTypesInOneWithWords) {
  OpenOnAir();
  ASSERT_TRUE(Box().hasFocus());
  QTest::keyPress(window_->windowHandle(), Qt::Key_Space);
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Loss, 1000);
  QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, u" "_s, true);
  QApplication::sendEvent(&Box(), &repeated);
  QTest::keyRelease(window_->windowHandle(), Qt::Key_Space);
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Loss, 0);
  EXPECT_EQ(Box().text(), QString());
  Type(u"a "_s);
  loop_.RunFor(1s);
  EXPECT_EQ(Box().text(), u"a "_s);
  EXPECT_EQ(Record(Deck::One).Loss, 0);
}

TEST_F(ConsoleKeys, TheSpaceBarSpeaksWhileAStartCanBeTakenBack) {
  OpenOnAir();
  QTest::keyPress(window_->windowHandle(), Qt::Key_F12);
  loop_.RunFor(500ms);
  ASSERT_TRUE(Find<QPushButton>(u"CmdConfirm2"_s).isVisible());
  QTest::keyPress(window_->windowHandle(), Qt::Key_Space);
  loop_.RunFor(1s);
  ASSERT_TRUE(Find<QPushButton>(u"CmdConfirm2"_s).isVisible()) << "the space bar presses no button";
  EXPECT_EQ(Record(Deck::One).Loss, 1000);
  EXPECT_EQ(Record(Deck::Two).Loss, 1000);
  QTest::keyRelease(window_->windowHandle(), Qt::Key_Space);
  loop_.RunFor(1s);
  EXPECT_LE(Record(Deck::One).Loss, 10);
  EXPECT_EQ(Record(Deck::Two).Loss, 0);
  QTest::keyRelease(window_->windowHandle(), Qt::Key_F12);
}

TEST_F(ConsoleKeys, AStartCanBeTakenBackForTwoSeconds) {
  OpenOnAir();
  const QWidget& cancel = Find<QPushButton>(u"CmdConfirm2"_s);
  QTest::keyPress(window_->windowHandle(), Qt::Key_F12);
  ASSERT_TRUE(loop_.RunUntil([&] { return cancel.isVisible(); }, 1s));
  loop_.RunFor(1990ms);
  EXPECT_TRUE(cancel.isVisible());
  loop_.RunFor(20ms);
  EXPECT_FALSE(cancel.isVisible());
  QTest::keyRelease(window_->windowHandle(), Qt::Key_F12);
}

TEST_F(ConsoleKeys, AHandOnTheLevelUnderTheVoiceSetsWhereTheDeckComesBackTo) {
  OpenOnAir();
  auto& level = Find<Fader>(u"SldVolLeft"_s);
  const DeckRecord& deck = Record(Deck::One);
  QTest::keyPress(window_->windowHandle(), Qt::Key_Space);
  loop_.RunFor(1s);
  ASSERT_EQ(deck.Loss, 1000);
  EXPECT_EQ(level.value(), 0);
  QWheelEvent turn(level.rect().center(), level.mapToGlobal(level.rect().center()), {}, {0, -120},
                   Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&level, &turn);
  EXPECT_EQ(deck.Level, level.singleStep());
  EXPECT_EQ(deck.Loss, 1000) << "the voice still has it";

  QPoint spot = level.HandleCentre();
  const auto drag = [&](int pixels) {
    spot += QPoint(0, pixels);
    QTest::mouseMove(&level, spot);
  };
  QTest::mousePress(&level, Qt::LeftButton, {}, spot);
  drag(4);
  drag(4);
  const int held = deck.Level;
  EXPECT_GT(held, level.singleStep());
  EXPECT_LT(held, 500);
  EXPECT_EQ(deck.Loss, 1000);
  QTest::keyRelease(window_->windowHandle(), Qt::Key_Space);
  for (int before = deck.Loss; deck.Loss > held; before = deck.Loss) {
    ASSERT_TRUE(loop_.RunUntil([&] { return deck.Loss != before; }, 1s));
    ASSERT_GE(deck.Loss, before - 60) << "it comes back step by step";
  }
  EXPECT_EQ(deck.Loss, held);
  drag(1);
  EXPECT_NEAR(deck.Loss, held, 2000 / level.height() + 25) << "and goes on under the hand";
  QTest::mouseRelease(&level, Qt::LeftButton, {}, spot);
  loop_.RunFor(1s);
  EXPECT_EQ(deck.Loss, deck.Level);
  EXPECT_EQ(level.value(), deck.Level);
  QTest::mouseDClick(&level, Qt::LeftButton, {}, level.HandleCentre());
  EXPECT_EQ(deck.Loss, 0) << "a double click: full";
}

TEST_F(ConsoleKeys, TheNumberPadWalksTheSliderByItsDigitsAndMovesInListsByItsArrows) {
  OpenOnAir();
  auto& genres = Find<ListTable>(u"GenreList"_s);
  genres.setFocus();
  Key(Qt::Key_Left, Qt::KeypadModifier);
  Key(Qt::Key_Right, Qt::KeypadModifier);
  loop_.RunFor(1s);
  EXPECT_FALSE(desk_->Fades().WalkActive());
  EXPECT_EQ(desk_->Fades().CrossPan(), -200);

  QTest::keyClicks(&Box(), u"x"_s);
  Box().setFocus();
  Key(Qt::Key_Left, Qt::KeypadModifier);
  EXPECT_EQ(Box().cursorPosition(), 0);
  QTest::keyClick(window_->windowHandle(), '6', Qt::KeypadModifier);
  EXPECT_EQ(Box().text(), u"6x"_s);
  genres.setFocus();
  QTest::keyClick(window_->windowHandle(), '6', Qt::KeypadModifier);
  loop_.RunFor(10s);
  EXPECT_EQ(desk_->Fades().CrossPan(), 200);
}

TEST_F(ConsoleKeys, AutomaticPlayIsPausedLeftToChanceAndTimedByKeys) {
  OpenWindow();
  EnqueueAll();
  Key(Qt::Key_R, Qt::ControlModifier);
  EXPECT_TRUE(desk_->Automatic().RandomTicked());
  Key(Qt::Key_R, Qt::ControlModifier);
  EXPECT_FALSE(desk_->Automatic().RandomTicked());
  Key(Qt::Key_P, Qt::ControlModifier);
  loop_.RunFor(2s);
  Key(Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_TRUE(desk_->Automatic().PauseAtEnd());
  Key(Qt::Key_P, Qt::ControlModifier);
  Key(Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
  auto& form = Find<TimerForm>(u"FrmTimer"_s);
  EXPECT_TRUE(form.isVisible());
  for (const auto& [name, key] :
       {std::pair(u"CmdRoboPause"_s, u"Ctrl+Shift+P"_s), std::pair(u"ChkRandom"_s, u"Ctrl+R"_s),
        std::pair(u"CmdSetTimer"_s, u"Ctrl+Shift+T"_s)}) {
    EXPECT_TRUE(Find<QAbstractButton>(name).toolTip().contains(key)) << name.toStdString();
  }
}

TEST_F(ConsoleKeys, AHalfTypedHourStartsNoShow) {
  OpenWindow();
  EnqueueAll();
  loop_.RunFor(5min + 30s);
  Click(u"CmdSetTimer"_s);
  auto& hour = Find<QSpinBox>(u"TimerHour"_s);
  auto& minute = Find<QSpinBox>(u"TimerMinute"_s);
  auto& armed = Find<QCheckBox>(u"ChkTimerSet"_s);
  EXPECT_EQ(hour.value(), 9);
  EXPECT_EQ(minute.value(), 5) << "the present time";
  const auto type = [&hour](const QString& digits) {
    hour.setFocus();
    hour.selectAll();
    QTest::keyClicks(&hour, digits);
  };
  const AutoPlay& automatic = desk_->Automatic();
  type(u"22"_s);
  QTest::keyClick(&hour, Qt::Key_Return);
  EXPECT_TRUE(Find<TimerForm>(u"FrmTimer"_s).isVisible());
  EXPECT_FALSE(automatic.Timer().TimerArmed);
  QTest::mouseClick(&armed, Qt::LeftButton, {}, QPoint(5, armed.height() / 2));
  EXPECT_EQ(automatic.Timer().TimerHour, 22);
  type(u"2"_s);
  loop_.RunFor(3s);
  EXPECT_TRUE(automatic.Timer().TimerArmed);
  EXPECT_FALSE(desk_->State().AutoPlayOn);
  QTest::keyClicks(&hour, u"3"_s);
  QTest::keyClick(&hour, Qt::Key_Return);
  EXPECT_EQ(automatic.Timer().TimerHour, 23);
  QTest::keyClick(&minute, Qt::Key_Up);
  EXPECT_EQ(automatic.Timer().TimerMinute, 6);
  QTest::mouseClick(&armed, Qt::LeftButton, {}, QPoint(5, armed.height() / 2));
  EXPECT_FALSE(automatic.Timer().TimerArmed);
}

TEST_F(ConsoleKeys, TheWheelTakesTheSliderAsAHandDoes) {
  OpenOnAir();
  Key(Qt::Key_F10);
  loop_.RunFor(10s);
  ASSERT_EQ(desk_->Fades().Record().Kind, TransitionKind::Pan);
  auto& slider = Find<QWidget>(u"SldCrossPan"_s);
  const QPointF middle = slider.rect().center();
  for (int notch = 0; notch < 60; ++notch) {
    QWheelEvent turn(middle, slider.mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QApplication::sendEvent(&slider, &turn);
  }
  EXPECT_LT(desk_->Fades().CrossPan(), 0);
  EXPECT_EQ(Record(Deck::One).Loss, 0);
  EXPECT_EQ(Record(Deck::Two).Loss, -10 * desk_->Fades().CrossPan()) << "the plain law";
}

}  // namespace
