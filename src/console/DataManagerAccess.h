#pragma once

#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QString>

#include <functional>

namespace kelvo {

/// The console's way into the Data Manager and its tools: free, or behind a password. The setting counts from
/// one start of the program to the next. Owned by the Console; logic thread.
class DataManagerAccess {
 public:
  /// `dmanAccess`: free access. Otherwise `password` opens; an empty one opens never.
  DataManagerAccess(Prompter& prompter, bool dmanAccess, QString password)
      : prompter_(prompter), dmanAccess_(dmanAccess), password_(std::move(password)) {}

  /// A menu entry: calls `open` when the way is free. Does nothing while the question of an entry is open.
  void Enter(std::function<void()> open);

 private:
  [[nodiscard]] Job<> AskPassword(std::function<void()> open);

  Prompter& prompter_;
  bool dmanAccess_;
  QString password_;
  Job<> asking_;
};

}  // namespace kelvo
