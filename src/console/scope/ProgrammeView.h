#pragma once

#include "console/scope/ProgrammeLevels.h"
#include "console/scope/Scope.h"

namespace kelvo {

/// What the operator sees of the sound, on one beat. Owned by the Console; logic thread.
struct ProgrammeView {
  explicit ProgrammeView(Scope::Services services)
      : beat(services.loop), levels(beat, services.loop, services.audio), scope(beat, std::move(services)) {}

  PictureBeat beat;
  ProgrammeLevels levels;
  Scope scope;
};

}  // namespace kelvo
