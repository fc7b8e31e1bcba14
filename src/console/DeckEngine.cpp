#include "console/DeckEngine.h"

#include "database/TrackNames.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <cmath>
#include <limits>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kFrameUpdate = 200ms;
constexpr Nanoseconds kOpenPoll = 250ms;
/// A deck whose position stands for so long after its start gives no sound.
constexpr Nanoseconds kNoSound = 2s;
/// The going deck is waited for only when it has just begun.
constexpr Nanoseconds kNoSoundOfOther = 300ms;
/// A deck whose position stands for so long stands still: three looks at it.
constexpr Nanoseconds kStands = 3 * kFrameUpdate;
/// So far from its start a deck moves for sure, seconds.
constexpr double kMoved = 0.1;
/// A position nearer to the end than this is the end, seconds.
constexpr double kAtEnd = 0.05;
/// So far in a track is surely heard, seconds.
constexpr double kHeard = 0.5;
/// Pace of a held position button: the next pulse waits until the last one can be seen.
constexpr Nanoseconds kFastMovePulse = 20ms;

const QString kLoadTag = QStringLiteral(" loaddk");

int RemainOf(const DeckRecord& record) {
  return static_cast<int>(std::clamp<qint64>(Int(record.Duration - record.Position), 0, 32767));
}

QString DeckWord(Deck deck) {
  return QStringLiteral("DECK ") + QString::number(DisplayNumber(deck));
}

PanelQuestion PlayingLive(Deck deck, const QString& button, PanelAction action, LoadRequest load = {}) {
  return {DeckWord(deck) + QStringLiteral(" IS PLAYING LIVE !\r\n"), button, action, deck, std::move(load)};
}

/// The second to the fifth entry of a reference line, or "None".
QString ListForDisplay(const QString& line) {
  const QStringList fields = line.split(QLatin1Char(','));
  if (fields.size() <= 1) return QStringLiteral("None");
  return fields.mid(1, 4).join(QStringLiteral(": "));
}

/// As it stands: a number that is neither soft nor strong has its meaning too.
int Style(const QString& text) {
  return WholeNumber(text, std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max());
}

QString LastField(const QString& list) {
  return list.section(QLatin1Char(','), -1);
}

}  // namespace

/// What the track info file said.
struct DeckEngine::TrackInfoFile {
  std::optional<TextFile> lines;
  std::exception_ptr failure;  ///< it is there and cannot be read
};

DeckEngine::DeckEngine(Services services) : services_(std::move(services)) {
  for (const Deck deck : kDecks) {
    players_[deck] = services_.audio.MakePlayer();
    players_[deck]->OnEndOfStream = [this, deck] {
      Guarded(QStringLiteral(" eos"), [&] { EndOfStream(deck); });
    };
    SetLoss(deck, 0);
  }
  frameUpdateTimer_ = services_.loop.Every(kFrameUpdate, [this] { FrameUpdate(); });
}

DeckEngine::~DeckEngine() {
  // Their jobs hold on to the players.
  for (const Deck deck : kDecks) {
    loads_[deck].Cancel();
    fastMoves_[deck].Cancel();
  }
}

QString DeckEngine::BaseNameOf(const QString& path) {
  return BaseName(QFileInfo(path).fileName());
}

void DeckEngine::RecordSession(SessionCode code, Deck deck, double position) {
  services_.session.RecordSessionEvent({code, deck, decks_[deck].CatalogueIndex, position});
}

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
    return title.compare(row.Text(TrackColumn), Qt::CaseInsensitive) == 0 ||
           (!path.isEmpty() && path == row.Text(PathColumn));
  };
  return same(decks_[deck].Title, decks_[deck].FilePath) ||
         same(BaseNameOf(loadPaths_[deck]), loadPaths_[deck]);
}

