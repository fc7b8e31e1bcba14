#include "console/ConsoleOnScreen.h"
#include "console/windows/TrackMime.h"
#include "ui/DeckTally.h"
#include "ui/ProgressStrip.h"
#include "ui/TimeDisplay.h"

#include <QMimeData>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

TEST_F(ConsoleOnScreen, TakesATrackFromTheListToADeckAndPlaysItToItsEnd) {
  OpenWindow();
  EXPECT_EQ(Library().model()->rowCount(), 0);
  QTest::keyClicks(&Find<QLineEdit>(u"TrackFilter"_s), u"gam"_s);
  ASSERT_EQ(Library().model()->rowCount(), 1);
  EXPECT_EQ(Cell(Library(), 0), u"Gamma"_s);
  DoubleClick(Library(), 0);
  ASSERT_EQ(QueueList().model()->rowCount(), 1);

  Click(u"CmdLoad2"_s);
  loop_.RunFor(200ms);
  EXPECT_EQ(Find<QLabel>(u"lbldisplay1"_s).text(), u"Gamma"_s);
  EXPECT_EQ(Find<TimeDisplay>(u"TimeLeft1"_s).Text(), u"01:30"_s);
  auto& tally = *Find<QWidget>(u"Deck1"_s).findChild<DeckTally*>();
  EXPECT_EQ(tally.TallyState(), DeckTally::State::Loaded);

  Click(u"CmdMan2"_s);
  loop_.RunFor(30s);
  EXPECT_EQ(tally.TallyState(), DeckTally::State::OnAir);
  EXPECT_EQ(Find<TimeDisplay>(u"TimeLeft1"_s).TimeState(), TimeDisplay::State::Calm);
  EXPECT_TRUE(Cell(QueueList(), 0, CommentColumn).startsWith(u"Now Playing"_s));
  loop_.RunFor(35s);
  EXPECT_EQ(tally.TallyState(), DeckTally::State::Ending);
  EXPECT_EQ(Find<TimeDisplay>(u"TimeLeft1"_s).TimeState(), TimeDisplay::State::Amber);
  loop_.RunFor(20s);
  EXPECT_EQ(Find<TimeDisplay>(u"TimeLeft1"_s).TimeState(), TimeDisplay::State::BlinkRed);
  loop_.RunFor(10s);
  EXPECT_EQ(tally.TallyState(), DeckTally::State::Done);
  EXPECT_EQ(Find<ProgressStrip>(u"Progress1"_s).Colour(), QColor(255, 200, 0));
  EXPECT_EQ(Cell(QueueList(), 0, CommentColumn), u"Played- 9:01"_s);
}

