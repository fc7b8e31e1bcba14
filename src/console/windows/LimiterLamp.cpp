#include "console/windows/LimiterLamp.h"

#include "ui/Theme.h"

#include <QPainter>

namespace kelvo {
namespace {

const QString kWords = QStringLiteral("LIMIT");

QFont WordFont() {
  return Theme::Font(0.82, QFont::Bold);
}

}  // namespace

LimiterLamp::LimiterLamp(const ProgrammeLevels& levels, QWidget* parent) : QWidget(parent), levels_(levels) {
  setObjectName(QStringLiteral("LimiterLamp"));
  setAccessibleName(tr("Lamp of the limiter"));
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  connect(&levels_, &ProgrammeLevels::LampChanged, this, [this] { Show(); });
  Show();
}

void LimiterLamp::Show() {
  const QString words =
      levels_.LampLit() ? tr("The limiter turns the programme down by %1 dB, so that nothing clips")
                              .arg(levels_.Reduction(), 0, 'f', 1)
                        : tr("The limiter rests: the programme passes as it is. Amber: it turns peaks down, "
                             "so that nothing clips");
  if (words != toolTip()) {
    setToolTip(words);
    setAccessibleDescription(words);
  }
  if (lit_ == levels_.LampLit()) return;
  lit_ = levels_.LampLit();
  update();
}

QSize LimiterLamp::sizeHint() const {
  const QFontMetrics metrics(WordFont());
  return {metrics.horizontalAdvance(kWords) + metrics.height(), metrics.height() * 3 / 2};
}

void LimiterLamp::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(lit_ ? colours.amber : colours.line);
  painter.setBrush(lit_ ? colours.amber : colours.well);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
  painter.setFont(WordFont());
  painter.setPen(lit_ ? Theme::TextOn(colours.amber) : colours.muted);
  painter.drawText(rect(), Qt::AlignCenter, kWords);
}

}  // namespace kelvo
