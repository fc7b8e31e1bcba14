#include "console/windows/DeskKeys.h"

#include "console/decks/ConfirmationPanel.h"
#include "console/transitions/PressToSpeak.h"
#include "console/transitions/Transitions.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTextEdit>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// Longer than the gap between the release and the press of a key that repeats, shorter than a finger's.
constexpr Nanoseconds kReleaseDelay = 40ms;

bool TakesText(const QWidget* widget) {
  if (const auto* line = qobject_cast<const QLineEdit*>(widget)) return !line->isReadOnly();
  if (const auto* text = qobject_cast<const QPlainTextEdit*>(widget)) return !text->isReadOnly();
  if (const auto* text = qobject_cast<const QTextEdit*>(widget)) return !text->isReadOnly();
  const auto* choices = qobject_cast<const QComboBox*>(widget);
  return qobject_cast<const QAbstractSpinBox*>(widget) != nullptr ||
         (choices != nullptr && choices->isEditable());
}

/// What is typed at this moment goes into a text.
bool Types(const QWidget* widget, int key) {
  const auto* line = qobject_cast<const QLineEdit*>(widget);
  const bool emptyFilter =
      line != nullptr && line->objectName() == QStringLiteral("TrackFilter") && line->text().isEmpty();
  return TakesText(widget) && !(emptyFilter && key == Qt::Key_Space);
}

/// 4 and 6 of the number pad. Without number lock they are arrows, which belong to the lists.
bool WalksSlider(const QKeyEvent& event) {
  return event.modifiers().testFlag(Qt::KeypadModifier) &&
         (event.key() == Qt::Key_4 || event.key() == Qt::Key_6);
}

/// The button that a function key presses.
QString ButtonOf(int key) {
  switch (key) {
    case Qt::Key_F6:
      return QStringLiteral("CmdDeckPan1");
    case Qt::Key_F7:
      return QStringLiteral("CmdDeckPartFade1");
    case Qt::Key_F8:
      return QStringLiteral("CmdDeckDub1");
    case Qt::Key_F10:
      return QStringLiteral("CmdDeckPan2");
    case Qt::Key_F11:
      return QStringLiteral("CmdDeckPartFade2");
    case Qt::Key_F12:
      return QStringLiteral("CmdDeckDub2");
    default:
      return {};
  }
}

}  // namespace

DeskKeys::DeskKeys(Parts parts, QWidget& window)
    : QObject(&window), desk_(std::move(parts)), window_(window) {
  qApp->installEventFilter(this);
}

std::vector<KeyLine> DeskKeys::OwnKeys() {
  return {{tr("Part fade to deck 1, of decks that play"), tr("4 of the number pad")},
          {tr("Pan to deck 2, of decks that play"), tr("6 of the number pad")},
          {tr("Yes, to what the desk asks"), tr("Enter")},
          {tr("No, to what the desk asks; takes a start or a fade back; empties the filter"), tr("Esc")}};
}

bool DeskKeys::eventFilter(QObject* watched, QEvent* event) {
  const bool press = event->type() == QEvent::KeyPress;
  const bool release = event->type() == QEvent::KeyRelease;
  auto* widget = qobject_cast<QWidget*>(watched);
  if (event->type() == QEvent::WindowDeactivate && widget != nullptr && widget->isWindow()) LetGoOfAll();
  if ((!press && !release) || widget == nullptr) return false;
  const auto* key = static_cast<const QKeyEvent*>(event);
  // The function keys work in every window beside the desk, unless a question is open. Who reaches for the
  // space bar wants to speak, whatever is open.
  const bool beside =
      key->key() == Qt::Key_Space || (!ButtonOf(key->key()).isEmpty() && !QApplication::activeModalWidget());
  if (widget->window() != &window_ && !beside) return false;
  const Qt::KeyboardModifiers modifiers = key->modifiers() & ~Qt::KeypadModifier;
  if (modifiers != Qt::NoModifier && press) return false;
  const bool typing = Types(widget, key->key());
  if (release && !key->isAutoRepeat()) return Release(key->key());
  if (!key->isAutoRepeat()) return Press(*key, typing);
  // A key that repeats is still the one press: swallowed where its press was taken.
  const bool ofDesk = key->key() == Qt::Key_Space || WalksSlider(*key);
  return !ButtonOf(key->key()).isEmpty() || held_.contains(key->key()) || (ofDesk && !typing);
}

bool DeskKeys::Press(const QKeyEvent& event, bool typing) {
  const int key = event.key();
  if (const auto held = held_.find(key); held != held_.end()) {
    held->second.Stop();
    return true;
  }
  const QString name = ButtonOf(key);
  if (!name.isEmpty()) {
    auto* button = window_.findChild<QPushButton*>(name);
    if (button == nullptr || !button->isEnabled()) return true;
    held_.try_emplace(key);
    button->setDown(true);
    Q_EMIT button->pressed();
    return true;
  }
  if (desk_.closed()) return false;
  if (desk_.panel.Visible() && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
    desk_.panel.Confirm();
    return true;
  }
  if (typing) return false;
  if (key == Qt::Key_Space) {
    held_.try_emplace(key);
    desk_.speak.Press();
    return true;
  }
  if (!WalksSlider(event)) return false;
  if (key == Qt::Key_4) desk_.fades.NumberPad4();
  if (key == Qt::Key_6) desk_.fades.NumberPad6();
  return true;
}

bool DeskKeys::Release(int key) {
  const auto held = held_.find(key);
  if (held == held_.end()) return !ButtonOf(key).isEmpty();
  held->second = desk_.loop.After(kReleaseDelay, [this, key] { LetGo(key); });
  return true;
}

void DeskKeys::LetGo(int key) {
  held_.erase(key);
  if (key == Qt::Key_Space) {
    desk_.speak.Release();
    return;
  }
  auto* button = window_.findChild<QPushButton*>(ButtonOf(key));
  if (button == nullptr || !button->isDown()) return;
  button->setDown(false);
  Q_EMIT button->released();
}

void DeskKeys::LetGoOfAll() {
  while (!held_.empty()) LetGo(held_.begin()->first);
}

}  // namespace kelvo
