#include "playlists/windows/GroupTimeView.h"

#include "ui/Theme.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>
#include <array>
#include <cmath>

namespace kelvo {

namespace {

constexpr int kMargin = 10;
constexpr int kReach = 7;  ///< so near a mark is taken hold of, pixels
constexpr int kSlack = 3;  ///< a hand that shakes so little does not drag, pixels
constexpr int kKnob = 4;   ///< half the size of a mark's knob
constexpr double kMostZoom = 60;
constexpr double kZoomStep = 1.5;
constexpr int kLong = 10;  ///< seconds of Page Up and Down
constexpr std::array kDecks{2, 3};
/// Distances of the times at the head, seconds.
constexpr std::array kTicks{1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 21600, 86400};

}  // namespace

GroupTimeView::GroupTimeView(GroupEditor& editor, QWidget* parent)
    : QAbstractScrollArea(parent), editor_(editor) {
  setFocusPolicy(Qt::StrongFocus);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setAccessibleName(tr("Time line of the group playlist"));
  setToolTip(
      tr("Drag a mark, or move it by Shift and the arrows; all that come later move along. "
         "+ and - zoom, 0 shows all"));
  viewport()->setMouseTracking(true);
  connect(&editor_, &GroupEditor::Changed, this, [this] { TakeRows(); });
  connect(&editor_, &GroupEditor::SelectedChanged, this, [this] { ShowSelected(); });
  connect(&editor_, &GroupEditor::PlayheadMoved, this, [this] { viewport()->update(); });
  TakeRows();
}

QSize GroupTimeView::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 10};
}

QSize GroupTimeView::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * 40, fontMetrics().height() * 7};
}

void GroupTimeView::TakeRows() {
  clips_ = DeckClips(editor_.Edit());
  last_ = editor_.Edit().Count() == 0 ? 0 : editor_.Edit().Rows().back().element.seconds;
  for (const DeckClip& clip : clips_) last_ = std::max(last_, clip.to);
  SetRange();
  ShowSelected();
}

int GroupTimeView::First() const {
  return editor_.Edit().Count() == 0 ? 0 : editor_.Edit().At(0).seconds;
}

double GroupTimeView::Scale() const {
  if (zoom_ > 0) return zoom_;
  return std::max(viewport()->width() - 2 * kMargin, 1) / static_cast<double>(std::max(last_ - First(), 1));
}

double GroupTimeView::X(double seconds) const {
  return kMargin + (seconds - First()) * Scale() - horizontalScrollBar()->value();
}

int GroupTimeView::HeadHeight() const {
  return fontMetrics().height() + 4;
}

QRect GroupTimeView::LaneOf(int deck) const {
  const int height = (viewport()->height() - HeadHeight()) / 2;
  const int top = HeadHeight() + (deck == kDecks[0] ? 0 : height);
  return {0, top, viewport()->width(), height - 2};
}

QPoint GroupTimeView::MarkOf(int row) const {
  const GroupElement& element = editor_.Edit().At(row);
  return {static_cast<int>(std::lround(X(element.seconds))), LaneOf(element.deck).bottom() - kKnob};
}

void GroupTimeView::SetRange() {
  const double whole = zoom_ > 0 ? (last_ - First()) * zoom_ + 2 * kMargin : 0;
  const double most = std::clamp(whole - viewport()->width(), 0.0, 1e9);
  horizontalScrollBar()->setPageStep(viewport()->width());
  horizontalScrollBar()->setSingleStep(viewport()->width() / 10);
  horizontalScrollBar()->setRange(0, static_cast<int>(most));
  viewport()->update();
}

void GroupTimeView::ZoomTo(double zoom, double x) {
  const double whole =
      std::max(viewport()->width() - 2 * kMargin, 1) / static_cast<double>(std::max(last_ - First(), 1));
  const double seconds = (x - kMargin + horizontalScrollBar()->value()) / Scale();
  zoom_ = zoom <= whole ? 0 : std::min(zoom, std::max(kMostZoom, whole));
  SetRange();
  horizontalScrollBar()->setValue(static_cast<int>(seconds * Scale() + kMargin - x));
}

void GroupTimeView::ShowSelected() {
  const int row = editor_.Selected();
  if (row >= 0 && row < editor_.Edit().Count()) {
    const GroupElement& element = editor_.Edit().At(row);
    setAccessibleDescription(tr("%1 %2, deck %3")
                                 .arg(ElementTime(element.seconds), editor_.Details({element, 0}))
                                 .arg(element.deck - 1));
    const double x = X(element.seconds);
    QScrollBar* bar = horizontalScrollBar();
    if (!drag_ && (x < kMargin || x > viewport()->width() - kMargin))
      bar->setValue(bar->value() + static_cast<int>(x) - viewport()->width() / 2);
  }
  viewport()->update();
}

