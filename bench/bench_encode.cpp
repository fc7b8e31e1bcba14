// How fast WAV files become MP3 files, several at once, against the `lame` tool one behind the other, and
// whether the air stays whole meanwhile.

#include "audio/AudioEngine.h"
#include "audio/TestSounds.h"
#include "audio/engine/NoDeviceBackend.h"
#include "encoding/EncodeWork.h"
#include "platform/QtEventLoop.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <optional>

using namespace kelvo;
using namespace std::chrono_literals;

namespace {

constexpr double kSeconds = 180;
constexpr int kRounds = 3;

void Report(const char* name, double value) {
  std::printf("%s: %.6g\n", name, value);
}

/// Encodes the files, each on a thread of its own.
Job<> EncodeOne(EventLoop& loop, QString source) {
  const auto work = [source] { return EncodeWork(source, EncodingPresets(), false).Do(); };
  const EncodeWork::Result result = co_await loop.Offload(EventLoop::Lane::Apart, work);
  if (result.outcome != EncodeWork::Outcome::Encoded) std::printf("%s\n", qUtf8Printable(result.why));
}

double SecondsToEncode(QtEventLoop& loop, const QStringList& sources) {
  QElapsedTimer clock;
  clock.start();
  std::vector<Job<>> jobs;
  for (const QString& each : sources) jobs.push_back(EncodeOne(loop, each));
  while (std::any_of(jobs.begin(), jobs.end(), [](const Job<>& job) { return job.Running(); }))
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  return static_cast<double>(clock.nsecsElapsed()) / 1e9;
}

/// The same presets, as the tool is told them.
double SecondsOfTool(const QStringList& sources) {
  QElapsedTimer clock;
  clock.start();
  for (const QString& each : sources) {
    QProcess tool;
    tool.start(QStringLiteral("lame"),
               {QStringLiteral("--quiet"), QStringLiteral("-V"), QStringLiteral("3"), QStringLiteral("-q"),
                QStringLiteral("3"), QStringLiteral("--nores"), each, each + QStringLiteral(".mp3")});
    tool.waitForFinished(-1);
    if (tool.exitCode() != 0) return -1;
  }
  return static_cast<double>(clock.nsecsElapsed()) / 1e9;
}

Job<> OpenAndPlay(MediaPlayer& player, QString path) {
  const OpenResult result = co_await player.Open(path);
  if (result.Ok()) player.Play();
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication app(argc, argv);
  const QTemporaryDir folder;
  testing::Samples music = testing::Sine(220, kSeconds);
  const testing::Samples noise = testing::Noise(music.size() / 2);
  std::transform(music.begin(), music.end(), noise.begin(), music.begin(),
                 [](float tone, float hiss) { return tone * 0.6F + hiss * 0.2F; });
  QStringList sources;
  for (const char* name : {"one.wav", "two.wav"}) {
    sources.append(folder.filePath(QString::fromLatin1(name)));
    testing::Save(sources.last(), testing::WaveFile(music));
  }
  QtEventLoop loop;
  AudioEngine engine(loop, std::make_unique<NoDeviceBackend>());
  const std::unique_ptr<MediaPlayer> player = engine.MakePlayer();
  const QString onAir = folder.filePath(QStringLiteral("air.mp3"));
  testing::Save(onAir, testing::Mp3File(music));
  const Job<> playing = OpenAndPlay(*player, onAir);

  // The rounds take turns, and the best of each counts: others use the machine too.
  double alone = 1e9;
  double both = 1e9;
  double tool = 1e9;
  const std::uint64_t before = engine.Underruns();
  for (int round = 0; round < kRounds; ++round) {
    alone = std::min(alone, SecondsToEncode(loop, {sources.first()}));
    both = std::min(both, SecondsToEncode(loop, sources));
    tool = std::min(tool, SecondsOfTool(sources));
  }
  Report("encode.x_realtime", kSeconds / alone);
  Report("encode.ratio_to_lame", both / tool);
  Report("encode.underruns", static_cast<double>(engine.Underruns() - before));
  return 0;
}
