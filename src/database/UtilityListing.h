#pragma once

#include "database/Catalogue.h"
#include "database/Paths.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

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

/// Deletes the utility folder's subfolders that hold nothing, except the database's own, and lists the files
/// that wait in the others. What fails is skipped. Blocks; any thread.
[[nodiscard]] QStringList CleanUtilityFolder(const Paths& paths);

/// Lists the waiting files off the logic's thread and gives them to the catalogue. What is staged or taken
/// away during the look is heeded. Throws Failure when the utility folder cannot be read.
[[nodiscard]] Job<> FindStagedFiles(EventLoop& loop, Catalogue& catalogue, Paths paths);

}  // namespace kelvo
