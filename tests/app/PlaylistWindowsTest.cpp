#include "app/BesideTheDesk.h"
#include "playlists/windows/PlaylistWindow.h"
#include "support/Lookup.h"
#include "support/WindowParts.h"
#include "ui/ListTable.h"

#include <QDir>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class PlaylistsBesideTheDesk : public BesideTheDesk {
 protected:
  void SetUp() override {
    BesideTheDesk::SetUp();
    OpenDesk();
  }
  /// The window that is on the screen.
  PlaylistWindow& Shown() {
    loop_.RunFor(2s);
    for (QWidget* each : QApplication::topLevelWidgets()) {
      auto* window = qobject_cast<PlaylistWindow*>(each);
      if (window == nullptr || !window->isVisible()) continue;
      window->activateWindow();
      EXPECT_TRUE(TurnUntil([window] { return window->isActiveWindow(); }));
      return *window;
    }
    ADD_FAILURE() << "no window of playlists is open";
    return *Opened<PlaylistWindow>();
  }
  [[nodiscard]] static int ShownCount() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    return static_cast<int>(std::count_if(windows.begin(), windows.end(), [](QWidget* each) {
      return qobject_cast<PlaylistWindow*>(each) != nullptr && each->isVisible();
    }));
  }
  void PressOnDesk(const QString& button) {
    QTest::mouseClick(FindNamed<QPushButton>(*window_, button), Qt::LeftButton);
    loop_.RunFor(2s);
  }
  /// With Ctrl.
  void KeyOnDesk(Qt::Key key) {
    window_->activateWindow();
    ASSERT_TRUE(TurnUntil([this] { return window_->isActiveWindow(); }));
    QTest::keyClick(&*window_, key, Qt::ControlModifier);
    loop_.RunFor(2s);
  }
  void Click(const QString& button) {
    QPushButton& found = *FindNamed<QPushButton>(Shown(), button);
    EXPECT_TRUE(found.isEnabled()) << button.toStdString();
    QTest::mouseClick(&found, Qt::LeftButton);
    loop_.RunFor(2s);
  }
  bool Enabled(const QString& button) { return FindNamed<QPushButton>(Shown(), button)->isEnabled(); }
  ListTable& List(const QString& name) { return *FindNamed<ListTable>(Shown(), name); }
  QStringList Cells(const QString& name, int column = 0) {
    QStringList cells;
    const QAbstractItemModel& model = *List(name).model();
    for (int row = 0; row < model.rowCount(); ++row) cells.append(model.index(row, column).data().toString());
    return cells;
  }
  void Pick(const QString& name, int row) {
    ListTable& list = List(name);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualRect(list.model()->index(row, 0)).center());
    loop_.RunFor(2s);
  }
  /// A category with the playlist "Mix" of the queue's rows, saved by hand.
  void SaveMix() {
    PressOnDesk(u"CmdPlaylistSave"_s);
    prompter_.texts = {u"rock"_s};
    Click(u"CmdNgroup"_s);
    Type(u"mix"_s);
    Click(u"Cmdsave"_s);
  }
  void Type(const QString& name) {
    auto* box = FindNamed<QLineEdit>(Shown(), u"TxtPlaylistName"_s);
    box->selectAll();
    QTest::keyClicks(box, name);
  }
};

TEST_F(PlaylistsBesideTheDesk, AQueueIsSavedLostLoadedBackAndPlayed) {
  EnqueueAll();
  SaveMix();
  ExpectWellLaidOut(Shown());
  EXPECT_EQ(Cells(u"LstCategories"_s), QStringList{u"Rock"_s});
  EXPECT_EQ(Cells(u"List2"_s), QStringList{u"Mix"_s});
  EXPECT_EQ(Cells(u"File1"_s, 1), (QStringList{u"Alpha"_s, u"Beta"_s, u"Gamma"_s}));
  EXPECT_EQ(Cells(u"File1"_s, 2), (QStringList{u"01:00"_s, u"01:00"_s, u"01:30"_s}));
  EXPECT_TRUE(
      FindNamed<QLabel>(Shown(), u"LblOutlook"_s)->text().startsWith(u"3 tracks, 00:03:30, ends at 09:0"_s));
  EXPECT_EQ(Queue().Name(), u"Rock"_s);
  Click(u"Command1"_s);
  EXPECT_EQ(ShownCount(), 0);

  Queue().Click(1);
  prompter_.answers = {Answer::Ok};
  PressOnDesk(u"CmdQueClear"_s);
  ASSERT_EQ(Queue().Count(), 0);
  KeyOnDesk(Qt::Key_O);
  ExpectWellLaidOut(Shown());
  EXPECT_TRUE(FindNamed<QLineEdit>(Shown(), u"Text1"_s)->isReadOnly());
  EXPECT_FALSE(Enabled(u"CmdLoad"_s));
  Pick(u"LstCategories"_s, 0);
  Pick(u"LstPlaylists"_s, 0);
  Click(u"CmdLoad"_s);
  EXPECT_EQ(ShownCount(), 0) << "it closes when it has loaded";
  EXPECT_EQ(Column(TrackColumn), (QStringList{u"Alpha"_s, u"Beta"_s, u"Gamma"_s}));
  EXPECT_EQ(Column(CommentColumn), (QStringList{u"Std"_s, u"Std"_s, u"Std"_s}));
  EXPECT_EQ(Queue().Name(), u"Mix"_s);
  EXPECT_EQ(Queue().QueueTotalSeconds(), 210);
  Load(Deck::One, 2);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Loaded);

  KeyOnDesk(Qt::Key_Z);
  EXPECT_EQ(Queue().Count(), 0) << "the load is taken back";
  EXPECT_TRUE(prompter_.answers.empty());
}

