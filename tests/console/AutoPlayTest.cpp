#include "console/AutoPlayFixture.h"

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using testing::AutoDesk;
using ::testing::ElementsAre;
using testing::kSoft;
using testing::kStrong;

using AutoPlayTest = testing::AutoPlayFixture;

TEST_F(AutoPlayTest, AShortQueueIsRefused) {
  MakeQueue(2, 60, kSoft);
  On();
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"There Must Be A Minimum of 3 Tracks in The Play Queue !"_s));
  EXPECT_EQ(prompter_.asked[0].title, u"Auto Play Start"_s);
  EXPECT_FALSE(desk_->state.AutoPlayOn);
}

TEST_F(AutoPlayTest, ThreeRowsRunForeverAndOverlapByTheDefaultTable) {
  MakeQueue(3, 60, kStrong);
  EXPECT_EQ(Play().StartCaption(), u"START"_s);
  On();
  EXPECT_EQ(Play().StartCaption(), u"STOP"_s);
  EXPECT_EQ(Play().DisplayWord(), u"KELVO MODE"_s);
  EXPECT_EQ(Record(Deck::One).Info, u"Default - Track Start:"_s);
  EXPECT_EQ(desk_->queue.Row(1).Text(CommentColumn), u"Now Playing 9:00"_s);
  EXPECT_EQ(desk_->queue.Row(3).Text(CommentColumn), QString());
  desk_->Run(20);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Playing);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Loaded);
  EXPECT_EQ(Play().AutoDelta(), 2);
  EXPECT_EQ(Play().SldDelta(), 2);
  EXPECT_EQ(desk_->transitions.FadeSpeed(), 11);
  EXPECT_EQ(Play().StatusText(), u"Auto Start: B In 00:39"_s);
  ASSERT_TRUE(Play().Next());
  EXPECT_EQ(Play().Next()->queueIndex, 2);
  EXPECT_EQ(Play().Next()->transition, TransitionKind::Dub);
  desk_->Run(38.7);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Playing) << "a dub: both at full level";
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Playing);
  EXPECT_EQ(desk_->lastTransition, TransitionKind::Dub);
  EXPECT_LE(Record(Deck::One).Loss + Record(Deck::Two).Loss, 10);
  desk_->Run(5);
  EXPECT_EQ(Record(Deck::One).Title, u"C"_s) << "the played-out deck has the next row at once";
  EXPECT_EQ(Play().Next()->queueIndex, 3);
  desk_->Run(6 * 58);
  EXPECT_EQ(Heard(), u"ABCABCAB"_s.left(Heard().size()));
  EXPECT_GE(Heard().size(), 7);
  EXPECT_EQ(Play().SkippedCount(), 0);
}

TEST_F(AutoPlayTest, SoftTracksPanAndTheGoingDeckCountsAsDoneAtOnce) {
  MakeQueue(4, 60, kSoft);
  On();
  desk_->Run(20);
  EXPECT_EQ(Play().AutoTransition(), TransitionKind::Pan);
  EXPECT_EQ(Play().AutoDelta(), 8);
  EXPECT_EQ(Record(Deck::Two).Title, u"B"_s) << "a waiting deck keeps its track";
  desk_->Run(33.5);
  EXPECT_EQ(desk_->lastTransition, TransitionKind::Pan);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Playing);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Done);
  desk_->Run(200);
  EXPECT_TRUE(Heard().startsWith(u"ABCDA"_s)) << Heard().toStdString();
}

TEST_F(AutoPlayTest, ATracksOwnSettingsAndALongFadeInDecideTheStart) {
  Make();
  desk_->Enqueue(desk_->AddTrack(u"A"_s, 60, AutoDesk::Info("1,2,2", "20,3", "30,25", 0, 0)));
  desk_->Enqueue(desk_->AddTrack(u"B"_s, 60, kStrong));
  desk_->Enqueue(desk_->AddTrack(u"C"_s, 60, AutoDesk::Info("1,3,3", "3,25", "10,40", 0, 0)));
  On();
  desk_->Run(5);
  EXPECT_EQ(Record(Deck::One).Info, u"Custom - Track Start/Fade:"_s);
  EXPECT_EQ(desk_->transitions.FadeSpeed(), 20);
  desk_->Run(36.5);
  EXPECT_EQ(desk_->lastTransition, TransitionKind::PartFade);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Playing) << "20 seconds before the end";
  desk_->Run(22);
  EXPECT_EQ(Record(Deck::One).Title, u"C"_s);
  EXPECT_EQ(Record(Deck::One).Info, u"Fade Overide: New Value=25"_s);
  EXPECT_EQ(Play().AutoDelta(), 25);
  EXPECT_EQ(Play().AutoTransition(), TransitionKind::Pan);
  EXPECT_EQ(desk_->transitions.FadeSpeed(), 10);
}

