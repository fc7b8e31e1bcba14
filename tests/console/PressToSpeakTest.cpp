#include "console/DeskFixture.h"
#include "platform/RandomSource.h"

#include <cstdlib>
#include <random>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::DeskTest;

class PressToSpeakTest : public DeskTest {
 protected:
  /// Deck 1 plays at full, Deck 2 is loaded and is at a loss of 1500; the dip goes to 1000 in steps
  /// of 60.
  void OpenDesk() {
    AddTrack(u"alpha"_s, 3000, 3000);
    AddTrack(u"beta"_s, 3000, 3000);
    AddTrack(u"gamma"_s, 3000, 3000);
    Open();
    EnqueueAll();
    Load(Deck::One, 1);
    Load(Deck::Two, 2);
    Decks().ManualStart(Deck::One);
    Speak().SetLevel(Deck::Two, 1500);
    Speak().SetDepthSlider(1000);
    Speak().SetSpeedSlider(5);
  }
  [[nodiscard]] PressToSpeak& Speak() { return desk_->Speak(); }
  [[nodiscard]] int Loss(Deck deck) { return Record(deck).Loss; }
};

TEST_F(PressToSpeakTest, TheDecksFallToTheDepthAndComeBackInSteps) {
  OpenDesk();
  Speak().Press();
  EXPECT_EQ(Loss(Deck::One), 60);
  loop_.RunFor(50ms);
  EXPECT_EQ(Loss(Deck::One), 360);
  EXPECT_TRUE(Speak().AfadeRunning());
  loop_.RunFor(1s);
  EXPECT_TRUE(Speak().AfadeDown());
  EXPECT_FALSE(Speak().AfadeRunning());
  EXPECT_EQ(Loss(Deck::One), 1000);
  EXPECT_EQ(Loss(Deck::Two), 1500) << "a dip raises no deck";
  Speak().Press();
  EXPECT_FALSE(Speak().AfadeRunning()) << "the key repeats";
  Speak().Release();
  loop_.RunFor(85ms);
  EXPECT_EQ(Loss(Deck::One), 460);
  loop_.RunFor(1s);
  EXPECT_EQ(Loss(Deck::One), 0);
  EXPECT_FALSE(Speak().AfadeDown());
  EXPECT_EQ(Speak().DepthText(), u"10 dB"_s);
}

TEST_F(PressToSpeakTest, LetGoDuringTheDipTheDecksComeBackFromWhereTheyAre) {
  OpenDesk();
  Speak().Press();
  loop_.RunFor(35ms);
  ASSERT_EQ(Loss(Deck::One), 240);
  Speak().Release();
  EXPECT_EQ(Loss(Deck::One), 180);
  loop_.RunFor(1s);
  EXPECT_EQ(Loss(Deck::One), 0);
  EXPECT_FALSE(Speak().AfadeDown());
}

TEST_F(PressToSpeakTest, WhatElseIsHeardHoldsTheDecksDownWhateverTheVoiceAndTheFadesDo) {
  OpenDesk();
  Speak().SetHeld(true);
  loop_.RunFor(1s);
  EXPECT_EQ(Loss(Deck::One), 1000);
  Speak().Press();
  Speak().Release();
  loop_.RunFor(1s);
  EXPECT_EQ(Loss(Deck::One), 1000);
  // It ends while the operator talks: the decks wait for that.
  Speak().Press();
  Speak().SetHeld(false);
  loop_.RunFor(1s);
  EXPECT_EQ(Loss(Deck::One), 1000);
  Speak().Release();
  loop_.RunFor(1s);
  EXPECT_EQ(Loss(Deck::One), 0);
  // A transition is waited for.
  desk_->State().TransitionActive = true;
  Speak().SetHeld(true);
  loop_.RunFor(1s);
  EXPECT_EQ(Loss(Deck::One), 0);
  desk_->State().TransitionActive = false;
  loop_.RunFor(1s);
  EXPECT_EQ(Loss(Deck::One), 1000);
  Speak().SetHeld(false);
  loop_.RunFor(1s);
  EXPECT_EQ(Loss(Deck::One), 0);
}

TEST_F(PressToSpeakTest, WithBothDecksBelowTheDepthNothingMoves) {
  OpenDesk();
  Speak().SetLevel(Deck::One, 1200);
  Speak().Press();
  EXPECT_TRUE(Speak().AfadeDown());
  Speak().Release();
  EXPECT_FALSE(Speak().AfadeDown());
  EXPECT_EQ(Loss(Deck::One), 1200);
  EXPECT_EQ(Loss(Deck::Two), 1500);
}

TEST_F(PressToSpeakTest, APressDuringATransitionLeavesNothingForItsRelease) {
  OpenDesk();
  desk_->Fades().NumberPad6();
  ASSERT_TRUE(loop_.RunUntil([this] { return desk_->Fades().WalkActive(); }, 1s));
  Speak().Press();
  loop_.RunFor(300ms);
  const int before = Loss(Deck::One);
  Speak().Release();
  EXPECT_EQ(Loss(Deck::One), before);
  EXPECT_FALSE(Speak().AfadeRunning());
}

