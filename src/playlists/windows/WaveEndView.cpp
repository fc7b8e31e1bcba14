#include "playlists/windows/WaveEndView.h"

#include "ui/Theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>

#include <algorithm>
#include <cmath>

namespace kelvo {

namespace {

constexpr int kPage = 5;

}  // namespace

WaveEndView::WaveEndView(End end, const TrackWave& wave, QWidget* parent)
    : QAbstractSlider(parent), end_(end), wave_(wave) {
  setOrientation(Qt::Horizontal);
  setRange(0, kWaveSeconds);
  setPageStep(kPage);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setCursor(Qt::SizeHorCursor);
  connect(&wave_, &TrackWave::Changed, this, qOverload<>(&QWidget::update));
}

QSize WaveEndView::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 40, fontMetrics().height() * 4};
}

QSize WaveEndView::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * 20, fontMetrics().height() * 3};
}

void WaveEndView::SetPoint(int seconds) {
  const QSignalBlocker quiet(this);
  beyond_ = seconds > maximum();
  setValue(seconds);
  update();
}

double WaveEndView::PlaceOf(double seconds) const {
  const double share = std::clamp(seconds / kWaveSeconds, 0.0, 1.0);
  return (end_ == End::Start ? share : 1 - share) * (width() - 1);
}

int WaveEndView::SecondsAt(double place) const {
  const double share = std::clamp(place / std::max(width() - 1, 1), 0.0, 1.0);
  return static_cast<int>(std::lround((end_ == End::Start ? share : 1 - share) * kWaveSeconds));
}

void WaveEndView::MoveTo(int seconds) {
  const int held = std::clamp(seconds, minimum(), maximum());
  if (held == value() && !beyond_) return;
  beyond_ = false;
  setValue(held);
  update();
  Q_EMIT MovedByHand(held);
}

void WaveEndView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  setSliderDown(true);
  MoveTo(SecondsAt(event->position().x()));
}

void WaveEndView::mouseMoveEvent(QMouseEvent* event) {
  if (isSliderDown()) MoveTo(SecondsAt(event->position().x()));
}

void WaveEndView::mouseReleaseEvent(QMouseEvent* /*event*/) {
  setSliderDown(false);
}

void WaveEndView::wheelEvent(QWheelEvent* event) {
  // A wheel that scrolls past must not move a fade.
  event->ignore();
}

void WaveEndView::keyPressEvent(QKeyEvent* event) {
  // From the end of the track the way to the left leads away from that end.
  const int right = end_ == End::Start ? 1 : -1;
  switch (event->key()) {
    case Qt::Key_Right:
      return MoveTo(value() + right);
    case Qt::Key_Left:
      return MoveTo(value() - right);
    case Qt::Key_Up:
      return MoveTo(value() + 1);
    case Qt::Key_Down:
      return MoveTo(value() - 1);
    case Qt::Key_PageUp:
      return MoveTo(value() + pageStep());
    case Qt::Key_PageDown:
      return MoveTo(value() - pageStep());
    case Qt::Key_Home:
      return MoveTo(minimum());
    case Qt::Key_End:
      return MoveTo(maximum());
    default:
      event->ignore();
  }
}

void WaveEndView::PaintWave(QPainter& painter) const {
  const Theme::Colours& colours = Theme::Palette();
  const QByteArray& peaks = end_ == End::Start ? wave_.Ends()->start : wave_.Ends()->end;
  painter.setPen(isEnabled() ? colours.blue : colours.dim);
  const int middle = height() / 2;
  for (int x = 0; x < width(); ++x) {
    const double seconds = end_ == End::Start ? static_cast<double>(x) / width() * kWaveSeconds
                                              : (1 - static_cast<double>(x + 1) / width()) * kWaveSeconds;
    const auto peak = static_cast<qsizetype>(seconds * kWavePeaksPerSecond);
    const qsizetype place = end_ == End::Start ? peak : peaks.size() - 1 - peak;
    if (place < 0 || place >= peaks.size()) continue;
    const int half = static_cast<unsigned char>(peaks[place]) * (middle - 2) / 255;
    painter.drawLine(x, middle - half, x, middle + half);
  }
}

void WaveEndView::PaintPoint(QPainter& painter) const {
  const Theme::Colours& colours = Theme::Palette();
  const QColor colour = isEnabled() ? colours.amber : colours.dim;
  const double at = PlaceOf(value());
  painter.setPen(QPen(colour, 2));
  painter.drawLine(QPointF(at, 0), QPointF(at, height()));
  const QString words = beyond_ ? tr("beyond") : tr("%1 s").arg(value());
  const int room = painter.fontMetrics().horizontalAdvance(words);
  const double left = at + 4 + room < width() ? at + 4 : at - 4 - room;
  painter.drawText(QPointF(left, painter.fontMetrics().ascent() + 2), words);
}

void WaveEndView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const Theme::Colours& colours = Theme::Palette();
  painter.fillRect(rect(), colours.well);
  if (wave_.Ends()) {
    PaintWave(painter);
  } else {
    painter.setPen(colours.muted);
    painter.drawText(rect().adjusted(4, fontMetrics().height(), -4, 0),
                     static_cast<int>(Qt::AlignCenter) | static_cast<int>(Qt::TextWordWrap), wave_.Words());
  }
  PaintPoint(painter);
  painter.setPen(colours.line);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace kelvo
