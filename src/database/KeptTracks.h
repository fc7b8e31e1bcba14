#pragma once

#include "database/Catalogue.h"

#include <QObject>

#include <vector>

namespace kelvo {

/// Track numbers that a job keeps while it waits: they follow what happens to the catalogue. A track that was
/// removed is Mref::None, and so are all of them when the catalogue was read anew. Owned by the job, as a
/// local variable; logic thread.
class KeptTracks {
 public:
  KeptTracks(const Catalogue& catalogue, std::vector<Mref> tracks);
  KeptTracks(const KeptTracks&) = delete;
  KeptTracks& operator=(const KeptTracks&) = delete;

  [[nodiscard]] std::size_t Count() const { return tracks_.size(); }
  [[nodiscard]] Mref operator[](std::size_t place) const { return tracks_[place]; }
  [[nodiscard]] const std::vector<Mref>& All() const { return tracks_; }

 private:
  std::vector<Mref> tracks_;
  QObject listener_;
};

/// A pass over all tracks that may wait between two of them: when tracks are removed meanwhile none is
/// passed over, and it ends when the catalogue is read anew. Owned by the job, as a local variable; logic
/// thread.
class TrackWalk {
 public:
  explicit TrackWalk(const Catalogue& catalogue);
  TrackWalk(const TrackWalk&) = delete;
  TrackWalk& operator=(const TrackWalk&) = delete;

  /// Goes on to the next track; false behind the last one.
  [[nodiscard]] bool Next() { return !ended_ && ++row_ <= catalogue_.LastTrack(); }
  [[nodiscard]] Mref Track() const { return ToMref(row_); }

 private:
  const Catalogue& catalogue_;
  int row_ = 0;
  bool ended_ = false;
  QObject listener_;
};

}  // namespace kelvo
