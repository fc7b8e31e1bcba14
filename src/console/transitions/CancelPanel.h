#pragma once

#include "console/decks/VolumeLaw.h"
#include "platform/EventLoop.h"

#include <QObject>

namespace kelvo {

/// The button "Cancel" that stands beside a start button for two seconds after a deck was started with it.
/// Owned by the Transitions; logic thread.
class CancelPanel : public QObject {
  Q_OBJECT

 public:
  explicit CancelPanel(EventLoop& loop) : loop_(loop) {}

  /// Shows it beside the button of `kind` on `deck`; hides by itself.
  void Open(Deck deck, TransitionKind kind);
  void Hide();

  [[nodiscard]] bool Visible() const { return visible_; }
  [[nodiscard]] Deck OnDeck() const { return deck_; }
  [[nodiscard]] TransitionKind BesideKind() const { return kind_; }

 Q_SIGNALS:
  void Changed();

 private:
  EventLoop& loop_;
  bool visible_ = false;
  Deck deck_ = Deck::One;
  TransitionKind kind_ = TransitionKind::PartFade;
  Timer cancTimer_;
};

}  // namespace kelvo
