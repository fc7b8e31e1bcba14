#pragma once

#include "ui/Panel.h"

class QLabel;

namespace kelvo {

class AutoPlay;
class Fader;
class StatusTick;
class Transitions;

/// The middle of the desk: the cross-pan slider between the decks, the fade speed, and the default fade-out
/// position. Owned by the console window; GUI thread.
class CrossPanPanel : public Panel {
  Q_OBJECT
 public:
  CrossPanPanel(Transitions& fades, AutoPlay& automatic, StatusTick& status, QWidget* parent = nullptr);

 private:
  void ShowSpeed();
  void ShowDelta();

  Transitions& fades_;
  AutoPlay& automatic_;
  Fader* crossPan_;
  Fader* speed_;
  QLabel* speedWords_;
  Fader* delta_;
  QLabel* deltaWords_;
};

}  // namespace kelvo
