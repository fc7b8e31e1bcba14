// The outputs of a real sound server: a private one with two devices that lead nowhere, recorded as they
// play.

#include "audio/AudioEngine.h"
#include "audio/Playing.h"
#include "audio/PrivateServer.h"
#include "audio/TestSounds.h"
#include "audio/engine/PulseBackend.h"
#include "audio/engine/PulseInput.h"
#include "audio/engine/PulseStream.h"
#include "platform/QtEventLoop.h"
#include "support/TemporaryTree.h"
#include "support/TurnUntil.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <csignal>
#include <mutex>
#include <optional>

namespace kelvo::testing {

namespace {

using namespace std::chrono_literals;

constexpr auto kOnAir = OutputStatus::Kind::OnAir;
constexpr auto kOnClock = OutputStatus::Kind::OnSilentClock;

/// A server whose devices a test plugs and unplugs.
class TestServer : public PrivateServer {
 public:
  /// How many connections it has from this program.
  [[nodiscard]] qsizetype Connections() const {
    EXPECT_TRUE(Tell({"list", "short", "clients"}));
    return Told().count("test_audio");
  }
  void Plug(const char* name) const { EXPECT_TRUE(Tell(QByteArrayList{"load-module"} + Device(name))); }
  void Unplug(const char* sink) const {
    ASSERT_TRUE(Tell({"list", "short", "modules"}));
    const QList<QByteArray> modules = Told().split('\n');
    const auto module = std::find_if(modules.begin(), modules.end(), [&](const QByteArray& line) {
      return line.contains(QByteArray("sink_name=") + sink + ' ');
    });
    ASSERT_NE(module, modules.end());
    EXPECT_TRUE(Tell({"unload-module", module->split('\t').front()}));
  }
};

/// What a device plays, from the moment this is made.
class Recording {
 public:
  explicit Recording(const char* sink)
      : recorder_({"parec", "-d", QByteArray(sink) + ".monitor", "--format=float32le", "--rate=44100",
                   "--channels=1", "--latency-msec=20"},
                  {}, folder_.Path(QStringLiteral("raw")).toUtf8()) {}
  [[nodiscard]] Samples Heard() const {
    const QByteArray bytes = folder_.Exists(QStringLiteral("raw")) ? folder_.Read(QStringLiteral("raw")) : "";
    Samples heard(static_cast<std::size_t>(bytes.size()) / sizeof(float));
    std::copy_n(bytes.constData(), heard.size() * sizeof(float), reinterpret_cast<char*>(heard.data()));
    return heard;
  }
  [[nodiscard]] bool Began() const { return !Heard().empty(); }
  [[nodiscard]] bool Audible() const {
    const Samples heard = Heard();
    return std::any_of(heard.begin(), heard.end(), [](float sample) { return std::abs(sample) > 0.01F; });
  }

 private:
  TemporaryTree folder_;
  Spawned recorder_;
};

/// The hardware of a machine without a server. Opened on the thread that also opens the server's devices.
class BareCard : public OutputBackend {
 public:
  [[nodiscard]] QStringList Names() const override { return {QStringLiteral("Bare Card")}; }
  void Open(std::shared_ptr<DeviceLink> link) override {
    link->SetState(DeviceLink::State::Running);
    const std::lock_guard lock(mutex_);
    link_ = std::move(link);
  }
  [[nodiscard]] bool Plays() const {
    const std::lock_guard lock(mutex_);
    return link_ && link_->GetState() == DeviceLink::State::Running && !link_->Detached();
  }

 private:
  mutable std::mutex mutex_;
  std::shared_ptr<DeviceLink> link_;
};

class SoundServer : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(Start()); }

  [[nodiscard]] bool Start() {
    server.Start();
    bool answers = false;
    return TurnUntil([&] {
             answers = server.Answers();
             return answers || server.HasEnded();
           }) &&
           answers;
  }

