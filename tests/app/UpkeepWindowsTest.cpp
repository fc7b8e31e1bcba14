#include "app/BesideTheDesk.h"
#include "database/LibraryChange.h"
#include "database/PlaylistEntry.h"
#include "datamanager/windows/DataManagerWindow.h"
#include "datamanager/windows/TrackEditorWindow.h"
#include "support/Lookup.h"
#include "support/WindowParts.h"
#include "ui/ListTable.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

/// The Data Manager beside the desk, and the editor that it opens.
class UpkeepBesideTheDesk : public BesideTheDesk {
 protected:
  void SetUp() override {
    BesideTheDesk::SetUp();
    for (const QString& name : {u"Rock"_s, u"Pop"_s}) QDir(database_.paths(Paths::Categories)).mkdir(name);
    QDir().mkpath(Playlist());
    PlaylistLink{MusicPath(u"alpha"_s), u"Std"_s}.Write(Playlist() + u"/ 1~Alpha.lnk"_s);
    OpenDesk();
    EnqueueAll();
    Press(u"DataManager"_s);
    loop_.RunFor(1s);
    Manager().resize(1000, 680);
  }
  [[nodiscard]] QString Playlist() const { return database_.paths(Paths::Playlists) + u"/Party/Mix"_s; }
  [[nodiscard]] QString MusicPath(const QString& name) const {
    return database_.paths(Paths::Music) + u'/' + name + u".mp3"_s;
  }
  DataManagerWindow& Manager() { return *Opened<DataManagerWindow>(); }
  TrackEditorWindow& Editor() { return *Opened<TrackEditorWindow>(); }
  void Click(QWidget& window, const QString& name) {
    QTest::mouseClick(FindNamed<QPushButton>(window, name), Qt::LeftButton);
    loop_.RunFor(1s);
  }
  /// Rows of the Data Manager's list.
  void Select(const std::vector<int>& rows) {
    ListTable& list = *FindNamed<ListTable>(Manager(), u"ListView1"_s);
    list.clearSelection();
    for (const int row : rows) {
      const QPoint spot = list.visualRect(list.model()->index(row, 0)).center();
      QTest::mouseClick(list.viewport(), Qt::LeftButton,
                        row == rows.front() ? Qt::NoModifier : Qt::ControlModifier, spot);
    }
    loop_.RunFor(1100ms);
  }
  void Edit(int row) {
    Select({row});
    Click(Manager(), u"Command5"_s);
  }
  void Rename(const QString& name) {
    FindNamed<QLineEdit>(Editor(), u"Text1"_s)->setText(name);
    prompter_.answers = {Answer::Yes};
    Click(Editor(), u"Command5"_s);
  }
  [[nodiscard]] QString LastTold() const {
    return prompter_.asked.empty() ? QString() : prompter_.asked.back().text;
  }
};

TEST_F(UpkeepBesideTheDesk, ATrackOnAirIsRenamedWhileItPlaysOnAndIsNotDeleted) {
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(5s);
  ASSERT_EQ(Record(Deck::One).State, DeckState::Playing);
  Edit(0);
  ASSERT_TRUE(Editor().isVisible());
  ExpectWellLaidOut(Editor());
  EXPECT_LE(Editor().minimumSizeHint().width(), 1000);
  EXPECT_LE(Editor().minimumSizeHint().height(), 680);
  EXPECT_EQ(FindNamed<QLabel>(Editor(), u"Label1"_s)->text(), u"alpha.mp3"_s);
  const double before = Player(Deck::One).CurrentPosition();
  Rename(u"omega"_s);
  EXPECT_EQ(LastTold(), u"File Rename Was Successful"_s);
  EXPECT_EQ(FindNamed<QLabel>(Editor(), u"Label1"_s)->text(), u"omega.mp3"_s);
  EXPECT_EQ(Player(Deck::One).State(), PlayState::Playing);
  EXPECT_GT(Player(Deck::One).CurrentPosition(), before);
  EXPECT_EQ(Record(Deck::One).Title, u"Omega"_s);
  EXPECT_EQ(Record(Deck::One).FilePath, MusicPath(u"omega"_s));
  EXPECT_EQ(Queue().Row(1).title, u"Omega"_s);
  EXPECT_TRUE(QFileInfo::exists(Playlist() + u"/ 1~omega.lnk"_s));
  EXPECT_EQ(FindNamed<ListTable>(Manager(), u"ListView1"_s)->model()->index(0, 0).data().toString(),
            u"omega.mp3"_s);

  prompter_.answers = {};
  Click(Editor(), u"Command2"_s);
  EXPECT_EQ(LastTold(), u"omega.mp3 Is On Air On Deck 1 And Can Not Be Deleted Now"_s);
  EXPECT_TRUE(QFileInfo::exists(MusicPath(u"omega"_s)));
  Load(Deck::Two, 2);
  Edit(1);
  Click(Editor(), u"Command2"_s);
  EXPECT_EQ(LastTold(), u"beta.mp3 Is Loaded In Deck 2 And Can Not Be Deleted Now"_s);
  // The rename is undone from either window; the sound goes on.
  prompter_.answers = {Answer::Yes};
  Click(Manager(), u"UndoChange"_s);
  EXPECT_EQ(Record(Deck::One).FilePath, MusicPath(u"alpha"_s));
  EXPECT_EQ(Player(Deck::One).State(), PlayState::Playing);
}

