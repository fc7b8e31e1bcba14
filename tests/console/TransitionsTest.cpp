#include "console/DeskFixture.h"

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::DeskTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TransitionsTest : public DeskTest {
 protected:
  /// Deck 1 plays alone, Deck 2 is loaded.
  void OpenDesk() {
    AddThreeTracks();
    Open();
    EnqueueAll();
    Load(Deck::One, 1);
    Load(Deck::Two, 2);
    Fades().AfterStart = [this](Deck deck) { started_.push_back(deck); };
    desk_->Fades().SetFadeSpeed(25);
    Decks().ManualStart(Deck::One);
    Fades().SetCrossPan(kDeckOneAlone);
    loop_.RunFor(5s);
    desk_->Session().Clear();
  }
  [[nodiscard]] Transitions& Fades() { return desk_->Fades(); }
  [[nodiscard]] DeckLosses Losses() { return {Record(Deck::One).Loss, Record(Deck::Two).Loss}; }
  [[nodiscard]] bool Playing(Deck deck) { return Player(deck).State() == PlayState::Playing; }
  void RunUntilWalkStarts() {
    ASSERT_TRUE(loop_.RunUntil([this] { return Fades().WalkActive(); }, 3s));
  }
  /// How long the slider moves from now on.
  [[nodiscard]] double SecondsOfWalk() {
    const Nanoseconds begin = loop_.Elapsed();
    EXPECT_TRUE(loop_.RunUntil([this] { return !Fades().WalkActive(); }, 60s));
    return std::chrono::duration<double>(loop_.Elapsed() - begin).count();
  }

  std::vector<Deck> started_;
};

TEST_F(TransitionsTest, APartFadeBringsTheDeckInAtOnceAndWalksTheOtherOut) {
  OpenDesk();
  Fades().PressPartFade(Deck::Two);
  loop_.RunFor(300ms);
  EXPECT_TRUE(Playing(Deck::Two));
  EXPECT_EQ(Fades().CrossPan(), kDeckOneAlone) << "nothing moves before the deck is heard";
  int quietest = 0;
  ASSERT_TRUE(loop_.RunUntil(
      [&] {
        if (!Fades().WalkActive()) quietest = std::max(quietest, Losses().left);
        return Fades().WalkActive();
      },
      2s));
  EXPECT_LE(quietest, 500) << "the going deck is not silent before its walk";
  EXPECT_EQ(Losses(), (DeckLosses{500, 0}));
  EXPECT_TRUE(Fades().TimersSlowed());
  EXPECT_TRUE(Fades().SectionsDisabled());
  EXPECT_NEAR(SecondsOfWalk(), 0.25 + 50 * 0.05, 0.06) << "from 50 to 200 in threes, 50 ms each";
  EXPECT_EQ(Losses(), (DeckLosses{2000, 0}));
  EXPECT_FALSE(Fades().TimersSlowed());
  EXPECT_TRUE(Playing(Deck::One)) << "the going deck is never stopped";
  EXPECT_THAT(started_, ElementsAre(Deck::Two));
  EXPECT_THAT(SessionCodes(), ElementsAre(3, 9, 11));
  const SessionEvent& begin = desk_->Session().Events()[1];
  const SessionEvent& end = desk_->Session().Events()[2];
  EXPECT_EQ(begin.FadeType, TransitionKind::PartFade);
  EXPECT_EQ(begin.OnDeck, Deck::Two);
  EXPECT_NEAR(end.Time - begin.Time, 0.25 + 0.25 + 2.5, 0.1) << "snap, timer and walk";
}

TEST_F(TransitionsTest, APanCrossesOverByItsBiasAtTheSpeedOfTheSlider) {
  OpenDesk();
  Fades().PressPan(Deck::Two);
  RunUntilWalkStarts();
  ASSERT_TRUE(loop_.RunUntil([this] { return Fades().CrossPan() >= -100; }, 10s));
  EXPECT_EQ(Fades().CrossPan(), -98);
  EXPECT_EQ(Losses(), (DeckLosses{510, 1176}));
  desk_->Fades().SetFadeSpeed(0);
  EXPECT_NEAR(SecondsOfWalk(), 0.05 + 99 * 0.002, 0.01) << "a speed of 0 still takes 1 ms a half step";
  EXPECT_EQ(Losses(), (DeckLosses{2000, 0}));
  EXPECT_EQ(desk_->Session().Events().back().FadeType, TransitionKind::Pan);
}

