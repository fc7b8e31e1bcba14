#include "console/windows/ClockDial.h"

#include "ui/Theme.h"

#include <QPainter>

#include <algorithm>

namespace kelvo {
namespace {

QPointF PointOf(const ClockPoint& point) {
  return {point.x, point.y};
}

/// From a little behind the centre to `tip`.
void DrawHand(QPainter& painter, const ClockPoint& tip, double tail, double width, const QColor& colour) {
  painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(PointOf(tip) * -tail, PointOf(tip));
}

void DrawFace(QPainter& painter, bool large) {
  const Theme::Colours& colours = Theme::Palette();
  QRadialGradient ground(QPointF(0, -kFaceRadius / 3), kFaceRadius * 1.4);
  ground.setColorAt(0, Theme::Mix(colours.surface, colours.text, 0.07));
  ground.setColorAt(1, colours.well);
  painter.setBrush(ground);
  painter.setPen(QPen(Theme::GroupEdge(Group::Console), 46));
  painter.drawEllipse(QPointF(), kFaceRadius - 23, kFaceRadius - 23);
  for (int mark = 0; mark < 60; ++mark) {
    const bool hour = mark % 5 == 0;
    const bool quarter = mark % 15 == 0;
    // On a small face the minutes would run together into a grey ring.
    if (!hour && !large) continue;
    const double inner = quarter ? 740 : hour ? 790 : 860;
    painter.setPen(QPen(hour ? colours.text : colours.dim,
                        quarter ? 52
                        : hour  ? 34
                                : 14,
                        Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(PointOf(OnFace(inner, 6.0 * mark)), PointOf(OnFace(905, 6.0 * mark)));
  }
}

}  // namespace

ClockDial::ClockDial(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
  setAccessibleName(tr("Clock"));
}

void ClockDial::SetHands(const ClockHands& hands) {
  hands_ = hands;
  update();
}

QSize ClockDial::sizeHint() const {
  const int side = fontMetrics().height() * 5;
  return {side, side};
}

QSize ClockDial::minimumSizeHint() const {
  const int side = fontMetrics().height() * 3;
  return {side, side};
}

void ClockDial::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double side = std::min(width(), height());
  painter.translate(QRectF(rect()).center());
  painter.scale(side / (2 * kFaceRadius), side / (2 * kFaceRadius));
  DrawFace(painter, side >= 90);
  DrawHand(painter, hands_.hour, 0.12, 78, colours.text);
  DrawHand(painter, hands_.minute, 0.12, 54, colours.text);
  DrawHand(painter, hands_.second, 0.2, 24, colours.amber);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colours.amber);
  painter.drawEllipse(QPointF(), 56, 56);
  painter.setBrush(colours.well);
  painter.drawEllipse(QPointF(), 20, 20);
}

}  // namespace kelvo
