// The CD player over drives that work, are empty, fail or hang; what it plays is heard in simulated time.

#include "audio/AudioEngine.h"
#include "audio/MonitorSettings.h"
#include "audio/engine/SimulatedBackend.h"
#include "discs/CdPlayer.h"
#include "discs/FakeDrives.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

using namespace kelvo;
using namespace kelvo::testing;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

namespace {

class CdPlayerTest : public ::testing::Test {
 protected:
  void Open() {
    shelf_ = std::make_shared<DriveShelf>(
        DriveShelf::Services{loop_, prompter_, std::make_shared<FakeDrives>(disc_)});
    player_.emplace(CdPlayer::Services{.loop = loop_,
                                       .prompter = prompter_,
                                       .audio = engine_,
                                       .settings = ProgramSettings(settings_, u"Kelvo"_s),
                                       .title = u"Kelvo"_s,
                                       .shelf = shelf_});
    player_->OnCommand = [this](const QString& command) {
      if (!command.startsWith(u"status"_s)) sent_.append(command);
    };
    player_->Open();
    loop_.RunFor(500ms);
  }
  /// What was sent since the last time, but the questions.
  QStringList Sent() {
    loop_.RunFor(400ms);
    return std::exchange(sent_, {});
  }
  /// The frame of the disc that is heard first in `heard_`; -1 for none.
  int FirstHeard() {
    for (std::size_t i = 0; i + 64 < heard_.size(); i += 2) {
      // Behind the ramp of the start.
      if (heard_[i] == 0 && heard_[i + 1] == 0) continue;
      const std::size_t from = i + 2 * 4410;
      const auto same = [&](std::size_t frame) {
        for (std::size_t at = 0; at < 64; ++at) {
          if (std::abs(heard_[from + at] * 32768 - static_cast<float>(disc_->disc.samples[frame * 2 + at])) >
              1)
            return false;
        }
        return true;
      };
      for (std::size_t frame = 0; frame + 64 < disc_->disc.samples.size() / 2; ++frame) {
        if (same(frame)) return static_cast<int>(frame) - 4410;
      }
      return -1;
    }
    return -1;
  }

  SimulatedEventLoop loop_;
  TemporaryTree folder_;
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, folder_.Path(u"kelvo.log"_s)};
  SettingsStore settings_{loop_, folder_.Path(u"settings.ini"_s)};
  std::vector<float> heard_;
  AudioEngine engine_{loop_, std::make_unique<SimulatedBackend>(
                                 loop_,
                                 [this](const QString& output, std::span<const float> sound) {
                                   if (output.isEmpty())
                                     heard_.insert(heard_.end(), sound.begin(), sound.end());
                                 },
                                 QStringList{u"Main"_s, u"Headphones"_s})};
  std::shared_ptr<FakeDisc> disc_ = ThreeTracks();
  std::shared_ptr<DriveShelf> shelf_;
  QStringList sent_;
  std::optional<CdPlayer> player_;
};

TEST_F(CdPlayerTest, SendsItsCommandsInTheirOrderAndShowsTheDisc) {
  Open();
  EXPECT_THAT(Sent(), ElementsAre(u"close all"_s, u"open cdaudio alias cd wait shareable"_s,
                                  u"set cd time format tmsf wait"_s, u"seek cd to 1"_s));
  EXPECT_EQ(player_->Title(), u"Kelvo CD Player"_s);
  EXPECT_EQ(player_->DiscLine(), u"Tracks: 3  Total time: 00:12"_s);
  EXPECT_EQ(player_->TimeLine(), u"Track time: 00:00"_s);
  ASSERT_EQ(player_->Tracks().Count(), 3);
  EXPECT_EQ(player_->Tracks()[1].length, u"00:05"_s);
  player_->NextTrack();
  EXPECT_THAT(Sent(), ElementsAre(u"seek cd to 2"_s));
  player_->Play();
  EXPECT_THAT(Sent(), ElementsAre(u"play cd"_s));
  EXPECT_TRUE(player_->Playing());
  loop_.RunFor(2500ms);
  EXPECT_EQ(player_->TimeLine(), u"Track time: 00:02"_s);
  EXPECT_TRUE(player_->Tracks()[1].current);
  player_->NextTrack();
  EXPECT_THAT(Sent(), ElementsAre(u"seek cd to 3"_s, u"play cd from 3"_s));
  player_->NextTrack();
  EXPECT_THAT(Sent(), ElementsAre(u"seek cd to 1"_s, u"play cd from 1"_s)) << "behind the last";
  player_->PreviousTrack();
  EXPECT_THAT(Sent(), ElementsAre(u"seek cd to 1"_s, u"play cd from 1"_s));
  player_->Forward();
  const QStringList moved = Sent();
  ASSERT_EQ(moved.size(), 3);
  EXPECT_EQ(moved[0], u"set cd time format milliseconds"_s);
  EXPECT_NEAR(moved[1].section(u' ', -1).toInt(), 5400, 30) << moved[1].toStdString();
  EXPECT_EQ(moved[2], u"set cd time format tmsf"_s);
  EXPECT_EQ(player_->Track(), 2);
  player_->Pause();
  EXPECT_THAT(Sent(), ElementsAre(u"pause cd"_s));
  EXPECT_FALSE(player_->Playing());
  prompter_.texts = {u"2"_s};
  player_->AskSpeed();
  EXPECT_EQ(player_->Speed(), 2);
  player_->Rewind();
  EXPECT_TRUE(Sent()[1].startsWith(u"seek cd to "_s));
  player_->Stop();
  EXPECT_THAT(Sent(), ElementsAre(u"stop cd wait"_s, u"seek cd to 1"_s));
  player_->Close();
  EXPECT_THAT(Sent(), ElementsAre(u"stop cd wait"_s, u"seek cd to 1"_s, u"close all"_s));
}