TEST_F(TransitionsTest, APartFadeAfterAPanLeavesTheGoingDeckAQuarterDown) {
  OpenDesk();
  Fades().PressPan(Deck::Two);
  loop_.RunFor(12s);
  ASSERT_EQ(Fades().CrossPan(), kDeckTwoAlone);
  Fades().PressPartFade(Deck::One);
  RunUntilWalkStarts();
  EXPECT_EQ(Losses(), (DeckLosses{0, 500}));
  static_cast<void>(SecondsOfWalk());
  EXPECT_EQ(Losses(), (DeckLosses{0, 2000}));
  Fades().SetCrossPan(-100);
  Fades().PressPartFade(Deck::One);
  RunUntilWalkStarts();
  EXPECT_EQ(Fades().CrossPan(), -50) << "a slider beyond is set back";
}

TEST_F(TransitionsTest, CancelDuringAWalkPutsTheSliderBackAndTheDeckPlaysOn) {
  OpenDesk();
  Fades().PressPan(Deck::Two);
  EXPECT_TRUE(Fades().GetCancelPanel().Visible());
  EXPECT_EQ(Fades().GetCancelPanel().OnDeck(), Deck::Two);
  RunUntilWalkStarts();
  ASSERT_TRUE(loop_.RunUntil([this] { return Fades().CrossPan() > -180; }, 2s));
  Fades().Cancel();
  EXPECT_FALSE(Fades().GetCancelPanel().Visible());
  EXPECT_LT(SecondsOfWalk(), 0.1);
  EXPECT_EQ(Fades().CrossPan(), kDeckOneAlone);
  EXPECT_EQ(Losses(), (DeckLosses{0, 2000}));
  EXPECT_TRUE(Playing(Deck::Two));
  EXPECT_THAT(SessionCodes(), ElementsAre(3, 9, 11));

  Fades().Cancel();
  Fades().PressPan(Deck::Two);
  EXPECT_FALSE(Fades().GetCancelPanel().Visible()) << "the deck plays already";
  loop_.RunFor(10s);
  EXPECT_EQ(Fades().CrossPan(), kDeckTwoAlone) << "an old cancel does not swallow the next start";
}

TEST_F(TransitionsTest, ACancelDoesNotBringADeckBackThatHasEndedMeanwhile) {
  OpenDesk();
  Fades().PressPan(Deck::Two);
  RunUntilWalkStarts();
  Player(Deck::One).SetCurrentPosition(59.9);
  ASSERT_TRUE(loop_.RunUntil([this] { return Record(Deck::One).State == DeckState::Done; }, 2s));
  Fades().Cancel();
  EXPECT_LT(SecondsOfWalk(), 1);
  EXPECT_EQ(Fades().CrossPan(), kDeckOneAlone);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Done);
}

TEST_F(TransitionsTest, NothingMovesAnyMoreOnceTheyAreClosed) {
  OpenDesk();
  Fades().PressPan(Deck::Two);
  RunUntilWalkStarts();
  Fades().Close();
  const int place = Fades().CrossPan();
  loop_.RunFor(10s);
  EXPECT_EQ(Fades().CrossPan(), place);
}

TEST_F(TransitionsTest, ACancelBeforeTheWalkLeavesTheDeckOnAirAlone) {
  OpenDesk();
  Fades().PressPan(Deck::Two);
  loop_.RunFor(10s);
  ASSERT_EQ(Fades().CrossPan(), kDeckTwoAlone);
  Load(Deck::One, 3);
  ASSERT_EQ(Record(Deck::One).State, DeckState::Loaded);
  started_.clear();
  Fades().PressPartFade(Deck::One);
  loop_.RunFor(200ms);
  Fades().Cancel();
  loop_.RunFor(3s);
  EXPECT_EQ(Fades().CrossPan(), kDeckTwoAlone) << "not back to where the last transition began";
  EXPECT_EQ(Losses(), (DeckLosses{2000, 0}));
  EXPECT_FALSE(Fades().WalkActive());
  EXPECT_THAT(started_, IsEmpty());
  EXPECT_FALSE(Fades().Record().StartCancelled);
}

TEST_F(TransitionsTest, ADeckStoppedBeforeItIsHeardDoesNotTakeTheAirFromTheOther) {
  OpenDesk();
  Fades().PressPartFade(Deck::Two);
  loop_.RunFor(200ms);
  Decks().StopCommand(Deck::Two);
  loop_.RunFor(5s);
  EXPECT_EQ(Losses(), (DeckLosses{0, 2000}));
  EXPECT_TRUE(Playing(Deck::One));
}

