#include "console/AutoDesk.h"
#include "support/ScriptedPrompter.h"
#include "support/TemporaryTree.h"

#include <gmock/gmock.h>

#include <optional>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using testing::AutoDesk;
using ::testing::ElementsAre;

const QByteArray kStrong = AutoDesk::Info("0,1,1", "3,3", "25,25", 1, 1);
const QByteArray kSoft = AutoDesk::Info("0,1,1", "3,3", "25,25", 0, 0);

class AutoPlayTest : public ::testing::Test {
 protected:
  void Make(AutoPlaySettings settings = {}) { desk_.emplace(tree_.Path(), prompter_, 2007, settings); }
  /// A queue of tracks "A", "B", ... of `seconds` each.
  void MakeQueue(int tracks, double seconds, const QByteArray& info, AutoPlaySettings settings = {}) {
    Make(settings);
    for (int each = 0; each < tracks; ++each) {
      desk_->Enqueue(desk_->AddTrack(QString(QChar(u'A' + each)), seconds, info));
    }
  }
  void On() {
    Play().ToggleAutoPlay();
    desk_->Run(0.9);
  }
  [[nodiscard]] AutoPlay& Play() { return desk_->play; }
  [[nodiscard]] const DeckRecord& Record(Deck deck) { return desk_->decks.Record(deck); }
  [[nodiscard]] QString Path(int row) { return desk_->queue.Row(row).Text(PathColumn); }
  /// Titles that went on air.
  [[nodiscard]] QString Heard() { return desk_->logged.join(QString()); }
  [[nodiscard]] bool Sounds() {
    return desk_->decks.Player(Deck::One).State() == PlayState::Playing ||
           desk_->decks.Player(Deck::Two).State() == PlayState::Playing;
  }
  [[nodiscard]] testing::FaultyPlayer& Disk(Deck deck) { return desk_->Disk(deck); }
  /// Runs until the fade of start number `starts` has run for half a second.
  void RunIntoFade(int starts) {
    for (int tenth = 0; tenth < 3000 && (desk_->starts < starts || !desk_->state.TransitionActive); ++tenth)
      desk_->Run(0.1);
    ASSERT_TRUE(desk_->state.TransitionActive);
    desk_->Run(0.5);
  }

  testing::TemporaryTree tree_;
  testing::ScriptedPrompter prompter_;
  std::optional<AutoDesk> desk_;
};

TEST_F(AutoPlayTest, AShortQueueIsRefusedAndAGroupPlaylistWithoutItsRunner) {
  MakeQueue(2, 60, kSoft);
  On();
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"There Must Be A Minimum of 3 Tracks in The Play Queue !"_s));
  EXPECT_EQ(prompter_.asked[0].title, u"Auto Play Start"_s);
  EXPECT_FALSE(desk_->state.AutoPlayOn);
  desk_->Enqueue(desk_->AddTrack(u"C"_s, 60));
  desk_->queue.SetGroup({u"x"_s});
  On();
  EXPECT_FALSE(desk_->state.PlaysByItself());
  EXPECT_TRUE(Play().StatusText().startsWith(u"A Group Playlist"_s));
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
  EXPECT_EQ(desk_->desk.FadeSpeed(), 11);
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
  EXPECT_EQ(desk_->desk.FadeSpeed(), 20);
  desk_->Run(36.5);
  EXPECT_EQ(desk_->lastTransition, TransitionKind::PartFade);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Playing) << "20 seconds before the end";
  desk_->Run(22);
  EXPECT_EQ(Record(Deck::One).Title, u"C"_s);
  EXPECT_EQ(Record(Deck::One).Info, u"Fade Overide: New Value=25"_s);
  EXPECT_EQ(Play().AutoDelta(), 25);
  EXPECT_EQ(Play().AutoTransition(), TransitionKind::Pan);
  EXPECT_EQ(desk_->desk.FadeSpeed(), 10);
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
  MakeQueue(4, 60, kSoft, {.JukeLag = 3, .PrevSecs = 15});
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
  EXPECT_EQ(desk_->desk.FadeSpeed(), 45);
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

// What would leave the desk silent.

TEST_F(AutoPlayTest, BadFilesArePassedOverAtOnceAndTold) {
  MakeQueue(7, 60, kStrong);
  QFile::remove(Path(2));
  desk_->audio.SetDuration(Path(3), -1);
  TrackEdit edit;
  edit.duration = 0;
  desk_->catalogue.Change(desk_->queue.Row(4).track, edit);
  desk_->audio.SetDuration(Path(4), 0);
  desk_->audio.SetSilent(Path(5));
  On();
  desk_->Run(3);
  EXPECT_EQ(Record(Deck::Two).Title, u"F"_s);
  EXPECT_EQ(Play().SkippedCount(), 4);
  EXPECT_EQ(Play().LastSkipped(), u"E : No Sound In It"_s);
  EXPECT_TRUE(Play().StatusText().startsWith(u"Skipped : "_s));
  desk_->Run(250);
  EXPECT_TRUE(Heard().startsWith(u"AFGA"_s)) << Heard().toStdString();
  EXPECT_EQ(Play().SkippedCount(), 4) << "each is told once an hour";
  EXPECT_FALSE(Play().NothingPlayable());
}

TEST_F(AutoPlayTest, ASilentFileThatWasLoadedForARunThatEndedIsPassedOver) {
  MakeQueue(4, 60, kStrong);
  desk_->audio.SetSilent(Path(2));
  Play().ToggleAutoPlay();
  desk_->Run(0.03);
  ASSERT_TRUE(Record(Deck::Two).Loading);
  Play().ToggleAutoPlay();
  desk_->Run(1);
  ASSERT_EQ(Record(Deck::Two).Title, u"B"_s);
  On();
  desk_->Run(5);
  EXPECT_EQ(Record(Deck::Two).Title, u"C"_s);
}

