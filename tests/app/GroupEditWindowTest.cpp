#include "app/BesideTheDesk.h"
#include "database/PlaylistEntry.h"
#include "platform/TextFile.h"
#include "playlists/GroupLists.h"
#include "playlists/windows/GroupEditWindow.h"
#include "playlists/windows/GroupTimeView.h"
#include "support/Lookup.h"
#include "support/WindowParts.h"
#include "ui/ListTable.h"

#include <QCheckBox>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class GroupEditBesideTheDesk : public BesideTheDesk {
 protected:
  void SetUp() override {
    BesideTheDesk::SetUp();
    OpenDesk();
    folder_ = database_.paths(Paths::Playlists) + u"/Rock/Mix(Grp)"_s;
    QDir().mkpath(folder_);
    for (int line = 0; line < 2; ++line) {
      PlaylistLink{Path(line), {}}.Write(folder_ + u"/ %1~%2.lnk"_s.arg(line + 1).arg(Name(line)));
      TextFile(QStringList{MixLines()[line]}).Write(folder_ + u"/%1%2.txt"_s.arg(Name(line)).arg(line + 1));
    }
    LoadMix();
    loop_.RunFor(1s);
  }
  static QString Name(int line) { return line == 0 ? u"alpha"_s : u"beta"_s; }
  QString Path(int line) const { return database_.paths(Paths::Music) + u'/' + Name(line) + u".mp3"_s; }
  /// As a load from the store does.
  void LoadMix() {
    QueueFill fill{.name = u"Mix(Grp)"_s, .folder = folder_, .group = true, .clearFirst = true, .rows = {}};
    for (int line = 0; line < 2; ++line)
      fill.rows.push_back({ToMref(line + 1), Name(line), Path(line), u"Grp"_s, MixLines()[line]});
    Queue().Take(fill);
  }
  void OpenFromQueue(int row = 2) {
    Queue().Click(row);
    QTest::mouseClick(FindNamed<QPushButton>(*window_, u"CmdClEdit"_s), Qt::LeftButton);
    loop_.RunFor(1s);
    ASSERT_TRUE(Shown().isVisible());
    Shown().activateWindow();
    ASSERT_TRUE(TurnUntil([this] { return Shown().isActiveWindow(); }));
  }
  GroupEditWindow& Shown() { return *Opened<GroupEditWindow>(); }
  template <typename Widget>
  Widget& Find(const QString& name) {
    return *FindNamed<Widget>(Shown(), name);
  }
  void Press(const QString& name) {
    QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton);
    loop_.RunFor(1s);
  }
  ListTable& List() { return Find<ListTable>(u"ListView1"_s); }
  GroupTimeView& Time() { return Find<GroupTimeView>(u"TimeLine"_s); }
  QString Cell(int row, int column = 1) { return List().model()->index(row, column).data().toString(); }
  void Pick(int row) {
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {},
                      List().visualRect(List().model()->index(row, 2)).center());
  }
  QString Told() { return prompter_.asked.empty() ? QString() : prompter_.asked.back().text; }

  QString folder_;
};

