#include "playlists/TimeFit.h"

#include "playlists/FitPool.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace kelvo {
namespace {

using Track = FitPool::Track;

// The weight of a broken rule: one of a kind outweighs all that can be broken of the kinds below. What is
// left behind the point is how far the tempo is off.
constexpr double kTempoBroken = 1;
constexpr double kArtistBroken = 1e4;
constexpr double kTitleBroken = 1e8;
constexpr double kMostOff = 999;

// What bounds the time that the search takes where the tracks leave little choice.
constexpr int kTriedBeyond = 20000;  ///< tracks outside of the tempo that are looked at for one place
constexpr int kTriedOfLength = 256;
constexpr int kTriedOfPair = 8;
constexpr int kPairTrials = 100'000;
constexpr int kPairChanges = 2000;
constexpr int kSwapTrials = 2000;
constexpr int kPasses = 4;
constexpr int kMostChanged = 1000;  ///< a sequence of more tracks stays as it was put together
/// A last track may miss the end by so many seconds where another track can then make up for it.
constexpr int kMadeUp = 30;

/// Puts the sequence together: first track by track, each the best for its time; then single tracks and pairs
/// are changed for others until the length is right; where that fails the lengths are chosen first, of all
/// that there are, and the tracks after them; in the end tracks with broken rules are changed again.
class Fitter {
 public:
  Fitter(const FitQuestion& question, FitControl& control)
      : question_(question),
        control_(control),
        pool_(question),
        used_(question.tracks.size(), false),
        titleUses_(pool_.Titles(), 0) {}

  std::optional<std::vector<FitPick>> Run() {
    Fill();
    if (Miss() != 0) MakeUp();
    if (Miss() != 0) FillByLengths();
    Improve();
    if (control_.stop) return std::nullopt;
    return Picks();
  }

 private:
  [[nodiscard]] int Miss() const { return question_.seconds - total_; }
  [[nodiscard]] int Count() const { return static_cast<int>(sequence_.size()); }
  [[nodiscard]] Track At(int place) const { return sequence_[static_cast<std::size_t>(place)]; }
  [[nodiscard]] int Start(int place) const {
    return place == Count() ? total_ : starts_[static_cast<std::size_t>(place)];
  }

  void Put(int place, Track track) {
    if (place == Count()) {
      sequence_.push_back(track);
      starts_.push_back(total_);
      total_ += pool_.Seconds(track);
    } else {
      const Track before = std::exchange(sequence_[static_cast<std::size_t>(place)], track);
      used_[before] = false;
      --titleUses_[pool_.Title(before)];
      Reckon();
    }
    used_[track] = true;
    ++titleUses_[pool_.Title(track)];
  }
  void Clear() {
    for (const Track track : sequence_) used_[track] = false;
    std::fill(titleUses_.begin(), titleUses_.end(), 0);
    sequence_.clear();
    starts_.clear();
    total_ = 0;
  }
  void Reckon() {
    total_ = 0;
    for (int place = 0; place < Count(); ++place) {
      starts_[static_cast<std::size_t>(place)] = total_;
      total_ += pool_.Seconds(At(place));
    }
  }

  [[nodiscard]] double Wanted(int start, Track track) const {
    return question_.outline.At((start + pool_.Seconds(track) / 2.0) / question_.seconds);
  }
  [[nodiscard]] bool TempoBroken(double wanted, Track track) const {
    if (!question_.followTempo) return false;
    const double bpm = pool_.Bpm(track);
    return std::abs(bpm - wanted) > question_.tempoWithin || !question_.outline.Allows(bpm);
  }
  /// Whether the artists of two tracks, the later one at `gap` seconds behind the other's end, are too close.
  [[nodiscard]] bool TooClose(int gap, Track one, Track other) const {
    return gap < question_.artistApart && pool_.ShareArtist(one, other);
  }

  /// What it would cost to have this track at the place, in the sequence as it is.
  [[nodiscard]] double Cost(int place, Track track) const {
    const int start = Start(place);
    double cost = 0;
    if (question_.followTempo) {
      const double wanted = Wanted(start, track);
      cost = std::min(std::abs(pool_.Bpm(track) - wanted), kMostOff) / 1000;
      if (TempoBroken(wanted, track)) cost += kTempoBroken;
    }
    const bool replaces = place < Count();
    const int own = replaces && pool_.Title(At(place)) == pool_.Title(track) ? 1 : 0;
    if (titleUses_[pool_.Title(track)] > own) cost += kTitleBroken;
    for (int other = place - 1; other >= 0; --other) {
      const int gap = start - Start(other) - pool_.Seconds(At(other));
      if (gap >= question_.artistApart) break;
      if (TooClose(gap, At(other), track)) cost += kArtistBroken;
    }
    for (int other = place + 1; replaces && other < Count(); ++other) {
      const int gap = Start(other) - Start(place + 1);
      if (gap >= question_.artistApart) break;
      if (TooClose(gap, track, At(other))) cost += kArtistBroken;
    }
    return cost;
  }
  [[nodiscard]] static bool Clean(double cost) { return cost < kTempoBroken; }
  /// The cost of the whole sequence.
  [[nodiscard]] double Weigh() const {
    double cost = 0;
    for (int place = 0; place < Count(); ++place) cost += Cost(place, At(place));
    return cost;
  }

