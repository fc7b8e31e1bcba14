// How fast the engine decodes and mixes, how soon it answers, and whether it keeps up beside a busy core.

#include "audio/AudioEngine.h"
#include "audio/TestSounds.h"
#include "audio/engine/Limiter.h"
#include "audio/engine/OpenDecoder.h"
#include "audio/engine/SimulatedBackend.h"
#include "platform/QtEventLoop.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>

using namespace kelvo;
using namespace std::chrono_literals;

namespace {

constexpr int kDecks = 4;

Job<> OpenInto(MediaPlayer& player, QString path, bool& open) {
  const OpenResult result = co_await player.Open(path);
  open = result.Ok();
}

void Report(const char* name, double value) {
  std::printf("%s: %.6g\n", name, value);
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? -1 : values[values.size() / 2];
}

/// A device that asks for 1024 frames at a time at the pace of its rate, on its own thread.
class PacedBackend : public OutputBackend {
 public:
  static constexpr std::size_t kFrames = 1024;

  explicit PacedBackend(std::shared_ptr<std::atomic<std::int64_t>> delivered,
                        std::shared_ptr<std::atomic<std::int64_t>> firstSound)
      : delivered_(std::move(delivered)), firstSound_(std::move(firstSound)) {}
  [[nodiscard]] QStringList Names() const override { return {QStringLiteral("Paced")}; }
  void Open(std::shared_ptr<DeviceLink> link) override {
    link->SetState(DeviceLink::State::Running);
    thread_ = std::jthread([this, link = std::move(link)](const std::stop_token& stop) { Run(stop, *link); });
  }

 private:
  void Run(const std::stop_token& stop, DeviceLink& link) const {
    std::vector<float> buffer(kFrames * kChannels);
    QElapsedTimer clock;
    clock.start();
    std::mutex mutex;
    std::condition_variable_any pause;
    for (std::int64_t delivered = 0; !stop.stop_requested(); delivered += kFrames) {
      link.Deliver(buffer);
      const auto sound = std::find_if(buffer.begin(), buffer.end(), [](float sample) { return sample != 0; });
      if (sound != buffer.end() && firstSound_->load() < 0) {
        firstSound_->store(delivered + (sound - buffer.begin()) / static_cast<std::ptrdiff_t>(kChannels));
      }
      delivered_->store(delivered + static_cast<std::int64_t>(kFrames));
      const std::int64_t next =
          (delivered + static_cast<std::int64_t>(kFrames)) * 1'000'000'000 / kEngineRate;
      std::unique_lock lock(mutex);
      pause.wait_for(lock, stop,
                     std::chrono::nanoseconds(std::max<std::int64_t>(next - clock.nsecsElapsed(), 0)),
                     [] { return false; });
    }
  }

