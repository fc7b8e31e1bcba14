#pragma once

#include "console/ChildWindows.h"
#include "console/desk/DeskMenu.h"
#include "platform/Job.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace kelvo {

/// What has to be so before a window opens. Each is looked at when the operator asks for the window.
struct WindowGuard {
  bool catalogue = true;  ///< the catalogue is loaded
  bool idleDesk = false;  ///< nothing plays or is begun, and the queue has no name
  bool password = false;  ///< the Data Manager's, where access to it isn't free
};

/// A window beside the console, as the table of windows sees it. It is kept when it goes off the screen: what
/// it does goes on. Owned by the WindowTable; logic thread.
class BesideWindow : public ChildForm {
 public:
  /// It went off the screen.
  std::function<void()> OnLeft;

  /// The operator wants the help of this window.
  std::function<void()> OnHelp;

  /// Whether `window` is this one.
  [[nodiscard]] virtual bool Is(const QObject* window) const = 0;
  /// A locked window takes no hand.
  virtual void SetLocked(bool locked) = 0;
  /// It does something that the end of the program would break off.
  [[nodiscard]] virtual bool Busy() = 0;
  /// Files and folders that the operator dropped for it; it is shown.
  virtual void TakeFiles(const QStringList& places) = 0;
  /// Whether the program may end as far as this window goes; it may ask first.
  [[nodiscard]] virtual Job<bool> MayClose() { co_return true; }
};

/// One line of the table of windows: all that the desk has to know of a window before it is made. A value.
struct WindowLine {
  QString id;                         ///< unique
  DeskMenu menu = DeskMenu::Library;  ///< where its entry is
  bool startsGroup = false;           ///< a line above the entry
  QString words = {};                 ///< of the entry, with its mnemonic; empty: it has none
  QString key = {};                   ///< portable text ("Ctrl+I"); empty: none
  WindowGuard guard = {};
  bool onTrack = false;  ///< it works on the track that the operator points at
  /// A guard of its own: why it can't be opened now, in words for the operator; empty when it can.
  std::function<QString()> whyClosed = {};
  /// For a form of the console that puts another away: what is told of it then, by the fixed name of the other
  /// and the words of its entry; empty: nothing.
  std::function<QString(const QString& form, const QString& words)> putsAway = {};
  bool childForm = false;     ///< a form of the console: one at a time (ChildWindows)
  QString busyQuestion = {};  ///< asked at the end of the program while it is busy; Yes ends
  QString place = {};         ///< begins the settings keys of its place and size; empty: they are not kept
  /// Called once, when it is first asked for.
  std::function<std::unique_ptr<BesideWindow>()> make = {};
  /// Takes files that were dropped on the console, without its window; false: they are not for it.
  std::function<bool(const QStringList& files)> takesDrop = {};
};

}  // namespace kelvo