TEST_F(TransitionsTest, ADiskThatDiesAtAStartHoldsNoStartKeyAndTakesNoSoundAway) {
  OpenDesk();
  Fades().PressPartFade(Deck::Two);
  loop_.RunFor(200ms);
  Disk(Deck::Two).StandStill();
  loop_.RunFor(1s);
  EXPECT_TRUE(Fades().Starting());
  loop_.RunFor(3s);
  EXPECT_FALSE(Fades().Starting()) << "its sound is waited for in vain";
  EXPECT_EQ(Losses(), (DeckLosses{0, 2000}));
  EXPECT_TRUE(Playing(Deck::One));

  // The one on air has a dead disk: the other is brought in all the same.
  Load(Deck::Two, 3);
  Decks().SetPosition(Deck::One, 0.2);
  Disk(Deck::One).StandStill();
  Fades().PressPartFade(Deck::Two);
  loop_.RunFor(10s);
  EXPECT_EQ(Fades().CrossPan(), kDeckTwoAlone);
}

TEST_F(TransitionsTest, ACancelEndsTheWaitForADeadDiskAtOnce) {
  OpenDesk();
  Fades().PressPartFade(Deck::Two);
  loop_.RunFor(100ms);
  Disk(Deck::Two).StandStill();
  Fades().Cancel();
  loop_.RunFor(20ms);
  EXPECT_FALSE(Fades().Starting());
}

TEST_F(TransitionsTest, ADubKeepsBothDecksFullUntilItsButtonIsLetGo) {
  OpenDesk();
  Fades().PressDub(Deck::Two);
  loop_.RunFor(3s);
  EXPECT_EQ(Fades().CrossPan(), 1);
  EXPECT_EQ(Losses(), (DeckLosses{10, 0}));
  EXPECT_THAT(started_, ElementsAre(Deck::Two));
  EXPECT_TRUE(Playing(Deck::Two));
  Fades().ReleaseDub(Deck::Two);
  RunUntilWalkStarts();
  EXPECT_EQ(Losses(), (DeckLosses{500, 0}));
  static_cast<void>(SecondsOfWalk());
  EXPECT_EQ(Losses(), (DeckLosses{2000, 0}));
  EXPECT_THAT(SessionCodes(), ElementsAre(3, 5, 7, 9, 11));
  const auto& events = desk_->Session().Events();
  EXPECT_NEAR(events[2].Time - events[1].Time, 3, 0.05);
  EXPECT_EQ(events[1].FadeType, TransitionKind::Dub);
  EXPECT_THAT(started_, ElementsAre(Deck::Two)) << "the fade starts no deck";
}

TEST_F(TransitionsTest, AClickOnDubIsAQuickPartFade) {
  OpenDesk();
  Fades().PressDub(Deck::Two);
  Fades().ReleaseDub(Deck::Two);
  loop_.RunFor(10s);
  EXPECT_EQ(Fades().CrossPan(), kDeckTwoAlone);
  EXPECT_EQ(Losses(), (DeckLosses{2000, 0}));
  EXPECT_THAT(SessionCodes(), ElementsAre(3, 9, 11)) << "too short for the records of a dub";

  Fades().PressDub(Deck::One);
  loop_.RunFor(500ms);
  EXPECT_EQ(Fades().CrossPan(), -1);
  Fades().Cancel();
  Fades().ReleaseDub(Deck::One);
  loop_.RunFor(3s);
  EXPECT_EQ(Fades().CrossPan(), -1) << "a cancelled dub does not fade";
  Fades().PressPartFade(Deck::One);
  loop_.RunFor(5s);
  EXPECT_EQ(Fades().CrossPan(), kDeckOneAlone);
}

TEST_F(TransitionsTest, StartsAreRefusedToEmptyArrivedAndLoadingDecksAndDuringAWalk) {
  OpenDesk();
  Fades().PressPan(Deck::One);
  EXPECT_FALSE(Fades().Starting()) << "plays alone already";
  Fades().PressPan(Deck::Two);
  Fades().PressPartFade(Deck::Two);
  RunUntilWalkStarts();
  EXPECT_EQ(Fades().Record().Kind, TransitionKind::Pan) << "a second start is ignored";
  Fades().PressDub(Deck::One);
  Fades().ReleaseDub(Deck::One);
  Decks().StopCommand(Deck::One);
  loop_.RunFor(10s);
  EXPECT_EQ(Fades().CrossPan(), kDeckTwoAlone);
  EXPECT_TRUE(Playing(Deck::One));
  Decks().StopDeck(Deck::One);
  Queue().Click(3);
  Decks().LoadCommand(Deck::One);
  ASSERT_TRUE(Record(Deck::One).Loading);
  Fades().PressPan(Deck::One);
  EXPECT_FALSE(Playing(Deck::One));
}

