#include "console/session/PlayedTracks.h"

#include "database/Catalogue.h"

#include <algorithm>

namespace kelvo {

PlayedTracks::PlayedTracks(EventLoop& loop, const Catalogue& catalogue) : loop_(loop), catalogue_(catalogue) {
  catalogue_.Listen(
      this,
      [this](const TrackRenamed& renamed) {
        for (Start& each : starts_) {
          if (each.path == renamed.pathBefore) each.path = renamed.path;
        }
      },
      [this](const TrackRemoved& removed) {
        for (Start& each : starts_) each.track = removed.Renumbered(each.track);
        std::erase_if(starts_, [](const Start& each) { return each.track == Mref::None; });
      },
      [this](const CatalogueReplaced&) {
        QStringList paths;
        for (const Start& each : starts_) paths.append(each.path);
        const QHash<QString, Mref> tracks = catalogue_.Find(paths);
        for (Start& each : starts_) each.track = tracks.value(each.path, Mref::None);
      });
}

void PlayedTracks::Note(Mref track) {
  if (!catalogue_.IsTrack(track)) return;
  std::erase_if(starts_, [track](const Start& each) { return each.track == track; });
  starts_.push_back({track, catalogue_.TrackPaths(track), loop_.Elapsed()});
}

std::vector<Mref> PlayedTracks::Within(Nanoseconds time) const {
  std::vector<Mref> tracks;
  for (const Start& each : starts_) {
    if (each.track != Mref::None && loop_.Elapsed() - each.at <= time) tracks.push_back(each.track);
  }
  return tracks;
}

std::optional<QDateTime> PlayedTracks::LastStart(Mref track) const {
  const auto found = std::find_if(starts_.begin(), starts_.end(), [track](const Start& each) {
    return each.track == track && track != Mref::None;
  });
  if (found == starts_.end()) return std::nullopt;
  const auto since = std::chrono::duration_cast<std::chrono::milliseconds>(loop_.Elapsed() - found->at);
  return loop_.Now().addMSecs(-since.count());
}

}  // namespace kelvo
