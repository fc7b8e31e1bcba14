#pragma once

#include <QLabel>

namespace kelvo {

/// A line of words that ends in "..." where there is no room, so that a long title never widens the desk;
/// with word wrap as many lines as it is high. GUI thread.
class ElidedLabel : public QLabel {
  Q_OBJECT
 public:
  using QLabel::QLabel;

  /// Where a line is cut that has no room; its end at first.
  void SetElideMode(Qt::TextElideMode mode);

  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Qt::TextElideMode mode_ = Qt::ElideRight;
};

}  // namespace kelvo
