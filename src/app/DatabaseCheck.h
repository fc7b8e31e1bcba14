#pragma once

#include "app/ProgramFacts.h"
#include "database/Paths.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"

#include <optional>

namespace kelvo {

class SettingsStore;

/// The first half of the start: finds the eight folders of the media database through the settings, asks
/// about those that are not there, and has them repaired. Owned by the program's entry; logic thread.
class DatabaseCheck {
 public:
  DatabaseCheck(EventLoop& loop, Prompter& prompter, SettingsStore& settings, ProgramFacts facts,
                QString programFolder);

  /// The path table to start with; none when the operator gave up and the process has to end.
  [[nodiscard]] Job<std::optional<Paths>> Run();

 private:
  enum class Repair { Done, GivenUp };
  [[nodiscard]] Job<Repair> RepairPath(Paths* paths, int slot);
  /// Makes what is missing of a tree, with its reserved references, and saves its place.
  [[nodiscard]] Job<> MakeTree(Paths paths);
  /// Whether that went well; tells when it did not.
  [[nodiscard]] Job<bool> TryToMakeTree(Paths paths);
  void Save(const Paths& paths);

  EventLoop& loop_;
  Prompter& prompter_;
  SettingsStore& settings_;
  ProgramFacts facts_;
  QString programFolder_;
};

}  // namespace kelvo
