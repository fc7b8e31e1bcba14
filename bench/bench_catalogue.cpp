#include "audio/ClockAudio.h"
#include "database/Catalogue.h"
#include "database/CatalogueLoader.h"
#include "database/FolderListing.h"
#include "database/Paths.h"
#include "platform/ErrorLog.h"
#include "platform/QtEventLoop.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <optional>
#include <random>
#include <string>
#include <vector>

/// How long the catalogue of a big library takes to load, beside a plain loop that does no more than open,
/// read and close the same files: the two alternate in one run, so that both have the same weather.
namespace kelvo {
namespace {

constexpr int kRounds = 3;
constexpr double kMostRatio = 1.5;

double Seconds(Nanoseconds time) {
  return std::chrono::duration<double>(time).count();
}

void WriteFile(const std::string& path, const std::string& text) {
  const int handle = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (handle < 0 || write(handle, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
    throw Failure(QStringLiteral("Cannot write %1").arg(QString::fromStdString(path)));
  }
  close(handle);
}

/// Some words of some letters, the same for the same number.
std::string NameOf(std::mt19937& random, int words) {
  static constexpr std::string_view kSyllables[] = {"la", "ro", "min", "da", "ter", "sol",
                                                    "vi", "ne", "kar", "bu", "est", "ol"};
  std::string name;
  for (int word = 0; word < words; ++word) {
    if (word > 0) name += ' ';
    const std::size_t start = name.size();
    for (unsigned syllable = 0; syllable < 2 + random() % 3; ++syllable)
      name += kSyllables[random() % std::size(kSyllables)];
    name[start] = static_cast<char>(name[start] - 'a' + 'A');
  }
  return name;
}

std::vector<std::string> Names(std::mt19937& random, int count, int words) {
  std::vector<std::string> names;
  for (int number = 0; number < count; ++number)
    names.push_back(NameOf(random, words) + ' ' + std::to_string(number));
  return names;
}

/// A library of `tracks` tiny music files, each with a track info file as operators have them.
void MakeLibrary(const Paths& paths, int tracks) {
  std::mt19937 random(2007);
  const std::vector<std::string> artists = Names(random, std::max(tracks / 10, 1), 2);
  const std::vector<std::string> albums = Names(random, std::max(tracks / 8, 1), 3);
  const std::vector<std::string> genres = Names(random, 30, 1);
  static constexpr const char* kMonths[] = {"Jan", "Apr", "Jul", "Oct", "Dec"};
  const auto pick = [&random](const std::vector<std::string>& from) { return from[random() % from.size()]; };
  for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) QDir().mkpath(paths(slot));
  const std::string music = paths(Paths::Music).toStdString() + '/';
  const std::string info = paths(Paths::Info).toStdString() + '/';
  for (int number = 0; number < tracks; ++number) {
    const std::string artist = pick(artists);
    const std::string name = artist + " - " + NameOf(random, 3) + ' ' + std::to_string(number);
    const std::string text =
        "~ALL CATEGORIES," + pick(genres) + ',' + pick(genres) + "\r\n~ALL ARTISTS," + artist +
        "\r\n~ALL ALBUMS," + pick(albums) + "\r\n" + std::to_string(1960 + random() % 48) + '-' +
        kMonths[random() % std::size(kMonths)] + "\r\n" + std::to_string(70 + random() % 110) + "\r\n" +
        std::to_string(random() % 101) + "\r\n0,1,1\r\n3\r\n25\r\n1\r\n0\r\n-" +
        std::to_string(random() % 10) + ".5,1.5\r\n" + std::to_string(120 + random() % 240) + '.' +
        std::to_string(random() % 1000) + "\r\nA comment of the operator, " + NameOf(random, 12) + ".\r\n";
    WriteFile(music + name + ".mp3", "m");
    WriteFile(info + name + ".kif", text);
  }
}

/// Opens, reads to the end and closes each file; seconds.
double PlainLoop(const EventLoop& loop, const std::vector<std::string>& files) {
  std::vector<char> buffer(65536);
  std::size_t bytes = 0;
  const Nanoseconds start = loop.Elapsed();
  for (const std::string& file : files) {
    const int handle = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (handle < 0) throw Failure(QStringLiteral("Cannot open %1").arg(QString::fromStdString(file)));
    for (ssize_t got = 1; got > 0; bytes += static_cast<std::size_t>(std::max<ssize_t>(got, 0))) {
      got = read(handle, buffer.data(), buffer.size());
    }
    close(handle);
  }
  const double seconds = Seconds(loop.Elapsed() - start);
  if (bytes == 0) throw Failure(QStringLiteral("The files are empty"));
  return seconds;
}

Job<> RunLoad(CatalogueLoader& loader, std::optional<LoadOutcome>* outcome) {
  *outcome = co_await loader.Load();
  QCoreApplication::quit();
}

struct Load {
  double seconds = 0;
  double longestHold = 0;  ///< seconds
};

Load LoadOnce(EventLoop& loop, AudioSystem& audio, Catalogue& catalogue, const Paths& paths) {
  CatalogueLoader loader(loop, audio, catalogue, paths, TrackDefaults{}, QStringLiteral("Kelvo"));
  std::optional<LoadOutcome> outcome;
  Load load;
  const Nanoseconds start = loop.Elapsed();
  Nanoseconds lastBeat = start;
  const auto beat = [&] {
    load.longestHold = std::max(load.longestHold, Seconds(loop.Elapsed() - lastBeat));
    lastBeat = loop.Elapsed();
  };
  const Timer timer = loop.Every(std::chrono::milliseconds(1), beat);
  const Job<> job = RunLoad(loader, &outcome);
  QCoreApplication::exec();
  load.seconds = Seconds(loop.Elapsed() - start);
  beat();
  if (outcome != LoadOutcome::Done) throw Failure(QStringLiteral("The load failed"));
  return load;
}

double ResidentMegabytes() {
  QFile status(QStringLiteral("/proc/self/statm"));
  if (!status.open(QIODevice::ReadOnly)) return 0;
  const double pages = QString::fromLatin1(status.readAll()).section(QLatin1Char(' '), 1, 1).toDouble();
  return pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

int Run(const QCoreApplication& application) {
  QCommandLineParser arguments;
  const QCommandLineOption tracksOption(QStringLiteral("tracks"), QStringLiteral("How many tracks."),
                                        QStringLiteral("number"), QStringLiteral("100000"));
  const QCommandLineOption folderOption(
      QStringLiteral("folder"),
      QStringLiteral("Where the library lies; it is made there when missing, and kept."),
      QStringLiteral("folder"));
  arguments.addOptions({tracksOption, folderOption});
  arguments.addHelpOption();
  arguments.process(application);
  const int tracks = std::max(arguments.value(tracksOption).toInt(), 1);
  const QTemporaryDir temporary;
  const QString folder = arguments.isSet(folderOption) ? arguments.value(folderOption) : temporary.path();
  const Paths paths = Paths::Below(QDir(folder).absolutePath());
  if (!QDir(paths(Paths::Music)).exists()) MakeLibrary(paths, tracks);

  QtEventLoop loop;
  ClockAudio audio(loop);
  Catalogue catalogue;
  std::vector<std::string> files;
  for (const QString& name : ListFolder(paths(Paths::Music), EntryKind::Files).names) {
    files.push_back(TrackInfoPath(paths, name.chopped(4)).toStdString());
  }
  PlainLoop(loop, files);
  double plain = 1e9;
  Load best{1e9, 0};
  for (int round = 0; round < kRounds; ++round) {
    const double plainNow = PlainLoop(loop, files);
    const Load load = LoadOnce(loop, audio, catalogue, paths);
    std::cout << "round " << round + 1 << ": plain " << plainNow << " s, load " << load.seconds
              << " s, longest hold " << load.longestHold * 1000 << " ms\n";
    plain = std::min(plain, plainNow);
    best.seconds = std::min(best.seconds, load.seconds);
    best.longestHold = std::max(best.longestHold, load.longestHold);
  }
  std::printf("catalogue.tracks: %d\n", catalogue.LastTrack());
  std::printf("catalogue.seconds: %.3f\n", best.seconds);
  std::printf("catalogue.limit_s: %.3f\n", kMostRatio * plain);
  std::printf("catalogue.ratio: %.3f\n", best.seconds / plain);
  std::printf("catalogue.table_mb: %.1f\n", static_cast<double>(catalogue.TableBytes()) / 1e6);
  std::printf("catalogue.rss_mb: %.1f\n", ResidentMegabytes());
  std::printf("catalogue.longest_hold_ms: %.1f\n", best.longestHold * 1000);
  return 0;
}

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  try {
    return kelvo::Run(application);
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
}
