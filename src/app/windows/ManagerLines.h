#pragma once

#include "app/WindowLine.h"
#include "app/windows/EncodingLines.h"
#include "app/windows/HostedWindow.h"
#include "datamanager/DataManager.h"
#include "playlists/PlaylistServices.h"

#include <functional>
#include <vector>

namespace kelvo {

class Console;

/// The commands of the Data Manager whose work is done in other windows: one entry each. `open` opens a
/// window by its id.
[[nodiscard]] std::vector<ManagerTool> ManagerTools(Console& desk, DataManager& manager,
                                                    const std::function<void(const QString& id)>& open);

/// The Data Manager, and the two forms of Playlist Manager that it opens.
[[nodiscard]] std::vector<WindowLine> ManagerLines(Console& desk, const WindowHost& host,
                                                   const std::function<PlaylistServices()>& forPlaylists,
                                                   const std::function<void(const QString& id)>& open,
                                                   const EncodingDoor& door);

}  // namespace kelvo
