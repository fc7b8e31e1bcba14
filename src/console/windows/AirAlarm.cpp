#include "console/windows/AirAlarm.h"

#include "console/status/DeskStatus.h"
#include "ui/Theme.h"

#include <QAccessible>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kelvo {
namespace {

const QString kWords = QStringLiteral("THE AIR IS SILENT");

QFont WordFont(int pixels) {
  QFont font = Theme::Font(1.0, QFont::Black);
  font.setLetterSpacing(QFont::PercentageSpacing, 104);
  font.setPixelSize(pixels);
  return font;
}

}  // namespace

AirAlarm::AirAlarm(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("AirAlarm"));
  setAccessibleName(kWords);
  setToolTip(tr("Click when the silence is wanted; stopping a deck says so too"));
  hide();
}

void AirAlarm::Show(const DeskStatus& status) {
  if (status.airSilent != isHidden()) return;
  setVisible(status.airSilent);
  if (!status.airSilent) return;
  raise();
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void AirAlarm::SetLit(bool lit) {
  lit_ = lit;
  if (isVisible()) update();
}

void AirAlarm::mousePressEvent(QMouseEvent*) {
  Q_EMIT Accepted();
}

void AirAlarm::DrawLamp(QPainter& painter, const QRectF& square) const {
  const QColor red = Theme::Palette().onAir;
  const QPointF centre = square.center();
  const double radius = square.width() / 2;
  painter.setPen(QPen(lit_ ? QColor(Qt::white) : red, radius * 0.16, Qt::SolidLine, Qt::RoundCap));
  for (int ray = 0; lit_ && ray < 8; ++ray) {
    const double angle = ray * std::numbers::pi / 4;
    const QPointF way(std::cos(angle), std::sin(angle));
    painter.drawLine(centre + way * radius * 0.78, centre + way * radius * 0.92);
  }
  painter.setBrush(lit_ ? Theme::Mix(red, Qt::white, 0.15) : Theme::Palette().window);
  painter.drawEllipse(centre, radius * 0.52, radius * 0.52);
}

void AirAlarm::paintEvent(QPaintEvent*) {
  const QColor red = Theme::Palette().onAir;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double edge = std::max(2.0, height() / 16.0);
  const QRectF plate = QRectF(rect()).adjusted(edge / 2, edge / 2, -edge / 2, -edge / 2);
  painter.setPen(QPen(lit_ ? QColor(Qt::white) : red, edge));
  painter.setBrush(Theme::Mix(red, Qt::black, lit_ ? 0.35 : 0.85));
  painter.drawRoundedRect(plate, edge * 2, edge * 2);

  // As large as the place allows, the lamp before the words.
  constexpr int trial = 100;
  const QFontMetricsF metrics(WordFont(trial));
  const double gap = height() * 0.2;
  const double lamp = height() * 0.8;
  const double room = width() - lamp - 3 * gap;
  const double share =
      std::min(room / metrics.horizontalAdvance(kWords), height() * 0.56 / metrics.capHeight());
  const QFont font = WordFont(std::max(8, static_cast<int>(trial * share)));
  const QFontMetricsF real(font);
  const double wide = lamp + gap + real.horizontalAdvance(kWords);
  const double left = (width() - wide) / 2;
  DrawLamp(painter, QRectF(left, (height() - lamp) / 2, lamp, lamp));
  painter.setFont(font);
  painter.setPen(Qt::white);
  painter.drawText(QPointF(left + lamp + gap, (height() + real.capHeight()) / 2), kWords);
}

}  // namespace kelvo
