#include "console/automatic/AutoDecision.h"

#include <gmock/gmock.h>

#include <set>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;

using enum TransitionKind;

TEST(AutoDecisionTest, TheDefaultTableGivesDeltaSpeedAndTransitionByTheStyles) {
  struct Case {
    int start, end, delta, fadeSp;
    TransitionKind transition;
  };
  for (const Case& each :
       {Case{1, 1, 2, 11, Dub}, Case{1, 0, 4, 11, Dub}, Case{0, 1, 4, 11, Dub}, Case{0, 0, 8, 41, Pan},
        Case{2, 0, 33, 7, PartFade}, Case{0, 5, 33, 7, PartFade}}) {
    const AutoSettings got = DefaultDecision(each.start, each.end, {33, PartFade, 7, u"kept"_s});
    EXPECT_EQ(got, (AutoSettings{each.delta, each.transition, each.fadeSp, u"kept"_s}))
        << each.start << "," << each.end;
  }
}

TEST(AutoDecisionTest, TheOverlapsOfAListAreThoseThatItWillBePlayedWith) {
  const TrackPlaySettings strong{{}, {}, {}, 1, 1};
  const TrackPlaySettings soft{{}, {}, {}, 0, 0};
  const TrackPlaySettings custom{{true, Dub, Dub}, {30, 20}, {}, 1, 1};
  const AutoSettings now{3, Dub, std::nullopt, {}};
  EXPECT_EQ(PlannedOverlaps(AutoMode::Kelvo, {strong, strong, soft, soft, custom, strong}, now),
            (std::vector{2, 2, 4, 20, 30}))
      << "a fade-in that is longer starts earlier";
  EXPECT_EQ(PlannedOverlaps(AutoMode::Jukebox, {strong, soft, strong}, now), (std::vector{1, 1}));
  EXPECT_TRUE(PlannedOverlaps(AutoMode::Kelvo, {strong}, now).empty());
  EXPECT_TRUE(PlannedOverlaps(AutoMode::Kelvo, {}, now).empty());
}

TEST(AutoDecisionTest, ATrackWithTheCustomFlagSettlesItsOwnEnd) {
  const TrackPlaySettings plain{{false, PartFade, Pan}, {30, 20}, {10, 40}, 1, 1};
  const TrackPlaySettings other{{true, Pan, Pan}, {9, 9}, {9, 9}, 0, 0};
  const TrackPlaySettings custom{{true, PartFade, Pan}, {30, 20}, {10, 40}, 1, 1};
  const TrackPlaySettings noKind{{true, None, None}, {0, {}}, {25, {}}, 0, 0};
  const AutoSettings before{5, Dub, std::nullopt, {}};
  EXPECT_EQ(TrackSettingsFor(AutoMode::Kelvo, plain, other, before),
            (AutoSettings{4, Dub, 11, u"Default - Track Start:"_s}))
      << "own start, the other's end";
  EXPECT_EQ(TrackSettingsFor(AutoMode::Kelvo, custom, other, before),
            (AutoSettings{30, PartFade, 40, u"Custom - Track Start/Fade:"_s}));
  EXPECT_EQ(TrackSettingsFor(AutoMode::Kelvo, noKind, other, before),
            (AutoSettings{0, Dub, 25, u"Custom - Track Start/Fade:"_s}));
  EXPECT_EQ(TrackSettingsFor(AutoMode::Jukebox, custom, other, before),
            (AutoSettings{1, PartFade, 40, u"Jukebox Mode:"_s}))
      << "the jukebox keeps only the speed";
  EXPECT_EQ(TrackSettingsFor(AutoMode::Preview, custom, other, before),
            (AutoSettings{5, Dub, std::nullopt, u"Preview Mode"_s}));
}

TEST(AutoDecisionTest, ALongFadeInPullsTheStartEarlierAndNeverLater) {
  TrackPlaySettings track{{true, PartFade, Pan}, {3, 20}, {10, 40}, 0, 0};
  EXPECT_EQ(FadeOverride(track, {8, Dub, {}, {}}),
            (AutoSettings{20, PartFade, 10, u"Fade Overide: New Value=20"_s}));
  EXPECT_FALSE(FadeOverride(track, {20, Dub, {}, {}}));
  track.FadePosition = {30, {}};
  EXPECT_EQ(FadeOverride(track, {8, Dub, {}, {}})->AutoDelta, 30) << "one value serves for both";
  track.Mode.custom = false;
  EXPECT_FALSE(FadeOverride(track, {8, Dub, {}, {}}));
}

TEST(AutoDecisionTest, TheNextRowGoesRoundAndPassesByWhatTheDecksHold) {
  const auto rows = [](std::initializer_list<int> tracks, std::set<int> passed = {}) {
    std::vector<QueueChoice> choices;
    for (const int track : tracks) choices.push_back({ToMref(track), passed.contains(track)});
    return choices;
  };
  const auto next = [](std::vector<QueueChoice> choices, int start, int playing, int target) {
    NextRowQuestion question{std::move(choices), start, std::nullopt, std::nullopt, false};
    if (playing != 0) question.playing = ToMref(playing);
    if (target != 0) question.target = ToMref(target);
    return NextRow(question);
  };
  EXPECT_EQ(next(rows({10, 20, 30}), 3, 20, 10), 3);
  EXPECT_EQ(next(rows({10, 20, 30}), 4, 30, 20), 1) << "past the last row it goes on at the first";
  EXPECT_EQ(next(rows({10, 20, 30}), 1, 10, 20), 3);
  EXPECT_EQ(next(rows({10, 20}), 2, 20, 10), 1) << "two rows: the one that is not on air";
  EXPECT_EQ(next(rows({10}), 2, 10, 99), 1) << "one row is played again";
  EXPECT_EQ(next(rows({10, 20, 30}, {30}), 3, 10, 99), 2);
  EXPECT_EQ(next(rows({10, 20}, {10, 20}), 1, 0, 0), 0);
  EXPECT_EQ(next({}, 1, 0, 0), 0);
}

