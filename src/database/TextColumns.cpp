#include "database/TextColumns.h"

namespace kelvo {
namespace {

std::size_t Index(Mref row) {
  return static_cast<std::size_t>(std::max(ToInt(row), 0));
}

}  // namespace

void PackedTextColumn::Append(std::string_view utf8) {
  spans_.push_back({static_cast<std::uint32_t>(letters_.size()), static_cast<std::uint32_t>(utf8.size())});
  letters_.append(utf8);
}

std::string_view PackedTextColumn::Utf8(Mref row) const {
  if (Index(row) >= spans_.size()) return {};
  const Span span = spans_[Index(row)];
  return std::string_view(letters_).substr(span.start, span.size);
}

QString PackedTextColumn::operator[](Mref row) const {
  const std::string_view text = Utf8(row);
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void PackedTextColumn::Set(Mref row, const QString& text) {
  if (Index(row) >= spans_.size()) return;
  const QByteArray utf8 = text.toUtf8();
  wasted_ += spans_[Index(row)].size;
  spans_[Index(row)] = {static_cast<std::uint32_t>(letters_.size()), static_cast<std::uint32_t>(utf8.size())};
  letters_.append(utf8.data(), static_cast<std::size_t>(utf8.size()));
  if (wasted_ > 65536 && wasted_ > letters_.size() / 2) Compact();
}

void PackedTextColumn::Remove(Mref row) {
  if (Index(row) >= spans_.size()) return;
  wasted_ += spans_[Index(row)].size;
  spans_.erase(spans_.begin() + ToInt(row));
  if (wasted_ > 65536 && wasted_ > letters_.size() / 2) Compact();
}

void PackedTextColumn::Compact() {
  std::string letters;
  letters.reserve(letters_.size() - wasted_);
  for (Span& span : spans_) {
    const std::size_t start = letters.size();
    letters.append(letters_, span.start, span.size);
    span.start = static_cast<std::uint32_t>(start);
  }
  letters_ = std::move(letters);
  wasted_ = 0;
}

std::size_t PackedTextColumn::Bytes() const {
  return letters_.capacity() + spans_.capacity() * sizeof(Span);
}

void PackedTextColumn::Clear() {
  letters_ = {};
  spans_ = {};
  wasted_ = 0;
}

void PackedTextColumn::Reserve(std::size_t rows, std::size_t letters) {
  spans_.reserve(rows);
  letters_.reserve(letters);
}

std::uint32_t PooledTextColumn::Intern(std::string_view utf8) {
  if (const auto found = known_.find(utf8); found != known_.end()) return found->second;
  const auto id = static_cast<std::uint32_t>(texts_.size());
  texts_.push_back(QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())));
  known_.emplace(std::string(utf8), id);
  return id;
}

void PooledTextColumn::Append(std::string_view utf8) {
  ids_.push_back(Intern(utf8));
}

const QString& PooledTextColumn::operator[](Mref row) const {
  static const QString none;
  return Index(row) < ids_.size() ? texts_[ids_[Index(row)]] : none;
}

std::uint32_t PooledTextColumn::Id(Mref row) const {
  return ids_[Index(row)];
}

void PooledTextColumn::Set(Mref row, const QString& text) {
  if (Index(row) >= ids_.size()) return;
  const QByteArray utf8 = text.toUtf8();
  ids_[Index(row)] = Intern({utf8.data(), static_cast<std::size_t>(utf8.size())});
}

void PooledTextColumn::Remove(Mref row) {
  if (Index(row) < ids_.size()) ids_.erase(ids_.begin() + ToInt(row));
}

std::size_t PooledTextColumn::Bytes() const {
  std::size_t bytes = ids_.capacity() * sizeof(std::uint32_t) + texts_.capacity() * sizeof(QString) +
                      known_.bucket_count() * sizeof(void*);
  for (const auto& [text, id] : known_) {
    // The node with its key, and the text's own block of two bytes a letter.
    bytes += sizeof(void*) * 2 + sizeof(std::string) + sizeof(id) + (text.size() > 15 ? text.size() + 1 : 0);
    bytes += static_cast<std::size_t>(texts_[id].capacity()) * 2 + 24;
  }
  return bytes;
}

void PooledTextColumn::Clear() {
  known_ = {};
  texts_ = {};
  ids_ = {};
}

void PooledTextColumn::Reserve(std::size_t rows) {
  ids_.reserve(rows);
}

}  // namespace kelvo
