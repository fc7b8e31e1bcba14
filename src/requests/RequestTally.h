#pragma once

#include <QString>

namespace kelvo {

/// Counts a request of the track `name`, whose file is `path`, in the folder of the most requested tracks,
/// which is made where it is missing: one link a track, found by its name without case, whose arguments are
/// the count. Returns the new count. Killed at any instant the link holds the old count or the new. Throws
/// Failure. Blocks: in Lane::Files, so that two counts never meet.
int CountRequest(const QString& folder, const QString& name, const QString& path);

}  // namespace kelvo
