#pragma once

#include "database/Paths.h"
#include "datamanager/LibraryChanges.h"
#include "datamanager/TrackLinks.h"

#include <QString>

#include <optional>

namespace kelvo {

/// A music file or a jingle that is to be renamed or deleted, and what lies beside it on disk. A value; any
/// thread.
struct LibraryFile {
  QString path;
  bool track = false;     ///< in the music folder: it has a track info file, and playlists lead to it
  QString infoPath = {};  ///< as it is on disk; empty: it has none
  std::optional<QByteArray> info = {};  ///< of that file
  bool infoShared = false;              ///< by another music file of the same base name
};

/// Throws Failure. Blocks for the disk: off the logic's thread.
[[nodiscard]] LibraryFile LookAtFile(const Paths& paths, const QString& path);
/// Whether a file of this new name would take the place of another, in any case; for a track also whether
/// another one has its base name, for they would share an info file. Blocks.
[[nodiscard]] bool NameTaken(const Paths& paths, const QString& newPath);

/// Renames the file and all that hangs on its name: first the entries of playlists, then the file, then its
/// info file. `leftInfo`: a track info file that has the new name and belongs to no track. Blocks for the
/// disk.
[[nodiscard]] LibraryChanges::Order RenameOrder(const Paths& paths, const LibraryFile& file,
                                                const QString& newPath, const std::vector<TrackLink>& links,
                                                const QString& leftInfo);
/// Deletes the entries of playlists, then the file, then its info file.
[[nodiscard]] LibraryChanges::Order DeleteOrder(const LibraryFile& file, const std::vector<TrackLink>& links);

}  // namespace kelvo