TEST_F(UpkeepBesideTheDesk, FieldsOfTheEditorGoToTheFileAndABadFigureKeepsTheKeyboard) {
  Edit(1);
  auto& hi = *FindNamed<QLineEdit>(Editor(), u"Text3"_s);
  Editor().activateWindow();
  ASSERT_TRUE(TurnUntil([this] { return Editor().isActiveWindow(); }));
  hi.setFocus();
  hi.setText(u"high"_s);
  QTest::keyClick(&hi, Qt::Key_Tab);
  loop_.RunFor(1ms);
  EXPECT_EQ(LastTold(), u"Hi Pos Must Be A Number !"_s);
  EXPECT_TRUE(hi.hasFocus());
  hi.setText(u"3"_s);
  FindNamed<QComboBox>(Editor(), u"Combo1"_s)->setCurrentText(u"2001"_s);
  QTest::mouseClick(FindNamed<QRadioButton>(Editor(), u"Option1"_s), Qt::LeftButton);
  auto& comments = *FindNamed<QPlainTextEdit>(Editor(), u"Text2"_s);
  comments.setFocus();
  comments.setPlainText(u"one\ntwo"_s);
  comments.moveCursor(QTextCursor::End);
  // The keys on the screen type where the keyboard is.
  Click(Editor(), u"KeyQ"_s);
  Click(Editor(), u"KeyW"_s);
  Click(Editor(), u"Command4"_s);
  prompter_.asked.clear();
  Click(Editor(), u"Command6"_s);
  EXPECT_FALSE(Editor().isVisible());
  EXPECT_TRUE(prompter_.asked.empty());
  const QByteArray file = database_.Info(u"beta"_s);
  EXPECT_TRUE(file.contains("\r\n2001-Dec\r\n120\r\n3\r\n")) << file.toStdString();
  EXPECT_TRUE(file.endsWith("\r\none\r\ntwoQ\r\n")) << file.toStdString();
  EXPECT_EQ(catalogue_.TrackStartEnd[ToMref(2)], u"1,1"_s);

  Edit(1);
  FindNamed<QPlainTextEdit>(Editor(), u"Text2"_s)->setPlainText(u"x"_s);
  prompter_.answers = {Answer::No};
  Click(Editor(), u"Cmdclose"_s);
  EXPECT_EQ(LastTold(), u"Save Changes ?"_s);
  EXPECT_FALSE(Editor().isVisible());
}

TEST_F(UpkeepBesideTheDesk, NamesAreGivenRenamedAndTakenFromTheListsOfTheDataManager) {
  ListTable& names = *FindNamed<ListTable>(Manager(), u"List1"_s);
  EXPECT_FALSE(FindNamed<QPushButton>(Manager(), u"Command9"_s)->isEnabled()) << "no set is chosen";
  Click(Manager(), u"Command1_0"_s);
  prompter_.texts = {u"Acid"_s};
  prompter_.answers = {Answer::Yes};
  Click(Manager(), u"Command10"_s);
  EXPECT_TRUE(database_.Holds(Paths::Categories, u"Acid"_s));
  const auto choose = [&](const QString& name) {
    for (int row = 0; row < names.model()->rowCount(); ++row) {
      if (names.model()->index(row, 0).data().toString() != name) continue;
      QTest::mouseClick(names.viewport(), Qt::LeftButton, {},
                        names.visualRect(names.model()->index(row, 0)).center());
    }
    loop_.RunFor(1100ms);
  };
  choose(u"Acid"_s);
  Select({0, 2});
  Click(Manager(), u"Command12"_s);
  EXPECT_EQ(catalogue_.TrackGenres[ToMref(1)], u"~ALL CATEGORIES,Rock,Pop,Acid"_s);
  EXPECT_EQ(catalogue_.TrackGenres[ToMref(2)], u"~ALL CATEGORIES,Rock,Pop"_s);
  prompter_.answers = {Answer::Yes};
  Click(Manager(), u"UndoChange"_s);
  EXPECT_EQ(catalogue_.TrackGenres[ToMref(1)], u"~ALL CATEGORIES,Rock,Pop"_s);
  EXPECT_FALSE(FindNamed<QPushButton>(Manager(), u"UndoChange"_s)->isEnabled());
}

class UpkeepAtStart : public DeskTest {};

TEST_F(UpkeepAtStart, AChangeThatACrashBrokeOffIsEndedBeforeTheCatalogueIsReadAndTheOperatorIsTold) {
  AddThreeTracks();
  const LibraryChange change{
      .what = u"Rename Reference Rock To Hard"_s,
      .way = LibraryChange::Way::On,
      .steps = {SetInfoLine{u"beta"_s, InfoLine::Categories, u"~ALL CATEGORIES,Rock,Pop"_s,
                            u"~ALL CATEGORIES,Hard,Pop"_s}}};
  database_.Add(Paths::Utility, u".running-change"_s, change.ToBytes());
  Open();
  EXPECT_EQ(catalogue_.TrackGenres[ToMref(2)], u"~ALL CATEGORIES,Hard,Pop"_s);
  ASSERT_FALSE(prompter_.asked.empty());
  EXPECT_EQ(prompter_.asked.back().text,
            u"Rename Reference Rock To Hard\r\nWas Broken Off By The End Of The Program: It Is Finished Now"_s);
  EXPECT_FALSE(database_.Holds(Paths::Utility, u".running-change"_s));
}

}  // namespace
