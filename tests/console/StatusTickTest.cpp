#include "console/DeskFixture.h"
#include "console/status/StatusTick.h"

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::DeskTest;
using ::testing::ElementsAre;

/// A desk of three tracks with its beat, everything around it scripted.
class StatusTickTest : public DeskTest {
 protected:
  void SetUp() override {
    AddThreeTracks();
    Open();
    // Whole seconds, so that what is left of a track is easy to tell at a beat.
    loop_.RunFor(1s - loop_.Elapsed() % 1s);
    tick_.emplace(StatusTick::Services{.loop = loop_,
                                       .state = desk_->State(),
                                       .decks = desk_->Decks(),
                                       .queue = desk_->Queue(),
                                       .panel = desk_->Panel(),
                                       .warningPlayer = *warningPlayer_,
                                       .title = u"Kelvo"_s,
                                       .version = u"1.1"_s,
                                       .aboutLine = u"About Kelvo"_s,
                                       .sessionStart = sessionStart_});
    tick_->hooks.Memory = [this] { return memory_; };
    tick_->hooks.StatusLine = [this] { return desk_->StatusLine(); };
    tick_->hooks.SetStatusLine = [this](const QString& line) { desk_->SetStatusLine(line); };
    tick_->hooks.AutoTick = [this] { ++autoTicks_; };
    QObject::connect(&*tick_, &StatusTick::Ticked, [this] { ++ticks_; });
  }
  [[nodiscard]] const DeskStatus& Status() const { return tick_->Status(); }
  [[nodiscard]] bool Lamp(Deck deck) const { return Status().lamps[deck]; }
  void Play(Deck deck, int row) {
    Load(deck, row);
    Decks().ManualStart(deck);
  }
  /// Lets the deck play until so much is left, and a beat comes on top of it.
  void TickWith(Deck deck, double secondsLeft) {
    Decks().SetPosition(deck, Record(deck).Duration - secondsLeft);
    tick_->Tick();
  }
  /// The warning's own playing, without the beat's help.
  [[nodiscard]] bool WarningSounds() {
    loop_.RunFor(audio_.openTime * 2);
    return warningPlayer_->State() == PlayState::Playing;
  }

  QDateTime sessionStart_ = loop_.Now().addSecs(-26 * 3600);
  MemoryStatus memory_{2048 * 1024, 25000000};
  std::unique_ptr<MediaPlayer> warningPlayer_ = audio_.MakePlayer();
  std::optional<StatusTick> tick_;
  int ticks_ = 0;
  int autoTicks_ = 0;
};

TEST_F(StatusTickTest, ItTicksEachSecondAndEachOtherSecondWhileAFadeWalks) {
  bool walks = false;
  int seconds = 0;
  tick_->hooks.EverySecond = [&seconds] { ++seconds; };
  tick_->hooks.WalkRuns = [&walks] { return walks; };
  loop_.RunFor(2s);
  EXPECT_EQ(ticks_, 0) << "not before its start";
  tick_->Start();
  loop_.RunFor(3100ms);
  EXPECT_EQ(ticks_, 3);
  walks = true;
  loop_.RunFor(6s);
  EXPECT_EQ(ticks_, 6);
  EXPECT_EQ(seconds, 9) << "some things cannot wait";
  walks = false;
  loop_.RunFor(3s);
  EXPECT_EQ(ticks_, 9);
  tick_->Stop();
  loop_.RunFor(5s);
  EXPECT_EQ(ticks_, 9);
}

TEST_F(StatusTickTest, AnIndicatorMovesThroughItsPatternsWhileItsDeckPlays) {
  EnqueueAll();
  tick_->Tick();
  EXPECT_EQ(Status().indicators[Deck::One], (DeckIndicator{}));
  Play(Deck::One, 1);
  std::vector<int> styles;
  for (int beat = 0; beat < 6; ++beat) {
    tick_->Tick();
    styles.push_back(Status().indicators[Deck::One].style);
  }
  EXPECT_THAT(styles, ElementsAre(3, 5, 2, 4, 3, 5));
  EXPECT_EQ(Status().indicators[Deck::Two].style, 1);
  Decks().StopDeck(Deck::One);
  tick_->Tick();
  EXPECT_EQ(Status().indicators[Deck::One], (DeckIndicator{}));
}

