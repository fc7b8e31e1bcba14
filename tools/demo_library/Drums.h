#pragma once

#include <cstdint>
#include <vector>

namespace kelvo::demo {

enum class Drum {
  Kick,
  Snare,
  Clap,
  Hat,
  OpenHat,
  Ride,
  Crash,
  LowTom,
  HighTom,
  Rim,
  Shaker,
  Conga,
  Cowbell
};
inline constexpr int kDrumCount = 13;

/// How a kit sounds.
struct KitSound {
  double kickHertz = 48.0;  ///< where the kick's fall ends
  double kickTime = 0.32;   ///< seconds
  double snareHertz = 185.0;
  double snareTime = 0.18;  ///< seconds
  double brightness = 1.0;  ///< of everything with noise in it, 0.5 dark .. 1.3
};

/// One drum's stroke at full velocity, mono, peak 1.
[[nodiscard]] std::vector<float> MakeDrum(Drum drum, const KitSound& kit, std::uint32_t seed);

/// Where a drum stands: -1 left .. 1 right.
[[nodiscard]] double PlaceOf(Drum drum);
/// How loud a drum is beside the kick.
[[nodiscard]] double LevelOf(Drum drum);

}  // namespace kelvo::demo
