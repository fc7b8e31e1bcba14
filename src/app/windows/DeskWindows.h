#pragma once

#include "app/WindowTable.h"

#include <QObject>

#include <memory>
#include <vector>

class QAction;
class QWidget;

namespace kelvo {

class Console;
class ConsoleWindow;

/// Joins the table of windows to the console on the screen: puts an entry for each line into the console's
/// menus, opens what a button asks for, and answers whether the console may close. Owned by the program's
/// entry; goes before the console does. GUI thread.
class DeskWindows : public QObject {
  Q_OBJECT
 public:
  DeskWindows(Console& console, ConsoleWindow& window);
  /// With other lines than those of the program.
  DeskWindows(Console& console, ConsoleWindow& window, std::vector<WindowLine> lines);
  ~DeskWindows() override;

  /// Takes them off the screen; each writes its place.
  void Close() { table_.Close(); }

  /// Whether `window` is one of them.
  [[nodiscard]] bool Owns(const QWidget* window) const;

 private:
  void AddEntries();
  /// The entry of a line was chosen.
  void Choose(const WindowLine& line);
  /// The library's buttons open what is written about a name, the help of a box its page.
  void JoinInformation();
  /// The queue's own button edits how the selected track is played.
  void JoinQueueEditor();
  /// Which entries can be chosen; one that can't says why in its tooltip.
  void ShowGuards();

  Console& console_;
  ConsoleWindow& window_;
  WindowTable table_;
  std::vector<std::unique_ptr<QAction>> separators_;
  std::vector<std::unique_ptr<QAction>> entries_;  ///< of each line of the table
};

}  // namespace kelvo
