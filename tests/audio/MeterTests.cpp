#include "audio/ProgrammeMeter.h"
#include "audio/TestSounds.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kelvo::testing {

namespace {

/// A tap that a test plays into.
struct PlayedTap {
  std::shared_ptr<Tap> tap = std::make_shared<Tap>();
  FrameIndex at = 0;
  ProgrammeMeter meter{tap};

  /// In pictures of a sixtieth of a second.
  MeterLevels Play(const Samples& sound) {
    MeterLevels levels;
    for (std::size_t first = 0; first < sound.size(); first += 1470) {
      const auto part = std::span(sound).subspan(first, std::min<std::size_t>(1470, sound.size() - first));
      tap->Write(at, part);
      at += static_cast<FrameIndex>(part.size() / 2);
      tap->Publish(at, at);
      levels = meter.Look();
    }
    return levels;
  }
};

Samples Quiet(double seconds) {
  return Samples(static_cast<std::size_t>(seconds * 44100) * 2, 0.0F);
}

}  // namespace

TEST(ProgrammeMeter, TellsPeakAveragePowerAndLoudnessOfATone) {
  PlayedTap played;
  EXPECT_EQ(played.meter.Look().sides[0].peak, MeterLevels::kSilence);
  Samples tone = Sine(1000, 3);
  for (std::size_t i = 0; i < tone.size(); i += 2) tone[i] *= 0.2F;
  for (std::size_t i = 1; i < tone.size(); i += 2) tone[i] *= 0.1F;
  const MeterLevels levels = played.Play(tone);
  EXPECT_NEAR(levels.sides[0].peak, -20, 0.1);
  EXPECT_NEAR(levels.sides[0].rms, -23, 0.1);
  EXPECT_NEAR(levels.sides[1].peak, -26, 0.1);
  EXPECT_NEAR(levels.sides[1].rms, -29, 0.1);
  // Loudness adds the power of both sides: a tone of -23 dB on both is -23 LUFS.
  EXPECT_NEAR(levels.momentary, -22.05, 0.1);
}

TEST(ProgrammeMeter, APeakFallsSlowlyAndIsHeldForTwoSeconds) {
  PlayedTap played;
  played.Play(Sine(1000, 1));
  MeterLevels levels = played.Play(Quiet(1.5));
  EXPECT_NEAR(levels.sides[0].peak, -26, 0.2);
  EXPECT_NEAR(levels.sides[0].hold, -6, 0.1);
  EXPECT_LT(levels.sides[0].rms, -25);
  EXPECT_LT(levels.momentary, -100);
  levels = played.Play(Quiet(1));
  EXPECT_LT(levels.sides[0].hold, -30);
}

TEST(ProgrammeMeter, WhoeverLooksLateGetsTheLevelsOfNow) {
  PlayedTap played;
  played.Play(Sine(1000, 1));
  const Samples loud = Sine(1000, 8);
  played.tap->Write(played.at, std::span(loud).first(500'000));
  played.at += 250'000;
  played.tap->Publish(played.at, played.at);
  EXPECT_EQ(played.meter.Look().sides[0].peak, MeterLevels::kSilence) << "nothing of it is new";
  EXPECT_NEAR(played.Play(Sine(1000, 0.5)).sides[0].peak, -6, 0.1);
}

}  // namespace kelvo::testing
