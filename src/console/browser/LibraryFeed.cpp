// How the browser follows what happens to the catalogue.

#include "console/browser/LibraryBrowser.h"
#include "platform/ErrorLog.h"

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr TrackFields kReferenceLines =
    TrackFields(TrackField::Genres) | TrackField::Artists | TrackField::Albums;

/// What a column of the track list shows.
TrackFields FieldOf(LibraryColumn column) {
  switch (column) {
    case LibraryColumn::Date:
      return TrackField::Date;
    case LibraryColumn::Hi:
      return TrackField::Hi;
    case LibraryColumn::Bpm:
      return TrackField::Bpm;
    case LibraryColumn::MainGenre:
      return TrackField::Genres;
    case LibraryColumn::Time:
      return TrackField::Duration;
    default:
      return {};
  }
}

}  // namespace

void LibraryBrowser::FollowCatalogue() {
  catalogue_.Listen(
      this, [this](const CatalogueReplaced&) { BeginAnew(); }, [this](const TrackAdded&) { TakeInSoon(); },
      [this](const TrackChanged& change) {
        ShowTrack(change.track);
        const TrackFields sorted = sortColumn_ ? FieldOf(*sortColumn_) : TrackFields();
        if (change.fields & (kReferenceLines | sorted)) TakeInSoon();
      },
      [this](const TrackRenamed& renamed) {
        filter_.Rename(renamed.track);
        ShowTrack(renamed.track);
        TakeInSoon();
      },
      [this](const TrackRemoved& removed) { TrackWasRemoved(removed); },
      [this](const ReferenceChanged& change) { ReferenceWasChanged(change); });
}

void LibraryBrowser::BeginAnew() {
  takeIn_.Cancel();
  EndListingAtOnce();
  CloseInfo();
  filter_.Clear();
  for (NameList& list : lists_) list.index.Clear();
  for (const Stage stage : kStages) {
    ClearNames(stage);
    At(stage).filtered = false;
  }
  listedRefs_.clear();
  isListed_.clear();
  listed_.reset();
  summary_.clear();
  ShowAll(Stage::Genre, catalogue_.GenreList);
  sort_.Cancel();
  order_.Reset();
  found_.clear();
  RefreshRows();
  // Also ahead of the first choice, which would have to take the lines apart otherwise.
  TakeInSoon();
}

void LibraryBrowser::TakeInSoon() {
  moreToTakeIn_ = true;
  if (!takeIn_.Running()) takeIn_ = TakeIn();
}

Job<> LibraryBrowser::TakeIn() {
  co_await loop_.Yield();
  try {
    while (std::exchange(moreToTakeIn_, false)) {
      co_await filter_.Extend(loop_);
      for (NameList& list : lists_) co_await list.index.Extend(loop_);
      ReplaceNames(Stage::Genre, catalogue_.GenreList);
      if (ShowsAll(Stage::Artist)) ReplaceNames(Stage::Artist, catalogue_.ArtistList);
      if (ShowsAll(Stage::Album)) ReplaceNames(Stage::Album, catalogue_.AlbumList);
      for (;;) {
        while (listing_) co_await loop_.Sleep(20ms);
        const bool whole = co_await TakeInTracks();
        if (whole) break;
      }
      // The number of tracks is shown even when none is listed.
      Q_EMIT ChoiceChanged();
      if (sortColumn_) SortBy(*sortColumn_);
    }
  } catch (...) {
    basHandleError(QStringLiteral(" libtake"), tr("New tracks could not be brought into the lists."));
  }
}

void LibraryBrowser::ShowTrack(Mref track) {
  const auto found = std::find(rows_.begin(), rows_.end(), track);
  if (found != rows_.end()) Q_EMIT RowChanged(static_cast<int>(found - rows_.begin()));
  if (info_ && infoTrack_ == track) OpenInfo(track);
}

void LibraryBrowser::TrackWasRemoved(const TrackRemoved& removed) {
  if (info_ && infoTrack_ == removed.track) CloseInfo();
  infoTrack_ = removed.Renumbered(infoTrack_);
  if (sort_.Running()) {
    sort_.Cancel();
    TakeInSoon();  // sorts anew at its end
  }
  filter_.Remove(removed.track);
  order_.Remove(removed);
  removed.TakeFrom(found_);
  removed.TakeFrom(listedRefs_);
  if (static_cast<std::size_t>(removed.track) < isListed_.size())
    isListed_.erase(isListed_.begin() + ToInt(removed.track));
  const auto moveUp = [&removed](std::optional<Listed>& listed) {
    if (listed && listed->newFrom > ToInt(removed.track)) --listed->newFrom;
  };
  moveUp(listed_);
  for (NameList& list : lists_) moveUp(list.filled);

  const auto found = std::find(rows_.begin(), rows_.end(), removed.track);
  const int row = found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
  for (Mref& track : rows_) track = removed.Renumbered(track);
  Q_EMIT RowsRenumbered();
  if (row >= 0) {
    rows_.erase(rows_.begin() + row);
    Q_EMIT RowRemoved(row);
  }
  Q_EMIT ChoiceChanged();
}

void LibraryBrowser::ReferenceWasChanged(const ReferenceChanged& change) {
  if (change.set == ReferenceSet::Playlists) return;
  if (change.before.isEmpty()) {
    TakeInSoon();
    return;
  }
  const Stage stage = change.set == ReferenceSet::Genres    ? Stage::Genre
                      : change.set == ReferenceSet::Artists ? Stage::Artist
                                                            : Stage::Album;
  NameList& list = At(stage);
  const auto place = static_cast<std::size_t>(stage);
  const QString before = UpperName(change.before);
  const QString name = UpperName(change.name);
  const auto rename = [&before, &name](QString& text) {
    if (!name.isEmpty() && text == before) text = name;
  };
  rename(list.chosen);
  if (static_cast<qsizetype>(place) < summary_.size()) rename(summary_[static_cast<qsizetype>(place)]);
  if (listed_) rename(listed_->by[place]);
  for (NameList& each : lists_) {
    if (each.filled) rename(each.filled->by[place]);
  }
  const bool all = ShowsAll(stage);
  QStringList names = all ? catalogue_.References(change.set) : list.names;
  if (const qsizetype row = names.indexOf(before); !all && row >= 0) {
    names.removeAt(row);
    if (!name.isEmpty() && !names.contains(name)) names.insert(row, name);
  }
  const bool wasChosen = list.Tag >= 0;
  ReplaceNames(stage, names, [&](const QString& text) {
    return UpperName(text) == before ? (all ? change.name : name) : text;
  });
  if (wasChosen && list.Tag < 0 && narrowed_) RefreshRows();
  TakeInSoon();
}

void LibraryBrowser::ReplaceNames(Stage stage, const QStringList& names,
                                  const std::function<QString(const QString&)>& nameNow) {
  NameList& list = At(stage);
  const QStringList before = std::exchange(list.names, names);
  list.names.removeIf([](const QString& name) { return name.startsWith(QLatin1Char('~')); });
  if (list.names == before) return;
  for (int* row : {&list.selected, &list.Tag}) {
    if (*row < 0) continue;
    const QString& name = before[*row];
    *row = static_cast<int>(list.names.indexOf(nameNow ? nameNow(name) : name));
  }
  if (list.Tag < 0) list.chosen.clear();
  Q_EMIT NamesReset(stage);
  Q_EMIT ChoiceChanged();
}

}  // namespace kelvo
