#include "ui/Command.h"

#include "ui/KeyList.h"
#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QAction>
#include <QShortcut>
#include <QVariant>

namespace kelvo {
namespace {

/// The key of the number pad counts as the other Return does.
QList<QKeySequence> AllKeys(const QKeySequence& key) {
  if (key.isEmpty()) return {};
  QList<QKeySequence> keys{key};
  if (key[0].key() == Qt::Key_Return) keys.append(QKeySequence(key[0].keyboardModifiers() | Qt::Key_Enter));
  return keys;
}

constexpr const char* kWhyOff = "whyOff";
constexpr const char* kHadKeys = "hadKeys";

/// The tooltip of a control, with the reason at its end.
QString WithReason(const QWidget& control, const QString& whyOff) {
  const auto end = [](const QString& words, const QString& why) {
    return words.isEmpty() || why.isEmpty() ? why : QLatin1Char('\n') + why;
  };
  QString words = control.toolTip();
  const QString before = control.property(kWhyOff).toString();
  if (words == before) words.clear();
  if (words.endsWith(end(words, before))) words.chop(end(words, before).size());
  return words + end(words, whyOff);
}

}  // namespace

CommandButton* AddCommand(QWidget& owner, const Command& command) {
  auto* button = new CommandButton(command.words, &owner);
  SetNames(*button, command.name, command.fixedName);
  if (command.icon) button->setIcon(ScalableIcon(*command.icon));
  if (!command.role.isEmpty()) Theme::SetRole(*button, command.role);
  const QString key =
      command.keyWords.isEmpty() ? command.key.toString(QKeySequence::NativeText) : command.keyWords;
  button->setToolTip(command.tooltip);
  if (!key.isEmpty()) TellKey(*button, key);
  // A shortcut of its own: a button whose words change loses the one that it was given.
  for (const QKeySequence& each : AllKeys(command.key))
    QObject::connect(new QShortcut(each, &owner), &QShortcut::activated, button, &QPushButton::click);
  if (command.run) QObject::connect(button, &QPushButton::clicked, button, command.run);
  return button;
}

void Offer(QWidget& control, const QString& whyOff) {
  const QString words = WithReason(control, whyOff);
  control.setProperty(kWhyOff, whyOff);
  if (control.toolTip() != words) control.setToolTip(words);
  const bool on = whyOff.isEmpty();
  if (control.testAttribute(Qt::WA_ForceDisabled) != on) return;
  const QWidget& window = *control.window();
  if (!on && window.focusWidget() == &control) {
    control.setProperty(kHadKeys, true);
    control.clearFocus();
  }
  control.setEnabled(on);
  if (!on || !control.property(kHadKeys).toBool()) return;
  control.setProperty(kHadKeys, false);
  if (window.focusWidget() == nullptr) control.setFocus();
}

void Offer(QAction& entry, const QString& whyOff) {
  entry.setEnabled(whyOff.isEmpty());
  entry.setToolTip(whyOff);
}

}  // namespace kelvo
