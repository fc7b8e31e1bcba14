#include "console/decks/VolumeLaw.h"

#include <gmock/gmock.h>

namespace kelvo {
namespace {

struct Row {
  int x;
  TransitionKind kind;
  Deck deck;
  int bias;
  DeckLosses losses;
};

TEST(VolumeLaw, EveryBranchAtItsEndsAndItsMiddle) {
  constexpr auto kOne = Deck::One;
  constexpr auto kTwo = Deck::Two;
  using enum TransitionKind;
  const std::vector<Row> rows{
      {-200, PartFade, kOne, 12, {0, 2000}},
      {-1, PartFade, kTwo, 12, {0, 10}},
      {0, PartFade, kOne, 12, {0, 0}},
      {50, PartFade, kTwo, 12, {500, 0}},
      {200, PartFade, kTwo, 12, {2000, 0}},
      {-50, None, kTwo, 12, {0, 500}},
      {1, Dub, kOne, 12, {10, 0}},

      {200, Pan, kOne, 12, {2000, 0}},  // 2400 is beyond the slider
      {100, Pan, kOne, 12, {1200, 500}},
      {0, Pan, kOne, 12, {0, 1000}},
      {-1, Pan, kOne, 12, {0, 1005}},
      {-200, Pan, kOne, 12, {0, 2000}},

      {-200, Pan, kTwo, 12, {0, 2000}},
      {-100, Pan, kTwo, 12, {500, 1200}},
      {-1, Pan, kTwo, 12, {995, 12}},
      {0, Pan, kTwo, 12, {1000, 0}},
      {199, Pan, kTwo, 12, {1995, 0}},
      {200, Pan, kTwo, 12, {2000, 0}},

      // The bias sets how steep the coming deck rises.
      {-100, Pan, kTwo, 5, {500, 500}},
      {100, Pan, kOne, 0, {0, 500}},
      {-100, Pan, kTwo, -12, {500, 1200}},
      {100, Pan, kOne, -12, {0, 500}},
      {-200, Pan, kTwo, 2147483647, {0, 2000}},
  };
  for (const Row& row : rows) {
    const DeckLosses losses = VolumeLaw({row.x, row.kind, row.deck, row.bias});
    EXPECT_EQ(losses, row.losses) << "x " << row.x << " kind " << static_cast<int>(row.kind) << " deck "
                                  << DisplayNumber(row.deck) << " bias " << row.bias << " gave "
                                  << losses.left << " and " << losses.right;
  }
}

}  // namespace
}  // namespace kelvo
