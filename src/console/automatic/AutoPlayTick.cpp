// What automatic play does once a second.

#include "console/automatic/AutoPlay.h"
#include "database/Catalogue.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <cmath>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// How long what was passed over is shown.
constexpr Nanoseconds kNotice = 5s;
/// Between two rounds through a queue in which nothing can be played.
constexpr Nanoseconds kRoundPause = 5s;
/// A deck that plays and does not move for so long is broken.
constexpr Nanoseconds kStall = 2s;
/// A disk that owes data for so long is not counted on: what is left of the track in memory covers the start
/// of the next one.
constexpr Nanoseconds kLate = 1s;
/// A stream that ends so many seconds too soon is reported.
constexpr double kTooSoon = 5;
/// One that gave less sound than this is not played again for a while.
constexpr double kTooLittle = 5;

double Seconds(Nanoseconds time) {
  return std::chrono::duration<double>(time).count();
}

}  // namespace

bool AutoPlay::Runs(Deck deck) const {
  return services_.decks.Record(deck).State == DeckState::Playing &&
         services_.decks.Player(deck).State() == PlayState::Playing;
}

TickDecision AutoPlay::Decide() const {
  TickQuestion question;
  for (const Deck deck : kDecks) {
    const DeckRecord& record = services_.decks.Record(deck);
    // A track that has just come in may be no good, and may have a start of its own.
    const bool unseen = record.Loading || loader_.Filling(deck);
    const DeckState state = unseen && record.State == DeckState::Loaded ? DeckState::Done : record.State;
    question.decks[deck] = {state, record.Duration, record.Position, loader_.Sounds(deck), seen_[deck].late};
  }
  question.AutoDelta = now_.AutoDelta;
  question.AutoTransition = now_.AutoTransition;
  question.PauseAtEnd = pauseAtEnd_;
  question.Starting = Starting();
  return DecideTick(question);
}

void AutoPlay::AutoTick() {
  if (!services_.state.AutoPlayOn) return;
  for (const Deck deck : kDecks) Watch(deck);
  if (starting_.Running()) return;
  // A fade is not disturbed, unless all sound has ended under it.
  if (loader_.FadeHolds()) return;
  if (now_.AutoTransition == TransitionKind::None) now_.AutoTransition = TransitionKind::Dub;
  const TickDecision decision = Decide();
  if (decision.start && !lag_.Running()) {
    if (mode_ == AutoMode::Jukebox && services_.settings.Get(setting::JukeLag) > 0) {
      lag_ = StartAfterLag();
    } else {
      StartNext(*decision.start, decision.transition);
    }
  }
  ShowStatus(decision);
  if (!decision.start) LoadNext();
  tickBlink_ = !tickBlink_;
  if (!tickBlink_) Q_EMIT QueuePositionShown(services_.queue.Selected());
}

void AutoPlay::StartNext(Deck deck, TransitionKind transition) {
  if (!services_.StartTransition) return;
  Guarded(QStringLiteral(" autostart"), tr("The next track could not be started."),
          [&] { services_.StartTransition(deck, transition); });
}

Job<> AutoPlay::StartAfterLag() {
  co_await services_.loop.Sleep(std::chrono::seconds(services_.settings.Get(setting::JukeLag)));
  if (loader_.FadeHolds()) co_return;
  // Another track may have come into the deck meanwhile, with a start of its own.
  const TickDecision decision = Decide();
  if (decision.start) StartNext(*decision.start, decision.transition);
}

void AutoPlay::Watch(Deck deck) {
  const DeckRecord& record = services_.decks.Record(deck);
  const Nanoseconds now = services_.loop.Elapsed();
  Seen& seen = seen_[deck];
  const bool sameTrack = seen.path == record.FilePath;
  const double position = services_.decks.Player(deck).CurrentPosition();
  if (Runs(deck) || (record.State == DeckState::Done && loader_.Sounds(deck))) {
    if (!seen.playing || !sameTrack || position != seen.position) seen.movedAt = now;
    const bool late = services_.decks.Player(deck).DataLateFor() >= kLate;
    if (late && !(seen.late && sameTrack)) {
      services_.disks.Suspect(record.FilePath);
      NoteInLog(QStringLiteral("The disk of %1 does not answer while it plays").arg(record.FilePath));
    }
    seen = {true, record.FilePath, position, late, now, seen.movedAt, 0};
    if (now - seen.movedAt < kStall) return;
    services_.decks.StopDeck(deck);
    loader_.MarkBad(record.FilePath, late);
    TellSkipped(record.Title, QStringLiteral("It Stood Still At ") + MinutesSeconds(position));
  } else if (record.State == DeckState::Playing) {
    // Its player does not run. The end of the stream may be on its way; by the next tick it has come.
    if (++seen.dead < 2) return;
    services_.decks.SetState(deck, DeckState::Done);
    TellSkipped(record.Title, QStringLiteral("It Stopped At ") + MinutesSeconds(position));
  } else if (seen.playing && sameTrack && record.PlayedOut) {
    const double heard = std::min(seen.position + Seconds(now - seen.at), record.Duration);
    if (record.Duration - heard > kTooSoon) {
      TellSkipped(record.Title, QStringLiteral("It Ended At ") + MinutesSeconds(heard));
      if (heard < kTooLittle) loader_.MarkBad(record.FilePath);
    }
  }
  seen.playing = false;
  seen.late = false;
  seen.dead = 0;
}

