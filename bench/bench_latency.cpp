// How long it takes from an order to what is heard of it, through a sound server of its own, beside two busy
// threads.

#include "audio/AudioEngine.h"
#include "audio/PrivateServer.h"
#include "audio/TestSounds.h"
#include "audio/engine/NoDeviceBackend.h"
#include "audio/engine/PulseBackend.h"
#include "console/jingles/Jingles.h"
#include "platform/QtEventLoop.h"
#include "support/NobodyThere.h"
#include "support/TurnUntil.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <pulse/simple.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

using namespace kelvo;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int kRounds = 50;
constexpr float kLevel = 0.5F;

/// What the default device plays: a constant, so that each change of it shows at once.
class Ear {
 public:
  Ear() {
    const pa_sample_spec form{.format = PA_SAMPLE_FLOAT32NE, .rate = kEngineRate, .channels = 1};
    constexpr auto kAny = static_cast<std::uint32_t>(-1);
    const pa_buffer_attr buffer{.maxlength = kAny,
                                .tlength = kAny,
                                .prebuf = kAny,
                                .minreq = kAny,
                                .fragsize = kEngineRate / 50 * sizeof(float)};
    stream_ = pa_simple_new(nullptr, "Ear", PA_STREAM_RECORD, "main.monitor", "Ear", &form, nullptr, &buffer,
                            nullptr);
    if (stream_) thread_ = std::jthread([this](const std::stop_token& stop) { Run(stop); });
  }
  ~Ear() {
    thread_ = {};
    if (stream_) pa_simple_free(stream_);
  }
  Ear(const Ear&) = delete;
  Ear& operator=(const Ear&) = delete;

  /// From now on: the first moment at which `fits` holds for a sample.
  template <typename Fits>
  void Wait(Fits fits) {
    const std::lock_guard lock(mutex_);
    fits_ = fits;
    from_ = Clock::now();
    met_.reset();
  }
  [[nodiscard]] std::optional<Clock::time_point> Met() const {
    const std::lock_guard lock(mutex_);
    return met_;
  }
  /// Steps that no ramp makes, so far.
  [[nodiscard]] int Clicks() const { return clicks_.load(); }
  /// Stretches of silence in what was never to be silent, so far.
  [[nodiscard]] int Holes() const { return holes_.load(); }
  std::atomic<bool> sounding{false};

 private:
  void Run(const std::stop_token& stop) {
    std::vector<float> part(64);
    float last = 0;
    while (!stop.stop_requested() &&
           pa_simple_read(stream_, part.data(), part.size() * sizeof(float), nullptr) == 0) {
      const auto now = Clock::now();
      const std::lock_guard lock(mutex_);
      for (const float sample : part) {
        if (std::abs(sample - last) > 0.02F) ++clicks_;
        if (sounding && sample == 0 && last != 0) ++holes_;
        last = sample;
        // What was under way when the order was given may be read before it.
        if (!met_ && fits_ && now > from_ && fits_(sample)) met_ = now;
      }
    }
  }

  pa_simple* stream_ = nullptr;
  mutable std::mutex mutex_;
  std::function<bool(float)> fits_;
  Clock::time_point from_;
  std::optional<Clock::time_point> met_;
  std::atomic<int> clicks_{0};
  std::atomic<int> holes_{0};
  std::jthread thread_;
};

Job<> OpenInto(MediaPlayer& player, QString path, bool& open) {
  const OpenResult result = co_await player.Open(path);
  open = result.Ok();
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? -1 : values[values.size() / 2];
}