TEST_F(AutoPlayTest, ADeltaLongerThanTheTrackIsCutAtItsLength) {
  MakeQueue(3, 30, AutoDesk::Info("1,2,2", "500,0", "50,50", 0, 0));
  On();
  desk_->Run(1);
  EXPECT_EQ(Play().AutoDelta(), 30);
}

TEST_F(AutoPlayTest, TheJukeboxLeavesItsSilenceAndFadesByParts) {
  MakeQueue(3, 60, kSoft, {4, 15});
  Play().SetMode(AutoMode::Jukebox);
  On();
  EXPECT_EQ(Play().DisplayWord(), u"JUKEBOX MODE"_s);
  EXPECT_EQ(Record(Deck::One).Info, u"Jukebox Mode:"_s);
  desk_->Run(62);
  EXPECT_FALSE(Sounds());
  desk_->Run(3);
  EXPECT_TRUE(Sounds());
  EXPECT_EQ(desk_->lastTransition, TransitionKind::PartFade);
  Play().TogglePauseAtEnd();
  desk_->Run(70);
  EXPECT_EQ(Play().StatusText(), u"JukeBox Mode - Pausing At Track End"_s);
}

TEST_F(AutoPlayTest, ATrackThatComesInTheSilenceOfTheJukeboxIsStartedInItsOwnWay) {
  MakeQueue(4, 60, kSoft, {.jukeLag = 3});
  desk_->Enqueue(desk_->AddTrack(u"E"_s, 60, AutoDesk::Info("1,1,1", "3,9", "25,25", 0, 0)));
  Play().SetMode(AutoMode::Jukebox);
  On();
  for (int tenth = 0; tenth < 700 && Sounds(); ++tenth) desk_->Run(0.1);
  desk_->Run(1.5);
  ASSERT_FALSE(Sounds());
  desk_->queue.Select(5);
  desk_->decks.LoadCommand(Deck::Two);
  desk_->Run(3);
  EXPECT_EQ(Record(Deck::Two).Title, u"E"_s);
  EXPECT_TRUE(Sounds());
  EXPECT_EQ(desk_->lastTransition, TransitionKind::Dub) << "as it wants to be faded in";
}

TEST_F(AutoPlayTest, APauseHoldsAtTheEndAndGoesOnWhenItIsTakenBack) {
  MakeQueue(3, 60, kSoft);
  On();
  EXPECT_EQ(Play().PauseCaption(), u"> ||"_s);
  Play().TogglePauseAtEnd();
  QStringList captions;
  const QObject here;
  QObject::connect(&desk_->desk.Status(), &StatusTick::Ticked, &here,
                   [&] { captions.append(Play().PauseCaption()); });
  desk_->Run(70);
  EXPECT_NE(captions[3], captions[4]);
  EXPECT_TRUE(captions.contains(u" >||"_s));
  EXPECT_FALSE(Sounds());
  EXPECT_EQ(Play().StatusText(), u"Pausing At Track End"_s);
  EXPECT_TRUE(desk_->state.AutoPlayOn);
  Play().TogglePauseAtEnd();
  desk_->Run(1.5);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Playing);
}

TEST_F(AutoPlayTest, RandomNeverPicksTheRowInPlayAndTheTickGoesAtTheStop) {
  MakeQueue(5, 30, kStrong);
  Play().SetRandom(true);
  On();
  Play().SetRandom(false);
  EXPECT_EQ(Play().DisplayWord(), u"RANDOM"_s);
  desk_->Run(600);
  const QString heard = Heard();
  ASSERT_GT(heard.size(), 15);
  for (qsizetype at = 1; at < heard.size(); ++at) EXPECT_NE(heard[at], heard[at - 1]);
  EXPECT_NE(heard.left(10), u"ABCDEABCDE"_s);
  Play().ToggleAutoPlay();
  EXPECT_FALSE(Play().RandomTicked());
  EXPECT_FALSE(desk_->state.AutoPlayOn);
  EXPECT_TRUE(Sounds()) << "what plays goes on";
}