TEST_F(AutoPlayTest, WhatWasPassedOverIsShownForAWhileThoughNothingElseIsToBeShown) {
  MakeQueue(4, 120, kStrong);
  On();
  desk_->Run(100);
  QFile::remove(Path(3));
  desk_->audio.openTime = std::chrono::seconds(60);
  desk_->Run(22);
  ASSERT_TRUE(Record(Deck::One).Loading);
  EXPECT_TRUE(Play().StatusText().startsWith(u"Skipped : C"_s)) << Play().StatusText().toStdString();
  desk_->Run(6);
  EXPECT_EQ(Play().StatusText(), QString());
}

TEST_F(AutoPlayTest, ANewRunTriesWhatFailedInTheLast) {
  MakeQueue(3, 60, kStrong);
  desk_->audio.SetDuration(Path(1), -1);
  On();
  ASSERT_EQ(Record(Deck::One).Title, u"B"_s);
  Play().ToggleAutoPlay();
  desk_->decks.StopDeck(Deck::One);
  desk_->decks.StopDeck(Deck::Two);
  desk_->audio.SetDuration(Path(1), 60);
  desk_->queue.Select(1);
  On();
  EXPECT_EQ(Record(Deck::One).Title, u"A"_s);
}

TEST_F(AutoPlayTest, WhereNothingCanBePlayedItSaysSoAndGoesOnWhenSomethingCan) {
  MakeQueue(3, 20, kStrong);
  for (int row = 1; row <= 3; ++row) desk_->audio.SetDuration(Path(row), -1);
  On();
  desk_->Run(30);
  EXPECT_TRUE(Play().NothingPlayable());
  EXPECT_EQ(Play().StatusText(), u"Nothing In The Play Queue Can Be Played !"_s);
  EXPECT_TRUE(desk_->state.AutoPlayOn);
  desk_->audio.SetDuration(Path(2), 20);
  desk_->Run(8);
  EXPECT_FALSE(Play().NothingPlayable());
  EXPECT_TRUE(Sounds());
  desk_->Run(100);
  EXPECT_TRUE(Heard().startsWith(u"BBB"_s)) << "one good track is better than silence";
}

TEST_F(AutoPlayTest, AStreamThatBreaksAStopByHandAndAHangingLoadGoOnWithTheNextTrack) {
  MakeQueue(5, 60, kStrong);
  desk_->audio.SetDuration(Path(1), 10);
  On();
  desk_->Run(12.5);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Playing);
  EXPECT_EQ(Play().LastSkipped(), u"A : It Ended At 00:10"_s);
  desk_->Run(10);
  desk_->decks.StopDeck(Deck::Two);
  desk_->Run(2);
  EXPECT_EQ(Record(Deck::One).Title, u"C"_s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Playing);
  desk_->decks.StopDeck(Deck::One);
  desk_->audio.openTime = std::chrono::hours(1);
  desk_->Run(5);
  desk_->audio.openTime = std::chrono::milliseconds(20);
  desk_->Run(15);
  EXPECT_TRUE(Sounds());
}

TEST_F(AutoPlayTest, AQueueThatShrinksUnderIt) {
  MakeQueue(3, 30, kStrong);
  On();
  desk_->Run(5);
  for (const int row : {3, 2}) {
    QFile::remove(Path(row));
    desk_->queue.Select(row);
    desk_->queue.EditSelected();
    desk_->Run(1);
  }
  ASSERT_EQ(desk_->queue.Count(), 1);
  desk_->Run(300);
  EXPECT_TRUE(Sounds());
  EXPECT_TRUE(Heard().endsWith(u"AAA"_s)) << Heard().toStdString();
}

// What would start, end or cut more than was asked for.

TEST_F(AutoPlayTest, TheStartBringsInOneTrackWhereverTheSliderAndTheDeltaStand) {
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

TEST_F(AutoPlayTest, APanOutOfSilenceIsNoSilence) {
  Make();
  for (const char name : {'A', 'B', 'C', 'D'}) {
    desk_->Enqueue(
        desk_->AddTrack(QString(QLatin1Char(name)), 60, AutoDesk::Info("1,3,3", "8,8", "0,0", 0, 0)));
  }
  desk_->transitions.SetPanFadeBias(40);
  On();
  desk_->Run(15);
  desk_->decks.StopDeck(Deck::One);
  desk_->Run(20);
  EXPECT_EQ(Heard(), u"AB"_s) << "it comes in slowly, and nothing else does";
}

TEST_F(AutoPlayTest, APreviewBeginsBesideTheTrackOnAir) {
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

TEST_F(AutoPlayTest, TheVoiceAtFullDepthStartsNoTrackAndHoldsNoneUp) {
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

TEST_F(AutoPlayTest, AFaderPulledDownByHandStartsNoTrack) {
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

TEST_F(AutoPlayTest, NobodyTakesAnAutomaticFadeBack) {
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

TEST_F(AutoPlayTest, AFadeTakenBackAfterTheStopPutsItsDeckOnAirAgain) {
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

TEST_F(AutoPlayTest, ADeckThatSoundsOnAfterADubIsNotLoadedOver) {
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

  // Its disk dies: the desk doesn't wait for its end.
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

TEST_F(AutoPlayTest, ADubUnderAFadeWhoseDecksAreDeadIsNotFadedOut) {
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

TEST_F(AutoPlayTest, ADeckThatGivesNoSoundDoesNotTakeTheAirFromTheOther) {
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

TEST_F(AutoPlayTest, AStyleOutOfTheTableLeavesWhatWasSettled) {
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