  struct Choice {
    Track track;
    double cost;
  };

  /// The best track to come next, of those that end in time; nearest to the outline first.
  [[nodiscard]] std::optional<Choice> Next() const {
    const std::vector<Track>& tracks = pool_.ByTempo();
    const int start = total_;
    const double wanted =
        question_.followTempo
            ? question_.outline.At((start + pool_.MedianSeconds() / 2.0) / question_.seconds)
            : 0;
    auto above = tracks.begin();
    if (question_.followTempo) {
      above = std::lower_bound(tracks.begin(), tracks.end(), wanted,
                               [this](Track track, double bpm) { return pool_.Bpm(track) < bpm; });
    }
    auto below = above;
    std::optional<Choice> best;
    int tried = 0;
    while (below != tracks.begin() || above != tracks.end()) {
      const bool up = below == tracks.begin() ||
                      (above != tracks.end() && pool_.Bpm(*above) - wanted < wanted - pool_.Bpm(below[-1]));
      const Track track = up ? *above++ : *--below;
      if (used_[track] || pool_.Seconds(track) > Miss()) continue;
      const double cost = Cost(Count(), track);
      if (!best || cost < best->cost) best = Choice{track, cost};
      // Those behind it are no nearer to the outline.
      if (Clean(best->cost) || ++tried > kTriedBeyond) break;
    }
    return best;
  }

  [[nodiscard]] std::optional<Choice> CheapestOf(int seconds, int place, int most = kTriedOfLength) const {
    std::optional<Choice> best;
    for (const Track track : pool_.OfLength(seconds)) {
      if (used_[track]) continue;
      const double cost = Cost(place, track);
      if (!best || cost < best->cost) best = Choice{track, cost};
      if (--most <= 0) break;
    }
    return best;
  }

  /// The track that brings the end nearest to where it is wanted; none when it is best without another.
  [[nodiscard]] std::optional<Choice> Last() const {
    std::optional<Choice> nearest;
    for (int off = 0; off < Miss(); ++off) {
      for (const int seconds : {Miss() - off, Miss() + off}) {
        const std::optional<Choice> found = CheapestOf(seconds, Count());
        if (!found) continue;
        if (Clean(found->cost)) return found;
        if (!nearest) nearest = found;
      }
      if (nearest && off >= kMadeUp) break;
    }
    return nearest;
  }

  void Fill() {
    while (Miss() > 0 && !control_.stop) {
      control_.permille = static_cast<int>(800.0 * total_ / question_.seconds);
      std::optional<Choice> next;
      if (2 * Miss() > 3 * pool_.MedianSeconds()) next = Next();
      const bool last = !next;
      if (last) next = Last();
      if (!next) return;
      Put(Count(), next->track);
      if (last) return;
    }
  }

  void MakeUp() {
    if (Count() > kMostChanged) return;
    for (const bool clean : {true, false}) {
      if (ReplaceOne(clean)) return;
      for (int place = 0; place < Count() && !control_.stop; ++place) {
        if (ReplacePair(place, place + 1, clean)) return;
      }
    }
  }

  /// Changes one track for another so that the length is right.
  bool ReplaceOne(bool clean) {
    std::optional<Choice> best;
    int where = 0;
    for (int place = 0; place < Count(); ++place) {
      const std::optional<Choice> found = CheapestOf(pool_.Seconds(At(place)) + Miss(), place);
      if (!found || (clean && !Clean(found->cost))) continue;
      const double cost = found->cost - Cost(place, At(place));
      if (best && best->cost <= cost) continue;
      best = Choice{found->track, cost};
      where = place;
    }
    if (best) Put(where, best->track);
    return best.has_value();
  }

  /// The same for two tracks, of which the first is at `place` and the other at `from` or behind.
  bool ReplacePair(int place, int from, bool clean) {
    for (int other = from; other < Count(); ++other) {
      if (other == place) continue;
      const int both = pool_.Seconds(At(place)) + pool_.Seconds(At(other)) + Miss();
      for (const int seconds : pool_.Lengths()) {
        if (seconds >= both || control_.stop) break;
        if (--pairTrials_ < 0) return false;
        if (pool_.OfLength(both - seconds).empty()) continue;
        const std::optional<Choice> first = CheapestOf(seconds, place, kTriedOfPair);
        if (!first || (clean && !Clean(first->cost))) continue;
        if (--pairChanges_ < 0) return false;
        const std::vector<Track> before = sequence_;
        const double cost = Weigh();
        Put(place, first->track);
        const std::optional<Choice> second = CheapestOf(both - seconds, other, kTriedOfPair);
        if (second) Put(other, second->track);
        if (second && (clean ? std::floor(Weigh()) <= std::floor(cost) : Miss() == 0)) return true;
        Restore(before);
      }
    }
    return false;
  }
  void Restore(const std::vector<Track>& sequence) {
    Clear();
    for (const Track track : sequence) Put(Count(), track);
  }

