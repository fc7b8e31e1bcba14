#include "console/transitions/Transitions.h"

#include "platform/ErrorLog.h"

#include <QScopeGuard>

#include <algorithm>
#include <cmath>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kPanTimer = 250ms;
constexpr Nanoseconds kSnapStep = 1ms;
constexpr int kPanStep = 3;
/// The slider's place when the walk of a part fade begins, on the coming deck's side.
constexpr int kPartFadeStart = 50;
/// More steps than any walk of the slider has: the most that are due after the machine slept.
constexpr std::int64_t kMostSteps = kDeckTwoAlone - kDeckOneAlone;

constexpr int EndOf(Deck side) {
  return side == Deck::One ? kDeckOneAlone : kDeckTwoAlone;
}
constexpr int Toward(Deck side) {
  return side == Deck::One ? -1 : 1;
}

}  // namespace

Transitions::Transitions(Services services)
    : services_(std::move(services)),
      fadeSpeed_(services_.fadeSpeed),
      panFadeBias_(services_.settings.Get(setting::PanFadeBias)),
      cancelPanel_(services_.loop) {
  services_.settings.Listen(setting::PanFadeBias, this, [this](int bias) { panFadeBias_ = bias; });
}

void Transitions::SetCrossPan(int value) {
  const int held = std::clamp(value, kDeckOneAlone, kDeckTwoAlone);
  if (held == services_.state.CrossPan) return;
  services_.state.CrossPan = held;
  ApplyLaw();
  Q_EMIT CrossPanChanged(held);
}

void Transitions::ApplyLaw() {
  const DeckLosses losses =
      VolumeLaw({services_.state.CrossPan, record_.Kind, record_.TransitionDeck, panFadeBias_});
  const auto write = [this](Deck deck, int loss) {
    losses_[deck] = loss;
    if (WriteLoss) {
      WriteLoss(deck, loss);
    } else {
      services_.decks.SetLoss(deck, loss);
    }
  };
  write(Deck::Two, losses.right);
  write(Deck::One, losses.left);
}

bool Transitions::FadedOut(Deck deck) const {
  return losses_[deck] >= kMostLoss && !(WalkActive() && record_.TransitionDeck == deck);
}

void Transitions::GrabSlider() {
  record_.TransitionRestart = true;
  SetKind(TransitionKind::None);
}

void Transitions::SetKind(TransitionKind kind) {
  if (std::exchange(record_.Kind, kind) != kind) Q_EMIT Changed();
}

bool Transitions::SectionsDisabled() const {
  const ConsoleState& state = services_.state;
  return state.TransitionActive && !state.PreviewOn && !state.GroupPlayOn;
}

double Transitions::StepDelay() const {
  return std::max(fadeSpeed_, 1) / 1000.0;
}

void Transitions::SetFadeSpeed(int value) {
  fadeSpeed_ = std::clamp(value, 0, 50);
  Q_EMIT FadeSpeedChanged();
}

QString Transitions::FadeTimeTooltip(int fadeSpeed, TransitionKind kind) {
  const int steps = kind == TransitionKind::PartFade ? 166 / 3 : 333 / 3;
  const int seconds = static_cast<int>(fadeSpeed * 0.0034 * steps);
  return QStringLiteral("Fade Time Approx ") + QString::number(seconds) + QStringLiteral(" Second/s");
}

QString Transitions::FadeSpeedTooltip(int fadeSpeed) {
  return QStringLiteral("Fade Speed = ") + QString::number(ShownFadeSpeed(fadeSpeed));
}

int Transitions::FromEnd(Deck side) const {
  return std::abs(CrossPan() - EndOf(side));
}

void Transitions::RecordSession(SessionCode code, Deck deck, TransitionKind kind, double clock) {
  SessionEntry entry{code, deck, services_.decks.Record(deck).CatalogueIndex};
  entry.time = clock;
  entry.fadeType = kind;
  services_.session.RecordSessionEvent(entry);
}