TEST_F(ConsoleOnScreen, ChoosesInTheLibraryByMouseAndKeys) {
  database_.tree.MakeFolder(Paths::FolderName(Paths::Categories) + u"/Rock"_s);
  OpenWindow();
  auto& genres = Find<ListTable>(u"GenreList"_s);
  auto& artists = Find<ListTable>(u"ArtistList"_s);
  EXPECT_TRUE(genres.selectionModel()->selectedRows().isEmpty());
  DoubleClick(genres, 0);
  loop_.RunFor(1s);
  EXPECT_EQ(Library().model()->rowCount(), 3) << "a double click is one press";
  EXPECT_EQ(Find<QLabel>(u"LblChosenGenre"_s).text(), u"ROCK"_s);
  EXPECT_EQ(Cell(artists, 0), u"THE BAND"_s);
  EXPECT_EQ(artists.model()->index(0, 0).data(Qt::ForegroundRole).value<QColor>(), QColor(255, 255, 0));
  EXPECT_FALSE(Find<QWidget>(u"ListingPanel"_s).isVisible()) << "a short listing shows no panel";

  QTest::keyClick(&*window_, Qt::Key_A, Qt::AltModifier);
  QTest::keyClick(&artists, Qt::Key_Down);
  EXPECT_EQ(Find<QLabel>(u"LblChosenArtist"_s).text(), QString()) << "arrows choose nothing";
  QTest::keyClick(&artists, Qt::Key_Return);
  loop_.RunFor(1s);
  EXPECT_EQ(Find<QLabel>(u"LblChosenArtist"_s).text(), u"THE BAND"_s);
  QTest::keyClick(&artists, Qt::Key_Return);
  EXPECT_EQ(Find<QLabel>(u"LblChosenArtist"_s).text(), QString());

  auto& all = Find<QPushButton>(u"CmdSelectAll"_s);
  QTest::keyClick(&Library(), Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(all.text(), u"Clear All"_s);
  EXPECT_EQ(Library().selectionModel()->selectedRows().size(), 3);
  Click(u"CmdAddToQueue"_s);
  loop_.RunFor(50ms);
  EXPECT_EQ(QueueList().model()->rowCount(), 3);
  EXPECT_EQ(all.text(), u"Select All"_s);
  EXPECT_TRUE(Library().selectionModel()->selectedRows().isEmpty());
  QSignalSpy wanted(&*window_, &ConsoleWindow::WindowWanted);
  QTest::keyClick(&*window_, Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  ASSERT_EQ(wanted.count(), 1);
  EXPECT_EQ(wanted.front().front().toString(), u"TrackSearch"_s);
}

TEST_F(ConsoleOnScreen, TellsOfATrackAtARightClickUntilEscapeOrTheNextClick) {
  database_.tree.MakeFolder(Paths::FolderName(Paths::Categories) + u"/Pop"_s);
  OpenWindow();
  auto& box = Find<QLineEdit>(u"TrackFilter"_s);
  QTest::keyClicks(&box, u"beta"_s);
  auto& panel = Find<QWidget>(u"TrackDetails"_s);
  const QPoint spot = Library().visualRect(Library().model()->index(0, 0)).center();
  QTest::mouseClick(Library().viewport(), Qt::RightButton, {}, spot);
  ASSERT_TRUE(panel.isVisible());
  EXPECT_EQ(Find<QLabel>(u"TrackDetailLine0"_s).text(), u"Beta"_s);
  EXPECT_EQ(Find<QLabel>(u"TrackDetailLine1"_s).text(), u"Starts: Soft"_s);
  QTest::keyClick(&*window_, Qt::Key_Escape);
  EXPECT_FALSE(panel.isVisible());
  EXPECT_EQ(box.text(), u"beta"_s);
  QTest::mouseClick(Library().viewport(), Qt::RightButton, {}, spot);
  QTest::mouseClick(Library().viewport(), Qt::LeftButton, {}, spot);
  EXPECT_FALSE(panel.isVisible());
  QTest::keyClick(&box, Qt::Key_Escape);
  EXPECT_EQ(box.text(), QString());
}

TEST_F(ConsoleOnScreen, AsksBeforeALiveDeckIsReplacedAndKeepsTheListsStillMeanwhile) {
  OpenWindow();
  EnqueueAll();
  Load(Deck::One, 1);
  Click(u"CmdMan2"_s);
  Queue().Click(2);
  Click(u"CmdLoad2"_s);
  auto& panel = Find<QWidget>(u"ConfirmationPanel"_s);
  EXPECT_TRUE(panel.isVisible());
  EXPECT_EQ(Find<QPushButton>(u"CmdConfirmAction"_s).text(), u"LOAD NEW TRACK"_s);
  EXPECT_FALSE(Find<QPushButton>(u"CmdAddToQueue"_s).isEnabled());
  EXPECT_TRUE(Find<QPushButton>(u"CmdQueCut"_s).toolTip().endsWith(u"\nThe desk waits for an answer"_s));
  QTest::keyClick(&*window_, Qt::Key_Escape);
  EXPECT_FALSE(panel.isVisible());
  EXPECT_TRUE(Find<QPushButton>(u"CmdAddToQueue"_s).isEnabled());

  Click(u"CmdLoad2"_s);
  loop_.RunFor(3100ms);
  EXPECT_FALSE(panel.isVisible()) << "unanswered it goes by itself";
  Click(u"CmdLoad2"_s);
  Click(u"CmdConfirmAction"_s);
  loop_.RunFor(200ms);
  EXPECT_EQ(Record(Deck::One).Title, u"Beta"_s);
}

TEST_F(ConsoleOnScreen, TakesDroppedTracksAndMovesDraggedRowsByTheQueuesOwnMoves) {
  OpenWindow();
  QMimeData tracks;
  tracks.setData(kTracksMime, TracksToMime({ToMref(1), ToMref(2), ToMref(3)}));
  QAbstractItemModel& model = *QueueList().model();
  EXPECT_TRUE(model.dropMimeData(&tracks, Qt::CopyAction, -1, -1, {}));
  loop_.RunFor(50ms);
  ASSERT_EQ(Column(TrackColumn), (QStringList{u"Alpha"_s, u"Beta"_s, u"Gamma"_s}));

  const std::unique_ptr<QMimeData> row(model.mimeData({model.index(0, 0)}));
  static_cast<void>(model.dropMimeData(row.get(), Qt::MoveAction, 3, 0, {}));
  EXPECT_EQ(Column(TrackColumn), (QStringList{u"Beta"_s, u"Gamma"_s, u"Alpha"_s}));
  EXPECT_EQ(Tags(), (std::vector<int>{1, 2, 3}));
  const std::unique_ptr<QMimeData> last(model.mimeData({model.index(2, 0)}));
  static_cast<void>(model.dropMimeData(last.get(), Qt::MoveAction, 0, 0, {}));
  EXPECT_EQ(Column(TrackColumn), (QStringList{u"Alpha"_s, u"Beta"_s, u"Gamma"_s}));
  EXPECT_EQ(QueueList().currentIndex().row(), 0) << "the moved row stays selected";
}

TEST_F(ConsoleOnScreen, MixesByFunctionKeysWhereverTheFocusIs) {
  OpenWindow();
  EnqueueAll();
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  auto& box = Find<QLineEdit>(u"TrackFilter"_s);
  box.setFocus();
  QTest::keyClick(&box, Qt::Key_F7);
  loop_.RunFor(10s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Playing);
  EXPECT_EQ(desk_->Fades().CrossPan(), -200);
  EXPECT_EQ(Record(Deck::Two).Loss, 2000);
  QTest::keyClick(&box, Qt::Key_F10);
  loop_.RunFor(2s);
  EXPECT_TRUE(desk_->Fades().WalkActive());
  EXPECT_FALSE(Find<QPushButton>(u"CmdAddToQueue"_s).isEnabled()) << "the queue keeps still in a fade";
  loop_.RunFor(10s);
  EXPECT_TRUE(Find<QPushButton>(u"CmdAddToQueue"_s).isEnabled());
  EXPECT_EQ(Record(Deck::Two).Loss, 0);
  EXPECT_EQ(Record(Deck::One).Loss, 2000);
  EXPECT_TRUE(box.text().isEmpty());
}

TEST_F(ConsoleOnScreen, HoldsADubAsLongAsItsKeyIsDownThoughTheKeyRepeats) {
  OpenWindow();
  EnqueueAll();
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  ListTable& list = QueueList();
  list.setFocus();
  QTest::keyClick(&list, Qt::Key_F7);
  loop_.RunFor(10s);
  QTest::keyPress(&list, Qt::Key_F12);
  for (int repeat = 0; repeat < 30; ++repeat) {
    loop_.RunFor(90ms);
    QTest::keyRelease(&list, Qt::Key_F12);
    loop_.RunFor(10ms);
    QTest::keyPress(&list, Qt::Key_F12);
  }
  EXPECT_LE(Record(Deck::One).Loss, 10) << "both decks at full while it is held";
  EXPECT_EQ(Record(Deck::Two).Loss, 0);
  QTest::keyRelease(&list, Qt::Key_F12);
  loop_.RunFor(10s);
  EXPECT_EQ(desk_->Fades().CrossPan(), 200);
}

TEST_F(ConsoleOnScreen, DipsTheDecksWhileTheSpaceBarIsDownButNotWhileAPersonTypes) {
  OpenWindow();
  EnqueueAll();
  Load(Deck::One, 1);
  Click(u"CmdMan2"_s);
  ListTable& list = QueueList();
  list.setFocus();
  QTest::keyPress(&list, Qt::Key_Space);
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Loss, 1000);
  QTest::keyRelease(&list, Qt::Key_Space);
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Loss, 0);
  auto& box = Find<QLineEdit>(u"TrackFilter"_s);
  box.setFocus();
  QTest::keyClicks(&box, u"a b"_s);
  loop_.RunFor(1s);
  EXPECT_EQ(box.text(), u"a b"_s);
  EXPECT_EQ(Record(Deck::One).Loss, 0);
}

