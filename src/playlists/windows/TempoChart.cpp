#include "playlists/windows/TempoChart.h"

#include "platform/Words.h"
#include "ui/Theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace kelvo {
namespace {

constexpr int kPage = 5;
constexpr int kGrid = 20;  ///< beats per minute between two lines

}  // namespace

TempoChart::TempoChart(QWidget* parent) : QAbstractSlider(parent) {
  setOrientation(Qt::Vertical);
  setSingleStep(1);
  setPageStep(kPage);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  ShowValue();
}

QString TempoChart::TimeText(int point, int seconds) {
  return HoursMinutesSeconds(std::lround(static_cast<double>(seconds) * point / (TempoOutline::kPoints - 1)));
}

void TempoChart::Show(const TempoOutline& outline, int seconds) {
  outline_ = outline;
  seconds_ = seconds;
  ShowValue();
}

void TempoChart::SetHand(Hand hand) {
  hand_ = hand;
  ShowValue();
}

void TempoChart::ChoosePoint(int point) {
  const int chosen = std::clamp(point, 0, TempoOutline::kPoints - 1);
  if (chosen == point_) return;
  point_ = chosen;
  ShowValue();
  Q_EMIT PointChosen(point_);
}

void TempoChart::ShowValue() {
  showing_ = true;
  const QString at = TimeText(point_, seconds_);
  switch (hand_) {
    case Hand::Bpm:
      setRange(outline_.Low(), outline_.High());
      setValue(outline_.Bpm(point_));
      setAccessibleName(tr("Tempo outline, Bpm at %1").arg(at));
      break;
    case Hand::HiBpm:
      setRange(outline_.Low(), TempoOutline::kHighest);
      setValue(outline_.High());
      setAccessibleName(tr("Tempo outline, Hi Bpm"));
      break;
    case Hand::LoBpm:
      setRange(TempoOutline::kLowest, outline_.High());
      setValue(outline_.Low());
      setAccessibleName(tr("Tempo outline, Lo Bpm"));
      break;
    case Hand::Time:
      setRange(0, TempoOutline::kPoints - 1);
      setValue(point_);
      setAccessibleName(tr("Tempo outline, point at %1").arg(at));
      break;
  }
  setAccessibleDescription(tr("Bpm %1 at %2, between %3 and %4")
                               .arg(outline_.Bpm(point_))
                               .arg(at)
                               .arg(outline_.Low())
                               .arg(outline_.High()));
  showing_ = false;
  update();
}

void TempoChart::sliderChange(SliderChange change) {
  QAbstractSlider::sliderChange(change);
  // A screen reader sets the value too.
  if (change == SliderValueChange && !showing_) Set(value());
}

void TempoChart::Set(int value) {
  TempoOutline outline = outline_;
  switch (hand_) {
    case Hand::Bpm:
      outline.SetBpm(point_, value);
      break;
    case Hand::HiBpm:
      outline.SetHigh(value);
      break;
    case Hand::LoBpm:
      outline.SetLow(value);
      break;
    case Hand::Time:
      ChoosePoint(value);
      return;
  }
  Change(outline);
}

void TempoChart::Change(const TempoOutline& outline) {
  if (outline == outline_) return;
  outline_ = outline;
  ShowValue();
  Q_EMIT Drawn(outline_);
}

QStringList TempoChart::Labels() const {
  return {QStringLiteral("Bpm %1").arg(outline_.Bpm(point_)),
          QStringLiteral("Hi Bpm %1").arg(outline_.High()), QStringLiteral("Lo Bpm %1").arg(outline_.Low()),
          QStringLiteral("Time %1").arg(TimeText(point_, seconds_))};
}

double TempoChart::WidthOf(const QStringList& labels) const {
  double wide = 0;
  for (const QString& label : labels) wide += fontMetrics().horizontalAdvance(label) + fontMetrics().height();
  return wide;
}

bool TempoChart::LabelsFit() const {
  return WidthOf(Labels()) <= width();
}

QRectF TempoChart::Ground() const {
  const double em = fontMetrics().height();
  const double side = fontMetrics().horizontalAdvance(QStringLiteral("000")) + em * 0.6;
  return QRectF(rect()).adjusted(side, em * (LabelsFit() ? 1.7 : 2.8), -em * 0.7, -em * 1.5);
}

QPointF TempoChart::PlaceOf(int point, double bpm) const {
  const QRectF ground = Ground();
  const double up = (bpm - TempoOutline::kLowest) / (TempoOutline::kHighest - TempoOutline::kLowest);
  return {ground.left() + ground.width() * point / (TempoOutline::kPoints - 1),
          ground.bottom() - ground.height() * up};
}

int TempoChart::PointAt(double x) const {
  const QRectF ground = Ground();
  const double share = (x - ground.left()) / std::max(1.0, ground.width());
  return static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * (TempoOutline::kPoints - 1)));
}

int TempoChart::BpmAt(double y) const {
  const QRectF ground = Ground();
  const double share = std::clamp((ground.bottom() - y) / std::max(1.0, ground.height()), 0.0, 1.0);
  return static_cast<int>(
      std::lround(TempoOutline::kLowest + share * (TempoOutline::kHighest - TempoOutline::kLowest)));
}