TEST_F(GroupEditBesideTheDesk, AnElementIsMovedInThePanelSavedAndBroughtBackAfterALoad) {
  OpenFromQueue();
  EXPECT_EQ(Shown().windowTitle(), u"Grp Playlist Mix(Grp)"_s);
  EXPECT_EQ(Cell(0, 2), u"Load alpha"_s);
  EXPECT_EQ(Cell(4, 2), u"Start Fade"_s);
  EXPECT_EQ(Cell(4, 5), u"Part"_s);
  Pick(0);
  Press(u"Command4"_s);
  EXPECT_EQ(Told(), u"Can't Edit First item"_s);
  Pick(1);
  Press(u"Command4"_s);
  ExpectWellLaidOut(Shown());
  EXPECT_LE(Shown().minimumSizeHint().width(), 1000);
  EXPECT_LE(Shown().minimumSizeHint().height(), 700);
  auto& time = Find<QSpinBox>(u"UpDown1_0"_s);
  EXPECT_TRUE(time.hasFocus());
  for (int press = 0; press < 50; ++press) QTest::keyClick(&time, Qt::Key_Up);
  EXPECT_EQ(time.text(), u"00:01:02"_s) << "a minute has sixty seconds";
  QTest::keyClick(&Shown(), Qt::Key_Escape);
  loop_.RunFor(1s);
  EXPECT_TRUE(Shown().isVisible()) << "the panel is closed first";
  EXPECT_EQ(Cell(1), u"00:00:12"_s);
  QTest::keyClick(&List(), Qt::Key_Return);
  time.selectAll();
  QTest::keyClicks(&time, u"0:00:17"_s);
  Press(u"Command5"_s);
  EXPECT_EQ(Cell(1), u"00:00:17"_s);
  EXPECT_EQ(Cell(7), u"00:02:05"_s);
  Press(u"Check1"_s);
  EXPECT_EQ(Cell(8, 2), u"Repeat Play List"_s);
  Press(u"Check1"_s);
  EXPECT_EQ(List().model()->rowCount(), 8);
  Queue().Select(1);
  Press(u"Command2"_s);
  EXPECT_FALSE(Shown().isVisible());
  EXPECT_EQ(Queue().Selected(), 2) << "the row that was clicked";
  const QStringList edited = Queue().GroupLines();
  EXPECT_TRUE(edited[0].contains(u"2,00:00:17,1,2,"_s));
  EXPECT_EQ(PlaylistLink::Read(folder_ + u"/ 2~beta.lnk"_s).arguments, edited[1]);
  EXPECT_EQ(TextFile::Read(folder_ + u"/beta2.txt"_s).Line(0), MixLines()[1]);

  LoadMix();
  EXPECT_EQ(Queue().GroupLines(), MixLines());
  OpenFromQueue();
  Press(u"CmdBringBack"_s);
  EXPECT_EQ(Cell(1), u"00:00:17"_s);
  prompter_.answers = {Answer::Cancel, Answer::Yes};
  Press(u"Command1"_s);
  EXPECT_EQ(Told(), u"Save Changes ?"_s);
  EXPECT_TRUE(Shown().isVisible());
  Press(u"Command1"_s);
  EXPECT_FALSE(Shown().isVisible());
  EXPECT_EQ(Queue().GroupLines(), edited);
}

TEST_F(GroupEditBesideTheDesk, AFadeGetsAnotherKindInThePanelAndBelongsToItsTimes) {
  OpenFromQueue();
  Pick(4);
  QTest::keyClick(&List(), Qt::Key_F2);
  EXPECT_EQ(Find<QSpinBox>(u"UpDown1_1"_s).text(), u"00:01:04"_s);
  EXPECT_FALSE(Find<QAbstractButton>(u"Option1_0"_s).isEnabled());
  EXPECT_FALSE(Find<QSpinBox>(u"NumFadeSpeed"_s).isEnabled());
  Press(u"Option1_2"_s);
  EXPECT_EQ(Find<QSpinBox>(u"UpDown1_1"_s).text(), u"00:01:09"_s);
  QTest::keyClick(&Find<QSpinBox>(u"UpDown1_1"_s), Qt::Key_Down);
  EXPECT_EQ(Find<QLabel>(u"LblSpan"_s).text(), u"Span 00:00:08"_s);
  Press(u"Command5"_s);
  EXPECT_EQ(Cell(6), u"00:01:08"_s);
  EXPECT_EQ(Cell(6, 5), u"Pan"_s);
  Pick(3);
  QTest::keyClick(&List(), Qt::Key_F2);
  EXPECT_FALSE(Find<QAbstractButton>(u"Option1_2"_s).isEnabled());
  EXPECT_FALSE(Find<QPushButton>(u"Command3"_s).isEnabled());
  Press(u"Command6"_s);
  QTest::keyClick(&Shown(), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Cell(6), u"00:01:04"_s);
}

