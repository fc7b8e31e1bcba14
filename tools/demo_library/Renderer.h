#pragma once

#include "demo_library/Score.h"
#include "demo_library/Sound.h"

#include <cstdint>

namespace kelvo::demo {

/// Plays a score: every line through its own place in the room, then the whole brought to `loudness`
/// (decibels below full scale, mean power of what sounds) with its peak at -1 dB.
[[nodiscard]] StereoSound Render(const Score& score, std::uint32_t seed, double loudness = -16.0);

}  // namespace kelvo::demo
