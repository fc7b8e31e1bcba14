#include "ui/TabOrder.h"

#include <QLayout>
#include <QWidget>

#include <vector>

namespace kelvo {
namespace {

// NOLINTNEXTLINE(misc-no-recursion): as deep as the layouts are
void Collect(const QLayout& layout, std::vector<QWidget*>& found) {
  for (int index = 0; index < layout.count(); ++index) {
    QLayoutItem* item = layout.itemAt(index);
    if (const QLayout* inner = item->layout()) {
      Collect(*inner, found);
    } else if (QWidget* widget = item->widget()) {
      if (widget->focusPolicy() & Qt::TabFocus) found.push_back(widget);
      if (widget->layout() != nullptr) Collect(*widget->layout(), found);
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