  /// How many tracks of which length are as near to the wanted length as any choice is.
  [[nodiscard]] std::map<int, int> BestLengths() const {
    const std::vector<int>& lengths = pool_.Lengths();
    if (lengths.empty()) return {};
    const int wanted = question_.seconds;
    const auto most = static_cast<std::size_t>(std::min(wanted * 2, wanted + lengths.back()));
    std::vector<int> last(most + 1, 0);  // by sum: the length that it was reached with; 0: it was not
    std::vector<std::uint32_t> uses(most + 1, 0);
    for (const int length : lengths) {
      const auto step = static_cast<std::size_t>(length);
      const std::size_t there = pool_.OfLength(length).size();
      std::fill(uses.begin(), uses.end(), 0);
      for (std::size_t sum = step; sum <= most; ++sum) {
        const std::size_t before = sum - step;
        if (last[sum] != 0 || (before != 0 && last[before] == 0) || uses[before] >= there) continue;
        last[sum] = length;
        uses[sum] = uses[before] + 1;
      }
      if (last[static_cast<std::size_t>(wanted)] != 0 || control_.stop) break;
    }
    std::map<int, int> counts;
    for (int off = 0; off < wanted; ++off) {
      for (const int sum : {wanted - off, wanted + off}) {
        if (static_cast<std::size_t>(sum) > most || last[static_cast<std::size_t>(sum)] == 0) continue;
        for (int rest = sum; rest > 0; rest -= last[static_cast<std::size_t>(rest)])
          ++counts[last[static_cast<std::size_t>(rest)]];
        return counts;
      }
    }
    return counts;
  }

  void FillByLengths() {
    std::map<int, int> counts = BestLengths();
    int sum = 0;
    for (const auto& [seconds, count] : counts) sum += seconds * count;
    if (control_.stop || std::abs(question_.seconds - sum) >= std::abs(Miss())) return;
    Clear();
    while (!counts.empty() && !control_.stop) {
      std::optional<Choice> best;
      for (const auto& [seconds, count] : counts) {
        const std::optional<Choice> found = CheapestOf(seconds, Count(), kTriedOfPair);
        if (found && (!best || found->cost < best->cost)) best = found;
      }
      Put(Count(), best->track);
      const auto taken = counts.find(pool_.Seconds(best->track));
      if (--taken->second == 0) counts.erase(taken);
    }
  }

  /// Changes tracks with broken rules for better ones; the length stays.
  void Improve() {
    if (Count() > kMostChanged) return;
    for (int pass = 0; pass < kPasses; ++pass) {
      bool better = false;
      for (int place = 0; place < Count() && !control_.stop; ++place) {
        control_.permille = 850 + 150 * (pass * Count() + place) / (kPasses * Count());
        const double cost = Cost(place, At(place));
        if (Clean(cost)) continue;
        const std::optional<Choice> found = CheapestOf(pool_.Seconds(At(place)), place);
        if (found && std::floor(found->cost) < std::floor(cost)) {
          Put(place, found->track);
          better = true;
        } else {
          better = Swap(place) || better;
        }
      }
      if (!better) return;
    }
  }

  /// Changes places with the track for which that is best.
  bool Swap(int place) {
    const auto swap = [this, place](int other) {
      std::swap(sequence_[static_cast<std::size_t>(place)], sequence_[static_cast<std::size_t>(other)]);
      Reckon();
    };
    double least = std::floor(Weigh());
    int where = -1;
    for (int other = 0; other < Count() && --swapTrials_ >= 0; ++other) {
      if (other == place) continue;
      swap(other);
      const double cost = std::floor(Weigh());
      swap(other);
      if (cost >= least) continue;
      least = cost;
      where = other;
    }
    if (where >= 0) swap(where);
    return where >= 0;
  }

  [[nodiscard]] std::vector<FitPick> Picks() const {
    std::vector<FitPick> picks;
    std::vector<bool> titles(pool_.Titles(), false);
    for (int place = 0; place < Count(); ++place) {
      const Track track = At(place);
      FitPick pick{.track = track, .start = Start(place), .wantedBpm = Wanted(Start(place), track)};
      pick.tempo = TempoBroken(pick.wantedBpm, track);
      pick.title = titles[pool_.Title(track)];
      titles[pool_.Title(track)] = true;
      for (int other = place - 1; other >= 0 && !pick.artist; --other) {
        const int gap = pick.start - Start(other) - pool_.Seconds(At(other));
        if (gap >= question_.artistApart) break;
        pick.artist = TooClose(gap, At(other), track);
      }
      picks.push_back(pick);
    }
    return picks;
  }

  const FitQuestion& question_;
  FitControl& control_;
  FitPool pool_;
  std::vector<bool> used_;
  std::vector<int> titleUses_;
  std::vector<Track> sequence_;
  std::vector<int> starts_;
  int total_ = 0;
  int pairTrials_ = kPairTrials;
  int pairChanges_ = kPairChanges;
  int swapTrials_ = kSwapTrials;
};

}  // namespace

std::optional<std::vector<FitPick>> FitToTime(const FitQuestion& question, FitControl& control) {
  return Fitter(question, control).Run();
}

}  // namespace kelvo
