// The count of taps: its arithmetic, and the counter on a track that plays in simulated time.

#include "audio/ClockAudio.h"
#include "audio/TestSounds.h"
#include "database/TestDatabase.h"
#include "datamanager/TapCounter.h"
#include "platform/ErrorLog.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace kelvo;
using namespace kelvo::testing;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

BeatCount Tapped(std::initializer_list<double> times) {
  BeatCount beats;
  for (const double time : times) beats.Tap(time);
  return beats;
}

TEST(BeatCounts, AddOneAndNeedFiveTaps) {
  EXPECT_EQ(Tapped({1, 1.5, 2, 2.5}).Result(), std::nullopt);
  EXPECT_EQ(Tapped({1, 1.5, 2, 2.5, 3}).Result(), 121) << "the added one belongs to it";
  EXPECT_DOUBLE_EQ(*Tapped({1, 1.5, 2, 2.5, 3}).Median(), 120);
  EXPECT_DOUBLE_EQ(Tapped({1, 1.5, 2, 2.5, 3}).FlashPeriod(), 0.4) << "over the taps, not the intervals";
  // A missed tap spoils the mean, and not the median.
  const BeatCount missed = Tapped({1, 1.5, 2, 3, 3.5, 4, 4.5});
  EXPECT_EQ(missed.Result(), 103);
  EXPECT_DOUBLE_EQ(*missed.Median(), 120);
  for (const BeatCount& nowhere : {Tapped({2, 2, 2, 2, 2}), Tapped({5, 4, 3, 2, 1})}) {
    EXPECT_EQ(nowhere.Result(), std::nullopt);
    EXPECT_EQ(nowhere.Median(), std::nullopt);
    EXPECT_EQ(nowhere.FlashPeriod(), 0);
  }
  BeatCount many;
  for (int tap = 0; tap < 100; ++tap) many.Tap(tap * 0.5);
  EXPECT_EQ(many.Count(), 59);
  EXPECT_EQ(many.Result(), 121);
}

TEST(BeatFlashes, KeepTheBeatOfTheTrackHoweverItIsMoved) {
  BeatFlash flash;
  EXPECT_FALSE(flash.On(5)) << "nothing was counted";
  flash.Begin(1, 0.5);
  EXPECT_FALSE(flash.On(0.9));
  EXPECT_TRUE(flash.On(1.05));
  EXPECT_FALSE(flash.On(1.15));
  EXPECT_TRUE(flash.On(1.5));
  EXPECT_TRUE(flash.On(1e6 + 0.01));
  EXPECT_FALSE(flash.On(1e6 + 0.1));
  EXPECT_FALSE(flash.On(20.3)) << "moved back";
  EXPECT_TRUE(flash.On(20.5));
}

class TapCounterTest : public ::testing::Test {
 protected:
  void SetUp() override {
    catalogue.Replace(CatalogueTables(database.paths(Paths::Music)));
    CatalogueRow row;
    row.name = u"Ann - Song"_s;
    row.extension = u".mp3"_s;
    row.bpm = u"120"_s;
    catalogue.Append(row);
    track = database.AddTrack(row.name);
    audio.SetDuration(track, 60);
    counter.emplace(TapCounter::Services{
        .loop = loop,
        .prompter = prompter,
        .audio = audio,
        .catalogue = catalogue,
        .paths = database.paths,
        .device = {.whyNot = [this] { return whyNot; }, .output = [] { return u"Headphones"_s; }}});
  }
  void Play() {
    counter->Play();
    ASSERT_TRUE(loop.RunUntil([this] { return counter->Playing(); }));
  }
  void TapTimes(int taps, Nanoseconds apart) {
    for (int tap = 0; tap < taps; ++tap) {
      counter->Tap();
      loop.RunFor(apart);
    }
  }

  TestDatabase database;
  SimulatedEventLoop loop;
  ScriptedPrompter prompter;
  ErrorLog log{loop, prompter, {}};
  ClockAudio audio{loop};
  Catalogue catalogue;
  QString track;
  QString whyNot;
  std::optional<TapCounter> counter;
};

