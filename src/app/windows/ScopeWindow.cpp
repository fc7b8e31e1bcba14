#include "app/windows/ScopeWindow.h"

#include <QVBoxLayout>

namespace kelvo {

ScopeWindow::ScopeWindow(ScopeOfDesk& desk)
    : ToolWindow({.name = QStringLiteral("Scope"), .title = tr("Scope"), .letters = 64, .lines = 14}),
      view_(desk.scope) {
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(&view_, 1);
}

}  // namespace kelvo
