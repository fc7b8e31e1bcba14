// The volume unify and the beat counter in the joined desk, worked with mouse and keys.

#include "app/BesideTheDesk.h"
#include "datamanager/FakeGainTool.h"
#include "datamanager/windows/DataManagerWindow.h"
#include "datamanager/windows/TapWindow.h"
#include "datamanager/windows/UnifyWindow.h"
#include "support/Lookup.h"
#include "support/WindowParts.h"
#include "ui/ListTable.h"
#include "ui/ProgressStrip.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class UnifyOfDesk : public BesideTheDesk {
 protected:
  void SetUp() override {
    BesideTheDesk::SetUp();
    for (const QString& base : {u"alpha"_s, u"beta"_s, u"gamma"_s}) {
      database_.Add(Paths::Music, base + u".mp3"_s, FakeGainTool::Music("ok", 3.0));
      database_.Add(Paths::Info, base + u".kif"_s, InfoBytes("60").replace("-3.5,0.2", "?"));
    }
  }
  void TearDown() override {
    beside_.reset();
    window_.reset();
  }
  template <typename Window>
  Window& Open(const QString& id) {
    Press(id);
    auto* window = Opened<Window>();
    EXPECT_NE(window, nullptr);
    window->activateWindow();
    EXPECT_TRUE(TurnUntil([window] { return window->isActiveWindow(); }));
    loop_.RunFor(100ms);
    return *window;
  }
  static void Click(QWidget& window, const QString& name) {
    QTest::mouseClick(FindNamed<QPushButton>(window, name), Qt::LeftButton);
  }
  int Steps(const QString& base) {
    return FakeGainTool::Steps(
        database_.tree.Read(Paths::FolderName(Paths::Music) + u'/' + base + u".mp3"_s));
  }

  FakeGainTool tool_{database_.tree};
};

TEST_F(UnifyOfDesk, TheButtonUnifiesAllButWhatIsInADeck) {
  OpenDesk();
  EnqueueAll();
  Load(Deck::One, 1);
  auto& window = Open<UnifyWindow>(u"UnifyVolume"_s);
  ExpectWellLaidOut(window);
  auto& list = *FindNamed<ListTable>(window, u"ListView1"_s);
  ASSERT_EQ(list.model()->rowCount(), 3);
  EXPECT_EQ(list.model()->index(0, 1).data().toString(), u"?"_s);

  // Typed as the operator types it: the point leads on to the tenths.
  auto& whole = *FindNamed<QLineEdit>(window, u"txtTargetInt"_s);
  Click(window, u"CmdSelectAll"_s);
  EXPECT_EQ(FindNamed<QPushButton>(window, u"CmdSelectAll"_s)->text(), u"Clear All"_s);
  whole.setFocus();
  whole.selectAll();
  QTest::keyClicks(&whole, u"8x7."_s);
  QWidget* const tenths = window.focusWidget();
  EXPECT_EQ(tenths->objectName(), u"txtTargetDec"_s);
  QTest::keyClicks(tenths, u"5"_s);
  QTest::keyClick(tenths, Qt::Key_Return);
  loop_.RunFor(100ms);
  EXPECT_EQ(whole.text(), u"87"_s);

  auto& run = *FindNamed<QPushButton>(window, u"Command8"_s);
  EXPECT_EQ(run.text(), u"UNIFY VOLUME"_s);
  QTest::keyClick(&window, Qt::Key_U, Qt::ControlModifier);
  EXPECT_EQ(run.text(), u"CANCEL"_s);
  EXPECT_FALSE(FindNamed<QPushButton>(window, u"CmdMeasure"_s)->isEnabled());
  auto& bar = *FindNamed<ProgressStrip>(window, u"PrgUnify"_s);
  ASSERT_TRUE(loop_.RunUntil([&bar] { return bar.Words() == u"Waiting for 1 track in use"_s; }));
  EXPECT_EQ(Steps(u"alpha"_s), 0);
  EXPECT_EQ(Steps(u"beta"_s), 1);
  EXPECT_EQ(Steps(u"gamma"_s), 1);
  EXPECT_EQ(list.model()->index(1, 1).data().toString(), u"86.0"_s);
  EXPECT_EQ(list.model()->index(1, 2).data().toString(), u"0.0"_s);
  EXPECT_EQ(catalogue_.TrackGain[ToMref(2)], u"86.0,0.0"_s);

  // Another track takes the deck.
  Load(Deck::One, 2);
  ASSERT_TRUE(loop_.RunUntil([&run] { return run.text() == u"UNIFY VOLUME"_s; }));
  EXPECT_EQ(Steps(u"alpha"_s), 1);
  EXPECT_EQ(FindNamed<QLabel>(window, u"LblSum"_s)->text(), u"3 changed."_s);
  EXPECT_EQ(bar.Words(), QString());
  window.close();
  EXPECT_EQ(settings_.GetSetting(u"Kelvo"_s, u"MpGain"_s, u"GainInt"_s, {}), u"87"_s);
  EXPECT_EQ(settings_.GetSetting(u"Kelvo"_s, u"MpGain"_s, u"GainDec"_s, {}), u"5"_s);
}

