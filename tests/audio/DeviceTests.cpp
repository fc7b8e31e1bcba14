#include "audio/AudioEngine.h"
#include "audio/FakeBackend.h"
#include "audio/Playing.h"
#include "audio/TestSounds.h"
#include "audio/engine/NoDeviceBackend.h"
#include "audio/engine/SdlBackend.h"
#include "platform/QtEventLoop.h"
#include "platform/SimulatedEventLoop.h"
#include "support/TemporaryTree.h"
#include "support/TurnUntil.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace kelvo::testing {

namespace {

using namespace std::chrono_literals;

/// Devices whose callbacks the test's own timer makes, 441 frames every 10 ms.
struct PulledStudio {
  TemporaryTree folder;
  SimulatedEventLoop loop;
  std::shared_ptr<FakeBackend::Bench> bench = std::make_shared<FakeBackend::Bench>();
  AudioEngine engine{loop, std::make_unique<FakeBackend>(bench)};
  Samples buffer = Samples(882);
  Samples heard;
  std::vector<OutputStatus::Kind> told;
  bool stuck = false;
  Timer calls = loop.Every(10ms, [this] {
    if (stuck) return;
    for (const auto& link : bench->open) {
      link->Deliver(buffer);
      heard.insert(heard.end(), buffer.begin(), buffer.end());
    }
  });
  PulledStudio() {
    engine.OnDefaultOutputChanged = [this](const OutputStatus& status) { told.push_back(status.kind); };
  }
  [[nodiscard]] bool Audible() const {
    return std::any_of(heard.begin(), heard.end(), [](float sample) { return sample != 0; });
  }
};

constexpr auto kOnAir = OutputStatus::Kind::OnAir;
constexpr auto kOnClock = OutputStatus::Kind::OnSilentClock;
constexpr auto kOnDefault = OutputStatus::Kind::OnDefault;

}  // namespace

TEST(Devices, ThePositionRunsOnThroughAPulledDeviceAndTheSoundComesBack) {
  PulledStudio studio;
  const auto player = studio.engine.MakePlayer();
  const Job<> job = OpenAndPlay(*player, studio.folder.Write("sine.wav", WaveFile(Sine(440, 60))));
  studio.loop.RunFor(1s);
  ASSERT_EQ(studio.told, std::vector{kOnAir});
  ASSERT_TRUE(studio.Audible());
  EXPECT_EQ(studio.engine.DefaultOutputStatus().device, QStringLiteral("Main"));

  double last = player->CurrentPosition();
  double largest = 0;
  const Timer watch = studio.loop.Every(10ms, [&] {
    const double now = player->CurrentPosition();
    EXPECT_GE(now, last);
    largest = std::max(largest, now - last);
    last = now;
  });
  const double before = player->CurrentPosition();
  // Both devices vanish, nothing is left; then only the other returns, then the first.
  studio.bench->Pull(QStringLiteral("Headphones"));
  studio.bench->Pull(QStringLiteral("Main"));
  studio.loop.RunFor(5s);
  EXPECT_EQ(studio.told.back(), kOnClock);
  studio.bench->names = {QStringLiteral("Headphones")};
  studio.loop.RunFor(1500ms);
  EXPECT_EQ(studio.told.back(), kOnDefault);
  EXPECT_EQ(studio.engine.DefaultOutputStatus().device, QStringLiteral("Main"));
  studio.heard.clear();
  studio.loop.RunFor(200ms);
  EXPECT_TRUE(studio.Audible());
  studio.bench->names = {QStringLiteral("Main")};
  studio.bench->open.front()->SetState(DeviceLink::State::Gone);
  studio.loop.RunFor(3300ms);
  EXPECT_EQ(studio.told.back(), kOnAir);

  // The callbacks stop, the device says nothing of it.
  studio.stuck = true;
  studio.loop.RunFor(200ms);
  EXPECT_EQ(studio.told.back(), kOnAir) << "a short stall is no loss";
  studio.loop.RunFor(150ms);
  EXPECT_EQ(studio.told.back(), kOnClock);
  studio.loop.RunFor(650ms);
  EXPECT_GE(studio.bench->tries[QString()], 4) << "it was opened afresh";
  studio.stuck = false;
  studio.loop.RunFor(2s);
  EXPECT_EQ(studio.told.back(), kOnAir);

  EXPECT_LT(largest, 0.035);
  EXPECT_NEAR(player->CurrentPosition() - before, 13.0, 0.3);
  EXPECT_EQ(player->State(), PlayState::Playing);
}

