#pragma once

#include "console/desk/DeckTypes.h"
#include "database/TransitionKind.h"

namespace kelvo {

/// The ends of the cross-pan slider: Deck 1 alone and Deck 2 alone.
inline constexpr int kDeckOneAlone = -200;
inline constexpr int kDeckTwoAlone = 200;

/// What the law goes by.
struct PanPosition {
  int x = 0;  ///< the cross-pan slider, -200..200
  TransitionKind kind = TransitionKind::None;
  Deck transitionDeck = Deck::One;  ///< the deck that comes in; only a pan asks
  int panFadeBias = 12;             ///< loss of the coming deck of a pan for each step before the centre
};

/// Losses of the two decks, whole numbers 0 (full) to 2000.
struct DeckLosses {
  int left = 0;   ///< Deck 1
  int right = 0;  ///< Deck 2
  bool operator==(const DeckLosses&) const = default;
};

/// The level of both decks for a position of the cross-pan slider.
[[nodiscard]] DeckLosses VolumeLaw(const PanPosition& position);

}  // namespace kelvo
