#include "console/DeskFixture.h"
#include "database/GroupElement.h"

using namespace kelvo;
using namespace kelvo::testing;

namespace {

/// A desk with a recorded mix of three tracks in its queue.
class GroupPlaying : public DeskTest {
 protected:
  struct Event {
    Nanoseconds at;
    int track;
    PlayState state;
  };
  void OpenMix(const std::vector<GroupElement>& elements) {
    AddThreeTracks();
    Open();
    EnqueueAll();
    SetMix(elements);
    for (const Deck deck : kDecks) {
      QObject::connect(&Decks(), &DeckEngine::Changed, &watch_, [this](Deck changed) { Look(changed); });
      static_cast<void>(deck);
      break;
    }
  }
  /// The elements as lines of their tracks, which each begin with a load.
  void SetMix(const std::vector<GroupElement>& elements) {
    QStringList lines;
    for (const GroupElement& element : elements) {
      if (element.code == SessionCode::Loaded) {
        lines.append(element.Print());
        continue;
      }
      for (QString& line : lines) {
        if (ParseGroupLine(line)->front().track == element.track) line += u"#"_s + element.Print();
      }
    }
    Queue().SetGroup(lines);
  }
  static GroupElement Element(int seconds, SessionCode code, int track, Deck deck, double position = -1) {
    static int index = 0;
    return {.index = ++index,
            .seconds = seconds,
            .track = ToMref(track),
            .deck = PlayerNumber(deck),
            .fade = code == SessionCode::FadeStarted ? TransitionKind::PartFade : TransitionKind::None,
            .speed = code == SessionCode::FadeStarted ? 25 : -1,
            .code = code,
            .position = position,
            .length = 60};
  }
  void Look(Deck deck) {
    const bool plays = Record(deck).State == DeckState::Playing;
    if (std::exchange(playing_[deck], plays) == plays) return;
    events_.push_back({loop_.Elapsed() - begun_, ToInt(Record(deck).CatalogueIndex),
                       plays ? PlayState::Playing : PlayState::Stopped});
  }
  void Run() {
    begun_ = loop_.Elapsed();
    desk_->Automatic().ToggleAutoPlay();
    ASSERT_TRUE(desk_->State().GroupPlayOn);
  }
  [[nodiscard]] std::vector<Nanoseconds> Starts() const {
    std::vector<Nanoseconds> starts;
    for (const Event& event : events_) {
      if (event.state == PlayState::Playing) starts.push_back(event.at);
    }
    return starts;
  }

  QObject watch_;
  PerDeck<bool> playing_;
  std::vector<Event> events_;
  Nanoseconds begun_{0};
};

TEST_F(GroupPlaying, EachElementIsDoneAtItsPlaceAndAtTheEndTheModeIsLeft) {
  OpenMix(
      {Element(100, SessionCode::Loaded, 1, Deck::One), Element(101, SessionCode::TrackStarted, 1, Deck::One),
       Element(101, SessionCode::Loaded, 2, Deck::Two), Element(131, SessionCode::TrackStarted, 2, Deck::Two),
       Element(131, SessionCode::FadeStarted, 2, Deck::Two),
       Element(140, SessionCode::TrackStopped, 1, Deck::One),
       Element(150, SessionCode::PositionChangedDeckTwo, 2, Deck::Two, 40)});
  Run();
  EXPECT_EQ(desk_->Automatic().DisplayWord(), u"GRP MODE"_s);
  loop_.RunFor(32s);
  EXPECT_EQ(Queue().Row(1).status, RowStatus::NowPlaying);
  EXPECT_TRUE(desk_->StatusLine().contains(u" Running Line 5 Of 7 : Start Fade"_s))
      << desk_->StatusLine().toStdString();
  loop_.RunFor(17s);
  EXPECT_NEAR(Player(Deck::Two).CurrentPosition(), 18, 0.5);
  EXPECT_EQ(desk_->Fades().CrossPan(), 200) << "it was faded in";
  loop_.RunFor(2s);
  EXPECT_NEAR(Player(Deck::Two).CurrentPosition(), 41, 0.5);
  EXPECT_FALSE(desk_->State().GroupPlayOn);
  EXPECT_EQ(desk_->Automatic().StartCaption(), u"START"_s);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Playing) << "the last track plays on";
  const std::vector<Nanoseconds> starts = Starts();
  ASSERT_EQ(starts.size(), 2U);
  EXPECT_LT(std::chrono::abs(starts[0] - 1s), 10ms);
  EXPECT_LT(std::chrono::abs(starts[1] - 31s), 10ms);
  EXPECT_FALSE(Panel().Visible()) << "nobody is asked";
}

