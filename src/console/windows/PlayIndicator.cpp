#include "console/windows/PlayIndicator.h"

#include "ui/Theme.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace kelvo {
namespace {

const QColor kRest(0x00, 0xff, 0xff);

/// The slope of a pattern's lines in degrees: lying, upright, rising, falling.
double AngleOf(int style) {
  switch (style) {
    case 3:
      return 90;
    case 4:
      return -45;
    case 5:
      return 45;
    default:
      return 0;
  }
}

void Hatch(QPainter& painter, const QRectF& field, double angle, double gap) {
  const double reach = std::hypot(field.width(), field.height()) / 2;
  painter.save();
  painter.translate(field.center());
  painter.rotate(angle);
  const int lines = static_cast<int>(reach / gap);
  for (int line = -lines; line < lines; ++line) {
    const double place = (line + 0.5) * gap;
    painter.drawLine(QPointF(-reach, place), QPointF(reach, place));
  }
  painter.restore();
}

}  // namespace

PlayIndicator::PlayIndicator(QWidget* parent) : QWidget(parent) {
  setFont(Theme::Font(0.85));
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void PlayIndicator::Show(const DeckIndicator& indicator) {
  if (indicator == indicator_) return;
  indicator_ = indicator;
  setAccessibleDescription(indicator.text);
  setToolTip(indicator.text);
  update();
}

QSize PlayIndicator::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 24, fontMetrics().height() + fontMetrics().height() / 3};
}

QSize PlayIndicator::minimumSizeHint() const {
  return {fontMetrics().height() * 3, sizeHint().height()};
}

void PlayIndicator::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  const QColor colour = indicator_.playing ? Theme::GroupColour(Group::Decks) : kRest;
  const QRectF field = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  // The words have a place of their own, so that no line runs through them.
  QRectF hatched = field;
  if (!indicator_.text.isEmpty()) hatched.setWidth(std::min(field.height() * 2.2, field.width() / 3));
  QPainterPath outline;
  outline.addRoundedRect(field, 4, 4);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(outline, Theme::Mix(colours.well, colour, indicator_.playing ? 0.10 : 0.16));
  if (indicator_.playing) {
    QPainterPath inside;
    inside.addRect(hatched);
    painter.save();
    painter.setClipPath(outline.intersected(inside));
    painter.setPen(QPen(Theme::Mix(colours.well, colour, 0.7), 1.6));
    Hatch(painter, hatched, AngleOf(indicator_.style), fontMetrics().height() * 0.42);
    painter.restore();
  }
  painter.setPen(Theme::Mix(colours.well, colour, indicator_.playing ? 0.6 : 0.35));
  painter.drawPath(outline);
  if (indicator_.text.isEmpty()) return;
  const double gap = fontMetrics().height() * 0.4;
  const QRectF room = field.adjusted(hatched.width() + gap, 0, -gap, 0);
  painter.setPen(colours.text);
  painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                   fontMetrics().elidedText(indicator_.text, Qt::ElideRight, static_cast<int>(room.width())));
}

}  // namespace kelvo
