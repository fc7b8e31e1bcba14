#include "app/BesideTheDesk.h"
#include "app/windows/ScopeWindow.h"
#include "app/windows/WaitPointer.h"
#include "console/desk/ScopeSettings.h"
#include "database/TaggedSound.h"
#include "database/windows/JingleImportWindow.h"
#include "database/windows/ScanWindow.h"
#include "database/windows/TransferWindow.h"
#include "database/windows/UtilityWindow.h"
#include "datamanager/windows/SearchWindow.h"
#include "support/Lookup.h"
#include "ui/ListTable.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class TheWindowsOfTheDesk : public BesideTheDesk {
 protected:
  void SetUp() override {
    BesideTheDesk::SetUp();
    OpenDesk();
  }
  static SearchWindow* Search() { return Opened<SearchWindow>(); }
  /// Searches for a title and adds all that is found.
  void AddFound(const QString& title) {
    Press(u"TrackSearch"_s);
    ASSERT_NE(Search(), nullptr);
    auto* text = FindNamed<QLineEdit>(*Search(), u"TxtSearch"_s);
    text->setText(title);
    QTest::keyClick(text, Qt::Key_Return);
    QTest::mouseClick(FindNamed<QPushButton>(*Search(), u"CmdSelectAll"_s), Qt::LeftButton);
    QTest::mouseClick(FindNamed<QPushButton>(*Search(), u"CmdAdd"_s), Qt::LeftButton);
    loop_.RunFor(50ms);
  }
};

TEST_F(TheWindowsOfTheDesk, WhatTheSearchFindsGoesIntoTheQueueAsOftenAsItIsAdded) {
  AddFound(u"a"_s);
  EXPECT_EQ(Queue().Count(), 3);
  EXPECT_EQ(Queue().Row(1).Text(CommentColumn), u"Play Me"_s);
  SearchWindow* const first = Search();
  AddFound(u"alpha"_s);
  EXPECT_EQ(Search(), first) << "the window is kept and raised";
  EXPECT_EQ(Column(TrackColumn), (QStringList{u"Alpha"_s, u"Beta"_s, u"Gamma"_s, u"Alpha"_s}));
  EXPECT_EQ(Queue().QueueTotalSeconds(), 60 + 60 + 90 + 60);
}

TEST_F(TheWindowsOfTheDesk, TheSearchAsksBeforeItGivesUpAGroupPlaylist) {
  AddFound(u"alpha"_s);
  Queue().SetName(u"Wedding"_s);
  Queue().SetGroup({u"line"_s});
  prompter_.answers = {Answer::No, Answer::Yes};
  AddFound(u"beta"_s);
  EXPECT_EQ(Column(TrackColumn), QStringList{u"Alpha"_s});
  EXPECT_EQ(prompter_.Told().last(),
            u"WeddingClear Group Playlist \r\nYou Can't Add Std Tracks To A Group Playlist ! ?"_s);
  AddFound(u"beta"_s);
  EXPECT_EQ(Column(TrackColumn), QStringList{u"Beta"_s});
  EXPECT_EQ(Queue().Name(), u"(No Name)"_s);
}

TEST_F(TheWindowsOfTheDesk, MusicThatIsTransferredIsFoundOnTheDeskAtOnce) {
  database_.Add(Paths::Utility, u"Delta/Delta - Song#2001-Mar#Album#.mp3"_s);
  audio_.SetDuration(database_.tree.Path(u"Kelvo2007_Utility/Delta/Delta - Song#2001-Mar#Album#.mp3"_s), 77);
  Press(u"Transfer"_s);
  auto* window = Opened<TransferWindow>();
  ASSERT_NE(window, nullptr);
  auto* list = window->findChild<ListTable*>();
  ASSERT_TRUE(loop_.RunUntil([&] { return list->model()->rowCount() == 1; }));
  loop_.RunFor(100ms);
  list->selectAll();
  prompter_.answers = {Answer::Yes, Answer::Yes, Answer::Yes, Answer::Yes};
  QTest::mouseClick(FindNamed<QPushButton>(*window, u"CmdMove"_s), Qt::LeftButton);
  ASSERT_TRUE(loop_.RunUntil([this] { return catalogue_.LastTrack() == 4; }));
  loop_.RunFor(1s);
  EXPECT_EQ(catalogue_.TrackNames[ToMref(4)], u"Delta - Song"_s);
  AddFound(u"song"_s);
  EXPECT_EQ(Column(TrackColumn), QStringList{u"Delta - Song"_s});
}

TEST_F(TheWindowsOfTheDesk, WhatItsTagsSayOfAFileIsKnownOnTheDeskWithoutTyping) {
  const QString drive = database_.tree.MakeFolder(u"drive"_s);
  database_.tree.Write(u"drive/track 01.mp3"_s,
                       Id3v2(TextFrame("TPE1", "Ann") + TextFrame("TIT2", "Long Day") +
                             TextFrame("TYER", "1985") + TextFrame("TBPM", "127")) +
                           SoundBytes());
  Press(u"Import"_s);
  auto* import = Opened<ScanWindow>();
  ASSERT_NE(import, nullptr);
  prompter_.paths = {drive};
  FindNamed<QPushButton>(*import, u"CmdBrowse"_s)->click();
  loop_.RunFor(100ms);
  FindNamed<QPushButton>(*import, u"CmdSearch"_s)->click();
  loop_.RunFor(1s);
  ASSERT_EQ(import->findChild<ListTable*>()->model()->rowCount(), 1);
  import->findChild<ListTable*>()->selectAll();
  FindNamed<QPushButton>(*import, u"CmdImport"_s)->click();
  loop_.RunFor(1s);
  EXPECT_EQ(prompter_.Told(), QStringList{u"1 Tracks Copied Successfully"_s});
  Press(u"Transfer"_s);
  auto* transfer = Opened<TransferWindow>();
  loop_.RunFor(1s);
  transfer->findChild<ListTable*>()->selectAll();
  prompter_.answers = {Answer::Yes};
  FindNamed<QPushButton>(*transfer, u"CmdMove"_s)->click();
  ASSERT_TRUE(loop_.RunUntil([this] { return catalogue_.LastTrack() == 4; }));
  EXPECT_EQ(catalogue_.TrackNames[ToMref(4)], u"Ann - Long Day"_s);
  EXPECT_EQ(catalogue_.TrackDates[ToMref(4)], u"1985-xxx"_s);
  EXPECT_EQ(catalogue_.TrackBpm[ToMref(4)], u"127"_s);
}

