#include "console/TrackOrder.h"

#include "console/NameIndex.h"
#include "database/Catalogue.h"
#include "platform/Words.h"

#include <algorithm>
#include <memory>

namespace kelvo {
namespace {

struct SortKey {
  double number = 0;
  QString text;
  Mref track = Mref::None;

  bool operator<(const SortKey& other) const {
    return number != other.number ? number < other.number : text < other.text;
  }
};

SortKey KeyOf(const Catalogue& catalogue, Mref track, LibraryColumn column) {
  switch (column) {
    case LibraryColumn::Track:
      return {0, UpperName(catalogue.TrackNames[track]), track};
    case LibraryColumn::Hi:
    case LibraryColumn::Bpm:
      return {Val(LibraryText(catalogue, track, column)), {}, track};
    case LibraryColumn::Mref:
      return {static_cast<double>(ToInt(track)), {}, track};
    case LibraryColumn::Time:
      return {static_cast<double>(Int(catalogue.TrackDurations(track))), {}, track};
    default:
      return {0, UpperName(LibraryText(catalogue, track, column)), track};
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
      return MinutesSeconds(catalogue.TrackDurations(track));
  }
  return {};
}

Job<> TrackOrder::Sort(EventLoop& loop, LibraryColumn column) {
  const std::vector<Mref> before = Tracks();
  const auto keys = std::make_shared<std::vector<SortKey>>();
  keys->reserve(before.size());
  Turn turn(loop);
  for (const Mref track : before) {
    keys->push_back(KeyOf(catalogue_, track, column));
    co_await turn.Yield();
  }
  const auto sort = [keys, latestFirst = column == LibraryColumn::Date] {
    std::stable_sort(keys->begin(), keys->end(), [latestFirst](const SortKey& one, const SortKey& other) {
      return latestFirst ? other < one : one < other;
    });
    std::vector<Mref> order;
    order.reserve(keys->size());
    for (const SortKey& key : *keys) order.push_back(key.track);
    *keys = {};
    return order;
  };
  order_ = co_await loop.Offload(EventLoop::Lane::Media, sort);
}

const std::vector<Mref>& TrackOrder::Tracks() {
  for (int row = static_cast<int>(order_.size()) + 1; row <= catalogue_.LastTrack(); ++row)
    order_.push_back(ToMref(row));
  return order_;
}

}  // namespace kelvo