TEST_F(GroupEditBesideTheDesk, ElementsAreDraggedAndMovedByKeysOnTheTimeLine) {
  OpenFromQueue();
  GroupTimeView& view = Time();
  const auto right = [&view](int row, int seconds) {
    return view.MarkOf(row) + QPoint(static_cast<int>(seconds * view.Scale()) + 1, 0);
  };
  ASSERT_GT(view.Scale(), 2);
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, view.MarkOf(2));
  QTest::mouseMove(view.viewport(), right(2, 10));
  EXPECT_EQ(Cell(2), u"00:01:00"_s) << "it is shown while it is dragged";
  QTest::keyClick(&view, Qt::Key_Escape);
  EXPECT_TRUE(Shown().isVisible());
  EXPECT_EQ(Cell(2), u"00:00:50"_s);
  QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, right(2, 10));
  EXPECT_EQ(Cell(2), u"00:00:50"_s);
  const QPoint place = right(2, 10);
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, view.MarkOf(2));
  QTest::mouseMove(view.viewport(), place);
  QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, place);
  EXPECT_EQ(Cell(2), u"00:01:00"_s);
  EXPECT_EQ(Cell(7), u"00:02:10"_s) << "across the decks";
  EXPECT_EQ(List().currentIndex().row(), 2) << "the list goes along";
  // The first one stays.
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, view.MarkOf(0));
  QTest::mouseMove(view.viewport(), right(0, 10));
  QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, right(0, 10));
  EXPECT_EQ(Cell(0), u"00:00:10"_s);

  view.setFocus();
  QTest::keyClick(&view, Qt::Key_Right);
  EXPECT_EQ(List().currentIndex().row(), 1);
  QTest::keyClick(&view, Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(Cell(1), u"00:00:13"_s);
  QTest::keyClick(&view, Qt::Key_PageUp, Qt::ShiftModifier);
  EXPECT_EQ(Cell(7), u"00:02:21"_s);
  QTest::keyClick(&view, Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_EQ(Cell(1), u"00:00:22"_s);
  const double whole = view.Scale();
  QTest::keyClick(&view, Qt::Key_Plus);
  EXPECT_GT(view.Scale(), whole);
  QTest::keyClick(&view, Qt::Key_End);
  EXPECT_TRUE(view.viewport()->rect().contains(view.MarkOf(7))) << "what is chosen is in sight";
  EXPECT_TRUE(view.accessibleDescription().startsWith(u"00:02:20 Play Track Until"_s));
  QTest::keyClick(&view, Qt::Key_0);
  EXPECT_EQ(view.Scale(), whole);
  QTest::keyClick(&view, Qt::Key_Return);
  EXPECT_TRUE(Find<QSpinBox>(u"UpDown1_0"_s).isVisible());
  Press(u"Command6"_s);
  for (int step = 0; step < 4; ++step) QTest::keyClick(&view, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Cell(2), u"00:00:50"_s);
  EXPECT_FALSE(Find<QPushButton>(u"CmdUndo"_s).isEnabled());
  EXPECT_FALSE(view.grab().isNull());
}

TEST_F(GroupEditBesideTheDesk, AListThatRunsShowsWhereItIsAndTakesAnEditAtItsNextStart) {
  // So many rows the desk wants before it plays by itself.
  QueueFill third{.name = {}, .folder = {}, .group = true, .clearFirst = false, .rows = {}};
  const QString load = u"9,00:02:00,3,2,0,-1,1,-1,90"_s;
  third.rows.push_back({ToMref(3), u"gamma"_s, catalogue_.TrackPaths(ToMref(3)), u"Grp"_s, load});
  Queue().Take(third);
  OpenFromQueue();
  const auto playhead = [this] { return desk_->Group().Playhead(); };
  const QImage idle = Time().grab().toImage();
  desk_->Automatic().ToggleAutoPlay();
  loop_.RunFor(20s);
  ASSERT_TRUE(desk_->State().GroupPlayOn);
  ASSERT_TRUE(playhead());
  EXPECT_NEAR(*playhead(), 10 + 20, 0.5) << "as the elements count";
  EXPECT_NE(Time().grab().toImage(), idle);
  EXPECT_EQ(Find<QLabel>(u"LblNotice"_s).text(),
            u"The list runs: what you save counts from its next start"_s);
  Pick(2);
  Time().setFocus();
  for (int press = 0; press < 2; ++press) QTest::keyClick(&Time(), Qt::Key_PageUp, Qt::ShiftModifier);
  Press(u"Command2"_s);
  EXPECT_FALSE(Shown().isVisible());
  // The run goes on as it began: the second track comes in at 60 and not at 80.
  ASSERT_TRUE(loop_.RunUntil([this] { return Record(Deck::Two).State == DeckState::Playing; }, 60s));
  EXPECT_NEAR(playhead().value_or(0), 60, 0.5);
  desk_->Automatic().ToggleAutoPlay();
  loop_.RunFor(1s);
  EXPECT_FALSE(playhead());
}

}  // namespace
