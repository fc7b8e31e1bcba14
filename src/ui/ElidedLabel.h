#pragma once

#include <QLabel>

namespace kelvo {

/// A line of words that ends in "..." where there is no room, so that a long title never widens the desk;
/// with word wrap as many lines as it is high. GUI thread.
class ElidedLabel : public QLabel {
  Q_OBJECT
 public:
  using QLabel::QLabel;

  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kelvo
