#pragma once

#include "console/desk/DeckTypes.h"
#include "database/SessionCode.h"
#include "database/TextColumns.h"
#include "database/TransitionKind.h"

#include <optional>

namespace kelvo {

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
