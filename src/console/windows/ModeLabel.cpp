#include "console/windows/ModeLabel.h"

#include "console/status/StatusTick.h"
#include "ui/Naming.h"
#include "ui/SpokenText.h"
#include "ui/Theme.h"

#include <QPainter>

#include <algorithm>

namespace kelvo {
namespace {

/// The longest of the words: one size for all, so that nothing jumps when the mode changes.
const QString kLongest = QStringLiteral("AUTOMATIC PLAY");
constexpr double kMargin = 0.6;  ///< beside the word, in its letter height

QFont WordFont() {
  QFont font = Theme::Font(1.0, QFont::Black);
  font.setLetterSpacing(QFont::PercentageSpacing, 104);
  return font;
}

}  // namespace

ModeLabel::ModeLabel(const StatusTick& tick, QWidget* parent) : QLabel(parent), tick_(tick) {
  SetNames(*this, QStringLiteral("LblMode"), QStringLiteral("Label32_3"));
  setAlignment(Qt::AlignCenter);
  connect(&tick_, &StatusTick::Ticked, this, [this] { Show(); });
  Show();
}

void ModeLabel::Show() {
  const QString& word = tick_.Status().mode.text;
  if (text() != word) {
    SetSpokenText(*this, tr("Mode"), word);
  }
  update();
}

QSize ModeLabel::sizeHint() const {
  return minimumSizeHint() * 3 / 2;
}

QSize ModeLabel::minimumSizeHint() const {
  const QFontMetrics metrics(WordFont());
  return {metrics.horizontalAdvance(kLongest) + metrics.height(), metrics.height() * 3 / 2};
}

void ModeLabel::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  const ModeWord& mode = tick_.Status().mode;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);

  QFont font = WordFont();
  constexpr int trial = 100;
  font.setPixelSize(trial);
  const QFontMetricsF metrics(font);
  const double widest = std::max(metrics.horizontalAdvance(kLongest), metrics.horizontalAdvance(text()));
  const double byWidth = width() / (widest + 2 * kMargin * trial);
  const double byHeight = height() * 0.55 / metrics.capHeight();
  font.setPixelSize(std::max(8, static_cast<int>(trial * std::min(byWidth, byHeight))));

  QColor ink = mode.lit ? colours.amber : Theme::Mix(colours.surface, colours.amber, 0.55);
  if (!mode.idle) {
    const QFontMetricsF real(font);
    QRectF plate(0, 0, real.horizontalAdvance(text()) + 2 * kMargin * font.pixelSize(),
                 real.capHeight() * 1.8);
    plate.moveCenter(QRectF(rect()).center());
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours.ready);
    painter.drawRoundedRect(plate, 6, 6);
    ink = Theme::TextOn(colours.ready);
  }
  painter.setFont(font);
  painter.setPen(ink);
  painter.drawText(rect(), Qt::AlignCenter, text());
}

}  // namespace kelvo
