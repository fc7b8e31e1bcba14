#include "datamanager/windows/BeatLamp.h"

#include "ui/Theme.h"

#include <QPainter>

#include <algorithm>

namespace kelvo {

BeatLamp::BeatLamp(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("LmpBeat"));
  setAccessibleName(tr("Beat lamp"));
  setToolTip(tr("Flashes in the beat that was counted"));
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void BeatLamp::SetOn(bool on) {
  if (on == on_) return;
  on_ = on;
  update();
}

QSize BeatLamp::sizeHint() const {
  const int side = fontMetrics().height() * 2;
  return {side, side};
}

void BeatLamp::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double radius = std::min(width(), height()) / 2.0 - 2;
  painter.setBrush(on_ ? colours.ready : colours.well);
  painter.setPen(QPen(on_ ? Theme::Mix(colours.ready, Qt::white, 0.4) : colours.dim, 1.5));
  painter.drawEllipse(QRectF(rect()).center(), radius, radius);
}

}  // namespace kelvo
