#pragma once

#include "app/WindowLine.h"
#include "app/windows/HostedWindow.h"
#include "datamanager/DataManager.h"
#include "datamanager/LibraryChanges.h"
#include "datamanager/References.h"

#include <functional>
#include <memory>
#include <vector>

namespace kelvo {

class Console;

/// What changes tracks and names of the library, shared by the windows that do so.
struct Upkeep {
  explicit Upkeep(Console& desk);

  std::shared_ptr<LibraryChanges> changes;
  std::shared_ptr<References> references;
  /// Opens the editor on this music file or jingle.
  std::function<void(const QString& path)> edit = {};
  /// Opens the encoder on it.
  std::function<void(const QString& path)> encode = {};
};

/// The editor of one file; it has no entry in a menu.
[[nodiscard]] WindowLine TrackEditorLine(Console& desk, const WindowHost& host,
                                         const std::shared_ptr<Upkeep>& upkeep);

/// The Data Manager's commands on names and on one file.
[[nodiscard]] std::vector<ManagerTool> UpkeepTools(DataManager& manager,
                                                   const std::shared_ptr<Upkeep>& upkeep);

/// Why the music file or jingle can't be deleted now, in words for the operator; empty when it can.
[[nodiscard]] QString WhyNotDeleted(Console& desk, const QString& path);

}  // namespace kelvo
