// How the browser lists tracks: the pass over the catalogue, and what is added to it later.

#include "console/browser/LibraryBrowser.h"
#include "database/KeptTracks.h"
#include "platform/ErrorLog.h"

#include <QSet>

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

void LibraryBrowser::BeginListing(bool enabled) {
  if (listing_ == !enabled) return;
  listing_ = !enabled;
  Q_EMIT ListingChanged();
}

void LibraryBrowser::EndListingAtOnce() {
  walk_.Cancel();
  BeginListing(true);
}

void LibraryBrowser::StartListing(std::optional<Stage> fills) {
  BeginListing(false);
  listingStopRequested_ = false;
  ++choices_;
  listed_ = Listed{{}, catalogue_.LastTrack() + 1};
  for (const Stage stage : kStages) {
    const int selected = Selected(stage);
    if (selected >= 0) listed_->by[static_cast<std::size_t>(stage)] = Name(stage, selected).trimmed();
  }
  if (fills) At(*fills).filled = listed_;
  listedRefs_.clear();
  isListed_.assign(static_cast<std::size_t>(catalogue_.LastTrack()) + 1, false);
  summary_.clear();
  for (const Stage stage : kStages) summary_.append(Chosen(stage));
  RefreshRows();
  walk_ = RunListing(fills);
}

Job<> LibraryBrowser::RunListing(std::optional<Stage> fills) {
  try {
    co_await WalkCatalogue(fills);
  } catch (...) {
    basHandleError(QStringLiteral(" listing"), tr("The tracks could not be listed."));
  }
  BeginListing(true);
}

/// Brings the names of tracks into a list of names, each once. The index of the list must know their lines.
class LibraryBrowser::NamesOfTracks {
 public:
  explicit NamesOfTracks(NameList& list)
      : list_(list), lineSeen_(list.index.Lines()), nameSeen_(list.index.Names()) {
    if (list.names.isEmpty()) return;
    const QSet<QString> there(list.names.begin(), list.names.end());
    for (std::size_t name = 0; name < nameSeen_.size(); ++name)
      nameSeen_[name] = there.contains(list.index.Name(static_cast<std::uint32_t>(name)));
  }
  void Take(Mref track) {
    const std::uint32_t line = list_.column.Id(track);
    if (line >= lineSeen_.size() || lineSeen_[line]) return;
    lineSeen_[line] = true;
    for (const std::uint32_t name : list_.index.NamesOf(line)) {
      if (nameSeen_[name]) continue;
      nameSeen_[name] = true;
      list_.names.append(list_.index.Name(name));
      list_.filtered = true;
    }
  }

 private:
  NameList& list_;
  std::vector<bool> lineSeen_;
  std::vector<bool> nameSeen_;
};

std::vector<LibraryBrowser::Test> LibraryBrowser::TestsFor(const Listed& listed) const {
  std::vector<Test> tests;
  for (const Stage stage : kStages) {
    const QString& name = listed.by[static_cast<std::size_t>(stage)];
    if (!name.isEmpty()) tests.push_back({&At(stage).column, At(stage).index.LinesWith(name)});
  }
  return tests;
}

bool LibraryBrowser::Fits(const std::vector<Test>& tests, Mref track) {
  // A line that came after the pass began has no mark.
  return std::all_of(tests.begin(), tests.end(), [track](const Test& test) {
    const std::uint32_t line = test.column->Id(track);
    return line < test.lines.size() && test.lines[line];
  });
}

Job<> LibraryBrowser::WalkCatalogue(std::optional<Stage> fills) {
  for (const Stage stage : kStages) co_await At(stage).index.Extend(loop_);
  const std::vector<Test> tests = TestsFor(*listed_);
  std::optional<NamesOfTracks> names;
  if (fills) names.emplace(At(*fills));
  Nanoseconds turnStart = loop_.TurnClock();
  TrackWalk walk(catalogue_);
  while (walk.Next()) {
    if (listingStopRequested_) co_return;
    const Mref track = walk.Track();
    if (Fits(tests, track)) {
      if (names) names->Take(track);
      AddToTrackList(track);
    }
    if (!loop_.TurnIsOver(turnStart)) continue;
    Publish(fills);
    co_await loop_.Yield();
    turnStart = loop_.TurnClock();
  }
  listed_->newFrom = 1;
  if (fills) At(*fills).filled->newFrom = 1;
  Publish(fills);
  if (fills) RecomputeFiltered();
}

