#include "database/KeptTracks.h"

#include <algorithm>

namespace kelvo {

KeptTracks::KeptTracks(const Catalogue& catalogue, std::vector<Mref> tracks) : tracks_(std::move(tracks)) {
  catalogue.Listen(
      &listener_,
      [this](const TrackRemoved& removed) {
        for (Mref& track : tracks_) track = removed.Renumbered(track);
      },
      [this](const CatalogueReplaced&) { std::fill(tracks_.begin(), tracks_.end(), Mref::None); });
}

TrackWalk::TrackWalk(const Catalogue& catalogue) : catalogue_(catalogue) {
  catalogue.Listen(
      &listener_,
      [this](const TrackRemoved& removed) {
        // Also of the track that it is at: the next one has taken its place.
        if (ToInt(removed.track) <= row_) --row_;
      },
      [this](const CatalogueReplaced&) { ended_ = true; });
}

}  // namespace kelvo
