#pragma once

#include "burning/AudioDisc.h"

#include <cstdint>
#include <functional>
#include <span>

namespace kelvo {

/// Reads sectors of a disc from the first one on, `target` full. Throws Failure. Blocks.
using ReadSectors = std::function<void(int first, std::span<std::int16_t> target)>;

/// Compares what a drive reads of an audio CD with what was written, sample by sample. Drives give all of a
/// disc's sound shifted by some samples, always the same: the shift is found first. Throws Failure where
/// something else differs. Ends early when `control` says so. Blocks; any thread.
void CompareAudioDisc(const QString& binFile, const AudioDisc& disc, const ReadSectors& read,
                      AudioDiscControl& control);

}  // namespace kelvo
