#include "console/Console.h"

#include "database/DatabaseSettings.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QDir>
#include <QFileInfo>

namespace kelvo {
namespace {

const QString kTotalTracks = QStringLiteral("Total Tracks :");

QString TotalTracks(const Catalogue& catalogue) {
  return kTotalTracks + QString::number(catalogue.LastTrack());
}

QString RecordingsFolder(const Console::Services& services) {
  const QString& above = services.documents.isEmpty() ? services.programFolder : services.documents;
  return QDir(above).filePath(QStringLiteral("Kelvo2007 - Recordings"));
}

}  // namespace

Console::Console(Services services)
    : services_(std::move(services)),
      settings_(services_.settings, services_.title),
      play_(settings_.Get(setting::PlaySettings).value_or(PlaySettings::Of(ReadTrackDefaults(settings_)))),
      sliders_(settings_.Get(setting::JingleSettings).value_or(JingleSettings())),
      sessionStart_(services_.loop.Now()),
      disks_(services_.loop),
      queue_(services_.loop, disks_, services_.prompter, services_.catalogue, state_),
      panel_(services_.loop),
      session_(services_.catalogue, [this](Deck deck) { return FactsFor(deck); }),
      played_(services_.loop, services_.catalogue),
      log_(services_.loop, services_.documents, services_.title),
      sessionFile_(services_.loop, {log_.Folder(), services_.title}, sessionStart_),
      decks_({.loop = services_.loop,
              .disks = disks_,
              .audio = services_.audio,
              .catalogue = services_.catalogue,
              .queue = queue_,
              .panel = panel_,
              .state = state_,
              .session = session_,
              .paths = services_.paths,
              .settings = settings_}),
      toRead_(queue_, decks_),
      transitions_({.loop = services_.loop,
                    .state = state_,
                    .decks = decks_,
                    .panel = panel_,
                    .session = session_,
                    .settings = settings_,
                    .fadeSpeed = std::clamp(play_.fadeSpeed, 0, 50)}),
      speak_({.loop = services_.loop, .state = state_, .decks = decks_}),
      random_(services_.seed ? RandomSource(*services_.seed) : RandomSource()),
      auto_(ForAutoPlay()),
      times_(queue_, decks_, auto_, state_, services_.catalogue, played_),
      group_({.loop = services_.loop,
              .decks = decks_,
              .queue = queue_,
              .fades = transitions_,
              .catalogue = services_.catalogue,
              .AfterStart = [this](Deck deck) { auto_.AfterStart(deck); },
              .Leave = [this] { auto_.ToggleAutoPlay(); }}),
      jingles_({.loop = services_.loop,
                .disks = disks_,
                .audio = services_.audio,
                .catalogue = services_.catalogue,
                .queue = queue_,
                .state = state_,
                .paths = services_.paths}),
      recorder_({.loop = services_.loop,
                 .disks = disks_,
                 .prompter = services_.prompter,
                 .audio = services_.audio,
                 .decks = decks_,
                 .jingles = jingles_,
                 .settings = settings_,
                 .home = RecordingsFolder(services_)}),
      monitor_({.loop = services_.loop,
                .audio = services_.audio,
                .decks = decks_,
                .jingles = jingles_,
                .fades = transitions_,
                .settings = settings_}),
      programme_({.loop = services_.loop,
                  .audio = services_.audio,
                  .input = services_.soundInput,
                  .settings = settings_,
                  .slowed = [this] { return transitions_.TimersSlowed(); }}),
      warningPlayer_(services_.audio.MakePlayer()),
      tick_({.loop = services_.loop,
             .state = state_,
             .decks = decks_,
             .queue = queue_,
             .panel = panel_,
             .warningPlayer = *warningPlayer_,
             .title = services_.title,
             .version = services_.version,
             .aboutLine = services_.aboutLine,
             .sessionStart = sessionStart_}),
      lock_(services_.prompter),
      managerAccess_(services_.prompter, settings_),
      filter_(services_.catalogue),
      browser_(services_.loop, services_.catalogue, filter_, queue_, state_),
      statusLine_(services_.aboutLine) {
  JoinParts();
  speak_.SetDepthSlider(sliders_.autoFadeDepth);
  speak_.SetSpeedSlider(sliders_.autoFadeSpeed);
  SetUpLevels();
  TakeAudioWarning();
  services_.audio.OnDefaultOutputChanged = [this](const OutputStatus& status) { ShowDevice(status); };
  ShowDevice(services_.audio.DefaultOutputStatus());
}

AutoPlay::Services Console::ForAutoPlay() {
  return {
      .loop = services_.loop,
      .disks = disks_,
      .prompter = services_.prompter,
      .state = state_,
      .decks = decks_,
      .queue = queue_,
      .catalogue = services_.catalogue,
      .random = random_,
      .settings = settings_,
      .delta = play_.delta,
      .StartTransition = [this](Deck deck, TransitionKind kind) { transitions_.StartRoutine(deck, kind); },
      .SetFadeSpeed = [this](int speed) { transitions_.SetFadeSpeed(speed); },
      .LogPlay = [this](const QString& title) { LogPlay(title); },
      .RunGroup = [this] { group_.Start(); },
      .StopGroup = [this] { group_.Stop(); },
      .Starting = [this] { return transitions_.Starting(); },
      .FadedOut = [this](Deck deck) { return transitions_.FadedOut(deck); }};
}

void Console::JoinParts() {
  if (!services_.documents.isEmpty())
    session_.OnRecorded = [this](const SessionEvent& event) { sessionFile_.Append(event); };
  transitions_.AfterStart = [this](Deck deck) { auto_.AfterStart(deck); };
  tick_.hooks.EverySecond = [this] {
    auto_.Beat();
    times_.Tick();
    WatchReserve();
  };
  tick_.hooks.TimedStart = [this] { return auto_.CheckTimer(); };
  tick_.hooks.Mode = [this] { return auto_.DisplayWord(); };
  tick_.hooks.PauseCaption = [this] { return auto_.PauseCaption(); };
  tick_.hooks.AutoTick = [this] { auto_.AutoTick(); };
  tick_.hooks.Group = [this] { return group_.Progress(); };
  panel_.OnConfirmed = [this](const PanelQuestion& question) { OnPanelConfirmed(question); };
  decks_.OnEndOfStream = [this](Deck) { SetStatusLine(services_.aboutLine); };
  decks_.OnFadeSpeed = [this](int value) { transitions_.SetFadeSpeed(value); };
  decks_.OnStarted = [this](Deck deck) {
    tick_.ExpectSound();
    played_.Note(decks_.Record(deck).CatalogueIndex);
    recorder_.DeckStarted(deck);
  };
  decks_.OnBroughtBack = [this](Deck deck) { recorder_.DeckBroughtBack(deck); };
  jingles_.OnStarted = [this] { recorder_.BiteStarted(); };
  decks_.OnStartedByHand = [this](Deck deck) { LogPlay(decks_.Record(deck).Title); };
  decks_.OnStoppedByHand = [this](Deck deck) {
    if (!decks_.Moves(Other(deck))) tick_.AcceptSilence();
  };
  decks_.OnStartFailed = [this](Deck deck) {
    SetStatusLine(tr("Start Failed, Nothing Is Heard Of : %1").arg(decks_.Record(deck).Title));
  };
  tick_.hooks.Air = [this] { return Air(); };
  connect(&disks_, &Disks::Changed, this, [this] {
    const QStringList silent = disks_.Silent();
    NoteInLog(silent.isEmpty()
                  ? QStringLiteral("All disks answer again")
                  : QStringLiteral("Disks that do not answer: ") + silent.join(QStringLiteral(", ")));
    tick_.SetSilentDisks(silent);
  });
  queue_.WhyHeld = [this] { return WhyListsHeld(); };
  queue_.OnTold = [this](const QString& words) { SetStatusLine(words); };
  queue_.HasTrackInfo = [paths = services_.paths](const QString& mediaPath) {
    return !FindFile(TrackInfoPath(paths, BaseName(QFileInfo(mediaPath).fileName()))).isEmpty();
  };
  transitions_.SessionClock = [this] { return SessionClock(); };
  // Only there a level meets a dip that is down.
  transitions_.WriteLoss = [this](Deck deck, int loss) { speak_.SetLevel(deck, loss); };
  tick_.hooks.WalkRuns = [this] { return transitions_.TimersSlowed() || speak_.AfadeRunning(); };
  tick_.hooks.StatusLine = [this] { return statusLine_; };
  tick_.hooks.SetStatusLine = [this](const QString& text) { SetStatusLine(text); };
  tick_.hooks.BlinkFilterWords = [this] { browser_.BlinkFilterWords(); };
  settings_.Listen(setting::AudioWarnings, this, [this](bool) { TakeAudioWarning(); });
  settings_.Listen(setting::AudioWarningFilePath, this, [this](const QString&) { TakeAudioWarning(); });
  services_.catalogue.Listen(
      this, [this](const TrackAdded&) { ShowTotalTracks(); },
      [this](const TrackRemoved&) { ShowTotalTracks(); });
  tick_.hooks.JinglePlays = [this] { return jingles_.Plays(); };
  tick_.hooks.JingleActive = [this] { return jingles_.State() == DeckState::Playing; };
  tick_.hooks.MonitorShown = [this] { return monitor_.Shown(); };
  connect(this, &Console::LoadChanged, this, [this] { programme_.beat.Hold(loader_ != nullptr); });
  jingles_.OnAssigned = [this] { SaveJingles(); };
}

Console::~Console() {
  services_.audio.OnDefaultOutputChanged = nullptr;
}

SessionFacts Console::FactsFor(Deck deck) const {
  SessionFacts facts;
  facts.sessionClock = SessionClock();
  facts.fadeSpeed = transitions_.FadeSpeed();
  facts.trackSeconds = decks_.Record(deck).Duration;
  return facts;
}

double Console::SessionClock() const {
  return static_cast<double>(sessionStart_.msecsTo(services_.loop.Now())) / 1000.0;
}

void Console::SetStatusLine(const QString& text) {
  if (statusLine_ == text) return;
  statusLine_ = text;
  Q_EMIT StatusChanged();
}

void Console::ShowDevice(const OutputStatus& status) {
  const QString device = status.device.isEmpty() ? QStringLiteral("the default device") : status.device;
  switch (status.kind) {
    case OutputStatus::Kind::OnAir:
      if (!deviceNotice_.isEmpty()) NoteInLog(QStringLiteral("Sound device back: ") + device);
      deviceNotice_.clear();
      break;
    case OutputStatus::Kind::OnSilentClock:
      deviceNotice_ = tr("Sound device lost: %1. The decks run on in silence until it is back.").arg(device);
      NoteInLog(QStringLiteral("Sound device lost: ") + device);
      break;
    case OutputStatus::Kind::OnDefault:
      deviceNotice_ = tr("Sound device lost: %1. The default device plays in its place.").arg(device);
      NoteInLog(QStringLiteral("Sound device lost, the default one plays: ") + device);
      break;
  }
  tick_.SetNoDevice(status.kind == OutputStatus::Kind::OnSilentClock);
  Q_EMIT StatusChanged();
}

void Console::WatchReserve() {
  const AudioSystem& audio = services_.audio;
  reserve_.Look(audio.ReserveOf(), audio.Dropouts(), services_.loop.Elapsed());
  const auto milliseconds = [](Nanoseconds time) { return time / std::chrono::milliseconds(1); };
  QString words;
  switch (reserve_.Now()) {
    case ReserveWatch::State::Calm:
      break;
    case ReserveWatch::State::Dropped:
      words = tr("The sound has broken off %1.").arg(Counted(reserve_.Dropouts(), tr("time"), tr("times")));
      break;
    case ReserveWatch::State::Grown:
      words = tr("The sound has broken off %1: its reserve is %2 ms now, it was %3.")
                  .arg(Counted(reserve_.Dropouts(), tr("time"), tr("times")))
                  .arg(milliseconds(reserve_.Reserve()))
                  .arg(milliseconds(reserve_.Least()));
      break;
    case ReserveWatch::State::Back:
      words = tr("The sound is calm: its reserve is back to %1 ms.").arg(milliseconds(reserve_.Reserve()));
      break;
  }
  if (std::exchange(reserveNotice_, words) == words) return;
  if (!words.isEmpty()) NoteInLog(words);
  Q_EMIT StatusChanged();
}

AirFacts Console::Air() {
  AirFacts facts;
  facts.wanted = state_.PlaysByItself();
  const bool others = OthersOnAir && OthersOnAir();
  facts.planned = auto_.SilencePlanned() || group_.BeforeFirstStart() || others;
  const bool onAir = services_.audio.DefaultOutputStatus().kind != OutputStatus::Kind::OnSilentClock;
  const bool decks = std::any_of(kDecks.begin(), kDecks.end(), [this](Deck deck) {
    return decks_.Moves(deck) && !transitions_.FadedOut(deck);
  });
  facts.sounds = onAir && (decks || jingles_.Plays());
  return facts;
}

void Console::OnPanelConfirmed(const PanelQuestion& question) {
  switch (question.action) {
    case PanelAction::LoadTrack:
      decks_.LoadTrack(question.deck, question.load);
      break;
    case PanelAction::StopDeck:
      decks_.StopByHand(question.deck);
      break;
    case PanelAction::StartTransition:
      transitions_.OnPanelConfirmed(question);
      break;
  }
}

void Console::Activate() {
  if (!pendingCatalogueLoad_ || loader_) return;
  load_ = LoadCatalogue();
}

Job<> Console::LoadCatalogue() {
  loader_ = std::make_unique<CatalogueLoader>(services_.loop, services_.audio, services_.catalogue,
                                              services_.paths, ReadTrackDefaults(settings_), services_.title);
  loader_->OnProgress = [this] { Q_EMIT LoadProgress(); };
  Q_EMIT LoadChanged();
  const LoadOutcome outcome = co_await loader_->Load();
  if (!loader_->Mended().isEmpty()) services_.prompter.Tell({loader_->Mended(), {}});
  if (outcome == LoadOutcome::UnstableFile) {
    Prompt message;
    message.text = services_.title +
                   QStringLiteral(" Has Encountered Unstable File/s and has to Close\r\nPlease Restart ") +
                   services_.title + QStringLiteral("\r\nRecent Changes May Need To be Repeated !\r\n") +
                   loader_->UnstableFile();
    message.icon = PromptIcon::Critical;
    co_await services_.prompter.Ask(message);
    if (OnMustEnd) OnMustEnd();
    co_return;
  }
  while (browser_.TakingIn()) co_await services_.loop.Yield();
  BeginWithCatalogue();
}

void Console::ActivateLoaded() {
  if (pendingCatalogueLoad_ && !loader_) BeginWithCatalogue();
}

void Console::BeginWithCatalogue() {
  catalogueLoaded_ = true;
  pendingCatalogueLoad_ = false;
  loader_.reset();
  tick_.Start();
  SetStatusLine(TotalTracks(services_.catalogue));
  Q_EMIT LoadChanged();
}

void Console::LogPlay(const QString& title) {
  if (!services_.documents.isEmpty()) log_.LogPlay(title, state_.AutoPlayOn);
}

QString Console::WhyListsHeld() const {
  if (panel_.Visible()) return tr("The desk waits for an answer");
  if (transitions_.SectionsDisabled()) return tr("A fade runs");
  return {};
}

void Console::ShowTotalTracks() {
  if (statusLine_.startsWith(kTotalTracks)) SetStatusLine(TotalTracks(services_.catalogue));
}

SessionArchive Console::Archive() const {
  return services_.documents.isEmpty() ? SessionArchive() : sessionFile_.Archive();
}

QString Console::WhyNoSession() {
  const bool plays = std::any_of(kDecks.begin(), kDecks.end(), [this](Deck deck) {
    return decks_.Player(deck).State() == PlayState::Playing;
  });
  return plays ? QStringLiteral("Can't Display Whilst Tracks Are Playing - Please Stop Decks") : QString();
}

bool Console::Plays() {
  return decks_.Player(Deck::One).State() == PlayState::Playing ||
         decks_.Player(Deck::Two).State() == PlayState::Playing || jingles_.Plays();
}

Job<bool> Console::QueryClose(bool bySystem) {
  if (!bySystem) {
    const bool may = co_await recorder_.MayEnd();
    if (!may) co_return false;
  }
  if (Plays() || !bySystem) {
    Prompt question;
    question.text = QStringLiteral("Quit ") + services_.title + QStringLiteral(" ? ");
    question.buttons = Buttons::YesNo;
    question.icon = PromptIcon::Question;
    const Answer answer = co_await services_.prompter.Ask(question);
    if (answer != Answer::Yes) co_return false;
  }
  tick_.Stop();
  programme_.beat.Hold(true);
  transitions_.Close();
  decks_.StopFrameUpdates();
  recorder_.Stop();
  co_return true;
}

void Console::TakeAudioWarning() {
  QString path = settings_.Get(setting::AudioWarningFilePath);
  if (path.isEmpty()) path = services_.programFolder + QStringLiteral("/ello.Mp3");
  tick_.SetAudioWarning(settings_.Get(setting::AudioWarnings) && QFileInfo::exists(path), path);
}

void Console::SetUpLevels() {
  monitor_.SetLevel(play_.monitorVolume);
  jingles_.SetSlider(sliders_.jingleVolume);
  jingles_.SetBankName(0, settings_.Get(setting::FirstJingle));
  for (std::size_t tag = 0; tag < sliders_.tags.size(); ++tag)
    jingles_.SetBankName(static_cast<int>(tag) + 1, sliders_.tags[tag]);
}

void Console::SaveJingles() {
  constexpr qsizetype kCaptionLetters = 12;
  sliders_.jingleVolume = jingles_.Slider();
  settings_.Set(setting::FirstJingle, jingles_.BankName(0));
  for (std::size_t tag = 0; tag < sliders_.tags.size(); ++tag) {
    sliders_.tags[tag] = jingles_.BankName(static_cast<int>(tag) + 1);
    sliders_.captions[tag] = sliders_.tags[tag].left(kCaptionLetters);
  }
  settings_.Set(setting::JingleSettings, sliders_);
}

void Console::SaveSettings() {
  play_.fadeSpeed = transitions_.FadeSpeed();
  play_.delta = auto_.SldDelta();
  play_.monitorVolume = monitor_.Level();
  sliders_.autoFadeDepth = speak_.DepthSlider();
  sliders_.autoFadeSpeed = speak_.SpeedSlider();
  SaveJingles();
  settings_.Set(setting::PlaySettings, play_);
  settings_.Set(setting::LastPanFadeBias, settings_.Get(setting::PanFadeBias));
}

}  // namespace kelvo
