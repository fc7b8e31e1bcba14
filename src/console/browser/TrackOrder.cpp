#include "console/browser/TrackOrder.h"

#include "console/browser/NameIndex.h"
#include "database/Catalogue.h"
#include "database/SortKeys.h"
#include "platform/Words.h"

#include <algorithm>
#include <memory>

namespace kelvo {
namespace {

void AddKey(SortKeys& keys, const Catalogue& catalogue, Mref track, LibraryColumn column) {
  switch (column) {
    case LibraryColumn::Track:
      keys.Add(0, UpperName(catalogue.TrackNames[track]), ToInt(track));
      break;
    case LibraryColumn::Hi:
    case LibraryColumn::Bpm:
      keys.Add(Val(LibraryText(catalogue, track, column)), {}, ToInt(track));
      break;
    case LibraryColumn::Mref:
      keys.Add(static_cast<double>(ToInt(track)), {}, ToInt(track));
      break;
    case LibraryColumn::Time:
      keys.Add(static_cast<double>(Int(catalogue.TrackDurations(track))), {}, ToInt(track));
      break;
    default:
      keys.Add(0, UpperName(LibraryText(catalogue, track, column)), ToInt(track));
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
      return latestFirst ? other < one : one < other;
    };
    std::stable_sort(all->keys.begin(), all->keys.end(), less);
    std::vector<Mref> order;
    order.reserve(all->keys.size());
    for (const SortKey& key : all->keys) order.push_back(ToMref(key.item));
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
