// How a track comes into a deck.

#include "console/decks/DeckEngine.h"
#include "console/decks/DeckSettings.h"
#include "console/decks/DeckWords.h"
#include "database/DatabaseSettings.h"
#include "database/TrackNames.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kOpenPoll = 250ms;
constexpr Nanoseconds kOpenStalls = 1s;

const QString kLoadTag = QStringLiteral(" loaddk");

}  // namespace

/// What the track info file said.
struct DeckEngine::TrackInfoFile {
  std::optional<TrackInfo> info;
  std::exception_ptr failure;  ///< it is there and cannot be read
};

bool DeckEngine::FadeFailsLoad(Deck deck) const {
  const int side = services_.state.CrossPan;
  const int fromRest = deck == Deck::One ? side + 200 : 200 - side;
  return services_.state.TransitionActive && fromRest < 100;
}

bool DeckEngine::LoadCommandActs(Deck deck) const {
  return services_.state.TransitionActive ? FadeFailsLoad(deck) : !decks_[deck].Loading;
}

bool DeckEngine::Holds(Deck deck, const QueueEntry& row) const {
  const auto same = [&row](const QString& title, const QString& path) {
    return title.compare(row.title, Qt::CaseInsensitive) == 0 || (!path.isEmpty() && path == row.path);
  };
  return same(decks_[deck].Title, decks_[deck].FilePath) ||
         same(BaseNameOf(coming_[deck].request.path), coming_[deck].request.path);
}

std::optional<LoadRequest> DeckEngine::Commanded(Deck deck) {
  DeckRecord& record = decks_[deck];
  const ConsoleState& state = services_.state;
  if (state.TransitionActive) {
    record.LoadFailed = FadeFailsLoad(deck);
    Q_EMIT Changed(deck);
    return std::nullopt;
  }
  if (std::exchange(record.LoadFailed, false)) Q_EMIT Changed(deck);
  if (record.Loading) return std::nullopt;
  std::optional<LoadRequest> request = FindRequest();
  if (state.PreviewOn || !request) return request;
  const QueueEntry& row = services_.queue.Row(services_.queue.Selected());
  if (row.title.compare(record.Title, Qt::CaseInsensitive) == 0) return std::nullopt;
  if (state.PlaysByItself()) return request;
  if (record.Live()) {
    services_.panel.Open(
        PlayingLive(deck, QStringLiteral("LOAD NEW TRACK"), PanelAction::LoadTrack, *request));
    return std::nullopt;
  }
  if (Holds(Other(deck), row)) {
    services_.panel.Open(
        {QStringLiteral("TRACK ALREADY LOADED IN ") + DeckWord(Other(deck)) + QStringLiteral(" !\r\n"),
         QStringLiteral("LOAD SAME TRACK"), PanelAction::LoadTrack, deck, *request});
    return std::nullopt;
  }
  return request;
}

void DeckEngine::LoadCommand(Deck deck) {
  if (const std::optional<LoadRequest> request = Commanded(deck))
    BeginLoad(deck, *request, Disks::Patience::Person);
}

Job<DeckLoad> DeckEngine::LoadDeck(Deck deck) {
  const bool fades = services_.state.TransitionActive;
  const std::optional<LoadRequest> request = fades ? FindRequest() : Commanded(deck);
  if (!request || decks_[deck].Loading) co_return DeckLoad::Dropped;
  BeginLoad(deck, *request, Disks::Patience::Air);
  co_return co_await LoadEnds(deck);
}

Job<DeckLoad> DeckEngine::LoadEnds(Deck deck) {
  if (!decks_[deck].Loading) co_return DeckLoad::Dropped;
  const auto end = std::make_shared<OneShot<DeckLoad>>();
  loadWaits_[deck].push_back(end);
  co_return co_await end->Wait();
}

