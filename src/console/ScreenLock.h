#pragma once

#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QObject>

namespace kelvo {

/// Locks the console's panels under a code that the operator chooses for this one lock. Decks and automatic
/// play go on; only the panels take no hand. The code lives nowhere but here. Owned by the Console; logic
/// thread.
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
