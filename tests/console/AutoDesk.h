#pragma once

#include "console/Console.h"
#include "console/FaultyAudio.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "platform/SystemFacts.h"
#include "platform/Words.h"

#include <QDir>
#include <QFile>
#include <QStringList>

#include <functional>

namespace kelvo::testing {

/// Settings of automatic play, in seconds.
struct AutoSeconds {
  int jukeLag = 2;
  int preview = 15;
};

/// The joined desk of the program over a database in `folder`, in simulated time, with names for the parts
/// that automatic play works with. Tracks are added while it runs.
class AutoDesk {
 public:
  AutoDesk(const QString& folder, Prompter& prompter, std::uint64_t seed, AutoSeconds seconds = {})
      : paths(Paths::Below(folder)),
        log_(loop, prompter, folder + QStringLiteral("/kelvo.log")),
        settings_(loop, folder + QStringLiteral("/settings.ini")),
        desk(Services(prompter, seed, folder, seconds)) {
    // The machine's memory is no part of the evening.
    desk.Status().hooks.Memory = [] { return MemoryStatus(); };
    desk.Activate();
    loop.RunUntil([this] { return desk.CatalogueLoaded(); });
    transitions.AfterStart = [this, joined = transitions.AfterStart](Deck deck) {
      if (logged.size() < 100) logged.append(decks.Record(deck).Title);
      joined(deck);
    };
    decks.OnStarted = [this, joined = decks.OnStarted](Deck deck) {
      ++starts;
      joined(deck);
    };
    QObject::connect(&transitions, &Transitions::Changed, &transitions, [this] {
      const TransitionKind kind = transitions.Record().Kind;
      if (kind != TransitionKind::None) lastTransition = kind;
    });
  }

  /// A track of `seconds`, in the catalogue and on disk; `info` is its info file, none when empty.
  Mref AddTrack(const QString& name, double seconds, const QByteArray& info = {}) {
    CatalogueRow row;
    row.name = name;
    row.extension = QStringLiteral(".mp3");
    row.duration = seconds;
    const Mref track = catalogue.Append(row);
    Write(catalogue.TrackPaths(track), "sound");
    if (!info.isEmpty()) Write(InfoPath(track), info);
    audio.SetDuration(catalogue.TrackPaths(track), seconds);
    return track;
  }
  /// An info file with the given fields in lines 7 to 11.
  [[nodiscard]] static QByteArray Info(const QByteArray& playMode, const QByteArray& position,
                                       const QByteArray& speed, int startStyle, int endStyle) {
    return "~ALL CATEGORIES\r\n~ALL ARTISTS\r\n~ALL ALBUMS\r\n1999-Dec\r\n120\r\n7\r\n" + playMode + "\r\n" +
           position + "\r\n" + speed + "\r\n" + QByteArray::number(startStyle) + "\r\n" +
           QByteArray::number(endStyle) + "\r\n?\r\n0\r\n";
  }
  [[nodiscard]] QString InfoPath(Mref track) const {
    return TrackInfoPath(paths, catalogue.TrackNames[track]);
  }
  static void Write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) file.write(bytes);
  }
  void Enqueue(Mref track) {
    QueueEntry entry;
    entry.title = catalogue.TrackNames[track];
    entry.note = QStringLiteral("Play Me");
    entry.path = catalogue.TrackPaths(track);
    entry.track = track;
    queue.AppendRow(entry, Int(catalogue.TrackDurations(track)));
  }
  [[nodiscard]] FaultyPlayer& Disk(Deck deck) { return FaultyAudio::Of(decks.Player(deck)); }
  /// Its player runs and the slider lets it be heard.
  [[nodiscard]] bool Heard(Deck deck) {
    return decks.Player(deck).State() == PlayState::Playing && !transitions.FadedOut(deck);
  }
  void Run(double seconds) { loop.RunFor(Nanoseconds(static_cast<std::int64_t>(seconds * 1e9))); }

  Paths paths;
  SimulatedEventLoop loop{QDateTime(QDate(2007, 6, 1), QTime(9, 0))};
  FaultyAudio audio{loop};

 private:
  ErrorLog log_;
  SettingsStore settings_;
  Console::Services Services(Prompter& prompter, std::uint64_t seed, const QString& folder,
                             const AutoSeconds& seconds) {
    for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) QDir().mkpath(paths(slot));
    const ProgramSettings settings(settings_, QStringLiteral("Kelvo"));
    settings.Set(setting::JukeLag, seconds.jukeLag);
    settings.Set(setting::PrevSecs, seconds.preview);
    return {.loop = loop,
            .prompter = prompter,
            .audio = audio,
            .settings = settings_,
            .catalogue = catalogue,
            .paths = paths,
            .title = QStringLiteral("Kelvo"),
            .aboutLine = {},
            .programFolder = folder,
            .seed = seed};
  }

 public:
  Catalogue catalogue;
  Console desk;
  ConsoleState& state = desk.State();
  PlayQueue& queue = desk.Queue();
  ConfirmationPanel& panel = desk.Panel();
  DeckEngine& decks = desk.Decks();
  Transitions& transitions = desk.Fades();
  PressToSpeak& speak = desk.Speak();
  AutoPlay& play = desk.Automatic();
  int starts = 0;
  TransitionKind lastTransition = TransitionKind::None;
  QStringList logged;  ///< titles in the order in which they came on air
};

}  // namespace kelvo::testing
