#pragma once

#include <QString>

namespace kelvo {

/// How many genres have a number: 0 to kGenreCount - 1.
inline constexpr int kGenreCount = 132;

/// The genre of an ID3 genre number, in the database's own words; "Unknown" for any other number.
[[nodiscard]] QString GenreName(int number);

/// The number of a genre that a tag tells in words, "(17)" or "17": the same name in any case, blanks and
/// hyphens aside; -1 when it is none of the list.
[[nodiscard]] int GenreNumber(const QString& text);

}  // namespace kelvo
