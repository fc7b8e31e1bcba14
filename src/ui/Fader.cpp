#include "ui/Fader.h"

#include "ui/Theme.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace kelvo {

Fader::Fader(Qt::Orientation orientation, int lowest, int highest, QWidget* parent)
    : QAbstractSlider(parent), colour_(Theme::Palette().accent) {
  setOrientation(orientation);
  setRange(lowest, highest);
  setSingleStep(std::max(1, (highest - lowest) / 100));
  setPageStep(std::max(1, (highest - lowest) / 20));
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(Lying() ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                Lying() ? QSizePolicy::Fixed : QSizePolicy::Expanding);
}

void Fader::SetRestValue(std::optional<int> value) {
  rest_ = value;
  update();
}

void Fader::SetFillFrom(int value) {
  fillFrom_ = value;
  update();
}

void Fader::SetTickInterval(int interval) {
  tickInterval_ = interval;
  update();
}

void Fader::SetColour(const QColor& colour) {
  colour_ = colour;
  update();
}

int Fader::Em() const {
  return fontMetrics().height();
}

QSizeF Fader::HandleSize() const {
  const double thick = Em() * 0.95;
  const double wide = Em() * 1.5;
  return Lying() ? QSizeF(thick, wide) : QSizeF(wide, thick);
}

double Fader::Travel() const {
  const double length = Lying() ? width() - HandleSize().width() : height() - HandleSize().height();
  return std::max(1.0, length - 2);
}

double Fader::Place(int value) const {
  const double span = std::max(1, maximum() - minimum());
  const double share = (static_cast<double>(value) - minimum()) / span;
  return invertedAppearance() ? 1 - share : share;
}

QPointF Fader::PointOf(int value) const {
  const double way = Place(value) * Travel() + 1;
  return Lying() ? QPointF(way + HandleSize().width() / 2, height() / 2.0)
                 : QPointF(width() / 2.0, height() - way - HandleSize().height() / 2);
}

QPoint Fader::HandleCentre() const {
  return PointOf(sliderPosition()).toPoint();
}

int Fader::ValueAt(double place) const {
  const double share = std::clamp(invertedAppearance() ? 1 - place : place, 0.0, 1.0);
  return minimum() + static_cast<int>(std::lround(share * (maximum() - minimum())));
}

double Fader::Along(QPointF point) const {
  return (Lying() ? point.x() : -point.y()) / Travel();
}

void Fader::SetByHand(int value) {
  const int before = sliderPosition();
  setSliderPosition(value);
  if (sliderPosition() != before) Q_EMIT MovedByHand(sliderPosition());
}

void Fader::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::MiddleButton) {
    const QPointF half(HandleSize().width() / 2, -HandleSize().height() / 2);
    const QPointF fromEnd = event->position() - half - QPointF(1, Lying() ? 0 : height() - 1);
    setSliderDown(true);
    SetByHand(ValueAt(Along(fromEnd)));
    grip_ = Grip{event->position(), event->position(), Place(sliderPosition()), true};
    event->accept();
    return;
  }
  if (event->button() != Qt::LeftButton || grip_) {
    event->ignore();
    return;
  }
  grip_ = Grip{event->position(), event->position(), Place(sliderPosition())};
  setSliderDown(true);
  update();
  event->accept();
}

void Fader::mouseMoveEvent(QMouseEvent* event) {
  if (!grip_) {
    event->ignore();
    return;
  }
  const QPointF way = event->position() - grip_->start;
  if (!grip_->moved && way.manhattanLength() < QApplication::startDragDistance() / 3.0) return;
  // The handle may have been moved by the program meanwhile: the hand goes on from where it is now.
  if (grip_->moved && ValueAt(grip_->place) != sliderPosition()) grip_->place = Place(sliderPosition());
  grip_->moved = true;
  const double fine = event->modifiers() & Qt::ShiftModifier ? 0.1 : 1.0;
  grip_->place = std::clamp(grip_->place + Along(event->position() - grip_->last) * fine, 0.0, 1.0);
  grip_->last = event->position();
  SetByHand(ValueAt(grip_->place));
  event->accept();
}

void Fader::mouseReleaseEvent(QMouseEvent* event) {
  if (!grip_) {
    event->ignore();
    return;
  }
  const Grip grip = *grip_;
  if (!grip.moved) {
    const QPointF handle = PointOf(sliderPosition());
    const double half = (Lying() ? HandleSize().width() : HandleSize().height()) / 2 / Travel();
    const double way = Along(grip.start - handle);
    const double page = static_cast<double>(pageStep()) / std::max(1, maximum() - minimum());
    if (std::abs(way) > half) SetByHand(ValueAt(Place(sliderPosition()) + std::copysign(page, way)));
  }
  LetGo();
  event->accept();
}

void Fader::LetGo() {
  if (!grip_) return;
  grip_.reset();
  setSliderDown(false);
  update();
}

