#include "Measuring.h"
#include "console/desk/ConsoleState.h"
#include "console/queue/PlayQueue.h"
#include "platform/QtEventLoop.h"
#include "platform/SettingsStore.h"
#include "playlists/PlaylistGenerator.h"
#include "support/NobodyThere.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <random>

/// How quickly a list is generated of a big catalogue on the real loop and fitted to a time, how near to that
/// it comes, and how long either keeps the loop from its timers; and the queue when it takes many rows.
namespace kelvo {
namespace {

constexpr int kRounds = 3;
constexpr int kQueueRows = 10000;

CatalogueTables MakeTables(int tracks) {
  std::mt19937 random(2007);
  const auto number = [&random](int below) {
    return static_cast<int>(random() % static_cast<unsigned>(below));
  };
  CatalogueTables tables(QStringLiteral("/music"));
  for (int genre = 0; genre < 30; ++genre) tables.GenreList.append(QStringLiteral("Genre %1").arg(genre));
  const int artists = std::max(tracks / 10, 1);
  for (int track = 0; track < tracks; ++track) {
    const QString artist = QStringLiteral("Artist %1").arg(number(artists));
    CatalogueRow row;
    row.name = QStringLiteral("%1 - Title %2").arg(artist).arg(number(tracks));
    row.extension = QStringLiteral(".mp3");
    for (int genre = 0; genre < 3; ++genre)
      row.genres += QLatin1Char(',') + tables.GenreList[number(static_cast<int>(tables.GenreList.size()))];
    row.artists += QLatin1Char(',') + artist;
    row.bpm = QString::number(70 + number(110));
    row.duration = 120 + number(240);
    tables.Append(row);
  }
  return tables;
}

/// The rows of a queue, as a playlist would bring them.
QueueFill MakeFill(const Catalogue& catalogue) {
  QueueFill fill{.name = QStringLiteral("Big"), .folder = {}, .group = false, .clearFirst = true, .rows = {}};
  for (int row = 1; row <= std::min(kQueueRows, catalogue.LastTrack()); ++row) {
    const Mref track = ToMref(row);
    fill.rows.push_back(
        {track, catalogue.TrackNames[track], catalogue.TrackPaths(track), QStringLiteral("Std")});
  }
  return fill;
}

class QueueOfNobody final : public PlaylistQueue {
 public:
  [[nodiscard]] int Count() const override { return 0; }
  [[nodiscard]] QString Name() const override { return {}; }
  [[nodiscard]] bool HoldsGroup() const override { return false; }
  [[nodiscard]] bool Closed() const override { return false; }
  [[nodiscard]] bool Holds(Mref) const override { return false; }
  [[nodiscard]] std::vector<Row> Rows() const override { return {}; }
  [[nodiscard]] QString GroupQuestion(const QString&) const override { return {}; }
  void SetName(const QString&) override {}
  void Take(const Load&) override {}
};

struct Figures {
  double seconds = 0;
  double missSeconds = 0;
  double holdMilliseconds = 0;
};

/// The list of all genres and its fit to `wanted` seconds.
Figures Round(EventLoop& loop, PlaylistGenerator& generator, int wanted) {
  GeneratorWishes wishes = generator.Wishes();
  wishes.seconds = wanted;
  generator.SetWishes(wishes);
  Figures figures;
  const Nanoseconds start = loop.Elapsed();
  Nanoseconds lastBeat = start;
  const auto note = [&] {
    figures.holdMilliseconds = std::max(figures.holdMilliseconds, Milliseconds(loop.Elapsed() - lastBeat));
    lastBeat = loop.Elapsed();
  };
  const Timer beat = loop.Every(std::chrono::milliseconds(1), note);
  const auto wait = [&generator] {
    while (generator.Busy()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  };
  generator.Generate();
  wait();
  generator.Fit();
  wait();
  figures.seconds = Milliseconds(loop.Elapsed() - start) / 1000;
  note();
  qint64 total = 0;
  qint64 broken = 0;
  for (const SequenceRow& row : generator.Sequence().All()) {
    total += row.seconds;
    broken += row.pick.BreaksRule() ? 1 : 0;
  }
  figures.missSeconds = static_cast<double>(std::abs(total - wanted));
  std::printf("%d s wanted: %d tracks, %lld rules broken, %.3f s, hold %.1f ms\n", wanted,
              generator.Sequence().Count(), static_cast<long long>(broken), figures.seconds,
              figures.holdMilliseconds);
  return figures;
}

void Run(int tracks) {
  const QTemporaryDir folder;
  QtEventLoop loop;
  testing::NobodyThere nobody;
  SettingsStore store(loop, folder.filePath(QStringLiteral("settings.ini")));
  Catalogue catalogue;
  catalogue.Replace(MakeTables(tracks));
  Disks disks(loop);
  PlaylistServices playlists{.loop = loop,
                             .disks = disks,
                             .prompter = nobody,
                             .catalogue = catalogue,
                             .paths = {},
                             .settings = ProgramSettings(store, QStringLiteral("Kelvo")),
                             .queue = std::make_shared<QueueOfNobody>()};
  PlaylistGenerator generator({.playlists = playlists, .played = {}, .random = RandomSource(1)});
  std::vector<int> genres(static_cast<std::size_t>(generator.Genres().Count()));
  for (std::size_t genre = 0; genre < genres.size(); ++genre) genres[genre] = static_cast<int>(genre);
  generator.Choose(genres);

  // Of each kind of list the quietest round: what else the machine does is not the generator's.
  Figures worst;
  for (const int wanted : {3600, 4 * 3600 + 7, 23 * 3600 + 59}) {
    Figures best{1e9, 0, 1e9};
    for (int round = 0; round < kRounds; ++round) {
      const Figures now = Round(loop, generator, wanted);
      best.seconds = std::min(best.seconds, now.seconds);
      best.holdMilliseconds = std::min(best.holdMilliseconds, now.holdMilliseconds);
      best.missSeconds = std::max(best.missSeconds, now.missSeconds);
    }
    worst.seconds = std::max(worst.seconds, best.seconds);
    worst.missSeconds = std::max(worst.missSeconds, best.missSeconds);
    worst.holdMilliseconds = std::max(worst.holdMilliseconds, best.holdMilliseconds);
  }

  ConsoleState state;
  PlayQueue queue(loop, disks, nobody, catalogue, state);
  const QueueFill fill = MakeFill(catalogue);
  const auto take = [&] {
    double quietest = std::numeric_limits<double>::max();
    for (int round = 0; round < kRounds; ++round) {
      const Nanoseconds start = loop.Elapsed();
      queue.Take(fill);
      quietest = std::min(quietest, Milliseconds(loop.Elapsed() - start));
    }
    return quietest;
  };
  const double plain = take();
  queue.SortBy(BpmColumn);
  const double sorted = take();
  const Nanoseconds start = loop.Elapsed();
  queue.Undo();
  std::printf("queue.undo_ms: %.1f\n", Milliseconds(loop.Elapsed() - start));
  std::printf("queue.rows: %d\n", queue.Count());
  std::printf("queue.take_ms: %.1f\n", plain);
  std::printf("queue.sorted_take_ms: %.1f\n", sorted);
  std::printf("generator.tracks: %d\n", catalogue.LastTrack());
  std::printf("generator.rows: %d\n", generator.List().Count());
  std::printf("generator.seconds: %.3f\n", worst.seconds);
  std::printf("generator.miss_s: %.0f\n", worst.missSeconds);
  std::printf("generator.hold_ms: %.1f\n", worst.holdMilliseconds);
}

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  return kelvo::MeasureTracks(argc, argv, kelvo::Run);
}
