#include "console/automatic/AutoPlay.h"

#include "database/Catalogue.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr int kFewestRows = 3;
constexpr int kFewestTracks = 7;
constexpr int kMostDelta = 32767;
const QString kTag = QStringLiteral(" autoplay");

}  // namespace

AutoPlay::AutoPlay(Services services)
    : services_(std::move(services)),
      loader_({services_.loop, services_.disks, services_.state, services_.decks, services_.queue,
               services_.catalogue, services_.random, services_.FadedOut, [this] { return SecondsLeft(); }}) {
  mode_ = static_cast<AutoMode>(services_.settings.Get(setting::AutoMode));
  randomTicked_ = services_.settings.Get(setting::AutoRandom);
  SetDelta(services_.delta);
  loader_.OnSkipped = [this](const QString& title, const QString& why) { TellSkipped(title, why); };
  services_.decks.PickPreview = [this] { return loader_.PickPreview(); };
  services_.decks.CheckFadeOverride = [this](Deck deck) { CheckFadeOverride(deck); };
  services_.decks.OnPlayChanged = [this](Deck deck, const TrackPlaySettings& before) {
    PlayChanged(deck, before);
  };
  services_.catalogue.Listen(this, [this](const TrackRenamed& renamed) {
    for (Seen& seen : seen_) {
      if (seen.path == renamed.pathBefore) seen.path = renamed.path;
    }
  });
}

AutoPlay::~AutoPlay() {
  services_.decks.PickPreview = nullptr;
  services_.decks.CheckFadeOverride = nullptr;
  services_.decks.OnPlayChanged = nullptr;
}

void AutoPlay::ToggleAutoPlay() {
  Toggle(true);
}

void AutoPlay::Toggle(bool attended) {
  if (services_.state.PlaysByItself()) {
    SwitchOff();
    return;
  }
  const bool preview = mode_ == AutoMode::Preview;
  if (!preview) {
    if (services_.queue.Count() < kFewestRows) {
      Prompt message;
      message.text = QStringLiteral("There Must Be A Minimum of 3 Tracks in The Play Queue !");
      message.title = QStringLiteral("Auto Play Start");
      services_.prompter.Tell(message);
      return;
    }
    const bool group = services_.queue.GroupQueueFlag();
    services_.queue.ResetMarks();
    DisarmTimer();
    if (group) {
      services_.state.GroupPlayOn = true;
      SetStatusText({});
      Q_EMIT Changed();
      services_.RunGroup();
      return;
    }
  }
  SwitchOn(preview, attended);
}

void AutoPlay::SwitchOn(bool preview, bool attended) {
  services_.state.PreviewOn = preview;
  services_.state.AutoPlayOn = true;
  running_ = true;
  loader_.RandomOn = !preview && randomTicked_;
  loader_.Reset();
  seen_ = {};
  basis_.reset();
  notice_.clear();
  lastSkipped_.clear();
  skippedCount_ = 0;
  noticeUntil_ = nextRound_ = 0ns;
  SetStatusText({});
  Q_EMIT Changed();
  asking_ = false;
  starting_ = preview ? StartPreview(attended) : StartQueue();
}

void AutoPlay::SwitchOff() {
  ConsoleState& state = services_.state;
  const bool group = state.GroupPlayOn;
  state.AutoPlayOn = false;
  state.GroupPlayOn = false;
  state.PreviewOn = false;
  running_ = false;
  randomTicked_ = false;
  loader_.RandomOn = false;
  mode_ = AutoMode::Kelvo;
  KeepChoice();
  starting_.Cancel();
  lag_.Cancel();
  loading_.Cancel();
  if (group) services_.StopGroup();
  SetStatusText({});
  Q_EMIT Changed();
}

QString AutoPlay::StartCaption() const {
  return services_.state.PlaysByItself() ? QStringLiteral("STOP") : QStringLiteral("START");
}