TEST_F(TapCounterTest, CountsAndSavesWithTheTrack) {
  counter->CountOrEnd();
  EXPECT_EQ(prompter.Told().last(), u"Please Start The Track First !!"_s);
  counter->Take(track);
  Play();
  counter->CountOrEnd();
  EXPECT_EQ(counter->Caption(), u"See Result"_s);
  EXPECT_EQ(counter->Text(), u"Waiting !"_s);
  EXPECT_TRUE(counter->Instructing());
  TapTimes(4, 500ms);
  EXPECT_EQ(counter->Text(), u"Beat= 4"_s);
  counter->CountOrEnd();
  EXPECT_EQ(prompter.Told().last(),
            u"More Beat Information Required\r\nPlease Tap the Space Bar More Times!"_s);
  EXPECT_EQ(counter->Caption(), u"Count Bpm"_s);
  counter->HideInstructions(true);
  counter->CountOrEnd();
  EXPECT_FALSE(counter->Instructing());
  TapTimes(61, 500ms);
  EXPECT_EQ(counter->Text(), u"Beat= 59"_s);
  counter->CountOrEnd();
  EXPECT_EQ(counter->Text(), u"121"_s);
  int flashes = 0;
  for (int beat = 0; beat < 50; ++beat) {
    loop.RunFor(100ms);
    flashes += counter->Lamp() ? 1 : 0;
  }
  EXPECT_NEAR(flashes, 10, 1);
  counter->Scale(0.5);
  EXPECT_EQ(counter->Text(), u"60.5"_s);
  counter->Scale(2);
  counter->Use(119.7);
  EXPECT_EQ(counter->Text(), u"120"_s);
  EXPECT_EQ(catalogue.TrackBpm[ToMref(1)], u"120"_s) << "nothing is stored by itself";

  counter->SetText(u" 121 "_s);
  prompter.answers = {Answer::Cancel, Answer::Ok};
  counter->Save();
  loop.RunFor(100ms);
  EXPECT_EQ(prompter.Told().last(), u"Save Bpm Value 121 To Track Ann - Song ?"_s);
  EXPECT_EQ(database.Info(u"Ann - Song"_s), InfoBytes());
  counter->Save();
  loop.RunFor(100ms);
  EXPECT_EQ(catalogue.TrackBpm[ToMref(1)], u"121"_s);
  EXPECT_EQ(database.Info(u"Ann - Song"_s), InfoBytes().replace("\r\n120\r\n", "\r\n121\r\n"));
}

TEST_F(TapCounterTest, SavesOnlyNumbersAndOnlyWithTracks) {
  counter->SetText(u"120"_s);
  counter->Save();
  EXPECT_EQ(prompter.Told().last(), u"Please Select A Track To Save to !"_s);
  counter->Take(database.Add(Paths::Jingles, u"Horn.mp3"_s));
  counter->Save();
  EXPECT_EQ(prompter.Told().last(), u"Cant Apply A Bpm Value To A Sound Bite !"_s);
  counter->Take(track);
  const std::size_t told = prompter.asked.size();
  for (const char16_t* text : {u"0", u" 0", u"", u"Beat= 7", u"Waiting !"}) {
    counter->SetText(QString::fromUtf16(text));
    counter->Save();
  }
  EXPECT_EQ(prompter.asked.size(), told);
  // The track is removed while the question is open; without an info file the list alone takes the figure.
  counter->SetText(u"99"_s);
  QFile::remove(database.paths(Paths::Info) + u"/Ann - Song.kif"_s);
  prompter.answers = {Answer::Ok, Answer::Ok};
  counter->Save();
  loop.RunFor(100ms);
  EXPECT_EQ(catalogue.TrackBpm[ToMref(1)], u"99"_s);
  EXPECT_FALSE(database.Holds(Paths::Info, u"Ann - Song.kif"_s));
  prompter.meanwhile = [this](const Prompt&) { catalogue.Remove(ToMref(1)); };
  counter->Save();
  loop.RunFor(100ms);
  EXPECT_EQ(counter->Path(), QString());
}

TEST_F(TapCounterTest, FallsSilentWhenTheDeskNeedsTheDevice) {
  counter->Take(track);
  Play();
  whyNot = u"The desk is on air"_s;
  loop.RunFor(200ms);
  EXPECT_FALSE(counter->Playing());
  counter->Play();
  loop.RunFor(1s);
  EXPECT_FALSE(counter->Playing());
}

TEST_F(TapCounterTest, HearsTheBeatOfAFile) {
  // A drum, 128 a minute, for half a minute; in silence between its beats nothing would be heard.
  Samples sound = Noise(std::size_t{44100} * 30);
  const Samples drum = Sine(80, 0.3);
  for (std::size_t beat = 0; beat < 63; ++beat) {
    const auto from = static_cast<std::size_t>(44100.0 * 60 / 128 * static_cast<double>(beat)) * 2;
    for (std::size_t sample = 0; sample < drum.size(); ++sample)
      sound[from + sample] += drum[sample] * std::exp(-static_cast<float>(sample) / 6000);
  }
  counter->Take(database.Add(Paths::Jingles, u"Clicks.wav"_s, WaveFile(sound)));
  EXPECT_TRUE(counter->HeardWords().startsWith(u"Listening to the file..."_s));
  ASSERT_TRUE(loop.RunUntil([this] { return counter->Heard().has_value(); }));
  EXPECT_NEAR(counter->Heard()->bpm, 128, 6);
  EXPECT_TRUE(counter->Heard()->sure);
  counter->Take(track);
  ASSERT_TRUE(loop.RunUntil([this] { return !counter->HeardWords().startsWith(u"Listening"_s); }));
  EXPECT_FALSE(counter->Heard());
  EXPECT_FALSE(counter->HeardWords().isEmpty()) << "why there is nothing";
}

}  // namespace
