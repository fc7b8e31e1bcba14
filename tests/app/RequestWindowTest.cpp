#include "app/BesideTheDesk.h"
#include "console/windows/ToReadPanel.h"
#include "database/PlaylistEntry.h"
#include "datamanager/windows/SearchWindow.h"
#include "reports/windows/ReportsWindow.h"
#include "reports/windows/TextViewerWindow.h"
#include "requests/windows/RequestWindow.h"
#include "support/Lookup.h"
#include "support/WindowParts.h"
#include "ui/ListTable.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gmock/gmock.h>

using namespace kelvo;
using namespace kelvo::testing;
using ::testing::ElementsAre;

namespace {

class RequestsBesideTheDesk : public BesideTheDesk {
 protected:
  void SetUp() override {
    BesideTheDesk::SetUp();
    database_.tree.Write(u"RequestFiles/NamesMale.txt"_s, "Andy\r\nBrian\r\n");
    database_.tree.Write(u"RequestFiles/NamesFem.txt"_s, "Alice\r\n");
    database_.tree.Write(u"RequestFiles/Messages.txt"_s, "Happy Birthday\r\nGet well\r\n");
  }
  void BringToFront(QWidget& window) {
    window.activateWindow();
    ASSERT_TRUE(TurnUntil([&window] { return window.isActiveWindow(); }));
  }
  /// To whatever has the keyboard of the window in front, as from the window system.
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::activeWindow()->windowHandle(), key, modifiers);
    loop_.RunFor(50ms);
  }
  void Type(const QString& words) {
    QTest::keyClicks(QApplication::focusWidget(), words);
    loop_.RunFor(50ms);
  }
  RequestWindow& Dialog() {
    auto* dialog = Opened<RequestWindow>();
    EXPECT_NE(dialog, nullptr);
    BringToFront(*dialog);
    return *dialog;
  }
  /// In the console: the words of a title, and the request of the first that has them.
  void WishFor(const QString& title) {
    BringToFront(*window_);
    Key(Qt::Key_F, Qt::ControlModifier);
    Type(title);
    loop_.RunFor(1s);
    Key(Qt::Key_W, Qt::ControlModifier);
    Dialog();
  }
  QString Field(const QString& name) { return FindNamed<QLineEdit>(Dialog(), name)->text(); }
  QPlainTextEdit& Message() { return *FindNamed<QPlainTextEdit>(Dialog(), u"Text1_2"_s); }
  QString ToRead() {
    auto* panel = FindNamed<QPlainTextEdit>(*window_, u"TxtToRead"_s);
    return panel->isVisible() ? panel->toPlainText() : QString();
  }
  void Pick(const QString& list, int row) {
    ListTable& table = *FindNamed<ListTable>(Dialog(), list);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                      table.visualRect(table.model()->index(row, 0)).center());
  }
};

