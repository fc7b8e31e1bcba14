#pragma once

#include "console/desk/DeckTypes.h"
#include "console/queue/LoadRequest.h"
#include "database/TransitionKind.h"
#include "platform/EventLoop.h"

#include <QObject>
#include <QString>

#include <functional>

namespace kelvo {

/// What the confirming button of the panel does.
enum class PanelAction { LoadTrack, StopDeck, StartTransition };

/// A question at a deck's place: its words, the word on its button, and what that button does to which deck.
struct PanelQuestion {
  QString text;
  QString button;
  PanelAction action = PanelAction::LoadTrack;
  Deck deck = Deck::One;
  LoadRequest load =
      {};  ///< of LoadTrack: what was asked about, whatever is selected by the time of the answer
  TransitionKind kind = TransitionKind::None;  ///< of StartTransition
};

/// The confirmation panel of the desk. While it shows, the console's lists are disabled; unanswered it hides
/// by itself after three seconds. Owned by the Console; logic thread.
class ConfirmationPanel : public QObject {
  Q_OBJECT

 public:
  explicit ConfirmationPanel(EventLoop& loop) : loop_(loop) {}

  void Open(PanelQuestion question);
  /// The operator says yes: the panel hides, then OnConfirmed is called.
  void Confirm();
  /// The operator says no.
  void Cancel();

  [[nodiscard]] bool Visible() const { return visible_; }
  [[nodiscard]] const PanelQuestion& Question() const { return question_; }
  /// What LoadTrack will load, to be kept true while the question is shown.
  [[nodiscard]] LoadRequest& Asked() { return question_.load; }
  /// How often the panel ran out unanswered.
  [[nodiscard]] int PanelTimeouts() const { return panelTimeouts_; }

  std::function<void(const PanelQuestion&)> OnConfirmed;

 Q_SIGNALS:
  void Changed();

 private:
  void Hide();

  EventLoop& loop_;
  PanelQuestion question_;
  bool visible_ = false;
  int panelTimeouts_ = 0;
  Timer timeout_;
};

}  // namespace kelvo
