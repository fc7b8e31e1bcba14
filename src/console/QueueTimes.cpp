#include "console/QueueTimes.h"

#include "database/Catalogue.h"
#include "platform/Words.h"

#include <algorithm>

namespace kelvo {

std::vector<std::optional<double>> QueueOutlook(const OutlookQuestion& question) {
  const int count = static_cast<int>(question.rows.size());
  std::vector<std::optional<double>> times(question.rows.size());
  if (question.onAir == 0 && question.next == 0) return times;
  const auto at = [](int row) { return static_cast<std::size_t>(row - 1); };
  double time = std::max(question.left - question.overlap, 0.0);
  const auto take = [&](int row) {
    times[at(row)] = time;
    const double seconds = question.rows[at(row)].seconds;
    if (seconds < 0) return false;
    time += std::max(seconds - question.overlap, 0.0);
    return true;
  };
  const int first = question.next != 0 ? question.next : question.onAir % std::max(count, 1) + 1;
  for (int step = 0; step < count; ++step) {
    const int row = (first - 1 + step) % count + 1;
    // Round the end goes automatic play alone.
    if (row < first && !question.again) break;
    if (row == question.onAir || times[at(row)]) continue;
    if (row != question.next && !question.again && !question.rows[at(row)].toPlay) continue;
    if (!take(row)) break;
  }
  return times;
}

QueueTimes::QueueTimes(const PlayQueue& queue, const DeckEngine& decks, const AutoPlay& automatic,
                       const ConsoleState& state, const Catalogue& catalogue, const PlayedTracks& played)
    : queue_(queue),
      decks_(decks),
      automatic_(automatic),
      state_(state),
      catalogue_(catalogue),
      played_(played) {}

OutlookQuestion QueueTimes::Question() const {
  OutlookQuestion question;
  // What chance or a recorded mix will bring is not told.
  const std::optional<Deck> onAir = decks_.OnAir();
  if (!onAir || state_.PreviewOn || state_.GroupPlayOn || (state_.AutoPlayOn && automatic_.RandomOn()))
    return question;
  const DeckRecord& playing = decks_.Record(*onAir);
  const DeckRecord& other = decks_.Record(Other(*onAir));
  question.onAir = queue_.IndexOf(playing.Row);
  if (other.State == DeckState::Loaded) question.next = queue_.IndexOf(other.Row);
  if (question.onAir == 0 && question.next == 0) return question;
  question.left = std::max(playing.Duration - playing.Position, 0.0);
  question.again = state_.AutoPlayOn;
  question.overlap = state_.AutoPlayOn ? automatic_.AutoDelta() : 0;
  question.rows.reserve(static_cast<std::size_t>(queue_.Count()));
  for (int index = 1; index <= queue_.Count(); ++index) {
    const QueueEntry& row = queue_.Row(index);
    question.rows.push_back({catalogue_.TrackDurations(row.track),
                             row.status == RowStatus::Waiting || row.status == RowStatus::Reset});
  }
  return question;
}

void QueueTimes::Tick() {
  seconds_ = QueueOutlook(Question());
}

QString QueueTimes::PlaysIn(int index) const {
  const auto place = static_cast<std::size_t>(index - 1);
  if (place >= seconds_.size() || !seconds_[place]) return {};
  const double seconds = *seconds_[place];
  return seconds < 3600 ? MinutesSeconds(seconds) : HoursMinutesSeconds(Int(seconds));
}

QString QueueTimes::LastPlayed(int index) const {
  if (index < 1 || index > queue_.Count()) return {};
  const std::optional<QDateTime> start = played_.LastStart(queue_.Row(index).track);
  return start ? start->toString(QStringLiteral("HH:mm")) : QString();
}

}  // namespace kelvo