int Measure(bool busy) {
  testing::PrivateServer server;
  server.Start();
  for (int tries = 0; !server.Answers(); ++tries) {
    if (server.HasEnded() || tries == 100) return 1;
    std::this_thread::sleep_for(100ms);
  }
  QtEventLoop loop;
  AudioEngine engine(loop,
                     std::make_unique<PulseBackend>([] { return std::make_unique<NoDeviceBackend>(); }));
  const auto turnUntil = [](const auto& condition) { return testing::TurnUntil(condition); };
  const auto runFor = [&](Clock::duration time) {
    const auto until = Clock::now() + time;
    static_cast<void>(turnUntil([until] { return Clock::now() >= until; }));
  };
  if (!turnUntil([&] { return engine.DefaultOutputStatus().kind == OutputStatus::Kind::OnAir; })) return 1;

  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("level.wav"));
  testing::Save(path, testing::WaveFile(testing::Samples(44100UL * 2 * 240, kLevel)));
  const auto player = engine.MakePlayer();
  bool open = false;
  const Job<> job = OpenInto(*player, path, open);
  if (!turnUntil([&] { return open; })) return 1;

  // A bite on a button of the bank, as the desk has it.
  const QString bite = folder.filePath(QStringLiteral("Horn.wav"));
  testing::Save(bite, testing::WaveFile(testing::Samples(44100UL * 2 * 30, kLevel)));
  Catalogue catalogue;
  catalogue.AddJingle(bite);
  ConsoleState state;
  Disks disks(loop);
  testing::NobodyThere prompter;
  PlayQueue queue(loop, disks, prompter, catalogue, state);
  Jingles jingles({.loop = loop,
                   .disks = disks,
                   .audio = engine,
                   .catalogue = catalogue,
                   .queue = queue,
                   .state = state,
                   .paths = {}});
  jingles.Assign(0, 0);

  std::atomic<bool> burning{busy};
  std::vector<std::jthread> burners;
  for (int each = 0; each < 2; ++each) {
    burners.emplace_back([&burning] {
      volatile double value = 1;
      while (burning.load(std::memory_order_relaxed)) value = std::sqrt(value + 1);
    });
  }
  Ear ear;
  runFor(2s);
  double worst = 0;
  std::vector<double> starts;
  std::vector<double> stops;
  std::vector<double> faders;
  std::vector<double> presses;
  int missed = 0;
  testing::Dice dice(3);
  const auto time = [&](std::vector<double>& into, auto order, auto fits) {
    ear.Wait(fits);
    const auto from = Clock::now();
    order();
    if (!turnUntil([&] { return ear.Met().has_value(); })) ++missed;
    const double took = std::chrono::duration<double, std::milli>(ear.Met().value_or(from) - from).count();
    into.push_back(took);
    worst = std::max(worst, took);
    runFor(400ms + std::chrono::milliseconds(dice.Below(60)));
  };
  const std::uint64_t dropouts = engine.Dropouts();
  for (int round = 0; round < kRounds; ++round) {
    time(
        starts, [&] { player->Play(); }, [](float sample) { return sample > 0.01F; });
    ear.sounding = true;
    time(
        faders, [&] { player->SetVolume(-600); }, [](float sample) { return sample < kLevel - 0.01F; });
    player->SetVolume(0);
    runFor(300ms);
    ear.sounding = false;
    time(
        stops, [&] { player->Stop(); }, [](float sample) { return sample < kLevel - 0.01F; });
    time(
        presses, [&] { jingles.PressBank(0); }, [](float sample) { return sample > 0.01F; });
    jingles.Stop();
    runFor(300ms);
  }
  burning = false;
  const std::uint64_t gaps =
      engine.Dropouts() - dropouts + engine.Underruns() + static_cast<std::uint64_t>(ear.Holes());
  std::printf(
      "latency.start_ms: %.1f\nlatency.stop_ms: %.1f\nlatency.fader_ms: %.1f\nlatency.jingle_ms: %.1f\n"
      "latency.worst_ms: %.1f\n",
      Median(starts), Median(stops), Median(faders), Median(presses), worst);
  std::printf("latency.gaps: %llu\nlatency.clicks: %d\nlatency.missed: %d\n",
              static_cast<unsigned long long>(gaps), ear.Clicks(), missed);
  return missed == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication app(argc, argv);
  return Measure(!QCoreApplication::arguments().contains(QStringLiteral("--idle")));
}
