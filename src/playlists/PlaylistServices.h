#pragma once

#include "database/Catalogue.h"
#include "database/Paths.h"
#include "database/TrackPlaySettings.h"
#include "platform/Disks.h"
#include "platform/EventLoop.h"
#include "platform/Prompter.h"
#include "platform/Setting.h"
#include "playlists/PlaylistFiles.h"
#include "playlists/PlaylistQueue.h"

#include <functional>
#include <memory>

namespace kelvo {

/// What all work on playlists needs. The references outlive it.
struct PlaylistServices {
  EventLoop& loop;
  Disks& disks;
  Prompter& prompter;
  Catalogue& catalogue;
  Paths paths;
  ProgramSettings settings;
  std::shared_ptr<PlaylistQueue> queue;
  bool dmanAccess = true;  ///< playlists may be replaced, renamed and deleted
  Trash trash = DesktopTrash();
  /// Seconds by which each of these tracks but the last is cut short by the start of the next, as automatic
  /// play would decide. Empty: none is.
  std::function<std::vector<int>(const std::vector<TrackPlaySettings>& tracks)> overlaps = {};
};

/// Whether a category or a playlist may have this name; tells the operator why not. An empty name passes.
[[nodiscard]] bool CheckStoreName(Prompter& prompter, const QString& name);

}  // namespace kelvo
