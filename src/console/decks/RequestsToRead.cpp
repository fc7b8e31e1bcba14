#include "console/decks/RequestsToRead.h"

#include "console/queue/RequestText.h"

#include <algorithm>

namespace kelvo {

RequestsToRead::RequestsToRead(const PlayQueue& queue, const DeckEngine& decks)
    : queue_(queue), decks_(decks) {
  connect(&queue_, &PlayQueue::RowsChanged, this, [this] { TakeRows(); });
  connect(&queue_, &PlayQueue::RowChanged, this, [this](int index) {
    TakeRow(index);
    Work();
  });
  connect(&decks_, &DeckEngine::Changed, this, [this] { Work(); });
}

QString RequestsToRead::Known::Words() const {
  return JoinRequests(started, waiting);
}

void RequestsToRead::TakeRow(int index) {
  const QueueEntry& row = queue_.Row(index);
  if (row.requestText.isEmpty() && !known_.contains(row.id)) return;
  Known& known = known_[row.id];
  known.path = row.path;
  if (row.requestText.isEmpty()) known.started = JoinRequests(known.started, known.waiting);
  known.waiting = row.requestText;
}

void RequestsToRead::TakeRows() {
  for (int index = 1; index <= queue_.Count(); ++index) TakeRow(index);
  Work();
}

bool RequestsToRead::InDeck(Deck deck, DeckState state, RowId row, const Known& known) const {
  const DeckRecord& record = decks_.Record(deck);
  return record.State == state && (record.Row == row || record.FilePath == known.path);
}

bool RequestsToRead::Plays(RowId row, const Known& known) const {
  return std::any_of(kDecks.begin(), kDecks.end(),
                     [this, row, &known](Deck deck) { return InDeck(deck, DeckState::Playing, row, known); });
}

void RequestsToRead::Work() {
  if (known_.empty() && onAir_.empty()) return;
  // What was played is met; a row that waits has its words itself.
  std::erase_if(known_, [this](const auto& each) {
    const int index = queue_.IndexOf(each.first);
    const bool waits = index != 0 && !queue_.Row(index).requestText.isEmpty();
    return !waits && std::none_of(kDecks.begin(), kDecks.end(), [&](Deck deck) {
      return InDeck(deck, DeckState::Loaded, each.first, each.second) ||
             InDeck(deck, DeckState::Playing, each.first, each.second);
    });
  });
  std::vector<Request> onAir;
  for (const Deck deck : kDecks) {
    for (const auto& [row, known] : known_) {
      if (const QString words = known.Words();
          InDeck(deck, DeckState::Playing, row, known) && !words.isEmpty())
        onAir.push_back({decks_.Record(deck).Title, words});
    }
  }
  if (onAir == onAir_) return;
  onAir_ = std::move(onAir);
  Q_EMIT Changed();
}

void RequestsToRead::Done() {
  for (auto& [row, known] : known_) {
    if (!Plays(row, known)) continue;
    known.started.clear();
    known.waiting.clear();
  }
  Work();
}

}  // namespace kelvo