TEST_F(PlaylistsBesideTheDesk, EndTimeCountsTheOverlapsThatAutomaticPlayWillMake) {
  for (const QString& name : {u"alpha"_s, u"beta"_s, u"gamma"_s}) {
    database_.Add(Paths::Info, name + u".kif"_s, InfoBytes("60"));
  }
  EnqueueAll();
  SaveMix();
  // 210 seconds, less the ten of each fade-out but the last.
  const QTime end = loop_.Now().addSecs(190).time();
  const QString words = FindNamed<QLabel>(Shown(), u"LblOutlook"_s)->text();
  EXPECT_TRUE(words.contains(end.toString(u"HH:mm"_s))) << words.toStdString();
  loop_.RunFor(1min);
  EXPECT_NE(FindNamed<QLabel>(Shown(), u"LblOutlook"_s)->text(), words) << "it goes with the clock";
}

TEST_F(PlaylistsBesideTheDesk, OneOfItsFormsIsOpenAtATime) {
  PressOnDesk(u"Command13"_s);
  ASSERT_EQ(ShownCount(), 1);
  EXPECT_EQ(Shown().objectName(), u"PlaylistSave"_s);
  PressOnDesk(u"Command14"_s);
  ASSERT_EQ(ShownCount(), 1);
  EXPECT_EQ(Shown().objectName(), u"PlaylistLoad"_s);
  EXPECT_FALSE(FindNamed<QPushButton>(Shown(), u"Cmdsave"_s)->isVisible());
  Shown().move(120, 140);
  QTest::keyClick(&Shown(), Qt::Key_Escape);
  EXPECT_EQ(settings_.GetSetting(u"Kelvo"_s, u"Startup"_s, u"PlaySavePosx"_s), u"120"_s);
  EXPECT_EQ(ShownCount(), 0);
}

TEST_F(PlaylistsBesideTheDesk, TheCommandsOfTheStoreWorkByTheirKeys) {
  EnqueueAll();
  SaveMix();
  prompter_.texts = {u"new name"_s};
  QTest::keyClick(&Shown(), Qt::Key_R, Qt::ControlModifier);
  loop_.RunFor(2s);
  EXPECT_EQ(Cells(u"LstPlaylists"_s), QStringList{u"New Name"_s});
  EXPECT_EQ(FindNamed<QLineEdit>(Shown(), u"Text1"_s)->text(), u"New Name"_s);
  prompter_.texts = {u"jazz"_s};
  QTest::keyClick(&Shown(), Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier);
  loop_.RunFor(2s);
  EXPECT_EQ(Cells(u"LstCategories"_s), QStringList{u"Jazz"_s});
  EXPECT_EQ(catalogue_.PlaylistNames, QStringList{u"Jazz"_s});
  Pick(u"LstEntries"_s, 0);
  for (const QString& button : {u"Command4"_s, u"CmdDelPlist"_s, u"CmdDelGroup"_s, u"pstruct"_s}) {
    prompter_.answers = {Answer::Cancel};
    Click(button);
    EXPECT_TRUE(prompter_.answers.empty()) << button.toStdString() << " asks";
  }
  EXPECT_EQ(Cells(u"LstEntries"_s).size(), 3);
}

