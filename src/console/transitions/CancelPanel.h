#pragma once

#include "console/decks/VolumeLaw.h"
#include "platform/EventLoop.h"

#include <QObject>

namespace kelvo {

/// The button "Cancel" that is shown on a deck for two seconds after it was started by a start button.
/// Owned by the Transitions; logic thread.
class CancelPanel : public QObject {
  Q_OBJECT

 public:
  explicit CancelPanel(EventLoop& loop) : loop_(loop) {}

  /// Shows it on `deck`; hides by itself.
  void Open(Deck deck);
  void Hide();

  [[nodiscard]] bool Visible() const { return visible_; }
  [[nodiscard]] Deck OnDeck() const { return deck_; }

 Q_SIGNALS:
  void Changed();

 private:
  EventLoop& loop_;
  bool visible_ = false;
  Deck deck_ = Deck::One;
  Timer cancTimer_;
};

}  // namespace kelvo
