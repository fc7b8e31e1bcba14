#include "console/ConsoleOnScreen.h"
#include "console/windows/TrackMime.h"
#include "ui/ProgressStrip.h"

#include <QDropEvent>
#include <QMimeData>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

/// The desk on its screen, with three sound bites of a few seconds.
class TheJingles : public ConsoleOnScreen {
 protected:
  void SetUp() override {
    ConsoleOnScreen::SetUp();
    for (const QString& name : {u"horn"_s, u"applause"_s, u"station id"_s}) {
      const QString path = database_.Add(Paths::Jingles, name + u".mp3"_s, "sound");
      audio_.SetDuration(path, name == u"horn"_s ? 2.5 : 8);
    }
  }
  void OpenDesk() {
    OpenWindow();
    ASSERT_EQ(Bites().Bites().Count(), 3);
  }
  Jingles& Bites() { return desk_->Bites(); }
  ListTable& BiteList() { return Find<ListTable>(u"LstSoundBites"_s); }
  QString Bank(int button) { return Find<QPushButton>(u"CmdJingle%1"_s.arg(button)).text(); }
  void ClickBite(int row) {
    QTest::mouseClick(BiteList().viewport(), Qt::LeftButton, {},
                      BiteList().visualRect(BiteList().model()->index(row, 0)).center());
    loop_.RunFor(100ms);
  }
  void Store(int row, int button) {
    ClickBite(row);
    Click(u"CmdBank"_s);
    Click(u"CmdJingle%1"_s.arg(button));
    loop_.RunFor(100ms);
  }
  void Press(int button) {
    Click(u"CmdJingle%1"_s.arg(button));
    loop_.RunFor(100ms);
  }
};

TEST_F(TheJingles, AClickLoadsABiteAndADoubleClickPlaysItFromItsBeginning) {
  OpenDesk();
  EXPECT_EQ(Cell(BiteList(), 0), u"applause"_s) << "by their names";
  ClickBite(1);
  EXPECT_EQ(Bites().State(), DeckState::Loaded);
  EXPECT_EQ(Find<ProgressStrip>(u"BarBite"_s).Words(), u"Duration: 2.5 Secs"_s);
  EXPECT_FALSE(Bites().Plays());
  DoubleClick(BiteList(), 1);
  EXPECT_TRUE(Bites().Plays());
  EXPECT_TRUE(desk_->Plays()) << "the desk asks before it closes";
  loop_.RunFor(3s);
  EXPECT_FALSE(Bites().Plays());
  EXPECT_EQ(Bites().State(), DeckState::Done);
  DoubleClick(BiteList(), 1);
  EXPECT_TRUE(Bites().Plays()) << "again from the beginning";
  DoubleClick(BiteList(), 0);
  EXPECT_TRUE(Bites().Plays());
  EXPECT_EQ(Bites().Title(), u"applause"_s);
  Click(u"CmdStopBite"_s);
  EXPECT_FALSE(Bites().Plays());
}

TEST_F(TheJingles, AButtonOfTheBankKeepsItsBiteReadyAndStopsItAtASecondPress) {
  OpenDesk();
  EXPECT_EQ(Bank(1), u"Not Set"_s);
  Press(1);
  EXPECT_FALSE(Bites().Plays());
  EXPECT_FALSE(Find<QPushButton>(u"CmdBank"_s).isEnabled()) << "nothing is selected";
  Store(0, 1);
  Store(1, 5);
  EXPECT_EQ(Bank(1), u"applause"_s);
  EXPECT_FALSE(Bites().Plays()) << "storing does not play";
  Click(u"CmdJingle1"_s);
  EXPECT_TRUE(Bites().Plays()) << "at once: no file is opened for it";
  EXPECT_EQ(Bites().SoundingButton(), 0);
  QTest::keyClick(&*window_, Qt::Key_F5, Qt::ControlModifier);
  EXPECT_EQ(Bites().Title(), u"horn"_s) << "one at a time";
  loop_.RunFor(3s);
  EXPECT_FALSE(Bites().Plays());
  Press(5);
  EXPECT_TRUE(Bites().Plays()) << "ready again behind its end";
  Press(5);
  EXPECT_FALSE(Bites().Plays());
}

