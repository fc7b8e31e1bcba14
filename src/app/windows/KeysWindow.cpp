#include "app/windows/KeysWindow.h"

#include "console/windows/DeskKeys.h"

#include <QVBoxLayout>

namespace kelvo {

void KeysOfDesk::Read() {
  std::vector<KeyLine> lines = KeysOf(console_);
  const std::vector<KeyLine> desk = DeskKeys::OwnKeys();
  lines.insert(lines.end(), desk.begin(), desk.end());
  rows_.Replace(std::move(lines));
}

KeysWindow::KeysWindow(KeysOfDesk& keys)
    : ToolWindow({.name = QStringLiteral("Keys"), .title = tr("Keys"), .letters = 76, .lines = 34}),
      keys_(keys),
      model_(keys.Rows(), {{{.head = tr("Does"), .letters = 40}, &KeyLine::words},
                           {{.head = tr("Key"), .letters = 22, .rank = 1}, &KeyLine::key}}),
      list_({.name = QStringLiteral("LstKeys"),
             .title = tr("KEYS OF THE CONSOLE"),
             .accessible = tr("Keys of the console"),
             .many = false,
             .filter = QStringLiteral("KeyFilter")},
            model_, this) {
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(&list_, 1);
}

}  // namespace kelvo
