#pragma once

#include "audio/engine/SoundFile.h"

#include <QString>

#include <functional>
#include <optional>

namespace kelvo {

/// How fast a piece of music is, as far as a program can tell. A value.
struct FileTempo {
  double bpm = 0;
  /// The beats that were found keep that pace.
  bool sure = false;
};

/// Listens to the whole file for its beat; none when there is none to be heard. It may be half or twice of
/// what people tap. `onPercent` is called on this thread. Throws Failure when the file can't be played, or
/// `opening` was cancelled. Blocks for the disk; any thread but the logic's.
[[nodiscard]] std::optional<FileTempo> ReadTempo(const QString& path, const OpeningPtr& opening,
                                                 const std::function<void(int)>& onPercent = {});

}  // namespace kelvo
