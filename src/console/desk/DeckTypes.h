#pragma once

#include <array>

namespace kelvo {

/// The two decks of the desk, "AUDIO STREAM ONE" and "AUDIO STREAM TWO".
enum class Deck { One, Two };
inline constexpr std::array<Deck, 2> kDecks{Deck::One, Deck::Two};

[[nodiscard]] constexpr Deck Other(Deck deck) {
  return deck == Deck::One ? Deck::Two : Deck::One;
}
[[nodiscard]] constexpr std::size_t IndexOf(Deck deck) {
  return deck == Deck::One ? 0 : 1;
}
/// The number of the deck's player, by which records and group playlists know it: 2 or 3.
[[nodiscard]] constexpr int PlayerNumber(Deck deck) {
  return deck == Deck::One ? 2 : 3;
}
[[nodiscard]] constexpr Deck DeckOfPlayer(int number) {
  return number == PlayerNumber(Deck::Two) ? Deck::Two : Deck::One;
}
/// The number that the operator sees: 1 or 2.
[[nodiscard]] constexpr int DisplayNumber(Deck deck) {
  return deck == Deck::One ? 1 : 2;
}

enum class DeckState {
  Empty = 0,
  Loaded = 1,
  Playing = 2,
  Done = 3,  ///< stopped or played out
};

/// One value a deck.
template <typename T>
class PerDeck {
 public:
  [[nodiscard]] T& operator[](Deck deck) { return values_[IndexOf(deck)]; }
  [[nodiscard]] const T& operator[](Deck deck) const { return values_[IndexOf(deck)]; }
  [[nodiscard]] auto begin() { return values_.begin(); }
  [[nodiscard]] auto end() { return values_.end(); }

 private:
  std::array<T, 2> values_{};
};

}  // namespace kelvo
