#pragma once

#include "console/decks/ConfirmationPanel.h"
#include "console/decks/DeckEngine.h"
#include "console/decks/VolumeLaw.h"
#include "console/desk/ConsoleState.h"
#include "console/session/SessionRecorder.h"
#include "console/transitions/CancelPanel.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Setting.h"

#include <QObject>
#include <QString>

#include <functional>

namespace kelvo {

/// What is known of the transition that runs, or of the last one.
struct TransitionRecord {
  bool TransitionRestart = false;  ///< asked for during a walk, or the operator grabbed the slider
  bool StartCancelled = false;     ///< "Cancel" was pressed and has not taken effect yet
  Deck TransitionDeck = Deck::One;
  TransitionKind Kind = TransitionKind::None;
  int TransitionTarget = kDeckOneAlone;  ///< the slider's end in that deck's direction
  int TransitionStartValue = 0;          ///< the slider's value when it began
  double TransitionMark = 0;             ///< session clock when it began, seconds
  PerDeck<double> DeckStartMark;         ///< session clock when a dub started the deck, seconds
};

namespace setting {

/// The weight of the slider in a pan, see VolumeLaw.
inline constexpr NumberSetting PanFadeBias{
    {kStartup, QLatin1StringView("PanFadeBias")}, 12, -kMost16, kMost16};

}  // namespace setting

/// Brings one deck in and the other out: the cross-pan slider, the law by which the levels of the decks
/// follow it, and the commands that start a transition. The walk is the slider's movement to its goal in
/// timed steps. It goes by the clock: a late wake-up takes the steps that are due, so a busy machine fades as
/// fast as an idle one. The going deck is never stopped. Owned by the Console; logic thread.
class Transitions : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    ConsoleState& state;
    DeckEngine& decks;
    ConfirmationPanel& panel;
    SessionRecorder& session;
    ProgramSettings settings;
    int fadeSpeed = 25;  ///< where the slider is at first
  };

  explicit Transitions(Services services);

  // The slider.
  [[nodiscard]] int CrossPan() const { return services_.state.CrossPan; }
  /// Moves the slider, -200..200 (clamped), and the levels with it. Nothing happens when it is there already.
  void SetCrossPan(int value);
  /// The mouse goes down on the slider: from now on the law is the plain one.
  void GrabSlider();
  void MoveSlider(int value) { SetCrossPan(value); }

  // The start buttons, F6 to F8 and F10 to F12. A dub lasts until its button is let go.
  void PressPartFade(Deck deck) { Press(deck, TransitionKind::PartFade); }
  void PressPan(Deck deck) { Press(deck, TransitionKind::Pan); }
  void PressDub(Deck deck) { Press(deck, TransitionKind::Dub); }
  void ReleaseDub(Deck deck);
  /// The operator answered "PLAY IT AGAIN". Other questions of the panel are left alone.
  void OnPanelConfirmed(const PanelQuestion& question);
  /// "Cancel": a start or a walk that is on its way ends, the slider goes back to where it was.
  void Cancel();
  /// Whether there is a start or a walk that Cancel takes back. Those of automatic and group play are not:
  /// the going deck counts as done already. A hand at the slider takes over at any time.
  [[nodiscard]] bool MayCancel() const;
  [[nodiscard]] CancelPanel& GetCancelPanel() { return cancelPanel_; }
  [[nodiscard]] const CancelPanel& GetCancelPanel() const { return cancelPanel_; }

  /// Starts the deck with the transition, without a question: for automatic and group play. A walk that runs
  /// is taken over. `kind` is Dub, PartFade or Pan.
  void StartRoutine(Deck deck, TransitionKind kind);
  /// Moves the slider to the end of `side`, step by step; a walk that runs is taken over. Starts no deck.
  void BeginTransition(Deck side, TransitionKind kind);
  /// Keys 4 and 6 of the number pad: part fade to Deck 1, pan to Deck 2. Not in automatic or group play.
  void NumberPad4() { PressNumberPad(Deck::One, TransitionKind::PartFade); }
  void NumberPad6() { PressNumberPad(Deck::Two, TransitionKind::Pan); }

  /// The desk closes: the slider stays where it is.
  void Close();

  [[nodiscard]] const TransitionRecord& Record() const { return record_; }
  [[nodiscard]] bool WalkActive() const { return services_.state.TransitionActive; }
  /// The slider lets nothing be heard of the deck, and no walk brings it in. A level that was set by hand and
  /// the operator's voice do not count.
  [[nodiscard]] bool FadedOut(Deck deck) const;
  /// A start is on its way: the deck is being heard for the first time, or the slider snaps.
  [[nodiscard]] bool Starting() const { return starts_.Running(); }
  /// While a walk runs the displays may tick at their slow pace.
  [[nodiscard]] bool TimersSlowed() const { return timersSlowed_; }
  /// While a walk runs the lists and the pan buttons are out of reach, except in preview and group play.
  [[nodiscard]] bool SectionsDisabled() const;
  /// Seconds between half steps of the walk, from the fade speed slider; at least 0.001.
  [[nodiscard]] double StepDelay() const;

  /// Position of the fade speed slider, 0..50.
  [[nodiscard]] int FadeSpeed() const { return fadeSpeed_; }
  void SetFadeSpeed(int value);
  /// The tooltip of a part fade or pan button. `fadeSpeed` is the slider's position, 0..50.
  [[nodiscard]] static QString FadeTimeTooltip(int fadeSpeed, TransitionKind kind);
  /// What the fade speed slider shows for its position, and its tooltip.
  [[nodiscard]] static int ShownFadeSpeed(int fadeSpeed) { return 51 - fadeSpeed; }
  [[nodiscard]] static QString FadeSpeedTooltip(int fadeSpeed);

  /// A deck was started: the next transition can be prepared.
  std::function<void(Deck)> AfterStart;
  /// Seconds since the session began.
  std::function<double()> SessionClock;
  /// Where the levels go, as losses 0..2000; the decks themselves when unset.
  std::function<void(Deck, int)> WriteLoss;

 Q_SIGNALS:
  void CrossPanChanged(int value);
  void FadeSpeedChanged();
  /// A walk began or ended, or its kind changed.
  void Changed();

 private:
  enum class DubButton {
    Up,
    Starting,  ///< down, the slider is on its way to the centre
    LetGo,     ///< up again before it came there
    Held,      ///< down, both decks are at full volume
  };
  void ApplyLaw();
  void Press(Deck deck, TransitionKind kind);
  void PressNumberPad(Deck side, TransitionKind kind);
  void SetKind(TransitionKind kind);
  /// How far the slider is from the end of `side`.
  [[nodiscard]] int FromEnd(Deck side) const;
  [[nodiscard]] bool WaitsForRelease() const {
    return dubs_[Deck::One] != DubButton::Up || dubs_[Deck::Two] != DubButton::Up;
  }
  [[nodiscard]] double Clock() const { return SessionClock ? SessionClock() : 0; }
  void RecordSession(SessionCode code, Deck deck, TransitionKind kind, double clock);

  // The starts.
  [[nodiscard]] Job<> RunPressed(Deck deck, TransitionKind kind);
  [[nodiscard]] Job<> RunStart(Deck deck, TransitionKind kind);
  [[nodiscard]] Job<> RunReleased(Deck deck);
  [[nodiscard]] Job<> RunTransition(Deck side, TransitionKind kind);
  [[nodiscard]] Job<> StartByKind(Deck deck, TransitionKind kind);
  [[nodiscard]] Job<> StartFade(Deck deck, TransitionKind kind);
  [[nodiscard]] Job<> StartDub(Deck deck);
  [[nodiscard]] Job<> EndDub(Deck deck);
  void ForgetCancel();

  // The slider's own moves.
  [[nodiscard]] Job<> Transition(Deck side, TransitionKind kind);
  [[nodiscard]] Job<> Snap(int to, int step);
  void PanTick();
  [[nodiscard]] Job<> RunWalk();
  void EndWalk();
  /// The deck's walk out was taken back: one that counted as done and still plays is on air.
  void PutBackOnAir(Deck deck);

  Services services_;
  int fadeSpeed_;
  int panFadeBias_;
  TransitionRecord record_;
  PerDeck<int> losses_;  ///< as the law last gave them
  CancelPanel cancelPanel_;
  PerDeck<DubButton> dubs_;
  bool timersSlowed_ = false;
  int snaps_ = 0;  ///< that run at the moment: the walk waits for them
  unsigned snapNumber_ = 0;
  Timer panTimer_;
  Job<> walk_;
  JobList starts_;
};

}  // namespace kelvo