TEST_F(GroupPlaying, ALongMixDoesNotDriftAndRepeatsFromItsOwnEnd) {
  // A load takes 20 ms, and a disk is slow now and then.
  std::vector<GroupElement> elements;
  for (int turn = 0; turn < 30; ++turn) {
    const Deck deck = turn % 2 == 0 ? Deck::One : Deck::Two;
    const int track = turn % 2 + 1;
    elements.push_back(Element(turn * 60, SessionCode::Loaded, track, deck));
    elements.push_back(Element(turn * 60 + 7, SessionCode::TrackStarted, track, deck));
    elements.push_back(Element(turn * 60 + 50, SessionCode::TrackStopped, track, deck));
  }
  elements.push_back(Element(1800, SessionCode::Repeat, 1, Deck::One));
  AddThreeTracks();
  Open();
  EnqueueAll();
  QStringList lines;
  for (const GroupElement& element : elements) {
    if (element.code == SessionCode::Loaded) {
      lines.append(element.Print());
    } else {
      lines.back() += u"#"_s + element.Print();
    }
  }
  // The mark has no line of its own: it ends the last one, whatever its track.
  GroupElement mark = elements.back();
  mark.track = ParseGroupLine(lines.back().section(u'#', 0, 0))->front().track;
  lines.back() = lines.back().section(u'#', 0, 2) + u"#"_s + mark.Print();
  Queue().SetGroup(lines);
  QObject::connect(&Decks(), &DeckEngine::Changed, &watch_, [this](Deck changed) { Look(changed); });
  Run();
  loop_.RunFor(2h + 5s);
  const std::vector<Nanoseconds> starts = Starts();
  ASSERT_EQ(starts.size(), 120U);
  for (std::size_t turn = 0; turn < starts.size(); ++turn)
    EXPECT_LT(std::chrono::abs(starts[turn] - (7s + 60s * static_cast<int>(turn))), 10ms) << turn;
  desk_->Automatic().ToggleAutoPlay();
  EXPECT_FALSE(desk_->State().GroupPlayOn);
  loop_.RunFor(5min);
  EXPECT_EQ(Starts().size(), 120U) << "the operator ended it";
}

TEST_F(GroupPlaying, WaitsForTheDecksPassesOverWhatFailsAndKeepsItsOtherDeckInTime) {
  OpenMix({Element(0, SessionCode::Loaded, 1, Deck::One), Element(1, SessionCode::TrackStarted, 1, Deck::One),
           Element(2, SessionCode::Loaded, 2, Deck::Two),
           Element(10, SessionCode::TrackStarted, 2, Deck::Two),
           Element(12, SessionCode::TrackStopped, 1, Deck::One)});
  Load(Deck::One, 3);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(80s);
  Run();
  loop_.RunFor(2s);
  EXPECT_TRUE(desk_->StatusLine().startsWith(u"Waiting to Start "_s)) << desk_->StatusLine().toStdString();
  ASSERT_TRUE(loop_.RunUntil([this] { return ToInt(Record(Deck::One).CatalogueIndex) == 1; }, 30s));
  const Nanoseconds began = loop_.Elapsed();
  // The second track's disk does not answer for a while.
  loop_.HangDisk(catalogue_.TrackPaths(ToMref(2)));
  loop_.RunFor(13s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Done) << "stopped in time, though the other deck waits";
  EXPECT_LT(loop_.Elapsed() - began, 14s);
  loop_.RunFor(10s);
  EXPECT_FALSE(desk_->State().GroupPlayOn);
}

TEST_F(GroupPlaying, TheWaitForItsFirstStartIsNoSilenceToTellOf) {
  OpenMix({Element(0, SessionCode::Loaded, 1, Deck::One),
           Element(30, SessionCode::TrackStarted, 1, Deck::One),
           Element(200, SessionCode::TrackStopped, 1, Deck::One)});
  Run();
  loop_.RunFor(25s);
  EXPECT_FALSE(desk_->Status().Status().airSilent);
  loop_.RunFor(90s);
  EXPECT_TRUE(desk_->Status().Status().airSilent) << "the track is over and nothing follows";
}

TEST_F(GroupPlaying, AListOfOneMomentThatRepeatsLeavesTimeForTheDesk) {
  OpenMix({Element(5, SessionCode::Loaded, 1, Deck::One), Element(5, SessionCode::TrackStarted, 1, Deck::One),
           Element(5, SessionCode::Repeat, 1, Deck::One)});
  Run();
  loop_.RunFor(10s);
  EXPECT_TRUE(desk_->State().GroupPlayOn);
  EXPECT_LE(Starts().size(), 12U);
  EXPECT_GE(Starts().size(), 9U);
  desk_->Automatic().ToggleAutoPlay();
  SetMix({});
  Queue().SetGroup({u"1,00:00:01,1,2,0,-1,1,-1,60#garbage"_s, u"#,,"_s});
  Player(Deck::One).Stop();
  Run();
  loop_.RunFor(2s);
  EXPECT_FALSE(desk_->State().GroupPlayOn) << "lines that can't be read are none";
}

}  // namespace
