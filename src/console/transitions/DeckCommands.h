#pragma once

#include "console/desk/DeckTypes.h"

#include <QCoreApplication>
#include <QString>

namespace kelvo {

struct ConsoleState;
class DeckEngine;
enum class FastMove;
class PressToSpeak;
class Transitions;

/// Why a command of a deck can't be given at the moment, in words for the operator; empty when it can. Looks
/// at the desk only. A value; what it looks at outlives it. Logic thread.
class DeckCommands {
  Q_DECLARE_TR_FUNCTIONS(DeckCommands)

 public:
  DeckCommands(const DeckEngine& decks, const Transitions& fades, const PressToSpeak& speak,
               const ConsoleState& state)
      : decks_(&decks), fades_(&fades), speak_(&speak), state_(&state) {}

  [[nodiscard]] QString WhyNoLoad(Deck deck) const;
  /// The plain start.
  [[nodiscard]] QString WhyNoStart(Deck deck) const;
  [[nodiscard]] QString WhyNoStop(Deck deck) const;
  [[nodiscard]] QString WhyNoMove(Deck deck, FastMove move) const;
  /// A start by pan, part fade or dub.
  [[nodiscard]] QString WhyNoTransition(Deck deck) const;

 private:
  /// The decks take no hand at all.
  [[nodiscard]] QString WhyNoHand() const;
  [[nodiscard]] QString WhyNoHandInFade() const;

  const DeckEngine* decks_;
  const Transitions* fades_;
  const PressToSpeak* speak_;
  const ConsoleState* state_;
};

}  // namespace kelvo
