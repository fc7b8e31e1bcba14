// The desk without a mouse: what Tab reaches, what Enter does there, and where the keyboard is after a click.

#include "console/ConsoleOnScreen.h"
#include "ui/Fader.h"
#include "ui/LetterBox.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QHeaderView>
#include <QRadioButton>
#include <QSignalSpy>
#include <QToolButton>

#include <gtest/gtest.h>

#include <set>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class KeyboardAlone : public ConsoleOnScreen {
 protected:
  /// All tracks in the queue, the first one on air in deck 1, the second one loaded in deck 2.
  void OpenOnAir() {
    OpenWindow();
    EnqueueAll();
    Load(Deck::One, 1);
    Load(Deck::Two, 2);
    Decks().ManualStart(Deck::One);
    loop_.RunFor(2s);
    ASSERT_TRUE(Record(Deck::One).Live());
  }
  /// To whatever has the keyboard, as from the window system.
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(window_->windowHandle(), key, modifiers);
    loop_.RunFor(10ms);
  }
  /// As often as it takes to come to the control of this name.
  void TabTo(const QString& name) {
    QWidget& wanted = Find<QWidget>(name);
    for (int stop = 0; stop < 100 && !wanted.hasFocus(); ++stop)
      QTest::keyClick(window_->windowHandle(), Qt::Key_Tab);
    ASSERT_TRUE(wanted.hasFocus()) << name.toStdString();
  }
  QLineEdit& Box() { return Find<QLineEdit>(u"TrackFilter"_s); }
};

TEST_F(KeyboardAlone, TabReachesWhatHasNoKeyOfItsOwnInTheOrderInWhichItIsRead) {
  OpenOnAir();
  QStringList stops;
  QWidget* const first = QApplication::focusWidget();
  do {
    stops.append(QApplication::focusWidget()->objectName());
    QTest::keyClick(window_->windowHandle(), Qt::Key_Tab);
  } while (QApplication::focusWidget() != first && stops.size() < 100);
  qsizetype before = -1;
  for (const QString& name : {u"TrackFilter"_s,         u"TrackListHead"_s,      u"TrackList"_s,
                              u"CmdSelectAll"_s,        u"CmdDeckStop1"_s,       u"SldLevel1"_s,
                              u"CmdDeckSkipToStart2"_s, u"CmdDeckRewind2"_s,     u"CmdDeckForward2"_s,
                              u"CmdDeckSkipToEnd2"_s,   u"SldLevel2"_s,          u"SldBetweenDecks"_s,
                              u"SldFadeSpeed"_s,        u"SldFadeOutPosition"_s, u"TxtPlayListName"_s,
                              u"CmdTimings"_s,          u"PlayQueueListHead"_s,  u"PlayQueueList"_s,
                              u"CmdQueCut"_s,           u"SldSpeakDepth"_s,      u"SldSpeakSpeed"_s,
                              u"CmdAutoPlay"_s,         u"OptKelvo"_s,           u"ChkRandom"_s,
                              u"CmdSetTimer"_s,         u"GenreList"_s}) {
    // Round and round: it began in the middle of the desk.
    const qsizetype here = stops.indexOf(name);
    EXPECT_GT(here, before) << name.toStdString();
    before = here;
  }
  EXPECT_EQ(std::set<QString>(stops.begin(), stops.end()).size(), static_cast<std::size_t>(stops.size()));
}

