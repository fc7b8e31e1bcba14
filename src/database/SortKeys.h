#pragma once

#include <QString>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvo {

/// What one row of a list is sorted by: the number first, then the text, letter by letter.
struct SortKey {
  double number;
  std::u16string_view text;
  std::int32_t item;  ///< whose key it is

  [[nodiscard]] friend bool operator<(const SortKey& one, const SortKey& other) {
    return one.number != other.number ? one.number < other.number : one.text < other.text;
  }
};

/// What the rows of a list are sorted by. The texts lie in blocks that stay where they are: to free a million
/// texts, or to copy all of them to a longer piece of memory, would hold up the loop. Made on the logic's
/// thread, sorted and freed on another.
struct SortKeys {
  std::vector<SortKey> keys;
  std::vector<std::u16string> blocks;

  void Add(double number, const QString& text, std::int32_t item) {
    constexpr std::size_t kBlock = 1U << 16U;
    const auto size = static_cast<std::size_t>(text.size());
    if (blocks.empty() || blocks.back().capacity() - blocks.back().size() < size)
      blocks.emplace_back().reserve(std::max(kBlock, size));
    std::u16string& block = blocks.back();
    const std::size_t start = block.size();
    block.append(reinterpret_cast<const char16_t*>(text.utf16()), size);
    keys.push_back({number, std::u16string_view(block).substr(start), item});
  }
};

}  // namespace kelvo
