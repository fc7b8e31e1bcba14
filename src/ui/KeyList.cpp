#include "ui/KeyList.h"

#include <QAction>
#include <QMenu>
#include <QVariant>
#include <QWidget>

namespace kelvo {
namespace {

constexpr const char* kKey = "key";
const QString kBeforeKey = QStringLiteral("  (");

/// The words of a menu's entry, without what is for the menu alone.
QString Plain(const QString& entry) {
  QString words = entry.section(QLatin1Char('\t'), 0, 0);
  words.remove(QLatin1Char('&'));
  return words.remove(QStringLiteral("..."));
}

}  // namespace

void TellKey(QWidget& control, const QString& key) {
  control.setProperty(kKey, key);
  control.setToolTip(control.toolTip() + kBeforeKey + key + QLatin1Char(')'));
}

std::vector<KeyLine> KeysOf(const QWidget& window) {
  std::vector<KeyLine> lines;
  for (const QMenu* menu : window.findChildren<QMenu*>()) {
    for (const QAction* entry : menu->actions()) {
      if (!entry->shortcut().isEmpty())
        lines.push_back({Plain(entry->text()), entry->shortcut().toString(QKeySequence::NativeText)});
    }
  }
  // In the order in which Tab goes through them.
  for (const QWidget* control = window.nextInFocusChain(); control != &window;
       control = control->nextInFocusChain()) {
    const QString key = control->property(kKey).toString();
    if (key.isEmpty()) continue;
    const QString spoken = control->accessibleName();
    lines.push_back({spoken.isEmpty() ? control->toolTip().section(kBeforeKey, 0, 0) : spoken, key});
  }
  return lines;
}

}  // namespace kelvo