TEST_F(KeyboardAlone, EnterPressesWhatTheTabCameTo) {
  OpenOnAir();
  Queue().Click(3);
  TabTo(u"CmdQueCut"_s);
  Key(Qt::Key_Return);
  EXPECT_EQ(Queue().Count(), 2);
  TabTo(u"ChkRandom"_s);
  Key(Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_TRUE(desk_->Automatic().RandomTicked());
  auto& jukebox = Find<QRadioButton>(u"OptJukebox"_s);
  jukebox.setFocus();
  Key(Qt::Key_Return);
  EXPECT_EQ(desk_->Automatic().Mode(), AutoMode::Jukebox);
  auto& letters = Find<LetterBox>(u"CboArtistLetter"_s);
  letters.setFocus();
  Key(Qt::Key_Return);
  EXPECT_TRUE(letters.view()->isVisible());
  letters.hidePopup();

  // A finger that stays on the key has pressed once.
  TabTo(u"ChkRandom"_s);
  QTest::keyPress(window_->windowHandle(), Qt::Key_Return);
  QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
  for (int times = 0; times < 3; ++times) QApplication::sendEvent(QApplication::focusWidget(), &repeated);
  QTest::keyRelease(window_->windowHandle(), Qt::Key_Return);
  EXPECT_FALSE(desk_->Automatic().RandomTicked());
}

TEST_F(KeyboardAlone, EnterOnAHeadingSortsTheQueueByIt) {
  OpenWindow();
  Resize(2200, 900);
  for (const int track : {3, 1, 2}) Enqueue({ToMref(track)});
  TabTo(u"PlayQueueListHead"_s);
  Key(Qt::Key_Return);
  EXPECT_EQ(Column(TrackColumn), (QStringList{u"Alpha"_s, u"Beta"_s, u"Gamma"_s}));
  // The arrow goes on to the next column that is shown.
  QSignalSpy clicked(QueueList().horizontalHeader(), &QHeaderView::sectionClicked);
  for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Return, Qt::Key_Left, Qt::Key_Return}) Key(key);
  ASSERT_EQ(clicked.size(), 2);
  EXPECT_NE(clicked[0][0].toInt(), TrackColumn);
  EXPECT_FALSE(QueueList().isColumnHidden(clicked[0][0].toInt()));
  EXPECT_EQ(clicked[1][0].toInt(), TrackColumn);
}

TEST_F(KeyboardAlone, ADeckIsWoundAsLongAsEnterIsHeld) {
  OpenOnAir();
  TabTo(u"CmdDeckForward2"_s);
  QTest::keyPress(window_->windowHandle(), Qt::Key_Return);
  loop_.RunFor(1s);
  const double far = Player(Deck::Two).CurrentPosition();
  EXPECT_GT(far, 1.0);
  QTest::keyRelease(window_->windowHandle(), Qt::Key_Return);
  loop_.RunFor(100ms);
  const double stopped = Player(Deck::Two).CurrentPosition();
  loop_.RunFor(1s);
  EXPECT_EQ(Player(Deck::Two).CurrentPosition(), stopped);
}

TEST_F(KeyboardAlone, ArrowsMoveAFaderTheWayTheyPointAndEnterPutsItToItsRest) {
  OpenOnAir();
  TabTo(u"SldLevel1"_s);
  Key(Qt::Key_Down);
  EXPECT_EQ(Record(Deck::One).Loss, 25);
  Key(Qt::Key_PageDown);
  EXPECT_EQ(Record(Deck::One).Loss, 275);
  Key(Qt::Key_Up);
  EXPECT_EQ(Record(Deck::One).Loss, 250);
  Key(Qt::Key_Return);
  EXPECT_EQ(Record(Deck::One).Loss, 0);
  TabTo(u"SldBetweenDecks"_s);
  Key(Qt::Key_End);
  EXPECT_EQ(desk_->Fades().CrossPan(), 200);
  Key(Qt::Key_Return);
  EXPECT_EQ(desk_->Fades().CrossPan(), 0);
  TabTo(u"SldFadeSpeed"_s);
  const int speed = desk_->Fades().FadeSpeed();
  Key(Qt::Key_Right);
  EXPECT_EQ(desk_->Fades().FadeSpeed(), speed - 1) << "quicker";
  TabTo(u"SldFadeOutPosition"_s);
  Key(Qt::Key_Left);
  EXPECT_EQ(desk_->Automatic().SldDelta(), 2);
  TabTo(u"SldSpeakDepth"_s);
  const int depth = desk_->Speak().DepthSlider();
  Key(Qt::Key_Right);
  EXPECT_EQ(desk_->Speak().DepthSlider(), depth - 25);
  TabTo(u"SldSpeakSpeed"_s);
  Key(Qt::Key_Home);
  EXPECT_EQ(desk_->Speak().SpeedSlider(), 1);
}