TEST_F(TheWindowsOfTheDesk, AFileThatIsStagedComesToTheOpenListsAndLeavesThemWhenItIsMoved) {
  Press(u"Transfer"_s);
  Press(u"Utility"_s);
  loop_.RunFor(100ms);
  auto* transfer = Opened<TransferWindow>();
  const auto* moves = transfer->findChild<ListTable*>()->model();
  const auto* waits = Opened<UtilityWindow>()->findChild<ListTable*>()->model();
  catalogue_.AddStagedFile(database_.Add(Paths::Utility, u"Delta/Delta - Song#2001-Mar#Album#.mp3"_s));
  loop_.RunFor(100ms);
  ASSERT_EQ(moves->rowCount(), 1);
  EXPECT_EQ(moves->index(0, TransferRows::Album).data().toString(), u"Album"_s);
  ASSERT_EQ(waits->rowCount(), 1);
  EXPECT_EQ(waits->index(0, 1).data().toString(), u"Delta"_s);

  transfer->findChild<ListTable*>()->selectAll();
  prompter_.answers = {Answer::Yes};
  QTest::mouseClick(transfer->findChild<QPushButton*>(u"CmdMove"_s), Qt::LeftButton);
  loop_.RunFor(1s);
  EXPECT_EQ(catalogue_.LastTrack(), 4);
  EXPECT_EQ(moves->rowCount(), 0);
  EXPECT_EQ(waits->rowCount(), 0);
}

TEST_F(TheWindowsOfTheDesk, TheFunctionKeysOfTheDeskWorkInEveryWindow) {
  EnqueueAll();
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  QTest::mouseClick(window_->findChild<QPushButton*>(u"CmdSearch"_s), Qt::LeftButton);
  ASSERT_NE(Search(), nullptr) << "the console's own button opens it too";
  QTest::keyClick(FindNamed<QLineEdit>(*Search(), u"TxtSearch"_s), Qt::Key_F7);
  loop_.RunFor(10s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Playing);
  EXPECT_EQ(desk_->Fades().CrossPan(), -200);
}

TEST_F(TheWindowsOfTheDesk, AsksBeforeAnImportThatRunsIsStoppedByTheEnd) {
  Press(u"Jingles"_s);
  const auto click = [this](const QString& name) {
    QTest::mouseClick(FindNamed<QPushButton>(*Opened<JingleImportWindow>(), name), Qt::LeftButton);
  };
  prompter_.paths = {database_.tree.Path()};
  click(u"CmdBrowse"_s);
  loop_.RunFor(10ms);
  prompter_.answers = {Answer::No};
  window_->close();
  click(u"CmdSearch"_s);
  loop_.RunFor(1s);
  EXPECT_EQ(prompter_.Told().last(),
            u"Music Is Still Being Imported Or Transferred !\r\nStop That And Quit ?"_s);
  EXPECT_TRUE(window_->isVisible());

  // Now that it is over, only the desk itself asks.
  prompter_.answers = {Answer::Yes};
  window_->close();
  loop_.RunFor(1s);
  EXPECT_EQ(prompter_.Told().last(), u"Quit Kelvo ? "_s);
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(TheWindowsOfTheDesk, ClosesItsWindowsWithTheDeskAndKeepsTheirPlace) {
  Press(u"TrackSearch"_s);
  Search()->resize(500, 600);
  Search()->move(60, 90);
  beside_.reset();
  EXPECT_EQ(Search(), nullptr);
  EXPECT_EQ(settings_.GetSetting(u"Kelvo"_s, u"Startup"_s, u"SearchPosx"_s), u"60"_s);
  beside_.emplace(*desk_, *window_);
  Press(u"TrackSearch"_s);
  EXPECT_EQ(Search()->pos(), QPoint(60, 90));
}

TEST_F(TheWindowsOfTheDesk, TheScopeHasAWindowThatLooksAtNothingWhenItIsClosed) {
  desk_->Settings().Set(setting::ScopeShown, false);
  EXPECT_FALSE(desk_->Programme().scope.Watched());
  Press(u"ScopeWindow"_s);
  auto* window = Opened<ScopeWindow>();
  ASSERT_NE(window, nullptr);
  EXPECT_TRUE(window->isVisible() && desk_->Programme().scope.Watched());
  window->close();
  EXPECT_FALSE(window->isVisible() || desk_->Programme().scope.Watched());
}

TEST_F(DeskTest, ThePointerWaitsFromTheConsolesShowingUntilItsCatalogueIsLoaded) {
  AddThreeTracks();
  Make();
  QWidget window;
  const WaitPointer pointer(*desk_, window);
  EXPECT_EQ(window.cursor().shape(), Qt::WaitCursor);
  desk_->Activate();
  ASSERT_NE(desk_->Load(), nullptr);
  EXPECT_EQ(window.cursor().shape(), Qt::WaitCursor);
  ASSERT_TRUE(loop_.RunUntil([this] { return desk_->CatalogueLoaded(); }));
  EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
}

}  // namespace
