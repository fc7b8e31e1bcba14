// How fast the volumes of 60 demo tracks are unified with as many tool processes as there are cores, beside
// one process at a time in the same run, and whether the desk notices: while a track plays, how long the loop
// was held up, and how often the sound ran dry.

#include "audio/AudioEngine.h"
#include "database/TrackInfo.h"
#include "datamanager/VolumeUnify.h"
#include "demo_library/Library.h"
#include "platform/QtEventLoop.h"
#include "platform/SettingsStore.h"
#include "support/NobodyThere.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>

namespace kelvo {
namespace {

using namespace std::chrono_literals;

constexpr int kTracks = 60;
constexpr int kRounds = 3;

double Milliseconds(Nanoseconds time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

/// A device that asks for 1024 frames at a time at the pace of its rate, on its own thread.
class PacedBackend : public OutputBackend {
 public:
  [[nodiscard]] QStringList Names() const override { return {QStringLiteral("Paced")}; }
  void Open(std::shared_ptr<DeviceLink> link) override {
    link->SetState(DeviceLink::State::Running);
    thread_ = std::jthread([link = std::move(link)](const std::stop_token& stop) {
      std::vector<float> buffer(kFrames * kChannels);
      const auto start = std::chrono::steady_clock::now();
      std::mutex mutex;
      std::condition_variable_any pause;
      for (std::int64_t delivered = kFrames; !stop.stop_requested(); delivered += kFrames) {
        link->Deliver(buffer);
        std::unique_lock lock(mutex);
        pause.wait_until(lock, stop,
                         start + std::chrono::nanoseconds(delivered * 1'000'000'000 / kEngineRate),
                         [] { return false; });
      }
    });
  }

 private:
  static constexpr std::int64_t kFrames = 1024;
  std::jthread thread_;
};

/// A database of demo tracks, to be copied for each round.
struct Demo {
  QTemporaryDir folder;
  QStringList music;  ///< MP3 files
  QString onAir;
};

void Make(Demo& demo) {
  const QString library = demo.folder.filePath(QStringLiteral("demo"));
  demo::MakeLibrary({.folder = library, .settingsFile = {}}, [](double, const QString&) {});
  const QDir music(Paths::Below(library)(Paths::Music));
  for (const QString& name : music.entryList(QDir::Files)) {
    if (name.endsWith(QStringLiteral(".mp3"), Qt::CaseInsensitive))
      demo.music.append(music.filePath(name));
    else
      demo.onAir = music.filePath(name);
  }
}

struct Figures {
  double seconds = 0;
  double hold = 0;
  int changed = 0;
  QByteArray records;
};

Job<> Open(MediaPlayer& player, QString path) {
  (void)co_await player.Open(path);
  player.Play();
}

/// Unifies fresh copies of the tracks with so many processes at once.
Figures Round(QtEventLoop& loop, const Demo& demo, int processes) {
  const QTemporaryDir folder;
  const Paths paths = Paths::Below(folder.path());
  for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) QDir().mkpath(paths(slot));
  Catalogue catalogue;
  catalogue.Replace(CatalogueTables(paths(Paths::Music)));
  for (int track = 0; track < kTracks; ++track) {
    CatalogueRow row;
    row.name = QStringLiteral("Band - Track %1").arg(track, 2, 10, QLatin1Char('0'));
    row.extension = QStringLiteral(".mp3");
    QFile::copy(demo.music[track % demo.music.size()],
                paths(Paths::Music) + QLatin1Char('/') + row.name + row.extension);
    CreateTrackInfo(TrackInfoPath(paths, row.name), DefaultTrackInfo(row.name, 40, TrackDefaults(), {}));
    catalogue.Append(row);
  }
  testing::NobodyThere nobody;
  SettingsStore settings(loop, folder.filePath(QStringLiteral("settings.ini")));
  Disks disks(loop);
  VolumeUnify unify({.loop = loop,
                     .disks = disks,
                     .prompter = nobody,
                     .settings = ProgramSettings(settings, QStringLiteral("Kelvo")),
                     .files = std::make_shared<CatalogueGainFiles>(loop, catalogue, paths),
                     .tool = GainTool(loop, GainTool::Find(QString())),
                     .processes = processes});
  unify.List();
  while (unify.Listing()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  Figures figures;
  const Nanoseconds start = loop.Elapsed();
  Nanoseconds lastBeat = start;
  const Timer beat = loop.Every(1ms, [&] {
    figures.hold = std::max(figures.hold, Milliseconds(loop.Elapsed() - lastBeat));
    lastBeat = loop.Elapsed();
  });
  unify.Unify();
  while (unify.Running()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  figures.seconds = Milliseconds(loop.Elapsed() - start) / 1000;
  for (int row = 1; row <= catalogue.LastTrack(); ++row) {
    figures.records += catalogue.TrackGain[ToMref(row)].toUtf8() + ' ';
    figures.changed += catalogue.TrackGain[ToMref(row)].endsWith(QStringLiteral(",0.0")) ? 1 : 0;
  }
  return figures;
}

/// The longest hold of a loop that has nothing to do: what else the machine does.
double IdleHold(QtEventLoop& loop) {
  double hold = 0;
  const Nanoseconds start = loop.Elapsed();
  Nanoseconds lastBeat = start;
  const Timer beat = loop.Every(1ms, [&] {
    hold = std::max(hold, Milliseconds(loop.Elapsed() - lastBeat));
    lastBeat = loop.Elapsed();
  });
  while (loop.Elapsed() - start < 3s) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  return hold;
}

int Run() {
  QtEventLoop loop;
  Demo demo;
  Make(demo);
  AudioEngine engine(loop, std::make_unique<PacedBackend>());
  const std::unique_ptr<MediaPlayer> player = engine.MakePlayer();
  player->OnEndOfStream = [&player] {
    player->SetCurrentPosition(0);
    player->Play();
  };
  const Job<> opening = Open(*player, demo.onAir);
  while (player->State() != PlayState::Playing)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  const std::uint64_t before = engine.Underruns();
  const int cores = std::max(QThread::idealThreadCount(), 1);
  double one = 1e9;
  double all = 1e9;
  double hold = 1e9;
  bool same = true;
  for (int round = 0; round < kRounds; ++round) {
    const Figures alone = Round(loop, demo, 1);
    const Figures together = Round(loop, demo, cores);
    one = std::min(one, alone.seconds);
    all = std::min(all, together.seconds);
    hold = std::min(hold, together.hold);
    same = same && alone.records == together.records && together.changed == kTracks;
  }
  std::printf("unify.tracks: %d\n", kTracks);
  std::printf("unify.processes: %d\n", cores);
  std::printf("unify.one_process_s: %.3g\n", one);
  std::printf("unify.ratio_to_one_process: %.3g\n", all / one);
  std::printf("unify.longest_hold_ms: %.1f\n", hold);
  std::printf("unify.idle_hold_ms: %.1f\n", IdleHold(loop));
  std::printf("unify.underruns: %llu\n", static_cast<unsigned long long>(engine.Underruns() - before));
  std::printf("unify.same_records: %d\n", same ? 1 : 0);
  return same ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  return kelvo::Run();
}
