#pragma once

#include "app/WindowLine.h"
#include "app/windows/HostedWindow.h"
#include "database/CatalogueChange.h"
#include "datamanager/DataManager.h"

#include <functional>
#include <vector>

namespace kelvo {

class Console;

/// The Info Centre, the profiles (which have no entry in a menu: a name is shown that was chosen elsewhere),
/// the manual and the list of keys. `open` opens a window by its id.
[[nodiscard]] std::vector<WindowLine> InfoLines(Console& desk, const WindowHost& host,
                                                const std::function<void(const QString& id)>& open);

/// The window that shows the profile of a name of this set; with `fromManager` the one that the Data Manager
/// opens, which keeps a place of its own. Empty: the set has no profiles.
[[nodiscard]] QString ProfileWindowId(ReferenceSet set, bool fromManager = false);

/// "Show Info" of the Data Manager: what is written about the name that is chosen there.
[[nodiscard]] ManagerTool ProfileTool(const WindowHost& host, DataManager& manager);

}  // namespace kelvo