  void RunFor(Nanoseconds time) {
    const auto until = loop.Elapsed() + time;
    EXPECT_TRUE(TurnUntil([&] { return loop.Elapsed() >= until; }));
  }
  /// Lets the player go on for `seconds` of its file.
  static bool PlaysOn(const MediaPlayer& player, double seconds) {
    const double before = player.CurrentPosition();
    return TurnUntil([&] { return player.CurrentPosition() >= before + seconds; });
  }
  [[nodiscard]] OutputStatus::Kind KindOf(const QString& output) const {
    return engine->StatusOf(output)->kind;
  }

  const QString headphones = QStringLiteral("Headphones");
  TestServer server;
  TemporaryTree folder;
  QtEventLoop loop;
  std::atomic<BareCard*> card{nullptr};  ///< once it was needed
  std::unique_ptr<AudioEngine> engine;

  void MakeEngine() {
    engine = std::make_unique<AudioEngine>(loop, std::make_unique<PulseBackend>([this] {
                                             auto made = std::make_unique<BareCard>();
                                             card = made.get();
                                             return made;
                                           }));
  }
  [[nodiscard]] bool OnAir() const { return engine->DefaultOutputStatus().kind == kOnAir; }
};

}  // namespace

TEST_F(SoundServer, ANamedOutputIsHeardThereOrNowhere) {
  MakeEngine();
  ASSERT_TRUE(TurnUntil([&] { return OnAir(); }));
  EXPECT_EQ(engine->OutputNames(), (QStringList{QStringLiteral("Main"), headphones}));
  const Recording air("main");
  auto ears = std::make_unique<Recording>("headphones");
  const auto monitor = engine->MakePlayer(headphones);
  const Job<> job = OpenAndPlay(*monitor, folder.Write("sine.wav", WaveFile(Sine(440, 60))));
  EXPECT_TRUE(TurnUntil([&] { return ears->Audible(); }));

  server.Unplug("headphones");
  EXPECT_TRUE(TurnUntil([&] { return KindOf(headphones) == kOnClock; }));
  EXPECT_TRUE(TurnUntil([&] { return engine->OutputNames() == QStringList{QStringLiteral("Main")}; }));
  EXPECT_TRUE(PlaysOn(*monitor, 1));

  server.Plug("Headphones");
  ears = std::make_unique<Recording>("headphones");
  EXPECT_TRUE(TurnUntil([&] { return KindOf(headphones) == kOnAir; }));
  EXPECT_TRUE(TurnUntil([&] { return ears->Audible(); }));
  EXPECT_TRUE(air.Began());
  EXPECT_FALSE(air.Audible()) << "the monitor was on air";
  EXPECT_EQ(card.load(), nullptr);
}

TEST_F(SoundServer, TheDefaultOutputGoesWhereTheDefaultDeviceIs) {
  EXPECT_TRUE(server.Tell({"set-default-sink", "headphones"}));
  server.Plug("Headphones");
  MakeEngine();
  ASSERT_TRUE(TurnUntil([&] { return OnAir(); }));
  EXPECT_EQ(engine->OutputNames(),
            (QStringList{headphones, headphones + QStringLiteral(" (2)"), QStringLiteral("Main")}));
  const auto player = engine->MakePlayer();
  const Job<> job = OpenAndPlay(*player, folder.Write("sine.wav", WaveFile(Sine(440, 60))));
  {
    const Recording ears("headphones");
    EXPECT_TRUE(TurnUntil([&] { return ears.Audible(); }));
  }
  const Recording air("main");
  EXPECT_TRUE(server.Tell({"set-default-sink", "main"}));
  EXPECT_TRUE(TurnUntil([&] { return air.Audible(); }));
}

TEST_F(SoundServer, ATwinThatComesBackKeepsItsOwnName) {
  server.Plug("Headphones");
  MakeEngine();
  const QString twin = headphones + QStringLiteral(" (2)");
  ASSERT_TRUE(TurnUntil([&] { return engine->OutputNames().contains(twin); }));
  server.Unplug("headphones");
  EXPECT_TRUE(TurnUntil([&] { return !engine->OutputNames().contains(headphones); }));
  EXPECT_TRUE(engine->OutputNames().contains(twin)) << "it is another device still";
  server.Plug("Headphones");
  EXPECT_TRUE(TurnUntil([&] { return engine->OutputNames().contains(headphones); }));
  const auto monitor = engine->MakePlayer(headphones);
  const Job<> job = OpenAndPlay(*monitor, folder.Write("sine.wav", WaveFile(Sine(440, 60))));
  const Recording ears("headphones");
  EXPECT_TRUE(TurnUntil([&] { return ears.Audible(); }));
}