void AutoPlay::SetMode(AutoMode mode) {
  if (services_.state.PlaysByItself() || mode_ == mode) return;
  mode_ = mode;
  KeepChoice();
  Q_EMIT Changed();
}

void AutoPlay::SetRandom(bool ticked) {
  if (services_.state.PlaysByItself() || randomTicked_ == ticked) return;
  randomTicked_ = ticked;
  KeepChoice();
  Q_EMIT Changed();
}

void AutoPlay::KeepChoice() const {
  services_.settings.Set(setting::AutoMode, static_cast<int>(mode_));
  services_.settings.Set(setting::AutoRandom, randomTicked_);
}

Job<> AutoPlay::TakeDesk() {
  while (loader_.FadeHolds() || Starting()) co_await services_.loop.Sleep(100ms);
  for (const Deck deck : kDecks) co_await loader_.LoadEnded(deck);
  // What was loaded by hand, or for a run that was switched off meanwhile, has not been checked yet.
  for (const Deck deck : kDecks) static_cast<void>(loader_.HoldsGoodTrack(deck));
}

Job<> AutoPlay::StartPreview(bool attended) {
  try {
    // Unattended it goes on with the last session, as the question proposes.
    if (attended && loader_.UsedPicks.Count() > 0) {
      Prompt question;
      question.text = QString::number(loader_.UsedPicks.Count()) +
                      QStringLiteral(
                          " Tracks have Already been Previewed in this Session !\r\n"
                          "Continue With The Last Session(Not Repeating Tracks Already Previewed) ? ");
      question.buttons = Buttons::YesNo;
      question.icon = PromptIcon::Question;
      asking_ = true;
      const Answer answer = co_await services_.prompter.Ask(question);
      asking_ = false;
      if (answer == Answer::No) loader_.UsedPicks.Clear();
    }
    if (services_.catalogue.LastTrack() < kFewestTracks) {
      Prompt message;
      message.text = QStringLiteral("There must be At least 5 tracks in the Data Base to Run Preview Mode");
      services_.prompter.Tell(message);
      SwitchOff();
      co_return;
    }
    co_await TakeDesk();
    // Deck 1, unless a preview there would cut off the track on air.
    const Deck first = loader_.Sounds(Deck::One) && !loader_.Sounds(Deck::Two) ? Deck::Two : Deck::One;
    const bool filled = co_await loader_.Fill(first, AutoLoader::From::Selected, true);
    if (filled) {
      StartByFade(first);
    } else {
      ShowStatus(Decide());
    }
  } catch (...) {
    basHandleError(kTag, tr("Automatic play could not start as it should."));
  }
}

Job<> AutoPlay::StartQueue() {
  try {
    using From = AutoLoader::From;
    PlayQueue& queue = services_.queue;
    DeckEngine& decks = services_.decks;
    if (queue.Selected() > queue.Count() - 1 || queue.Selected() <= 1) queue.Select(1);
    co_await TakeDesk();
    const auto is = [&decks](Deck deck, DeckState state) { return decks.Record(deck).State == state; };
    const auto idle = [&](Deck deck) { return is(deck, DeckState::Done) || is(deck, DeckState::Empty); };
    for (const Deck deck : kDecks) {
      // Where it was switched off behind a dub, a deck that counts as done may be the one on air.
      if (idle(Deck::One) && idle(Deck::Two) && loader_.Sounds(deck))
        decks.SetState(deck, DeckState::Playing);
    }
    if (is(Deck::One, DeckState::Playing) && is(Deck::Two, DeckState::Playing)) {
      StopFadedDeckAndStartIt();
      co_return;
    }
    for (const Deck deck : kDecks) {
      if (is(Other(deck), DeckState::Playing)) {
        services_.state.NextTrackDue = true;
        if (!is(deck, DeckState::Loaded)) LoadNext();
        co_return;
      }
    }
    if (!is(Deck::One, DeckState::Loaded) && !is(Deck::Two, DeckState::Loaded)) {
      co_await loader_.Fill(Deck::One, From::Selected, true);
    }
    const Deck first = is(Deck::One, DeckState::Loaded) ? Deck::One : Deck::Two;
    if (!is(first, DeckState::Loaded)) {
      ShowStatus(Decide());
      co_return;
    }
    StartByFade(first);
    // While it begins the other deck is filled: before the next transition is chosen from both tracks, unless
    // a disk takes its time. Nothing waits for that.
    if (!is(Other(first), DeckState::Loaded)) co_await loader_.Fill(Other(first), From::BehindSelected, true);
  } catch (...) {
    basHandleError(kTag, tr("Automatic play could not start as it should."));
  }
}