TEST_F(StatusTickTest, TheStatusLineNamesTheDeckThatIsHeard) {
  EnqueueAll();
  Play(Deck::One, 1);
  Play(Deck::Two, 2);
  tick_->Tick();
  EXPECT_EQ(desk_->StatusLine(), u"Currently Playing: Alpha"_s) << "in the middle the first deck counts";
  desk_->State().CrossPan = 1;
  tick_->Tick();
  EXPECT_EQ(desk_->StatusLine(), u"Currently Playing: Beta"_s);
  EXPECT_TRUE(Status().indicators[Deck::One].text.isEmpty());

  // Turned down it is not heard, and the line stays as it is.
  Decks().SetLoss(Deck::Two, 200);
  desk_->SetStatusLine(u"Total Tracks :3"_s);
  tick_->Tick();
  EXPECT_EQ(desk_->StatusLine(), u"Total Tracks :3"_s);

  Decks().SetLoss(Deck::Two, 0);
  tick_->Tick();
  Decks().StopDeck(Deck::One);
  Decks().StopDeck(Deck::Two);
  tick_->Tick();
  EXPECT_EQ(desk_->StatusLine(), u"About Kelvo"_s) << "nothing plays any more";
}

TEST_F(StatusTickTest, AGroupListTellsWhereItStands) {
  GroupRun run;
  tick_->hooks.Group = [&run] { return run; };
  EnqueueAll();
  Queue().SetName(u"Friday (Grp)"_s);
  desk_->State().GroupPlayOn = true;
  Play(Deck::One, 1);
  tick_->Tick();
  EXPECT_EQ(desk_->StatusLine(), u"Waiting to Start Friday (Grp)"_s);
  run = {2, 14, u"Fade Deck 2"_s};
  tick_->Tick();
  EXPECT_EQ(desk_->StatusLine(), u"Friday (Grp) Running Line 2 Of 14 : Fade Deck 2"_s);
  run.details.clear();
  tick_->Tick();
  EXPECT_EQ(desk_->StatusLine(), u"Friday (Grp) Rock n Rolling !"_s);
  Decks().StopDeck(Deck::One);
  Load(Deck::Two, 2);
  tick_->Tick();
  EXPECT_EQ(desk_->StatusLine(), u"Friday (Grp) Ready To Rock n Roll !"_s);
}

TEST_F(StatusTickTest, TheTitleTellsSessionAndMemoryOrTheTimedStart) {
  tick_->Tick();
  EXPECT_EQ(Status().windowTitle,
            u"Kelvo 1.1 Console 1.1 - (No Name) - : Free Memory : / 24414 Of 2048 K.bytes"_s);
  std::optional<QString> armed = u"AutoPlay Timer On : 22:30"_s;
  tick_->hooks.TimedStart = [&armed] { return armed; };
  tick_->Tick();
  EXPECT_EQ(Status().windowTitle, u"AutoPlay Timer On : 22:30"_s);
}

TEST_F(StatusTickTest, MemoryIsLowBelowTwentyMillionBytesAndNotAtThem) {
  for (const auto& [available, low] : {std::pair{20000000, false}, {19999999, true}, {20000001, false}}) {
    memory_.available = available;
    tick_->Tick();
    EXPECT_EQ(Status().memoryLow, low) << available;
  }
}

TEST_F(StatusTickTest, QueueLengthSessionTimeAndClockGoOnWithTheBeat) {
  EnqueueAll();
  tick_->Start();
  loop_.RunFor(61s);
  EXPECT_EQ(Status().queueCount, 3);
  EXPECT_EQ(Status().queueTime, u"00:03:30"_s);
  EXPECT_EQ(Status().sessionTime, u"26:01:02"_s) << "a long party";
  EXPECT_EQ(Status().time, loop_.Now().time().toString(u"HH:mm:ss"_s));
  EXPECT_EQ(Status().date, u"Fri 1 Jun 2007"_s);
  const ClockPoint second = HandsAt(loop_.Now().time()).second;
  EXPECT_DOUBLE_EQ(Status().hands.second.x, second.x);
}

TEST_F(StatusTickTest, TheSixthUnansweredQuestionWorriesTheDesk) {
  for (int round = 1; round <= 6; ++round) {
    Panel().Open({u"Sure ?"_s, u"YES"_s, PanelAction::StopDeck, Deck::One});
    Panel().Cancel();
    loop_.RunFor(4s);
  }
  for (int round = 1; round <= 6; ++round) {
    tick_->Tick();
    EXPECT_EQ(Status().caution, u"CAUTION!"_s) << round;
    Panel().Open({u"Sure ?"_s, u"YES"_s, PanelAction::StopDeck, Deck::One});
    loop_.RunFor(4s);
  }
  tick_->Tick();
  EXPECT_EQ(Status().caution, u"I'm Worried For You !"_s);
}