Job<> Transitions::Transition(Deck side, TransitionKind kind) {
  ConsoleState& state = services_.state;
  record_.TransitionRestart = state.TransitionActive;
  // So that a cancel before the first step leaves the slider alone, wherever the last transition began.
  if (!state.TransitionActive) record_.TransitionStartValue = CrossPan();
  record_.TransitionMark = Clock();
  co_await services_.loop.Yield();
  if (record_.StartCancelled) {
    SetCrossPan(record_.TransitionStartValue);
    if (state.TransitionActive) EndWalk();
    co_await services_.loop.Yield();
    co_return;
  }
  record_.TransitionStartValue = CrossPan();
  record_.TransitionDeck = side;
  record_.TransitionTarget = EndOf(side);
  if (kind == TransitionKind::PartFade) {
    // Ahead of the snap: after a pan the going deck would end it with another loss than a quarter's.
    SetKind(kind);
    co_await Snap(Toward(side) * kPartFadeStart, Toward(side));
  }
  state.TransitionActive = true;
  record_.Kind = kind;
  timersSlowed_ = true;
  if (!panTimer_.Active()) panTimer_ = services_.loop.Every(kPanTimer, [this] { PanTick(); });
  Q_EMIT Changed();
}

Job<> Transitions::Snap(int to, int step) {
  ++snaps_;
  const auto done = qScopeGuard([this] { --snaps_; });
  // One that begins later has the slider.
  const unsigned number = ++snapNumber_;
  const int from = CrossPan();
  const Nanoseconds begin = services_.loop.Elapsed();
  for (;;) {
    const std::int64_t due = std::min((services_.loop.Elapsed() - begin) / kSnapStep, kMostSteps);
    const int at = from + static_cast<int>(due) * step;
    if (step < 0 ? at <= to : at >= to) break;
    SetCrossPan(at);
    co_await services_.loop.Sleep(kSnapStep);
    if (number != snapNumber_) co_return;
  }
  SetCrossPan(to);
}

void Transitions::PanTick() {
  if (!services_.state.TransitionActive) {
    EndWalk();
  } else if (!walk_.Running()) {
    walk_ = RunWalk();
  }
}

Job<> Transitions::RunWalk() {
  try {
    const ConsoleState& state = services_.state;
    Nanoseconds stepped = services_.loop.Elapsed();
    for (;;) {
      // The slider may be moved and its speed changed during the walk.
      const Nanoseconds pace(static_cast<std::int64_t>(std::llround(2e9 * StepDelay())));
      co_await services_.loop.Sleep(std::max(stepped + pace - services_.loop.Elapsed(), Nanoseconds(0)));
      if (!state.TransitionActive) break;
      if (snaps_ > 0) {
        stepped = services_.loop.Elapsed();
        continue;
      }
      const std::int64_t due = (services_.loop.Elapsed() - stepped) / pace;
      if (due == 0) continue;
      stepped += due * pace;
      const int steps = static_cast<int>(std::min(due, kMostSteps));
      const Deck side = record_.TransitionDeck;
      SetCrossPan(CrossPan() + Toward(side) * kPanStep * steps);
      bool ended = CrossPan() == record_.TransitionTarget;
      if (!ended && !std::exchange(record_.TransitionRestart, false) && record_.StartCancelled) {
        record_.StartCancelled = false;
        co_await services_.loop.Yield();
        // Taken over in that moment: the new one has the slider.
        if (std::exchange(record_.TransitionRestart, false)) continue;
        SetCrossPan(record_.TransitionStartValue);
        PutBackOnAir(Other(side));
        ended = true;
      }
      if (!ended) continue;
      if (!services_.state.PlaysByItself()) {
        RecordSession(SessionCode::FadeStarted, side, record_.Kind, record_.TransitionMark);
        RecordSession(SessionCode::FadeEnded, side, record_.Kind, Clock());
      }
      break;
    }
    EndWalk();
  } catch (...) {
    // The timer picks the walk up again.
    basHandleError(QStringLiteral(" pantimer"), tr("The fade could not go on."));
  }
}

void Transitions::PutBackOnAir(Deck deck) {
  // Automatic play may have begun the walk and been switched off since.
  const bool done = services_.decks.Record(deck).State == DeckState::Done;
  if (done && services_.decks.Player(deck).State() == PlayState::Playing)
    services_.decks.SetState(deck, DeckState::Playing);
}

void Transitions::Close() {
  starts_.CancelAll();
  walk_.Cancel();
  cancelPanel_.Hide();
  EndWalk();
}

void Transitions::EndWalk() {
  services_.state.TransitionActive = false;
  timersSlowed_ = false;
  panTimer_.Stop();
  Q_EMIT Changed();
}

}  // namespace kelvo
