#pragma once

#include "playlists/GroupEdit.h"

#include <vector>

namespace kelvo {

/// What is heard of a track on a deck in a group playlist. Times in seconds, as the elements have them.
struct DeckClip {
  int deck = 2;  ///< the number of the deck's player, 2 or 3
  Mref track = Mref::None;
  int from = 0;
  int risesUntil = 0;  ///< it is faded in until then; `from`: it is there at once
  int fallsFrom = 0;   ///< it is faded out from then on; `to`: it is not
  int to = 0;
  bool operator==(const DeckClip&) const = default;
};

/// Of the steps by their times, in the order of their ends. A deck that is loaded and never started is not
/// heard; a track that nobody ends is heard as long as it is.
[[nodiscard]] std::vector<DeckClip> DeckClips(const GroupEdit& edit);

}  // namespace kelvo