TEST_F(TheJingles, TheBankItsLevelAndWhatHappensToTheFilesOutliveTheDesk) {
  OpenDesk();
  Store(0, 1);
  Store(2, 4);
  Bites().SetSlider(600);
  EXPECT_EQ(Find<QLabel>(u"LblJingVol"_s).text(), u"24"_s);
  const QString path = database_.paths(Paths::Jingles) + u"/applause"_s;
  ASSERT_TRUE(QFile::rename(path + u".mp3"_s, path + u" long.mp3"_s));
  catalogue_.RenameJingle(path + u".mp3"_s, path + u" long.mp3"_s);
  EXPECT_EQ(Bites().BankName(0), u"applause long"_s);
  desk_->SaveSettings();
  window_.reset();
  desk_.reset();
  OpenWindow();
  EXPECT_EQ(Bites().BankName(0), u"applause long"_s);
  EXPECT_EQ(Bites().BankName(3), u"station id"_s);
  EXPECT_EQ(Bites().BankName(1), QString());
  EXPECT_EQ(Bites().Slider(), 600);
  loop_.RunFor(1s);
  Press(4);
  EXPECT_TRUE(Bites().Plays());
  Bites().Stop();
  catalogue_.RemoveJingle(database_.paths(Paths::Jingles) + u"/station id.mp3"_s);
  Press(4);
  EXPECT_FALSE(Bites().Plays()) << "its bite is gone";
}

TEST_F(TheJingles, ABiteIsDroppedOnAButton) {
  OpenDesk();
  QMimeData data;
  data.setData(kSoundBiteMime, "1");
  auto& button = Find<QPushButton>(u"CmdJingle3"_s);
  const QPoint spot = button.rect().center();
  QDragEnterEvent enter(spot, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&button, &enter);
  ASSERT_TRUE(enter.isAccepted());
  QDropEvent drop(spot, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&button, &drop);
  EXPECT_EQ(Bites().BankName(2), u"horn"_s);
}

TEST_F(TheJingles, ABiteGoesToTheQueueUnlessATrackHasItsName) {
  OpenDesk();
  ClickBite(0);
  const qint64 seconds = Queue().QueueTotalSeconds();
  Click(u"CmdQueueBite"_s);
  loop_.RunFor(100ms);
  ASSERT_EQ(Queue().Count(), 1);
  EXPECT_EQ(Cell(QueueList(), 0), u"applause"_s);
  EXPECT_EQ(Queue().Row(1).Text(CommentColumn), u"Sound Bite"_s);
  EXPECT_EQ(Queue().Row(1).Text(GenreColumn), u"N/A"_s);
  EXPECT_EQ(Queue().QueueTotalSeconds(), seconds);
  Load(Deck::One, 1);
  EXPECT_EQ(Record(Deck::One).FilePath, Bites().FilePath());

  database_.Add(Paths::Info, u"horn.kif"_s, "");
  ClickBite(1);
  Click(u"CmdQueueBite"_s);
  loop_.RunFor(100ms);
  EXPECT_EQ(Queue().Count(), 1);
  EXPECT_EQ(Find<QLabel>(u"LblBiteInfo"_s).text(), u"Error: Track With Same Name Exists!"_s);
}

TEST_F(TheJingles, ABiteThatIsImportedIsListedAtItsPlaceAndOneThatCannotBePlayedSaysSo) {
  OpenDesk();
  ClickBite(1);
  const QString path = database_.Add(Paths::Jingles, u"bell.mp3"_s, "sound");
  audio_.SetDuration(path, -1);
  catalogue_.AddJingle(path);
  ASSERT_EQ(Bites().Bites().Count(), 4);
  EXPECT_EQ(Cell(BiteList(), 1), u"bell"_s);
  EXPECT_EQ(Bites().Bites()[Bites().Selected()].name, u"horn"_s) << "what was selected stays";
  ClickBite(1);
  EXPECT_TRUE(Find<QLabel>(u"LblBiteInfo"_s).text().startsWith(u"bell can't be played"_s));
  EXPECT_EQ(Bites().Title(), u"horn"_s) << "what was loaded stays";
}

}  // namespace