TEST_F(AutoPlayTest, APreviewPlaysSomeSecondsOfEachTrackOnceAndAsksToGoOn) {
  Make({2, 15});
  Play().SetMode(AutoMode::Preview);
  for (int each = 0; each < 6; ++each) desk_->AddTrack(QString::number(each), 100);
  On();
  EXPECT_THAT(prompter_.Told(),
              ElementsAre(u"There must be At least 5 tracks in the Data Base to Run Preview Mode"_s));
  EXPECT_FALSE(desk_->state.AutoPlayOn);
  for (int each = 6; each < 12; ++each) desk_->AddTrack(QString::number(each), 100);
  Play().SetMode(AutoMode::Preview);
  On();
  EXPECT_EQ(Play().DisplayWord(), u"PREVIEW MODE"_s);
  EXPECT_EQ(Record(Deck::One).Info, u"Preview Mode"_s);
  desk_->Run(1);
  EXPECT_EQ(Play().AutoDelta(), 85);
  EXPECT_EQ(desk_->transitions.FadeSpeed(), 45);
  QStringList played{Record(Deck::One).Title};
  for (int each = 0; each < 4; ++each) {
    desk_->Run(15.5);
    for (const Deck deck : kDecks) {
      if (Record(deck).State == DeckState::Playing) played.append(Record(deck).Title);
    }
  }
  EXPECT_GE(desk_->starts, 4);
  played.removeDuplicates();
  EXPECT_GE(played.size(), 4);
  Play().ToggleAutoPlay();
  EXPECT_FALSE(desk_->state.PreviewOn);
  Play().SetMode(AutoMode::Preview);
  prompter_.answers = {Answer::No};
  const int used = Play().UsedPicks();
  On();
  EXPECT_EQ(prompter_.Told().last(),
            QString::number(used) +
                u" Tracks have Already been Previewed in this Session !\r\n"
                "Continue With The Last Session(Not Repeating Tracks Already Previewed) ? "_s);
  EXPECT_LT(Play().UsedPicks(), used);
}

TEST_F(AutoPlayTest, TheStartTakesTheDecksAsTheyStand) {
  MakeQueue(4, 60, kSoft);
  desk_->queue.Select(3);
  desk_->decks.LoadCommand(Deck::One);
  desk_->Run(0.5);
  desk_->decks.ManualStart(Deck::One);
  On();
  EXPECT_EQ(Record(Deck::One).Title, u"C"_s);
  EXPECT_EQ(Record(Deck::Two).Title, u"D"_s) << "the row after the selected one";
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Loaded);
  Play().ToggleAutoPlay();
  desk_->decks.ManualStart(Deck::Two);
  desk_->transitions.SetCrossPan(-150);
  On();
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Playing) << "the faded deck begins anew by a part fade";
  EXPECT_LT(Record(Deck::Two).Position, 1);
  EXPECT_EQ(desk_->lastTransition, TransitionKind::PartFade);
  desk_->Run(1);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Done);
}

TEST_F(AutoPlayTest, TheTimedStartFiresOnceAndEndsNothing) {
  MakeQueue(3, 60, kSoft);
  Play().ArmTimer(9, 2);
  desk_->Run(100);
  EXPECT_EQ(desk_->desk.Status().Status().windowTitle, u"AutoPlay Timer On :09:02"_s);
  const bool shown = Play().DisplayWord() == u"AUTOMATIC PLAY"_s;
  desk_->Run(1);
  EXPECT_EQ(Play().DisplayWord(), shown ? QString() : u"AUTOMATIC PLAY"_s) << "it blinks while idle";
  desk_->Run(30);
  EXPECT_TRUE(desk_->state.AutoPlayOn);
  EXPECT_FALSE(Play().Timer().TimerArmed);
  Play().ArmTimer(9, 2);
  desk_->Run(3);
  EXPECT_TRUE(desk_->state.AutoPlayOn);
  EXPECT_FALSE(Play().Timer().TimerArmed);
}

}  // namespace
}  // namespace kelvo