TEST_F(StatusTickTest, MenusAreOpenOnlyOnADeskWhereNothingIsBegun) {
  tick_->Tick();
  EXPECT_TRUE(Status().idle);
  std::array<bool, 3> begun{};
  tick_->hooks.JinglePlays = [&begun] { return begun[0]; };
  tick_->hooks.JingleActive = [&begun] { return begun[1]; };
  tick_->hooks.MonitorShown = [&begun] { return begun[2]; };
  for (bool& each : begun) {
    each = true;
    tick_->Tick();
    EXPECT_FALSE(Status().idle);
    each = false;
  }
  EnqueueAll();
  Load(Deck::Two, 1);
  tick_->Tick();
  EXPECT_TRUE(Status().idle) << "a loaded deck is at rest";
  Decks().ManualStart(Deck::Two);
  tick_->Tick();
  EXPECT_FALSE(Status().idle);
  Decks().StopDeck(Deck::Two);
  Queue().SetName(u"Friday"_s);
  tick_->Tick();
  EXPECT_FALSE(Status().idle);
}

TEST_F(StatusTickTest, TheLampBlinksInTheLastNineSecondsOfADeck) {
  EnqueueAll();
  Play(Deck::One, 1);
  TickWith(Deck::One, 10.5);
  EXPECT_EQ(Record(Deck::One).RemainSeconds, 10);
  EXPECT_FALSE(Lamp(Deck::One));
  TickWith(Deck::One, 9.5);
  EXPECT_TRUE(Lamp(Deck::One));
  EXPECT_FALSE(Lamp(Deck::Two));
  TickWith(Deck::One, 8.5);
  EXPECT_FALSE(Lamp(Deck::One)) << "the dark beat";
  TickWith(Deck::One, 7.5);
  EXPECT_TRUE(Lamp(Deck::One));
  TickWith(Deck::One, 0.5);
  EXPECT_EQ(Record(Deck::One).RemainSeconds, 0);
  EXPECT_FALSE(Lamp(Deck::One));
}

TEST_F(StatusTickTest, TheLampStaysDarkWithTheNextTrackReadyOrByItself) {
  EnqueueAll();
  Play(Deck::One, 1);
  Load(Deck::Two, 2);
  for (int beat = 0; beat < 3; ++beat) {
    TickWith(Deck::One, 8.5);
    EXPECT_FALSE(Lamp(Deck::One));
  }
  Decks().SetState(Deck::Two, DeckState::Done);
  TickWith(Deck::One, 8.5);
  EXPECT_TRUE(Lamp(Deck::One));
  desk_->State().AutoPlayOn = true;
  TickWith(Deck::One, 8.5);
  EXPECT_FALSE(Lamp(Deck::One));
  TickWith(Deck::One, 8.5);
  EXPECT_FALSE(Lamp(Deck::One));
}

TEST_F(StatusTickTest, TheWarningSoundComesAgainUntilTheDeckIsSafe) {
  audio_.SetDuration(u"/warn.mp3"_s, 1.5);
  EnqueueAll();
  Play(Deck::Two, 1);
  TickWith(Deck::Two, 9.5);
  EXPECT_FALSE(WarningSounds()) << "it is off";
  TickWith(Deck::Two, 9.5);

  tick_->SetAudioWarning(true, u"/warn.mp3"_s);
  TickWith(Deck::Two, 9.5);
  EXPECT_TRUE(WarningSounds());
  loop_.RunFor(2s);
  EXPECT_FALSE(warningPlayer_->State() == PlayState::Playing);
  TickWith(Deck::Two, 7.5);
  TickWith(Deck::Two, 6.5);
  EXPECT_TRUE(WarningSounds()) << "once more from its beginning";
  loop_.RunFor(2s);
  Decks().StopDeck(Deck::Two);
  tick_->Tick();
  EXPECT_FALSE(WarningSounds());
}

TEST_F(StatusTickTest, AWarningThatOpensTooLateIsNotHeard) {
  audio_.SetDuration(u"/warn.mp3"_s, 1.5);
  EnqueueAll();
  Play(Deck::One, 1);
  tick_->SetAudioWarning(true, u"/warn.mp3"_s);
  audio_.openTime = 3s;
  TickWith(Deck::One, 5);
  Decks().StopDeck(Deck::One);
  tick_->Tick();
  EXPECT_FALSE(WarningSounds());
}