TEST_F(UnifyOfDesk, CancelEndsItFromTheSameButtonAndTheProgramAsksBeforeItEnds) {
  OpenDesk();
  EnqueueAll();
  Load(Deck::One, 1);
  auto& window = Open<UnifyWindow>(u"UnifyVolume"_s);
  Click(window, u"Command8"_s);
  auto& bar = *FindNamed<ProgressStrip>(window, u"PrgUnify"_s);
  ASSERT_TRUE(loop_.RunUntil([&bar] { return bar.Words().startsWith(u"Waiting"_s); }));
  prompter_.answers = {Answer::No};
  bool closes = true;
  const auto ask = [](Job<bool> may, bool* answer) -> Job<> { *answer = co_await std::move(may); };
  Finish(ask(window_->MayClose(), &closes));
  EXPECT_FALSE(closes);
  EXPECT_TRUE(prompter_.Told().last().startsWith(u"Volumes Are Still Being Unified !"_s));
  Click(window, u"Command8"_s);
  ASSERT_TRUE(loop_.RunUntil([&bar] { return bar.Words() == u"Operation Cancelled ! "_s; }));
  EXPECT_EQ(FindNamed<QPushButton>(window, u"Command8"_s)->text(), u"UNIFY VOLUME"_s);
  EXPECT_EQ(Steps(u"alpha"_s), 0);
}

TEST_F(UnifyOfDesk, TheSpaceBarTapsWhileItCountsAndSpeaksOtherwise) {
  audio_.outputNames = {u"Main"_s};
  OpenDesk();
  EnqueueAll();
  desk_->Queue().Click(1);
  auto& window = Open<TapWindow>(u"CountBeats"_s);
  ExpectWellLaidOut(window);
  auto& count = *FindNamed<QPushButton>(window, u"Command25"_s);
  auto& box = *FindNamed<QLineEdit>(window, u"Text1"_s);
  Click(window, u"CmdPlay"_s);
  loop_.RunFor(1s);
  QTest::mouseClick(&count, Qt::LeftButton);
  EXPECT_EQ(count.text(), u"See Result"_s);
  EXPECT_EQ(box.text(), u"Waiting !"_s);
  EXPECT_EQ(FindNamed<QWidget>(window, u"PnlCount"_s)->property("fixedName").toString(), u"Picture2"_s);
  EXPECT_TRUE(FindNamed<QCheckBox>(window, u"Check2"_s)->isVisible());
  ExpectWellLaidOut(window);
  count.setFocus();
  for (int tap = 0; tap < 8; ++tap) {
    QTest::keyClick(window.focusWidget(), Qt::Key_Space);
    loop_.RunFor(500ms);
  }
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, u" "_s, true);
  QApplication::sendEvent(&box, &held);
  EXPECT_EQ(box.text(), u"Beat= 8"_s) << "a key that is held has tapped once";
  EXPECT_EQ(window.focusWidget(), &box);
  EXPECT_FALSE(desk_->Speak().SectionDisabled() || desk_->Speak().AfadeDown());
  QTest::mouseClick(&count, Qt::LeftButton);
  EXPECT_EQ(box.text(), u"121"_s);
  EXPECT_EQ(FindNamed<QLabel>(window, u"LblMedian"_s)->text(), u"120.0"_s);
  prompter_.answers = {Answer::Ok};
  Click(window, u"Command26"_s);
  loop_.RunFor(100ms);
  EXPECT_EQ(catalogue_.TrackBpm[ToMref(1)], u"121"_s);
  Click(window, u"CmdHalf"_s);
  EXPECT_EQ(box.text(), u"60.5"_s);
  Click(window, u"CmdUseMedian"_s);
  EXPECT_EQ(box.text(), u"120"_s);
  // The only device is the programme's: a deck that goes on air has it for itself.
  EXPECT_FALSE(FindNamed<QPushButton>(window, u"CmdPlay"_s)->isEnabled());
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(1s);
  EXPECT_FALSE(FindNamed<QPushButton>(window, u"CmdStop"_s)->isEnabled()) << "it has stopped";
  EXPECT_FALSE(FindNamed<QPushButton>(window, u"CmdPlay"_s)->isEnabled());
  // Nothing is counted any more: the space bar is the desk's again.
  count.setFocus();
  QTest::keyPress(&count, Qt::Key_Space);
  loop_.RunFor(100ms);
  EXPECT_TRUE(desk_->Speak().SectionDisabled() || desk_->Speak().AfadeDown());
  QTest::keyRelease(&count, Qt::Key_Space);
}