TEST_F(CdPlayerTest, IsHeardOnTheProgrammeToTheSampleAndOnTheMonitorAlone) {
  Open();
  player_->PlayTrack(2);
  (void)Sent();
  EXPECT_EQ(FirstHeard(), 300 * kCdSectorFrames);
  player_->Pause();
  loop_.RunFor(1s);
  heard_.clear();
  player_->Play();
  loop_.RunFor(2s);
  EXPECT_NEAR(FirstHeard(), (300 + 45) * kCdSectorFrames, 40 * kCdSectorFrames) << "from where it paused";
  player_->SetOnMonitor(true);
  loop_.RunFor(1s);
  heard_.clear();
  EXPECT_FALSE(player_->WhyNoPlay().isEmpty()) << "no device is chosen";
  ProgramSettings(settings_, u"Kelvo"_s).Set(setting::PFLDeviceId, u"Headphones"_s);
  EXPECT_TRUE(player_->WhyNoPlay().isEmpty());
  player_->Play();
  loop_.RunFor(2s);
  EXPECT_TRUE(player_->Playing());
  EXPECT_EQ(FirstHeard(), -1) << "nothing of it goes on air";
  player_->PlayTrack(3);
  loop_.RunFor(10s);
  EXPECT_FALSE(player_->Playing()) << "the disc is at its end";
  EXPECT_EQ(player_->Track(), 1);
}

TEST_F(CdPlayerTest, FollowsTheDiscThatGoesAndTheOneThatComes) {
  Open();
  player_->Play();
  loop_.RunFor(1s);
  player_->Eject();
  loop_.RunFor(2s);
  EXPECT_EQ(player_->Words(), u"No CD In Drive"_s);
  EXPECT_EQ(player_->Tracks().Count(), 0);
  EXPECT_FALSE(player_->Playing());
  disc_->toc.tracks.pop_back();
  (void)Sent();
  player_->CloseTray();
  loop_.RunFor(2s);
  EXPECT_EQ(player_->DiscLine(), u"Tracks: 2  Total time: 00:09"_s);
  EXPECT_THAT(Sent(), ElementsAre(u"set cd door closed"_s, u"seek cd to 1"_s));
  // Taken out by hand while it plays.
  player_->Play();
  loop_.RunFor(1s);
  disc_->spoil = [](int, int, std::span<std::int16_t>) {
    throw DriveFailure(DriveFailure::Kind::NoDisc, u"gone"_s, {});
  };
  disc_->state = DiscState::NoDisc;
  loop_.RunFor(2s);
  EXPECT_FALSE(player_->Playing());
  EXPECT_EQ(player_->Words(), u"No CD In Drive"_s);
}

TEST_F(CdPlayerTest, SaysWhatADriveRefusesAndIsFreeAgainAfterOneThatHangs) {
  Open();
  shelf_->SetRipping(FakeDrives::kPlace, true);
  EXPECT_EQ(player_->WhyNoPlay(), u"Please Wait For Ripper To Finish!"_s);
  shelf_->SetRipping(FakeDrives::kPlace, false);
  disc_->before = [](const QString& call) {
    if (call == u"eject"_s) throw DriveFailure(DriveFailure::Kind::Refused, u"The tray does not open."_s, {});
    if (call == u"open"_s) throw DriveFailure(DriveFailure::Kind::Refused, u"The drive is busy."_s, {});
  };
  player_->Eject();
  loop_.RunFor(3s);
  EXPECT_EQ(player_->Words(), u"The tray does not open."_s) << "until the next order";
  player_->Play();
  loop_.RunFor(3s);
  EXPECT_EQ(player_->Words(), u"The drive is busy."_s);
  disc_->before = nullptr;
  loop_.HangDisk(FakeDrives::kPlace);
  player_->Eject();
  loop_.RunFor(40s);
  EXPECT_EQ(player_->Words(), u"The drive /dev/fake0 does not answer."_s);
  loop_.AnswerAgain(FakeDrives::kPlace);
  loop_.RunFor(3s);
  disc_->state = DiscState::Audio;
  loop_.RunFor(3s);
  player_->Play();
  loop_.RunFor(3s);
  EXPECT_TRUE(player_->Playing());
}

TEST(TheDiscCheck, HasTheWordsOfTheConsole) {
  EXPECT_EQ(DiscWords(DiscState::Audio), u"CDA"_s);
  EXPECT_EQ(DiscWords(DiscState::Mixed), u"Audio"_s);
  EXPECT_EQ(DiscWords(DiscState::NotReady), u"Not Ready Or In Use"_s);
}

}  // namespace
