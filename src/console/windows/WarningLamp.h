#pragma once

#include "console/desk/DeckTypes.h"

#include <QWidget>

namespace kelvo {

class StatusTick;

/// The lamp of a deck that runs out with nothing to follow it: dark, and red beat by beat in the last
/// seconds. Shows the DeskStatus; owned by the console window, GUI thread.
class WarningLamp : public QWidget {
  Q_OBJECT
 public:
  WarningLamp(const StatusTick& tick, Deck deck, QWidget* parent = nullptr);

  [[nodiscard]] bool Red() const { return red_; }

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void SetRed(bool red);

  bool red_ = false;
};

}  // namespace kelvo
