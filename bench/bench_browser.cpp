#include "Measuring.h"
#include "console/browser/LibraryBrowser.h"
#include "datamanager/TrackSearch.h"
#include "platform/QtEventLoop.h"
#include "support/NobodyThere.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

/// How quickly the library's browser answers over a big catalogue on the real loop: clicks on names, words
/// typed into the filter box, sorting, the search, tracks that are removed; and how long any of them keeps
/// the loop from its timers.
namespace kelvo {
namespace {

constexpr int kRounds = 3;

/// Some words of some letters, the same for the same number.
QString NameOf(std::mt19937& random, int words) {
  static constexpr const char* kSyllables[] = {"la", "ro", "min", "da", "ter", "sol",
                                               "vi", "né", "kar", "bu", "est", "ol"};
  QStringList parts;
  for (int word = 0; word < words; ++word) {
    QString part;
    for (unsigned syllable = 0; syllable < 2 + random() % 3; ++syllable)
      part += QString::fromUtf8(kSyllables[random() % std::size(kSyllables)]);
    part[0] = part[0].toUpper();
    parts.append(part);
  }
  return parts.join(QLatin1Char(' '));
}

CatalogueTables MakeTables(int tracks) {
  std::mt19937 random(2007);
  const auto names = [&random](int count, int words) {
    QStringList list;
    for (int number = 0; number < count; ++number)
      list.append(QStringLiteral("%1 %2").arg(NameOf(random, words)).arg(number));
    return list;
  };
  const auto pick = [&random](const QStringList& from) {
    return from[static_cast<qsizetype>(random()) % from.size()];
  };
  CatalogueTables tables(QStringLiteral("/music"));
  tables.ArtistList = names(std::max(tracks / 10, 1), 2);
  tables.AlbumList = names(std::max(tracks / 8, 1), 3);
  tables.GenreList = names(30, 1);
  const QStringList genres = tables.GenreList;
  tables.GenreList.append(QStringLiteral("Party"));
  for (int number = 0; number < tracks; ++number) {
    const QString artist = pick(tables.ArtistList);
    CatalogueRow row;
    row.name = QStringLiteral("%1 - %2 %3").arg(artist, NameOf(random, 3)).arg(number);
    row.extension = QStringLiteral(".mp3");
    row.genres += QLatin1Char(',') + pick(genres) + QLatin1Char(',') + pick(genres) +
                  (number % 2 == 0 ? QStringLiteral(",Party") : QString());
    row.artists += QLatin1Char(',') + artist;
    row.albums += QLatin1Char(',') + pick(tables.AlbumList);
    row.date = QStringLiteral("%1-Jul").arg(1960 + static_cast<int>(random() % 48));
    row.bpm = QString::number(70 + random() % 110);
    row.duration = static_cast<double>(120 + random() % 240);
    tables.Append(row);
  }
  return tables;
}

/// The figures of one round, in milliseconds, each the worst of its kind.
struct Figures {
  double genre = 0;
  double artist = 0;
  double allArtists = 0;
  double typing = 0;
  double sorting = 0;
  double longestHold = 0;
  double searching = 0;
};

/// Of two rounds the quieter moments: what else the machine does is not the browser's.
Figures Best(const Figures& one, const Figures& other) {
  return {std::min(one.genre, other.genre),           std::min(one.artist, other.artist),
          std::min(one.allArtists, other.allArtists), std::min(one.typing, other.typing),
          std::min(one.sorting, other.sorting),       std::min(one.longestHold, other.longestHold),
          std::min(one.searching, other.searching)};
}

Figures Round(EventLoop& loop, LibraryBrowser& browser, TrackSearch& search) {
  Figures worst;
  Stopwatch watch(loop);
  const auto listed = [&] { return !browser.Listing(); };
  const auto atOnce = [] { return true; };
  for (int row = 0; row < browser.Count(Stage::Genre); ++row) {
    worst.genre = std::max(worst.genre, watch.Time([&] { browser.PressName(Stage::Genre, row); }, listed));
  }
  std::printf("last genre: %d tracks, %d artists\n", browser.ListedCount(), browser.Count(Stage::Artist));
  worst.artist = watch.Time([&] { browser.PressName(Stage::Artist, 7); }, listed);
  worst.allArtists = watch.Time([&] { browser.ShowAllArtists(); }, atOnce);
  for (const char* words : {"e", "la", "min", "ne kar", "solvi", "ter la 7", "99999", "zz", "la e o"}) {
    const auto type = [&] { browser.SetWords(QString::fromUtf8(words)); };
    const double taken = watch.Time(type, [&] { return !browser.FindingWords(); });
    std::printf("typed \"%s\": %zu tracks, %.2f ms\n", words, browser.Rows().size(), taken);
    worst.typing = std::max(worst.typing, taken);
  }
  for (const LibraryColumn column : {LibraryColumn::Track, LibraryColumn::Date, LibraryColumn::Bpm}) {
    bool sorted = false;
    const auto done = QObject::connect(&browser, &LibraryBrowser::RowsSorted, [&] { sorted = true; });
    const auto sort = [&] { browser.SortBy(column); };
    worst.sorting = std::max(worst.sorting, watch.Time(sort, [&] { return sorted; }));
    QObject::disconnect(done);
  }
  browser.SetWords({});
  worst.longestHold = watch.longestHold;
  for (const auto field : {SearchQuestion::Field::Title, SearchQuestion::Field::Genre}) {
    SearchQuestion question;
    question.field = field;
    question.text = QStringLiteral("la");
    const auto ended = [&] { return !search.Running(); };
    worst.searching = std::max(worst.searching, watch.Time([&] { search.Search(question); }, ended));
  }
  return worst;
}

/// The median of removals of a track in the middle, in milliseconds, with a long sorted list open.
double Removal(EventLoop& loop, Catalogue& catalogue, LibraryBrowser& browser) {
  constexpr int kRemovals = 20;
  browser.PressName(Stage::Genre, browser.Count(Stage::Genre) - 1);
  while (browser.Listing()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  std::vector<double> times;
  for (int removal = 0; removal < kRemovals; ++removal) {
    const Nanoseconds start = loop.Elapsed();
    catalogue.Remove(ToMref(catalogue.LastTrack() / 2));
    times.push_back(Milliseconds(loop.Elapsed() - start));
  }
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

void Run(int tracks) {
  QtEventLoop loop;
  testing::NobodyThere nobody;
  ConsoleState state;
  Catalogue catalogue;
  TrackFilter filter(catalogue);
  Disks disks(loop);
  PlayQueue queue(loop, disks, nobody, catalogue, state);
  LibraryBrowser browser(loop, catalogue, filter, queue, state);
  TrackSearch search({loop, nobody, catalogue});
  catalogue.Replace(MakeTables(tracks));
  while (browser.TakingIn()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);

  Figures best = Round(loop, browser, search);
  for (int round = 1; round < kRounds; ++round) best = Best(best, Round(loop, browser, search));
  std::printf("browser.tracks: %d\n", catalogue.LastTrack());
  std::printf("browser.genre_ms: %.1f\n", best.genre);
  std::printf("browser.artist_ms: %.1f\n", best.artist);
  std::printf("browser.all_artists_ms: %.2f\n", best.allArtists);
  std::printf("browser.sort_ms: %.1f\n", best.sorting);
  std::printf("browser.longest_hold_ms: %.1f\n", best.longestHold);
  std::printf("browser.typeahead_ms: %.2f\n", best.typing);
  std::printf("search.ms: %.1f\n", best.searching);
  std::printf("catalogue.remove_ms: %.2f\n", Removal(loop, catalogue, browser));
}

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  return kelvo::MeasureTracks(argc, argv, kelvo::Run);
}