TEST_F(ConsoleOnScreen, PlaysTheQueueByItselfAndTellsWhatComesNext) {
  OpenWindow();
  EnqueueAll();
  Queue().Select(1);
  Click(u"CmdAutoPlay"_s);
  loop_.RunFor(20s);
  EXPECT_EQ(Find<QPushButton>(u"CmdAutoPlay"_s).text(), u"STOP"_s);
  EXPECT_FALSE(Find<QPushButton>(u"CmdLoad2"_s).isEnabled());
  EXPECT_EQ(Record(Deck::One).State, DeckState::Playing);
  EXPECT_TRUE(Find<QLabel>(u"AutoStatus"_s).text().startsWith(u"Auto Start: Beta In 00:"_s));
  EXPECT_TRUE(Find<QLabel>(u"UpNext"_s).text().startsWith(u"Next: Beta in 00:"_s));
  loop_.RunFor(60s);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Playing);
  EXPECT_EQ(Record(Deck::One).Title, u"Gamma"_s);
  Click(u"CmdAutoPlay"_s);
  EXPECT_TRUE(Find<QPushButton>(u"CmdLoad2"_s).isEnabled());
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Playing) << "what plays goes on";
}

TEST_F(ConsoleOnScreen, LocksItsPanelsAndLeavesTheDecksToPlayOn) {
  OpenWindow();
  EnqueueAll();
  Load(Deck::One, 1);
  Click(u"CmdMan2"_s);
  prompter_.texts = {u"4711"_s, u"wrong"_s, u"4711"_s};
  prompter_.answers = {Answer::Ok};
  auto& lock = *window_->findChild<QAction*>(u"Lockscr"_s);
  lock.trigger();
  loop_.RunFor(100ms);
  EXPECT_FALSE(QueueList().isEnabled());
  EXPECT_FALSE(Find<QPushButton>(u"CmdDeckStop1"_s).isEnabled());
  const int loss = Record(Deck::One).Loss;
  QTest::keyPress(&*window_, Qt::Key_Space);
  loop_.RunFor(2s);
  EXPECT_EQ(Record(Deck::One).Loss, loss) << "no key reaches the decks";
  QTest::keyRelease(&*window_, Qt::Key_Space);
  lock.trigger();
  loop_.RunFor(70s);
  EXPECT_FALSE(QueueList().isEnabled());
  EXPECT_EQ(prompter_.asked.back().text, u"Sorry, Screen Unlock Code Not Valid !"_s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Done) << "it played to its end";
  lock.trigger();
  loop_.RunFor(100ms);
  EXPECT_TRUE(QueueList().isEnabled());
}