TEST(Devices, ANamedOutputIsHeardOnItsOwnDeviceOrNotAtAll) {
  PulledStudio studio;
  const auto monitor = studio.engine.MakePlayer(QStringLiteral("Headphones"));
  const Job<> job = OpenAndPlay(*monitor, studio.folder.Write("sine.wav", WaveFile(Sine(440, 60))));
  studio.loop.RunFor(500ms);
  ASSERT_TRUE(studio.Audible());
  studio.bench->Pull(QStringLiteral("Headphones"));
  studio.loop.RunFor(50ms);
  studio.heard.clear();
  studio.loop.RunFor(3s);
  EXPECT_FALSE(studio.Audible());
  EXPECT_NEAR(monitor->CurrentPosition(), 3.5, 0.1);
  EXPECT_EQ(studio.engine.StatusOf(QStringLiteral("Headphones"))->kind, kOnClock);
  EXPECT_EQ(studio.engine.DefaultOutputStatus().kind, kOnAir);
  studio.bench->names.append(QStringLiteral("Headphones"));
  studio.loop.RunFor(1100ms);
  EXPECT_TRUE(studio.Audible());
  EXPECT_EQ(studio.bench->tries[QString()], 1) << "only its own name was tried";
}

TEST(Devices, AnOutputThatNobodyPlaysOnIsLetGo) {
  PulledStudio studio;
  auto monitor = studio.engine.MakePlayer(QStringLiteral("Headphones"));
  studio.loop.RunFor(50ms);
  EXPECT_NE(studio.bench->Device(QStringLiteral("Headphones")), nullptr);
  monitor.reset();
  studio.loop.RunFor(500ms);
  EXPECT_EQ(studio.bench->Device(QStringLiteral("Headphones")), nullptr);
  EXPECT_NE(studio.bench->Device(), nullptr);
}

TEST(Devices, WithoutAnyDeviceTimeGoesOnInRealTime) {
  const TemporaryTree folder;
  QtEventLoop loop;
  AudioEngine engine(loop, std::make_unique<NoDeviceBackend>());
  EXPECT_TRUE(engine.OutputNames().isEmpty());
  const auto player = engine.MakePlayer();
  int ends = 0;
  player->OnEndOfStream = [&] { ++ends; };
  const Job<> job = OpenAndPlay(*player, folder.Write("half.mp3", Mp3File(Sine(440, 0.5))));
  EXPECT_TRUE(TurnUntil([&] { return ends == 1; }));
  EXPECT_NEAR(player->CurrentPosition(), 0.5, 0.001);
}

TEST(Devices, SilenceThatWasAskedForIsNoLostDevice) {
  SimulatedEventLoop loop;
  AudioEngine engine(loop, std::make_unique<NoDeviceBackend>(QStringList{QStringLiteral("Nowhere")}, false));
  bool told = false;
  engine.OnDefaultOutputChanged = [&told](const OutputStatus&) { told = true; };
  EXPECT_EQ(engine.DefaultOutputStatus().kind, kOnAir) << "from the first moment";
  const auto other = engine.MakePlayer(QStringLiteral("No such device"));
  loop.RunFor(5s);
  EXPECT_EQ(engine.DefaultOutputStatus(), (OutputStatus{kOnAir, QStringLiteral("Nowhere")}));
  EXPECT_FALSE(told);
  EXPECT_EQ(engine.StatusOf(QStringLiteral("No such device"))->kind, kOnClock);
}

