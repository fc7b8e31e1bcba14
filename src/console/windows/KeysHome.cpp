#include "console/windows/KeysHome.h"

#include "ui/Fader.h"
#include "ui/ListTable.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLineEdit>

namespace kelvo {

KeysHome::KeysHome(QWidget& window, QWidget& first) : QObject(&window), window_(window), list_(&first) {
  qApp->installEventFilter(this);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    if (qobject_cast<ListTable*>(now) != nullptr && now->window() == &window_) list_ = now;
  });
}

bool KeysHome::IsCommand(const QWidget* widget) const {
  if (widget->window() != &window_ || !widget->isEnabled()) return false;
  for (; widget != nullptr && widget != &window_; widget = widget->parentWidget()) {
    if (qobject_cast<const Fader*>(widget) != nullptr || qobject_cast<const QComboBox*>(widget) != nullptr)
      return true;
    // The button in a line of text empties it, to be typed into anew.
    if (qobject_cast<const QAbstractButton*>(widget) != nullptr)
      return qobject_cast<const QLineEdit*>(widget->parentWidget()) == nullptr;
  }
  return false;
}

bool KeysHome::eventFilter(QObject* watched, QEvent* event) {
  // Before the command acts: what it disables would take the keyboard along.
  const bool press =
      event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
  if (!press || !watched->isWidgetType()) return false;
  if (list_ && IsCommand(static_cast<const QWidget*>(watched))) list_->setFocus(Qt::OtherFocusReason);
  return false;
}

}  // namespace kelvo
