#pragma once

#include "audio/MediaPlayer.h"
#include "console/decks/ConfirmationPanel.h"
#include "console/decks/DeckEngine.h"
#include "console/desk/ConsoleState.h"
#include "console/queue/PlayQueue.h"
#include "console/status/AirWatch.h"
#include "console/status/DeskStatus.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Setting.h"
#include "platform/SystemFacts.h"

#include <QObject>

#include <functional>
#include <optional>

namespace kelvo {

namespace setting {

/// Whether a sound warns of a deck that runs out, and which; an empty path stands for the program's own.
inline constexpr SwitchSetting AudioWarnings{{kStartup, QLatin1StringView("AudioWarnings")}, false};
inline constexpr TextSetting AudioWarningFilePath{{kStartup, QLatin1StringView("AudioWarningFilePath")}};

}  // namespace setting

/// The desk's beat of one second: deck indicators and status line, queue length, memory, window title,
/// session time, clock, idle state, the warning before silence, mode word, and at its end the turn of
/// automatic play; always in this order, each step by itself, so that a failing one is logged and holds up
/// none of the others. During a fade every second beat is left out. What it finds it keeps as a
/// DeskStatus, for windows to show. Owned by the Console, runs from the end of the catalogue load to the
/// close; logic thread.
class StatusTick : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    const ConsoleState& state;
    DeckEngine& decks;
    PlayQueue& queue;
    const ConfirmationPanel& panel;
    MediaPlayer& warningPlayer;  ///< `MediaPlayer4`
    QString title;
    QString version;
    QString aboutLine;
    QDateTime sessionStart;
  };

  explicit StatusTick(Services services);

  /// The first beat comes one second from now.
  void Start();
  void Stop();
  /// One beat, now.
  void Tick();

  [[nodiscard]] const DeskStatus& Status() const { return status_; }
  /// Why the desk is not idle at this moment, in words for the operator; empty when it is. DeskStatus tells of
  /// the last beat.
  [[nodiscard]] QString WhyBusy() const;

  /// The sound that warns of a deck that runs out: played again and again while that is so.
  void SetAudioWarning(bool on, const QString& filePath);

  /// A deck was started by hand or by the desk: from now on silence is reported, unless it is planned.
  void ExpectSound() { air_.Expect(services_.loop.Elapsed()); }
  /// The operator wants the silence that there is.
  void AcceptSilence();
  void SetSilentDisks(const QStringList& names);
  /// The sound device of the programme is lost, or back.
  void SetNoDevice(bool lost);

  /// What the other parts of the desk answer and do. All may be empty: then nothing fades, rips, or plays by
  /// itself.
  struct Hooks {
    std::function<bool()> WalkRuns;  ///< a fade runs: half the beats are left out
    /// Each second, before the beat and also when that is left out: for what must not wait for a fade or a
    /// rip.
    std::function<void()> EverySecond;
    std::function<AirFacts()> Air;         ///< asked each second, never left out
    std::function<bool()> RipRuns;         ///< a CD is ripped: the whole beat is left out
    std::function<MemoryStatus()> Memory;  ///< ReadMemoryStatus at first
    std::function<QString()> StatusLine;   ///< the line at the foot of the desk
    std::function<void(const QString&)> SetStatusLine;
    std::function<GroupRun()> Group;         ///< while GroupPlayOn is set
    std::function<void()> BlinkFilterWords;  ///< the browser shows or hides its "FILTERED LIST"
    /// The name of the session, in the title and for the idle state; the queue's name at first.
    std::function<QString()> SessionName;
    /// Checks the timed start, and gives the words for the title while it is armed.
    std::function<std::optional<QString>()> TimedStart;
    std::function<bool()> JinglePlays;   ///< the jingle player plays
    std::function<bool()> JingleActive;  ///< a jingle is begun, whether it sounds or not
    std::function<bool()> MonitorShown;
    std::function<QString()> Mode;  ///< the mode word while the desk plays by itself
    std::function<QString()>
        PauseCaption;                ///< of the pause button, asked once a beat while it plays by itself
    std::function<void()> AutoTick;  ///< automatic play is on and no fade runs
  };
  Hooks hooks;

 Q_SIGNALS:
  /// The status is new.
  void Ticked();

 private:
  void Beat();
  void WatchAir();
  void ShowDecks();
  void ShowIndicator(Deck deck);
  [[nodiscard]] bool Heard(Deck deck) const;
  void ShowMemoryAndTitle();
  void ShowQueue();
  void ShowCaution();
  void BlinkQueue();
  void ShowTime();
  void ShowIdle();
  void Warn();
  [[nodiscard]] bool RunsOut(Deck deck) const;
  [[nodiscard]] Job<> SoundWarning();
  void ShowMode();
  void RunAutoTick();
  [[nodiscard]] bool AnyDeck(DeckState state) const;
  [[nodiscard]] QString SessionName() const;

  Services services_;
  DeskStatus status_;
  AirWatch air_;
  Timer timer_;
  bool leftOut_ = false;
  QString playingLine_;
  bool audioWarningsOn_ = false;
  QString audioWarningFilePath_;
  bool warningDue_ = false;
  QString lastWarningError_;
  Job<> warning_;
};

}  // namespace kelvo
