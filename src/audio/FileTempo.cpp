#include "audio/FileTempo.h"

#include "audio/FftwPlanner.h"
#include "audio/engine/FileWalk.h"
#include "platform/ErrorLog.h"

#include <aubio/aubio.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace kelvo {
namespace {

// Frames that the tracker looks at, and by which it goes on.
constexpr uint_t kWindow = 1024;
constexpr uint_t kHop = 512;
/// With fewer beats it is a guess.
constexpr std::size_t kFewestBeats = 8;
/// Beats whose distance is so near to that of most are those of the piece.
constexpr double kNear = 0.1;
/// Of all distances, those that must be near for the pace to be sure.
constexpr double kMost = 0.7;

struct Delete {
  void operator()(aubio_tempo_t* tempo) const { del_aubio_tempo(tempo); }
  void operator()(fvec_t* samples) const { del_fvec(samples); }
};

/// Seconds of the beats in the file.
std::vector<double> Beats(FileWalk& walk, const QString& path) {
  LetThreadsPlan();
  const std::unique_ptr<aubio_tempo_t, Delete> tracker(
      new_aubio_tempo("default", kWindow, kHop, static_cast<uint_t>(walk.Rate())));
  const std::unique_ptr<fvec_t, Delete> hop(new_fvec(kHop));
  const std::unique_ptr<fvec_t, Delete> found(new_fvec(1));
  if (!tracker || !hop || !found)
    throw Failure(QStringLiteral("The beat of %1 cannot be counted.").arg(path));
  std::vector<double> beats;
  uint_t filled = 0;
  for (std::span<const float> sound = walk.Next(); !sound.empty(); sound = walk.Next()) {
    for (std::size_t sample = 0; sample + 1 < sound.size(); sample += kChannels) {
      hop->data[filled++] = (sound[sample] + sound[sample + 1]) / 2;
      if (filled < kHop) continue;
      filled = 0;
      aubio_tempo_do(tracker.get(), hop.get(), found.get());
      if (found->data[0] != 0) beats.push_back(static_cast<double>(aubio_tempo_get_last_s(tracker.get())));
    }
  }
  return beats;
}

}  // namespace

std::optional<FileTempo> ReadTempo(const QString& path, const OpeningPtr& opening,
                                   const std::function<void(int)>& onPercent) {
  FileWalk walk(path, opening, onPercent);
  const std::vector<double> beats = Beats(walk, path);
  if (beats.size() < kFewestBeats) return std::nullopt;
  std::vector<double> gaps;
  for (std::size_t beat = 1; beat < beats.size(); ++beat) gaps.push_back(beats[beat] - beats[beat - 1]);
  std::vector<double> sorted = gaps;
  std::sort(sorted.begin(), sorted.end());
  const double median = sorted[sorted.size() / 2];
  if (!(median > 0)) return std::nullopt;
  double sum = 0;
  int near = 0;
  for (const double gap : gaps) {
    if (std::abs(gap / median - 1) >= kNear) continue;
    sum += gap;
    ++near;
  }
  return FileTempo{60 * near / sum, near >= kMost * static_cast<double>(gaps.size())};
}

}  // namespace kelvo
