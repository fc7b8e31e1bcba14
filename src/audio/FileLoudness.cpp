#include "audio/FileLoudness.h"

#include "audio/engine/FileWalk.h"
#include "platform/ErrorLog.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace kelvo {
namespace {

struct Destroy {
  void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
};

}  // namespace

FileLoudness ReadLoudness(const QString& path, const OpeningPtr& opening,
                          const std::function<void(int)>& onPercent) {
  FileWalk walk(path, opening, onPercent);
  const std::unique_ptr<ebur128_state, Destroy> meter(ebur128_init(
      kChannels, static_cast<unsigned long>(walk.Rate()), EBUR128_MODE_I | EBUR128_MODE_SAMPLE_PEAK));
  if (!meter) throw Failure(QStringLiteral("The loudness of %1 cannot be measured.").arg(path));
  for (std::span<const float> sound = walk.Next(); !sound.empty(); sound = walk.Next())
    ebur128_add_frames_float(meter.get(), sound.data(), sound.size() / kChannels);
  FileLoudness loudness;
  if (ebur128_loudness_global(meter.get(), &loudness.integrated) != EBUR128_SUCCESS ||
      !std::isfinite(loudness.integrated))
    loudness.integrated = -HUGE_VAL;
  for (unsigned channel = 0; channel < kChannels; ++channel) {
    double peak = 0;
    if (ebur128_sample_peak(meter.get(), channel, &peak) == EBUR128_SUCCESS)
      loudness.peak = std::max(loudness.peak, peak);
  }
  return loudness;
}

}  // namespace kelvo
