#pragma once

#include "demo_library/Harmony.h"
#include "demo_library/Score.h"
#include "demo_library/Styles.h"

#include <cstdint>

namespace kelvo::demo {

/// What a piece is to be.
struct Plan {
  StyleName style = StyleName::House;
  Key key;
  int bpm = 120;
  double seconds = 36.0;  ///< about; it's rounded to whole phrases
  bool strongStart = true;
  bool strongEnd = false;
  std::uint32_t seed = 1;
};

/// Writes the piece: an introduction, phrases of four bars in the order of a song (A, B and a quiet C, each
/// with its own harmony and melody that come back as they were), fills between them, and an end that is a
/// last chord or a fade.
[[nodiscard]] Score Compose(const Plan& plan);

}  // namespace kelvo::demo
