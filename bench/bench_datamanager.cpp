#include "Measuring.h"
#include "audio/ClockAudio.h"
#include "datamanager/DataManager.h"
#include "platform/QtEventLoop.h"
#include "platform/SettingsStore.h"
#include "support/NobodyThere.h"

#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>

/// How quickly the Data Manager answers over a big catalogue on the real loop, and how long any of it keeps
/// the loop from its timers: find, filter by references, words, letters, sorting, refreshes.
namespace kelvo {
namespace {

constexpr int kRounds = 5;

CatalogueTables MakeTables(int tracks) {
  std::mt19937 random(2007);
  static constexpr const char* kSyllables[] = {"la", "ro", "min", "da", "ter", "sol",
                                               "vi", "né", "kar", "bu", "est", "ol"};
  const auto word = [&random](int syllables) {
    QString text;
    for (int each = 0; each < syllables; ++each)
      text += QString::fromUtf8(kSyllables[random() % std::size(kSyllables)]);
    text[0] = text[0].toUpper();
    return text;
  };
  CatalogueTables tables(QStringLiteral("/music"));
  for (int number = 0; number < 30; ++number)
    tables.GenreList.append(QStringLiteral("Genre %1").arg(number, 2, 10, QLatin1Char('0')));
  for (int number = 0; number < std::max(tracks / 10, 1); ++number)
    tables.ArtistList.append(word(4) + QString::number(number));
  for (int number = 0; number < tracks; ++number) {
    const QString artist = tables.ArtistList[static_cast<qsizetype>(random()) % tables.ArtistList.size()];
    CatalogueRow row;
    row.name = QStringLiteral("%1 - %2 %3 %4").arg(artist, word(3), word(2)).arg(number);
    row.extension = QStringLiteral(".mp3");
    for (int each = 0; each < 2; ++each)
      row.genres += QLatin1Char(',') + tables.GenreList[static_cast<qsizetype>(random()) % 30];
    row.artists += QLatin1Char(',') + artist;
    row.date = QStringLiteral("%1-Jul").arg(1960 + static_cast<int>(random() % 48));
    row.bpm = QString::number(70 + random() % 110);
    row.gain = number % 3 == 0 ? QStringLiteral("?") : QStringLiteral("%1,0.5").arg(number % 12);
    row.duration = static_cast<double>(120 + random() % 240);
    tables.Append(row);
  }
  return tables;
}

/// Nothing is heard.
class NoMonitor : public ManagerDesk {
 public:
  [[nodiscard]] QString WhyNoPreview() const override { return QStringLiteral("none"); }
  [[nodiscard]] QString Output() const override { return QStringLiteral("None"); }
  [[nodiscard]] int Volume() const override { return 0; }
  [[nodiscard]] int Balance() const override { return 0; }
  void TakeDevice() override {}
};

/// Types the text that is looked for.
class Typist : public testing::NobodyThere {
 public:
  QString text;
  [[nodiscard]] Job<QString> AskText(QString /*title*/, QString /*prompt*/, QString /*initial*/) override {
    co_return text;
  }
};

/// The figures of one round, in milliseconds, each the worst of its kind.
struct Figures {
  double refresh = 0;
  double find = 0;
  double filter = 0;
  double words = 0;
  double letter = 0;
  double sort = 0;
  double longestHold = 0;
};

/// Of two rounds the quieter moments: what else the machine does is not the list's.
Figures Best(const Figures& one, const Figures& other) {
  return {std::min(one.refresh, other.refresh),        std::min(one.find, other.find),
          std::min(one.filter, other.filter),          std::min(one.words, other.words),
          std::min(one.letter, other.letter),          std::min(one.sort, other.sort),
          std::min(one.longestHold, other.longestHold)};
}

Figures Round(EventLoop& loop, DataManager& manager, Typist& typist) {
  Figures worst;
  Stopwatch watch(loop);
  TrackList& list = manager.List();
  const auto atOnce = [] { return true; };
  worst.refresh = watch.Time([&] { manager.Refresh(); }, atOnce);
  for (const char* text : {"minda", "e", "né", "99999", "nothing of the kind"}) {
    typist.text = QString::fromUtf8(text);
    bool ended = false;
    typist.OnTell = [&ended](const Prompt&) { ended = true; };
    const auto found = QObject::connect(&manager.Find(), &FindText::Found, [&ended] { ended = true; });
    const double taken = watch.Time([&] { manager.Find().Press(); }, [&ended] { return ended; });
    std::printf("find \"%s\": %.2f ms\n", text, taken);
    worst.find = std::max(worst.find, taken);
    QObject::disconnect(found);
    // Other rows: the next press asks again.
    manager.Refresh();
  }
  for (int genre = 0; genre < 3; ++genre) {
    std::vector<Reference> references;
    references.push_back({ReferenceSet::Genres, manager.Tracks().GenreList[genre]});
    references.push_back({ReferenceSet::Artists, manager.Tracks().ArtistList[genre]});
    const unsigned before = list.Version();
    const auto filter = [&] { list.Filter(references); };
    const double taken = watch.Time(filter, [&] { return list.Version() != before; });
    std::printf("filter: %d rows, %.2f ms\n", list.Count(), taken);
    worst.filter = std::max(worst.filter, taken);
  }
  manager.Refresh();
  for (const char* words : {"la", "minda ro", ""}) {
    const unsigned before = list.Version();
    const auto type = [&] { list.SetWords(QString::fromUtf8(words)); };
    worst.words = std::max(worst.words, watch.Time(type, [&] { return list.Version() != before; }));
  }
  for (const char16_t letter : {u'A', u'M', u'9'}) {
    const auto jump = [&] { (void)list.LetterRow(letter); };
    worst.letter = std::max(worst.letter, watch.Time(jump, atOnce));
  }
  for (const ManagerColumn column : {ManagerColumn::Bpm, ManagerColumn::Path, ManagerColumn::FileName}) {
    const unsigned before = list.Version();
    const auto sort = [&] { list.SortBy(column); };
    worst.sort = std::max(worst.sort, watch.Time(sort, [&] { return list.Version() != before; }));
  }
  manager.References().ChooseSet(ReferenceSet::Artists);
  (void)watch.Time([] {}, [&] { return manager.References().Names()[0].tracks.has_value(); });
  worst.longestHold = watch.longestHold;
  return worst;
}

void Run(int tracks) {
  const QTemporaryDir folder;
  QtEventLoop loop;
  Typist typist;
  ClockAudio audio(loop);
  SettingsStore store(loop, folder.filePath(QStringLiteral("settings.ini")));
  Disks disks(loop);
  Catalogue catalogue;
  catalogue.Replace(MakeTables(tracks));
  TrackFilter words(catalogue);
  Job<> index = words.Extend(loop);
  while (index.Running()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  // Each round has a list of its own, not sorted yet.
  const auto round = [&] {
    DataManager manager(
        {.loop = loop,
         .disks = disks,
         .prompter = typist,
         .audio = audio,
         .catalogue = catalogue,
         .words = words,
         .paths = Paths::Below(folder.path()),
         .settings = ProgramSettings(store, QStringLiteral("Kelvo")),
         .desk = std::make_shared<NoMonitor>(),
         .changes = std::make_shared<LibraryChanges>(LibraryChanges::Services{
             .loop = loop, .prompter = typist, .catalogue = catalogue, .paths = Paths::Below(folder.path())}),
         .openTransfer = {},
         .tools = {}});
    return Round(loop, manager, typist);
  };
  Figures best = round();
  for (int each = 1; each < kRounds; ++each) best = Best(best, round());
  std::printf("datamanager.tracks: %d\n", catalogue.LastTrack());
  std::printf("datamanager.refresh_ms: %.2f\n", best.refresh);
  std::printf("datamanager.find_ms: %.2f\n", best.find);
  std::printf("datamanager.filter_ms: %.2f\n", best.filter);
  std::printf("datamanager.words_ms: %.2f\n", best.words);
  std::printf("datamanager.letter_ms: %.2f\n", best.letter);
  std::printf("datamanager.sort_ms: %.1f\n", best.sort);
  std::printf("datamanager.longest_hold_ms: %.2f\n", best.longestHold);
}

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  return kelvo::MeasureTracks(argc, argv, kelvo::Run);
}
