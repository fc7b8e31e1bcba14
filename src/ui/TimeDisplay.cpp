#include "ui/TimeDisplay.h"

#include "ui/Tabular.h"
#include "ui/Theme.h"

#include <QPainter>

#include <algorithm>

namespace kelvo {

TimeDisplay::TimeDisplay(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setAccessibleDescription(Spoken(text_));
}

void TimeDisplay::SetText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  setAccessibleDescription(Spoken(text));
  update();
}

void TimeDisplay::SetState(State state) {
  if (state == state_) return;
  state_ = state;
  update();
}

void TimeDisplay::SetLit(bool lit) {
  if (lit == lit_) return;
  lit_ = lit;
  if (state_ == State::BlinkRed) update();
}

QString TimeDisplay::Spoken(const QString& text) {
  const QStringList parts = text.split(QLatin1Char(':'));
  bool known = parts.size() == 2;
  bool numeric = false;
  const int minutes = parts.value(0).toInt(&numeric);
  known = known && numeric;
  const int seconds = parts.value(1).toInt(&numeric);
  if (!known || !numeric) return text;
  const QString secondWords = seconds == 1 ? tr("1 second") : tr("%1 seconds").arg(seconds);
  if (minutes == 0) return secondWords;
  return (minutes == 1 ? tr("1 minute") : tr("%1 minutes").arg(minutes)) + QLatin1Char(' ') + secondWords;
}

QSize TimeDisplay::sizeHint() const {
  return minimumSizeHint() * 2;
}

QSize TimeDisplay::minimumSizeHint() const {
  const QFontMetricsF metrics(Theme::Font(1.6, QFont::Bold));
  return {static_cast<int>(TabularWidth(metrics, QStringLiteral("00:00"))) + 8,
          static_cast<int>(metrics.height())};
}

void TimeDisplay::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QRectF area = rect();

  QFont font = Theme::Font(1.0, QFont::Bold);
  constexpr int trial = 100;
  font.setPixelSize(trial);
  const QFontMetricsF metrics(font);
  const QString& widest = text_.size() < 5 ? QStringLiteral("00:00") : text_;
  area.adjust(area.width() * 0.02, area.height() * 0.04, -area.width() * 0.02, -area.height() * 0.04);
  const double byWidth = area.width() / TabularWidth(metrics, widest);
  const double byHeight = area.height() / (metrics.capHeight() * 1.15);
  font.setPixelSize(std::max(8, static_cast<int>(trial * std::min(byWidth, byHeight))));
  const QFontMetricsF real(font);

  // The last seconds are a lit red plate with white digits, and red digits on the dark between: seen from
  // afar, and the digits can be read in both halves of the beat.
  QColor ink = colours.text;
  if (state_ == State::Dim) ink = colours.dim;
  if (state_ == State::Amber) ink = colours.amber;
  if (state_ == State::BlinkRed) {
    ink = lit_ ? QColor(Qt::white) : Theme::Mix(colours.onAir, Qt::white, 0.2);
    if (lit_) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(colours.onAir);
      QRectF plate = rect();
      plate.setHeight(std::min(plate.height(), real.capHeight() * 1.6));
      plate.moveCenter(area.center());
      painter.drawRoundedRect(plate, 6, 6);
    }
  }

  painter.setFont(font);
  painter.setPen(ink);
  // Digits have no descender: the middle of the capitals belongs in the middle of the area.
  const double shift = (real.ascent() - real.descent() - real.capHeight()) / 2;
  DrawTabular(painter, area.translated(0, -shift), Qt::AlignCenter, text_);
}

}  // namespace kelvo
