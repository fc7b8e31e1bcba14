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
/// A load that takes longer waits for a disk or a share that does not answer: the deck is given back.
constexpr Nanoseconds kLoadLimit = 10s;
/// A deck whose position stands for so long gives no sound.
constexpr Nanoseconds kNoSound = 2s;
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

PanelQuestion PlayingLive(Deck deck, const QString& button, PanelAction action) {
  return {DeckWord(deck) + QStringLiteral(" IS PLAYING LIVE !\r\n"), button, action, deck};
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

/// What a load is about: found when the command is given, so that the queue may change meanwhile.
struct DeckEngine::Request {
  Mref track = Mref::None;
  QString path;
  QString requestText;
};

/// What the disk said of the track.
struct DeckEngine::TrackFile {
  bool good = false;
  std::optional<TextFile> info;
  std::exception_ptr infoFailure;  ///< the track info file is there and cannot be read
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

void DeckEngine::LoadCommand(Deck deck) {
  DeckRecord& record = decks_[deck];
  const ConsoleState& state = services_.state;
  if (state.TransitionActive) {
    record.LoadFailed = FadeFailsLoad(deck);
    Q_EMIT Changed(deck);
    return;
  }
  if (std::exchange(record.LoadFailed, false)) Q_EMIT Changed(deck);
  if (record.Loading) return;
  if (!state.PreviewOn) {
    const int selected = services_.queue.Selected();
    if (selected == 0) return;
    const QueueEntry& row = services_.queue.Row(selected);
    if (row.Text(TrackColumn).compare(record.Title, Qt::CaseInsensitive) == 0) return;
    if (!state.AutoPlayOn) {
      if (record.Live()) {
        services_.panel.Open(PlayingLive(deck, QStringLiteral("LOAD NEW TRACK"), PanelAction::LoadTrack));
        return;
      }
      if (Holds(Other(deck), row)) {
        services_.panel.Open(
            {QStringLiteral("TRACK ALREADY LOADED IN ") + DeckWord(Other(deck)) + QStringLiteral(" !\r\n"),
             QStringLiteral("LOAD SAME TRACK"), PanelAction::LoadTrack, deck});
        return;
      }
    }
  }
  LoadDeck(deck);
}

std::optional<DeckEngine::Request> DeckEngine::FindRequest() {
  Request request;
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
  services_.queue.SetQueueRow(selected);
  request.track = row.Track();
  request.path = row.Text(PathColumn);
  request.requestText = row.Text(ReqdataColumn);
  return request;
}

void DeckEngine::LoadDeck(Deck deck) {
  DeckRecord& record = decks_[deck];
  if (record.Loading) return;
  const std::optional<Request> request = FindRequest();
  if (!request) {
    if (OnLoaded) OnLoaded(deck, false);
    return;
  }
  record.Loading = true;
  loadPaths_[deck] = request->path;
  record.Info.clear();
  Q_EMIT Changed(deck);
  loadLimits_[deck] = services_.loop.After(kLoadLimit, [this, deck, path = request->path] {
    loads_[deck].Cancel();
    NoteInLog(QStringLiteral("The load of %1 was given up: its disk does not answer").arg(path));
    GiveUpLoad(deck, path);
  });
  loads_[deck] = RunLoad(deck, *request);
}

DeckEngine::TrackFile DeckEngine::ReadTrackFile(const QString& path, const QString& infoPath) {
  TrackFile file;
  file.good = CheckMediaFile(path);
  if (!file.good) return file;
  try {
    const QString found = FindFile(infoPath);
    if (!found.isEmpty()) file.info = TextFile::Read(found);
  } catch (...) {
    file.infoFailure = std::current_exception();
  }
  return file;
}

Job<> DeckEngine::RunLoad(Deck deck, Request request) {
  try {
    const QString path = request.path;
    const QString infoPath = TrackInfoPath(services_.paths, BaseNameOf(path));
    const auto read = [path, infoPath] { return ReadTrackFile(path, infoPath); };
    const TrackFile file = co_await services_.loop.Offload(EventLoop::Lane::Media, read);
    if (!file.good) {
      GiveUpLoad(deck, path);
      co_return;
    }
    const OpenResult opened = co_await players_[deck]->Open(path);
    if (opened.kind == OpenResult::Kind::Failed) {
      NoteInLog(opened.error);
      GiveUpLoad(deck, path);
      co_return;
    }
    if (opened.Ok()) TakeTrack(deck, request, file);
    EndLoad(deck, opened.Ok());
  } catch (...) {
    basHandleError(kLoadTag);
    EndLoad(deck, false);
  }
}

void DeckEngine::GiveUpLoad(Deck deck, const QString& path) {
  decks_[deck].Info = QStringLiteral("Bad File ") + path;
  EndLoad(deck, false);
}

void DeckEngine::EndLoad(Deck deck, bool loaded) {
  loadLimits_[deck].Stop();
  loadPaths_[deck].clear();
  decks_[deck].Loading = false;
  Q_EMIT Changed(deck);
  if (OnLoaded) OnLoaded(deck, loaded);
}

void DeckEngine::TakeTrack(Deck deck, const Request& request, const TrackFile& file) {
  DeckRecord& record = decks_[deck];
  const DeckRecord old = record;
  const ConsoleState& state = services_.state;

  // A button still held was meant for the track before.
  fastMoves_[deck].Cancel();
  moved_[deck] = false;
  record.Title = ProperCase(BaseNameOf(request.path));
  record.CatalogueIndex = request.track;
  record.PlayedOut = false;
  const double known = services_.catalogue.TrackDurations(request.track);
  record.Duration = known > 0 ? known : players_[deck]->Duration();
  record.Position = 0;
  record.RemainSeconds = RemainOf(record);
  record.State = DeckState::Loaded;
  record.FilePath = request.path;

  if (file.infoFailure) basHandleError(kLoadTag, file.infoFailure);
  if (file.info) {
    TakeTrackInfo(record, *file.info);
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
  if (state.AutoPlayOn && !state.PreviewOn && CheckFadeOverride) CheckFadeOverride(deck);
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

  const bool fadesIn = Val(LastField(record.PlayMode)) > 1 && Val(LastField(record.FadePosition)) > 3;
  if (services_.settings.AfadeSet && fadesIn && record.FadeSpeed.contains(QLatin1Char(',')) && OnFadeSpeed) {
    OnFadeSpeed(50 - WholeNumber(record.FadeSpeed.section(QLatin1Char(','), 1, 1), 0, 50));
  }
  record.Info = QStringLiteral("Starts: ") + word(record.StartStyle) + QStringLiteral(" : ") +
                QStringLiteral("Ends: ") + word(record.EndStyle);
}

void DeckEngine::StartDeck(Deck deck) {
  DeckRecord& record = decks_[deck];
  if (record.State == DeckState::Empty) return;
  players_[deck]->Play();
  record.State = DeckState::Playing;
  record.PlayedOut = false;
  services_.queue.MarkQueueRow(record.CatalogueIndex, QueueStatus::NowPlaying);
  if (!services_.state.PlaysByItself()) RecordSession(SessionCode::TrackStarted, deck);
  Q_EMIT Changed(deck);
}

void DeckEngine::RestartDeck(Deck deck) {
  if (players_[deck]->State() == PlayState::Playing) return;
  if (decks_[deck].Position == decks_[deck].Duration) SetPosition(deck, 0);
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
  StopDeck(deck);
}

void DeckEngine::StopDeck(Deck deck) {
  DeckRecord& record = decks_[deck];
  if (record.State == DeckState::Empty) return;
  players_[deck]->Stop();
  record.Position = players_[deck]->CurrentPosition();
  record.State = DeckState::Done;
  services_.queue.MarkQueueRow(record.CatalogueIndex, QueueStatus::Stopped);
  RecordSession(SessionCode::TrackStopped, deck);
  Q_EMIT Changed(deck);
}

bool DeckEngine::GivesSound(Deck deck) const {
  return decks_[deck].State == DeckState::Playing && players_[deck]->CurrentPosition() >= kHeard;
}

Job<> DeckEngine::WaitForAudio(std::function<bool()> givenUp) {
  PerDeck<double> positions;
  PerDeck<Nanoseconds> movedAt;
  for (const Deck deck : kDecks) {
    positions[deck] = players_[deck]->CurrentPosition();
    movedAt[deck] = services_.loop.Elapsed();
  }
  const auto waiting = [&](Deck deck) {
    const bool plays =
        decks_[deck].State == DeckState::Playing && players_[deck]->State() == PlayState::Playing;
    if (!plays || GivesSound(deck)) return false;
    const Nanoseconds now = services_.loop.Elapsed();
    const double position = players_[deck]->CurrentPosition();
    if (std::exchange(positions[deck], position) != position) movedAt[deck] = now;
    return now - movedAt[deck] < kNoSound;
  };
  for (;;) {
    const bool one = waiting(Deck::One);
    const bool two = waiting(Deck::Two);
    if ((!one && !two) || (givenUp && givenUp())) co_return;
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
    // A deck that stands has the position that it was given: its player may keep a different one on purpose.
    if (players_[deck]->State() != PlayState::Playing) continue;
    record.Position = players_[deck]->CurrentPosition();
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
