#pragma once

#include "database/Paths.h"

#include <QString>
#include <QStringList>

namespace kelvo {

/// What waits in the utility folder.
struct UtilityListing {
  QStringList files;       ///< full paths, by subfolder and name
  QStringList passedOver;  ///< what could not be listed, a line each, for the log
};

/// Lists the files of the utility folder's subfolders. A subfolder that is itself one of the database's
/// folders holds nothing that waits. Throws Failure when the utility folder cannot be read. Blocks; any
/// thread.
[[nodiscard]] UtilityListing ListUtilityFolder(const Paths& paths);

/// Deletes the utility folder's subfolders that hold nothing, except the database's own, and counts the files
/// that wait in the others. What fails is skipped. Blocks; any thread.
[[nodiscard]] int CleanUtilityFolder(const Paths& paths);

}  // namespace kelvo
