#pragma once

#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QObject>

namespace kelvo {

/// Locks the program under a code that the operator chooses for this one lock. Decks and automatic play go
/// on; no window takes a hand, and what jobs ask meanwhile waits until the screen is unlocked. The code lives
/// nowhere but here and is never shown. Owned by the Console; logic thread.
class ScreenLock : public QObject {
  Q_OBJECT

 public:
  explicit ScreenLock(Prompter& prompter) : prompter_(prompter) {}

  /// The menu entry: asks for a new code and locks, or for the code and unlocks. Does nothing while its
  /// question is open.
  void Lockscr();
  [[nodiscard]] bool Locked() const { return !screenLockCode_.isEmpty(); }

 Q_SIGNALS:
  /// The panels are to be disabled (locked) or enabled.
  void Changed(bool locked);

 private:
  [[nodiscard]] Job<> Lock();
  [[nodiscard]] Job<> Unlock();

  Prompter& prompter_;
  QString screenLockCode_;
  Job<> asking_;
};

}  // namespace kelvo