TEST_F(UnifyOfDesk, TheDataManagerLeadsToBothAndAsksAtItsEnd) {
  Set(u"PFLDeviceName"_s, u"Headphones"_s);
  OpenDesk();
  auto& manager = Open<DataManagerWindow>(u"DataManager"_s);
  loop_.RunFor(1s);
  auto& table = *FindNamed<QTableView>(manager, u"ListView1"_s);
  EXPECT_FALSE(FindNamed<QPushButton>(manager, u"Command26"_s)->isEnabled()) << "nothing was counted";
  table.selectRow(1);
  loop_.RunFor(100ms);
  Click(manager, u"Command25"_s);
  loop_.RunFor(100ms);
  auto& taps = *Opened<TapWindow>();
  EXPECT_EQ(FindNamed<QLabel>(taps, u"LblTrack"_s)->text(), u"beta.mp3"_s);
  auto& box = *FindNamed<QLineEdit>(taps, u"Text1"_s);
  box.selectAll();
  QTest::keyClicks(&box, u"99"_s);
  table.selectRow(2);
  loop_.RunFor(2s);
  prompter_.answers = {Answer::Ok};
  Click(manager, u"Command26"_s);
  loop_.RunFor(100ms);
  EXPECT_EQ(prompter_.Told().last(), u"Save Bpm Value 99 To Track gamma ?"_s);
  EXPECT_EQ(catalogue_.TrackBpm[ToMref(3)], u"99"_s);
  taps.close();

  Click(manager, u"Command8"_s);
  loop_.RunFor(100ms);
  auto& unify = *Opened<UnifyWindow>();
  auto& list = *FindNamed<ListTable>(unify, u"LstUnify"_s);
  ASSERT_EQ(list.model()->rowCount(), 1);
  Click(unify, u"Command8"_s);
  ASSERT_TRUE(loop_.RunUntil([this] { return catalogue_.TrackGain[ToMref(3)] == u"89.0,0.0"_s; }));
  EXPECT_EQ(table.model()->index(2, 2).data().toString(), u"89.0"_s);
  loop_.RunFor(1s);
  Click(unify, u"CmdShowAll"_s);
  loop_.RunFor(100ms);
  EXPECT_EQ(list.model()->rowCount(), 3);
  unify.close();

  prompter_.answers = {Answer::Yes};
  Click(manager, u"Command6"_s);
  loop_.RunFor(100ms);
  EXPECT_EQ(prompter_.Told().last(), u"2 Track/s have not had Volume Unified\r\nUnify Now?"_s);
  EXPECT_TRUE(manager.isVisible());
  EXPECT_TRUE(unify.isVisible());
  EXPECT_EQ(list.model()->rowCount(), 2);
}

}  // namespace
