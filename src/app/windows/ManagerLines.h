#pragma once

#include "app/WindowLine.h"
#include "app/windows/HostedWindow.h"
#include "datamanager/DataManager.h"
#include "playlists/PlaylistServices.h"

#include <functional>
#include <memory>
#include <vector>

namespace kelvo {

class Console;

/// Commands of the Data Manager that other windows bring along.
using MoreManagerTools = std::function<std::vector<ManagerTool>(DataManager& manager)>;

/// The Data Manager, and the two forms of Playlist Manager that it opens. `open` opens a window by its id.
/// `changes` does what it changes of several tracks.
[[nodiscard]] std::vector<WindowLine> ManagerLines(Console& desk, const WindowHost& host,
                                                   const std::function<PlaylistServices()>& forPlaylists,
                                                   const std::function<void(const QString& id)>& open,
                                                   const std::shared_ptr<LibraryChanges>& changes,
                                                   const std::vector<MoreManagerTools>& more);

}  // namespace kelvo
