#include "audio/SimulatedStudio.h"
#include "audio/engine/Limiter.h"
#include "audio/engine/OpenDecoder.h"
#include "audio/engine/WaveFileSink.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace kelvo::testing {

namespace {

constexpr std::size_t kStartRamp = 220;

Samples DecodeAll(const QString& path) {
  const auto decoder = OpenDecoder(path);
  Samples all(static_cast<std::size_t>(decoder->Frames() + 5000) * 2);
  all.resize(decoder->Read(all) * 2);
  return all;
}

/// What comes out of an output does so this much after it went in.
constexpr std::size_t kLate = Limiter::kLookAhead;

/// Fails unless `heard` from `heardFrame` on is `expected` from `expectedFrame` on, for as long as both last.
void ExpectSame(const Samples& heard, std::size_t heardFrame, const Samples& expected,
                std::size_t expectedFrame, std::size_t frames) {
  ASSERT_GE(heard.size(), (heardFrame + frames) * 2);
  ASSERT_GE(expected.size(), (expectedFrame + frames) * 2);
  for (std::size_t i = 0; i < frames * 2; ++i) {
    ASSERT_EQ(heard[heardFrame * 2 + i], expected[expectedFrame * 2 + i]) << "sample " << i;
  }
}

std::size_t UpwardCrossings(const Samples& sound, std::size_t from, std::size_t to) {
  std::size_t count = 0;
  for (std::size_t i = from + 1; i < to; ++i) count += sound[2 * i - 2] < 0 && sound[2 * i] >= 0 ? 1 : 0;
  return count;
}

}  // namespace

