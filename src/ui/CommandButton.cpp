#include "ui/CommandButton.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace kelvo {

CommandButton::CommandButton(QWidget* parent) : CommandButton(QIcon(), QString(), parent) {}
CommandButton::CommandButton(const QString& text, QWidget* parent) : CommandButton(QIcon(), text, parent) {}

CommandButton::CommandButton(const QIcon& icon, const QString& text, QWidget* parent)
    : QPushButton(icon, text, parent) {
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize CommandButton::minimumSizeHint() const {
  QSize size = sizeHint();
  // The gap that styles put between an icon and its word.
  if (!icon().isNull() && !text().isEmpty()) size.rwidth() -= iconSize().width() + 4;
  return size;
}

void CommandButton::paintEvent(QPaintEvent* /*event*/) {
  QStylePainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);
  if (!text().isEmpty() && width() < sizeHint().width()) option.icon = QIcon();
  painter.drawControl(QStyle::CE_PushButton, option);
}

}  // namespace kelvo