void DeckEngine::LoadCommand(Deck deck, Disks::Patience patience) {
  DeckRecord& record = decks_[deck];
  const ConsoleState& state = services_.state;
  if (state.TransitionActive) {
    record.LoadFailed = FadeFailsLoad(deck);
    Q_EMIT Changed(deck);
    return;
  }
  if (std::exchange(record.LoadFailed, false)) Q_EMIT Changed(deck);
  if (record.Loading) return;
  const std::optional<LoadRequest> request = FindRequest();
  if (!state.PreviewOn) {
    if (!request) return;
    const QueueEntry& row = services_.queue.Row(services_.queue.Selected());
    if (row.Text(TrackColumn).compare(record.Title, Qt::CaseInsensitive) == 0) return;
    if (!state.AutoPlayOn) {
      if (record.Live()) {
        services_.panel.Open(
            PlayingLive(deck, QStringLiteral("LOAD NEW TRACK"), PanelAction::LoadTrack, *request));
        return;
      }
      if (Holds(Other(deck), row)) {
        services_.panel.Open(
            {QStringLiteral("TRACK ALREADY LOADED IN ") + DeckWord(Other(deck)) + QStringLiteral(" !\r\n"),
             QStringLiteral("LOAD SAME TRACK"), PanelAction::LoadTrack, deck, *request});
        return;
      }
    }
  }
  if (request) {
    LoadTrack(deck, *request, patience);
  } else {
    EndLoad(deck, DeckLoad::Dropped);
  }
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
  request.row = row.Id;
  request.track = row.Track();
  request.path = row.Text(PathColumn);
  request.requestText = row.Text(ReqdataColumn);
  return request;
}

void DeckEngine::LoadDeck(Deck deck, Disks::Patience patience) {
  if (decks_[deck].Loading) return;
  if (const std::optional<LoadRequest> request = FindRequest()) {
    LoadTrack(deck, *request, patience);
  } else {
    EndLoad(deck, DeckLoad::Dropped);
  }
}

void DeckEngine::LoadTrack(Deck deck, const LoadRequest& request, Disks::Patience patience) {
  DeckRecord& record = decks_[deck];
  if (record.Loading) return;
  record.Loading = true;
  loadPaths_[deck] = request.path;
  record.Info.clear();
  Q_EMIT Changed(deck);
  loads_[deck] = RunLoad(deck, request, patience);
}

Job<> DeckEngine::RunLoad(Deck deck, LoadRequest request, Disks::Patience patience) {
  DeckLoad outcome = DeckLoad::Dropped;
  try {
    outcome = co_await Load(deck, request, patience);
  } catch (...) {
    basHandleError(kLoadTag);
  }
  EndLoad(deck, outcome);
}

Job<DeckLoad> DeckEngine::Load(Deck deck, LoadRequest request, Disks::Patience patience) {
  const QString path = request.path;
  Job<TrackInfoFile> info = ReadInfo(TrackInfoPath(services_.paths, BaseNameOf(path)));
  const auto look = [path] { return CheckMediaFile(path); };
  const std::optional<bool> good = co_await services_.disks.Look(path, look, patience);
  if (!good) co_return DeckLoad::NoAnswer;
  if (!*good) co_return DeckLoad::BadFile;
  const TrackInfoFile file = co_await std::move(info);
  openWatches_[deck] = {0, services_.loop.Elapsed(), false,
                        services_.loop.Every(kOpenPoll, [this, deck] { WatchOpen(deck); })};
  const OpenResult opened = co_await players_[deck]->Open(path);
  if (opened.kind == OpenResult::Kind::Superseded) co_return DeckLoad::Dropped;
  if (opened.kind == OpenResult::Kind::Failed) {
    NoteInLog(opened.error);
    co_return DeckLoad::BadFile;
  }
  TakeTrack(deck, request, file);
  co_return DeckLoad::Loaded;
}

