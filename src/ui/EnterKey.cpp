#include "ui/EnterKey.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>

namespace kelvo {
namespace {

bool IsPlainEnter(const QKeyEvent& key) {
  const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  return enter && !(key.modifiers() & ~Qt::KeypadModifier);
}

}  // namespace

// Of the whole application: the key must be taken where it arrives. Behind that a line of text may have
// answered it already, and moved the focus to a button.
EnterKey::EnterKey(QWidget& window) : QObject(&window), window_(window) {
  qApp->installEventFilter(this);
}

bool EnterKey::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !IsPlainEnter(*static_cast<QKeyEvent*>(event))) return false;
  auto* control = qobject_cast<QWidget*>(watched);
  if (control == nullptr || control->window() != &window_ || !control->isEnabled()) return false;
  if (auto* button = qobject_cast<QAbstractButton*>(control)) {
    // A finger that stays on the key has pressed once.
    if (!static_cast<QKeyEvent*>(event)->isAutoRepeat()) button->click();
    return true;
  }
  auto* box = qobject_cast<QComboBox*>(control);
  if (box == nullptr || box->isEditable()) return false;
  box->showPopup();
  return true;
}

}  // namespace kelvo
