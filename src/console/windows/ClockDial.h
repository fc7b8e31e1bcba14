#pragma once

#include "console/status/ClockFace.h"

#include <QWidget>

namespace kelvo {

/// The analog clock: a face with three hands, as large as its place allows. Shows the time that it is given;
/// GUI thread.
class ClockDial : public QWidget {
  Q_OBJECT
 public:
  explicit ClockDial(QWidget* parent = nullptr);

  void SetHands(const ClockHands& hands);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  ClockHands hands_;
};

}  // namespace kelvo
