#pragma once

#include "console/Console.h"
#include "ui/Panel.h"

class QLabel;

namespace kelvo {

class Fader;

/// The middle of the desk: the cross-pan slider between the decks, the fade speed, and the default fade-out
/// position. Owned by the console window; GUI thread.
class CrossPanPanel : public Panel {
  Q_OBJECT
 public:
  explicit CrossPanPanel(Console& console, QWidget* parent = nullptr);

 private:
  void ShowSpeed();
  void ShowDelta();

  Console& console_;
  Fader* crossPan_;
  Fader* speed_;
  QLabel* speedWords_;
  Fader* delta_;
  QLabel* deltaWords_;
};

}  // namespace kelvo
