#include "audio/engine/Decoder.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace kelvo {

namespace {

/// Room above full scale for masters that overshoot; what is beyond is no music.
constexpr float kLimit = 4.0F;

/// Below this a sample is silence, be it digital or the noise of a muted line: -66 dB.
constexpr float kAudible = 0.0005F;
constexpr FrameIndex kLongestSilence = 600;  ///< seconds

}  // namespace

std::size_t Decoder::Read(std::span<float> target) {
  const std::size_t wanted = target.size() / kChannels;
  std::size_t done = 0;
  while (done < wanted) {
    const std::size_t got = ReadSome(target.subspan(done * kChannels));
    if (got == 0) break;
    done += got;
  }
  for (float& sample : target.first(done * kChannels)) {
    if (!(std::abs(sample) <= kLimit)) sample = std::isnan(sample) ? 0.0F : std::copysign(kLimit, sample);
  }
  return done;
}

bool HoldsSound(Decoder& decoder, const OpeningPtr& opening) {
  std::vector<float> block(kChannels * kBlockFrames);
  const FrameIndex most = kLongestSilence * decoder.Rate();
  bool heard = false;
  for (FrameIndex seen = 0; !heard && seen < most;) {
    if (opening && opening->cancelled.load(std::memory_order_relaxed)) break;
    if (opening) opening->steps.fetch_add(1, std::memory_order_relaxed);
    const std::size_t frames = decoder.Read(block);
    heard = std::any_of(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(frames * kChannels),
                        [](float sample) { return std::abs(sample) > kAudible; });
    if (frames < kBlockFrames) break;
    seen += static_cast<FrameIndex>(frames);
  }
  decoder.Seek(0);
  return heard;
}

}  // namespace kelvo
