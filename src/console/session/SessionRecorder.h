#pragma once

#include "console/desk/DeckTypes.h"
#include "database/TextColumns.h"
#include "database/TransitionKind.h"

#include <optional>

namespace kelvo {

/// What happened on a deck. The codes are those of the session list.
enum class SessionCode : int {
  Loaded = 1,
  TrackStarted = 3,
  DubStarted = 5,
  DubEnded = 7,
  FadeStarted = 9,
  FadeEnded = 11,
  TrackStopped = 13,
  PositionChangedDeckOne = 15,
  PositionChangedDeckTwo = 17,
  EndOfTrack = 19,
};

struct SessionEntry {
  SessionCode code;
  Deck deck;
  Mref track;
  double position = -1;             ///< seconds; -1 where it does not apply
  std::optional<double> time = {};  ///< session clock, seconds, of what began earlier; else the present one
  TransitionKind fadeType = TransitionKind::None;
};

/// Takes note of what is done to the decks. Must not fail and must not call back. Logic thread.
class SessionRecorder {
 public:
  virtual ~SessionRecorder() = default;
  virtual void RecordSessionEvent(const SessionEntry& entry) = 0;
};

}  // namespace kelvo
