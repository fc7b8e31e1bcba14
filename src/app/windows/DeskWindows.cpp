#include "app/windows/DeskWindows.h"

#include "console/Console.h"
#include "console/windows/ConsoleWindow.h"
#include "database/windows/JingleImportWindow.h"
#include "database/windows/ScanWindow.h"
#include "database/windows/TransferWindow.h"
#include "database/windows/UtilityWindow.h"
#include "datamanager/windows/SearchWindow.h"

#include <QPointer>
#include <QWindow>

#include <algorithm>

namespace kelvo {
namespace {

/// In front of the console, which must not cover what the operator works in; in its middle, unless the window
/// has a place of its own.
void BringUp(QWidget& window, const QWidget& console) {
  if (!window.testAttribute(Qt::WA_Moved)) {
    QRect place(QPoint(), window.size().expandedTo(window.minimumSizeHint()));
    place.moveCenter(console.geometry().center());
    window.move(place.topLeft());
  }
  // Only of a dialog the window system learns whom it belongs to.
  if (window.windowHandle() == nullptr) {
    window.setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                          Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
  }
  window.winId();
  window.windowHandle()->setTransientParent(console.windowHandle());
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
}

}  // namespace

DeskWindows::DeskWindows(Console& console, ConsoleWindow& window) : console_(console), window_(window) {
  // What changes the database belongs to the Data Manager, and is behind its password.
  const auto guard = [this](void (ConsoleWindow::*wanted)(), void (DeskWindows::*open)()) {
    connect(&window_, wanted, this, [this, open] {
      console_.ManagerAccess().Enter([self = QPointer(this), open] {
        if (self) (self->*open)();
      });
    });
  };
  guard(&ConsoleWindow::ImportWanted, &DeskWindows::OpenImport);
  guard(&ConsoleWindow::TransferWanted, &DeskWindows::OpenTransfer);
  guard(&ConsoleWindow::UtilityWanted, &DeskWindows::OpenUtility);
  guard(&ConsoleWindow::JinglesWanted, &DeskWindows::OpenJingles);
  connect(&window_, &ConsoleWindow::SearchWanted, this, &DeskWindows::OpenSearch);
  connect(&console_.Lock(), &ScreenLock::Changed, this, &DeskWindows::ShowLock);
  window_.MayClose = [this] { return MayClose(); };
}

DeskWindows::~DeskWindows() {
  window_.MayClose = nullptr;
  // Closed, not only dropped: a window writes its place when it goes off the screen.
  Close();
}

void DeskWindows::Close() {
  for (QWidget* each : Windows()) each->close();
}

std::vector<QWidget*> DeskWindows::Windows() const {
  std::vector<QWidget*> windows{import_.get(), transfer_.get(), utility_.get(), jingles_.get(),
                                search_.get()};
  std::erase(windows, nullptr);
  return windows;
}

bool DeskWindows::Owns(const QWidget* window) const {
  const std::vector<QWidget*> all = Windows();
  return window != nullptr && std::find(all.begin(), all.end(), window) != all.end();
}

void DeskWindows::ShowLock() {
  for (QWidget* each : Windows()) each->setEnabled(!console_.Lock().Locked());
}

bool DeskWindows::Busy() const {
  return (import_ && import_->Work().Busy()) || (transfer_ && transfer_->Work().Running()) ||
         (jingles_ && jingles_->Work().Busy());
}

Job<bool> DeskWindows::MayClose() {
  if (!Busy()) co_return true;
  Prompt question;
  question.text = tr("Music Is Still Being Imported Or Transferred !\r\nStop That And Quit ?");
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Exclamation;
  const Answer answer = co_await console_.GetServices().prompter.Ask(question);
  co_return answer == Answer::Yes;
}

void DeskWindows::OpenImport() {
  if (!import_) {
    const Console::Services& desk = console_.GetServices();
    import_ = std::make_unique<ScanWindow>(ScanWindow::Services{desk.loop, desk.prompter, desk.settings,
                                                                desk.catalogue, desk.paths, desk.title});
  }
  BringUp(*import_, window_);
}

void DeskWindows::OpenTransfer() {
  if (!transfer_) {
    const Console::Services& desk = console_.GetServices();
    transfer_ = std::make_unique<TransferWindow>(
        TransferWindow::Services{desk.loop, desk.prompter, desk.settings, desk.audio, desk.catalogue,
                                 desk.paths, console_.Settings().defaults, desk.title});
  }
  BringUp(*transfer_, window_);
}

void DeskWindows::OpenUtility() {
  if (!utility_) {
    const Console::Services& desk = console_.GetServices();
    utility_ = std::make_unique<UtilityWindow>(UtilityFolder::Services{
        desk.loop, desk.settings, desk.audio, desk.catalogue, desk.paths, desk.title});
  }
  BringUp(*utility_, window_);
}

void DeskWindows::OpenJingles() {
  if (!jingles_) {
    const Console::Services& desk = console_.GetServices();
    jingles_ = std::make_unique<JingleImportWindow>(JingleImportWindow::Services{
        desk.loop, desk.prompter, desk.settings, desk.catalogue, desk.paths, desk.title});
  }
  BringUp(*jingles_, window_);
}

void DeskWindows::OpenSearch() {
  if (!search_) {
    const Console::Services& desk = console_.GetServices();
    search_ = std::make_unique<SearchWindow>(
        SearchWindow::Services{desk.loop, desk.prompter, desk.settings, desk.catalogue, desk.title},
        &window_);
    search_->OnAdd = [this](std::vector<Mref> tracks) {
      jobs_.Add(console_.Queue().AddTracks(std::move(tracks), PlayQueue::Route::Search));
    };
  }
  BringUp(*search_, window_);
  search_->BeginTyping();
}

}  // namespace kelvo
