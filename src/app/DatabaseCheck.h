#pragma once

#include "app/ProgramFacts.h"
#include "database/Paths.h"
#include "platform/Disks.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"

#include <functional>
#include <optional>

namespace kelvo {

class SettingsStore;

/// The first half of the start: sees whether the settings can be read and kept, finds the eight folders of
/// the media database through them, asks about those that are not there, and has them repaired or installed.
/// A database of an older form is left as it is: the console would make new track info files beside the old
/// ones. Owned by the program's entry; logic thread, disks off it.
class DatabaseCheck {
 public:
  /// Runs the installer. `present` holds the folders that are there already, its other slots are empty. Gives
  /// none when the operator gave up.
  using Install = std::function<Job<std::optional<Paths>>(Paths present)>;

  DatabaseCheck(EventLoop& loop, Prompter& prompter, SettingsStore& settings, ProgramFacts facts,
                Install install);

  /// The path table to start with; none when the operator gave up, or the database can't be used, and the
  /// process has to end.
  [[nodiscard]] Job<std::optional<Paths>> Run();

 private:
  /// Whether to go on. Settings that are there but can't be read may name a database: that they count as
  /// those of a first start is for the operator to say.
  [[nodiscard]] Job<bool> SettingsWillDo();
  [[nodiscard]] Job<> TellUnwritable();
  enum class Repair { Done, GivenUp };
  /// The folders of `paths` that are there; the other slots are empty. A folder that does not answer is not
  /// there.
  [[nodiscard]] Job<Paths> ThoseThere(Paths paths);
  /// A track info file of an older form; empty when there is none, nothing when the folder can't be read.
  [[nodiscard]] Job<std::optional<QString>> OlderFile(QString infoFolder);
  [[nodiscard]] Job<> TellOlder(QString infoFolder, QString file);
  /// What becomes of a path table with a folder that is not there.
  [[nodiscard]] Job<std::optional<Paths>> AskFor(Paths paths, int missing, Paths present);
  [[nodiscard]] Job<Repair> RepairPath(Paths* paths, int slot);
  void Save(const Paths& paths);

  Disks disks_;
  Prompter& prompter_;
  SettingsStore& settings_;
  ProgramFacts facts_;
  Install install_;
};

}  // namespace kelvo