std::optional<LoadRequest> DeckEngine::FindRequest() {
  LoadRequest request;
  if (services_.state.PreviewOn) {
    const std::optional<Mref> picked = PickPreview ? PickPreview() : std::nullopt;
    if (!picked) return std::nullopt;
    request.track = *picked;
    request.path = services_.catalogue.TrackPaths(*picked);
    return request;
  }
  const int selected = services_.queue.Selected();
  if (selected == 0) return std::nullopt;
  const QueueEntry& row = services_.queue.Row(selected);
  request.row = row.id;
  request.track = row.track;
  request.path = row.path;
  request.requestText = row.requestText;
  return request;
}

void DeckEngine::BeginLoad(Deck deck, const LoadRequest& request, Disks::Patience patience) {
  DeckRecord& record = decks_[deck];
  if (record.Loading) return;
  record.Loading = true;
  coming_[deck] = {request, patience};
  openWatches_[deck] = {};
  record.Info.clear();
  Q_EMIT Changed(deck);
  loads_[deck] = RunLoad(deck);
}

Job<> DeckEngine::RunLoad(Deck deck) {
  DeckLoad outcome = DeckLoad::Dropped;
  try {
    outcome = co_await Load(deck);
  } catch (...) {
    basHandleError(kLoadTag, tr("The track could not be loaded: %1").arg(coming_[deck].request.path));
  }
  EndLoad(deck, outcome);
}

Job<DeckLoad> DeckEngine::Load(Deck deck) {
  const QString path = coming_[deck].request.path;
  Job<TrackInfoFile> info = ReadInfo(TrackInfoPath(services_.paths, BaseNameOf(path)));
  const auto look = [path] { return CheckMediaFile(path); };
  const std::optional<bool> good = co_await services_.disks.Look(path, look, coming_[deck].patience);
  if (!good) co_return DeckLoad::NoAnswer;
  if (!*good) co_return DeckLoad::BadFile;
  TrackInfoFile file = co_await std::move(info);
  const std::uint64_t steps = players_[deck]->OpenSteps();
  openWatches_[deck] = {steps, steps, services_.loop.Elapsed(), false,
                        services_.loop.Every(kOpenPoll, [this, deck] { WatchOpen(deck); })};
  const OpenResult opened = co_await players_[deck]->Open(path);
  if (opened.kind == OpenResult::Kind::Superseded) co_return DeckLoad::Dropped;
  if (opened.kind == OpenResult::Kind::Failed) {
    NoteInLog(opened.error);
    co_return DeckLoad::BadFile;
  }
  if (coming_[deck].saved) file = {std::exchange(coming_[deck].saved, std::nullopt), {}};
  TakeTrack(deck, coming_[deck].request, file);
  co_return DeckLoad::Loaded;
}

Job<DeckEngine::TrackInfoFile> DeckEngine::ReadInfo(QString path) {
  TrackInfoFile file;
  try {
    const auto read = [path] { return ReadTrackInfo(path); };
    // Whatever its disk does, a track can be played with the defaults.
    auto info = co_await services_.disks.Look(path, read, Disks::Patience::Air);
    if (info) file.info = std::move(*info);
    if (!info) NoteInLog(QStringLiteral("The disk of %1 does not answer: the defaults are taken").arg(path));
  } catch (...) {
    file.failure = std::current_exception();
  }
  co_return file;
}

void DeckEngine::WatchOpen(Deck deck) {
  OpenWatch& watch = openWatches_[deck];
  const Nanoseconds now = services_.loop.Elapsed();
  const std::uint64_t steps = players_[deck]->OpenSteps();
  if (std::exchange(watch.steps, steps) != steps) watch.movedAt = now;
  const Nanoseconds waited = now - watch.movedAt;
  if (waited >= kOpenPoll * 2 && !std::exchange(watch.suspected, true))
    services_.disks.Suspect(coming_[deck].request.path);
  if (waited >= Disks::kLookLimit) GiveUpLoad(deck);
}

