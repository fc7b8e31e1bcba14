#pragma once

#include "audio/engine/Feeder.h"
#include "audio/engine/SoundBlock.h"
#include "audio/engine/Voice.h"

namespace kelvo {

/// The parts of a player that other threads touch: the ring, the feeder at its one end and the voice at its
/// other. Made and freed on the logic's thread; outlives its feeder's thread and its place in a mixer.
struct PlayerCore {
  SoundRing ring;
  Voice voice{ring};
  Feeder feeder{ring};
};

}  // namespace kelvo