TEST_F(SoundServer, ATwinIsRememberedByItsOwnId) {
  server.Plug("Headphones");
  MakeEngine();
  const QString twin = headphones + QStringLiteral(" (2)");
  ASSERT_TRUE(TurnUntil([&] { return engine->OutputNames().contains(twin); }));
  const QString id = engine->OutputId(headphones);
  EXPECT_NE(id, engine->OutputId(twin));
  server.Unplug("headphones");
  ASSERT_TRUE(TurnUntil([&] { return !engine->OutputNames().contains(headphones); }));
  engine.reset();
  MakeEngine();
  // The one that is left has the name that the other had in the first run.
  ASSERT_TRUE(TurnUntil([&] { return engine->OutputNames().contains(headphones); }));
  EXPECT_EQ(engine->OutputNamed(id), QString());
  const auto lost = engine->MakePlayer(id);
  server.Plug("Headphones");
  ASSERT_TRUE(TurnUntil([&] { return !engine->OutputNamed(id).isEmpty(); }));
  EXPECT_EQ(engine->OutputNamed(id), twin);
  EXPECT_TRUE(TurnUntil([&] { return KindOf(id) == kOnAir; }));
}

TEST_F(SoundServer, StallsNeitherLoseTheServerNorLeaveSoundWaitingInIt) {
  MakeEngine();
  ASSERT_TRUE(TurnUntil([&] { return OnAir(); }));
  const auto player = engine->MakePlayer();
  const Job<> job = OpenAndPlay(*player, folder.Write("sine.wav", WaveFile(Sine(440, 60))));
  ASSERT_TRUE(TurnUntil([&] { return player->CurrentPosition() > 0.5; }));
  for (int stall = 0; stall < 3; ++stall) {
    // For longer than the reserve lasts at first.
    server.Signal(SIGSTOP);
    RunFor(350ms);
    server.Signal(SIGCONT);
    RunFor(300ms);
  }
  EXPECT_TRUE(TurnUntil([&] { return engine->Dropouts() > 0; }));
  EXPECT_TRUE(TurnUntil([&] { return OnAir(); }));
  // On a machine that is busy more than once, for then it may be late by itself.
  bool silent = false;
  for (int tries = 0; tries < 10 && !silent; ++tries) {
    player->Play();
    ASSERT_TRUE(PlaysOn(*player, 1));
    player->Stop();
    RunFor(800ms);
    const Recording air("main");
    EXPECT_TRUE(TurnUntil([&] { return air.Began(); }));
    RunFor(300ms);
    silent = !air.Audible();
  }
  EXPECT_TRUE(silent) << "the queue in the server has grown";
  EXPECT_EQ(server.Connections(), 1);
}

TEST(PulseReserve, GrowsByHalfWhenItRanDryUpToItsBoundAndGoesBackInQuietMinutes) {
  constexpr double kFramesInASecond = 44100;
  PulseReserve reserve;
  EXPECT_NEAR(reserve.Frames() / kFramesInASecond, 0.139, 0.001);
  EXPECT_FALSE(reserve.Shrink(1h)) << "this is its least";
  reserve.Grow(reserve.Frames(), 1h);
  EXPECT_NEAR(reserve.Frames() / kFramesInASecond, 0.209, 0.001);
  reserve.Grow(10, 1h);
  EXPECT_NEAR(reserve.Frames() / kFramesInASecond, 0.209, 0.001) << "it ran dry: it does not shrink";
  for (int more = 0; more < 10; ++more) reserve.Grow(reserve.Frames(), 1h);
  EXPECT_NEAR(reserve.Frames() / kFramesInASecond, 0.557, 0.001);
  EXPECT_FALSE(reserve.Shrink(1h + 2min));
  ASSERT_TRUE(reserve.Shrink(1h + 3min));
  EXPECT_NEAR(reserve.Frames() / kFramesInASecond, 0.372, 0.001);
  EXPECT_FALSE(reserve.Shrink(1h + 4min)) << "a step at a time";
  reserve.Grow(reserve.Frames(), 1h + 5min);
  EXPECT_FALSE(reserve.Shrink(1h + 7min));
  for (auto now = 1h + 8min; now < 2h; now += 3min) static_cast<void>(reserve.Shrink(now));
  EXPECT_NEAR(reserve.Frames() / kFramesInASecond, 0.139, 0.001);
}