TEST_F(KeyboardAlone, TheSpaceBarSpeaksFromEveryControlAndPressesNone) {
  OpenOnAir();
  const auto loss = [this] { return Record(Deck::One).Loss; };
  for (QWidget* control : window_->findChildren<QWidget*>()) {
    if (!control->isVisible() || !control->isEnabled() || !(control->focusPolicy() & Qt::TabFocus)) continue;
    if (qobject_cast<QLineEdit*>(control) != nullptr) continue;
    control->setFocus();
    if (!control->hasFocus()) continue;
    QTest::keyPress(window_->windowHandle(), Qt::Key_Space);
    loop_.RunFor(300ms);
    EXPECT_EQ(loss(), 1000) << control->objectName().toStdString();
    QTest::keyRelease(window_->windowHandle(), Qt::Key_Space);
    loop_.RunFor(300ms);
    EXPECT_EQ(loss(), 0) << control->objectName().toStdString();
    QTest::keyClick(window_->windowHandle(), Qt::Key_Space, Qt::ControlModifier);
    loop_.RunFor(10ms);
  }
  EXPECT_EQ(Queue().Count(), 3);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Playing);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Loaded);
  EXPECT_FALSE(desk_->State().AutoPlayOn);
  EXPECT_FALSE(desk_->Automatic().RandomTicked());
}

TEST_F(KeyboardAlone, AClickGivesTheKeyboardBackToTheListThatHadItLast) {
  OpenOnAir();
  const auto click = [this](const QString& name) {
    auto& control = Find<QWidget>(name);
    QTest::mouseClick(&control, Qt::LeftButton, {}, QPoint(5, control.height() / 2));
  };
  Box().setFocus();
  QTest::keyClicks(&Box(), u"alp"_s);
  click(u"CmdTimings"_s);
  EXPECT_TRUE(QueueList().hasFocus()) << "where the show is, before any list was worked in";
  auto& artists = Find<ListTable>(u"ArtistList"_s);
  artists.setFocus();
  Find<QLineEdit>(u"TxtPlayListName"_s).setFocus();
  for (const QString& name : {u"ChkRandom"_s, u"OptJukebox"_s, u"SldLevel1"_s, u"CmdDeckSkipToEnd2"_s}) {
    click(name);
    EXPECT_TRUE(artists.hasFocus()) << name.toStdString();
    Box().setFocus();
  }
  QTest::mouseClick(Library().horizontalHeader()->viewport(), Qt::LeftButton, {}, QPoint(10, 5));
  EXPECT_TRUE(Library().hasFocus()) << "a heading is a part of its list";
  // But the button in the box empties it, to type anew.
  Box().setFocus();
  QTest::mouseClick(Box().findChild<QToolButton*>(), Qt::LeftButton);
  EXPECT_TRUE(Box().hasFocus());
  // A fade takes the lists for itself, and gives the keyboard back to the same one.
  click(u"CmdDeckPartFade2"_s);
  loop_.RunFor(15s);
  EXPECT_TRUE(Library().hasFocus());
}

TEST_F(KeyboardAlone, EveryControlOfTheDeskHasANameOfOurs) {
  OpenOnAir();
  for (const QWidget* each : window_->findChildren<QWidget*>()) {
    const bool control = qobject_cast<const QAbstractButton*>(each) != nullptr ||
                         qobject_cast<const Fader*>(each) != nullptr ||
                         qobject_cast<const QLineEdit*>(each) != nullptr;
    if (!control || !each->isVisible() || qobject_cast<const QLineEdit*>(each->parentWidget()) != nullptr)
      continue;
    EXPECT_FALSE(each->objectName().isEmpty()) << each->metaObject()->className();
  }
  for (const auto& [ours, fixed] :
       {std::pair(u"CmdDeckRewind1"_s, u"CmdRF2_0"_s), std::pair(u"CmdDeckPan1"_s, u"CMdD2pan"_s),
        std::pair(u"CmdDeckDub2"_s, u"CmdDub3"_s), std::pair(u"SldLevel2"_s, u"SldVolRight"_s)})
    EXPECT_EQ(Find<QWidget>(ours).property("fixedName").toString(), fixed);
}

}  // namespace
