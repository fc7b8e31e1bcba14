// What the desk offers, what it says of what it does not, and what it finds again at its next start.

#include "console/ConsoleOnScreen.h"
#include "ui/DeckTally.h"
#include "ui/TimeDisplay.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QListView>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTextBlock>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class DeskOffers : public ConsoleOnScreen {
 protected:
  /// The controls that are off by themselves and don't say why.
  QStringList OffWithoutWords() {
    QStringList found;
    for (const QAbstractButton* each : window_->findChildren<QAbstractButton*>()) {
      if (!each->isVisible() || !each->testAttribute(Qt::WA_ForceDisabled)) continue;
      ++off_;
      const QString why = each->property("whyOff").toString();
      if (why.isEmpty() || !each->toolTip().endsWith(why)) found.append(each->objectName());
    }
    return found;
  }
  void Choose(const QString& option) {
    auto& button = Find<QAbstractButton>(option);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
  }
  int off_ = 0;
};

TEST_F(DeskOffers, EveryCommandThatIsOffSaysWhyWhateverTheDeskIsAt) {
  OpenWindow();
  EXPECT_EQ(OffWithoutWords(), QStringList()) << "empty";
  EXPECT_EQ(Find<QPushButton>(u"CmdTimings"_s).toolTip().section(u'\n', 1), u"The queue is empty"_s);
  EXPECT_EQ(Find<QPushButton>(u"CmdMan3"_s).toolTip().section(u'\n', 1), u"No track is loaded"_s);
  EnqueueAll();
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  Click(u"CmdMan2"_s);
  loop_.RunFor(2s);
  EXPECT_EQ(OffWithoutWords(), QStringList()) << "on air";
  EXPECT_EQ(Find<QPushButton>(u"CmdMan2"_s).toolTip(), u"Manual start  (Alt+1)\nIt plays already"_s);
  desk_->Fades().BeginTransition(Deck::Two, TransitionKind::Pan);
  loop_.RunFor(500ms);
  EXPECT_EQ(OffWithoutWords(), QStringList()) << "in a fade";
  loop_.RunFor(20s);
  QTest::keyPress(&*window_, Qt::Key_Space);
  loop_.RunFor(50ms);
  EXPECT_EQ(OffWithoutWords(), QStringList()) << "under the voice";
  QTest::keyRelease(&*window_, Qt::Key_Space);
  loop_.RunFor(5s);
  Click(u"CmdAutoPlay"_s);
  loop_.RunFor(5s);
  EXPECT_EQ(OffWithoutWords(), QStringList()) << "by itself";
  EXPECT_EQ(Find<QRadioButton>(u"OptJukebox"_s).toolTip().section(u'\n', 1),
            u"Not while the desk plays by itself"_s);
  EXPECT_GT(off_, 50);
}

TEST_F(DeskOffers, DurationsAreShownAtEveryWidthWhenTheyAreAskedFor) {
  OpenWindow();
  EnqueueAll();
  for (const int width : {1024, 1366, 1920}) {
    Resize(width, 768);
    Click(u"CmdTimings"_s);
    ASSERT_FALSE(QueueList().isColumnHidden(GenreColumn)) << width;
    EXPECT_EQ(Cell(QueueList(), 2, GenreColumn), u"01:30"_s);
    const QRect cell = QueueList().visualRect(QueueList().model()->index(2, GenreColumn));
    EXPECT_TRUE(QueueList().viewport()->rect().contains(cell)) << width;
    EXPECT_GE(cell.width(), QueueList().fontMetrics().horizontalAdvance(u" 01:30 "_s)) << width;
    Click(u"CmdTimings"_s);
  }
  Resize(1024, 768);
  EXPECT_TRUE(QueueList().isColumnHidden(GenreColumn)) << "the name has the room again";
}

TEST_F(DeskOffers, TheNextStartFindsModeAndRandomAgain) {
  OpenWindow();
  Choose(u"OptJukebox"_s);
  Choose(u"ChkRandom"_s);
  window_.reset();
  OpenWindow();
  EXPECT_TRUE(Find<QRadioButton>(u"OptJukebox"_s).isChecked());
  EXPECT_TRUE(Find<QCheckBox>(u"ChkRandom"_s).isChecked());
  EnqueueAll();
  Click(u"CmdAutoPlay"_s);
  loop_.RunFor(1s);
  EXPECT_EQ(desk_->Automatic().DisplayWord(), u"JUKEBOX MODE"_s);
  EXPECT_TRUE(desk_->Automatic().RandomOn());
  Click(u"CmdAutoPlay"_s);
  window_.reset();
  OpenWindow();
  EXPECT_TRUE(Find<QRadioButton>(u"OptKelvo"_s).isChecked()) << "to stop it is to give up its choices";
  EXPECT_FALSE(Find<QCheckBox>(u"ChkRandom"_s).isChecked());
}

