#include "console/session/SessionList.h"

#include "database/Catalogue.h"

#include <algorithm>

namespace kelvo {
namespace {

constexpr std::size_t kMostEvents = 200;

QString DescriptionOf(const SessionEntry& entry, const Catalogue& catalogue) {
  switch (entry.code) {
    case SessionCode::Loaded:
      return catalogue.TrackNames[entry.track];
    case SessionCode::TrackStarted:
      return QStringLiteral("Track Started");
    case SessionCode::DubStarted:
      return QStringLiteral("Dub Started");
    case SessionCode::DubEnded:
      return QStringLiteral("Dub Ended");
    case SessionCode::FadeStarted:
      return QStringLiteral("Fade Started");
    case SessionCode::FadeEnded:
      return QStringLiteral("Fade Ended");
    case SessionCode::TrackStopped:
      return QStringLiteral("Track Stopped");
    case SessionCode::PositionChangedDeckOne:
    case SessionCode::PositionChangedDeckTwo:
      return QStringLiteral("Track Position Changed");
    case SessionCode::EndOfTrack:
      return QStringLiteral("End Of Track Reached");
    case SessionCode::Repeat:
      break;
  }
  return {};
}

}  // namespace

SessionList::SessionList(const Catalogue& catalogue, std::function<SessionFacts(Deck)> facts)
    : catalogue_(catalogue), facts_(std::move(facts)) {
  FollowCatalogue();
}

void SessionList::FollowCatalogue() {
  catalogue_.Listen(
      this,
      [this](const TrackRenamed& renamed) {
        for (SessionEvent& event : events_) {
          if (event.Path != renamed.pathBefore) continue;
          event.Path = renamed.path;
          if (event.Code == SessionCode::Loaded) event.Description = catalogue_.TrackNames[event.Track];
        }
        Q_EMIT Changed();
      },
      [this](const TrackRemoved& removed) {
        for (SessionEvent& event : events_) event.Track = removed.Renumbered(event.Track);
      },
      [this](const CatalogueReplaced&) {
        if (events_.empty()) return;
        QStringList paths;
        for (const SessionEvent& event : events_) paths.append(event.Path);
        const QHash<QString, Mref> tracks = catalogue_.Find(paths);
        for (SessionEvent& event : events_) event.Track = tracks.value(event.Path, Mref::None);
      });
}

void SessionList::RecordSessionEvent(const SessionEntry& entry) {
  const SessionFacts facts = facts_(entry.deck);
  const double time = entry.time.value_or(facts.sessionClock);
  if (!events_.empty()) {
    SessionEvent& last = events_.back();
    const bool dubWithoutStart = entry.code == SessionCode::DubEnded && last.Code != SessionCode::DubStarted;
    const bool fadeWithoutStart =
        entry.code == SessionCode::FadeEnded && last.Code != SessionCode::FadeStarted;
    if (dubWithoutStart || fadeWithoutStart) last.Time = time;
  }
  if (events_.size() >= kMostEvents) {
    events_.clear();
    label_ = QStringLiteral("Listing Last 200 Elements in Current Session");
    Q_EMIT Changed();
    return;
  }
  label_ = QStringLiteral("Listed Element %1 Of 200").arg(events_.size() + 1);
  SessionEvent event;
  event.Description = DescriptionOf(entry, catalogue_);
  event.Time = time;
  event.Track = entry.track;
  event.Path = catalogue_.TrackPaths(entry.track);
  event.OnDeck = entry.deck;
  event.FadeType = entry.fadeType;
  const bool fade = entry.code == SessionCode::FadeStarted || entry.code == SessionCode::FadeEnded;
  event.Speed = fade ? std::max(1, 50 - facts.fadeSpeed) : -1;
  event.Code = entry.code;
  event.Pos = entry.position;
  event.Length = static_cast<int>(facts.trackSeconds);
  events_.push_back(event);
  Q_EMIT Changed();
}

void SessionList::Clear() {
  events_.clear();
  label_.clear();
  Q_EMIT Changed();
}

}  // namespace kelvo
