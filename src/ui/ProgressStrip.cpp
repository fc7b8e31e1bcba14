#include "ui/ProgressStrip.h"

#include "ui/Tabular.h"
#include "ui/Theme.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace kelvo {

ProgressStrip::ProgressStrip(QWidget* parent) : QProgressBar(parent), colour_(Theme::Palette().blue) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setRange(0, 100);
  setValue(0);
}

void ProgressStrip::SetColour(const QColor& colour) {
  if (colour == colour_) return;
  colour_ = colour;
  update();
}

void ProgressStrip::SetWords(const QString& words) {
  if (words == words_) return;
  words_ = words;
  setAccessibleDescription(words);
  update();
}

void ProgressStrip::SetPercentShown(bool shown) {
  percentShown_ = shown;
  update();
}

double ProgressStrip::Share() const {
  const double span = static_cast<double>(maximum()) - minimum();
  return span > 0 ? std::clamp((static_cast<double>(value()) - minimum()) / span, 0.0, 1.0) : 0.0;
}

QString ProgressStrip::text() const {
  const QString percent = percentShown_ ? tr("%1 %").arg(static_cast<int>(Share() * 100)) : QString();
  return words_.isEmpty() || percent.isEmpty() ? words_ + percent : words_ + QLatin1Char(' ') + percent;
}

QSize ProgressStrip::sizeHint() const {
  return {fontMetrics().height() * 14, fontMetrics().height() * 13 / 10};
}

QSize ProgressStrip::minimumSizeHint() const {
  return {fontMetrics().height() * 4, sizeHint().height()};
}

void ProgressStrip::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  QPainterPath trough;
  trough.addRoundedRect(frame, 4, 4);
  painter.fillPath(trough, colours.well);
  const QRectF done(0, 0, width() * Share(), height());
  const QRectF rest(done.right(), 0, width() - done.width(), height());
  painter.save();
  painter.setClipRect(done);
  painter.fillPath(trough, colour_);
  painter.restore();
  painter.setPen(colours.line);
  painter.drawPath(trough);

  painter.setFont(font());
  const double margin = fontMetrics().height() * 0.5;
  const QRectF area = QRectF(rect()).adjusted(margin, 0, -margin, 0);
  const QString percent = percentShown_ ? tr("%1 %").arg(static_cast<int>(Share() * 100)) : QString();
  const double taken =
      percent.isEmpty() ? 0 : TabularWidth(QFontMetricsF(font()), QStringLiteral("100 %")) + margin;
  const QString words =
      fontMetrics().elidedText(words_, Qt::ElideRight, static_cast<int>(area.width() - taken));
  const auto write = [&](const QRectF& part, const QColor& ink) {
    painter.setClipRect(part);
    painter.setPen(ink);
    DrawTabular(painter, area.adjusted(0, 0, -taken, 0), Qt::AlignLeft | Qt::AlignVCenter, words);
    DrawTabular(painter, area, Qt::AlignRight | Qt::AlignVCenter, percent);
  };
  write(done, Theme::TextOn(colour_));
  write(rest, colours.text);
}

}  // namespace kelvo
