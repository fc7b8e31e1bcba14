#include "console/browser/TrackOrder.h"

#include "console/browser/NameIndex.h"
#include "database/Catalogue.h"
#include "platform/Words.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

namespace kelvo {
namespace {

struct SortKey {
  double number;
  std::u16string_view text;
  Mref track;
};

/// What tracks are compared by. The texts lie in blocks that stay where they are: to free a million texts, or
/// to copy all of them to a longer piece of memory, would hold up the loop.
struct SortKeys {
  std::vector<SortKey> keys;
  std::vector<std::u16string> blocks;

  void Add(double number, const QString& text, Mref track) {
    constexpr std::size_t kBlock = 1U << 16U;
    const auto size = static_cast<std::size_t>(text.size());
    if (blocks.empty() || blocks.back().capacity() - blocks.back().size() < size)
      blocks.emplace_back().reserve(std::max(kBlock, size));
    std::u16string& block = blocks.back();
    const std::size_t start = block.size();
    block.append(reinterpret_cast<const char16_t*>(text.utf16()), size);
    keys.push_back({number, std::u16string_view(block).substr(start), track});
  }
};

bool Less(const SortKey& one, const SortKey& other) {
  return one.number != other.number ? one.number < other.number : one.text < other.text;
}

void AddKey(SortKeys& keys, const Catalogue& catalogue, Mref track, LibraryColumn column) {
  switch (column) {
    case LibraryColumn::Track:
      keys.Add(0, UpperName(catalogue.TrackNames[track]), track);
      break;
    case LibraryColumn::Hi:
    case LibraryColumn::Bpm:
      keys.Add(Val(LibraryText(catalogue, track, column)), {}, track);
      break;
    case LibraryColumn::Mref:
      keys.Add(static_cast<double>(ToInt(track)), {}, track);
      break;
    case LibraryColumn::Time:
      keys.Add(static_cast<double>(Int(catalogue.TrackDurations(track))), {}, track);
      break;
    default:
      keys.Add(0, UpperName(LibraryText(catalogue, track, column)), track);
  }
}

}  // namespace

QString LibraryText(const Catalogue& catalogue, Mref track, LibraryColumn column) {
  switch (column) {
    case LibraryColumn::Track:
      return ProperCase(catalogue.TrackNames[track]);
    case LibraryColumn::Date:
      return catalogue.TrackDates[track];
    case LibraryColumn::Hi:
      return catalogue.TrackHi[track];
    case LibraryColumn::Bpm:
      return catalogue.TrackBpm[track];
    case LibraryColumn::Path:
      return catalogue.TrackPaths(track);
    case LibraryColumn::Mref:
      return QString::number(ToInt(track));
    case LibraryColumn::MainGenre:
      return catalogue.MainGenre(track);
    case LibraryColumn::Time:
      return LengthText(catalogue.TrackDurations(track));
  }
  return {};
}

Job<> TrackOrder::Sort(EventLoop& loop, LibraryColumn column) {
  Turn turn(loop);
  const std::vector<Mref> before = Tracks();
  const auto all = std::make_shared<SortKeys>();
  all->keys.reserve(before.size());
  for (const Mref track : before) {
    AddKey(*all, catalogue_, track, column);
    co_await turn.Yield();
  }
  const auto sort = [all, latestFirst = column == LibraryColumn::Date] {
    const auto less = [&](const SortKey& one, const SortKey& other) {
      return latestFirst ? Less(other, one) : Less(one, other);
    };
    std::stable_sort(all->keys.begin(), all->keys.end(), less);
    std::vector<Mref> order;
    order.reserve(all->keys.size());
    for (const SortKey& key : all->keys) order.push_back(key.track);
    // Freed here: for a million tracks that takes longer than the loop may be held.
    *all = {};
    return order;
  };
  order_ = co_await loop.Offload(EventLoop::Lane::Apart, sort);
}

const std::vector<Mref>& TrackOrder::Tracks() {
  for (int row = static_cast<int>(order_.size()) + 1; row <= catalogue_.LastTrack(); ++row)
    order_.push_back(ToMref(row));
  return order_;
}

}  // namespace kelvo
