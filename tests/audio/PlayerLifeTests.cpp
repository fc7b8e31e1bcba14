#include "audio/SimulatedStudio.h"

#include <gtest/gtest.h>

#include <vector>

namespace kelvo::testing {

namespace {

Job<> OpenInto(MediaPlayer& player, QString path, std::optional<OpenResult::Kind>& into) {
  const OpenResult result = co_await player.Open(path);
  into = result.kind;
}

}  // namespace

TEST(PlayerLife, AnOpenThatIsOvertakenSaysSoAndTheLastOneCounts) {
  SimulatedStudio studio;
  const auto player = studio.engine.MakePlayer();
  const QString first = studio.File("first.wav", WaveFile(Noise(1000)));
  const QString second = studio.File("second.wav", WaveFile(Noise(2000)));
  std::optional<OpenResult::Kind> one;
  std::optional<OpenResult::Kind> two;
  const Job<> jobOne = OpenInto(*player, first, one);
  const Job<> jobTwo = OpenInto(*player, second, two);
  EXPECT_FALSE(one) << "never from inside another call";
  studio.loop.RunFor(50ms);
  EXPECT_EQ(one, OpenResult::Kind::Superseded);
  EXPECT_EQ(two, OpenResult::Kind::Opened);
  EXPECT_EQ(player->FileName(), second);

  // A job that is dropped opens nothing.
  { const Job<> dropped = OpenInto(*player, first, one); }
  studio.loop.RunFor(50ms);
  EXPECT_EQ(player->FileName(), second);

  player->Play();
  const Job<> closed = OpenInto(*player, first, one);
  player->Close();
  studio.loop.RunFor(50ms);
  EXPECT_EQ(one, OpenResult::Kind::Superseded);
  EXPECT_TRUE(player->FileName().isEmpty());
  EXPECT_EQ(player->Duration(), 0);
  EXPECT_EQ(player->CurrentPosition(), 0);
  player->Play();
  EXPECT_EQ(player->State(), PlayState::Stopped);
}

TEST(PlayerLife, TheOldFilePlaysUntilTheNewOneIsGood) {
  SimulatedStudio studio;
  const auto player = studio.engine.MakePlayer();
  ASSERT_TRUE(studio.Open(*player, studio.File("a.wav", WaveFile(Noise(441000)))).Ok());
  player->Play();
  studio.loop.RunFor(1s);
  EXPECT_FALSE(studio.Open(*player, studio.File("bad.wav", "bad")).Ok());
  EXPECT_EQ(player->State(), PlayState::Playing);
  EXPECT_NEAR(player->CurrentPosition(), 1.0, 0.05);
  const QString next = studio.File("b.wav", WaveFile(Noise(88200)));
  ASSERT_TRUE(studio.Open(*player, next).Ok());
  EXPECT_EQ(player->State(), PlayState::Stopped);
  EXPECT_EQ(player->CurrentPosition(), 0);
  EXPECT_DOUBLE_EQ(player->Duration(), 2.0);
  studio.loop.RunFor(50ms);
  studio.heard.clear();
  studio.loop.RunFor(100ms);
  EXPECT_EQ(studio.FromFirstSound(), Samples()) << "the old one has faded out at once";
}

TEST(PlayerLife, APlayerMayGoAtAnyTimeAndFadesOutBehindItself) {
  SimulatedStudio studio;
  const QString path = studio.File("sine.wav", WaveFile(Sine(100, 5)));
  auto player = studio.engine.MakePlayer();
  ASSERT_TRUE(studio.Open(*player, path).Ok());
  player->Play();
  studio.loop.RunFor(502ms);
  player.reset();
  studio.loop.RunFor(100ms);
  EXPECT_LT(LargestStep(studio.heard), 0.01F);
  EXPECT_EQ(studio.heard.back(), 0);

  player = studio.engine.MakePlayer();
  std::optional<OpenResult::Kind> kind;
  const Job<> job = OpenInto(*player, path, kind);
  player.reset();
  studio.loop.RunFor(50ms);
  EXPECT_EQ(kind, OpenResult::Kind::Superseded);

  // From inside its own call.
  player = studio.engine.MakePlayer();
  ASSERT_TRUE(studio.Open(*player, path).Ok());
  player->OnEndOfStream = [&] { player.reset(); };
  player->SetCurrentPosition(4.9);
  player->Play();
  studio.loop.RunFor(500ms);
  EXPECT_EQ(player, nullptr);
}

TEST(PlayerLife, AnEndThatHappenedIsToldAfterAStopAndForgottenAfterASeek) {
  SimulatedStudio studio;
  const auto player = studio.engine.MakePlayer();
  ASSERT_TRUE(studio.Open(*player, studio.File("short.wav", WaveFile(Noise(4410)))).Ok());
  int ends = 0;
  player->OnEndOfStream = [&] { ++ends; };
  // The loop looks every 10 ms; in between the stream runs out.
  const auto playToJustBehindTheEnd = [&] {
    player->SetCurrentPosition(0.1 - 0.004);
    player->Play();
    studio.loop.RunFor(5ms);
    ASSERT_EQ(ends, 0);
  };
  studio.loop.RunFor(11ms);
  const auto phase = studio.loop.Elapsed() % 10ms;
  studio.loop.RunFor(12ms - phase);
  playToJustBehindTheEnd();
  player->Stop();
  studio.loop.RunFor(20ms);
  EXPECT_EQ(ends, 1);

  ends = 0;
  studio.loop.RunFor(12ms - studio.loop.Elapsed() % 10ms);
  playToJustBehindTheEnd();
  player->SetCurrentPosition(0.05);
  EXPECT_EQ(player->State(), PlayState::Playing);
  studio.loop.RunFor(20ms);
  EXPECT_EQ(ends, 0);
  EXPECT_EQ(player->State(), PlayState::Playing);
  studio.loop.RunFor(100ms);
  EXPECT_EQ(ends, 1);
}

TEST(PlayerLife, WhateverHappensAStreamEndsExactlyOnce) {
  SimulatedStudio studio;
  const QString paths[] = {studio.File("a.wav", WaveFile(Noise(10'000))),
                           studio.File("b.mp3", Mp3File(Noise(9000))),
                           studio.File("c.wav", WaveFile(Noise(200)))};
  Dice dice;
  SCOPED_TRACE(::testing::Message() << "seed " << dice.Seed());
  for (int schedule = 0; schedule < 250; ++schedule) {
    const auto player = studio.engine.MakePlayer();
    int ends = 0;
    bool due = false;  // an end may come: it was started since the last one
    player->OnEndOfStream = [&] {
      ++ends;
      EXPECT_TRUE(due) << "an end too many";
      due = false;
      EXPECT_EQ(player->State(), PlayState::Stopped);
      EXPECT_NEAR(player->CurrentPosition(), player->Duration(), 0.001);
    };
    ASSERT_TRUE(studio.Open(*player, paths[dice.Below(3)]).Ok());
    for (int step = 0; step < 16; ++step) {
      switch (dice.Below(6)) {
        case 0:
        case 1:
          player->Play();
          due = true;
          break;
        case 2:
          player->Stop();
          break;
        case 3:
          player->SetCurrentPosition(dice.Between(0, 0.25));
          due = player->State() == PlayState::Playing;
          break;
        case 4:
          player->SetRate(dice.Between(0.5, 2));
          break;
        default:
          ASSERT_TRUE(studio.Open(*player, paths[dice.Below(3)]).Ok());
          due = false;
          break;
      }
      studio.loop.RunFor(std::chrono::microseconds(dice.Below(3) == 0 ? 0 : dice.Below(60'000)));
    }
    player->Stop();
    studio.loop.RunFor(50ms);
    ends = 0;
    player->Play();
    due = true;
    studio.loop.RunUntil([&] { return ends > 0; }, 600ms);
    studio.loop.RunFor(30ms);
    ASSERT_EQ(ends, 1) << "in schedule " << schedule;
  }
  EXPECT_EQ(studio.engine.Underruns(), 0U);
}

}  // namespace kelvo::testing
