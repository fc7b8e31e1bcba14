#pragma once

#include "database/CatalogueChange.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QString>

#include <optional>
#include <vector>

namespace kelvo {

class Catalogue;

/// The columns of the track list, in the order of their numbers.
enum class LibraryColumn { Track, Date, Hi, Bpm, Path, Mref, MainGenre, Time };
inline constexpr int kLibraryColumns = 8;

/// What the track list shows of a track in a column.
[[nodiscard]] QString LibraryText(const Catalogue& catalogue, Mref track, LibraryColumn column);

/// The order in which the track list shows its tracks, kept for the whole catalogue: once it is known, any
/// choice of tracks is in order after one pass over it. Owned by the LibraryBrowser; logic thread.
class TrackOrder {
 public:
  explicit TrackOrder(const Catalogue& catalogue) : catalogue_(catalogue) {}

  /// Sorts by a column, the latest date first, all others ascending; numbers by their value, texts in any
  /// case. Tracks that are equal keep the order that they had. Yields, and compares on another thread.
  [[nodiscard]] Job<> Sort(EventLoop& loop, LibraryColumn column);
  /// Back to the order of the catalogue.
  void Reset() { order_.clear(); }
  /// A track is gone. No sort may run: it would bring back the numbers from before.
  void Remove(const TrackRemoved& removed) { removed.TakeFrom(order_); }
  [[nodiscard]] bool IsSorted() const { return !order_.empty(); }
  /// All tracks in order; those that came after the sort are last.
  [[nodiscard]] const std::vector<Mref>& Tracks();

 private:
  const Catalogue& catalogue_;
  std::vector<Mref> order_;  ///< empty: the order of the catalogue
};

}  // namespace kelvo