Job<bool> LibraryBrowser::TakeInTracks() {
  struct Target {
    const Listed* listed;
    std::vector<Test> tests;
    std::optional<NamesOfTracks> names;  ///< none: the track list
  };
  const unsigned choice = choices_;
  std::vector<Target> targets;
  if (listed_) targets.push_back({&*listed_, TestsFor(*listed_), std::nullopt});
  Turn turn(loop_);
  for (NameList& list : lists_) {
    if (!list.filled) continue;
    targets.push_back({&*list.filled, TestsFor(*list.filled), NamesOfTracks(list)});
    co_await turn.Yield();
    if (choice != choices_) co_return false;
  }
  co_await FindWords();
  if (choice != choices_) co_return false;
  Nanoseconds turnStart = loop_.TurnClock();
  TrackWalk walk(catalogue_);
  while (!targets.empty() && walk.Next()) {
    const Mref track = walk.Track();
    for (Target& target : targets) {
      if (ToInt(track) < target.listed->newFrom || !Fits(target.tests, track)) continue;
      if (target.names) {
        target.names->Take(track);
      } else {
        AddToTrackList(track);
      }
    }
    if (!loop_.TurnIsOver(turnStart)) continue;
    ShowMoreRows();
    co_await loop_.Yield();
    if (choice != choices_) co_return false;
    turnStart = loop_.TurnClock();
  }
  ShowMoreRows();
  co_return true;
}

void LibraryBrowser::ShowMoreRows() {
  for (const Stage stage : {Stage::Artist, Stage::Album}) Q_EMIT NamesAdded(stage);
  std::vector<Mref> shown = ShownRows();
  // A track that was renamed may have lost the words that are looked for.
  std::vector<bool> stays(static_cast<std::size_t>(catalogue_.LastTrack()) + 1);
  for (const Mref track : shown) stays[static_cast<std::size_t>(track)] = true;
  for (int row = static_cast<int>(rows_.size()) - 1; row >= 0; --row) {
    if (stays[static_cast<std::size_t>(rows_[static_cast<std::size_t>(row)])]) continue;
    rows_.erase(rows_.begin() + row);
    Q_EMIT RowRemoved(row);
  }
  std::vector<bool> isShown(static_cast<std::size_t>(catalogue_.LastTrack()) + 1);
  for (const Mref track : rows_) isShown[static_cast<std::size_t>(track)] = true;
  const std::size_t before = rows_.size();
  std::copy_if(shown.begin(), shown.end(), std::back_inserter(rows_),
               [&](Mref track) { return !isShown[static_cast<std::size_t>(track)]; });
  if (rows_.size() == before) return;
  Q_EMIT RowsAdded();
  // Each at its place, only now: a list that grows in its middle would lose what is selected.
  if (rows_ == shown) return;
  rows_ = std::move(shown);
  Q_EMIT RowsSorted();
}

void LibraryBrowser::AddToTrackList(Mref track) {
  const auto row = static_cast<std::size_t>(track);
  if (row >= isListed_.size()) isListed_.resize(row + 1);
  if (isListed_[row]) return;
  isListed_[row] = true;
  listedRefs_.push_back(track);
}

void LibraryBrowser::Publish(std::optional<Stage> fills) {
  if (fills) Q_EMIT NamesAdded(*fills);
  if (narrowed_ || order_.IsSorted()) {
    RefreshRows();
    return;
  }
  rows_.insert(rows_.end(), listedRefs_.begin() + static_cast<std::ptrdiff_t>(rows_.size()),
               listedRefs_.end());
  Q_EMIT RowsAdded();
}

}  // namespace kelvo