TEST_F(PlaylistsBesideTheDesk, RequestedTracksTakeThePlaceOfTheLists) {
  const QString folder = Paths::FolderName(Paths::Playlists) + u"/Most Requested"_s;
  database_.tree.MakeFolder(folder);
  PlaylistLink{catalogue_.TrackPaths(ToMref(2)), u"7"_s}.Write(database_.tree.Path(folder + u"/Beta.lnk"_s));
  PressOnDesk(u"Command14"_s);
  Click(u"Command2"_s);
  ExpectWellLaidOut(Shown());
  EXPECT_EQ(Cells(u"LstRequested"_s, 1), QStringList{u"7"_s});
  Click(u"CmdReqSel"_s);
  Click(u"CmdReqAdQu"_s);
  EXPECT_EQ(Column(TrackColumn), QStringList{u"Beta"_s});
  EXPECT_EQ(Column(CommentColumn), QStringList{u"Tot-Req= 7"_s});
  Click(u"CmdReqEx"_s);
  EXPECT_TRUE(List(u"LstCategories"_s).isVisible());
}

TEST_F(PlaylistsBesideTheDesk, AListOfAnotherPlayerThatIsDroppedOnTheConsoleComesIntoTheQueue) {
  const QString list =
      database_.tree.Write(u"party.m3u8"_s, "/music/gamma.mp3\nC:\\m\\alpha.mp3\nnone.mp3\n");
  QMimeData dropped;
  dropped.setUrls({QUrl::fromLocalFile(database_.tree.Path(u"picture.png"_s)), QUrl::fromLocalFile(list)});
  QDragEnterEvent enter(QPoint(300, 300), Qt::CopyAction | Qt::MoveAction, &dropped, Qt::LeftButton, {});
  QApplication::sendEvent(&*window_, &enter);
  QDropEvent drop(QPointF(300, 300), Qt::CopyAction | Qt::MoveAction, &dropped, Qt::LeftButton, {});
  drop.setDropAction(Qt::MoveAction);
  QApplication::sendEvent(&*window_, &drop);
  EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "nobody may delete the file";
  loop_.RunFor(2s);
  EXPECT_EQ(Column(TrackColumn), (QStringList{u"Gamma"_s, u"Alpha"_s}));
  EXPECT_EQ(Queue().Name(), u"party"_s);
  EXPECT_TRUE(prompter_.Told().last().startsWith(u"1 Of 3 Tracks Were Not Found"_s));
}

TEST_F(PlaylistsBesideTheDesk, AGroupComesBackWithItsLinesAndIsSavedWithThem) {
  const QString folder = Paths::FolderName(Paths::Playlists) + u"/Rock/Live(Grp)"_s;
  database_.tree.MakeFolder(folder);
  const auto add = [this, &folder](int number, const QString& name) {
    PlaylistLink{{}, {}}.Write(database_.tree.Path(folder + u"/ %1~%2.lnk"_s.arg(number).arg(name)));
    database_.tree.Write(folder + u'/' + name + QString::number(number) + u".txt"_s,
                         "line " + QByteArray::number(number));
  };
  add(1, u"Beta"_s);
  add(2, u"Alpha"_s);
  add(3, u"Beta"_s);
  PressOnDesk(u"Command14"_s);
  Pick(u"LstCategories"_s, 0);
  ListTable& lists = List(u"LstPlaylists"_s);
  QTest::keyClick(&lists, Qt::Key_Down);
  Pick(u"LstPlaylists"_s, 0);
  QTest::keyClick(&lists, Qt::Key_Return);
  loop_.RunFor(2s);
  EXPECT_EQ(Column(TrackColumn), (QStringList{u"Beta"_s, u"Alpha"_s}));
  EXPECT_EQ(Column(CommentColumn), (QStringList{u"Grp"_s, u"Grp"_s}));
  EXPECT_TRUE(Queue().GroupQueueFlag());
  EXPECT_EQ(Queue().GroupLines(), (QStringList{u"line 1"_s, u"line 2"_s, u"line 3"_s}));
  PressOnDesk(u"Command13"_s);
  Pick(u"LstCategories"_s, 0);
  Type(u"again"_s);
  prompter_.answers = {Answer::Yes};
  Click(u"Cmdsave"_s);
  const PlaylistFolder saved =
      ReadPlaylist(database_.tree.Path(Paths::FolderName(Paths::Playlists) + u"/Rock/Again(Grp)"_s));
  ASSERT_EQ(saved.entries.size(), 3U);
  EXPECT_EQ(saved.entries[0].line, u"line 1"_s);
  EXPECT_EQ(saved.entries[1].line, u"line 3"_s);
  EXPECT_EQ(saved.entries[2].line, u"line 2"_s);
}

}  // namespace
