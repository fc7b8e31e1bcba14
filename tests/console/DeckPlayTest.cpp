#include "console/DeskFixture.h"

#include <QFile>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::DeskTest;
using ::testing::ElementsAre;
using testing::InfoBytes;

class DeckPlayTest : public DeskTest {
 protected:
  void OpenDesk() {
    AddThreeTracks();
    Open();
    EnqueueAll();
    Load(Deck::One, 1);
  }
  /// A track of which the database says `stored` seconds and that ends after `true_`, played to its end.
  void PlayToEnd(double stored, double true_) {
    AddTrack(u"alpha"_s, stored, true_);
    Open();
    EnqueueAll();
    Load(Deck::One, 1);
    Decks().ManualStart(Deck::One);
    loop_.RunFor(Nanoseconds(static_cast<std::int64_t>(true_ * 1e9)) + 2s);
  }
};

TEST_F(DeckPlayTest, AStartedDeckPlaysIsMarkedRecordedAndCountsDown) {
  OpenDesk();
  Decks().ManualStart(Deck::Two);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Empty) << "an empty deck does not start";
  Decks().ManualStart(Deck::One);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Playing);
  EXPECT_EQ(Player(Deck::One).State(), PlayState::Playing);
  EXPECT_EQ(Queue().Row(1).Text(CommentColumn), u"Now Playing 9:00"_s);
  loop_.RunFor(10300ms);
  EXPECT_NEAR(Record(Deck::One).Position, 10.2, 0.2);
  EXPECT_EQ(Record(Deck::One).RemainSeconds, 49);
  EXPECT_EQ(Record(Deck::One).ProgressValue(), 10);
  EXPECT_THAT(SessionCodes(), ElementsAre(1, 3));
}

TEST_F(DeckPlayTest, TheLossOfASliderIsTwiceAsManyHundredthsOfADecibel) {
  OpenDesk();
  Decks().SetLoss(Deck::One, 150);
  EXPECT_EQ(Player(Deck::One).Volume(), -300);
  Decks().SetLoss(Deck::One, 5000);
  EXPECT_EQ(Player(Deck::One).Volume(), -4000);
  Decks().SetLoss(Deck::One, -1);
  EXPECT_EQ(Player(Deck::One).Volume(), 0);
}

TEST_F(DeckPlayTest, ALiveDeckIsStoppedOnlyOnConfirmationAnyOtherAtOnce) {
  OpenDesk();
  Decks().ManualStart(Deck::One);
  loop_.RunFor(5s);
  Decks().StopCommand(Deck::One);
  ASSERT_TRUE(Panel().Visible());
  EXPECT_EQ(Panel().Question().text, u"DECK 1 IS PLAYING LIVE !\r\n"_s);
  EXPECT_EQ(Panel().Question().button, u"STOP DECK 1"_s);
  EXPECT_EQ(Player(Deck::One).State(), PlayState::Playing);
  Panel().Confirm();
  EXPECT_EQ(Record(Deck::One).State, DeckState::Done);
  EXPECT_EQ(Player(Deck::One).State(), PlayState::Stopped);
  EXPECT_NEAR(Record(Deck::One).Position, 5, 0.1) << "a stop keeps the position";
  EXPECT_EQ(Queue().Row(1).Text(CommentColumn), u"Stopped 9:00"_s);

  Decks().ManualStart(Deck::One);
  loop_.RunFor(2s);
  EXPECT_NEAR(Record(Deck::One).Position, 7, 0.2) << "a stopped deck goes on from where it stands";
  Decks().SetLoss(Deck::One, 200);
  desk_->State().TransitionActive = true;
  Decks().StopCommand(Deck::One);
  EXPECT_EQ(Player(Deck::One).State(), PlayState::Playing) << "not during a transition";
  desk_->State().TransitionActive = false;
  Decks().StopCommand(Deck::One);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Done) << "nobody hears it: no question";
  EXPECT_THAT(SessionCodes(), ElementsAre(1, 3, 13, 3, 13));
  Decks().StopCommand(Deck::Two);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Empty);
}

