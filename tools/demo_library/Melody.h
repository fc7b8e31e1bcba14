#pragma once

#include "demo_library/Harmony.h"
#include "platform/RandomSource.h"

#include <string_view>
#include <vector>

namespace kelvo::demo {

/// A note of a melody, counted in sixteenths from the beginning of its phrase.
struct MelodyNote {
  int step = 0;
  int steps = 1;
  int pitch = 60;
};

/// Four bars over a progression: two ideas of a bar, the first again over the third chord, and a close that
/// comes to rest on the last one. Strong beats have chord tones, the notes between them lead there by steps
/// of the scale.
[[nodiscard]] std::vector<MelodyNote> WriteMelody(const Key& key, const Progression& chords, int stepsPerBar,
                                                  const std::vector<std::string_view>& rhythms, int centre,
                                                  RandomSource& chance);

}  // namespace kelvo::demo