TEST_F(SoundServer, AServerThatRestartsGetsItsSoundBack) {
  MakeEngine();
  ASSERT_TRUE(TurnUntil([&] { return OnAir(); }));
  const auto player = engine->MakePlayer();
  const Job<> job = OpenAndPlay(*player, folder.Write("sine.wav", WaveFile(Sine(440, 60))));
  ASSERT_TRUE(TurnUntil([&] { return player->CurrentPosition() > 0.5; }));
  server.Stop();
  EXPECT_TRUE(TurnUntil([&] { return engine->DefaultOutputStatus().kind == kOnClock; }));
  EXPECT_TRUE(PlaysOn(*player, 0.5));
  const double before = player->CurrentPosition();
  ASSERT_TRUE(Start());
  EXPECT_TRUE(TurnUntil([&] { return OnAir(); }));
  EXPECT_EQ(card.load(), nullptr) << "a restart is waited for";
  EXPECT_GE(player->CurrentPosition(), before);
  EXPECT_TRUE(PlaysOn(*player, 0.5));
  const Recording air("main");
  EXPECT_TRUE(TurnUntil([&] { return air.Audible(); }));
}

TEST_F(SoundServer, WithoutAServerTheHardwarePlaysUntilThereIsOne) {
  server.Stop();
  MakeEngine();
  ASSERT_TRUE(TurnUntil([&] { return card.load() && card.load()->Plays(); }));
  EXPECT_EQ(engine->OutputNames(), QStringList{QStringLiteral("Bare Card")});
  ASSERT_TRUE(Start());
  EXPECT_TRUE(TurnUntil([&] { return OnAir() && engine->OutputNames().contains(headphones); }));
  EXPECT_EQ(engine->DefaultOutputStatus().device, QStringLiteral("Main"));
  EXPECT_FALSE(card.load()->Plays()) << "the card is the server's now";
}

TEST_F(SoundServer, AnInputIsCapturedAsLongAsItIsThere) {
  PulseInput input;
  input.Choose(QStringLiteral("headphones.monitor"));
  ASSERT_TRUE(TurnUntil([&] { return input.Sound() && input.Sound()->Heard() > 0; }));
  EXPECT_EQ(input.Devices().size(), 2);
  server.Unplug("headphones");
  EXPECT_TRUE(TurnUntil([&] { return !input.Sound() && input.Devices().size() == 1; }));
  server.Plug("Headphones");
  EXPECT_TRUE(TurnUntil([&] { return input.Sound() && input.Sound()->Heard() > 0; }));

  MakeEngine();
  const auto player = engine->MakePlayer();
  const Job<> job = OpenAndPlay(*player, folder.Write("sine.wav", WaveFile(Sine(441, 60))));
  input.Choose(QStringLiteral("main.monitor"));
  EXPECT_TRUE(TurnUntil([&] {
    const auto sound = input.Sound();
    Samples heard(2 * 4410);
    return sound && sound->Heard() > 4410 && sound->Read(sound->Heard() - 4410, heard) &&
           std::abs(Amplitude(heard, 441, 4410) - 0.5) < 0.01;
  }));
  server.Stop();
  EXPECT_TRUE(TurnUntil([&] { return !input.Sound() && input.Devices().empty(); }));
  input.Choose({});
}

}  // namespace kelvo::testing
