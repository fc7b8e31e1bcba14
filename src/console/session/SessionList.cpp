#include "console/session/SessionList.h"

#include "database/Catalogue.h"

#include <algorithm>

namespace kelvo {
namespace {

constexpr std::size_t kMostEvents = 200;

}  // namespace

SessionList::SessionList(const Catalogue& catalogue, std::function<SessionFacts(Deck)> facts)
    : catalogue_(catalogue), facts_(std::move(facts)), rows_(catalogue) {}

void SessionList::RecordSessionEvent(const SessionEntry& entry) {
  const SessionFacts facts = facts_(entry.deck);
  SessionEvent event;
  event.Description = SessionDescription(entry.code, catalogue_.TrackNames[entry.track]);
  event.Time = entry.time.value_or(facts.sessionClock);
  event.Track = entry.track;
  event.Path = catalogue_.TrackPaths(entry.track);
  event.OnDeck = entry.deck;
  event.FadeType = entry.fadeType;
  const bool fade = entry.code == SessionCode::FadeStarted || entry.code == SessionCode::FadeEnded;
  event.Speed = fade ? std::max(1, 50 - facts.fadeSpeed) : -1;
  event.Code = entry.code;
  event.Pos = entry.position;
  event.Length = static_cast<int>(facts.trackSeconds);
  if (OnRecorded) OnRecorded(event);

  const std::size_t count = Events().size();
  if (count > 0 && PullsForward(event.Code, Events().back().Code)) {
    rows_.SetTime(static_cast<int>(count) - 1, event.Time);
  }
  if (count >= kMostEvents) {
    label_ = QStringLiteral("Listing Last 200 Elements in Current Session");
    rows_.Clear();
  } else {
    label_ = QStringLiteral("Listed Element %1 Of 200").arg(count + 1);
    rows_.Append(std::move(event));
  }
  Q_EMIT Changed();
}

void SessionList::Clear() {
  label_.clear();
  rows_.Clear();
  Q_EMIT Changed();
}

}  // namespace kelvo
