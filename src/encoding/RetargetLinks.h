#pragma once

#include <QString>

namespace kelvo {

/// Makes each playlist entry below `playlists` that leads to the file `from` lead to `to`; what else it says
/// stays. Paths compare without case. An entry that can't be read is passed over. Throws Failure where one
/// can't be written. Blocks: off the logic's thread.
void RetargetLinks(const QString& playlists, const QString& from, const QString& to);

}  // namespace kelvo