int GroupTimeView::RowAt(QPointF point) const {
  const GroupEdit& edit = editor_.Edit();
  int found = -1;
  double nearest = kReach + 1;
  for (int row = 0; row < edit.Count(); ++row) {
    if (!LaneOf(edit.At(row).deck).contains(point.toPoint())) continue;
    const double distance = std::abs(X(edit.At(row).seconds) - point.x());
    // Of several at the same time the selected one is meant, else the first: it takes the others along.
    const bool chosen = distance == nearest && row == editor_.Selected();
    if (distance < nearest || chosen) {
      found = row;
      nearest = distance;
    }
  }
  return found;
}

// The hand.

void GroupTimeView::mousePressEvent(QMouseEvent* event) {
  const int row = RowAt(event->position());
  if (event->button() != Qt::LeftButton || row < 0 || editor_.Panel()) return;
  // Escape takes the drag back.
  setFocus(Qt::MouseFocusReason);
  editor_.Select(row);
  if (editor_.WhyNoMove(row).isEmpty())
    drag_ = Drag{.row = row, .seconds = editor_.Edit().At(row).seconds, .x = event->position().x()};
}

void GroupTimeView::mouseMoveEvent(QMouseEvent* event) {
  if (!drag_) {
    const int row = RowAt(event->position());
    const bool movable = row >= 0 && editor_.WhyNoMove(row).isEmpty();
    viewport()->setCursor(movable ? Qt::SizeHorCursor : Qt::ArrowCursor);
    return;
  }
  const double way = event->position().x() - drag_->x;
  if (!drag_->moves && std::abs(way) < kSlack) return;
  if (!drag_->moves && zoom_ <= 0) {
    // What is shown keeps its scale under the hand, however long the list becomes.
    zoom_ = Scale();
    drag_->all = true;
    SetRange();
  }
  drag_->moves = true;
  editor_.DragTo(drag_->row, drag_->seconds + static_cast<int>(std::lround(way / Scale())));
}

void GroupTimeView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) EndDrag(true);
}

void GroupTimeView::EndDrag(bool keep) {
  if (!drag_) return;
  if (drag_->all) zoom_ = 0;
  drag_.reset();
  if (keep) {
    editor_.EndDrag();
  } else {
    editor_.CancelDrag();
  }
  SetRange();
}

void GroupTimeView::mouseDoubleClickEvent(QMouseEvent* event) {
  const int row = RowAt(event->position());
  if (event->button() != Qt::LeftButton || row < 0 || editor_.Panel()) return;
  editor_.Select(row);
  editor_.EditSelected();
}

void GroupTimeView::wheelEvent(QWheelEvent* event) {
  const int way = event->angleDelta().y() != 0 ? event->angleDelta().y() : event->angleDelta().x();
  if (way == 0 || drag_) return;
  if (event->modifiers().testFlag(Qt::ControlModifier)) {
    ZoomTo(Scale() * (way > 0 ? kZoomStep : 1 / kZoomStep), event->position().x());
  } else {
    QScrollBar* bar = horizontalScrollBar();
    bar->setValue(bar->value() - (way > 0 ? 1 : -1) * bar->singleStep());
  }
  event->accept();
}

bool GroupTimeView::event(QEvent* event) {
  // Escape ends a drag and not the window.
  if (event->type() == QEvent::ShortcutOverride && drag_ &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
    event->accept();
    return true;
  }
  return QAbstractScrollArea::event(event);
}

void GroupTimeView::keyPressEvent(QKeyEvent* event) {
  const int count = editor_.Edit().Count();
  const int row = editor_.Selected();
  if (event->key() == Qt::Key_Escape && drag_) return EndDrag(false);
  if (count == 0 || drag_ || editor_.Panel()) return event->ignore();
  const bool moves = event->modifiers().testFlag(Qt::ShiftModifier);
  const auto go = [&](int step, int seconds) {
    if (moves) {
      editor_.MoveBy(row, seconds);
    } else {
      editor_.Select(std::clamp(row + step, 0, count - 1));
    }
  };
  const double middle = X(row >= 0 ? editor_.Edit().At(row).seconds : First());
  switch (event->key()) {
    case Qt::Key_Left:
      return go(-1, -1);
    case Qt::Key_Right:
      return go(1, 1);
    case Qt::Key_PageUp:
      return go(-kLong, kLong);
    case Qt::Key_PageDown:
      return go(kLong, -kLong);
    case Qt::Key_Home:
      return editor_.Select(0);
    case Qt::Key_End:
      return editor_.Select(count - 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return editor_.EditSelected();
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      return ZoomTo(Scale() * kZoomStep, middle);
    case Qt::Key_Minus:
      return ZoomTo(Scale() / kZoomStep, middle);
    case Qt::Key_0:
      return ZoomTo(0, 0);
    default:
      event->ignore();
  }
}

bool GroupTimeView::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    auto* help = static_cast<QHelpEvent*>(event);
    const int row = RowAt(help->pos());
    if (row >= 0) {
      const GroupElement& element = editor_.Edit().At(row);
      const QString words = ElementTime(element.seconds) + QLatin1Char(' ') + editor_.Details({element, 0});
      QToolTip::showText(help->globalPos(), words.toHtmlEscaped(), viewport());
      return true;
    }
  }
  return QAbstractScrollArea::viewportEvent(event);
}