TEST_F(ConsoleOnScreen, StaysOpenOnNoAndWritesItsSizeOnYes) {
  OpenWindow();
  QSignalSpy closed(&*window_, &ConsoleWindow::Closed);
  prompter_.answers = {Answer::No, Answer::Yes};
  window_->close();
  loop_.RunFor(50ms);
  EXPECT_TRUE(window_->isVisible());
  EXPECT_EQ(prompter_.asked.back().text, u"Quit Kelvo ? "_s);
  window_->close();
  loop_.RunFor(50ms);
  EXPECT_EQ(closed.count(), 1);
  EXPECT_FALSE(window_->isVisible());
  EXPECT_EQ(settings_.GetSetting(u"Kelvo"_s, u"ConStartup"_s, u"Width"_s), u"1400"_s);
}

TEST_F(ConsoleOnScreen, FitsItsSmallestSizeWithEveryCommandInSight) {
  OpenWindow();
  Resize(1024, 680);
  EXPECT_LE(window_->minimumSizeHint().width(), 1024);
  EXPECT_LE(window_->minimumSizeHint().height(), 680);
  const QList<QPushButton*> buttons = window_->findChildren<QPushButton*>();
  for (const QPushButton* button : buttons) {
    if (!button->isVisible()) continue;
    const QRect place(button->mapTo(&*window_, QPoint()), button->size());
    EXPECT_TRUE(window_->rect().contains(place)) << button->objectName().toStdString();
    EXPECT_GE(button->width(), button->fontMetrics().horizontalAdvance(button->text()))
        << button->objectName().toStdString();
    EXPECT_FALSE(button->accessibleName().isEmpty() && button->text().isEmpty())
        << button->objectName().toStdString();
  }
}

}  // namespace
