#pragma once

#include "console/automatic/AutoDecision.h"
#include "console/automatic/AutoLoader.h"
#include "console/decks/DeckEngine.h"
#include "console/desk/ConsoleState.h"
#include "console/queue/PlayQueue.h"
#include "platform/Disks.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"
#include "platform/RandomSource.h"
#include "platform/Setting.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace kelvo {

namespace setting {

/// Seconds of silence before a start in jukebox mode.
inline constexpr NumberSetting JukeLag{{kStartup, QLatin1StringView("JukeLag")}, 2, 0, kMost16};
/// Seconds that a preview plays of each track.
inline constexpr NumberSetting PrevSecs{{kStartup, QLatin1StringView("PrevSecs")}, 15, 0, kMost32};
/// The mode (kelvo::AutoMode by its place) and "RANDOM" as they were last.
inline constexpr NumberSetting AutoMode{{kConStartup, QLatin1StringView("AutoMode")}, 0, 0, 2};
inline constexpr TruthSetting AutoRandom{{kConStartup, QLatin1StringView("AutoRandom")}, false};

}  // namespace setting

/// What comes next, for the windows.
struct UpNext {
  int queueIndex = 0;  ///< the queue's row, from 1; 0 when it is no row or left to chance
  int seconds = 0;     ///< until its start
  TransitionKind transition = TransitionKind::Dub;
  QString title;  ///< empty when left to chance
};

