#pragma once

#include "app/WindowLine.h"
#include "app/windows/HostedWindow.h"
#include "playlists/PlaylistServices.h"

#include <functional>
#include <vector>

namespace kelvo {

class Console;

/// The window of the session list, and the two forms that save what is chosen in it; these have no entry in a
/// menu. `open` opens a window by its id.
[[nodiscard]] std::vector<WindowLine> SessionLines(Console& desk, const WindowHost& host,
                                                   const std::function<PlaylistServices()>& forPlaylists,
                                                   const std::function<void(const QString& id)>& open);

}  // namespace kelvo
