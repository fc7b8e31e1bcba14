#pragma once

#include <array>
#include <boost/lockfree/spsc_queue.hpp>
#include <cstddef>
#include <cstdint>

namespace kelvo {

/// Everything behind the decoders is interleaved stereo float at this rate; time is counted in its frames.
inline constexpr int kEngineRate = 44100;
inline constexpr std::size_t kChannels = 2;

/// A position or a length in frames.
using FrameIndex = std::int64_t;

/// Raised by every seek and every new file. Compared by difference, so it may wrap.
using Generation = std::uint32_t;
[[nodiscard]] inline bool IsOlder(Generation a, Generation b) {
  return static_cast<std::int32_t>(a - b) < 0;
}

inline constexpr std::size_t kBlockFrames = 512;

/// What a decoder hands to a voice: a stretch of sound that knows where it belongs.
struct SoundBlock {
  Generation generation = 0;
  std::uint32_t frames = 0;  ///< filled frames; 0 is allowed in a block that only tells the end
  FrameIndex start = 0;      ///< place of its first frame in the stream
  bool end = false;          ///< nothing follows in this generation
  std::array<float, kBlockFrames * kChannels> samples{};
};

/// 4 s of sound work-ahead: so long the desk has to bring in another track when a disk dies under this one.
/// And a reserve that only the first blocks of a new generation may use: after a seek the new place is in the
/// ring before the callback has emptied it of the old one.
inline constexpr std::size_t kRingReserve = 24;
inline constexpr std::size_t kRingTarget = 345;
using SoundRing =
    boost::lockfree::spsc_queue<SoundBlock, boost::lockfree::capacity<kRingTarget + kRingReserve>>;

}  // namespace kelvo
