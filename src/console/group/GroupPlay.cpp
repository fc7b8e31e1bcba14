#include "console/group/GroupPlay.h"

#include "database/GroupWords.h"
#include "database/KeptTracks.h"
#include "platform/ErrorLog.h"

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

const QString kTag = QStringLiteral(" grpplay");

constexpr Nanoseconds kLookAtDecks = 50ms;
/// A list that repeats and takes no time would leave none for anything else.
constexpr Nanoseconds kLeastRound = 1s;

constexpr int kSlowest = 50;

}  // namespace

GroupRun GroupPlay::Progress() const {
  return {static_cast<int>(line_), static_cast<int>(elements_.size()), details_};
}

std::optional<double> GroupPlay::Playhead() const {
  if (!begin_ || elements_.empty()) return std::nullopt;
  const std::chrono::duration<double> since = services_.loop.Elapsed() - *begin_;
  const int last = elements_.back().seconds;
  return std::min(elements_.front().seconds + std::max(since.count(), 0.0), static_cast<double>(last));
}

void GroupPlay::Start() {
  due_ = {};
  started_ = false;
  run_ = Run();
}

void GroupPlay::Stop() {
  leave_.Stop();
  run_.Cancel();
  begin_.reset();
  for (const Deck deck : kDecks) steps_[deck].Cancel();
}

Job<> GroupPlay::Run() {
  line_ = 0;
  details_.clear();
  begin_.reset();
  try {
    elements_.clear();
    for (const QString& line : services_.queue.GroupLines()) {
      const auto elements = ParseGroupLine(line);
      if (!elements) NoteInLog(QStringLiteral("A line of the group playlist can't be read: ") + line);
      if (elements) elements_.insert(elements_.end(), elements->begin(), elements->end());
    }
    Sort(elements_, ElementOrder::Run);
    co_await RunList();
  } catch (...) {
    basHandleError(kTag, QStringLiteral("The group playlist could not be run to its end."));
  }
  begin_.reset();
  // Later: leaving ends this very job.
  leave_ = services_.loop.After(0ns, [this] { services_.Leave(); });
}

bool GroupPlay::DecksBusy() const {
  return std::any_of(kDecks.begin(), kDecks.end(), [this](Deck deck) { return steps_[deck].Running(); });
}

Job<> GroupPlay::DecksEnd() {
  const auto plays = [this](Deck deck) { return services_.decks.Player(deck).State() == PlayState::Playing; };
  while (std::any_of(kDecks.begin(), kDecks.end(), plays)) co_await services_.loop.Sleep(kLookAtDecks);
  for (const Deck deck : kDecks) {
    if (services_.decks.Record(deck).State != DeckState::Empty)
      services_.decks.SetState(deck, DeckState::Done);
  }
}

Job<> GroupPlay::RunList() {
  std::vector<Mref> named;
  for (const GroupElement& element : elements_) named.push_back(element.track);
  const KeptTracks tracks(services_.catalogue, std::move(named));
  co_await DecksEnd();
  if (elements_.empty()) co_return;
  const auto place = [&](std::size_t at) -> Nanoseconds {
    return std::chrono::seconds(elements_[at].seconds - elements_.front().seconds);
  };
  const bool repeats = elements_.back().code == SessionCode::Repeat;
  const Nanoseconds round = std::max(place(elements_.size() - 1), kLeastRound);
  Nanoseconds begin = services_.loop.Elapsed();
  for (;;) {
    begin_ = begin;
    for (std::size_t at = 0; at < elements_.size(); ++at) {
      const Nanoseconds early = begin + place(at) - services_.loop.Elapsed();
      if (early > 0ns) co_await services_.loop.Sleep(early);
      line_ = at + 1;
      GroupElement element = elements_[at];
      element.track = tracks[at];
      details_ = ElementDetails(element, services_.catalogue);
      const bool known =
          element.track != Mref::None && ToInt(element.track) <= services_.catalogue.LastTrack();
      if (known) Do(element);
    }
    while (DecksBusy()) co_await services_.loop.Sleep(kLookAtDecks);
    if (!repeats) co_return;
    // The next round begins where this one's last element has its place, not where it was done.
    begin += round;
    const Nanoseconds early = begin - services_.loop.Elapsed();
    if (early > 0ns) co_await services_.loop.Sleep(early);
  }
}

void GroupPlay::Do(const GroupElement& element) {
  const Deck deck = DeckOfPlayer(element.deck);
  due_[deck].push_back(element);
  if (!steps_[deck].Running()) steps_[deck] = RunDeck(deck);
}

Job<> GroupPlay::RunDeck(Deck deck) {
  std::vector<GroupElement>& due = due_[deck];
  while (!due.empty()) {
    const GroupElement element = due.front();
    due.erase(due.begin());
    try {
      if (element.code == SessionCode::Loaded) {
        co_await Load(deck, element.track);
      } else {
        Step(deck, element);
      }
    } catch (...) {
      basHandleError(kTag, QStringLiteral("A step of the group playlist failed; the next one is done."));
    }
  }
}

Job<> GroupPlay::Load(Deck deck, Mref track) {
  PlayQueue& queue = services_.queue;
  int index = 1;
  while (index <= queue.Count() && queue.Row(index).track != track) ++index;
  if (index > queue.Count()) co_return;
  queue.Select(index);
  DeckEngine& decks = services_.decks;
  const DeckLoad outcome = co_await decks.LoadDeck(deck);
  // The deck has it already, from the round before: it is played from its beginning all the same.
  if (outcome == DeckLoad::Dropped && decks.Record(deck).CatalogueIndex == track) {
    decks.Player(deck).Stop();
    decks.SetPosition(deck, 0);
    decks.SetState(deck, DeckState::Loaded);
  }
}

void GroupPlay::Step(Deck deck, const GroupElement& element) {
  DeckEngine& decks = services_.decks;
  started_ = started_ || element.code == SessionCode::TrackStarted ||
             element.code == SessionCode::DubStarted || element.code == SessionCode::FadeStarted;
  switch (element.code) {
    case SessionCode::TrackStarted:
      decks.RestartDeck(deck);
      services_.AfterStart(deck);
      break;
    case SessionCode::DubStarted:
      services_.fades.StartRoutine(deck, TransitionKind::Dub);
      break;
    case SessionCode::FadeStarted:
      services_.fades.SetFadeSpeed(kSlowest - element.speed + 1);
      services_.fades.StartRoutine(
          deck, element.fade == TransitionKind::PartFade ? TransitionKind::PartFade : TransitionKind::Pan);
      break;
    case SessionCode::TrackStopped:
      decks.StopDeck(deck);
      break;
    case SessionCode::PositionChangedDeckOne:
    case SessionCode::PositionChangedDeckTwo:
      decks.SetPosition(deck, element.position);
      break;
    // A dub ends with the fade behind it and a fade by itself; the others are marks of time.
    default:
      break;
  }
}

}  // namespace kelvo
