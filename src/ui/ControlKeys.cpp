#include "ui/ControlKeys.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace kelvo {
namespace {

bool IsPlainEnter(const QKeyEvent& key) {
  const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  return enter && !(key.modifiers() & ~Qt::KeypadModifier);
}

QComboBox* ChoicesOf(QWidget& control) {
  auto* box = qobject_cast<QComboBox*>(&control);
  return box != nullptr && !box->isEditable() ? box : nullptr;
}

/// A text of several lines, to which Enter adds one.
bool TakesLines(const QWidget& control) {
  if (const auto* plain = qobject_cast<const QPlainTextEdit*>(&control)) return !plain->isReadOnly();
  const auto* text = qobject_cast<const QTextEdit*>(&control);
  return text != nullptr && !text->isReadOnly();
}

bool TakeKey(QWidget& control, const QKeyEvent& key) {
  auto* button = qobject_cast<QAbstractButton*>(&control);
  QComboBox* choices = ChoicesOf(control);
  if (key.key() == Qt::Key_Space) return button != nullptr || choices != nullptr;
  if (!IsPlainEnter(key)) return false;
  // A finger that stays on the key has pressed once.
  if (key.isAutoRepeat()) return !TakesLines(control);
  if (button != nullptr) {
    // The key by which Qt itself presses and lets go of every kind of button.
    QKeyEvent select(key.type(), Qt::Key_Select, Qt::NoModifier);
    QCoreApplication::sendEvent(button, &select);
    return true;
  }
  if (choices == nullptr) return false;
  if (key.type() == QEvent::KeyPress) choices->showPopup();
  return true;
}

}  // namespace

void ControlKeys::Install(QApplication& application) {
  if (application.findChild<ControlKeys*>() == nullptr) new ControlKeys(application);
}

// Of the whole application: a key must be taken where it arrives. Behind that a line of text may have
// answered it already, and moved the focus to a button.
ControlKeys::ControlKeys(QApplication& application) : QObject(&application) {
  application.installEventFilter(this);
}

bool ControlKeys::eventFilter(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  if (type != QEvent::Polish && type != QEvent::KeyPress && type != QEvent::KeyRelease) return false;
  auto* control = qobject_cast<QWidget*>(watched);
  if (control == nullptr) return false;
  if (type == QEvent::Polish) {
    const bool pressed = qobject_cast<QAbstractButton*>(control) != nullptr || ChoicesOf(*control) != nullptr;
    if (pressed && (control->focusPolicy() & Qt::ClickFocus) != 0) control->setFocusPolicy(Qt::TabFocus);
    return false;
  }
  return control->isEnabled() && TakeKey(*control, *static_cast<QKeyEvent*>(event));
}

}  // namespace kelvo