TEST_F(DeskOffers, ADeckThatIsStillHeardInAFadeIsEndingAndNotDone) {
  OpenWindow();
  EnqueueAll();
  Queue().Select(1);
  Click(u"CmdAutoPlay"_s);
  loop_.RunFor(10s);
  auto& tally = *Find<QWidget>(u"Deck1"_s).findChild<DeckTally*>();
  ASSERT_EQ(tally.TallyState(), DeckTally::State::OnAir);
  desk_->Automatic().SetDelta(30);
  ASSERT_TRUE(loop_.RunUntil([this] { return Record(Deck::One).State == DeckState::Done; }, 60s));
  ASSERT_TRUE(desk_->Fades().WalkActive());
  loop_.RunFor(300ms);
  EXPECT_EQ(tally.TallyState(), DeckTally::State::Ending);
  EXPECT_EQ(Find<TimeDisplay>(u"TimeLeft1"_s).TimeState(), TimeDisplay::State::Amber);
  ASSERT_TRUE(loop_.RunUntil([this] { return !desk_->Fades().WalkActive(); }, 20s));
  loop_.RunFor(300ms);
  EXPECT_NE(tally.TallyState(), DeckTally::State::Ending);
}

TEST_F(DeskOffers, TheDetailsOfADeckEndWithAWholeLine) {
  OpenWindow();
  EnqueueAll();
  Load(Deck::One, 1);
  auto& box = Find<QPlainTextEdit>(u"TrackInfoText1"_s);
  box.setPlainText(QString(u"a line\n"_s).repeated(40));
  const int line = box.fontMetrics().lineSpacing();
  for (const int height : {700, 733, 768, 801, 850}) {
    Resize(1366, height);
    const int room = box.viewport()->height() - static_cast<int>(box.document()->documentMargin());
    EXPECT_EQ(room % line, 0) << height;
    EXPECT_GT(room, 0) << height;
  }
}

TEST_F(DeskOffers, AHeadingWithoutRoomEndsInDotsAndIsReadInItsTooltip) {
  OpenWindow();
  EnqueueAll();
  Resize(1024, 768);
  Click(u"CmdTimings"_s);
  QHeaderView& head = *QueueList().horizontalHeader();
  const QString whole = u"Tracks (By Position Or Contents)"_s;
  ASSERT_LT(head.sectionSize(TrackColumn), head.fontMetrics().horizontalAdvance(whole));
  const QImage picture = head.viewport()->grab().toImage();
  const int end = head.sectionPosition(TrackColumn) + head.sectionSize(TrackColumn);
  const QColor ground = picture.pixelColor(end - 4, 3);
  for (int x = end - 5; x < end - 2; ++x) {
    for (int y = 3; y < picture.height() - 4; ++y)
      ASSERT_EQ(picture.pixelColor(x, y), ground) << "a letter is cut at " << x << ' ' << y;
  }
  EXPECT_EQ(QueueList().model()->headerData(TrackColumn, Qt::Horizontal, Qt::ToolTipRole), whole);
}

TEST_F(DeskOffers, TheLettersOpenAllAtOnceInColumns) {
  OpenWindow();
  auto& letters = Find<QComboBox>(u"CboGenreLetter"_s);
  letters.showPopup();
  QCoreApplication::processEvents();
  const auto& view = *qobject_cast<QListView*>(letters.view());
  std::set<int> columns;
  for (int row = 0; row < letters.count(); ++row) {
    const QRect place = view.visualRect(view.model()->index(row, 0));
    EXPECT_TRUE(view.viewport()->rect().contains(place)) << row;
    columns.insert(place.x());
  }
  EXPECT_EQ(columns.size(), 6U);
  letters.hidePopup();
}

TEST_F(DeskOffers, TheHeadingOfTheTracksNamesNoChoiceThatWasReleased) {
  database_.tree.MakeFolder(Paths::FolderName(Paths::Categories) + u"/Rock"_s);
  OpenWindow();
  auto& genres = Find<ListTable>(u"GenreList"_s);
  const QPoint spot = genres.visualRect(genres.model()->index(0, 0)).center();
  QTest::mouseClick(genres.viewport(), Qt::LeftButton, {}, spot);
  loop_.RunFor(1s);
  EXPECT_TRUE(Find<QLabel>(u"LblListed"_s).text().startsWith(u"ROCK"_s));
  QTest::mouseClick(genres.viewport(), Qt::LeftButton, {}, spot);
  loop_.RunFor(1s);
  EXPECT_EQ(Find<QLabel>(u"LblListed"_s).text(), QString());
}

}  // namespace
