#include "app/windows/HostedWindow.h"

#include "ui/Naming.h"

#include <QWindow>

namespace kelvo {

void HostedWindow::Take(ToolWindow& window, const WindowHost& host, const QString& place) {
  window_ = &window;
  if (!place.isEmpty()) window.KeepPlace(host.settings, PlaceKeys::Of(host.title, host.section, place));
  connect(&window, &ToolWindow::Left, this, [this] {
    if (OnLeft) OnLeft();
  });
}

QString HostedWindow::Name() const {
  return FixedName(*window_);
}

void HostedWindow::Show() {
  ToolWindow& window = *window_;
  if (!window.testAttribute(Qt::WA_Moved)) {
    QRect place(QPoint(), window.size().expandedTo(window.minimumSizeHint()));
    place.moveCenter(console_.geometry().center());
    window.move(place.topLeft());
  }
  // Only of a dialog the window system learns whom it belongs to.
  if (window.windowHandle() == nullptr) {
    window.setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                          Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
  }
  window.winId();
  window.windowHandle()->setTransientParent(console_.windowHandle());
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
  window.TakeKeys();
}

}  // namespace kelvo
