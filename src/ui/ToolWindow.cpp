#include "ui/ToolWindow.h"

#include "ui/Naming.h"
#include "ui/TabOrder.h"

#include <QApplication>
#include <QCloseEvent>
#include <QShortcut>
#include <QWindow>

namespace kelvo {

ToolWindow::ToolWindow(const Look& look) {
  SetNames(*this, look.name, look.fixedName);
  setWindowTitle(look.title);
  resize(fontMetrics().averageCharWidth() * look.letters, fontMetrics().height() * look.lines);
  connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, &QWidget::close);
  connect(new QShortcut(QKeySequence(Qt::Key_F5), this), &QShortcut::activated, this, [this] { Refresh(); });
  connect(new QShortcut(QKeySequence(Qt::Key_F1), this), &QShortcut::activated, this,
          &ToolWindow::HelpWanted);
}

ToolWindow::~ToolWindow() = default;

void ToolWindow::KeepPlace(SettingsStore& settings, const PlaceKeys& keys) {
  place_ = std::make_unique<WindowPlace>(*this, settings, keys);
}

void ToolWindow::StayOnTop() {
  if (!isVisible() || isMinimized() || windowHandle() == nullptr) return;
  const QWidget* active = QApplication::activeWindow();
  const bool free = active == nullptr || active->windowHandle() == windowHandle()->transientParent();
  if (free && !QApplication::activeModalWidget() && !QApplication::activePopupWidget()) raise();
}

void ToolWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (event->spontaneous()) return;
  TabByLayout(*this);
  Enter();
}

void ToolWindow::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  // A hide that comes from the window system (minimised, another desktop) leaves it open.
  if (event->spontaneous()) return;
  Leave();
  Q_EMIT Left();
}

void ToolWindow::closeEvent(QCloseEvent* event) {
  // Locked, it takes no hand: not that of the window manager either.
  if (!isEnabled()) {
    event->ignore();
    return;
  }
  // The answer may come at once or much later; a window that may close is hidden then.
  if (!closing_.Running()) closing_ = AskAndClose();
  event->setAccepted(!isVisible());
}

Job<> ToolWindow::AskAndClose() {
  const bool may = co_await MayClose();
  if (may) hide();
}

}  // namespace kelvo
