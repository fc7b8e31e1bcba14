#include "console/decks/VolumeLaw.h"

#include "console/decks/DeckRecord.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace kelvo {
namespace {

/// The sliders hold what goes beyond their ends.
DeckLosses OnSliders(std::int64_t left, std::int64_t right) {
  const auto held = [](std::int64_t loss) {
    return static_cast<int>(std::clamp<std::int64_t>(loss, 0, kMostLoss));
  };
  return {held(left), held(right)};
}

}  // namespace

DeckLosses VolumeLaw(const PanPosition& position) {
  const std::int64_t x = position.x;
  const std::int64_t bias = position.panFadeBias;
  if (position.kind != TransitionKind::Pan) return x >= 0 ? OnSliders(10 * x, 0) : OnSliders(0, -10 * x);
  // A half of ten times a whole number is a whole number: nothing is left to round.
  if (position.transitionDeck == Deck::One) {
    return x >= 0 ? OnSliders(x * bias, 5 * (200 - x)) : OnSliders(5 * x, 5 * std::abs(x - 200));
  }
  return x >= 0 ? OnSliders(5 * std::abs(x + 200), 5 * (x - 200))
                : OnSliders(5 * (x + 200), std::abs(x * bias));
}

}  // namespace kelvo
