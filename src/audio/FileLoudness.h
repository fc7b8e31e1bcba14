#pragma once

#include "audio/engine/SoundFile.h"

#include <QString>

#include <functional>

namespace kelvo {

/// How loud a sound file is, by the broadcasters' measure. A value.
struct FileLoudness {
  double integrated = 0;  ///< LUFS, of the whole file; below -70 it is silent
  double peak = 0;        ///< highest sample, 1 is full scale
};

/// Listens to the whole file. `onPercent` is called on this thread. Throws Failure when it can't be played,
/// or `opening` was cancelled. Blocks for the disk; any thread but the logic's.
[[nodiscard]] FileLoudness ReadLoudness(const QString& path, const OpeningPtr& opening,
                                        const std::function<void(int)>& onPercent = {});

}  // namespace kelvo
