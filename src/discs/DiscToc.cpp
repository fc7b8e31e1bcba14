#include "discs/DiscToc.h"

#include <algorithm>

namespace kelvo {
namespace {

/// Two seconds of pause are on most discs.
constexpr int kOrdinaryPause = 2 * kCdSectorsPerSecond;

}  // namespace

std::optional<TocTrack> DiscToc::Hidden() const {
  if (tracks.empty() || !tracks.front().audio || tracks.front().first <= kOrdinaryPause) return std::nullopt;
  return TocTrack{.number = 0, .first = 0, .sectors = tracks.front().first};
}

const TocTrack* DiscToc::TrackAt(int sector) const {
  const auto behind = std::find_if(tracks.begin(), tracks.end(),
                                   [sector](const TocTrack& track) { return track.first > sector; });
  return behind == tracks.begin() ? nullptr : &*(behind - 1);
}

const TocTrack* DiscToc::Track(int number) const {
  const auto found = std::find_if(tracks.begin(), tracks.end(),
                                  [number](const TocTrack& track) { return track.number == number; });
  return found == tracks.end() ? nullptr : &*found;
}

int DiscToc::AudioTracks() const {
  return static_cast<int>(std::count_if(tracks.begin(), tracks.end(), std::mem_fn(&TocTrack::audio)));
}

DiscToc::Zone DiscToc::AudioZone(int sector) const {
  Zone zone;
  for (const TocTrack& track : tracks) {
    if (!track.audio) {
      if (zone.end > sector) break;
      zone = {};
      continue;
    }
    const bool isFirst = &track == &tracks.front();
    if (zone.end != track.first) {
      if (zone.end > sector) break;
      zone.first = isFirst ? 0 : track.first;
    }
    zone.end = track.End();
  }
  return sector >= zone.first && sector < zone.end ? zone : Zone{};
}

}  // namespace kelvo
