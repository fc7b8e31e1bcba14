#pragma once

#include "database/LibraryChange.h"
#include "database/Paths.h"
#include "platform/TrashBin.h"

namespace kelvo {

enum class StepResult {
  Done,
  Already,  ///< it was so
  Missing,  ///< what it works on is not there
  Other,    ///< what it works on is another than it was left, or its new name is taken: nothing was done
};

// Steps of a change on disk. All block for it: off the logic's thread.

/// Does a step, or takes it back. Throws Failure.
[[nodiscard]] StepResult DoStep(const Paths& paths, ChangeStep& step, bool back, TrashBin& trash);

/// The step is through and will not be taken back: what it kept for that goes.
void ForgetStep(const ChangeStep& step);

}  // namespace kelvo