TEST_F(RequestsBesideTheDesk, TenRequestsInARowAreTakenByKeyboardAlone) {
  OpenDesk();
  const QStringList titles{u"alpha"_s, u"beta"_s, u"gamma"_s};
  for (int number = 0; number < 10; ++number) {
    // The fourth caller and all after it want the same track: the window stays as it is.
    if (number < 4) WishFor(titles[std::min(number, 2)]);
    Type(u"Caller %1"_s.arg(number));
    Key(Qt::Key_Return);
    Type(u"Friend"_s);
    Key(Qt::Key_Return);
    Type(u"Hello"_s);
    Key(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(Message().toPlainText().isEmpty()) << number;
  }
  EXPECT_THAT(Column(CommentColumn), ElementsAre(u"Request-1"_s, u"Request-1"_s, u"Request-8"_s));
  EXPECT_TRUE(
      Queue().Row(3).requestText.startsWith(u"Request From: Caller 2\r\nTo: Friend\r\nMessage: Hello"_s));
  EXPECT_TRUE(
      Queue().Row(3).requestText.endsWith(u"Request From: Caller 9\r\nTo: Friend\r\nMessage: Hello"_s));
  const QString link = database_.paths(Paths::Playlists) + u"/Most Requested/gamma.lnk"_s;
  EXPECT_EQ(PlaylistLink::Read(link).arguments, u"8"_s);
  Key(Qt::Key_Escape);
  EXPECT_FALSE(Opened<RequestWindow>()->isVisible());
}

TEST_F(RequestsBesideTheDesk, NamesAndMessagesComeFromTheListsByButtonRowAndDoubleClick) {
  OpenDesk();
  WishFor(u"beta"_s);
  ExpectWellLaidOut(Dialog());
  EXPECT_EQ(FindNamed<QLabel>(Dialog(), u"LblTrack"_s)->text(), u"Beta"_s);
  auto* add = FindNamed<QPushButton>(Dialog(), u"Command1"_s);
  EXPECT_FALSE(add->isEnabled());
  Pick(u"List1_0"_s, 1);
  QTest::mouseClick(FindNamed<QPushButton>(Dialog(), u"Command3"_s), Qt::LeftButton);
  Pick(u"List1_1"_s, 0);
  QTest::mouseClick(FindNamed<QPushButton>(Dialog(), u"Command3"_s), Qt::LeftButton);
  EXPECT_EQ(Field(u"Text1_0"_s), u"Brian/Alice"_s);
  QTest::mouseDClick(FindNamed<QLineEdit>(Dialog(), u"Text1_1"_s), Qt::LeftButton);
  EXPECT_EQ(Field(u"Text1_1"_s), u"Alice"_s);
  Pick(u"List1_2"_s, 0);
  Key(Qt::Key_Return);
  Pick(u"List1_2"_s, 1);
  Key(Qt::Key_3, Qt::AltModifier);
  EXPECT_EQ(Message().toPlainText(), u"Happy Birthday\nGet well"_s);
  EXPECT_TRUE(add->isEnabled());
  // The lists are edited where the keyboard is.
  prompter_.texts = {u"Congratulations"_s};
  QTest::mouseClick(FindNamed<QPushButton>(Dialog(), u"CmdAdd"_s), Qt::LeftButton);
  loop_.RunFor(1s);
  Pick(u"List1_1"_s, 0);
  QTest::mouseClick(FindNamed<QPushButton>(Dialog(), u"CmdDel"_s), Qt::LeftButton);
  loop_.RunFor(1s);
  EXPECT_EQ(prompter_.asked.back().title, u"Update Messages"_s);
  EXPECT_EQ(database_.tree.Read(u"RequestFiles/Messages.txt"_s),
            "Happy Birthday\r\nGet well\r\nCongratulations\r\n");
  EXPECT_EQ(database_.tree.Read(u"RequestFiles/NamesFem.txt"_s), "");
}

TEST_F(RequestsBesideTheDesk, BrowserAndSearchOpenTheRequestOfASingleTrack) {
  OpenDesk();
  FindNamed<QLineEdit>(*window_, u"TrackFilter"_s)->setText(u"a"_s);
  loop_.RunFor(1s);
  auto* tracks = FindNamed<ListTable>(*window_, u"TrackList"_s);
  const auto press = [this](QWidget& window, const QString& button) {
    QTest::mouseClick(FindNamed<QPushButton>(window, button), Qt::LeftButton);
    loop_.RunFor(100ms);
  };
  tracks->selectAll();
  press(*window_, u"Command9"_s);
  EXPECT_EQ(prompter_.Told().back(), u"Single Tracks Only !"_s);
  EXPECT_EQ(Opened<RequestWindow>(), nullptr);
  tracks->selectRow(2);
  press(*window_, u"Command9"_s);
  EXPECT_EQ(FindNamed<QLabel>(Dialog(), u"LblTrack"_s)->text(), u"Gamma"_s);
  Press(u"TrackSearch"_s);
  SearchWindow& search = *Opened<SearchWindow>();
  auto* text = FindNamed<QLineEdit>(search, u"TxtSearch"_s);
  text->setText(u"al"_s);
  QTest::keyClick(text, Qt::Key_Return);
  loop_.RunFor(1s);
  FindNamed<ListTable>(search, u"LstResults"_s)->selectAll();
  press(search, u"Command5"_s);
  EXPECT_EQ(FindNamed<QLabel>(Dialog(), u"LblTrack"_s)->text(), u"Alpha"_s);
}

TEST_F(RequestsBesideTheDesk, OneKeyBringsTheFirstTrackOfTheSearchLineIntoTheQueue) {
  OpenDesk();
  BringToFront(*window_);
  Key(Qt::Key_F, Qt::ControlModifier);
  Type(u"be"_s);
  Key(Qt::Key_Return, Qt::ControlModifier);
  Type(u"gam"_s);
  Key(Qt::Key_Return, Qt::ControlModifier);
  loop_.RunFor(1s);
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Beta"_s, u"Gamma"_s));
}

TEST_F(RequestsBesideTheDesk, TheWordsAreReadWhileTheTrackIsOnAirAndTheRowsTellWhenTheyPlay) {
  OpenDesk();
  window_->resize(1600, 900);
  EnqueueAll();
  const auto ask = [this](int track, const QString& from) {
    Finish([](PlayQueue& queue, Mref mref, QString words) -> Job<> {
      static_cast<void>(co_await queue.AddRequest(mref, words));
    }(Queue(), ToMref(track), u"Request From: "_s + from));
  };
  ask(1, u"Al"_s);
  Load(Deck::One, 1);
  ask(1, u"Late"_s);
  EXPECT_TRUE(ToRead().isEmpty()) << "not before it is on air";
  Decks().ManualStart(Deck::One);
  loop_.RunFor(10s);
  EXPECT_TRUE(Queue().Row(1).requestText.isEmpty());
  EXPECT_EQ(ToRead(), u"Request From: Al\n--------------------------\nRequest From: Late"_s);
  const auto* rows = FindNamed<ListTable>(*window_, u"PlayQueueList"_s)->model();
  const auto time = [rows](int row, int column) { return rows->index(row, column).data().toString(); };
  EXPECT_EQ(time(1, QueueColumnCount), u"00:50"_s);
  EXPECT_EQ(time(2, QueueColumnCount), u"01:50"_s);
  EXPECT_EQ(time(0, QueueColumnCount), QString());
  EXPECT_EQ(time(0, QueueColumnCount + 1), u"09:00"_s);
  EXPECT_TRUE(rows->index(2, 0).data(Qt::ToolTipRole).toString().contains(u"Plays in about 01:50"_s));
  ask(1, u"Now"_s);
  EXPECT_TRUE(ToRead().endsWith(u"Request From: Now"_s)) << "its track is on air already";
  QTest::mouseClick(FindNamed<QPushButton>(*window_, u"CmdRequestRead"_s), Qt::LeftButton);
  EXPECT_TRUE(ToRead().isEmpty());
  ask(1, u"More"_s);
  loop_.RunFor(60s);
  EXPECT_TRUE(ToRead().isEmpty()) << "the track is through";
  EXPECT_EQ(time(1, QueueColumnCount), QString()) << "nothing plays";
}

TEST_F(RequestsBesideTheDesk, ReportsAreWrittenShownAndFollowTheDaysLog) {
  OpenDesk();
  EnqueueAll();
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(61s);
  Press(u"Reports"_s);
  loop_.RunFor(1s);
  ReportsWindow& reports = *Opened<ReportsWindow>();
  BringToFront(reports);
  ExpectWellLaidOut(reports);
  EXPECT_EQ(FindNamed<QLabel>(reports, u"LblTotals"_s)->text(), u"File Count = 3"_s);
  prompter_.texts = {u"60"_s};
  Key(Qt::Key_Return, Qt::ControlModifier);
  loop_.RunFor(2s);
  TextViewerWindow& viewer = *Opened<TextViewerWindow>();
  auto* text = FindNamed<QPlainTextEdit>(viewer, u"TxtFile"_s);
  EXPECT_TRUE(viewer.isVisible());
  EXPECT_TRUE(text->toPlainText().startsWith(u"Data Base Report ( Kelvo ) 01/06/2007\n"_s));
  ExpectWellLaidOut(viewer);
  BringToFront(reports);
  QTest::mouseClick(FindNamed<QPushButton>(reports, u"Command3"_s), Qt::LeftButton);
  loop_.RunFor(2s);
  EXPECT_TRUE(text->toPlainText().contains(u"Manual Play : 9 : 00 ~ Alpha"_s))
      << text->toPlainText().toStdString();
  BringToFront(reports);
  FindNamed<QRadioButton>(reports, u"OptMostPlayed"_s)->click();
  loop_.RunFor(2s);
  ExpectWellLaidOut(reports);
  const auto* plays = FindNamed<ListTable>(reports, u"LstReportPlays"_s)->model();
  ASSERT_EQ(plays->rowCount(), 1);
  EXPECT_EQ(plays->index(0, 0).data().toString(), u"Alpha"_s);
  EXPECT_EQ(plays->index(0, 3).data().toString(), u"01:00"_s);
  EXPECT_TRUE(
      FindNamed<QLabel>(reports, u"LblTotals"_s)->text().startsWith(u"Titles = 1, Times Played = 1"_s));
}

}  // namespace
