#pragma once

#include "database/TextColumns.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QString>

#include <string>
#include <vector>

namespace kelvo {

class Catalogue;

/// Letters without accents, in lower case: what a person who types in a hurry means.
[[nodiscard]] QString FoldedText(const QString& text);

/// Finds tracks as one types: any words, in any order, each anywhere in the name, accents and case folded.
/// Keeps the folded names in one piece of memory, so that a search over 100,000 tracks is one walk through
/// it. Owned by the Console; logic thread.
class TrackFilter {
 public:
  explicit TrackFilter(const Catalogue& catalogue) : catalogue_(catalogue) {}

  /// Folds the names of all tracks; yields. Called after each load of the catalogue.
  [[nodiscard]] Job<> Build(EventLoop& loop);

  /// The tracks, in catalogue order, that hold every word of `words`; all of them when there is none.
  [[nodiscard]] std::vector<Mref> Find(const QString& words) const;

 private:
  const Catalogue& catalogue_;
  std::string letters_;  ///< the folded names, one a line
  std::vector<std::uint32_t> starts_;
};

}  // namespace kelvo