TEST_F(StatusTickTest, AWarningFileThatCannotBeOpenedIsLoggedOnce) {
  audio_.SetDuration(u"/warn.mp3"_s, -1);
  EnqueueAll();
  Play(Deck::One, 1);
  tick_->SetAudioWarning(true, u"/warn.mp3"_s);
  for (int beat = 0; beat < 6; ++beat) {
    TickWith(Deck::One, 8.5);
    EXPECT_FALSE(WarningSounds());
  }
  EXPECT_EQ(Log().count(u"/warn.mp3"_s), 1);
  EXPECT_TRUE(prompter_.asked.empty());
}

TEST_F(StatusTickTest, TheModeWordBlinksAtRestAndIsThatOfAutomaticPlayInIt) {
  tick_->hooks.Mode = [] { return u"JUKEBOX MODE"_s; };
  tick_->hooks.PauseCaption = [] { return u" >||"_s; };
  tick_->Tick();
  const bool lit = Status().mode.lit;
  EXPECT_EQ(Status().mode.text, u"AUTOMATIC PLAY"_s);
  EXPECT_TRUE(Status().mode.idle);
  tick_->Tick();
  EXPECT_EQ(Status().mode.lit, !lit);
  EXPECT_EQ(Status().pauseCaption, u"> ||"_s);
  desk_->State().AutoPlayOn = true;
  for (int beat = 0; beat < 2; ++beat) {
    tick_->Tick();
    EXPECT_EQ(Status().mode.text, u"JUKEBOX MODE"_s);
    EXPECT_TRUE(Status().mode.lit);
  }
  EXPECT_EQ(Status().pauseCaption, u" >||"_s);
}

TEST_F(StatusTickTest, AutomaticPlayHasItsTurnUnlessAFadeWalks) {
  tick_->Tick();
  EXPECT_EQ(autoTicks_, 0);
  desk_->State().AutoPlayOn = true;
  tick_->Tick();
  EXPECT_EQ(autoTicks_, 1);
  desk_->State().TransitionActive = true;
  tick_->Tick();
  EXPECT_EQ(autoTicks_, 1);
}

TEST_F(StatusTickTest, TheRowInPlayBlinksInAutomaticPlayButNotOfAGroupList) {
  EnqueueAll();
  Load(Deck::One, 2);
  Decks().ManualStart(Deck::One);
  tick_->Tick();
  EXPECT_FALSE(Status().queueBlinks);
  desk_->State().AutoPlayOn = true;
  tick_->Tick();
  EXPECT_TRUE(Status().queueLit);
  EXPECT_EQ(Status().queuePosition, 2);
  tick_->Tick();
  EXPECT_FALSE(Status().queueLit);
  EXPECT_TRUE(Status().queueBlinks);

  // Whatever becomes of the rows it is the one on air.
  Queue().Click(2);
  Queue().MoveSelectedUp();
  Load(Deck::Two, 3);
  Queue().MarkQueueRow(ToMref(3), RowStatus::Stopped);
  tick_->Tick();
  EXPECT_EQ(Status().queuePosition, 1);
  Decks().ManualStart(Deck::Two);
  tick_->Tick();
  EXPECT_EQ(Status().queuePosition, 3) << "the one that was started last";

  Queue().SetGroup({u"line"_s});
  tick_->Tick();
  EXPECT_FALSE(Status().queueBlinks);
  EXPECT_EQ(Status().queuePosition, 0);
}

TEST_F(StatusTickTest, ARipHoldsTheBeatAndAFailureHoldsUpNothingElse) {
  bool rips = true;
  tick_->hooks.RipRuns = [&rips] { return rips; };
  desk_->State().AutoPlayOn = true;
  tick_->Tick();
  EXPECT_EQ(ticks_, 0);
  EXPECT_EQ(autoTicks_, 0);

  rips = false;
  tick_->hooks.Memory = []() -> MemoryStatus { throw Failure(u"no such device"_s); };
  tick_->Tick();
  EXPECT_EQ(autoTicks_, 1);
  EXPECT_EQ(ticks_, 1);
  EXPECT_TRUE(Log().contains(u"no such device"_s));
}

}  // namespace
}  // namespace kelvo