Job<DeckEngine::TrackInfoFile> DeckEngine::ReadInfo(QString path) {
  TrackInfoFile file;
  try {
    const auto read = [path]() -> std::optional<TextFile> {
      const QString found = FindFile(path);
      if (found.isEmpty()) return std::nullopt;
      return TextFile::Read(found);
    };
    // Whatever its disk does, a track can be played with the defaults.
    auto lines = co_await services_.disks.Look(path, read, Disks::Patience::Air);
    if (lines) file.lines = std::move(*lines);
    if (!lines) NoteInLog(QStringLiteral("The disk of %1 does not answer: the defaults are taken").arg(path));
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
    services_.disks.Suspect(loadPaths_[deck]);
  if (waited >= Disks::kLookLimit) GiveUpLoad(deck);
}

void DeckEngine::GiveUpLoad(Deck deck) {
  if (!decks_[deck].Loading) return;
  loads_[deck].Cancel();
  EndLoad(deck, DeckLoad::NoAnswer);
}

void DeckEngine::EndLoad(Deck deck, DeckLoad outcome) {
  DeckRecord& record = decks_[deck];
  openWatches_[deck].timer.Stop();
  const QString path = std::exchange(loadPaths_[deck], QString());
  record.Loading = false;
  record.LastLoad = outcome;
  if (outcome == DeckLoad::BadFile) record.Info = QStringLiteral("Bad File ") + path;
  if (outcome == DeckLoad::NoAnswer) {
    record.Info = tr("Disk Does Not Answer : ") + path;
    NoteInLog(QStringLiteral("The load of %1 was given up: its disk does not answer").arg(path));
  }
  Q_EMIT Changed(deck);
  if (OnLoaded) OnLoaded(deck, outcome);
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

  if (file.failure) basHandleError(kLoadTag, file.failure);
  if (file.lines) {
    TakeTrackInfo(record, *file.lines);
  } else {
    const TrackDefaults& defaults = services_.defaults;
    record.TrackInfoText = QStringLiteral("Undefined Media File");
    record.Info = QStringLiteral("Default - Track Start:");
    record.PlayMode = QString::number(defaults.DefaultFade) + QStringLiteral(",1,1");
    record.FadePosition = QString::number(defaults.DefaultDelta);
    record.FadeSpeed = QString::number(defaults.DefaultFadeSpeed);
    record.StartStyle = defaults.DefaultStartType;
    record.EndStyle = defaults.DefaultEndType;
  }
  if (!state.PreviewOn && !request.requestText.isEmpty()) {
    const QString stars(std::max(infoTextWidth_ - 8, 1), QLatin1Char('*'));
    record.TrackInfoText.prepend(stars + QStringLiteral("REQUESTS") + stars + QStringLiteral("\r\n") +
                                 request.requestText + QStringLiteral("\r\n"));
  }

  if (old.State != DeckState::Empty && old.Position > 0 && old.Position < old.Duration) {
    services_.queue.MarkQueueRow(old.CatalogueIndex, QueueStatus::Faded);
  }
  // Automatic play looks at the track first.
  if (!state.AutoPlayOn) TakeFadeIn(deck);
  if (!state.PlaysByItself()) RecordSession(SessionCode::Loaded, deck);
}

void DeckEngine::TakeTrackInfo(DeckRecord& record, const TextFile& lines) {
  const auto line = [&lines](InfoLine::Line number) { return lines.Line(number); };
  const auto word = [](int style) { return style > 0 ? QStringLiteral("Strong") : QStringLiteral("Soft"); };
  record.PlayMode = CompletePlayMode(line(InfoLine::PlayMode));
  record.FadePosition = line(InfoLine::FadePosition);
  record.FadeSpeed = line(InfoLine::FadeSpeed);
  record.StartStyle = Style(line(InfoLine::StartStyle));
  record.EndStyle = line(InfoLine::EndStyle).trimmed().isEmpty() ? services_.defaults.DefaultEndType
                                                                 : Style(line(InfoLine::EndStyle));

  const QString gap = QStringLiteral("   ");
  const QString lineBreak = QStringLiteral("\r\n");
  QString text = QStringLiteral("Date : ") + line(InfoLine::ReleaseDate) + gap + QStringLiteral("Hi Pos : ") +
                 line(InfoLine::HiPos) + gap + QStringLiteral("BPM : ") + line(InfoLine::Bpm) + gap +
                 QStringLiteral("Dur : ") + MinutesSeconds(record.Duration) + lineBreak;
  text += QStringLiteral("Genres  ") + ListForDisplay(line(InfoLine::Categories)) + lineBreak;
  text += QStringLiteral("Artists   ") + ListForDisplay(line(InfoLine::Artists)) + lineBreak;
  text += QStringLiteral("Albums  ") + ListForDisplay(line(InfoLine::Albums)) + lineBreak;
  for (qsizetype number = InfoLine::Comments; number < lines.Count(); ++number) {
    const QString comment = lines.Line(number);
    if (!comment.isEmpty()) text += comment + lineBreak;
  }
  record.TrackInfoText = text;

  record.Info = QStringLiteral("Starts: ") + word(record.StartStyle) + QStringLiteral(" : ") +
                QStringLiteral("Ends: ") + word(record.EndStyle);
}

void DeckEngine::TakeFadeIn(Deck deck) {
  const DeckRecord& record = decks_[deck];
  const ConsoleState& state = services_.state;
  const bool fadesIn = Val(LastField(record.PlayMode)) > 1 && Val(LastField(record.FadePosition)) > 3;
  if (services_.settings.AfadeSet && fadesIn && record.FadeSpeed.contains(QLatin1Char(',')) && OnFadeSpeed) {
    OnFadeSpeed(50 - WholeNumber(record.FadeSpeed.section(QLatin1Char(','), 1, 1), 0, 50));
  }
  if (state.AutoPlayOn && !state.PreviewOn && CheckFadeOverride) CheckFadeOverride(deck);
}

void DeckEngine::StartDeck(Deck deck) {
  DeckRecord& record = decks_[deck];
  if (record.State == DeckState::Empty) return;
  players_[deck]->Play();
  record.State = DeckState::Playing;
  record.PlayedOut = false;
  startedLast_ = deck;
  const double from = players_[deck]->CurrentPosition();
  motions_[deck] = {from, from, services_.loop.Elapsed(),
                    services_.loop.After(kNoSound, [this, deck] { CheckStart(deck); })};
  services_.queue.MarkQueueRow(record.CatalogueIndex, QueueStatus::NowPlaying);
  if (!services_.state.PlaysByItself()) RecordSession(SessionCode::TrackStarted, deck);
  Q_EMIT Changed(deck);
  if (OnStarted) OnStarted(deck);
}

void DeckEngine::CheckStart(Deck deck) {
  const DeckRecord& record = decks_[deck];
  const double moved = players_[deck]->CurrentPosition() - motions_[deck].startedAt;
  if (record.State != DeckState::Playing || moved >= kMoved) return;
  NoteInLog(QStringLiteral("A start failed, nothing is heard of %1").arg(record.FilePath));
  services_.disks.Suspect(record.FilePath);
  SetInfo(deck, tr("Start Failed : Nothing Is Heard"));
  if (OnStartFailed) OnStartFailed(deck);
}

bool DeckEngine::StandsAtEnd(Deck deck) const {
  // The stored length and the true one may differ: either end is one.
  const MediaPlayer& player = *players_[deck];
  return decks_[deck].Position >= decks_[deck].Duration ||
         player.CurrentPosition() >= player.Duration() - kAtEnd;
}

void DeckEngine::RestartDeck(Deck deck) {
  if (players_[deck]->State() == PlayState::Playing) {
    startedLast_ = deck;
    if (decks_[deck].State != DeckState::Playing) SetState(deck, DeckState::Playing);
    return;
  }
  if (StandsAtEnd(deck)) SetPosition(deck, 0);
  StartDeck(deck);
}

void DeckEngine::ManualStart(Deck deck) {
  const DeckRecord& record = decks_[deck];
  if (record.Loading || record.State == DeckState::Empty || record.State == DeckState::Playing) return;
  if (record.State == DeckState::Loaded) {
    StartDeck(deck);
  } else {
    RestartDeck(deck);
  }
}

void DeckEngine::StopCommand(Deck deck) {
  const DeckRecord& record = decks_[deck];
  if (services_.state.TransitionActive || record.State == DeckState::Empty) return;
  if (record.Live()) {
    services_.panel.Open(PlayingLive(deck, QStringLiteral("STOP ") + DeckWord(deck), PanelAction::StopDeck));
    return;
  }
  StopByHand(deck);
}

void DeckEngine::StopByHand(Deck deck) {
  StopDeck(deck);
  if (OnStoppedByHand) OnStoppedByHand(deck);
}

void DeckEngine::StopDeck(Deck deck) {
  DeckRecord& record = decks_[deck];
  if (record.State == DeckState::Empty) return;
  // One that has played out keeps the end as its position.
  if (players_[deck]->State() == PlayState::Playing) {
    players_[deck]->Stop();
    record.Position = players_[deck]->CurrentPosition();
  }
  record.State = DeckState::Done;
  services_.queue.MarkQueueRow(record.CatalogueIndex, QueueStatus::Stopped);
  RecordSession(SessionCode::TrackStopped, deck);
  Q_EMIT Changed(deck);
}

bool DeckEngine::GivesSound(Deck deck) const {
  const double position = players_[deck]->CurrentPosition();
  return decks_[deck].State == DeckState::Playing && position >= kHeard &&
         position - motions_[deck].startedAt >= kMoved && Moves(deck);
}

bool DeckEngine::Moves(Deck deck) const {
  const bool plays = players_[deck]->State() == PlayState::Playing;
  return plays && (players_[deck]->CurrentPosition() != motions_[deck].position ||
                   services_.loop.Elapsed() - motions_[deck].movedAt < kStands);
}

std::optional<Deck> DeckEngine::OnAir() const {
  for (const Deck deck : {startedLast_, Other(startedLast_)}) {
    if (decks_[deck].State == DeckState::Playing) return deck;
  }
  return std::nullopt;
}

Job<> DeckEngine::WaitForAudio(Deck deck, std::function<bool()> givenUp) {
  PerDeck<double> positions;
  PerDeck<Nanoseconds> movedAt;
  for (const Deck each : kDecks) {
    positions[each] = players_[each]->CurrentPosition();
    movedAt[each] = services_.loop.Elapsed();
  }
  const auto waiting = [&](Deck each, Nanoseconds limit) {
    const bool plays =
        decks_[each].State == DeckState::Playing && players_[each]->State() == PlayState::Playing;
    if (!plays || GivesSound(each)) return false;
    const Nanoseconds now = services_.loop.Elapsed();
    const double position = players_[each]->CurrentPosition();
    if (std::exchange(positions[each], position) != position) movedAt[each] = now;
    return now - movedAt[each] < limit;
  };
  for (;;) {
    const bool coming = waiting(deck, kNoSound);
    const bool going = waiting(Other(deck), kNoSoundOfOther);
    if ((!coming && !going) || (givenUp && givenUp())) co_return;
    co_await services_.loop.Sleep(10ms);
  }
}

bool DeckEngine::WasRecentlyPlayed(Deck deck) const {
  return decks_[deck].State == DeckState::Done &&
         services_.queue.CommentOf(decks_[deck].CatalogueIndex).startsWith(QStringLiteral("Played"));
}

void DeckEngine::BeginFastMove(Deck deck, FastMove move) {
  DeckRecord& record = decks_[deck];
  if (services_.state.TransitionActive || record.State == DeckState::Empty || record.Loading) return;
  switch (move) {
    case FastMove::Rewind:
    case FastMove::Forward:
      if (record.State != DeckState::Playing) fastMoves_[deck] = RunFastMove(deck, move);
      return;
    case FastMove::SkipToStart:
      if (record.Live()) return;
      players_[deck]->SetCurrentPosition(1);
      record.Position = 0;
      break;
    case FastMove::SkipToEnd:
      if (record.Live()) return;
      record.Position = static_cast<double>(Int(record.Duration));
      players_[deck]->SetCurrentPosition(record.Position);
      break;
  }
  moved_[deck] = true;
  record.RemainSeconds = RemainOf(record);
  Q_EMIT Changed(deck);
}

Job<> DeckEngine::RunFastMove(Deck deck, FastMove move) {
  double step = services_.settings.FFwFRev;
  for (;;) {
    DeckRecord& record = decks_[deck];
    if (services_.state.TransitionActive || record.State == DeckState::Playing) co_return;
    if (move == FastMove::Forward) {
      record.Position = std::min(record.Position + step,
                                 std::max(record.Position, static_cast<double>(Int(record.Duration))));
    } else {
      record.Position = std::max(record.Position - step, std::min(record.Position, 1.0));
    }
    players_[deck]->SetCurrentPosition(record.Position);
    moved_[deck] = true;
    record.RemainSeconds = RemainOf(record);
    Q_EMIT Changed(deck);
    co_await services_.loop.Sleep(kFastMovePulse);
    step += 0.01;
  }
}

void DeckEngine::EndFastMove(Deck deck) {
  fastMoves_[deck].Cancel();
  if (!std::exchange(moved_[deck], false)) return;
  RecordSession(deck == Deck::One ? SessionCode::PositionChangedDeckOne : SessionCode::PositionChangedDeckTwo,
                deck, decks_[deck].Position);
}

void DeckEngine::SetLoss(Deck deck, int loss, int level) {
  decks_[deck].Loss = std::clamp(loss, 0, kMostLoss);
  decks_[deck].Level = std::clamp(level, 0, kMostLoss);
  players_[deck]->SetVolume(-2 * decks_[deck].Loss);
  Q_EMIT Changed(deck);
}

void DeckEngine::SetState(Deck deck, DeckState state) {
  decks_[deck].State = state;
  Q_EMIT Changed(deck);
}

void DeckEngine::SetInfo(Deck deck, const QString& info) {
  decks_[deck].Info = info;
  Q_EMIT Changed(deck);
}

void DeckEngine::SetPosition(Deck deck, double seconds) {
  decks_[deck].Position = seconds;
  decks_[deck].RemainSeconds = RemainOf(decks_[deck]);
  players_[deck]->SetCurrentPosition(seconds);
  Q_EMIT Changed(deck);
}

void DeckEngine::FrameUpdate() {
  for (const Deck deck : kDecks) {
    DeckRecord& record = decks_[deck];
    Motion& motion = motions_[deck];
    const double position = players_[deck]->CurrentPosition();
    if (std::exchange(motion.position, position) != position) motion.movedAt = services_.loop.Elapsed();
    // A deck that stands has the position that it was given: its player may keep a different one on purpose.
    if (players_[deck]->State() != PlayState::Playing) continue;
    record.Position = position;
    record.RemainSeconds = RemainOf(record);
    Q_EMIT Changed(deck);
  }
}

void DeckEngine::EndOfStream(Deck deck) {
  DeckRecord& record = decks_[deck];
  const ConsoleState& state = services_.state;
  record.Position = players_[deck]->CurrentPosition();
  if (!state.PlaysByItself()) {
    CheckTrackTime(deck);
    RecordSession(SessionCode::EndOfTrack, deck, static_cast<double>(Int(record.Duration)));
  }
  record.PlayedOut = true;
  services_.queue.MarkQueueRow(record.CatalogueIndex, QueueStatus::Played);
  record.Position = record.Duration;
  record.RemainSeconds = 0;
  record.State = DeckState::Done;
  services_.state.NextTrackDue = true;
  Q_EMIT Changed(deck);
  if (OnEndOfStream) OnEndOfStream(deck);
}

void DeckEngine::CheckTrackTime(Deck deck) {
  const DeckRecord& record = decks_[deck];
  if (std::abs(record.Position - record.Duration) <= 1) return;
  const double length = players_[deck]->Duration();
  if (std::abs(record.Position - length) <= 1) {
    AdjustTrackTime(record.CatalogueIndex, deck, record.Position);
    return;
  }
  // Its disk went, or its data is damaged: that says nothing of the track's length.
  NoteInLog(QStringLiteral("The sound of %1 broke off at %2 of %3")
                .arg(record.FilePath, MinutesSeconds(record.Position), MinutesSeconds(length)));
}

void DeckEngine::AdjustTrackTime(Mref track, Deck deck, double position) {
  if (!services_.settings.FixTrackDur || !services_.catalogue.IsTrack(track)) return;
  const auto seconds = static_cast<double>(Int(position));
  services_.catalogue.SetTrackDuration(track, seconds);
  writes_.Add(WriteDuration(decks_[deck].FilePath, DurationText(seconds)));
  decks_[deck].Title = QStringLiteral("Track Time Was Adjusted!");
}

Job<> DeckEngine::WriteDuration(QString filePath, QString duration) {
  try {
    const QString path = TrackInfoPath(services_.paths, BaseNameOf(filePath));
    const auto patch = [path, duration] {
      const QString found = FindFile(path);
      if (found.isEmpty()) return;
      TextFile lines = TextFile::Read(found);
      lines.SetLine(InfoLine::DurationSeconds, duration);
      lines.Write(found);
    };
    co_await services_.loop.Offload(EventLoop::Lane::Files, patch);
  } catch (...) {
    basHandleError(QStringLiteral(" adjtime"));
  }
}

}  // namespace kelvo