void AutoPlay::StopFadedDeckAndStartIt() {
  DeckEngine& decks = services_.decks;
  const Deck faded = services_.state.CrossPan < 0 ? Deck::Two : Deck::One;
  decks.StopDeck(faded);
  decks.SetPosition(faded, 0);
  decks.SetState(faded, DeckState::Loaded);
  StartByFade(faded);
}

void AutoPlay::StartByFade(Deck deck) {
  if (services_.StartTransition) services_.StartTransition(deck, TransitionKind::PartFade);
}

void AutoPlay::TogglePauseAtEnd() {
  if (!PauseEnabled()) return;
  pauseAtEnd_ = !pauseAtEnd_;
  Q_EMIT Changed();
}

QString AutoPlay::WhyNoPause() const {
  if (pauseAtEnd_ || (running_ && !services_.state.PreviewOn)) return {};
  return running_ ? tr("Not in a preview") : tr("Only in automatic play");
}

QString AutoPlay::WhyNoChoice() const {
  return services_.state.PlaysByItself() ? tr("Not while the desk plays by itself") : QString();
}

QString AutoPlay::PauseCaption() const {
  return pauseAtEnd_ && blink_ ? QStringLiteral(" >||") : QStringLiteral("> ||");
}

void AutoPlay::SetDelta(int seconds) {
  sldDelta_ = std::clamp(seconds, 0, kMostDelta);
  now_.AutoDelta = sldDelta_;
  Q_EMIT Changed();
}

void AutoPlay::TakeSettings(Deck deck, const AutoSettings& settings) {
  if (!settings.info.isEmpty()) services_.decks.SetInfo(deck, settings.info);
  now_.AutoTransition = settings.AutoTransition;
  if (settings.fadeSp && services_.SetFadeSpeed) services_.SetFadeSpeed(*settings.fadeSp);
  SetDelta(settings.AutoDelta);
}

void AutoPlay::ApplyTrackSettings(Deck deck) {
  const bool otherHolds = services_.decks.Record(Other(deck)).State != DeckState::Empty;
  const TrackPlaySettings& other = services_.decks.Record(otherHolds ? Other(deck) : deck).Play;
  basis_ = {deck, otherHolds ? std::optional(other) : std::nullopt, now_};
  const AutoSettings settings = TrackSettingsFor(mode_, services_.decks.Record(deck).Play, other, now_);
  if (mode_ == AutoMode::Preview) {
    services_.decks.SetInfo(deck, settings.info);
    return;
  }
  TakeSettings(deck, settings);
}

void AutoPlay::CheckFadeOverride(Deck deck) {
  if (services_.decks.Record(Other(deck)).State == DeckState::Empty) return;
  if (const auto settings = FadeOverride(services_.decks.Record(deck).Play, now_))
    TakeSettings(deck, *settings);
}

