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
  std::size_t start;  ///< of its text in the letters of all
  std::size_t size;
  Mref track;
};

/// What tracks are compared by. The texts lie in one piece: to free 100,000 of them would hold up the loop.
struct SortKeys {
  std::vector<SortKey> keys;
  std::u16string letters;

  void Add(double number, const QString& text, Mref track) {
    keys.push_back({number, letters.size(), static_cast<std::size_t>(text.size()), track});
    letters.append(reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size()));
  }
  [[nodiscard]] bool Less(const SortKey& one, const SortKey& other) const {
    if (one.number != other.number) return one.number < other.number;
    const std::u16string_view all(letters);
    return all.substr(one.start, one.size) < all.substr(other.start, other.size);
  }
};

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
  constexpr std::size_t kLettersOfAName = 40;
  Turn turn(loop);
  const std::vector<Mref> before = Tracks();
  const auto all = std::make_shared<SortKeys>();
  all->keys.reserve(before.size());
  all->letters.reserve(before.size() * kLettersOfAName);
  for (const Mref track : before) {
    AddKey(*all, catalogue_, track, column);
    co_await turn.Yield();
  }
  const auto sort = [all, latestFirst = column == LibraryColumn::Date] {
    const auto less = [&](const SortKey& one, const SortKey& other) {
      return latestFirst ? all->Less(other, one) : all->Less(one, other);
    };
    std::stable_sort(all->keys.begin(), all->keys.end(), less);
    std::vector<Mref> order;
    order.reserve(all->keys.size());
    for (const SortKey& key : all->keys) order.push_back(key.track);
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
