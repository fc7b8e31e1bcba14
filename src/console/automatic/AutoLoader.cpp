#include "console/automatic/AutoLoader.h"

#include "database/Catalogue.h"

#include <QScopedValueRollback>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kLoadPoll = 20ms;
constexpr Nanoseconds kFadePoll = 100ms;
/// A file that failed is left alone for so long, unless there is nothing else.
constexpr Nanoseconds kRetryBad = 60s;
constexpr Nanoseconds kTellAgain = 1h;
/// A track with less sound than this (seconds) only makes the desk run from one start to the next.
constexpr double kShortestTrack = 1;
/// So many tracks of a preview are tried in one go.
constexpr int kMostPicks = 50;

/// A track that is needed in fewer seconds cannot be waited for.
constexpr int kNeeded = 6;

}  // namespace

AutoLoader::AutoLoader(Services services) : services_(std::move(services)) {
  services_.catalogue.Listen(
      &listener_, [this](const TrackRenamed& renamed) { FileWasRenamed(renamed.pathBefore, renamed.path); },
      [this](const TrackRemoved& removed) {
        UsedPicks.Remove(removed.track);
        lastPick_ = removed.Renumbered(lastPick_);
        bad_.remove(removed.path);
      },
      [this](const CatalogueReplaced&) {
        UsedPicks.Clear();
        lastPick_ = Mref::None;
      });
}

void AutoLoader::FileWasRenamed(const QString& pathBefore, const QString& path) {
  if (bad_.contains(pathBefore)) bad_.insert(path, bad_.take(pathBefore));
  if (tried_.remove(pathBefore)) tried_.insert(path);
}

void AutoLoader::Reset() {
  bad_.clear();
  tried_.clear();
  nothingPlayable_ = false;
}

std::optional<Mref> AutoLoader::TrackIn(Deck deck) const {
  const DeckRecord& record = services_.decks.Record(deck);
  if (record.State == DeckState::Empty) return std::nullopt;
  return record.CatalogueIndex;
}

NextRowQuestion AutoLoader::QuestionFor(Deck deck, From from, bool atStart, bool retryBad) const {
  const PlayQueue& queue = services_.queue;
  NextRowQuestion question;
  // At the start of a run the rows are taken as they are; what played before is of no interest.
  const bool otherCounts = !atStart || services_.decks.Record(Other(deck)).State != DeckState::Done;
  if (otherCounts) question.playing = TrackIn(Other(deck));
  question.target = TrackIn(deck);
  question.mayRepeatTarget = atStart;
  question.start = queue.Selected() + (from == From::Selected ? 0 : 1);
  question.rows.reserve(static_cast<std::size_t>(queue.Count()));
  for (int index = 1; index <= queue.Count(); ++index) {
    const QueueEntry& row = queue.Row(index);
    const QString& path = row.path;
    question.rows.push_back({row.track, (!retryBad && IsBad(path)) || tried_.contains(path)});
  }
  return question;
}

int AutoLoader::ChooseRow(Deck deck, From from, bool atStart) {
  for (const bool retryBad : {false, true}) {
    NextRowQuestion question = QuestionFor(deck, from, atStart, retryBad);
    if (from == From::Random) {
      question.start =
          RandomRow(services_.queue.Count(), services_.queue.Selected(), services_.random.Next());
    }
    const int row = NextRow(question);
    lastHope_ = retryBad;
    if (row != 0) return row;
  }
  return 0;
}

int AutoLoader::Foreseen(Deck deck) const {
  if (RandomOn || services_.state.PreviewOn) return 0;
  return NextRow(QuestionFor(deck, From::BehindSelected, false, false));
}

bool AutoLoader::IsBad(const QString& path) const {
  const auto bad = bad_.constFind(path);
  if (bad == bad_.constEnd()) return false;
  if (bad->returns >= 0 && bad->returns != services_.disks.Returns()) return false;
  return bad->retryAt > services_.loop.Elapsed();
}

Job<DeckLoad> AutoLoader::InTime(Deck deck, Job<DeckLoad> load) {
  const Nanoseconds begun = services_.loop.Elapsed();
  const Timer watch = services_.loop.Every(kLoadPoll, [this, deck, begun] { CheckTime(deck, begun); });
  co_return co_await std::move(load);
}

Job<> AutoLoader::LoadEnded(Deck deck) {
  Job<DeckLoad> others = services_.decks.LoadEnds(deck);
  static_cast<void>(co_await InTime(deck, std::move(others)));
}

Job<DeckLoad> AutoLoader::LoadInTime(Deck deck) {
  Job<DeckLoad> load = services_.decks.LoadDeck(deck);
  co_return co_await InTime(deck, std::move(load));
}

void AutoLoader::CheckTime(Deck deck, Nanoseconds begun) {
  const bool needed = Silent() || (services_.SecondsLeft && services_.SecondsLeft() < kNeeded);
  if (!needed || lastHope_ || services_.loop.Elapsed() - begun < allowance_) return;
  if (services_.decks.LoadGetsOn(deck)) allowance_ *= 3;
  services_.decks.GiveUpLoad(deck);
}

