#pragma once

#include <cmath>

namespace kelvo {

/// At and below this attenuation, in hundredths of a decibel, nothing is heard.
inline constexpr int kSilentLevel = -10000;

/// The factor for an attenuation in hundredths of a decibel, 0 and below; exactly 1 at 0, exactly 0 at
/// silence.
[[nodiscard]] inline float GainOf(int hundredthsOfDecibel) {
  if (hundredthsOfDecibel <= kSilentLevel) return 0.0F;
  if (hundredthsOfDecibel >= 0) return 1.0F;
  return static_cast<float>(std::pow(10.0, hundredthsOfDecibel / 2000.0));
}

}  // namespace kelvo