void TempoChart::DrawTo(QPointF from, QPointF to) {
  const int point = PointAt(to.x());
  if (hand_ != Hand::Bpm) {
    if (hand_ == Hand::Time) {
      ChoosePoint(point);
    } else {
      Set(BpmAt(to.y()));
    }
    return;
  }
  TempoOutline outline = outline_;
  const int before = PointAt(from.x());
  const int way = point - before;
  for (int step = way == 0 ? 0 : 1; step <= std::abs(way); ++step) {
    const double share = way == 0 ? 1 : static_cast<double>(step) / std::abs(way);
    outline.SetBpm(before + (way < 0 ? -step : step), BpmAt(std::lerp(from.y(), to.y(), share)));
  }
  ChoosePoint(point);
  Change(outline);
}

void TempoChart::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  last_ = event->position();
  DrawTo(last_, last_);
  event->accept();
}

void TempoChart::mouseMoveEvent(QMouseEvent* event) {
  if (!(event->buttons() & Qt::LeftButton)) {
    event->ignore();
    return;
  }
  DrawTo(last_, event->position());
  last_ = event->position();
  event->accept();
}

void TempoChart::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
      ChoosePoint(point_ - 1);
      break;
    case Qt::Key_Right:
      ChoosePoint(point_ + 1);
      break;
    case Qt::Key_Home:
      ChoosePoint(0);
      break;
    case Qt::Key_End:
      ChoosePoint(TempoOutline::kPoints - 1);
      break;
    case Qt::Key_Up:
      setValue(value() + 1);
      break;
    case Qt::Key_Down:
      setValue(value() - 1);
      break;
    case Qt::Key_PageUp:
      setValue(value() + kPage);
      break;
    case Qt::Key_PageDown:
      setValue(value() - kPage);
      break;
    default:
      event->ignore();
  }
}

QSize TempoChart::sizeHint() const {
  const int em = fontMetrics().height();
  return {em * 26, em * 12};
}

QSize TempoChart::minimumSizeHint() const {
  const int em = fontMetrics().height();
  return {em * 18, em * 7};
}

void TempoChart::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF ground = Ground();
  painter.fillRect(rect(), colours.well);
  const double em = fontMetrics().height();
  const auto level = [this](double bpm) { return PlaceOf(0, bpm).y(); };

  double free = ground.bottom() + em * 2;
  for (int bpm = TempoOutline::kLowest; bpm <= TempoOutline::kHighest; bpm += kGrid) {
    const double y = level(bpm);
    painter.setPen(colours.line);
    painter.drawLine(QPointF(ground.left(), y), QPointF(ground.right(), y));
    if (free - y < em) continue;
    free = y;
    painter.setPen(colours.muted);
    painter.drawText(QRectF(0, y - em, ground.left() - em * 0.3, em * 2), Qt::AlignRight | Qt::AlignVCenter,
                     QString::number(bpm));
  }
  painter.setPen(colours.muted);
  const QRectF foot(ground.left(), ground.bottom() + em * 0.2, ground.width(), em * 1.2);
  painter.drawText(foot, Qt::AlignLeft | Qt::AlignVCenter, TimeText(0, seconds_));
  painter.drawText(foot, Qt::AlignHCenter | Qt::AlignVCenter, HoursMinutesSeconds(seconds_ / 2));
  painter.drawText(foot, Qt::AlignRight | Qt::AlignVCenter, HoursMinutesSeconds(seconds_));

  const auto end = [&](int bpm, Hand hand) {
    painter.setPen(QPen(hand_ == hand ? colours.accent : colours.muted, hand_ == hand ? 2 : 1, Qt::DashLine));
    painter.drawLine(QPointF(ground.left(), level(bpm)), QPointF(ground.right(), level(bpm)));
  };
  end(outline_.High(), Hand::HiBpm);
  end(outline_.Low(), Hand::LoBpm);

  const double x = PlaceOf(point_, 0).x();
  painter.setPen(QPen(hand_ == Hand::Time ? colours.accent : colours.muted, 1));
  painter.drawLine(QPointF(x, ground.top()), QPointF(x, ground.bottom()));
  QPainterPath line(PlaceOf(0, outline_.Bpm(0)));
  for (int point = 1; point < TempoOutline::kPoints; ++point)
    line.lineTo(PlaceOf(point, outline_.Bpm(point)));
  const QColor lit = isEnabled() ? colours.accent : colours.dim;
  painter.setPen(QPen(lit, 2));
  painter.drawPath(line);
  painter.setBrush(colours.well);
  for (int point = 0; point < TempoOutline::kPoints; ++point) {
    const bool chosen = point == point_;
    if (chosen) painter.setBrush(lit);
    painter.drawEllipse(PlaceOf(point, outline_.Bpm(point)), em * (chosen ? 0.32 : 0.2),
                        em * (chosen ? 0.32 : 0.2));
    painter.setBrush(colours.well);
  }

  painter.setPen(isEnabled() ? colours.text : colours.dim);
  const QStringList labels = Labels();
  const bool oneLine = LabelsFit();
  for (int label = 0; label < labels.size(); ++label) {
    // In two lines they are below each other in columns.
    const double line = oneLine ? 0 : label / 2;
    const double left = em * 0.5 + (oneLine ? WidthOf(labels.mid(0, label)) : label % 2 * width() / 2.0);
    painter.drawText(QRectF(left, em * (0.2 + 1.1 * line), width() - left, em * 1.2),
                     Qt::AlignLeft | Qt::AlignVCenter, labels[label]);
  }
}

}  // namespace kelvo
