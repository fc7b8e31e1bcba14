#include "console/windows/LevelMeter.h"

#include "ui/Tabular.h"
#include "ui/Theme.h"

#include <QPaintEvent>
#include <QPainter>

#include <array>
#include <cmath>

namespace kelvo {
namespace {

constexpr int kGap = 2;
constexpr std::array kMarks{-50, -40, -30, -20, -15, -10, -5, 0};
constexpr double kAmberFrom = -9;
/// The limiter's ceiling: what is above it doesn't come.
constexpr double kRedFrom = -1;

QFont SmallFont() {
  return Theme::Font(0.72);
}

QFont DigitFont() {
  return Theme::Font(0.95, QFont::DemiBold);
}

}  // namespace

LevelMeter::LevelMeter(ProgrammeLevels& levels, QWidget* parent)
    : QWidget(parent),
      levels_(levels),
      digitWidth_(static_cast<int>(TabularWidth(QFontMetricsF(DigitFont()), QStringLiteral("-00.0 LUFS"))) +
                  2) {
  setObjectName(QStringLiteral("LevelMeter"));
  setAccessibleName(tr("Level of the programme"));
  setToolTip(
      tr("What is heard on air, left and right: bright the average, dim the peak, a mark the peak of two "
         "seconds.\nLUFS is how loud the last 0.4 seconds are to an ear"));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  connect(&levels_, &ProgrammeLevels::Renewed, this, [this] { Show(); });
}

int LevelMeter::BarHeight() const {
  return std::max(6, fontMetrics().height() * 9 / 20);
}

QSize LevelMeter::sizeHint() const {
  return {fontMetrics().height() * 16, 2 * BarHeight() + kGap + QFontMetrics(SmallFont()).height()};
}

QRect LevelMeter::BarOf(int side) const {
  const int digits = digitWidth_ + fontMetrics().height() / 2;
  return {0, side * (BarHeight() + kGap), width() - digits, BarHeight()};
}

QRect LevelMeter::Digits() const {
  return {width() - digitWidth_, 0, digitWidth_, height()};
}

int LevelMeter::PlaceOf(double decibels) const {
  return static_cast<int>(std::lround(ProgrammeLevels::Deflection(decibels) * BarOf(0).width()));
}

void LevelMeter::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  watch_ = levels_.Watch();
}

void LevelMeter::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  watch_ = nullptr;
}

void LevelMeter::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  ground_ = {};
}

void LevelMeter::Show() {
  update(BarOf(0) | BarOf(1));
  if (shown_ == levels_.LoudnessWords()) return;
  shown_ = levels_.LoudnessWords();
  update(Digits());
}

QPixmap LevelMeter::LitBar(double brightness) const {
  const Theme::Colours& colours = Theme::Palette();
  const QRect bar = BarOf(0);
  QPixmap lit(bar.size() * devicePixelRatio());
  lit.setDevicePixelRatio(devicePixelRatio());
  QPainter painter(&lit);
  const auto fill = [&](int from, int to, const QColor& colour) {
    painter.fillRect(from, 0, to - from, bar.height(), Theme::Mix(colours.well, colour, brightness));
  };
  fill(0, PlaceOf(kAmberFrom), colours.ready);
  fill(PlaceOf(kAmberFrom), PlaceOf(kRedFrom), colours.amber);
  fill(PlaceOf(kRedFrom), bar.width(), colours.onAir);
  return lit;
}

void LevelMeter::DrawGround() {
  const Theme::Colours& colours = Theme::Palette();
  ground_ = QPixmap(size() * devicePixelRatio());
  ground_.setDevicePixelRatio(devicePixelRatio());
  ground_.fill(colours.window);
  bright_ = LitBar(1);
  dim_ = LitBar(0.5);
  QPainter painter(&ground_);
  for (int side = 0; side < 2; ++side) painter.fillRect(BarOf(side), colours.well);
  painter.setFont(SmallFont());
  const QFontMetrics metrics(SmallFont());
  const int under = BarOf(1).bottom() + 1;
  for (const int mark : kMarks) {
    const QString words = QString::number(mark);
    const int half = metrics.horizontalAdvance(words) / 2;
    const int place = std::min(PlaceOf(mark), BarOf(0).width() - 1);
    for (int side = 0; side < 2; ++side)
      painter.fillRect(QRect(place, BarOf(side).top(), 1, BarHeight()), colours.line);
    painter.setPen(colours.muted);
    painter.drawText(std::min(place - half, BarOf(0).width() - 2 * half), under + metrics.ascent(), words);
  }
}

void LevelMeter::paintEvent(QPaintEvent* event) {
  if (ground_.isNull() || ground_.devicePixelRatio() != devicePixelRatio()) DrawGround();
  const Theme::Colours& colours = Theme::Palette();
  QPainter painter(this);
  const auto copy = [&](const QPixmap& from, const QRect& target, QPoint start) {
    const double ratio = from.devicePixelRatio();
    painter.drawPixmap(target, from, QRectF(QPointF(start) * ratio, QSizeF(target.size()) * ratio).toRect());
  };
  copy(ground_, event->rect(), event->rect().topLeft());
  for (int side = 0; side < 2; ++side) {
    const QRect bar = BarOf(side);
    if (!event->rect().intersects(bar)) continue;
    const MeterLevels::Side& level = levels_.Levels().sides[static_cast<std::size_t>(side)];
    const int rms = PlaceOf(level.rms);
    const int peak = std::max(PlaceOf(level.peak), rms);
    copy(dim_, QRect(bar.left() + rms, bar.top(), peak - rms, bar.height()), {rms, 0});
    copy(bright_, QRect(bar.left(), bar.top(), rms, bar.height()), {0, 0});
    const int hold = std::min(PlaceOf(level.hold), bar.width() - 2);
    if (hold > 1)
      painter.fillRect(QRect(bar.left() + hold, bar.top(), 2, bar.height()),
                       level.hold > kRedFrom     ? colours.onAir
                       : level.hold > kAmberFrom ? colours.amber
                                                 : colours.text);
  }
  if (!event->rect().intersects(Digits())) return;
  painter.setFont(DigitFont());
  painter.setPen(colours.text);
  DrawTabular(painter, Digits(), Qt::AlignRight | Qt::AlignVCenter,
              levels_.LoudnessWords() + QStringLiteral(" LUFS"));
}

}  // namespace kelvo