std::optional<Deck> AutoPlay::FreeDeck(bool soon) const {
  const auto free = [&](Deck deck) {
    const DeckRecord& record = services_.decks.Record(deck);
    return (record.State == DeckState::Done || record.State == DeckState::Empty) && !record.Loading &&
           (soon || !loader_.Sounds(deck));
  };
  const auto waits = [this](Deck deck) {
    const DeckRecord& record = services_.decks.Record(deck);
    return record.State == DeckState::Loaded || record.Loading;
  };
  for (const Deck deck : {Deck::Two, Deck::One}) {
    if (free(deck) && !waits(Other(deck))) return deck;
  }
  return std::nullopt;
}

int AutoPlay::SecondsLeft() const {
  qint64 least = 0;
  for (const Deck deck : kDecks) {
    const DeckRecord& record = services_.decks.Record(deck);
    if (!loader_.Sounds(deck) || seen_[deck].late) continue;
    least = std::max(least, Int(record.Duration - std::max(now_.AutoDelta, 1)) - Int(record.Position));
  }
  return static_cast<int>(std::clamp<qint64>(least, 0, 1 << 30));
}

void AutoPlay::LoadNext() {
  // The next track adds to what the one that is starting demands, never the reverse.
  if (!services_.state.AutoPlayOn || loading_.Running() || Starting()) return;
  const std::optional<Deck> deck = FreeDeck(false);
  if (!deck || services_.loop.Elapsed() < nextRound_) return;
  loading_ = RunLoad(*deck);
}

Job<> AutoPlay::RunLoad(Deck deck) {
  try {
    using From = AutoLoader::From;
    const From from = loader_.RandomOn ? From::Random : From::BehindSelected;
    const bool before = loader_.NothingPlayable();
    const bool filled = co_await loader_.Fill(deck, from);
    nextRound_ = filled ? 0ns : services_.loop.Elapsed() + kRoundPause;
    if (!filled && !before) NoteInLog(QStringLiteral("Automatic play finds nothing that can be played"));
    if (filled && before) NoteInLog(QStringLiteral("Automatic play has found something to play again"));
    if (filled == before) ShowStatus(Decide());
    Q_EMIT Changed();
  } catch (...) {
    basHandleError(QStringLiteral(" autoload"), tr("The next track could not be loaded."));
  }
}

void AutoPlay::ShowStatus(const TickDecision& decision) {
  if (loader_.NothingPlayable()) {
    SetStatusText(services_.state.PreviewOn ? tr("Nothing In The Data Base Can Be Played !")
                                            : tr("Nothing In The Play Queue Can Be Played !"));
  } else if (pauseAtEnd_) {
    SetStatusText(mode_ == AutoMode::Jukebox ? QStringLiteral("JukeBox Mode - Pausing At Track End")
                                             : QStringLiteral("Pausing At Track End"));
  } else if (services_.loop.Elapsed() < noticeUntil_) {
    SetStatusText(notice_);
  } else if (decision.next) {
    SetStatusText(QStringLiteral("Auto Start: ") + services_.decks.Record(*decision.next).Title +
                  QStringLiteral(" In ") + MinutesSeconds(decision.secondsLeft));
  } else if (!notice_.isEmpty() && statusText_ == notice_) {
    SetStatusText({});
  }
}

void AutoPlay::TellSkipped(const QString& title, const QString& why) {
  ++skippedCount_;
  lastSkipped_ = title + QStringLiteral(" : ") + why;
  notice_ = tr("Skipped : ") + lastSkipped_;
  noticeUntil_ = services_.loop.Elapsed() + kNotice;
  NoteInLog(QStringLiteral("Automatic play passed over ") + lastSkipped_);
  if (!loader_.NothingPlayable()) SetStatusText(notice_);
  Q_EMIT Skipped(lastSkipped_);
}

std::optional<UpNext> AutoPlay::Next() const {
  if (!running_) return std::nullopt;
  const TickDecision decision = Decide();
  UpNext next;
  next.transition = decision.transition;
  if (decision.next) {
    const DeckRecord& record = services_.decks.Record(*decision.next);
    next.title = record.Title;
    next.seconds = decision.secondsLeft;
    for (int index = 1; !services_.state.PreviewOn && index <= services_.queue.Count(); ++index) {
      const Mref track = services_.queue.Row(index).track;
      if (track == Mref::None || track != record.CatalogueIndex) continue;
      next.queueIndex = index;
      break;
    }
    return next;
  }
  const std::optional<Deck> deck = FreeDeck(true);
  if (!deck) return std::nullopt;
  next.queueIndex = loader_.Foreseen(*deck);
  if (next.queueIndex != 0) next.title = services_.queue.Row(next.queueIndex).title;
  const DeckRecord& playing = services_.decks.Record(Other(*deck));
  const qint64 left = Int(playing.Duration - std::max(now_.AutoDelta, 1)) - Int(playing.Position);
  next.seconds = static_cast<int>(std::clamp<qint64>(left, 0, 1 << 30));
  return next;
}

}  // namespace kelvo
