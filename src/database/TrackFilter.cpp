#include "database/TrackFilter.h"

#include "database/Catalogue.h"
#include "platform/Words.h"

#include <algorithm>
#include <cstring>

namespace kelvo {
namespace {

std::uint32_t LetterBit(char letter) {
  return letter >= 'a' && letter <= 'z' ? 1U << (letter - 'a') : 0U;
}

std::uint32_t AlphabetOf(std::string_view text) {
  std::uint32_t alphabet = 0;
  for (const char letter : text) alphabet |= LetterBit(letter);
  return alphabet;
}

}  // namespace

void TrackFilter::Clear() {
  ++changes_;
  letters_.clear();
  starts_.clear();
  alphabets_.clear();
  counts_ = {};
}

void TrackFilter::AppendLine(Mref track, std::string* to) const {
  const std::string_view name = catalogue_.TrackNames.Utf8(track);
  const bool ascii =
      std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 128; });
  if (ascii) {
    std::transform(name.begin(), name.end(), std::back_inserter(*to),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  } else {
    *to += FoldedText(catalogue_.TrackNames[track]).toStdString();
  }
  to->push_back('\n');
}

void TrackFilter::Count(std::string_view line, int by) {
  for (const char letter : line)
    counts_[static_cast<unsigned char>(letter)] += static_cast<std::uint32_t>(by);
}

Job<> TrackFilter::Extend(EventLoop& loop) {
  if (starts_.empty()) {
    const auto tracks = static_cast<std::size_t>(catalogue_.LastTrack());
    letters_.reserve(catalogue_.TrackNames.Bytes() + tracks);
    starts_.reserve(tracks);
    alphabets_.reserve(tracks);
  }
  Turn turn(loop);
  while (starts_.size() < static_cast<std::size_t>(catalogue_.LastTrack())) {
    const std::size_t start = letters_.size();
    AppendLine(ToMref(static_cast<qint64>(starts_.size()) + 1), &letters_);
    const auto line = std::string_view(letters_).substr(start);
    starts_.push_back(static_cast<std::uint32_t>(start));
    alphabets_.push_back(AlphabetOf(line));
    Count(line, 1);
    co_await turn.Yield();
  }
}

void TrackFilter::Rename(Mref track) {
  const std::size_t row = static_cast<std::size_t>(track) - 1;
  if (row >= starts_.size()) return;
  std::string line;
  AppendLine(track, &line);
  PutLine(row, line);
}

void TrackFilter::Remove(Mref track) {
  const std::size_t row = static_cast<std::size_t>(track) - 1;
  if (row < starts_.size()) PutLine(row, {});
}

void TrackFilter::PutLine(std::size_t row, const std::string& line) {
  ++changes_;
  const std::size_t start = starts_[row];
  const std::string_view before(letters_.data() + start, LineEnd(row));
  Count(before, -1);
  Count(line, 1);
  const auto longer = static_cast<std::uint32_t>(line.size() - before.size());
  letters_.replace(start, before.size(), line);
  const auto place = static_cast<std::ptrdiff_t>(row);
  if (line.empty()) {
    starts_.erase(starts_.begin() + place);
    alphabets_.erase(alphabets_.begin() + place);
  } else {
    alphabets_[row] = AlphabetOf(line);
  }
  // The difference of two lengths is unsigned: a shorter line is a step back.
  for (std::size_t each = row + (line.empty() ? 0 : 1); each < starts_.size(); ++each)
    starts_[each] += longer;
}

const char* TrackFilter::FindWord(const Word& word, const char* from, const char* end) const {
  const std::size_t size = word.text.size();
  while (static_cast<std::size_t>(end - from) >= size) {
    const std::size_t starts = static_cast<std::size_t>(end - from) - size + 1;
    const void* const hit = std::memchr(from + word.rare, word.text[word.rare], starts);
    if (hit == nullptr) return nullptr;
    from = static_cast<const char*>(hit) - word.rare;
    if (std::memcmp(from, word.text.data(), size) == 0) return from;
    ++from;
  }
  return nullptr;
}

void TrackFilter::FindCommon(const std::vector<Word>& words, std::size_t first, std::size_t last,
                             std::vector<Mref>* found) const {
  std::uint32_t alphabet = 0;
  std::vector<const Word*> longer;
  for (const Word& word : words) {
    alphabet |= AlphabetOf(word.text);
    // One letter is in a name when it is in its alphabet.
    if (word.text.size() > 1 || LetterBit(word.text[0]) == 0) longer.push_back(&word);
  }
  for (std::size_t row = first; row < last; ++row) {
    if ((alphabets_[row] & alphabet) != alphabet) continue;
    const char* const start = letters_.data() + starts_[row];
    const char* const end = LineEnd(row);
    const bool all = std::all_of(longer.begin(), longer.end(),
                                 [&](const Word* word) { return FindWord(*word, start, end) != nullptr; });
    if (all) found->push_back(ToMref(static_cast<qint64>(row) + 1));
  }
}

TrackFilter::Search TrackFilter::SearchFor(const QString& words) const {
  const auto count = [this](const Word& word) {
    return counts_[static_cast<unsigned char>(word.text[word.rare])];
  };
  Search search;
  for (const QString& text : FoldedText(words).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    Word word{text.toStdString(), 0};
    for (std::size_t place = 1; place < word.text.size(); ++place) {
      if (count({word.text, place}) < count(word)) word.rare = place;
    }
    search.words.push_back(std::move(word));
  }
  std::sort(search.words.begin(), search.words.end(),
            [count](const Word& one, const Word& other) { return count(one) < count(other); });
  search.common = search.words.empty() || count(search.words[0]) > starts_.size() / 4;
  return search;
}

void TrackFilter::FindIn(const Search& search, std::size_t first, std::size_t last,
                         std::vector<Mref>* found) const {
  if (search.common) {
    FindCommon(search.words, first, last, found);
    return;
  }
  const char* const begin = letters_.data();
  const char* const end = LineEnd(last - 1);
  const char* at = begin + starts_[first];
  std::size_t row = first;
  while ((at = FindWord(search.words[0], at, end)) != nullptr) {
    const auto offset = static_cast<std::size_t>(at - begin);
    while (row + 1 < last && starts_[row + 1] <= offset) ++row;
    const char* const lineStart = begin + starts_[row];
    const char* const lineEnd = LineEnd(row);
    // The other words are looked for in the lines of the first only.
    const bool all = std::all_of(search.words.begin() + 1, search.words.end(), [&](const Word& word) {
      return FindWord(word, lineStart, lineEnd) != nullptr;
    });
    if (all) found->push_back(ToMref(static_cast<qint64>(row) + 1));
    at = lineEnd;
  }
}

Job<std::vector<Mref>> TrackFilter::Find(EventLoop& loop, QString words) const {
  constexpr std::size_t kRowsAtOnce = 128;
  std::vector<Mref> found;
  Turn turn(loop);
  Search search = SearchFor(words);
  unsigned changes = changes_;
  for (std::size_t row = 0; row < starts_.size();) {
    const std::size_t last = std::min(row + kRowsAtOnce, starts_.size());
    FindIn(search, row, last, &found);
    row = last;
    co_await turn.Yield();
    if (changes == changes_) continue;
    // A name changed or a row went: begin anew.
    changes = changes_;
    search = SearchFor(words);
    found.clear();
    row = 0;
  }
  co_return found;
}

}  // namespace kelvo
