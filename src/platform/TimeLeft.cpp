#include "platform/TimeLeft.h"

#include <cmath>

namespace kelvo {
namespace {

using namespace std::chrono_literals;

constexpr Nanoseconds kSilentFor = 3s;
constexpr double kSilentShare = 0.02;

}  // namespace

std::optional<std::chrono::seconds> TimeLeft::At(Nanoseconds now, double share) const {
  const Nanoseconds passed = now - began_;
  if (passed < kSilentFor || share < kSilentShare || share > 1) return std::nullopt;
  const double seconds = std::chrono::duration<double>(passed).count() * (1 - share) / share;
  return std::chrono::seconds(std::llround(seconds));
}

}  // namespace kelvo
