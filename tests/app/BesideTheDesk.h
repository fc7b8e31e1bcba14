#pragma once

#include "app/windows/DeskWindows.h"
#include "console/DeskFixture.h"
#include "console/windows/ConsoleWindow.h"
#include "support/TurnUntil.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QMenu>
#include <QTest>

namespace kelvo::testing {

/// The console on an offscreen screen, joined with the windows beside it.
class BesideTheDesk : public DeskTest {
 protected:
  void SetUp() override {
    Theme::Apply(*qApp);
    AddThreeTracks();
  }
  /// With the windows of the program, or with those of `lines`.
  template <typename... Lines>
  void OpenDesk(Lines&&... lines) {
    Make();
    window_.emplace(*desk_);
    beside_.emplace(*desk_, *window_, std::forward<Lines>(lines)...);
    window_->show();
    window_->activateWindow();
    ASSERT_TRUE(TurnUntil([this] { return window_->isActiveWindow(); }));
    ASSERT_TRUE(loop_.RunUntil([this] { return desk_->CatalogueLoaded(); }));
  }
  /// The window of this type that was made; none when none was.
  template <typename Window>
  static Window* Opened() {
    Window* found = nullptr;
    for (QWidget* each : QApplication::topLevelWidgets()) {
      if (auto* window = qobject_cast<Window*>(each)) found = window;
    }
    return found;
  }
  /// The entry of a window in the menus of the console, and its menu.
  std::pair<QAction*, QMenu*> Entry(const QString& id) {
    for (QMenu* menu : window_->findChildren<QMenu*>()) {
      for (QAction* action : menu->actions()) {
        if (action->objectName() == id) return {action, menu};
      }
    }
    ADD_FAILURE() << "no entry for " << id.toStdString();
    return {};
  }
  bool Offered(const QString& id) { return Entry(id).first->isEnabled(); }
  /// Opens the menu and clicks on the entry.
  void Press(const QString& id) {
    const auto [entry, menu] = Entry(id);
    menu->popup(window_->mapToGlobal(QPoint(10, 30)));
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(entry).center());
    menu->close();
    loop_.RunFor(10ms);
  }
  void PressLock() {
    window_->findChild<QAction*>(u"Lockscr"_s)->trigger();
    loop_.RunFor(10ms);
  }

  std::optional<ConsoleWindow> window_;
  std::optional<DeskWindows> beside_;
};

}  // namespace kelvo::testing
