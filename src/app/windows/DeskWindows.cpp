#include "app/windows/DeskWindows.h"

#include "app/windows/InfoLines.h"
#include "app/windows/WindowLines.h"
#include "console/Console.h"
#include "console/windows/ConsoleWindow.h"
#include "ui/Command.h"

#include <QAction>
#include <QWidget>

#include <array>

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
  JoinQueueEditor();
  JoinInformation();
  connect(&window_, &ConsoleWindow::WindowWanted, this, [this](const QString& id) { table_.Open(id); });
  connect(&window_, &ConsoleWindow::TrackWindowWanted, this,
          [this](const QString& id, const QString& path) { table_.Open(id, {path}); });
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
  console_.Queue().OpenEditor = nullptr;
  console_.Browser().OpenProfile = nullptr;
  console_.GetServices().prompter.OnHelp = nullptr;
}

void DeskWindows::JoinQueueEditor() {
  PlayQueue& queue = console_.Queue();
  queue.OpenEditor = [this, &queue](int index, bool groupPlaylist) {
    if (groupPlaylist) {
      table_.Open(WindowId::kGroupEdit);
    } else {
      table_.Open(WindowId::kPlayEdit, {queue.Row(index).path});
    }
  };
  Q_EMIT queue.FactsChanged();
}

void DeskWindows::JoinInformation() {
  console_.Browser().OpenProfile = [this](Stage stage, const QString& name) {
    constexpr std::array kSets{ReferenceSet::Genres, ReferenceSet::Artists, ReferenceSet::Albums};
    table_.Open(ProfileWindowId(kSets[static_cast<std::size_t>(stage)]), {name});
  };
  console_.GetServices().prompter.OnHelp = [this](int topic) {
    table_.Open(WindowId::kHelp, {QStringLiteral("topic:%1").arg(topic)});
  };
}

void DeskWindows::Choose(const WindowLine& line) {
  if (line.id == WindowId::kHelp) {
    table_.Open(line.id, {QStringLiteral("Console")});
  } else if (!line.onTrack) {
    table_.Open(line.id);
  } else if (const QString track = window_.PointedTrack(); track.isEmpty()) {
    Prompt message;
    message.text = tr("Select A Track First !");
    message.icon = PromptIcon::Information;
    console_.GetServices().prompter.Tell(message);
  } else {
    table_.Open(line.id, {track});
  }
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
    if (line.words.isEmpty()) continue;
    entry->setObjectName(line.id);
    entry->setShortcut(QKeySequence(line.key, QKeySequence::PortableText));
    connect(entry.get(), &QAction::triggered, this, [this, &line] { Choose(line); });
    window_.AddWindowCommand(line.menu, *entry);
  }
}

void DeskWindows::ShowGuards() {
  for (std::size_t index = 0; index < entries_.size(); ++index) {
    Offer(*entries_[index], table_.WhyClosed(table_.Lines()[index]));
  }
}

}  // namespace kelvo
