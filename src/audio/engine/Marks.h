#pragma once

#include <cstddef>
#include <cstdint>

namespace kelvo {

/// A moment of a mixer's past that it can go back to. They count up from 1; a number that was gone back to is
/// used again.
using MarkNumber = std::uint64_t;

/// So many of them are kept. With the frames from one to the next they make up for the largest reserve.
inline constexpr std::size_t kMostMarks = 128;
inline constexpr std::size_t kMarkFrames = 256;

}  // namespace kelvo