void AutoPlay::PlayChanged(Deck deck, const TrackPlaySettings& before) {
  const ConsoleState& state = services_.state;
  if (!state.AutoPlayOn || state.PreviewOn || !basis_) return;
  const Deck first = basis_->deck;
  const DeckRecord& onAir = services_.decks.Record(first);
  if (onAir.State != DeckState::Playing) return;
  const auto decided = [&](const TrackPlaySettings& play) {
    return TrackSettingsFor(mode_, play, basis_->other.value_or(play), basis_->previous);
  };
  const bool itself = deck == first;
  const AutoSettings settings = decided(onAir.Play);
  const DeckRecord& waiting = services_.decks.Record(Other(first));
  const bool waits = waiting.State == DeckState::Loaded;
  // What decides nothing leaves the operator's own delta and speed alone.
  const bool counts = itself
                          ? decided(before) != settings
                          : waits && FadeOverride(before, settings) != FadeOverride(waiting.Play, settings);
  if (!counts) return;
  TakeSettings(first, settings);
  if (waits) CheckFadeOverride(Other(first));
  now_.AutoDelta = static_cast<int>(std::clamp<qint64>(Int(onAir.Duration), 0, now_.AutoDelta));
  Q_EMIT Changed();
}

void AutoPlay::AfterStart(Deck deck) {
  ConsoleState& state = services_.state;
  const DeckRecord& record = services_.decks.Record(deck);
  const int length = static_cast<int>(std::clamp<qint64>(Int(record.Duration), 0, kMostDelta));
  if (state.AutoPlayOn && state.PreviewOn) {
    ApplyTrackSettings(deck);
    now_.AutoTransition = TransitionKind::PartFade;
    if (services_.SetFadeSpeed) services_.SetFadeSpeed(45);
    now_.AutoDelta = length - services_.settings.Get(setting::PrevSecs);
  } else {
    if (state.AutoPlayOn) {
      ApplyTrackSettings(deck);
      now_.AutoDelta = std::min(now_.AutoDelta, length);
    }
    if (services_.LogPlay)
      Guarded(kTag, tr("The session log could not be written."), [&] { services_.LogPlay(record.Title); });
  }
  // The other deck fades out and counts as done. One that is loaded and waits for its turn keeps its track.
  const DeckState other = services_.decks.Record(Other(deck)).State;
  if (state.AutoPlayOn && IsFade(now_.AutoTransition) && other == DeckState::Playing) {
    services_.decks.SetState(Other(deck), DeckState::Done);
  }
  state.NextTrackDue = true;
  Q_EMIT Changed();
}

void AutoPlay::ArmTimer(int hour, int minute) {
  timer_ = {true, std::clamp(hour, 0, 23), std::clamp(minute, 0, 59)};
  Q_EMIT Changed();
}

void AutoPlay::DisarmTimer() {
  if (!timer_.TimerArmed) return;
  timer_.TimerArmed = false;
  Q_EMIT Changed();
}

std::optional<QString> AutoPlay::CheckTimer() {
  if (!timer_.TimerArmed) return std::nullopt;
  QString words = QStringLiteral("AutoPlay Timer On :") + Format00(timer_.TimerHour) + QLatin1Char(':') +
                  Format00(timer_.TimerMinute);
  if (timer_.Due(services_.loop.Now().time())) {
    DisarmTimer();
    // The timer starts a show; it never ends one. It does not wait for an unanswered question.
    if (!services_.state.PlaysByItself()) {
      Toggle(false);
    } else if (asking_) {
      SwitchOn(true, false);
    }
  }
  return words;
}

void AutoPlay::Beat() {
  blink_ = !blink_;
  if (services_.state.AutoPlayOn && services_.state.TransitionActive) AutoTick();
  Q_EMIT Changed();
}

QString AutoPlay::DisplayWord() const {
  const ConsoleState& state = services_.state;
  if (!state.PlaysByItself()) return blink_ ? QString() : QStringLiteral("AUTOMATIC PLAY");
  if (state.GroupPlayOn) return QStringLiteral("GRP MODE");
  if (state.PreviewOn) return QStringLiteral("PREVIEW MODE");
  if (mode_ == AutoMode::Jukebox) return QStringLiteral("JUKEBOX MODE");
  return loader_.RandomOn ? QStringLiteral("RANDOM") : QStringLiteral("KELVO MODE");
}

void AutoPlay::SetStatusText(const QString& text) {
  if (statusText_ == text) return;
  statusText_ = text;
  Q_EMIT Changed();
}

}  // namespace kelvo