TEST_F(DeckPlayTest, APlayedOutDeckIsMarkedRecordedAndStartsAgainFromItsBeginning) {
  OpenDesk();
  desk_->SetStatusLine(u"Now Playing"_s);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(62s);
  const DeckRecord& record = Record(Deck::One);
  EXPECT_EQ(record.State, DeckState::Done);
  EXPECT_TRUE(record.PlayedOut);
  EXPECT_EQ(record.Position, 60);
  EXPECT_EQ(record.RemainSeconds, 0);
  EXPECT_EQ(Queue().Row(1).Text(CommentColumn), u"Played- 9:01"_s);
  EXPECT_TRUE(desk_->State().NextTrackDue);
  EXPECT_EQ(desk_->StatusLine(), u"About Kelvo"_s);
  EXPECT_THAT(SessionCodes(), ElementsAre(1, 3, 19));
  EXPECT_EQ(desk_->Session().Events().back().Pos, 60);
  EXPECT_TRUE(Decks().WasRecentlyPlayed(Deck::One));
  EXPECT_FALSE(Decks().WasRecentlyPlayed(Deck::Two));

  Decks().ManualStart(Deck::One);
  EXPECT_FALSE(record.PlayedOut);
  EXPECT_FALSE(Decks().WasRecentlyPlayed(Deck::One));
  loop_.RunFor(3s);
  EXPECT_NEAR(record.Position, 3, 0.2);
  Queue().Click(2);
  Decks().SetLoss(Deck::One, 2000);
  loop_.RunFor(1min);
  Load(Deck::One, 2);
  EXPECT_TRUE(Queue().Row(1).Text(CommentColumn).startsWith(u"Played- "_s))
      << "it reached its end: not faded";
}

TEST_F(DeckPlayTest, AWrongStoredDurationIsCorrectedInTheFileByLineThirteenAlone) {
  PlayToEnd(200, 61.7);
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(1)), 61);
  EXPECT_EQ(Record(Deck::One).Title, u"Track Time Was Adjusted!"_s);
  EXPECT_EQ(Record(Deck::One).Position, Record(Deck::One).Duration);
  EXPECT_EQ(database_.Info(u"alpha"_s), InfoBytes("61"));
}

TEST_F(DeckPlayTest, ATrackLongerThanStoredIsCorrectedToo) {
  PlayToEnd(10, 12.5);
  EXPECT_EQ(database_.Info(u"alpha"_s), InfoBytes("12"));
  EXPECT_EQ(Record(Deck::One).RemainSeconds, 0);
}

TEST_F(DeckPlayTest, ADurationWithinASecondStays) {
  PlayToEnd(61, 60.2);
  EXPECT_EQ(database_.Info(u"alpha"_s), InfoBytes("61"));
  EXPECT_EQ(Record(Deck::One).Title, u"Alpha"_s);
}

TEST_F(DeckPlayTest, NothingIsCorrectedWhenTheSettingIsNotTheNumberOne) {
  Set(u"FixTrackDurErrors"_s, u"True"_s);
  PlayToEnd(200, 60);
  EXPECT_EQ(database_.Info(u"alpha"_s), InfoBytes("200"));
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(1)), 200);
  EXPECT_THAT(SessionCodes(), ElementsAre(1, 3, 19));
}

TEST_F(DeckPlayTest, AStreamThatBreaksOffIsNotTakenForTheTracksLength) {
  AddTrack(u"alpha"_s, 60, 60);
  Open();
  EnqueueAll();
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(20s);
  Disk(Deck::One).BreakOff();
  loop_.RunFor(1s);
  EXPECT_EQ(database_.Info(u"alpha"_s), InfoBytes("60"));
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(1)), 60);
  EXPECT_EQ(Record(Deck::One).Title, u"Alpha"_s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Done);
  EXPECT_TRUE(Log().contains(u"broke off"_s)) << Log().toStdString();
  EXPECT_THAT(SessionCodes(), ElementsAre(1, 3, 19));
}

TEST_F(DeckPlayTest, AutomaticPlayNeitherCorrectsNorRecordsAnEnd) {
  AddTrack(u"alpha"_s, 200, 60);
  Open();
  EnqueueAll();
  Load(Deck::One, 1);
  desk_->Status().Stop();  // or automatic play would go on with the same row
  desk_->State().AutoPlayOn = true;
  Decks().ManualStart(Deck::One);
  loop_.RunFor(62s);
  EXPECT_EQ(database_.Info(u"alpha"_s), InfoBytes("200"));
  EXPECT_EQ(Queue().Row(1).status, RowStatus::Played);
  EXPECT_THAT(SessionCodes(), ElementsAre(1));
}

TEST_F(DeckPlayTest, ACorrectionWithoutAnInfoFileStaysInTheCatalogueAndAFailureIsTold) {
  AddTrack(u"alpha"_s, 200, 60);
  AddTrack(u"beta"_s, 200, 60);
  Open();
  EnqueueAll();
  const QString info = database_.paths(Paths::Info);
  QFile::remove(info + u"/alpha.kif"_s);
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  QFile::remove(info + u"/beta.kif"_s);
  database_.tree.MakeFolder(Paths::FolderName(Paths::Info) + u"/beta.kif"_s);
  Decks().ManualStart(Deck::One);
  Decks().ManualStart(Deck::Two);
  loop_.RunFor(62s);
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(1)), 60);
  EXPECT_FALSE(database_.Holds(Paths::Info, u"alpha.kif"_s));
  ASSERT_EQ(prompter_.asked.size(), 1U);
  EXPECT_TRUE(prompter_.asked[0].text.startsWith(u"The length of beta could not be put right.\r\n"_s))
      << prompter_.asked[0].text.toStdString();
  EXPECT_TRUE(Log().contains(u" adjtime"_s));
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Done);
}