TEST_F(PressToSpeakTest, ATransitionUnderTheVoiceStaysUnderItAndIsNotUndone) {
  OpenDesk();
  desk_->Fades().SetCrossPan(kDeckOneAlone);
  Speak().Press();
  loop_.RunFor(1s);
  desk_->Fades().PressPartFade(Deck::Two);
  int loudest = kMostLoss;
  for (int tenth = 0; tenth < 50; ++tenth) {
    loop_.RunFor(100ms);
    loudest = std::min({loudest, Loss(Deck::One), Loss(Deck::Two)});
  }
  EXPECT_EQ(loudest, 1000);
  EXPECT_EQ(Loss(Deck::One), 2000);
  Speak().Release();
  loop_.RunFor(1s);
  EXPECT_EQ(Loss(Deck::One), 2000) << "faded out, not back at the level of the press";
  EXPECT_EQ(Loss(Deck::Two), 0);
}

TEST_F(PressToSpeakTest, ADeckUnderTheVoiceIsStillLive) {
  OpenDesk();
  Speak().SetDepthSlider(0);
  Speak().Press();
  loop_.RunFor(1s);
  ASSERT_EQ(Loss(Deck::One), kMostLoss);
  Decks().StopCommand(Deck::One);
  EXPECT_TRUE(Panel().Visible()) << "it comes back";
  EXPECT_EQ(Player(Deck::One).State(), PlayState::Playing);
  loop_.RunFor(2s);
  EXPECT_EQ(desk_->StatusLine(), u"Currently Playing: Alpha"_s);
}

TEST_F(PressToSpeakTest, TheDepthCanBeSetWhileTheDecksAreDown) {
  OpenDesk();
  Speak().Press();
  loop_.RunFor(1s);
  Speak().SetDepthSlider(400);
  EXPECT_EQ(Loss(Deck::One), 1600);
  EXPECT_EQ(Loss(Deck::Two), 1600);
  Speak().SetDepthSlider(2000);
  EXPECT_EQ(Loss(Deck::One), 0);
  EXPECT_EQ(Loss(Deck::Two), 1500);
  Speak().SetDepthSlider(400);
  Speak().Release();
  loop_.RunFor(1s);
  EXPECT_EQ(Loss(Deck::One), 0);
  EXPECT_EQ(Loss(Deck::Two), 1500);
}

/// Whatever else is done to the desk meanwhile.
TEST_F(PressToSpeakTest, AfterTheLastReleaseTheDecksAreWhereTheyBelong) {
  OpenDesk();
  const QByteArray given = qgetenv("KELVO_TEST_SEED");
  const std::uint64_t seed = given.isEmpty() ? std::random_device{}() : given.toULongLong();
  SCOPED_TRACE("KELVO_TEST_SEED=" + std::to_string(seed));
  RandomSource random(seed);
  PerDeck<int> level;
  for (const Deck deck : kDecks) level[deck] = Loss(deck);
  const auto write = [&](Deck deck, int loss) {
    level[deck] = loss;
    Speak().SetLevel(deck, loss);
  };
  desk_->Fades().WriteLoss = write;
  bool depthMoved = false;
  const auto act = [&](Deck deck) {
    switch (random.Below(16)) {
      case 0:
        desk_->Fades().BeginTransition(deck,
                                       random.Below(2) == 0 ? TransitionKind::PartFade : TransitionKind::Pan);
        break;
      case 1:
        desk_->Fades().PressDub(deck);
        break;
      case 2:
        desk_->Fades().ReleaseDub(deck);
        break;
      case 3:
        desk_->Fades().PressPan(deck);
        break;
      case 4:
        desk_->Fades().Cancel();
        break;
      case 5:
        Decks().StopDeck(deck);
        break;
      case 6:
        Queue().Click(1 + random.Below(3));
        Decks().LoadCommand(deck);
        break;
      case 7:
        write(deck, random.Below(kMostLoss + 1));
        break;
      case 8:
        depthMoved = true;
        Speak().SetDepthSlider(random.Below(kMostLoss + 1));
        break;
      case 9:
        Speak().SetSpeedSlider(1 + random.Below(10));
        break;
      case 10:
      case 11:
        Speak().Release();
        break;
      default:
        if (!Speak().AfadeDown()) depthMoved = false;
        Speak().Press();
    }
  };
  int dips = 0;
  for (int schedule = 0; schedule < 400; ++schedule) {
    const int length = 1 + random.Below(20);
    for (int number = 0; number < length; ++number) {
      act(random.Below(2) == 0 ? Deck::One : Deck::Two);
      loop_.RunFor(std::chrono::milliseconds(random.Below(random.Below(4) == 0 ? 2000 : 40)));
      if (!Speak().AfadeDown() || Speak().AfadeRunning()) continue;
      ++dips;
      if (depthMoved) continue;
      for (const Deck deck : kDecks)
        ASSERT_GE(Loss(deck), Speak().AfadeDepth()) << "louder than the voice, schedule " << schedule;
    }
    Speak().Release();
    loop_.RunFor(3s);
    ASSERT_FALSE(Speak().AfadeDown() || Speak().AfadeRunning()) << "schedule " << schedule;
    for (const Deck deck : kDecks) ASSERT_EQ(Loss(deck), level[deck]) << "schedule " << schedule;
  }
  EXPECT_GT(dips, 100) << "the schedules must meet what they are made for";
}

}  // namespace
}  // namespace kelvo
