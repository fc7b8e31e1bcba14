#include "console/transitions/DeckCommands.h"

#include "console/transitions/PressToSpeak.h"
#include "console/transitions/Transitions.h"

namespace kelvo {

QString DeckCommands::WhyNoHand() const {
  if (state_->AutoPlayOn) return tr("Automatic play runs");
  if (state_->GroupPlayOn) return tr("A group playlist runs");
  return speak_->SectionDisabled() ? tr("The decks step back for the voice") : QString();
}

QString DeckCommands::WhyNoHandInFade() const {
  const QString why = WhyNoHand();
  if (!why.isEmpty()) return why;
  return fades_->WalkActive() ? tr("A fade runs") : QString();
}

QString DeckCommands::WhyNoLoad(Deck deck) const {
  const QString why = WhyNoHand();
  if (!why.isEmpty() || decks_->LoadCommandActs(deck)) return why;
  return state_->TransitionActive ? tr("A fade runs") : tr("A track is being loaded");
}

QString DeckCommands::WhyNoStart(Deck deck) const {
  const QString why = WhyNoHand();
  const DeckRecord& record = decks_->Record(deck);
  if (!why.isEmpty()) return why;
  if (record.Loading) return tr("A track is being loaded");
  if (record.State == DeckState::Empty) return tr("No track is loaded");
  return record.State == DeckState::Playing ? tr("It plays already") : QString();
}

QString DeckCommands::WhyNoStop(Deck deck) const {
  const QString why = WhyNoHandInFade();
  if (!why.isEmpty()) return why;
  return decks_->Record(deck).State == DeckState::Empty ? tr("No track is loaded") : QString();
}

QString DeckCommands::WhyNoMove(Deck deck, FastMove move) const {
  const QString why = WhyNoHandInFade();
  const DeckRecord& record = decks_->Record(deck);
  if (!why.isEmpty()) return why;
  if (record.State == DeckState::Empty) return tr("No track is loaded");
  if (record.State != DeckState::Playing) return {};
  if (move == FastMove::Rewind || move == FastMove::Forward) return tr("Not while it plays");
  return record.Live() ? tr("It is on air") : QString();
}

QString DeckCommands::WhyNoTransition(Deck deck) const {
  const QString why = WhyNoHandInFade();
  const DeckRecord& record = decks_->Record(deck);
  if (!why.isEmpty()) return why;
  if (record.Loading) return tr("A track is being loaded");
  return record.State == DeckState::Empty ? tr("No track is loaded") : QString();
}

}  // namespace kelvo
