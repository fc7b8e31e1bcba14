#pragma once

#include "database/GroupElement.h"

namespace kelvo {

class Catalogue;

/// What a step of a group playlist does, for the editor's list and for the status line while it runs: "Load "
/// with the track's name, "Start Track" and so on.
[[nodiscard]] QString ElementDetails(const GroupElement& element, const Catalogue& catalogue);

/// "Dub", "Part", "Pan"; "-" for none.
[[nodiscard]] QString FadeWord(TransitionKind fade);

}  // namespace kelvo
