#pragma once

#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QString>

#include <functional>

namespace kelvo {

/// The console's way into the Data Manager: free, or behind a password. Owned by the Console; logic thread.
class DataManagerAccess {
 public:
  /// `dmanAccess`: free access. Otherwise `password` opens; an empty one opens never.
  DataManagerAccess(Prompter& prompter, bool dmanAccess, QString password)
      : prompter_(prompter), dmanAccess_(dmanAccess), password_(std::move(password)) {}

  /// The settings were changed.
  void SetAccess(bool dmanAccess, const QString& password);

  /// The menu entry. Does nothing while its question is open.
  void Enter();
  /// Opens the Data Manager.
  std::function<void()> OnGranted;

 private:
  [[nodiscard]] Job<> AskPassword();

  Prompter& prompter_;
  bool dmanAccess_;
  QString password_;
  Job<> asking_;
};

}  // namespace kelvo
