#include "ui/TabOrder.h"

#include <QHeaderView>
#include <QLayout>
#include <QRadioButton>
#include <QSplitter>
#include <QTabWidget>
#include <QTableView>

#include <vector>

namespace kelvo {
namespace {

/// Of a group of options only one takes Tab at a time, and each may become it.
bool TakesTab(const QWidget& widget) {
  return (widget.focusPolicy() & Qt::TabFocus) != 0 || qobject_cast<const QRadioButton*>(&widget) != nullptr;
}

void Collect(const QLayout& layout, std::vector<QWidget*>& found);

// NOLINTNEXTLINE(misc-no-recursion): as deep as the layouts are
void Collect(QWidget& widget, std::vector<QWidget*>& found) {
  // The heading of a list is above its rows.
  const auto* table = qobject_cast<const QTableView*>(&widget);
  if (table != nullptr && TakesTab(*table->horizontalHeader())) found.push_back(table->horizontalHeader());
  if (TakesTab(widget)) found.push_back(&widget);
  if (const auto* splitter = qobject_cast<const QSplitter*>(&widget)) {
    for (int index = 0; index < splitter->count(); ++index) Collect(*splitter->widget(index), found);
  } else if (const auto* tabs = qobject_cast<const QTabWidget*>(&widget)) {
    for (int index = 0; index < tabs->count(); ++index) Collect(*tabs->widget(index), found);
  } else if (widget.layout() != nullptr) {
    Collect(*widget.layout(), found);
  }
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as the layouts are
void Collect(const QLayout& layout, std::vector<QWidget*>& found) {
  for (int index = 0; index < layout.count(); ++index) {
    QLayoutItem* item = layout.itemAt(index);
    if (const QLayout* inner = item->layout()) {
      Collect(*inner, found);
    } else if (QWidget* widget = item->widget()) {
      Collect(*widget, found);
    }
  }
}

}  // namespace

void TabByLayout(QWidget& window) {
  std::vector<QWidget*> order;
  if (window.layout() != nullptr) Collect(*window.layout(), order);
  for (std::size_t index = 1; index < order.size(); ++index)
    QWidget::setTabOrder(order[index - 1], order[index]);
}

}  // namespace kelvo
