#include "audio/TestSounds.h"
#include "audio/engine/Limiter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kelvo::testing {

namespace {

constexpr double kRate = kEngineRate;

Samples Tone(double hertz, double level, double seconds, double phase = 0) {
  Samples sound(static_cast<std::size_t>(seconds * kRate) * 2);
  for (std::size_t i = 0; i < sound.size(); ++i) {
    const double angle = 2 * std::numbers::pi * hertz * static_cast<double>(i / 2) / kRate + phase;
    sound[i] = static_cast<float>(level * std::sin(angle));
  }
  return sound;
}

/// In parts of any length, as devices ask for them.
Samples Limited(Samples sound, Limiter limiter = {}) {
  Dice dice(7);
  for (std::size_t at = 0; at < sound.size();) {
    const std::size_t part = std::min(sound.size() - at, 2 * static_cast<std::size_t>(1 + dice.Below(700)));
    limiter.Process(std::span(sound).subspan(at, part));
    at += part;
  }
  return sound;
}

double Decibels(double ratio) {
  return 20 * std::log10(ratio);
}

/// The highest level of the left side at sixteen places between each two samples, from a long row of samples.
double TruePeak(const Samples& sound) {
  constexpr int kReach = 32;
  double highest = 0;
  const int frames = static_cast<int>(sound.size() / 2);
  for (int at = kReach; at + kReach < frames; ++at) {
    for (int place = 0; place < 16; ++place) {
      double value = 0;
      for (int tap = 1 - kReach; tap <= kReach; ++tap) {
        const double x = std::numbers::pi * (tap - place / 16.0);
        const double edge = std::cos(x / (2 * kReach));
        value += static_cast<double>(sound[static_cast<std::size_t>(at + tap) * 2]) *
                 (std::abs(x) < 1e-9 ? 1 : std::sin(x) / x * edge * edge);
      }
      highest = std::max(highest, std::abs(value));
    }
  }
  return highest;
}

}  // namespace

TEST(Limiter, WhatIsBelowTheCeilingPassesBitForBitAndAsMuchLaterAsItSays) {
  for (const Samples& sound : {Noise(30'000), Tone(997, 0.89, 0.5), Tone(15'000, 0.85, 0.5, 0.3)}) {
    const Samples heard = Limited(sound);
    constexpr std::size_t kShift = Limiter::kLookAhead * 2;
    EXPECT_TRUE(std::all_of(heard.begin(), heard.begin() + kShift, [](float each) { return each == 0; }));
    EXPECT_TRUE(std::equal(heard.begin() + kShift, heard.end(), sound.begin()));
  }
}

TEST(Limiter, TheLevelOfAToneFollowsTheCurveAndTheToneStaysPure) {
  for (const double hertz : {40.0, 100.0, 1000.0, 5000.0}) {
    for (int level = -12; level <= 12; level += 2) {
      SCOPED_TRACE(::testing::Message() << hertz << " Hz at " << level << " dB");
      const Samples heard = Limited(Tone(hertz, std::pow(10, level / 20.0), 2));
      constexpr std::size_t kLast = 44100 / 2;
      // Up to the ceiling one to one, above it flat.
      EXPECT_NEAR(Decibels(Amplitude(heard, hertz, kLast)), std::min(level, -1), 0.05);
      EXPECT_LT(Distortion(heard, hertz, kLast), -60);
    }
  }
}

TEST(Limiter, NoSampleAndHardlyAnythingBetweenTwoIsAboveTheCeiling) {
  Samples wild = Noise(60'000);
  Dice dice;
  SCOPED_TRACE(dice.Seed());
  // From quiet to far too loud in steps, with single peaks and both signs of a step.
  double level = 1;
  for (std::size_t i = 0; i < wild.size(); ++i) {
    if (i % 5000 == 0) level = std::pow(10, dice.Between(-20, 30) / 20);
    wild[i] *= static_cast<float>(level);
    if (dice.Below(3000) == 0) wild[i] = dice.Below(2) == 0 ? 60.0F : -60.0F;
  }
  const Samples heard = Limited(wild);
  const auto [least, most] = std::minmax_element(heard.begin(), heard.end());
  EXPECT_LE(*most, Limiter::kCeiling);
  EXPECT_GE(*least, -Limiter::kCeiling);

  // Its samples miss the crests: each is 3 dB below them.
  const Samples hidden = Tone(kRate / 4, 1.2, 0.3, std::numbers::pi / 4);
  ASSERT_LT(*std::max_element(hidden.begin(), hidden.end()), Limiter::kCeiling);
  Samples held = Limited(hidden);
  held.erase(held.begin(), held.begin() + 2000);
  EXPECT_LT(Decibels(TruePeak(held)), -1 + 0.1);
}

TEST(Limiter, BothSidesAreTurnedDownAlike) {
  Samples sound = Tone(1000, 1.8, 0.5);
  for (std::size_t i = 1; i < sound.size(); i += 2) sound[i] *= 0.1F;
  const Samples heard = Limited(sound);
  for (std::size_t i = 0; i < heard.size(); i += 2) ASSERT_NEAR(heard[i + 1], heard[i] * 0.1F, 1e-6F);
}

TEST(Limiter, ASinglePeakIsForgottenSoonAndALoudPassageComesBackSlowly) {
  // A quiet constant shows the gain itself.
  const float kQuiet = 0.25F;
  const auto gainAfter = [&](double loudSeconds, double seconds) {
    Samples sound(static_cast<std::size_t>((1 + loudSeconds + 4) * kRate) * 2, kQuiet);
    const auto from = static_cast<std::size_t>(kRate) * 2;
    const std::size_t loud = std::max<std::size_t>(static_cast<std::size_t>(loudSeconds * kRate), 1) * 2;
    std::fill_n(sound.begin() + static_cast<std::ptrdiff_t>(from), loud, 2 * Limiter::kCeiling);
    const Samples heard = Limited(sound);
    const auto at = from + loud + (Limiter::kLookAhead + static_cast<std::size_t>(seconds * kRate)) * 2;
    EXPECT_EQ(heard[from - 2], kQuiet) << "2 ms before it nothing is heard of it";
    EXPECT_EQ(heard.back(), kQuiet) << "in the end it is as it was, to the bit";
    // The gain never moves by more than a step that a smooth slope of 2 ms makes.
    for (std::size_t i = from + loud + 2 * Limiter::kLookAhead; i + 2 < heard.size(); i += 2) {
      EXPECT_LE(std::abs(heard[i + 2] - heard[i]), kQuiet / 40);
    }
    return heard[at] / kQuiet;
  };
  EXPECT_NEAR(gainAfter(0, 0.005), 0.5, 0.01) << "held for the crests of the lowest bass";
  EXPECT_GT(gainAfter(0, 0.3), 0.98);
  EXPECT_LT(gainAfter(3, 0.1), 0.65);
  EXPECT_GT(gainAfter(3, 0.1), 0.5);
  EXPECT_GT(gainAfter(3, 2), 0.98);
}

TEST(Limiter, ACopyGoesOnAsTheOriginal) {
  Limiter limiter;
  Samples sound = Tone(300, 1.7, 0.5);
  const std::span all(sound);
  limiter.Process(all.first(10'000));
  Limiter copy = limiter;
  Samples again = sound;
  limiter.Process(all.subspan(10'000));
  for (std::size_t at = 10'000; at < again.size(); at += 100) {
    copy.Process(std::span(again).subspan(at, std::min<std::size_t>(100, again.size() - at)));
  }
  EXPECT_EQ(again, sound);
}

}  // namespace kelvo::testing