TEST_F(DeckPlayTest, SkipsSetTheirPositionsAndAreRefusedOnALiveDeck) {
  OpenDesk();
  Decks().BeginFastMove(Deck::One, FastMove::SkipToEnd);
  EXPECT_EQ(Record(Deck::One).Position, 60);
  EXPECT_EQ(Record(Deck::One).RemainSeconds, 0);
  Decks().BeginFastMove(Deck::One, FastMove::SkipToStart);
  EXPECT_EQ(Record(Deck::One).Position, 0);
  EXPECT_EQ(Player(Deck::One).CurrentPosition(), 1);
  EXPECT_EQ(Record(Deck::One).RemainSeconds, 60);
  Decks().EndFastMove(Deck::One);
  EXPECT_THAT(SessionCodes(), ElementsAre(1, 15));

  Decks().ManualStart(Deck::One);
  loop_.RunFor(5s);
  Decks().BeginFastMove(Deck::One, FastMove::SkipToEnd);
  EXPECT_LT(Player(Deck::One).CurrentPosition(), 10) << "live";
  Decks().SetLoss(Deck::One, 200);
  desk_->State().TransitionActive = true;
  Decks().BeginFastMove(Deck::One, FastMove::SkipToEnd);
  EXPECT_LT(Player(Deck::One).CurrentPosition(), 10) << "a fade walks";
  desk_->State().TransitionActive = false;
  Decks().BeginFastMove(Deck::One, FastMove::SkipToStart);
  EXPECT_EQ(Player(Deck::One).CurrentPosition(), 1) << "nobody hears it";
}

TEST_F(DeckPlayTest, AHeldButtonMovesFasterAndFasterAndNeverBeyondTheLimits) {
  Set(u"FFwFRev"_s, u"2"_s);
  OpenDesk();
  Decks().BeginFastMove(Deck::One, FastMove::Forward);
  EXPECT_EQ(Record(Deck::One).Position, 2) << "the first step comes at once";
  loop_.RunFor(50ms);
  EXPECT_NEAR(Record(Deck::One).Position, 2 + 2.01 + 2.02, 0.001);
  EXPECT_EQ(Record(Deck::One).RemainSeconds, 53);
  Decks().EndFastMove(Deck::One);
  loop_.RunFor(1s);
  EXPECT_NEAR(Player(Deck::One).CurrentPosition(), 6.03, 0.001) << "the release ends it";
  Decks().BeginFastMove(Deck::One, FastMove::Forward);
  loop_.RunFor(5s);
  EXPECT_EQ(Player(Deck::One).CurrentPosition(), 60);
  Decks().EndFastMove(Deck::One);
  Decks().BeginFastMove(Deck::One, FastMove::Rewind);
  loop_.RunFor(5s);
  EXPECT_EQ(Player(Deck::One).CurrentPosition(), 1);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(1s);
  EXPECT_NEAR(Record(Deck::One).Position, 2, 0.3) << "a start ends it too";
}

TEST_F(DeckPlayTest, AButtonStillHeldDoesNotMoveTheTrackThatIsLoadedMeanwhile) {
  OpenDesk();
  Decks().BeginFastMove(Deck::One, FastMove::Forward);
  Load(Deck::One, 2);
  loop_.RunFor(2s);
  EXPECT_EQ(Record(Deck::One).Position, 0);
  EXPECT_EQ(Player(Deck::One).CurrentPosition(), 0);
  Decks().EndFastMove(Deck::One);
  EXPECT_THAT(SessionCodes(), ElementsAre(1, 1)) << "the new track was not moved";
}

TEST_F(DeckPlayTest, FastMovesAreRefusedOnEmptyAndPlayingDecks) {
  OpenDesk();
  Decks().BeginFastMove(Deck::Two, FastMove::Forward);
  Decks().EndFastMove(Deck::Two);
  EXPECT_EQ(Record(Deck::Two).Position, 0);
  EXPECT_THAT(SessionCodes(), ElementsAre(1));
  Decks().ManualStart(Deck::One);
  Decks().SetLoss(Deck::One, 2000);
  Decks().BeginFastMove(Deck::One, FastMove::Forward);
  loop_.RunFor(400ms);
  EXPECT_LT(Record(Deck::One).Position, 1);
  Decks().EndFastMove(Deck::One);
  Decks().SetLoss(Deck::One, 0);
  Decks().BeginFastMove(Deck::One, FastMove::SkipToEnd);
  Decks().EndFastMove(Deck::One);
  EXPECT_THAT(SessionCodes(), ElementsAre(1, 3)) << "what was refused is not recorded";
}

