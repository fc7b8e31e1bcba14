// What would start, end or cut more than was asked for: nothing comes on air or goes off it but in its time.
#include "console/AutoPlayFixture.h"

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using testing::AutoDesk;
using testing::kSoft;
using testing::kStrong;

using AutoPlayAirTest = testing::AutoPlayFixture;

TEST_F(AutoPlayAirTest, TheStartBringsInOneTrackWhereverTheSliderAndTheDeltaStand) {
  for (int phase = 0; phase < 10; ++phase) {
    for (const bool slider : {true, false}) {
      SCOPED_TRACE(phase);
      MakeQueue(4, 60, kSoft);
      if (slider) {
        desk_->transitions.SetCrossPan(kDeckTwoAlone);
      } else {
        Play().SetDelta(300);
      }
      desk_->Run(0.1 * phase);
      Play().ToggleAutoPlay();
      desk_->Run(8);
      EXPECT_EQ(Heard(), u"A"_s);
      EXPECT_EQ(desk_->starts, 1);
      EXPECT_EQ(Record(Deck::Two).State, DeckState::Loaded);
      desk_->Run(47);
      EXPECT_EQ(Heard(), u"AB"_s);
    }
  }
}

TEST_F(AutoPlayAirTest, APanOutOfSilenceIsNoSilence) {
  Make();
  for (const char name : {'A', 'B', 'C', 'D'}) {
    desk_->Enqueue(
        desk_->AddTrack(QString(QLatin1Char(name)), 60, AutoDesk::Info("1,3,3", "8,8", "0,0", 0, 0)));
  }
  desk_->desk.Settings().Set(setting::PanFadeBias, 40);
  On();
  desk_->Run(15);
  desk_->decks.StopDeck(Deck::One);
  desk_->Run(20);
  EXPECT_EQ(Heard(), u"AB"_s) << "it comes in slowly, and nothing else does";
}

TEST_F(AutoPlayAirTest, APreviewBeginsBesideTheTrackOnAir) {
  MakeQueue(8, 100, kSoft);
  desk_->queue.Select(1);
  desk_->decks.LoadCommand(Deck::One);
  desk_->Run(0.5);
  desk_->decks.ManualStart(Deck::One);
  desk_->Run(5);
  Play().SetMode(AutoMode::Preview);
  On();
  EXPECT_EQ(Disk(Deck::One).FileName(), Path(1));
  EXPECT_EQ(Disk(Deck::One).State(), PlayState::Playing);
  desk_->Run(5);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Playing);
  EXPECT_EQ(Record(Deck::Two).Loss, 0);
}

TEST_F(AutoPlayAirTest, TheVoiceAtFullDepthStartsNoTrackAndHoldsNoneUp) {
  MakeQueue(6, 60, kSoft);
  desk_->speak.SetDepthSlider(0);
  On();
  desk_->Run(10);
  desk_->speak.Press();
  desk_->Run(30);
  ASSERT_EQ(Record(Deck::One).Loss, kMostLoss);
  EXPECT_EQ(Heard(), u"A"_s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Playing);
  desk_->Run(100);
  EXPECT_EQ(Heard(), u"ABC"_s) << "52 seconds each, also under the voice";
  desk_->speak.Release();
  desk_->Run(3);
  EXPECT_EQ(Record(Deck::One).Loss, 0);
  EXPECT_EQ(Heard(), u"ABC"_s);
}

TEST_F(AutoPlayAirTest, AFaderPulledDownByHandStartsNoTrack) {
  MakeQueue(4, 60, kSoft);
  On();
  desk_->Run(10);
  desk_->speak.SetLevel(Deck::One, kMostLoss);
  desk_->Run(30);
  EXPECT_EQ(Heard(), u"A"_s);
  desk_->Run(30);
  EXPECT_EQ(Heard(), u"AB"_s) << "the next one comes in its time and at its level";
  EXPECT_EQ(Record(Deck::Two).Loss, 0);
}

TEST_F(AutoPlayAirTest, NobodyTakesAnAutomaticFadeBack) {
  for (const bool early : {true, false}) {
    MakeQueue(4, 60, kSoft);
    On();
    if (early) {
      for (int tenth = 0; tenth < 600 && desk_->starts < 2; ++tenth) desk_->Run(0.1);
      ASSERT_FALSE(desk_->state.TransitionActive) << "the deck is not heard yet";
    } else {
      RunIntoFade(2);
    }
    EXPECT_FALSE(desk_->transitions.MayCancel());
    desk_->transitions.Cancel();
    for (int second = 0; second < 15; ++second) {
      desk_->Run(1);
      EXPECT_TRUE(Sounds());
      EXPECT_EQ(Record(Deck::Two).Title, u"B"_s);
    }
    EXPECT_EQ(desk_->state.CrossPan, kDeckTwoAlone);
    EXPECT_EQ(Record(Deck::Two).Loss, 0);
    EXPECT_EQ(Heard(), u"AB"_s);
    EXPECT_EQ(Record(Deck::One).Title, u"C"_s);
  }
}

