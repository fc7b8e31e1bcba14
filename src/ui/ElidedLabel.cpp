#include "ui/ElidedLabel.h"

#include <QPainter>

namespace kelvo {

void ElidedLabel::SetElideMode(Qt::TextElideMode mode) {
  mode_ = mode;
  update();
}

QSize ElidedLabel::minimumSizeHint() const {
  return {fontMetrics().height() * 2, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
  painter.setPen(palette().color(group, foregroundRole()));
  if (wordWrap()) {
    // What fits of the last line is shown of a text that needs more lines than there are.
    painter.drawText(rect(), static_cast<int>(alignment()) | Qt::TextWordWrap, text());
    return;
  }
  const QString shown = fontMetrics().elidedText(text(), mode_, width());
  painter.drawText(rect(), static_cast<int>(alignment()), shown);
}

}  // namespace kelvo