TEST_F(DeckPlayTest, WaitingForSoundEndsHalfASecondIntoTheTrackOrWhenItStops) {
  OpenDesk();
  Decks().ManualStart(Deck::One);
  Job<> wait = Decks().WaitForAudio(Deck::One);
  loop_.RunFor(450ms);
  EXPECT_TRUE(wait.Running());
  loop_.RunFor(100ms);
  EXPECT_FALSE(wait.Running());
  Decks().StopDeck(Deck::One);
  Decks().SetPosition(Deck::One, 0);
  Decks().ManualStart(Deck::One);
  wait = Decks().WaitForAudio(Deck::One);
  Player(Deck::One).Stop();
  loop_.RunFor(50ms);
  EXPECT_FALSE(wait.Running()) << "a deck that is silent for good is not waited for";
}

TEST_F(DeckPlayTest, ADeckThatIsStoppedBehindItsEndBeginsAnewByEveryStart) {
  // The stored length and the true one differ in practice.
  AddTrack(u"alpha"_s, 20, 19.4);
  AddTrack(u"beta"_s, 600, 600);
  Open();
  EnqueueAll();
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  Decks().ManualStart(Deck::Two);
  const auto playOutAndStop = [this] {
    Decks().ManualStart(Deck::One);
    loop_.RunFor(25s);
    ASSERT_EQ(Record(Deck::One).State, DeckState::Done);
    Decks().StopByHand(Deck::One);
    EXPECT_EQ(Record(Deck::One).State, DeckState::Done);
  };
  const auto expectPlaying = [this](const char* how) {
    EXPECT_EQ(Player(Deck::One).State(), PlayState::Playing) << how;
    EXPECT_EQ(Record(Deck::One).State, DeckState::Playing) << how;
    EXPECT_LT(Player(Deck::One).CurrentPosition(), 6) << how;
    EXPECT_GT(Player(Deck::One).CurrentPosition(), 1) << how;
  };
  playOutAndStop();
  Decks().ManualStart(Deck::One);
  loop_.RunFor(4s);
  expectPlaying("start");
  loop_.RunFor(20s);
  for (const TransitionKind kind : {TransitionKind::PartFade, TransitionKind::Pan, TransitionKind::Dub}) {
    playOutAndStop();
    desk_->Fades().SetCrossPan(200);
    desk_->Fades().StartRoutine(Deck::One, kind);
    loop_.RunFor(4s);
    expectPlaying("transition");
    loop_.RunFor(20s);
  }
}

TEST_F(DeckPlayTest, AFadeNeverWalksFromADeckThatSoundsIntoOneThatDoesNot) {
  OpenDesk();
  Load(Deck::Two, 3);
  Decks().ManualStart(Deck::Two);
  desk_->Fades().SetCrossPan(200);
  loop_.RunFor(2s);
  for (const bool stopped : {false, true}) {
    if (stopped) Decks().StopDeck(Deck::One);
    Disk(Deck::One).StandStill();
    desk_->Fades().StartRoutine(Deck::One, TransitionKind::PartFade);
    loop_.RunFor(6s);
    EXPECT_EQ(desk_->Fades().CrossPan(), 200);
    EXPECT_EQ(Record(Deck::Two).Loss, 0);
    Disk(Deck::One).Stop();
  }
}

TEST_F(DeckPlayTest, AStartThatGivesNoSoundSaysSoAndIsLogged) {
  OpenDesk();
  Decks().ManualStart(Deck::One);
  Disk(Deck::One).StandStill();
  loop_.RunFor(1500ms);
  EXPECT_FALSE(Record(Deck::One).Info.startsWith(u"Start Failed"_s));
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Info, u"Start Failed : Nothing Is Heard"_s);
  EXPECT_EQ(desk_->StatusLine(), u"Start Failed, Nothing Is Heard Of : Alpha"_s);
  EXPECT_TRUE(Log().contains(u"A start failed"_s));
}

TEST_F(DeckPlayTest, AFadedDeckThatStillPlaysAndIsStartedAgainCountsAsPlaying) {
  OpenDesk();
  Decks().ManualStart(Deck::One);
  desk_->Fades().SetCrossPan(-200);
  loop_.RunFor(2s);
  // As automatic play leaves a deck that fades out.
  Decks().SetState(Deck::One, DeckState::Done);
  Decks().ManualStart(Deck::One);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Playing);
  loop_.RunFor(2s);
  EXPECT_EQ(desk_->StatusLine(), u"Currently Playing: Alpha"_s);
  Queue().Click(2);
  Decks().LoadCommand(Deck::One);
  EXPECT_TRUE(Panel().Visible()) << "it is live";
}

}  // namespace
}  // namespace kelvo
