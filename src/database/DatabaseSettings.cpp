#include "database/DatabaseSettings.h"

namespace kelvo {

TrackDefaults ReadTrackDefaults(const ProgramSettings& settings) {
  TrackDefaults defaults;
  defaults.DefaultFade = settings.Get(setting::DefaultFade);
  defaults.DefaultFadeSpeed = settings.Get(setting::DefaultFadeSpeed);
  defaults.DefaultDelta = settings.Get(setting::DefaultDelta);
  return defaults;
}

}  // namespace kelvo
