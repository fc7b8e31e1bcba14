#include "app/windows/WaitPointer.h"

#include "console/Console.h"

#include <QWidget>

namespace kelvo {

WaitPointer::WaitPointer(Console& console, QWidget& window) {
  const auto show = [&console, &window] {
    if (console.PendingCatalogueLoad()) {
      window.setCursor(Qt::WaitCursor);
    } else {
      window.unsetCursor();
    }
  };
  connect(&console, &Console::LoadChanged, this, show);
  show();
}

}  // namespace kelvo