TEST(AutoDecisionTest, RandomRowsAreAnyButTheOneInPlay) {
  std::set<int> drawn;
  for (double draw = 0; draw < 1; draw += 0.01) drawn.insert(RandomRow(4, 2, draw));
  EXPECT_THAT(drawn, ::testing::ElementsAre(1, 3, 4));
  EXPECT_EQ(RandomRow(1, 1, 0.99), 1);
  EXPECT_EQ(RandomRow(2, 0, 0.99), 2);
}

TEST(AutoDecisionTest, TheTickStartsTheLoadedDeckAtTheDeltaOrWhenAllIsSilent) {
  const TickDeck loaded{DeckState::Loaded, 200, 0, false};
  const auto decide = [](TickDeck one, TickDeck two, int delta, bool pause = false) {
    TickQuestion question;
    question.decks[Deck::One] = one;
    question.decks[Deck::Two] = two;
    question.AutoDelta = delta;
    question.AutoTransition = Pan;
    question.PauseAtEnd = pause;
    return DecideTick(question);
  };
  const auto playingAt = [](double position) { return TickDeck{DeckState::Playing, 100.7, position, true}; };
  EXPECT_EQ(decide(loaded, playingAt(91.9), 8).start, std::nullopt);
  EXPECT_EQ(decide(loaded, playingAt(91.9), 8).secondsLeft, 1);
  EXPECT_EQ(decide(loaded, playingAt(92), 8).start, Deck::One);
  EXPECT_EQ(decide(playingAt(92), loaded, 8).start, Deck::Two);
  EXPECT_EQ(decide(loaded, playingAt(92), 8, true).start, std::nullopt) << "it pauses at the end";
  EXPECT_EQ(decide(loaded, playingAt(98.9), 0).start, std::nullopt) << "a delta is at least 1";
  EXPECT_EQ(decide(loaded, playingAt(99), 0).start, Deck::One);
  EXPECT_EQ(decide(loaded, {DeckState::Done, 100, 30, false}, 8).start, Deck::One) << "stopped by hand";
  EXPECT_EQ(decide({}, loaded, 8).start, Deck::Two) << "nothing else would ever start it";
  TickQuestion comesIn;
  comesIn.decks[Deck::One] = {DeckState::Playing, 100, 0, false};
  comesIn.decks[Deck::Two] = loaded;
  comesIn.AutoDelta = 500;
  comesIn.Starting = true;
  EXPECT_EQ(DecideTick(comesIn).start, std::nullopt) << "one start at a time";
  EXPECT_EQ(decide(playingAt(95), {DeckState::Done, 100, 100, false}, 8).next, std::nullopt);
}

TEST(AutoDecisionTest, TheTimedStartComparesHourAndMinuteEachByItself) {
  const TimedStart timer{true, 10, 50};
  EXPECT_FALSE(timer.Due(QTime(10, 49)));
  EXPECT_TRUE(timer.Due(QTime(10, 50)));
  EXPECT_TRUE(timer.Due(QTime(10, 59)));
  EXPECT_FALSE(timer.Due(QTime(11, 10)));
  EXPECT_TRUE(timer.Due(QTime(11, 50)));
  EXPECT_FALSE((TimedStart{false, 10, 50}.Due(QTime(10, 55))));
}

TEST(AutoDecisionTest, PreviewsRepeatATrackOnlyWhenAllWerePlayed) {
  PreviewPicks picks;
  double chance = 0;
  const auto draw = [&chance] { return chance = chance < 0.9 ? chance + 0.1 : 0; };
  std::set<Mref> seen;
  for (int each = 0; each < 12; ++each) seen.insert(*picks.Pick(12, draw));
  EXPECT_EQ(seen.size(), 12u) << "also those that the draws never hit";
  EXPECT_FALSE(seen.contains(Mref::None));
  EXPECT_EQ(picks.Count(), 12);
  EXPECT_TRUE(picks.Pick(12, draw));
  EXPECT_EQ(picks.Count(), 1);
  EXPECT_FALSE(picks.Pick(0, draw));

  // A track in front of the picked ones goes: the others are still known to be used.
  PreviewPicks others;
  const auto third = [] { return 0.3; };
  ASSERT_EQ(others.Pick(10, third), ToMref(3));
  ASSERT_EQ(others.Pick(10, third), ToMref(4));
  others.Remove(ToMref(1));
  others.Remove(ToMref(3));
  EXPECT_EQ(others.Count(), 1);
  EXPECT_EQ(others.Pick(8, [] { return 0.25; }), ToMref(3)) << "2 is used";
}

}  // namespace
}  // namespace kelvo
