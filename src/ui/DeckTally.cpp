#include "ui/DeckTally.h"

#include "ui/Theme.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>

namespace kelvo {
namespace {

/// The sign beside the word, in a square of side 1: a hollow ring, a triangle, a lamp with rays, an
/// hour-glass, a tick, a ring that is struck through.
void DrawSign(QPainter& painter, DeckTally::State state, const QRectF& square, const QColor& ink) {
  painter.save();
  painter.translate(square.topLeft());
  painter.scale(square.width(), square.height());
  QPen pen(ink, 0.11, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  painter.setPen(pen);
  switch (state) {
    case DeckTally::State::Empty:
      painter.drawEllipse(QRectF(0.22, 0.22, 0.56, 0.56));
      break;
    case DeckTally::State::Loaded: {
      painter.setBrush(ink);
      painter.drawPolygon(QPolygonF{{0.3, 0.2}, {0.3, 0.8}, {0.8, 0.5}});
      break;
    }
    case DeckTally::State::OnAir:
      painter.setBrush(ink);
      painter.drawEllipse(QRectF(0.36, 0.36, 0.28, 0.28));
      painter.setBrush(Qt::NoBrush);
      for (const double inset : {0.17, 0.0}) {
        const QRectF ring(inset, inset, 1 - 2 * inset, 1 - 2 * inset);
        painter.drawArc(ring, -42 * 16, 84 * 16);
        painter.drawArc(ring, 138 * 16, 84 * 16);
      }
      break;
    case DeckTally::State::Ending:
      painter.setBrush(ink);
      painter.drawPolygon(QPolygonF{{0.25, 0.12}, {0.75, 0.12}, {0.5, 0.48}});
      painter.drawPolygon(QPolygonF{{0.25, 0.88}, {0.75, 0.88}, {0.5, 0.52}});
      break;
    case DeckTally::State::Done:
      painter.drawPolyline(QPolygonF{{0.18, 0.52}, {0.4, 0.75}, {0.82, 0.26}});
      break;
    case DeckTally::State::NoDevice:
      painter.drawEllipse(QRectF(0.14, 0.14, 0.72, 0.72));
      painter.drawLine(QPointF(0.26, 0.26), QPointF(0.74, 0.74));
      break;
  }
  painter.restore();
}

}  // namespace

DeckTally::DeckTally(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  setAccessibleName(Word(state_));
}

void DeckTally::SetState(State state) {
  if (state == state_) return;
  state_ = state;
  setAccessibleName(Word(state));
  update();
}

void DeckTally::SetLit(bool lit) {
  if (lit == lit_) return;
  lit_ = lit;
  if (state_ == State::Ending) update();
}

QString DeckTally::Word(State state) {
  const std::array words{tr("EMPTY"), tr("LOADED"), tr("ON AIR"), tr("ENDING"), tr("DONE"), tr("NO DEVICE")};
  return words.at(static_cast<std::size_t>(state));
}

QSize DeckTally::sizeHint() const {
  const int em = fontMetrics().height();
  return {em * 8, em * 2};
}

QSize DeckTally::minimumSizeHint() const {
  const int em = fontMetrics().height();
  return {em * 5, em * 5 / 4};
}

void DeckTally::paintEvent(QPaintEvent*) {
  const Theme::Colours& colours = Theme::Palette();
  QColor ground = Qt::transparent;
  QColor edge = colours.dim;
  QColor ink = colours.muted;
  Qt::PenStyle line = Qt::SolidLine;
  switch (state_) {
    case State::Empty:
      line = Qt::DashLine;
      ink = colours.dim;
      break;
    case State::Loaded:
      ground = Theme::Mix(colours.well, colours.ready, 0.16);
      edge = colours.ready;
      ink = Theme::Mix(colours.ready, Qt::white, 0.35);
      break;
    case State::OnAir:
      ground = edge = colours.onAir;
      ink = Qt::white;
      break;
    case State::Ending:
      ground = lit_ ? colours.amber : Theme::Mix(colours.well, colours.amber, 0.22);
      edge = colours.amber;
      ink = lit_ ? QColor(Qt::black) : colours.amber;
      break;
    case State::Done:
      ground = Theme::Mix(colours.well, colours.dim, 0.18);
      break;
    case State::NoDevice:
      line = Qt::DashLine;
      ground = colours.window;
      edge = colours.onAir;
      ink = colours.amber;
      break;
  }
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double thick = state_ == State::Empty || state_ == State::Done ? 1.5 : 2.5;
  painter.setPen(QPen(edge, thick, line));
  painter.setBrush(ground);
  const QRectF plate = QRectF(rect()).adjusted(thick / 2, thick / 2, -thick / 2, -thick / 2);
  painter.drawRoundedRect(plate, 6, 6);

  QFont font = Theme::Font(1.0, QFont::Black);
  font.setLetterSpacing(QFont::PercentageSpacing, 106);
  constexpr int trial = 100;
  font.setPixelSize(trial);
  const QFontMetricsF metrics(font);
  // One size for all states, so that the word does not jump when the state changes; smaller for a word that
  // has no room.
  const double widest =
      std::max(metrics.horizontalAdvance(QStringLiteral("LOADED")), metrics.horizontalAdvance(Word(state_))) +
      trial * 1.5;
  const double scale = std::min(plate.width() * 0.92 / widest, plate.height() * 0.56 / metrics.capHeight());
  const int pixels = std::max(7, static_cast<int>(trial * scale));
  font.setPixelSize(pixels);
  const QFontMetricsF real(font);
  const double side = real.capHeight() * 1.3;
  const double gap = pixels * 0.35;
  const double width = side + gap + real.horizontalAdvance(Word(state_));
  const double left = plate.center().x() - width / 2;
  DrawSign(painter, state_, QRectF(left, plate.center().y() - side / 2, side, side), ink);
  painter.setFont(font);
  painter.setPen(ink);
  painter.drawText(QPointF(left + side + gap, plate.center().y() + real.capHeight() / 2), Word(state_));
}

}  // namespace kelvo
