#pragma once

#include "console/automatic/AutoPlay.h"
#include "console/decks/ConfirmationPanel.h"
#include "console/decks/DeckEngine.h"
#include "console/FaultyAudio.h"
#include "console/queue/PlayQueue.h"
#include "console/transitions/PressToSpeak.h"
#include "console/session/SessionRecorder.h"
#include "console/transitions/Transitions.h"
#include "database/Catalogue.h"
#include "database/Paths.h"
#include "platform/Prompter.h"
#include "platform/RandomSource.h"
#include "platform/SimulatedEventLoop.h"
#include "platform/Words.h"

#include <QDir>
#include <QFile>
#include <QStringList>

#include <functional>

namespace kelvo::testing {

/// The parts of the desk that automatic play needs, joined in simulated time over a database in `folder`,
/// with a beat of one second.
class AutoDesk {
 public:
  AutoDesk(const QString& folder, Prompter& prompter, std::uint64_t seed, AutoPlaySettings settings = {})
      : paths(Paths::Below(folder)),
        random(seed),
        disks(loop),
        queue(loop, disks, prompter, catalogue, state),
        panel(loop),
        decks({loop, disks, audio, catalogue, queue, panel, state, recorder, paths, TrackDefaults(),
               DeckSettings()}),
        transitions({loop, state, decks, panel, recorder}),
        speak({loop, state, decks}),
        play({loop, disks, prompter, state, decks, queue, catalogue, random, settings, 3,
              [this](Deck deck, TransitionKind kind) { Start(deck, kind); },
              [this](int value) { fadeSpeed = value; },
              [this](const QString& title) {
                if (logged.size() < 100) logged.append(title);
              },
              nullptr, nullptr, [this] { return transitions.Starting(); },
              [this](Deck deck) { return transitions.FadedOut(deck); }}) {
    for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) QDir().mkpath(paths(slot));
    catalogue.Replace(CatalogueTables(paths(Paths::Music)));
    transitions.AfterStart = [this](Deck deck) { play.AfterStart(deck); };
    transitions.FadeSpeed = [this] { return fadeSpeed; };
    transitions.WriteLoss = [this](Deck deck, int loss) { speak.SetLevel(deck, loss); };
    beat = loop.Every(std::chrono::seconds(1), [this] { Beat(); });
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

  void Start(Deck deck, TransitionKind kind) {
    if (OnStart) OnStart(deck);
    ++starts;
    lastTransition = kind;
    transitions.StartRoutine(deck, kind);
  }
  void Beat() {
    if (lateBeats > 0) {
      --lateBeats;
      return;
    }
    play.Beat();
    // As on the desk: every second beat is left out while a fade walks.
    leftOut_ = state.TransitionActive && !leftOut_;
    if (leftOut_) return;
    timerText = play.CheckTimer().value_or(QString());
    if (state.AutoPlayOn && !state.TransitionActive) play.AutoTick();
    if (AfterBeat) AfterBeat();
  }

  struct NoRecorder : SessionRecorder {
    void RecordSessionEvent(const SessionEntry& /*entry*/) override {}
  };

  Paths paths;
  SimulatedEventLoop loop{QDateTime(QDate(2007, 6, 1), QTime(9, 0))};
  FaultyAudio audio{loop};
  Catalogue catalogue;
  ConsoleState state;
  RandomSource random;
  NoRecorder recorder;
  Disks disks;
  PlayQueue queue;
  ConfirmationPanel panel;
  DeckEngine decks;
  Transitions transitions;
  PressToSpeak speak;
  AutoPlay play;
  int fadeSpeed = 25;
  int starts = 0;
  TransitionKind lastTransition = TransitionKind::None;
  int lateBeats = 0;  ///< so many of the next beats do not come
  QStringList logged;
  QString timerText;
  std::function<void()> AfterBeat;
  std::function<void(Deck)> OnStart;  ///< automatic play calls a start routine
  Timer beat;

 private:
  bool leftOut_ = false;
};

}  // namespace kelvo::testing
