#include "console/windows/WarningLamp.h"

#include "console/status/StatusTick.h"
#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QPainter>

#include <algorithm>

namespace kelvo {

WarningLamp::WarningLamp(const StatusTick& tick, Deck deck, QWidget* parent) : QWidget(parent) {
  const int number = DisplayNumber(deck);
  SetNames(*this, QStringLiteral("WarningLamp%1").arg(number), QStringLiteral("Shape%1").arg(number));
  setAccessibleName(tr("Warning lamp, deck %1").arg(number));
  setToolTip(tr("Red: deck %1 runs out and nothing is ready to follow").arg(number));
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  connect(&tick, &StatusTick::Ticked, this, [this, &tick, deck] { SetRed(tick.Status().lamps[deck]); });
}

void WarningLamp::SetRed(bool red) {
  if (red == red_) return;
  red_ = red;
  setAccessibleDescription(red ? tr("Runs out") : QString());
  update();
}

QSize WarningLamp::sizeHint() const {
  const int side = fontMetrics().height() * 3 / 2;
  return {side, side};
}

void WarningLamp::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPointF centre = QRectF(rect()).center();
  const double radius = std::min(width(), height()) / 2.0;
  if (red_) {
    QRadialGradient glow(centre, radius);
    glow.setColorAt(0.55, colours.onAir);
    QColor away = colours.onAir;
    away.setAlpha(0);
    glow.setColorAt(1, away);
    painter.setPen(Qt::NoPen);
    painter.setBrush(glow);
    painter.drawEllipse(centre, radius, radius);
  }
  const double glass = radius * 0.7;
  QRadialGradient light(centre - QPointF(glass, glass) * 0.3, glass * 1.5);
  light.setColorAt(
      0, red_ ? Theme::Mix(colours.onAir, Qt::white, 0.6) : Theme::Mix(colours.raised, colours.text, 0.12));
  light.setColorAt(0.6, red_ ? colours.onAir : colours.raised);
  light.setColorAt(1, red_ ? Theme::Mix(colours.onAir, Qt::black, 0.3) : colours.well);
  painter.setBrush(light);
  painter.setPen(QPen(red_ ? Theme::Mix(colours.onAir, Qt::white, 0.4) : colours.dim, 1.5));
  painter.drawEllipse(centre, glass, glass);
}

}  // namespace kelvo