TEST_F(AutoPlayAirTest, AFadeTakenBackAfterTheStopPutsItsDeckOnAirAgain) {
  MakeQueue(4, 60, kSoft);
  On();
  RunIntoFade(2);
  ASSERT_EQ(Record(Deck::One).State, DeckState::Done);
  Play().ToggleAutoPlay();
  ASSERT_TRUE(desk_->transitions.MayCancel());
  desk_->transitions.Cancel();
  desk_->Run(1);
  EXPECT_EQ(desk_->state.CrossPan, kDeckOneAlone);
  EXPECT_TRUE(Record(Deck::One).Live());
  desk_->queue.Select(4);
  desk_->decks.LoadCommand(Deck::One);
  EXPECT_TRUE(desk_->panel.Visible()) << "nothing is loaded over it without a question";
}

TEST_F(AutoPlayAirTest, ADeckThatSoundsOnAfterADubIsNotLoadedOver) {
  const auto make = [this] {
    Make();
    desk_->Enqueue(desk_->AddTrack(u"A"_s, 60, AutoDesk::Info("1,1,1", "20,3", "25,25", 0, 0)));
    desk_->Enqueue(desk_->AddTrack(u"B"_s, 100, AutoDesk::Info("1,3,3", "3,3", "25,25", 0, 0)));
    desk_->Enqueue(desk_->AddTrack(u"C"_s, 60, kStrong));
    On();
    desk_->Run(45);
    ASSERT_EQ(Heard(), u"AB"_s);
    ASSERT_EQ(Record(Deck::One).State, DeckState::Done) << "a pan comes next";
    ASSERT_LE(Record(Deck::One).Loss, 10);
  };
  make();
  desk_->Run(10);
  EXPECT_EQ(Disk(Deck::One).FileName(), Path(1));
  EXPECT_EQ(Disk(Deck::One).State(), PlayState::Playing) << "it is heard to its end";
  ASSERT_TRUE(Play().Next());
  EXPECT_EQ(Play().Next()->title, u"C"_s) << "what comes next is known all the same";
  desk_->Run(8);
  EXPECT_EQ(Record(Deck::One).Title, u"C"_s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Loaded);

  // Its disk dies: nobody waits for its end.
  make();
  Disk(Deck::One).StandStill();
  desk_->Run(9);
  EXPECT_EQ(Record(Deck::One).Title, u"C"_s);
  EXPECT_TRUE(Play().LastSkipped().startsWith(u"A : It Stood Still At"_s));

  // A stop of all by itself, and of the other deck: what is heard is on air.
  make();
  Play().ToggleAutoPlay();
  desk_->decks.StopDeck(Deck::Two);
  On();
  EXPECT_EQ(Disk(Deck::One).FileName(), Path(1));
  EXPECT_EQ(Disk(Deck::One).State(), PlayState::Playing);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Loaded);
  desk_->Run(30);
  EXPECT_TRUE(Sounds());
}

TEST_F(AutoPlayAirTest, ADubUnderAFadeWhoseDecksAreDeadIsNotFadedOut) {
  Make();
  desk_->Enqueue(desk_->AddTrack(u"A"_s, 60, kStrong));
  desk_->Enqueue(desk_->AddTrack(u"B"_s, 60, AutoDesk::Info("1,3,3", "10,3", "5,5", 0, 0)));
  desk_->Enqueue(desk_->AddTrack(u"C"_s, 60, AutoDesk::Info("1,1,1", "3,3", "5,5", 0, 0)));
  desk_->Enqueue(desk_->AddTrack(u"D"_s, 60, AutoDesk::Info("1,1,1", "3,3", "5,5", 0, 0)));
  On();
  RunIntoFade(3);
  ASSERT_EQ(desk_->transitions.Record().TransitionDeck, Deck::One);
  for (const Deck deck : kDecks) desk_->decks.StopDeck(deck);
  desk_->Run(20);
  EXPECT_EQ(Heard(), u"ABCD"_s);
  EXPECT_EQ(Record(Deck::Two).Title, u"D"_s);
  EXPECT_LE(Record(Deck::Two).Loss, 10);
}

TEST_F(AutoPlayAirTest, ADeckThatGivesNoSoundDoesNotTakeTheAirFromTheOther) {
  MakeQueue(5, 60, AutoDesk::Info("1,2,2", "20,3", "25,25", 0, 0));
  On();
  for (int tenth = 0; tenth < 600 && desk_->starts < 2; ++tenth) desk_->Run(0.1);
  Disk(Deck::Two).StandStill();
  for (int second = 0; second < 30; ++second) {
    desk_->Run(1);
    const bool aIsHeard = Record(Deck::One).Title == u"A"_s && Record(Deck::One).Loss == 0;
    EXPECT_TRUE(aIsHeard || Record(Deck::Two).Title == u"C"_s) << second;
  }
  EXPECT_EQ(Heard(), u"AC"_s);
}

TEST_F(AutoPlayAirTest, AStyleOutOfTheTableLeavesWhatWasSettled) {
  Make();
  for (const auto& [name, style] : {std::pair(u"A"_s, 0), std::pair(u"B"_s, 2), std::pair(u"C"_s, 0)}) {
    desk_->Enqueue(desk_->AddTrack(name, 60, AutoDesk::Info("0,1,1", "3,3", "25,25", style, 0)));
  }
  On();
  desk_->Run(55);
  ASSERT_EQ(Heard(), u"AB"_s);
  EXPECT_EQ(Play().AutoDelta(), 8);
  EXPECT_EQ(Play().AutoTransition(), TransitionKind::Pan);
}

}  // namespace
}  // namespace kelvo
