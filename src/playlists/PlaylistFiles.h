#pragma once

#include "database/PlaylistEntry.h"
#include "platform/Trash.h"

#include <QString>

#include <atomic>
#include <functional>
#include <vector>

namespace kelvo {

// The changes of playlists on disk. After a crash, a full disk or a kill at any instant a playlist is what it
// was before or what it was to become, and no track of it is lost; a hidden folder may be left beside it,
// which MendPlaylists sets right. All block for the disk: off the logic's thread. All throw.

/// An entry to be written.
struct NewEntry {
  QString name;
  PlaylistLink link;
  std::optional<QString> line = {};  ///< of a group playlist, for the companion
};

/// What a save is to write.
struct PlaylistOrder {
  QString folder;  ///< of the playlist; it may be there already
  std::vector<NewEntry> entries;
  bool replace = false;  ///< what is there goes to the trash; otherwise the entries come behind it
};
/// `done` counts the entries that are written.
void SavePlaylist(const PlaylistOrder& order, const Trash& trash, std::atomic<int>& done);

/// Deletes a playlist, or a category with all that is in it.
void DiscardFolder(const QString& folder, const Trash& trash);
/// Throws when the new name is taken.
void RenameFolder(const QString& folder, const QString& name);

/// What the link of an entry is to say from now on.
struct LinkChange {
  QString file;
  PlaylistLink link;
};
/// Rewrites links of a playlist, all or none; everything else in it stays as it is.
void RewriteLinks(const QString& folder, const std::vector<LinkChange>& changes);

/// Deletes an entry; the numbers behind it go down by one.
void DeleteEntry(const QString& folder, const QString& file, const Trash& trash);
/// Gives the entries of a playlist the numbers from 1, in their order.
void CloseGaps(const QString& folder);

/// Whether something is left below the playlists' folder of a change that a crash broke off.
[[nodiscard]] bool HasLeftOvers(const QString& playlists);
/// Brings those changes to an end, or takes them back.
void MendPlaylists(const QString& playlists);

}  // namespace kelvo
