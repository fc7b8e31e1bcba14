#include "console/decks/DeckEngine.h"

#include "console/decks/DeckSettings.h"
#include "database/TrackNames.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <cmath>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kFrameUpdate = 200ms;
/// A deck whose position has not moved for so long after its start gives no sound.
constexpr Nanoseconds kNoSound = 2s;
/// The going deck is waited for only when it has just begun.
constexpr Nanoseconds kNoSoundOfOther = 300ms;
/// A deck whose position has not moved for so long has stopped: three looks at it.
constexpr Nanoseconds kStands = 3 * kFrameUpdate;
/// So far from its start a deck moves for sure, seconds.
constexpr double kMoved = 0.1;
/// A position nearer to the end than this is the end, seconds.
constexpr double kAtEnd = 0.05;
/// So far in a track is surely heard, seconds.
constexpr double kHeard = 0.5;
/// Pace of a held position button: the next pulse waits until the last one can be seen.
constexpr Nanoseconds kFastMovePulse = 20ms;

}  // namespace

int DeckEngine::RemainOf(const DeckRecord& record) {
  return static_cast<int>(std::clamp<qint64>(Int(record.Duration - record.Position), 0, 32767));
}

QString DeckEngine::DeckWord(Deck deck) {
  return QStringLiteral("DECK ") + QString::number(DisplayNumber(deck));
}

PanelQuestion DeckEngine::PlayingLive(Deck deck, const QString& button, PanelAction action,
                                      LoadRequest load) {
  return {DeckWord(deck) + QStringLiteral(" IS PLAYING LIVE !\r\n"), button, action, deck, std::move(load)};
}

DeckEngine::DeckEngine(Services services) : services_(std::move(services)) {
  for (const Deck deck : kDecks) {
    players_[deck] = services_.audio.MakePlayer();
    players_[deck]->OnEndOfStream = [this, deck] {
      Guarded(QStringLiteral(" eos"), tr("The end of a track could not be noted."),
              [&] { EndOfStream(deck); });
    };
    SetLoss(deck, 0);
  }
  frameUpdateTimer_ = services_.loop.Every(kFrameUpdate, [this] { FrameUpdate(); });
  FollowCatalogue();
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
  services_.queue.MarkQueueRow(record.CatalogueIndex, RowStatus::NowPlaying, record.Row);
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
    if (OnBroughtBack) OnBroughtBack(deck);
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
    if (OnStartedByHand) OnStartedByHand(deck);
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
  services_.queue.MarkQueueRow(record.CatalogueIndex, RowStatus::Stopped, record.Row);
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
         services_.queue.StatusOf(decks_[deck].CatalogueIndex, decks_[deck].Row) == RowStatus::Played;
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
  double step = services_.settings.Get(setting::FFwFRev);
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
    // A deck that is stopped has the position that it was given: its player may keep a different one on
    // purpose.
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
  services_.queue.MarkQueueRow(record.CatalogueIndex, RowStatus::Played, record.Row);
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
  if (!services_.settings.Get(setting::FixTrackDurErrors) || !services_.catalogue.IsTrack(track)) return;
  const auto seconds = static_cast<double>(Int(position));
  TrackEdit edit;
  edit.duration = seconds;
  services_.catalogue.Change(track, edit);
  writes_.Add(WriteDuration(decks_[deck].FilePath, seconds));
  decks_[deck].Title = QStringLiteral("Track Time Was Adjusted!");
}

Job<> DeckEngine::WriteDuration(QString filePath, double seconds) {
  try {
    const QString path = TrackInfoPath(services_.paths, BaseNameOf(filePath));
    const auto patch = [path, seconds] {
      std::optional<TrackInfo> info = ReadTrackInfo(path);
      if (!info) return;
      info->Set(InfoFields::DurationSeconds, seconds);
      WriteTrackInfo(path, *info);
    };
    co_await services_.loop.Offload(EventLoop::Lane::Files, patch);
  } catch (...) {
    basHandleError(QStringLiteral(" adjtime"),
                   tr("The length of %1 could not be put right.").arg(BaseNameOf(filePath)));
  }
}

}  // namespace kelvo
