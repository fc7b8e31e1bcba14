#include "console/transitions/Transitions.h"
#include "platform/ErrorLog.h"

namespace kelvo {

namespace {

/// Nearer to its end than this the slider has nowhere to go: the deck is fully in.
constexpr int kArrived = 5;

const QString kStartTag = QStringLiteral(" trstart");

}  // namespace

void Transitions::Press(Deck deck, TransitionKind kind) {
  const DeckRecord& record = services_.decks.Record(deck);
  const ConsoleState& state = services_.state;
  if (record.State == DeckState::Empty || record.Loading || state.TransitionActive || Starting()) return;
  if (record.State == DeckState::Playing && FromEnd(deck) < kArrived) return;
  record_.StartCancelled = false;
  if (!state.PlaysByItself()) {
    if (services_.decks.WasRecentlyPlayed(deck)) {
      services_.panel.Open({QStringLiteral("TRACK RECENTLY PLAYED!\r\n"), QStringLiteral("PLAY IT AGAIN"),
                            PanelAction::StartTransition, deck, LoadRequest(), kind});
      return;
    }
    if (record.State != DeckState::Playing) cancelPanel_.Open(deck);
  }
  if (kind == TransitionKind::Dub) dubs_[deck] = DubButton::Starting;
  starts_.Add(RunPressed(deck, kind));
}

void Transitions::ReleaseDub(Deck deck) {
  DubButton& button = dubs_[deck];
  if (button == DubButton::Held) {
    button = DubButton::Up;
    starts_.Add(RunReleased(deck));
  } else if (button == DubButton::Starting) {
    // A click may be shorter than the way to the centre: then the start itself goes on into the fade.
    button = DubButton::LetGo;
  }
}

void Transitions::OnPanelConfirmed(const PanelQuestion& question) {
  const bool busy =
      services_.state.TransitionActive || Starting() || services_.decks.Record(question.deck).Loading;
  if (question.action == PanelAction::StartTransition && !busy) StartRoutine(question.deck, question.kind);
}

bool Transitions::MayCancel() const {
  return !services_.state.PlaysByItself() && (Starting() || WalkActive() || WaitsForRelease());
}

void Transitions::Cancel() {
  cancelPanel_.Hide();
  // With nothing to cancel it would swallow the next start.
  if (MayCancel()) record_.StartCancelled = true;
}

void Transitions::ForgetCancel() {
  if (services_.state.PlaysByItself() || (!WalkActive() && !WaitsForRelease()))
    record_.StartCancelled = false;
}

void Transitions::StartRoutine(Deck deck, TransitionKind kind) {
  ForgetCancel();
  starts_.Add(RunStart(deck, kind));
}

void Transitions::BeginTransition(Deck side, TransitionKind kind) {
  ForgetCancel();
  starts_.Add(RunTransition(side, kind));
}

void Transitions::PressNumberPad(Deck side, TransitionKind kind) {
  if (services_.state.PlaysByItself() || Starting()) return;
  BeginTransition(side, kind);
}

Job<> Transitions::RunPressed(Deck deck, TransitionKind kind) {
  if (cancelPanel_.Visible()) co_await services_.loop.Yield();
  if (!std::exchange(record_.StartCancelled, false)) co_await RunStart(deck, kind);
  // A dub whose start failed does not wait for its button.
  if (kind == TransitionKind::Dub && dubs_[deck] != DubButton::Held) dubs_[deck] = DubButton::Up;
  ForgetCancel();
}

Job<> Transitions::RunStart(Deck deck, TransitionKind kind) {
  try {
    co_await StartByKind(deck, kind);
  } catch (...) {
    basHandleError(kStartTag, tr("The start or the fade could not be carried out."));
  }
  ForgetCancel();
}

Job<> Transitions::RunReleased(Deck deck) {
  try {
    co_await EndDub(deck);
  } catch (...) {
    basHandleError(kStartTag, tr("The start or the fade could not be carried out."));
  }
  ForgetCancel();
}

Job<> Transitions::RunTransition(Deck side, TransitionKind kind) {
  try {
    co_await Transition(side, kind);
  } catch (...) {
    basHandleError(kStartTag, tr("The start or the fade could not be carried out."));
  }
  ForgetCancel();
}

Job<> Transitions::StartByKind(Deck deck, TransitionKind kind) {
  return kind == TransitionKind::Dub ? StartDub(deck) : StartFade(deck, kind);
}

Job<> Transitions::StartFade(Deck deck, TransitionKind kind) {
  DeckEngine& decks = services_.decks;
  const DeckRecord& record = decks.Record(deck);
  services_.state.NextTrackDue = false;
  if (!WalkActive()) record_.TransitionDeck = deck;
  if (record.State == DeckState::Empty) co_return;
  const bool first = record.State == DeckState::Loaded;
  if (first) {
    decks.StartDeck(deck);
  } else {
    decks.RestartDeck(deck);
  }
  Job<> audio = decks.WaitForAudio(deck, [this] { return record_.StartCancelled; });
  co_await std::move(audio);
  if (first) co_await services_.loop.Yield();
  if (record_.StartCancelled) co_return;
  // A deck that was stopped or loaded anew meanwhile, or gives no sound, has nothing to fade in: the other
  // one stays on air.
  const bool overAlready = record.PlayedOut && !decks.Moves(Other(deck));
  if (!decks.GivesSound(deck) && !overAlready) co_return;
  if (first || FromEnd(deck) > kArrived) co_await Transition(deck, kind);
  if (!first) co_return;
  co_await services_.loop.Yield();
  if (!record_.StartCancelled && AfterStart) AfterStart(deck);
}

Job<> Transitions::StartDub(Deck deck) {
  DeckEngine& decks = services_.decks;
  services_.state.NextTrackDue = false;
  const DeckState before = decks.Record(deck).State;
  if (record_.StartCancelled || before == DeckState::Empty) co_return;
  // A walk whose decks have fallen silent would take the new one along.
  if (WalkActive()) {
    walk_.Cancel();
    EndWalk();
  }
  if (before == DeckState::Loaded) {
    decks.StartDeck(deck);
  } else {
    decks.RestartDeck(deck);
  }
  record_.DeckStartMark[deck] = Clock();
  if (before == DeckState::Loaded && AfterStart) AfterStart(deck);
  SetKind(TransitionKind::Dub);
  if (deck == Deck::One) {
    co_await Snap(-1, CrossPan() > -1 ? -30 : 30);
  } else {
    co_await Snap(1, CrossPan() < 1 ? 30 : -30);
  }
  DubButton& button = dubs_[deck];
  if (button == DubButton::Starting) {
    button = DubButton::Held;
  } else if (button == DubButton::LetGo) {
    button = DubButton::Up;
    co_await EndDub(deck);
  }
}

Job<> Transitions::EndDub(Deck deck) {
  if (services_.decks.Record(deck).State == DeckState::Empty || WalkActive()) co_return;
  const double now = Clock();
  if (!services_.state.PlaysByItself() && now - record_.DeckStartMark[deck] >= 1) {
    RecordSession(SessionCode::DubStarted, deck, TransitionKind::Dub, record_.DeckStartMark[deck]);
    RecordSession(SessionCode::DubEnded, deck, TransitionKind::Dub, now);
  }
  if (std::exchange(record_.StartCancelled, false)) co_return;
  co_await StartFade(deck, TransitionKind::PartFade);
}

}  // namespace kelvo