TEST(Devices, TheMachinesOwnDevicesAreOpenedAndClosedBesideTheLogic) {
  // The driver without hardware: it goes the whole way of a real one.
  qputenv("SDL_AUDIODRIVER", "dummy");
  const TemporaryTree folder;
  QtEventLoop loop;
  AudioEngine engine(loop, std::make_unique<SdlBackend>(512));
  const Job<> known = engine.OutputsKnown();
  ASSERT_TRUE(TurnUntil([&] { return !known.Running(); }));
  EXPECT_EQ(engine.OutputNames().size(), 1);
  EXPECT_TRUE(TurnUntil([&] { return engine.DefaultOutputStatus().kind == kOnAir; }));
  const auto player = engine.MakePlayer();
  const auto nowhere = engine.MakePlayer(QStringLiteral("No such device"));
  int ends = 0;
  player->OnEndOfStream = nowhere->OnEndOfStream = [&] { ++ends; };
  const QString path = folder.Write("half.mp3", Mp3File(Sine(440, 0.5)));
  const Job<> job = OpenAndPlay(*player, path);
  const Job<> silent = OpenAndPlay(*nowhere, path);
  EXPECT_TRUE(TurnUntil([&] { return ends == 2; }));
  EXPECT_EQ(engine.StatusOf(QStringLiteral("No such device"))->kind, kOnClock);
}

TEST(Devices, PlayersOnRealThreadsKeepTheirWitsUnderHeavyHandling) {
  const TemporaryTree folder;
  const QString paths[] = {folder.Write("a.mp3", Mp3File(Sine(440, 3))),
                           folder.Write("b.wav", WaveFile(Sine(300, 3))),
                           folder.Write("c.wav", WaveFile(Sine(300, 1, 48000), WaveKind{.rate = 48000})),
                           folder.Write("bad.mp3", "no sound")};
  auto bench = std::make_shared<FakeBackend::Bench>();
  bench->threaded = true;
  QtEventLoop loop;
  const auto engine = std::make_unique<AudioEngine>(loop, std::make_unique<FakeBackend>(bench));
  // The links are held by the device's thread itself, as a real device does.
  const std::vector<std::shared_ptr<DeviceLink>> links = bench->open;
  ASSERT_EQ(links.size(), 1U);
  std::atomic<float> loudest{0};
  std::jthread device([&](const std::stop_token& stop) {
    Samples buffer(512 * 2);
    while (!stop.stop_requested()) {
      links.front()->Deliver(buffer);
      loudest = std::max(loudest.load(), *std::max_element(buffer.begin(), buffer.end()));
      std::this_thread::sleep_for(3ms);
    }
  });
  Dice dice;
  SCOPED_TRACE(::testing::Message() << "seed " << dice.Seed());
  std::vector<std::unique_ptr<MediaPlayer>> players;
  JobList jobs;
  int ends = 0;
  for (int step = 0; step < 800; ++step) {
    if (players.size() < 4) {
      players.push_back(engine->MakePlayer());
      players.back()->OnEndOfStream = [&ends] { ++ends; };
    }
    auto& player = players[static_cast<std::size_t>(dice.Below(static_cast<int>(players.size())))];
    switch (dice.Below(12)) {
      case 0:
      case 1:
        jobs.Add(OpenAndPlay(*player, paths[dice.Below(4)]));
        break;
      case 2:
        player->SetCurrentPosition(dice.Below(4));
        break;
      case 3:
        player->SetCurrentPosition(2.95);
        break;
      case 4:
        player->Stop();
        break;
      case 5:
        player->SetVolume(-dice.Below(3000));
        break;
      case 6:
        player->SetRate(dice.Between(0.5, 2));
        break;
      case 7:
        if (dice.Below(10) == 0)
          players.erase(players.begin() + dice.Below(static_cast<int>(players.size())));
        break;
      default:
        player->Play();
        break;
    }
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
  }
  jobs.CancelAll();
  // Whatever was done to it, a player that is left in peace plays a file to its end once.
  MediaPlayer& player = *players.front();
  for (const auto& each : players) each->OnEndOfStream = nullptr;
  player.SetVolume(0);
  player.SetRate(1);
  const Job<> last = OpenAndPlay(player, paths[2]);
  ASSERT_TRUE(TurnUntil([&] { return !last.Running(); }));
  loudest = 0;
  ends = 0;
  player.OnEndOfStream = [&ends] { ++ends; };
  ASSERT_TRUE(TurnUntil([&] { return ends > 0; }));
  EXPECT_GT(loudest.load(), 0.05F);
  EXPECT_NEAR(player.CurrentPosition(), 1, 0.001);
  EXPECT_EQ(player.State(), PlayState::Stopped);
  players.clear();
  device.request_stop();
  device.join();
}

}  // namespace kelvo::testing
