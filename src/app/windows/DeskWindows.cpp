#include "app/windows/DeskWindows.h"

#include "app/windows/WindowLines.h"
#include "console/Console.h"
#include "console/windows/ConsoleWindow.h"
#include "ui/Command.h"

#include <QAction>
#include <QWidget>

namespace kelvo {

DeskWindows::DeskWindows(Console& console, ConsoleWindow& window)
    : DeskWindows(console, window, WindowLines(console, window, [&window](const QString& id) {
                    Q_EMIT window.WindowWanted(id);
                  })) {}

DeskWindows::DeskWindows(Console& console, ConsoleWindow& window, std::vector<WindowLine> lines)
    : console_(console),
      window_(window),
      table_({.loop = console.GetServices().loop,
              .prompter = console.GetServices().prompter,
              .access = console.ManagerAccess(),
              .facts =
                  [&console] {
                    return WindowTable::DeskFacts{.locked = console.Lock().Locked(),
                                                  .catalogueLoaded = console.CatalogueLoaded(),
                                                  .whyBusy = console.Status().WhyBusy()};
                  }},
             std::move(lines)) {
  AddEntries();
  ShowGuards();
  connect(&window_, &ConsoleWindow::WindowWanted, this, [this](const QString& id) { table_.Open(id); });
  connect(&window_, &ConsoleWindow::FilesDropped, this,
          [this](const QStringList& places) { table_.TakeDrop(places, WindowId::kImport); });
  connect(&console_.Lock(), &ScreenLock::Changed, this, [this](bool locked) {
    table_.SetLocked(locked);
    ShowGuards();
  });
  connect(&console_, &Console::LoadChanged, this, [this] { ShowGuards(); });
  connect(&console_.Status(), &StatusTick::Ticked, this, [this] { ShowGuards(); });
  window_.MayClose = [this] { return table_.MayClose(); };
}

DeskWindows::~DeskWindows() {
  window_.MayClose = nullptr;
}

bool DeskWindows::Owns(const QWidget* window) const {
  return table_.Owns(window);
}

void DeskWindows::AddEntries() {
  for (const WindowLine& line : table_.Lines()) {
    if (line.startsGroup) {
      const auto& separator = separators_.emplace_back(std::make_unique<QAction>());
      separator->setSeparator(true);
      window_.AddWindowCommand(line.menu, *separator);
    }
    const auto& entry = entries_.emplace_back(std::make_unique<QAction>(line.words));
    entry->setObjectName(line.id);
    entry->setShortcut(QKeySequence(line.key, QKeySequence::PortableText));
    connect(entry.get(), &QAction::triggered, this, [this, id = line.id] { table_.Open(id); });
    window_.AddWindowCommand(line.menu, *entry);
  }
}

void DeskWindows::ShowGuards() {
  for (std::size_t index = 0; index < entries_.size(); ++index) {
    Offer(*entries_[index], table_.WhyClosed(table_.Lines()[index]));
  }
}

}  // namespace kelvo