TEST_F(TransitionsTest, ATrackPlayedBeforeIsStartedOnlyWhenConfirmed) {
  OpenDesk();
  loop_.RunFor(60s);
  ASSERT_EQ(Record(Deck::One).State, DeckState::Done);
  Fades().PressDub(Deck::One);
  Fades().ReleaseDub(Deck::One);
  ASSERT_TRUE(Panel().Visible());
  EXPECT_EQ(Panel().Question().text, u"TRACK RECENTLY PLAYED!\r\n"_s);
  EXPECT_EQ(Panel().Question().button, u"PLAY IT AGAIN"_s);
  loop_.RunFor(1s);
  EXPECT_FALSE(Playing(Deck::One)) << "letting the button go is no answer";
  Panel().Confirm();
  loop_.RunFor(2s);
  EXPECT_TRUE(Playing(Deck::One));
  EXPECT_NEAR(Record(Deck::One).Position, 2, 0.3) << "from its start";
}

TEST_F(TransitionsTest, AutomaticPlayTakesAWalkOver) {
  OpenDesk();
  Fades().PressPan(Deck::Two);
  RunUntilWalkStarts();
  loop_.RunFor(2s);
  desk_->State().AutoPlayOn = true;
  desk_->Session().Clear();
  const int before = Fades().CrossPan();
  Fades().StartRoutine(Deck::One, TransitionKind::Pan);
  loop_.RunFor(200ms);
  EXPECT_LT(Fades().CrossPan(), before) << "it turned round";
  static_cast<void>(SecondsOfWalk());
  EXPECT_EQ(Fades().CrossPan(), kDeckOneAlone);
  EXPECT_EQ(Losses(), (DeckLosses{0, 2000}));
  EXPECT_THAT(SessionCodes(), IsEmpty()) << "automatic play keeps no records";
  Fades().NumberPad6();
  loop_.RunFor(5s);
  EXPECT_EQ(Fades().CrossPan(), kDeckOneAlone) << "the number pad is for manual play";
}

TEST_F(TransitionsTest, TheNumberPadFadesWithoutStartingADeck) {
  OpenDesk();
  Fades().NumberPad6();
  loop_.RunFor(10s);
  EXPECT_EQ(Fades().CrossPan(), kDeckTwoAlone);
  EXPECT_FALSE(Playing(Deck::Two));
  Fades().NumberPad4();
  RunUntilWalkStarts();
  EXPECT_EQ(Losses(), (DeckLosses{0, 500}));
  Decks().StopDeck(Deck::One);
  static_cast<void>(SecondsOfWalk());
  EXPECT_EQ(Fades().CrossPan(), kDeckOneAlone) << "a walk without a playing deck ends as well";
}

TEST_F(TransitionsTest, TheGrabbedSliderFollowsThePlainLaw) {
  OpenDesk();
  Fades().PressPan(Deck::Two);
  RunUntilWalkStarts();
  loop_.RunFor(1s);
  Fades().GrabSlider();
  Fades().MoveSlider(-100);
  EXPECT_EQ(Losses(), (DeckLosses{0, 1000}));
  static_cast<void>(SecondsOfWalk());
  EXPECT_EQ(Losses(), (DeckLosses{2000, 0})) << "the walk goes on from there";
  Fades().MoveSlider(900);
  EXPECT_EQ(Fades().CrossPan(), kDeckTwoAlone);
}

TEST(TransitionTexts, TellTheTimeOfAFade) {
  EXPECT_EQ(Transitions::FadeTimeTooltip(25, TransitionKind::PartFade), u"Fade Time Approx 4 Second/s"_s);
  EXPECT_EQ(Transitions::FadeTimeTooltip(50, TransitionKind::Pan), u"Fade Time Approx 18 Second/s"_s);
  EXPECT_EQ(Transitions::FadeSpeedTooltip(50), u"Fade Speed = 1"_s);
}

}  // namespace
}  // namespace kelvo