TEST(Playback, AWaveFileComesOutBitForBitAndEndsOnce) {
  SimulatedStudio studio;
  const Samples sound = Noise(100'000);
  const auto player = studio.engine.MakePlayer();
  int ends = 0;
  player->OnEndOfStream = [&] { ++ends; };
  ASSERT_TRUE(studio.Open(*player, studio.File("noise.wav", WaveFile(sound))).Ok());
  EXPECT_DOUBLE_EQ(player->Duration(), 100'000 / 44100.0);
  EXPECT_EQ(player->State(), PlayState::Stopped);
  EXPECT_EQ(player->CurrentPosition(), 0);

  player->Play();
  studio.loop.RunFor(3s);
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(player->State(), PlayState::Stopped);
  EXPECT_DOUBLE_EQ(player->CurrentPosition(), player->Duration());
  const Samples heard = studio.FromFirstSound();
  ExpectSame(heard, kStartRamp, sound, kStartRamp, 100'000 - kStartRamp);
  EXPECT_TRUE(std::all_of(heard.begin() + 200'000, heard.end(), [](float sample) { return sample == 0; }));
  EXPECT_EQ(studio.engine.Underruns(), 0U);

  player->Play();
  EXPECT_EQ(ends, 1) << "never from inside a call";
  studio.loop.RunFor(1ms);
  EXPECT_EQ(ends, 2) << "Play behind the end ends at once";
}

TEST(Playback, LengthsAndSeeksAreTrueInEveryKindOfFile) {
  SimulatedStudio studio;
  Samples sound = Sine(440, 4);
  const Samples noise = Noise(sound.size() / 2);
  // Loud noise in the middle third makes the bit rate vary.
  for (std::size_t i = sound.size() / 3; i < sound.size() * 2 / 3; ++i) sound[i] = noise[i] * 0.5F;
  const QString paths[] = {
      studio.File("a.wav", WaveFile(sound)),
      studio.File("cbr.mp3", Mp3File(sound)),
      studio.File("vbr.mp3", Mp3File(sound, Mp3Kind::VbrWithoutHeader)),
      studio.File("mpeg-in.wav", WaveAroundMpeg(Mp3File(sound, Mp3Kind::VbrWithoutHeader))),
      studio.File("a-wave-named.mp3", WaveFile(sound)),
  };
  Dice dice;
  SCOPED_TRACE(dice.Seed());
  for (const QString& path : paths) {
    SCOPED_TRACE(path.toStdString());
    const Samples all = DecodeAll(path);
    const auto decoder = OpenDecoder(path);
    EXPECT_EQ(static_cast<std::size_t>(decoder->Frames()), all.size() / 2);
    EXPECT_NEAR(static_cast<double>(decoder->Frames()) / 44100, 4.0,
                path.contains("vbr") || path.contains("in.") ? 0.08 : 1e-9);
    for (int i = 0; i < 20; ++i) {
      const auto frame = static_cast<std::size_t>(dice.Below(static_cast<int>(all.size() / 2) - 2000));
      decoder->Seek(static_cast<FrameIndex>(frame));
      Samples piece(2000 * 2);
      ASSERT_EQ(decoder->Read(piece), 2000U);
      ExpectSame(piece, 0, all, frame, 2000);
    }

    const auto player = studio.engine.MakePlayer();
    ASSERT_TRUE(studio.Open(*player, path).Ok());
    player->SetCurrentPosition(1.5);
    EXPECT_DOUBLE_EQ(player->CurrentPosition(), 1.5);
    studio.heard.clear();
    player->Play();
    studio.loop.RunFor(500ms);
    EXPECT_NEAR(player->CurrentPosition(), 2.0, 0.001);
    ExpectSame(studio.heard, kLate + kStartRamp, all, 66150 + kStartRamp, 20'000);
  }
}

TEST(Playback, StopKeepsThePlaceAndASeekWhilePlayingGoesOnFromThere) {
  SimulatedStudio studio;
  const Samples sound = Noise(44100 * 20);
  const auto player = studio.engine.MakePlayer();
  ASSERT_TRUE(studio.Open(*player, studio.File("long.wav", WaveFile(sound))).Ok());
  player->Play();
  studio.loop.RunFor(5s);
  player->Stop();
  studio.loop.RunFor(100ms);
  const double stopped = player->CurrentPosition();
  EXPECT_NEAR(stopped, 5.005, 0.001);
  studio.loop.RunFor(10s);
  EXPECT_EQ(player->CurrentPosition(), stopped);

  // Many seeks while stopped, with a full ring.
  for (int i = 0; i < 500; ++i) player->SetCurrentPosition(i % 19);
  player->SetCurrentPosition(15);
  player->Play();
  studio.loop.RunFor(1s);
  EXPECT_NEAR(player->CurrentPosition(), 16, 0.001);
  player->SetCurrentPosition(2);
  studio.heard.clear();
  studio.loop.RunFor(100ms);
  // The old sound fades for 5 ms and the new one comes in behind it.
  ExpectSame(studio.heard, kLate + 2 * kStartRamp, sound, 2 * 44100 + kStartRamp, 3000);
  player->SetCurrentPosition(-3);
  EXPECT_EQ(player->CurrentPosition(), 0);
  player->SetCurrentPosition(100);
  EXPECT_DOUBLE_EQ(player->CurrentPosition(), player->Duration());
}

TEST(Playback, OtherRatesAndChannelsSoundAsRecorded) {
  SimulatedStudio studio;
  for (const int rate : {8000, 22050, 48000, 96000}) {
    SCOPED_TRACE(rate);
    const auto player = studio.engine.MakePlayer();
    WaveKind kind;
    kind.rate = rate;
    kind.coding = WaveKind::Coding::Float32;
    ASSERT_TRUE(studio.Open(*player, studio.File("rate.wav", WaveFile(Sine(1000, 2, rate), kind))).Ok());
    EXPECT_DOUBLE_EQ(player->Duration(), 2.0);
    player->SetCurrentPosition(0.5);
    studio.heard.clear();
    player->Play();
    studio.loop.RunFor(1s);
    // A seek lands on a whole frame of the file, so the phase may be off by a part of one.
    double best = 1;
    for (int shift = -8; shift <= 8; ++shift) {
      double worst = 0;
      for (std::size_t i = 2000; i < 20'000; ++i) {
        const double phase =
            2 * std::numbers::pi * 1000 * (static_cast<double>(i - kLate) / 44100 + 0.5 + shift / 8.0 / rate);
        worst = std::max(worst, std::abs(0.5 * std::sin(phase) - studio.heard[2 * i]));
      }
      best = std::min(best, worst);
    }
    EXPECT_LT(best, 0.02);
    bool ended = false;
    player->OnEndOfStream = [&] { ended = true; };
    studio.loop.RunFor(1s);
    EXPECT_TRUE(ended);
    EXPECT_NEAR(player->CurrentPosition(), 2.0, 0.002);
  }

  const Samples sound = Noise(20'000);
  for (const int channels : {1, 6}) {
    const auto player = studio.engine.MakePlayer();
    WaveKind kind;
    kind.channels = channels;
    ASSERT_TRUE(studio.Open(*player, studio.File("channels.wav", WaveFile(sound, kind))).Ok());
    studio.heard.clear();
    player->Play();
    studio.loop.RunFor(400ms);
    for (std::size_t i = kStartRamp; i < 10'000; ++i) {
      const std::size_t at = 2 * (kLate + i);
      ASSERT_EQ(studio.heard[at], sound[2 * i]);
      ASSERT_EQ(studio.heard[at + 1], sound[2 * i + (channels == 1 ? 0 : 1)]);
    }
  }
}

TEST(Playback, VolumeAndBalanceFollowTheirLaw) {
  SimulatedStudio studio;
  const Samples sound(44100 * 2 * 8, 0.5F);
  const auto player = studio.engine.MakePlayer();
  ASSERT_TRUE(studio.Open(*player, studio.File("level.wav", WaveFile(sound))).Ok());
  player->Play();
  struct Row {
    int volume;
    int balance;
    double left;
    double right;
  };
  const double ten = std::pow(10, -0.5);
  for (const Row& row : {Row{0, 0, 1, 1}, Row{-1000, 0, ten, ten}, Row{-10000, 0, 0, 0}, Row{-20000, 0, 0, 0},
                         Row{500, 0, 1, 1}, Row{0, -1000, 1, ten}, Row{0, 1000, ten, 1}, Row{0, 10000, 0, 1},
                         Row{-1000, -1000, ten, ten * ten}}) {
    SCOPED_TRACE(::testing::Message() << row.volume << " " << row.balance);
    player->SetVolume(row.volume);
    player->SetBalance(row.balance);
    studio.loop.RunFor(100ms);
    EXPECT_NEAR(studio.heard[studio.heard.size() - 2], 0.5 * row.left, 1e-6);
    EXPECT_NEAR(studio.heard.back(), 0.5 * row.right, 1e-6);
  }
  player->SetVolume(-3000);
  studio.loop.RunFor(100ms);
  EXPECT_NEAR(studio.heard[studio.heard.size() - 2], 0.5 * ten * ten * ten, 1e-6);
}

TEST(Playback, RateChangesTheSpeedAndGoesBackToTheExactSamples) {
  SimulatedStudio studio;
  const auto player = studio.engine.MakePlayer();
  const Samples sound = Sine(1000, 20);
  ASSERT_TRUE(studio.Open(*player, studio.File("sine.wav", WaveFile(sound))).Ok());
  player->Play();
  for (const double rate : {1.5, 0.5, 2.0, 1.01, 1.0}) {
    SCOPED_TRACE(rate);
    studio.loop.RunFor(100ms);
    const double before = player->CurrentPosition();
    player->SetRate(rate);
    studio.loop.RunFor(100ms);
    studio.heard.clear();
    studio.loop.RunFor(1s);
    EXPECT_NEAR(static_cast<double>(UpwardCrossings(studio.heard, 0, 44100)), 1000 * rate, 2);
    EXPECT_GT(player->CurrentPosition(), before + rate);
  }
  // Whole frames again: what is heard is found in the file, sample for sample.
  const auto place = static_cast<std::size_t>(std::llround(player->CurrentPosition() * 44100));
  const auto written = DecodeAll(player->FileName());
  ExpectSame(studio.heard, 34100, written, place - kLate - 10'000, 10'000);
}

TEST(Playback, NothingThatTheOperatorDoesClicks) {
  for (const bool withRate : {false, true}) {
    SimulatedStudio studio;
    const auto player = studio.engine.MakePlayer();
    ASSERT_TRUE(studio.Open(*player, studio.File("sine.wav", WaveFile(Sine(200, 30)))).Ok());
    Dice dice;
    player->Play();
    for (int i = 0; i < 1000; ++i) {
      switch (dice.Below(withRate ? 7 : 6)) {
        case 0:
          player->SetVolume(-dice.Below(12000));
          break;
        case 1:
          player->SetVolume(0);
          break;
        case 2:
          player->SetBalance(dice.Below(20001) - 10000);
          break;
        case 3:
          player->Stop();
          break;
        case 4:
          player->Play();
          break;
        case 5:
          player->SetCurrentPosition(dice.Below(25));
          break;
        default:
          player->SetRate(dice.Between(0.5, 2));
          break;
      }
      studio.loop.RunFor(std::chrono::microseconds(dice.Below(20'000)));
    }
    // The sine itself moves by 0.0143 a sample at rate 1, a 5 ms ramp adds 0.0023, a 10 ms one half of that.
    EXPECT_LT(LargestStep(studio.heard), withRate ? 0.034F : 0.018F) << "seed " << dice.Seed();
    const auto loudest = std::max_element(studio.heard.begin(), studio.heard.end());
    EXPECT_GT(*loudest, 0.4F);
  }
}

TEST(Playback, VoicesAddUpAndTheSumStaysBelowTheCeiling) {
  SimulatedStudio studio;
  const auto one = studio.engine.MakePlayer();
  const auto two = studio.engine.MakePlayer();
  const auto apart = studio.engine.MakePlayer(QStringLiteral("Headphones"));
  const QString quiet = studio.File("quiet.wav", WaveFile(Samples(88200, 0.25F)));
  const QString loud = studio.File("loud.wav", WaveFile(Samples(88200, 0.875F)));
  ASSERT_TRUE(studio.Open(*one, quiet).Ok());
  ASSERT_TRUE(studio.Open(*two, quiet).Ok());
  ASSERT_TRUE(studio.Open(*apart, loud).Ok());
  one->Play();
  two->Play();
  apart->Play();
  studio.loop.RunFor(100ms);
  EXPECT_FLOAT_EQ(studio.heard.back(), 0.5F);
  EXPECT_EQ(studio.engine.GainReduction(), 0);
  ASSERT_TRUE(studio.Open(*two, loud).Ok());
  two->Play();
  studio.loop.RunFor(100ms);
  EXPECT_NEAR(studio.heard.back(), Limiter::kCeiling, 1e-3F);
  EXPECT_NEAR(studio.engine.GainReduction(), 20 * std::log10((0.25 + 0.875) / Limiter::kCeiling), 0.01);
}

TEST(Playback, ARenderedShowCanBeWrittenToAFile) {
  const Samples sound = Noise(5000);
  const TemporaryTree folder;
  const QString path = folder.Path(QStringLiteral("show.wav"));
  { WaveFileSink(path).Write(sound); }
  EXPECT_EQ(DecodeAll(path), sound);
  EXPECT_ANY_THROW(WaveFileSink(folder.Path(QStringLiteral("no/such/folder.wav"))));
}

}  // namespace kelvo::testing