/// Automatic play: the desk runs its two decks by itself. While one plays, the next track is brought into the
/// other; a number of seconds before the end that other one is started. It never ends by itself: what cannot
/// be played is passed over and reported. Owned by the Console, after the decks and the queue, whose hooks
/// PickPreview, CheckFadeOverride and OnPlayChanged it takes; logic thread.
class AutoPlay : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Disks& disks;
    Prompter& prompter;
    ConsoleState& state;
    DeckEngine& decks;
    PlayQueue& queue;
    const Catalogue& catalogue;
    RandomSource& random;
    ProgramSettings settings;
    int delta = 3;  ///< first value of `SldDelta`, seconds
    /// The start routine of the transitions, without questions. It calls AfterStart.
    std::function<void(Deck, TransitionKind)> StartTransition;
    std::function<void(int)> SetFadeSpeed;        ///< `SldFadeSp`, 0..50
    std::function<void(const QString&)> LogPlay;  ///< a title goes on air, for the session log
    std::function<void()> RunGroup;               ///< the group runner takes over; GroupPlayOn is set
    std::function<void()> StopGroup;              ///< the operator ends it
    std::function<bool()> Starting;               ///< a start routine is on its way
    std::function<bool(Deck)> FadedOut;           ///< the slider lets nothing be heard of the deck
  };

  explicit AutoPlay(Services services);
  ~AutoPlay() override;

  /// The start button: on when neither automatic nor group play runs, else off.
  void ToggleAutoPlay();
  /// "START" or "STOP".
  [[nodiscard]] QString StartCaption() const;

  /// `OptKelvo`, `OptJukebox`, `OptPreview`; refused while the desk plays by itself.
  void SetMode(AutoMode mode);
  [[nodiscard]] AutoMode Mode() const { return mode_; }
  /// The box "RANDOM"; read at the start, refused while the desk plays by itself.
  void SetRandom(bool ticked);
  [[nodiscard]] bool RandomTicked() const { return randomTicked_; }
  [[nodiscard]] bool RandomOn() const { return loader_.RandomOn; }

  /// `CmdRoboPause` "Pauses at end of track". Enabled while the queue plays, and while it is set.
  void TogglePauseAtEnd();
  [[nodiscard]] bool PauseAtEnd() const { return pauseAtEnd_; }
  [[nodiscard]] bool PauseEnabled() const { return WhyNoPause().isEmpty(); }
  /// Why the pause, or mode, RANDOM and timer, can't be changed now; empty when they can.
  [[nodiscard]] QString WhyNoPause() const;
  [[nodiscard]] QString WhyNoChoice() const;
  /// "> ||", and " >||" in every other second while set.
  [[nodiscard]] QString PauseCaption() const;

  /// `SldDelta`: seconds before the end; clamped to 0..32767.
  void SetDelta(int seconds);
  [[nodiscard]] int SldDelta() const { return sldDelta_; }
  [[nodiscard]] int AutoDelta() const { return now_.AutoDelta; }
  [[nodiscard]] TransitionKind AutoTransition() const { return now_.AutoTransition; }

  /// A deck was started by a transition: prepares the next one.
  void AfterStart(Deck deck);
  void ApplyTrackSettings(Deck deck);
  /// The operator has changed what a deck's track says of its own play: the next start is decided anew.
  void PlayChanged(Deck deck, const TrackPlaySettings& before);
  void CheckFadeOverride(Deck deck);
  /// Once a second while AutoPlayOn is set and no fade runs. While one runs it acts only on silence.
  void AutoTick();
  /// Once a second always, before the words are shown: what blinks changes, and silence under a fade is seen.
  void Beat();

  /// Form `FrmTimer`.
  void ArmTimer(int hour, int minute);
  void DisarmTimer();
  [[nodiscard]] const TimedStart& Timer() const { return timer_; }
  /// Once a second: starts when it is time. What the status shows while the timer is armed; none otherwise.
  std::optional<QString> CheckTimer();

  [[nodiscard]] const QString& StatusText() const { return statusText_; }
  /// The mode word: the mode, or the blinking "AUTOMATIC PLAY" while idle.
  [[nodiscard]] QString DisplayWord() const;
  /// Silence is intended: the desk pauses at a track's end, or the jukebox makes its gap.
  [[nodiscard]] bool SilencePlanned() const { return running_ && (pauseAtEnd_ || lag_.Running()); }
  /// What comes next; none when the desk doesn't play by itself or has no track.
  [[nodiscard]] std::optional<UpNext> Next() const;
  /// The alarm: nothing in the queue (or of the database, in preview) can be played.
  [[nodiscard]] bool NothingPlayable() const { return running_ && loader_.NothingPlayable(); }
  /// What was last passed over and why; empty when nothing was in this run.
  [[nodiscard]] const QString& LastSkipped() const { return lastSkipped_; }
  [[nodiscard]] int SkippedCount() const { return skippedCount_; }
  [[nodiscard]] int UsedPicks() const { return loader_.UsedPicks.Count(); }

 Q_SIGNALS:
  /// Anything that a window shows of this.
  void Changed();
  /// A track was passed over: which, and why.
  void Skipped(const QString& what);
  /// The queue's list should show this row.
  void QueuePositionShown(int index);

 private:
  /// What was seen of a deck at the last tick.
  struct Seen {
    bool playing = false;
    QString path;
    double position = 0;
    bool late = false;  ///< its disk owes data
    Nanoseconds at{0};
    Nanoseconds movedAt{0};
    int dead = 0;  ///< ticks at which it should have played and its player did not run
  };
  /// `attended`: an operator is there to answer.
  void SwitchOn(bool preview, bool attended);
  void Toggle(bool attended);
  /// Whole seconds until the deck that plays needs its successor; 0 when none plays.
  [[nodiscard]] int SecondsLeft() const;
  void SwitchOff();
  /// The next start of the program finds mode and RANDOM as they are.
  void KeepChoice() const;
  /// Until nothing that was begun before is on its way. A deck that is loaded then can be heard.
  [[nodiscard]] Job<> TakeDesk();
  [[nodiscard]] Job<> StartPreview(bool attended);
  [[nodiscard]] Job<> StartQueue();
  void StartByFade(Deck deck);
  void StartNext(Deck deck, TransitionKind transition);
  [[nodiscard]] Job<> StartAfterLag();
  void StopFadedDeckAndStartIt();
  void TakeSettings(Deck deck, const AutoSettings& settings);
  [[nodiscard]] TickDecision Decide() const;
  [[nodiscard]] bool Starting() const { return services_.Starting && services_.Starting(); }
  [[nodiscard]] bool Runs(Deck deck) const;
  void Watch(Deck deck);
  /// The deck that takes the next track; one that is done and still heard only when `soon` is enough.
  [[nodiscard]] std::optional<Deck> FreeDeck(bool soon) const;
  void LoadNext();
  [[nodiscard]] Job<> RunLoad(Deck deck);
  void ShowStatus(const TickDecision& decision);
  void TellSkipped(const QString& title, const QString& why);
  void SetStatusText(const QString& text);

  Services services_;
  AutoLoader loader_;
  AutoMode mode_ = AutoMode::Kelvo;
  bool randomTicked_ = false;
  bool running_ = false;  ///< switched on, from the queue or as a preview
  bool pauseAtEnd_ = false;
  AutoSettings now_;
  /// From what the next start was decided when the track on air began.
  struct Basis {
    Deck deck;
    std::optional<TrackPlaySettings> other;  ///< of the other deck's track; none: the track itself counts
    AutoSettings previous;
  };
  std::optional<Basis> basis_;
  int sldDelta_ = 0;
  TimedStart timer_;
  bool blink_ = false;
  bool tickBlink_ = false;
  QString statusText_;
  QString notice_;
  Nanoseconds noticeUntil_{0};
  Nanoseconds nextRound_{0};
  QString lastSkipped_;
  int skippedCount_ = 0;
  PerDeck<Seen> seen_;
  Job<> starting_;
  bool asking_ = false;  ///< a start waits for an answer
  Job<> lag_;
  Job<> loading_;
};

}  // namespace kelvo
