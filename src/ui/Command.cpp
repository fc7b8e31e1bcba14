#include "ui/Command.h"

#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QShortcut>

namespace kelvo {
namespace {

/// The key of the number pad counts as the other Return does.
QList<QKeySequence> AllKeys(const QKeySequence& key) {
  if (key.isEmpty()) return {};
  QList<QKeySequence> keys{key};
  if (key[0].key() == Qt::Key_Return) keys.append(QKeySequence(key[0].keyboardModifiers() | Qt::Key_Enter));
  return keys;
}

}  // namespace

CommandButton* AddCommand(QWidget& owner, const Command& command) {
  auto* button = new CommandButton(command.words, &owner);
  SetNames(*button, command.name, command.fixedName);
  if (command.icon) button->setIcon(ScalableIcon(*command.icon));
  if (!command.role.isEmpty()) Theme::SetRole(*button, command.role);
  const QString key =
      command.keyWords.isEmpty() ? command.key.toString(QKeySequence::NativeText) : command.keyWords;
  button->setToolTip(key.isEmpty() ? command.tooltip : command.tooltip + QStringLiteral("  (%1)").arg(key));
  // A shortcut of its own: a button whose words change loses the one that it was given.
  for (const QKeySequence& each : AllKeys(command.key))
    QObject::connect(new QShortcut(each, &owner), &QShortcut::activated, button, &QPushButton::click);
  if (command.run) QObject::connect(button, &QPushButton::clicked, button, command.run);
  return button;
}

}  // namespace kelvo
