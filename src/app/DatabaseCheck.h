#pragma once

#include "app/ProgramFacts.h"
#include "database/Paths.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"

#include <functional>
#include <optional>

namespace kelvo {

class SettingsStore;

/// The first half of the start: finds the eight folders of the media database through the settings, asks
/// about those that are not there, and has them repaired or installed. Owned by the program's entry; logic
/// thread, disks off it.
class DatabaseCheck {
 public:
  /// Runs the installer. `present` holds the folders that are there already, its other slots are empty. Gives
  /// none when the operator gave up.
  using Install = std::function<Job<std::optional<Paths>>(Paths present)>;

  DatabaseCheck(EventLoop& loop, Prompter& prompter, SettingsStore& settings, ProgramFacts facts,
                Install install);

  /// The path table to start with; none when the operator gave up and the process has to end.
  [[nodiscard]] Job<std::optional<Paths>> Run();

 private:
  enum class Repair { Done, GivenUp };
  /// The folders of `paths` that are there; the other slots are empty.
  [[nodiscard]] Job<Paths> ThoseThere(Paths paths);
  [[nodiscard]] Job<Repair> RepairPath(Paths* paths, int slot);
  void Save(const Paths& paths);

  EventLoop& loop_;
  Prompter& prompter_;
  SettingsStore& settings_;
  ProgramFacts facts_;
  Install install_;
};

}  // namespace kelvo
