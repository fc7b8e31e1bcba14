#pragma once

#include "database/TextColumns.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QString>

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace kelvo {

class Catalogue;

/// Finds tracks as one types: any words, in any order, each anywhere in the name, accents and case folded.
/// Keeps the folded names in one piece of memory, so that a search over 100,000 tracks is one pass over
/// it. Owned by the Console; the LibraryBrowser tells it what happens to the catalogue; logic thread.
class TrackFilter {
 public:
  explicit TrackFilter(const Catalogue& catalogue) : catalogue_(catalogue) {}

  /// Folds the names of the tracks that came since; yields. May run several times at once.
  [[nodiscard]] Job<> Extend(EventLoop& loop);
  /// The catalogue was read anew.
  void Clear();
  /// The track has another name in the catalogue.
  void Rename(Mref track);
  /// The track is gone from the catalogue.
  void Remove(Mref track);

  /// The tracks, in catalogue order, that hold every word of `words`; all of them when there is none. Those
  /// whose names are not folded yet are not found. Takes one turn over 100,000 tracks, and yields over more.
  [[nodiscard]] Job<std::vector<Mref>> Find(EventLoop& loop, QString words) const;

 private:
  /// A word, and the place in it of the letter that is rarest in all names: that one is looked for.
  struct Word {
    std::string text;
    std::size_t rare;
  };
  /// What is looked for: all words; the one with the rarest letter leads.
  struct Search {
    std::vector<Word> words;
    bool common = false;  ///< each word is in so many names that every row is looked at
  };
  /// Puts a line, which ends with a line end, in the place of that of a row; an empty one takes the row out.
  void PutLine(std::size_t row, const std::string& line);
  void AppendLine(Mref track, std::string* to) const;
  /// Adds `by` to the counts of all bytes in a line.
  void Count(std::string_view line, int by);
  [[nodiscard]] const char* FindWord(const Word& word, const char* from, const char* end) const;
  [[nodiscard]] Search SearchFor(const QString& words) const;
  /// Adds what is found in the rows from `first` to before `last`.
  void FindIn(const Search& search, std::size_t first, std::size_t last, std::vector<Mref>* found) const;
  void FindCommon(const std::vector<Word>& words, std::size_t first, std::size_t last,
                  std::vector<Mref>* found) const;
  [[nodiscard]] const char* LineEnd(std::size_t row) const {
    return letters_.data() + (row + 1 < starts_.size() ? starts_[row + 1] : letters_.size());
  }

  const Catalogue& catalogue_;
  unsigned changes_ = 0;  ///< counts what happened to names that were folded
  std::string letters_;   ///< the folded names, one a line
  std::vector<std::uint32_t> starts_;
  std::vector<std::uint32_t> alphabets_;     ///< of each name: bit 0 for an "a" in it, to bit 25 for a "z"
  std::array<std::uint32_t, 256> counts_{};  ///< of each byte in the names
};

}  // namespace kelvo
