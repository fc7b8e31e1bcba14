#include "app/windows/HostedWindow.h"

#include "ui/Naming.h"

#include <QApplication>
#include <QWindow>

namespace kelvo {

void HostedWindow::Take(ToolWindow& window, const WindowHost& host, const QString& place) {
  window_ = &window;
  if (!place.isEmpty()) window.KeepPlace(host.settings, PlaceKeys::Of(host.title, host.section, place));
  connect(&window, &ToolWindow::Left, this, [this] {
    if (OnLeft) OnLeft();
  });
  connect(&window, &ToolWindow::HelpWanted, this, [this] {
    if (OnHelp) OnHelp();
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
  // A question takes the hands from all windows but those in front of it: its help is one of these.
  QWidget* const question = QApplication::activeModalWidget();
  window.windowHandle()->setTransientParent((question ? question : &console_)->windowHandle());
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
  window.TakeKeys();
}

}  // namespace kelvo