  std::shared_ptr<std::atomic<std::int64_t>> delivered_;
  std::shared_ptr<std::atomic<std::int64_t>> firstSound_;
  std::jthread thread_;
};

void MeasureThroughput(const QString& path, double seconds) {
  SimulatedEventLoop loop;
  AudioEngine engine(loop, std::make_unique<SimulatedBackend>(loop));
  std::vector<std::unique_ptr<MediaPlayer>> players;
  for (int deck = 0; deck < kDecks; ++deck) {
    players.push_back(engine.MakePlayer());
    bool open = false;
    const Job<> job = OpenInto(*players.back(), path, open);
    loop.RunUntil([&] { return open; }, 1s);
    players.back()->Play();
  }
  QElapsedTimer clock;
  clock.start();
  loop.RunFor(std::chrono::milliseconds(std::llround(seconds * 1000)));
  Report("engine.deck_x_realtime", seconds * kDecks / (static_cast<double>(clock.nsecsElapsed()) / 1e9));
}

void MeasureMix(const QString& path) {
  OutputMixer mixer(false);
  std::vector<std::unique_ptr<PlayerCore>> cores;
  for (int deck = 0; deck < kDecks; ++deck) {
    cores.push_back(std::make_unique<PlayerCore>());
    PlayerCore& core = *cores.back();
    core.voice.SetGains(0.5F, 0.5F);
    core.voice.Want(1, true);
    core.feeder.Begin(1, 0, std::make_unique<EngineSource>(OpenDecoder(path)));
    if (!mixer.Add(core)) return;
  }
  std::vector<float> buffer(PacedBackend::kFrames * kChannels);
  std::int64_t spent = 0;
  constexpr int kBuffers = 1000;
  for (int i = 0; i < kBuffers; ++i) {
    for (const auto& core : cores) core->feeder.FillNow();
    QElapsedTimer clock;
    clock.start();
    mixer.Render(buffer);
    spent += clock.nsecsElapsed();
  }
  const double seconds = static_cast<double>(kBuffers) * PacedBackend::kFrames / kEngineRate;
  Report("engine.mix_x_realtime", seconds * kDecks / (static_cast<double>(spent) / 1e9));
}

/// Dubs of crushed tracks, two full-scale ones at a time, and what the limiter makes of a tone.
void MeasureLimiter(const QString& folder) {
  OutputMixer mixer(false);
  std::vector<std::unique_ptr<PlayerCore>> cores;
  for (unsigned deck = 0; deck < 2; ++deck) {
    testing::Samples crushed = testing::Noise(44100 * 20, deck + 1);
    for (float& sample : crushed) sample = std::tanh(sample * 12);
    const QString path = folder + QStringLiteral("/crushed%1.wav").arg(deck);
    testing::Save(path, testing::WaveFile(crushed, {.coding = testing::WaveKind::Coding::Float32}));
    cores.push_back(std::make_unique<PlayerCore>());
    PlayerCore& core = *cores.back();
    core.voice.SetGains(1, 1);
    core.voice.Want(1, true);
    core.feeder.Begin(1, 0, std::make_unique<EngineSource>(OpenDecoder(path)));
    if (!mixer.Add(core)) return;
  }
  std::vector<float> buffer(PacedBackend::kFrames * kChannels);
  std::ptrdiff_t clipped = 0;
  for (int i = 0; i < 800; ++i) {
    for (const auto& core : cores) core->feeder.FillNow();
    mixer.Render(buffer);
    clipped += std::count_if(buffer.begin(), buffer.end(), [](float each) { return std::abs(each) >= 1; });
  }
  Report("engine.clipped_samples", static_cast<double>(clipped));

  testing::Samples tone = testing::Sine(1000, 4);
  for (float& sample : tone) sample *= 4;
  Limiter limiter;
  QElapsedTimer clock;
  clock.start();
  limiter.Process(tone);
  const double spent = static_cast<double>(clock.nsecsElapsed()) / 1e9;
  Report("engine.limiter_thd_db", testing::Distortion(tone, 1000, 44100));
  Report("engine.limiter_core_percent", spent / 4 * 100);
}

void MeasureAnswers(const QString& path) {
  QtEventLoop loop;
  const auto delivered = std::make_shared<std::atomic<std::int64_t>>(0);
  const auto firstSound = std::make_shared<std::atomic<std::int64_t>>(-1);
  AudioEngine engine(loop, std::make_unique<PacedBackend>(delivered, firstSound));
  const auto turn = [] { QCoreApplication::processEvents(QEventLoop::AllEvents, 1); };
  const auto runFor = [&](Nanoseconds duration) {
    const auto until = loop.Elapsed() + duration;
    while (loop.Elapsed() < until) turn();
  };
  std::vector<std::unique_ptr<MediaPlayer>> players;
  for (int deck = 0; deck < kDecks; ++deck) {
    players.push_back(engine.MakePlayer());
    bool open = false;
    const Job<> job = OpenInto(*players.back(), path, open);
    while (!open) turn();
  }
  MediaPlayer& player = *players.front();
  std::vector<double> starts;
  std::vector<double> seeks;
  for (int i = 0; i < 20; ++i) {
    player.Stop();
    runFor(60ms + std::chrono::milliseconds(i));
    player.SetCurrentPosition(5 + i);
    runFor(60ms);
    firstSound->store(-1);
    const std::int64_t from = delivered->load();
    player.Play();
    while (firstSound->load() < 0) turn();
    starts.push_back(static_cast<double>(firstSound->load() - from));

    runFor(30ms);
    QElapsedTimer clock;
    clock.start();
    const double target = 40 + 0.7 * i;
    player.SetCurrentPosition(target);
    while (player.CurrentPosition() <= target) turn();
    seeks.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
  }
  Report("engine.start_frames", Median(starts));
  Report("engine.seek_ms", Median(seeks));

  std::atomic<bool> busy{true};
  std::jthread burner([&busy] {
    volatile double value = 1;
    while (busy.load(std::memory_order_relaxed)) value = std::sqrt(value + 1);
  });
  const std::uint64_t before = engine.Underruns();
  for (const auto& each : players) {
    each->SetCurrentPosition(0);
    each->Play();
  }
  runFor(5s);
  busy.store(false);
  Report("engine.underruns", static_cast<double>(engine.Underruns() - before));
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication app(argc, argv);
  const QTemporaryDir folder;
  constexpr double kSeconds = 120;
  testing::Samples music = testing::Sine(220, kSeconds);
  const testing::Samples noise = testing::Noise(music.size() / 2);
  std::transform(music.begin(), music.end(), noise.begin(), music.begin(),
                 [](float tone, float hiss) { return tone * 0.6F + hiss * 0.2F; });
  const QString path = folder.filePath(QStringLiteral("music.mp3"));
  testing::Save(path, testing::Mp3File(music));

  MeasureThroughput(path, kSeconds);
  MeasureMix(path);
  MeasureLimiter(folder.path());
  MeasureAnswers(path);
  return 0;
}
