#include "audio/AudioEngine.h"
#include "audio/engine/SimulatedBackend.h"
#include "console/Console.h"
#include "platform/SettingsStore.h"
#include "support/NobodyThere.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iostream>
#include <vector>

/// Rehearses an evening of automatic play over a real library in simulated time, with the real decoders, and
/// tells when each track goes on air. With the starts of a real run beside it, it tells how far they lie
/// apart.
namespace kelvo {
namespace {

using namespace std::chrono_literals;

struct Start {
  double seconds = 0;
  QString title;
};

/// Lines of seconds, a blank and a title.
std::vector<Start> ReadStarts(const QString& path) {
  std::vector<Start> starts;
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return starts;
  for (const QByteArray& line : file.readAll().split('\n')) {
    const qsizetype blank = line.indexOf(' ');
    if (blank > 0) starts.push_back({line.left(blank).toDouble(), QString::fromUtf8(line.mid(blank + 1))});
  }
  return starts;
}

std::vector<Start> Rehearse(const QString& folder, const QString& settingsFile, double hours) {
  const QTemporaryDir scratch;
  const QString settingsCopy = scratch.filePath(QStringLiteral("settings.ini"));
  QFile::copy(settingsFile, settingsCopy);
  SimulatedEventLoop loop;
  testing::NobodyThere nobody;
  nobody.OnTell = [](const Prompt& prompt) { std::cerr << prompt.text.toStdString() << '\n'; };
  SettingsStore settings(loop, settingsCopy);
  AudioEngine audio(loop, std::make_unique<SimulatedBackend>(loop));
  Catalogue catalogue;
  Console desk({loop,
                nobody,
                audio,
                settings,
                catalogue,
                Paths::Below(folder),
                QStringLiteral("Kelvo 2007"),
                {},
                folder});
  std::vector<Start> starts;
  desk.Activate();
  if (!loop.RunUntil([&desk] { return desk.CatalogueLoaded(); }, 1h)) return starts;
  std::vector<Mref> tracks;
  for (int row = 1; row <= catalogue.LastTrack(); ++row) tracks.push_back(ToMref(row));
  const Job<> adding = desk.Queue().AddTracks(tracks);
  if (!loop.RunUntil([&adding] { return !adding.Running(); }, 1h)) return starts;
  // What a deck plays is seen each millisecond: a start is the moment in which its player begins to run.
  PerDeck<bool> playing;
  const Timer watch = loop.Every(1ms, [&] {
    for (const Deck deck : kDecks) {
      const bool plays = desk.Decks().Player(deck).State() == PlayState::Playing;
      if (plays && !playing[deck]) {
        starts.push_back(
            {std::chrono::duration<double>(loop.Elapsed()).count(), desk.Decks().Record(deck).Title});
      }
      playing[deck] = plays;
    }
  });
  desk.Automatic().ToggleAutoPlay();
  loop.RunFor(
      std::chrono::duration_cast<Nanoseconds>(std::chrono::duration<double, std::ratio<3600>>(hours)));
  return starts;
}

int Main(const QStringList& arguments) {
  QCommandLineParser parser;
  const QCommandLineOption folder("folder", "The folder that holds the media database.", "DIR");
  const QCommandLineOption settings("settings", "The settings to play with.", "FILE");
  const QCommandLineOption hours("hours", "How long.", "N", "1");
  const QCommandLineOption real("starts", "A real run's starts: lines of seconds and title.", "FILE");
  parser.addOptions({folder, settings, hours, real});
  parser.addHelpOption();
  parser.process(arguments);

  const auto began = std::chrono::steady_clock::now();
  const std::vector<Start> starts =
      Rehearse(parser.value(folder), parser.value(settings), parser.value(hours).toDouble());
  const double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
  if (starts.empty()) {
    std::cerr << "Nothing was played.\n";
    return 1;
  }
  const std::vector<Start> heard = ReadStarts(parser.value(real));
  double largest = 0;
  std::size_t same = 0;
  const std::size_t common = std::min(starts.size(), heard.size());
  for (std::size_t each = 0; each < starts.size(); ++each) {
    const double at = starts[each].seconds - starts[0].seconds;
    std::cout << at << ' ' << starts[each].title.toStdString();
    if (each < common) {
      const double off = heard[each].seconds - heard[0].seconds - at;
      largest = std::max(largest, std::abs(off));
      same += heard[each].title == starts[each].title ? 1 : 0;
      std::cout << "  " << off;
    }
    std::cout << '\n';
  }
  std::cout << "rehearsal.starts: " << starts.size() << '\n';
  std::cout << "rehearsal.sim_s_per_s: " << parser.value(hours).toDouble() * 3600 / took << '\n';
  if (common > 0) {
    std::cout << "rehearsal.compared: " << common << '\n';
    std::cout << "rehearsal.other_track: " << common - same << '\n';
    std::cout << "rehearsal.largest_deviation_s: " << largest << '\n';
  }
  return 0;
}

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  return kelvo::Main(QCoreApplication::arguments());
}
