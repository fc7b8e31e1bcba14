#include "app/windows/HostedWindow.h"

#include <QEvent>
#include <QWindow>

namespace kelvo {

void HostedWindow::Take(QWidget& widget) {
  widget_ = &widget;
  name_ = widget.objectName();
  widget.installEventFilter(this);
}

void HostedWindow::Show() {
  QWidget& window = *widget_;
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
}

bool HostedWindow::eventFilter(QObject* watched, QEvent* event) {
  // A hide that comes from the window system (minimised, another desktop) leaves it open.
  if (event->type() == QEvent::Hide && !event->spontaneous() && OnLeft) OnLeft();
  return QObject::eventFilter(watched, event);
}

}  // namespace kelvo
