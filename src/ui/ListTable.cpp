#include "ui/ListTable.h"

#include "ui/ListHead.h"
#include "ui/Theme.h"

#include <QKeyEvent>
#include <QPainter>

namespace kelvo {
ListTable::ListTable(QWidget* parent) : QTableView(parent), head_(new ListHead(this)) {
  setHorizontalHeader(head_);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setShowGrid(false);
  setWordWrap(false);
  setAlternatingRowColors(true);
  setTabKeyNavigation(false);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  verticalHeader()->hide();
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  SizeRows();
  connect(this, &QTableView::doubleClicked, this, &ListTable::RowActivated);
}

void ListTable::SizeRows() {
  // One fixed height for all rows: a list of 100,000 is not measured row by row.
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setMinimumSectionSize(0);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + fontMetrics().height() / 3);
}

void ListTable::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) SizeRows();
}

void ListTable::SetColumns(int main, int letters, std::vector<OptionalColumn> others) {
  mainLetters_ = letters;
  optional_ = std::move(others);
  QHeaderView* head = horizontalHeader();
  head->setStretchLastSection(false);
  head->setSectionResizeMode(QHeaderView::Interactive);
  head->setSectionResizeMode(main, QHeaderView::Stretch);
  SizeColumns();
}

void ListTable::SizeColumns() {
  const int letter = fontMetrics().averageCharWidth();
  int room = viewport()->width() - mainLetters_ * letter;
  bool fits = true;
  for (const auto& [column, letters, always] : optional_) {
    const int width = letters * letter;
    fits = fits && (always || width <= room);
    room -= width;
    setColumnHidden(column, !fits && !always);
    if (fits || always) setColumnWidth(column, width);
  }
}

void ListTable::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  SizeColumns();
}

void ListTable::LetHeadBeClicked() {
  head_->LetClick(objectName() + QStringLiteral("Head"), tr("%1: columns").arg(accessibleName()));
}

void ListTable::SetEmptyText(const QString& text) {
  emptyText_ = text;
  viewport()->update();
}

void ListTable::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  // In a cell that is edited the same key ends that.
  const bool editing = state() == EditingState;
  if (enter && !editing && event->modifiers() == Qt::NoModifier && currentIndex().isValid()) {
    Q_EMIT RowActivated(currentIndex());
    return;
  }
  // In a list of rows the ends are its first and its last row, not the ends of a row.
  const int rows = model() != nullptr ? model()->rowCount() : 0;
  const bool toEnd = event->key() == Qt::Key_Home || event->key() == Qt::Key_End;
  if (toEnd && rows > 0 && event->modifiers() == Qt::NoModifier) {
    selectRow(event->key() == Qt::Key_Home ? 0 : rows - 1);
    return;
  }
  QTableView::keyPressEvent(event);
}

void ListTable::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (emptyText_.isEmpty() || (model() != nullptr && model()->rowCount() > 0)) return;
  QPainter painter(viewport());
  painter.setPen(Theme::Palette().muted);
  const int margin = std::min(fontMetrics().height(), viewport()->width() / 12);
  painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                   Qt::AlignCenter | Qt::TextWordWrap, emptyText_);
}

}  // namespace kelvo
