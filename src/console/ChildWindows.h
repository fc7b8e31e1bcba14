#pragma once

#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QString>

#include <vector>

namespace kelvo {

/// A form that the console opens over itself, without holding its input. It tells ChildWindows when it
/// closes, at the latest in its destructor. Owned by whoever makes the windows.
class ChildForm {
 public:
  virtual ~ChildForm() = default;
  [[nodiscard]] virtual QString Name() const = 0;
  virtual void Show() = 0;
  virtual void Hide() = 0;
};

/// One child form at a time: a new one takes the place of the one that is open. Only the CD player and the CD
/// ripper (`frmCdPlayer`, `frmVBCDRip`) stay open side by side. Owned by the Console; logic thread.
class ChildWindows {
 public:
  explicit ChildWindows(EventLoop& loop) : loop_(loop) {}

  /// Shows the form at once, or, when another has to be hidden first, at the loop's next turn.
  void ShowChild(ChildForm& form);
  /// The form was closed, or goes away.
  void Closed(const ChildForm& form);

  [[nodiscard]] bool ChildOpen() const { return !open_.empty(); }
  /// The form shown last; none when none is open.
  [[nodiscard]] const ChildForm* CurrentChild() const { return open_.empty() ? nullptr : open_.back(); }

 private:
  [[nodiscard]] Job<> ShowAfterTurn(ChildForm* form);

  EventLoop& loop_;
  std::vector<ChildForm*> open_;
  Job<> showing_;
};

}  // namespace kelvo
