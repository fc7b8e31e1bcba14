#pragma once

#include "database/DatabaseSettings.h"
#include "platform/Job.h"
#include "platform/Prompter.h"
#include "platform/Setting.h"

#include <QString>

#include <functional>

namespace kelvo {

/// The console's way into the Data Manager and its tools: free, or behind a password. The setting counts from
/// one start of the program to the next. Owned by the Console; logic thread.
class DataManagerAccess {
 public:
  /// Reads the settings. An empty password opens never.
  DataManagerAccess(Prompter& prompter, const ProgramSettings& settings)
      : prompter_(prompter),
        dmanAccess_(settings.Get(setting::DmanAccess)),
        password_(settings.Get(setting::DmanPassWord)) {}

  /// The way is free without a password.
  [[nodiscard]] bool Free() const { return dmanAccess_; }
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
