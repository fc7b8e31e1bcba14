// How fast a queue is rendered: ten minutes of a mix of tracks at 48 kHz, beside ffmpeg, which decodes,
// converts, crossfades and writes the same in the same run.

#include "audio/TestSounds.h"
#include "platform/ChildProcess.h"
#include "render/RenderRun.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

using namespace kelvo;

namespace {

constexpr int kTracks = 12;
constexpr int kTrackSeconds = 60;
constexpr int kRate = 48000;
constexpr int kRounds = 3;

struct Library {
  QTemporaryDir folder;
  Paths paths = Paths::Below(folder.path());
  QStringList files;
};

/// Each track starts and ends softly, so the desk crossfades from one to the next.
void Make(Library& library) {
  for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) QDir().mkpath(library.paths(slot));
  testing::WaveKind kind;
  kind.rate = kRate;
  for (int track = 0; track < kTracks; ++track) {
    const QString name = QStringLiteral("Band - Track %1").arg(track, 2, 10, QLatin1Char('0'));
    library.files.append(library.paths(Paths::Music) + QLatin1Char('/') + name + QStringLiteral(".wav"));
    const auto seed = static_cast<std::uint32_t>(track + 1);
    testing::Save(library.files.back(),
                  testing::WaveFile(testing::Noise(std::size_t{kRate} * kTrackSeconds, seed), kind));
    testing::Save(
        TrackInfoPath(library.paths, name),
        "~ALL CATEGORIES\r\n~ALL ARTISTS\r\n~ALL ALBUMS\r\n1999-Dec\r\n120\r\n7\r\n0\r\n3\r\n25\r\n0\r\n"
        "0\r\n?\r\n" +
            QByteArray::number(kTrackSeconds) + "\r\n");
  }
}

RenderResult Render(const Library& library, const QString& path) {
  RenderOrder order{.desk = {.title = QStringLiteral("Kelvo"),
                             .settings = {},
                             .paths = library.paths,
                             .programFolder = library.folder.path(),
                             .start = QDateTime(QDate(2007, 6, 1), QTime(20, 0))},
                    .fill =
                        [&library](RenderDesk& desk) {
                          desk.Tracks().Replace(CatalogueTables(library.paths(Paths::Music)));
                          QueueFill fill{.clearFirst = true, .rows = {}};
                          for (const QString& file : library.files) {
                            CatalogueRow row;
                            row.name = QFileInfo(file).completeBaseName();
                            row.extension = QStringLiteral(".wav");
                            row.duration = kTrackSeconds;
                            const Mref track = desk.Tracks().Append(row);
                            fill.rows.push_back({track, row.name, file, {}, {}});
                          }
                          desk.Desk().ActivateLoaded();
                          desk.Desk().Queue().Take(fill);
                          return QString();
                        },
                    .path = path,
                    .replace = true};
  RenderRun run(std::move(order));
  run.Run();
  return run.Result();
}

/// Joins all tracks, each faded into the next for so many seconds. The best of the rounds, in seconds; below
/// 0 when there is no such program.
double FfmpegSeconds(const Library& library, double overlap, const QString& path) {
  QStringList arguments{QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y")};
  QString filter;
  for (int track = 0; track < kTracks; ++track) {
    arguments << QStringLiteral("-i") << library.files[track];
    filter += QStringLiteral("[%1]aresample=44100[r%1];").arg(track);
  }
  QString last = QStringLiteral("r0");
  for (int track = 1; track < kTracks; ++track) {
    filter += QStringLiteral("[%1][r%2]acrossfade=d=%3[x%2];").arg(last).arg(track).arg(overlap);
    last = QStringLiteral("x%1").arg(track);
  }
  filter.chop(1);
  arguments << QStringLiteral("-filter_complex") << filter << QStringLiteral("-map")
            << QLatin1Char('[') + last + QLatin1Char(']') << QStringLiteral("-c:a")
            << QStringLiteral("pcm_s24le") << path;
  SimulatedEventLoop loop;
  double best = -1;
  for (int round = 0; round < kRounds; ++round) {
    ChildCommand command;
    command.program = QStringLiteral("ffmpeg");
    command.arguments = arguments;
    QElapsedTimer clock;
    clock.start();
    Job<ChildResult> child = RunChild(loop, std::move(command));
    loop.RunUntil([&child] { return !child.Running(); });
    const double took = static_cast<double>(clock.nsecsElapsed()) / 1e9;
    if (QFileInfo(path).size() == 0) return -1;
    best = best < 0 ? took : std::min(best, took);
  }
  return best;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  Library library;
  Make(library);
  double best = -1;
  RenderResult result;
  for (int round = 0; round < kRounds; ++round) {
    QElapsedTimer clock;
    clock.start();
    result = Render(library, library.folder.filePath(QStringLiteral("mix.wav")));
    const double took = static_cast<double>(clock.nsecsElapsed()) / 1e9;
    best = best < 0 ? took : std::min(best, took);
    if (result.end == RenderResult::End::Done) continue;
    std::fprintf(stderr, "%s\n", qPrintable(result.error));
    return EXIT_FAILURE;
  }
  const double overlap = (kTracks * kTrackSeconds - result.seconds) / (kTracks - 1);
  const double ffmpeg = FfmpegSeconds(library, overlap, library.folder.filePath(QStringLiteral("other.wav")));
  std::printf("render.titles: %d\n", result.titles);
  std::printf("render.seconds: %.6g\n", result.seconds);
  std::printf("render.overlap_s: %.6g\n", overlap);
  std::printf("render.x_realtime: %.6g\n", result.seconds / best);
  std::printf("render.ratio_to_ffmpeg: %.6g\n", ffmpeg / best);
  return ffmpeg > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
