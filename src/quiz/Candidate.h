#pragma once

#include "database/Catalogue.h"
#include "platform/RandomSource.h"

#include <QHash>
#include <QString>

#include <optional>
#include <vector>

namespace kelvo {

/// A track that a quiz may ask about, with what is known of it. A value.
struct Candidate {
  Mref track = Mref::None;  ///< None when it is gone from the catalogue
  bool hasAlbum = false;
  bool hasHiPos = false;
  bool hasYear = false;
  QString artist = {};  ///< the first one
  QString album = {};   ///< the first one
};

/// What the catalogue knows of a track; none for one without an artist: every question needs one.
[[nodiscard]] std::optional<Candidate> CandidateOf(const Catalogue& catalogue, Mref track);

/// What stands two characters behind the first "-" of a track's name; all of it when it has none.
[[nodiscard]] QString TitleOf(const QString& trackName);

/// The tracks that a quiz chooses from, each of them once until it is given back. Owned by the PopQuiz; logic
/// thread.
class CandidatePool {
 public:
  void Clear();
  /// False, and nothing added, for a track that is in it already or has no artist.
  bool Add(const Catalogue& catalogue, Mref track);

  [[nodiscard]] int Found() const { return static_cast<int>(all_.size()); }
  [[nodiscard]] const Candidate& operator[](int number) const { return all_[At(number)]; }
  /// One that is free, each as likely as any other; none when none is.
  [[nodiscard]] std::optional<int> Pick(RandomSource& random) const;
  /// It is not picked again.
  void Use(int number) { used_[At(number)] = true; }
  void GiveBack(const std::vector<int>& numbers);
  [[nodiscard]] bool Used(int number) const { return used_[At(number)]; }

  void Follow(const TrackRemoved& removed);

 private:
  [[nodiscard]] static std::size_t At(int number) { return static_cast<std::size_t>(number); }

  std::vector<Candidate> all_;
  std::vector<bool> used_;
  QHash<int, int> numbers_;  ///< the place of each track in `all_`
};

}  // namespace kelvo