void Fader::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !rest_) {
    mousePressEvent(event);
    return;
  }
  setSliderDown(true);
  SetByHand(*rest_);
  grip_ = Grip{event->position(), event->position(), Place(sliderPosition()), true};
  event->accept();
}

void Fader::wheelEvent(QWheelEvent* event) {
  const QPoint turn = event->angleDelta();
  wheelRest_ += std::abs(turn.y()) >= std::abs(turn.x()) ? turn.y() : turn.x();
  const int steps = wheelRest_ / QWheelEvent::DefaultDeltasPerStep;
  wheelRest_ -= steps * QWheelEvent::DefaultDeltasPerStep;
  if (steps != 0) SetByHand(sliderPosition() + (invertedAppearance() ? -steps : steps) * singleStep());
  event->accept();
}

void Fader::keyPressEvent(QKeyEvent* event) {
  // Keys move the handle the way they point, on a fader that is shown upside down too.
  const int up = invertedAppearance() ? -1 : 1;
  switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Right:
      SetByHand(sliderPosition() + up * singleStep());
      break;
    case Qt::Key_Down:
    case Qt::Key_Left:
      SetByHand(sliderPosition() - up * singleStep());
      break;
    case Qt::Key_PageUp:
      SetByHand(sliderPosition() + up * pageStep());
      break;
    case Qt::Key_PageDown:
      SetByHand(sliderPosition() - up * pageStep());
      break;
    case Qt::Key_Home:
      SetByHand(ValueAt(0));
      break;
    case Qt::Key_End:
      SetByHand(ValueAt(1));
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (rest_) SetByHand(*rest_);
      break;
    default:
      event->ignore();
  }
}

void Fader::hideEvent(QHideEvent* event) {
  LetGo();
  QAbstractSlider::hideEvent(event);
}

void Fader::changeEvent(QEvent* event) {
  QAbstractSlider::changeEvent(event);
  if (event->type() == QEvent::EnabledChange && !isEnabled()) LetGo();
}

QSize Fader::sizeHint() const {
  const int thick = Em() * 2;
  return Lying() ? QSize(Em() * 10, thick) : QSize(thick, Em() * 7);
}

QSize Fader::minimumSizeHint() const {
  const int thick = Em() * 17 / 10;
  return Lying() ? QSize(Em() * 4, thick) : QSize(thick, Em() * 3);
}

void Fader::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);

  const QPointF across = Lying() ? QPointF(0, 1) : QPointF(1, 0);
  const auto mark = [&](int value, double length, const QColor& colour, double thick) {
    const QPointF at = PointOf(value);
    const QPointF from = across * (Em() * 0.34);
    const QPointF to = across * (Em() * (0.34 + length));
    painter.setPen(QPen(colour, thick));
    painter.drawLine(at + from, at + to);
    painter.drawLine(at - from, at - to);
  };
  if (tickInterval_ > 0) {
    const QColor tick = isEnabled() ? Theme::Mix(colours.line, colours.text, 0.25) : colours.line;
    for (int value = minimum(); value <= maximum(); value += tickInterval_) {
      const bool end = value == minimum() || value == maximum();
      mark(value, end ? 0.36 : 0.24, tick, 1);
    }
  }
  if (rest_) mark(*rest_, 0.42, isEnabled() ? colours.muted : colours.dim, 2);

  const QPointF low = PointOf(ValueAt(0));
  const QPointF high = PointOf(ValueAt(1));
  const double groove = Em() * 0.3;
  painter.setPen(QPen(colours.line, groove + 2, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(low, high);
  painter.setPen(QPen(colours.well, groove, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(low, high);
  const QPointF handle = PointOf(sliderPosition());
  const QColor lit = isEnabled() ? colour_ : colours.dim;
  painter.setPen(QPen(lit, groove * 0.7, Qt::SolidLine, Qt::RoundCap));
  const QPointF origin = fillFrom_ ? PointOf(*fillFrom_) : low;
  if (origin != handle) painter.drawLine(origin, handle);

  const QSizeF size = HandleSize();
  const QRectF cap(handle - QPointF(size.width() / 2, size.height() / 2), size);
  const QColor body =
      isEnabled() ? Theme::Mix(colours.raised, colours.text, isSliderDown() ? 0.55 : 0.36) : colours.raised;
  QLinearGradient shade(cap.topLeft(), Lying() ? cap.topRight() : cap.bottomLeft());
  shade.setColorAt(0, Theme::Mix(body, Qt::white, 0.18));
  shade.setColorAt(0.45, body);
  shade.setColorAt(1, Theme::Mix(body, Qt::black, 0.35));
  painter.setPen(QPen(Qt::black, 1));
  painter.setBrush(shade);
  painter.drawRoundedRect(cap.adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
  const QPointF reach = across * ((Lying() ? size.height() : size.width()) / 2 - 3);
  painter.setPen(QPen(isEnabled() ? QColor(Qt::white) : colours.dim, 2));
  painter.drawLine(handle - reach, handle + reach);
}

}  // namespace kelvo