void GroupTimeView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  SetRange();
}

// The picture.

void GroupTimeView::PaintTimes(QPainter& painter) const {
  const int room = fontMetrics().horizontalAdvance(QStringLiteral("00:00:00")) + kMargin;
  const auto* tick =
      std::find_if(kTicks.begin(), kTicks.end(), [&](int each) { return each * Scale() >= room; });
  const int step = tick == kTicks.end() ? kTicks.back() : *tick;
  const double left = First() + (horizontalScrollBar()->value() - kMargin) / Scale();
  const double right = left + viewport()->width() / Scale();
  int seconds = static_cast<int>(std::max(left, 0.0)) / step * step;
  for (int painted = 0; seconds <= right && painted <= viewport()->width(); seconds += step, ++painted) {
    const double x = X(seconds);
    painter.setPen(Theme::Palette().line);
    painter.drawLine(QPointF(x, 0), QPointF(x, viewport()->height()));
    painter.setPen(Theme::Palette().muted);
    painter.drawText(QPointF(x + 3, fontMetrics().ascent() + 2), ElementTime(seconds));
  }
}

void GroupTimeView::PaintClip(QPainter& painter, const DeckClip& clip) const {
  const Theme::Colours& colours = Theme::Palette();
  const QRect lane = LaneOf(clip.deck);
  const double top = lane.top() + 3;
  const double bottom = lane.bottom() - 2 * kKnob;
  const QPolygonF shape({{X(clip.from), bottom},
                         {X(clip.risesUntil), top},
                         {X(std::max(clip.fallsFrom, clip.risesUntil)), top},
                         {X(clip.to), bottom}});
  painter.setPen(colours.blue);
  painter.setBrush(Theme::Mix(colours.surface, colours.blue, 0.35));
  painter.drawPolygon(shape);
  const double left = std::max(X(clip.risesUntil), 0.0) + 4;
  const double right = std::min(X(std::max(clip.fallsFrom, clip.risesUntil)), 1.0 * viewport()->width()) - 4;
  const QRectF room(left, top, std::max(right - left, 0.0), bottom - top);
  painter.setPen(colours.text);
  const QString title = editor_.TrackName(clip.track);
  painter.drawText(room, static_cast<int>(Qt::AlignVCenter | Qt::AlignLeft),
                   fontMetrics().elidedText(title, Qt::ElideRight, static_cast<int>(room.width())));
}

void GroupTimeView::PaintMark(QPainter& painter, int row) const {
  const Theme::Colours& colours = Theme::Palette();
  const GroupElement& element = editor_.Edit().At(row);
  const bool selected = row == editor_.Selected();
  const bool repeats = element.code == SessionCode::Repeat;
  const QColor colour = selected ? colours.amber : repeats ? colours.ready : colours.muted;
  const QPoint knob = MarkOf(row);
  painter.setPen(QPen(colour, selected ? 2 : 1, repeats ? Qt::DashLine : Qt::SolidLine));
  const QRect lane = LaneOf(element.deck);
  painter.drawLine(knob.x(), repeats || selected ? lane.top() : lane.bottom() - 3 * kKnob, knob.x(),
                   lane.bottom());
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawEllipse(knob, kKnob, kKnob);
}

void GroupTimeView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(viewport());
  painter.setRenderHint(QPainter::Antialiasing);
  const Theme::Colours& colours = Theme::Palette();
  painter.fillRect(viewport()->rect(), colours.well);
  for (const int deck : kDecks) painter.fillRect(LaneOf(deck), Theme::GroupGround(Group::Decks));
  if (editor_.Edit().Count() > 0) PaintTimes(painter);
  for (const DeckClip& clip : clips_) PaintClip(painter, clip);
  for (int row = 0; row < editor_.Edit().Count(); ++row) {
    if (row != editor_.Selected()) PaintMark(painter, row);
  }
  if (editor_.Selected() >= 0 && editor_.Selected() < editor_.Edit().Count())
    PaintMark(painter, editor_.Selected());
  painter.setPen(colours.muted);
  for (const int deck : kDecks) {
    const QRect words = LaneOf(deck).adjusted(0, 2, -4, 0);
    painter.drawText(words, static_cast<int>(Qt::AlignTop | Qt::AlignRight), tr("DECK %1").arg(deck - 1));
  }
  if (editor_.Playhead()) {
    painter.setPen(QPen(colours.onAir, 2));
    const double x = X(*editor_.Playhead());
    painter.drawLine(QPointF(x, 0), QPointF(x, viewport()->height()));
  }
}

}  // namespace kelvo
