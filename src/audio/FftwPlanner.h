#pragma once

#include <fftw3.h>

namespace kelvo {

/// Called before every plan of a transform: threads may make plans at the same time. Those of a library
/// count.
inline void LetThreadsPlan() {
  static const bool done = (fftwf_make_planner_thread_safe(), true);
  (void)done;
}

}  // namespace kelvo