bool DeckEngine::LoadGetsOn(Deck deck) const {
  const OpenWatch& watch = openWatches_[deck];
  return watch.steps != watch.stepsAtFirst && services_.loop.Elapsed() - watch.movedAt < kOpenStalls;
}

void DeckEngine::GiveUpLoad(Deck deck) {
  if (!decks_[deck].Loading) return;
  loads_[deck].Cancel();
  EndLoad(deck, DeckLoad::NoAnswer);
}

void DeckEngine::EndLoad(Deck deck, DeckLoad outcome) {
  DeckRecord& record = decks_[deck];
  openWatches_[deck].timer.Stop();
  const QString path = std::exchange(coming_[deck], Coming()).request.path;
  record.Loading = false;
  if (outcome == DeckLoad::BadFile) record.Info = QStringLiteral("Bad File ") + path;
  if (outcome == DeckLoad::NoAnswer) {
    record.Info = tr("Disk Does Not Answer : ") + path;
    NoteInLog(QStringLiteral("The load of %1 was given up: its disk does not answer").arg(path));
  }
  Q_EMIT Changed(deck);
  // Later: who waits may begin the next load, which takes the place of the job that ends here.
  for (const auto& wait : std::exchange(loadWaits_[deck], {}))
    services_.loop.Post([wait, outcome] { wait->Set(outcome); });
}

void DeckEngine::TakeTrack(Deck deck, const LoadRequest& request, const TrackInfoFile& file) {
  DeckRecord& record = decks_[deck];
  const DeckRecord old = record;
  const ConsoleState& state = services_.state;

  // A button still held was meant for the track before.
  fastMoves_[deck].Cancel();
  moved_[deck] = false;
  record.Title = ProperCase(BaseNameOf(request.path));
  record.CatalogueIndex = request.track;
  record.Row = request.row;
  record.PlayedOut = false;
  const double known = services_.catalogue.TrackDurations(request.track);
  record.Duration = known > 0 ? known : players_[deck]->Duration();
  record.Position = 0;
  record.RemainSeconds = RemainOf(record);
  record.State = DeckState::Loaded;
  record.FilePath = request.path;

  if (file.failure)
    basHandleError(kLoadTag, file.failure, tr("What is known of %1 could not be read.").arg(record.Title));
  const bool requested = !state.PreviewOn && !request.requestText.isEmpty();
  banners_[deck] = requested ? RequestWords(request.requestText, infoTextWidth_) : QString();
  if (file.info) {
    TakeInfo(deck, *file.info);
    record.Info = StyleWords(record.Play);
  } else {
    const TrackDefaults defaults = ReadTrackDefaults(services_.settings);
    record.Play = DefaultTrackInfo({}, record.Duration, defaults, {}).Play(defaults);
    record.TrackInfoText = banners_[deck] + QStringLiteral("Undefined Media File");
    record.Info = QStringLiteral("Default - Track Start:");
  }

  if (old.State != DeckState::Empty && old.Position > 0 && old.Position < old.Duration) {
    services_.queue.MarkQueueRow(old.CatalogueIndex, RowStatus::Faded, old.Row);
  }
  // Automatic play looks first at what it loads itself.
  if (coming_[deck].patience == Disks::Patience::Person) TakeFadeIn(deck);
  if (!state.PlaysByItself()) RecordSession(SessionCode::Loaded, deck);
}

void DeckEngine::TakeFadeIn(Deck deck) {
  const ConsoleState& state = services_.state;
  const TrackPlaySettings& play = decks_[deck].Play;
  const bool fadesIn = IsFade(play.Mode.fadeIn) && play.FadePosition.FadeIn() > 3 && play.FadeSpeed.ownFadeIn;
  if (services_.settings.Get(setting::AfadeSet) && fadesIn && OnFadeSpeed)
    OnFadeSpeed(kMostFadeSpeed - *play.FadeSpeed.ownFadeIn);
  if (state.AutoPlayOn && !state.PreviewOn && CheckFadeOverride) CheckFadeOverride(deck);
}

}  // namespace kelvo
