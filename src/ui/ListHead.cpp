#include "ui/ListHead.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionHeader>

namespace kelvo {

ListHead::ListHead(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
  setSectionsClickable(true);
  setHighlightSections(false);
}

void ListHead::LetClick(const QString& name, const QString& accessible) {
  setObjectName(name);
  setAccessibleName(accessible);
  setFocusPolicy(Qt::TabFocus);
}

void ListHead::ChooseFrom(int place, int step) {
  while (place >= 0 && place < count() && isSectionHidden(logicalIndex(place))) place += step;
  if (place < 0 || place >= count()) return;
  chosen_ = logicalIndex(place);
  viewport()->update();
}

void ListHead::keyPressEvent(QKeyEvent* event) {
  const int place = visualIndex(chosen_);
  switch (event->key()) {
    case Qt::Key_Left:
      ChooseFrom(place - 1, -1);
      break;
    case Qt::Key_Right:
      ChooseFrom(place + 1, 1);
      break;
    case Qt::Key_Home:
      ChooseFrom(0, 1);
      break;
    case Qt::Key_End:
      ChooseFrom(count() - 1, -1);
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (sectionsClickable() && chosen_ >= 0) Q_EMIT sectionClicked(chosen_);
      break;
    default:
      event->ignore();
  }
}

void ListHead::focusInEvent(QFocusEvent* event) {
  QHeaderView::focusInEvent(event);
  if (chosen_ < 0 || isSectionHidden(chosen_)) ChooseFrom(0, 1);
  viewport()->update();
}

void ListHead::focusOutEvent(QFocusEvent* event) {
  QHeaderView::focusOutEvent(event);
  viewport()->update();
}

void ListHead::initStyleOptionForIndex(QStyleOptionHeader* option, int section) const {
  QHeaderView::initStyleOptionForIndex(option, section);
  // The padding of the style sheet, and the line beside the heading.
  int edges = fontMetrics().height() * 8 / 10 + 1;
  if (isSortIndicatorShown() && sortIndicatorSection() == section)
    edges += style()->pixelMetric(QStyle::PM_HeaderMarkSize, nullptr, this);
  option->text = fontMetrics().elidedText(option->text, Qt::ElideRight, sectionSize(section) - edges);
}

void ListHead::paintSection(QPainter* painter, const QRect& rect, int section) const {
  painter->save();
  QHeaderView::paintSection(painter, rect, section);
  painter->restore();
  if (!hasFocus() || section != chosen_) return;
  painter->setPen(QPen(Qt::white, 2));
  painter->drawRect(rect.adjusted(4, 4, -4, -4));
}

}  // namespace kelvo
