#pragma once

#include "playlists/M3uList.h"
#include "playlists/PlaylistServices.h"

namespace kelvo {

/// Writes a list as NAME.m3u8 into a folder that the operator picks, and tells what came of it; `missing` of
/// its tracks are not in it.
[[nodiscard]] Job<> ExportList(const PlaylistServices& services, QString name, M3uList list, int missing);

}  // namespace kelvo