Job<> AutoLoader::DeckFree(Deck deck, bool atStart) {
  while (FadeHolds() || (!atStart && Sounds(deck))) co_await services_.loop.Sleep(kFadePoll);
}

bool AutoLoader::Sounds(Deck deck) const {
  const bool runs = services_.decks.Player(deck).State() == PlayState::Playing;
  return runs && !(services_.FadedOut && services_.FadedOut(deck));
}

bool AutoLoader::FadeHolds() const {
  return services_.state.TransitionActive && !Silent();
}

bool AutoLoader::HoldsGoodTrack(Deck deck) {
  if (services_.decks.Record(deck).State != DeckState::Loaded) return false;
  const MediaPlayer& player = services_.decks.Player(deck);
  if (player.Duration() >= kShortestTrack && player.HasSound()) return true;
  services_.decks.SetState(deck, DeckState::Done);
  return false;
}

void AutoLoader::CueAgain(Deck deck) {
  DeckEngine& decks = services_.decks;
  decks.Player(deck).Stop();
  decks.SetPosition(deck, 0);
  decks.SetState(deck, DeckState::Loaded);
}

std::optional<Mref> AutoLoader::PickPreview() {
  const auto draw = [this] { return services_.random.Next(); };
  const std::optional<Mref> picked = UsedPicks.Pick(services_.catalogue.LastTrack(), draw);
  lastPick_ = picked.value_or(Mref::None);
  return picked;
}

void AutoLoader::MarkBad(const QString& path, bool silent) {
  Bad& bad = bad_[path];
  bad.retryAt = services_.loop.Elapsed() + kRetryBad;
  bad.returns = silent ? services_.disks.Returns() : -1;
}

void AutoLoader::Skip(const QString& path, const QString& title, Deck deck, DeckLoad outcome) {
  const Nanoseconds now = services_.loop.Elapsed();
  bad_.removeIf([now](const auto& each) {
    return each.value().retryAt < now && each.value().toldAt + kTellAgain < now;
  });
  const bool told = bad_.contains(path) && bad_[path].toldAt != 0ns;
  MarkBad(path, outcome == DeckLoad::NoAnswer);
  if (told && bad_[path].toldAt + kTellAgain > now) return;
  bad_[path].toldAt = now;
  const bool loaded = outcome == DeckLoad::Loaded;
  if (OnSkipped)
    OnSkipped(title, loaded ? QStringLiteral("No Sound In It") : services_.decks.Record(deck).Info);
}

Job<bool> AutoLoader::Fill(Deck deck, From from, bool atStart) {
  const QScopedValueRollback filling(filling_, std::optional(deck));
  allowance_ = kLoadAllowance;
  // A load of somebody else into this deck goes first.
  co_await LoadEnded(deck);
  tried_.clear();
  bool filled = false;
  if (services_.state.PreviewOn) {
    filled = co_await FillFromCatalogue(deck, atStart);
  } else {
    filled = co_await FillFromQueue(deck, from, atStart);
  }
  tried_.clear();
  if (filled) services_.decks.TakeFadeIn(deck);
  lastHope_ = false;
  nothingPlayable_ = !filled;
  co_return filled;
}

Job<bool> AutoLoader::FillFromQueue(Deck deck, From from, bool atStart) {
  From next = from;
  for (;;) {
    co_await DeckFree(deck, atStart);
    const int row = ChooseRow(deck, next, atStart);
    if (row == 0) co_return false;
    services_.queue.Select(row);
    const QString path = services_.queue.Row(row).path;
    const QString title = services_.queue.Row(row).title;
    tried_.insert(path);
    services_.state.NextTrackDue = false;
    if (services_.decks.Record(deck).State == DeckState::Done &&
        services_.decks.Record(deck).FilePath == path) {
      CueAgain(deck);
      if (HoldsGoodTrack(deck)) co_return true;
    }
    const DeckLoad outcome = co_await LoadInTime(deck);
    if (outcome != DeckLoad::Dropped) {
      if (HoldsGoodTrack(deck)) {
        bad_.remove(path);
        co_return true;
      }
      Skip(path, title, deck, outcome);
    }
    // Between two rows the loop takes a turn, so a long queue of bad files blocks nothing.
    co_await services_.loop.Yield();
    if (next == From::Selected) next = From::BehindSelected;
  }
}

Job<bool> AutoLoader::FillFromCatalogue(Deck deck, bool atStart) {
  const int most = std::min(services_.catalogue.LastTrack(), kMostPicks);
  for (int tries = 0; tries < most; ++tries) {
    co_await DeckFree(deck, atStart);
    services_.state.NextTrackDue = false;
    const DeckLoad outcome = co_await LoadInTime(deck);
    if (HoldsGoodTrack(deck)) co_return true;
    Skip(services_.catalogue.TrackPaths(lastPick_), services_.catalogue.TrackNames[lastPick_], deck, outcome);
    co_await services_.loop.Yield();
  }
  co_return false;
}

}  // namespace kelvo
