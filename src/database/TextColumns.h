#pragma once

#include <QString>

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kelvo {

/// The number of a track: its row in the catalogue's tables. Row 0 is no track.
enum class Mref : std::int32_t { None = 0 };
[[nodiscard]] constexpr int ToInt(Mref mref) {
  return static_cast<int>(mref);
}
[[nodiscard]] constexpr Mref ToMref(qint64 row) {
  return static_cast<Mref>(row);
}

/// A column of texts that differ from row to row: packed one behind the other, so that 100,000 names take
/// little more than their letters. Reading a row beyond the end gives an empty text. Logic thread.
class PackedTextColumn {
 public:
  void Append(std::string_view utf8);
  [[nodiscard]] QString operator[](Mref row) const;
  [[nodiscard]] std::string_view Utf8(Mref row) const;
  void Set(Mref row, const QString& text);
  /// Takes a row out: those behind it move up by one.
  void Remove(Mref row);
  [[nodiscard]] std::size_t Rows() const { return spans_.size(); }
  [[nodiscard]] std::size_t Bytes() const;
  void Clear();
  void Reserve(std::size_t rows, std::size_t letters = 0);

 private:
  struct Span {
    std::uint32_t start;
    std::uint32_t size;
  };
  void Compact();
  std::string letters_;
  std::vector<Span> spans_;
  std::size_t wasted_ = 0;
};

/// A column of texts of which many rows share the same: each kept once. Logic thread.
class PooledTextColumn {
 public:
  void Append(std::string_view utf8);
  [[nodiscard]] const QString& operator[](Mref row) const;
  void Set(Mref row, const QString& text);
  /// Takes a row out: those behind it move up by one. Its text stays known under its number.
  void Remove(Mref row);
  [[nodiscard]] std::size_t Rows() const { return ids_.size(); }
  [[nodiscard]] std::size_t Bytes() const;
  void Clear();
  void Reserve(std::size_t rows);
  /// Two rows with the same number hold the same text: filters test each text once.
  [[nodiscard]] std::uint32_t Id(Mref row) const;
  [[nodiscard]] std::size_t Distinct() const { return texts_.size(); }
  [[nodiscard]] const QString& Text(std::uint32_t id) const { return texts_[id]; }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
  };
  std::uint32_t Intern(std::string_view utf8);
  std::unordered_map<std::string, std::uint32_t, Hash, std::equal_to<>> known_;
  std::vector<QString> texts_;
  std::vector<std::uint32_t> ids_;
};

}  // namespace kelvo
