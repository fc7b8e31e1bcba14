#pragma once

#include "platform/FileCopy.h"

#include <QString>

#include <vector>

namespace kelvo {

/// A file in the staging area.
struct StagedCopy {
  QString path;
  std::int64_t bytes = 0;
};

// The staging area: a folder with copies of what a data disc will hold. All of these block; any thread.

/// What is in it, by name; nothing where there is no such folder.
[[nodiscard]] std::vector<StagedCopy> StagedIn(const QString& folder);
/// Makes the folder; a path in it for a file of this name, with a running number where the name is taken.
[[nodiscard]] QString PlaceInStaging(const QString& folder, const QString& name);
/// Deletes one of its files. Throws Failure.
void DeleteStaged(const QString& path);

}  // namespace kelvo
