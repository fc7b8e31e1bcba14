#include "console/browser/LibraryBrowser.h"

#include "database/KeptTracks.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <algorithm>

namespace kelvo {

namespace {

const QString kSelectAll = QStringLiteral("Select All");
const QString kClearAll = QStringLiteral("Clear All");

}  // namespace

LibraryBrowser::LibraryBrowser(EventLoop& loop, const Catalogue& catalogue, TrackFilter& filter,
                               PlayQueue& queue, const ConsoleState& state)
    : loop_(loop),
      catalogue_(catalogue),
      filter_(filter),
      queue_(queue),
      state_(state),
      lists_{NameList(catalogue.TrackGenres), NameList(catalogue.TrackArtists),
             NameList(catalogue.TrackAlbums)},
      order_(catalogue) {
  FollowCatalogue();
  BeginAnew();
}

void LibraryBrowser::ClearNames(Stage stage) {
  ++choices_;
  Release(stage);
  At(stage).names.clear();
  At(stage).filled.reset();
  Q_EMIT NamesReset(stage);
}

void LibraryBrowser::Release(Stage stage) {
  NameList& list = At(stage);
  list.selected = -1;
  list.Tag = -1;
  list.chosen.clear();
}

void LibraryBrowser::ShowAll(Stage stage, const QStringList& names) {
  NameList& list = At(stage);
  list.names = names;
  list.names.removeIf(IsInternalName);
  list.yellow = false;
  RecomputeFiltered();
  Q_EMIT NamesReset(stage);
  Q_EMIT ChoiceChanged();
}

void LibraryBrowser::RecomputeFiltered() {
  for (const Stage stage : {Stage::Artist, Stage::Album})
    At(stage).filtered = Count(stage) > 0 && Yellow(stage);
}

void LibraryBrowser::ShowAllArtists() {
  if (listing_) return;
  Release(Stage::Genre);
  ClearNames(Stage::Artist);
  ClearNames(Stage::Album);
  ShowAll(Stage::Artist, catalogue_.ArtistList);
  if (narrowed_) RefreshRows();
}

void LibraryBrowser::ShowAllAlbums() {
  if (listing_) return;
  Release(Stage::Genre);
  Release(Stage::Artist);
  ClearNames(Stage::Album);
  ShowAll(Stage::Album, catalogue_.AlbumList);
  if (narrowed_) RefreshRows();
}

void LibraryBrowser::BlinkFilterWords() {
  bool changed = false;
  for (NameList& list : lists_) {
    const bool lit = list.filtered && !list.wordsLit;
    changed = changed || lit != list.wordsLit;
    list.wordsLit = lit;
  }
  if (changed) Q_EMIT ChoiceChanged();
}

int LibraryBrowser::LetterRow(Stage stage, QChar letter) const {
  constexpr char16_t kLowest = u'1';
  const char16_t wanted = letter.unicode();
  int best = -1;
  char16_t bestCode = 0;
  for (int row = 0; row < Count(stage); ++row) {
    const QString& name = At(stage).names[row];
    if (name.isEmpty()) continue;
    const char16_t code = name.front().toUpper().unicode();
    if (code == wanted) return row;
    if (code > wanted || code < kLowest || code <= bestCode) continue;
    bestCode = code;
    best = row;
  }
  return best;
}

int LibraryBrowser::RowStarting(Stage stage, const QString& letters, int from) const {
  const QStringList& names = At(stage).names;
  for (int step = 0; step < Count(stage); ++step) {
    const int row = (from + step) % Count(stage);
    if (names[row].startsWith(letters, Qt::CaseInsensitive)) return row;
  }
  return -1;
}

std::optional<int> LibraryBrowser::CentredTopRow(int selected, int rows) {
  if (selected <= rows / 2) return std::nullopt;
  return selected - rows / 2;
}

void LibraryBrowser::PressName(Stage stage, int row) {
  EndListingAtOnce();
  CloseInfo();
  if (row >= 0 && row < Count(stage)) {
    NameList& list = At(stage);
    list.selected = row;
    if (list.Tag == row) {
      Release(stage);
      RecomputeFiltered();
      ListTracksByChoice();
      // What was listed stays; nothing that is chosen stands for it any more.
      if (WordsLookEverywhere()) summary_.clear();
    } else {
      list.chosen = Name(stage, row);
      list.Tag = row;
      if (stage == Stage::Genre) FilterByGenre();
      if (stage == Stage::Artist) FilterByArtist();
      if (stage == Stage::Album) ListTracksByChoice();
    }
    // Where the words look follows the choice.
    if (narrowed_) RefreshRows();
  }
  Q_EMIT ChoiceChanged();
  Q_EMIT CentreSelections();
}

void LibraryBrowser::FilterByGenre() {
  if (Selected(Stage::Artist) >= 0) {
    ListTracksByChoice();
    return;
  }
  ClearNames(Stage::Artist);
  ClearNames(Stage::Album);
  At(Stage::Artist).yellow = true;
  StartListing(Stage::Artist);
}

void LibraryBrowser::FilterByArtist() {
  if (Selected(Stage::Album) >= 0 || Selected(Stage::Artist) < 0) {
    ListTracksByChoice();
    return;
  }
  ClearNames(Stage::Album);
  At(Stage::Album).yellow = true;
  StartListing(Stage::Album);
}

void LibraryBrowser::ListTracksByChoice() {
  const bool any = std::any_of(kStages.begin(), kStages.end(), [this](Stage s) { return Selected(s) >= 0; });
  if (any) StartListing(std::nullopt);
}

bool LibraryBrowser::WordsLookEverywhere() const {
  return std::all_of(kStages.begin(), kStages.end(), [this](Stage stage) { return Tag(stage) < 0; });
}

void LibraryBrowser::SetWords(const QString& words) {
  if (words == words_) return;
  words_ = words;
  if (!words.trimmed().isEmpty()) {
    search_ = RunSearch();
    return;
  }
  search_.Cancel();
  found_.clear();
  if (std::exchange(narrowed_, false)) RefreshRows();
}

Job<> LibraryBrowser::RunSearch() {
  try {
    co_await FindWords();
    RefreshRows();
  } catch (...) {
    basHandleError(QStringLiteral(" libwords"), tr("The words could not be looked for."));
  }
}

Job<> LibraryBrowser::FindWords() {
  const QString words = words_;
  if (words.trimmed().isEmpty()) co_return;
  std::vector<Mref> found = co_await filter_.Find(loop_, words);
  if (words != words_) co_return;
  narrowed_ = true;
  found_ = std::move(found);
}

std::vector<Mref> LibraryBrowser::ShownRows() {
  std::vector<Mref> shown = narrowed_ ? found_ : listedRefs_;
  if (narrowed_ && !WordsLookEverywhere()) {
    std::erase_if(shown, [this](Mref track) {
      const auto row = static_cast<std::size_t>(track);
      return row >= isListed_.size() || !isListed_[row];
    });
  }
  if (!order_.IsSorted()) return shown;
  const std::vector<Mref>& all = order_.Tracks();
  std::vector<bool> isShown(all.size() + 1);
  for (const Mref track : shown) isShown[static_cast<std::size_t>(track)] = true;
  shown.clear();
  std::copy_if(all.begin(), all.end(), std::back_inserter(shown),
               [&](Mref track) { return isShown[static_cast<std::size_t>(track)]; });
  return shown;
}

void LibraryBrowser::RefreshRows() {
  rows_ = ShownRows();
  allSelected_ = false;
  Q_EMIT RowsReset();
}

QString LibraryBrowser::Summary(int letters) const {
  if (summary_.join(QString()).isEmpty()) return {};
  QStringList parts;
  for (const QString& name : summary_) parts.append(name.left(letters / 3));
  return parts.join(QStringLiteral(" / "));
}

void LibraryBrowser::SortBy(LibraryColumn column) {
  sortColumn_ = column;
  sort_ = RunSort(column);
}

Job<> LibraryBrowser::RunSort(LibraryColumn column) {
  try {
    co_await order_.Sort(loop_, column);
    rows_ = ShownRows();
    Q_EMIT RowsSorted();
  } catch (...) {
    basHandleError(QStringLiteral(" libsort"), tr("The list of tracks could not be sorted."));
  }
}

void LibraryBrowser::ClickTrack(Mref track) {
  const QString text = LibraryText(catalogue_, track, LibraryColumn::Track);
  const qsizetype dash = text.indexOf(QLatin1Char('-'));
  if (dash < 1) return;
  const QString artist = UpperName(text.left(dash - 1));
  NameList& list = At(Stage::Artist);
  const auto found = std::find_if(list.names.begin(), list.names.end(), [&artist](const QString& name) {
    return name.size() == artist.size() && UpperName(name) == artist;
  });
  if (found == list.names.end()) return;
  list.selected = static_cast<int>(found - list.names.begin());
  Q_EMIT ChoiceChanged();
}

void LibraryBrowser::ToggleAll() {
  if (listing_ || rows_.empty()) return;
  allSelected_ = !allSelected_;
  Q_EMIT SelectRows(allSelected_);
}

QString LibraryBrowser::SelectAllCaption() const {
  return allSelected_ ? kClearAll : kSelectAll;
}

void LibraryBrowser::AddToQueue(std::vector<Mref> tracks) {
  if (listing_ || rows_.empty() || state_.GroupPlayOn) return;
  adding_.Add(RunAdd(std::move(tracks)));
}

Job<> LibraryBrowser::RunAdd(std::vector<Mref> tracks) {
  const KeptTracks kept(catalogue_, std::move(tracks));
  const bool refused = !WhyNoAdd().isEmpty();
  co_await queue_.AddTracks(kept.All());
  // A group playlist that is still in force was not given up: nothing was added.
  if (refused || state_.GroupPlayOn || (queue_.Count() > 0 && queue_.GroupQueueFlag())) co_return;
  allSelected_ = false;
  // The operator may have selected others meanwhile.
  Q_EMIT Deselect(kept.All());
}

void LibraryBrowser::OpenInfo(Mref track) {
  if (!catalogue_.IsTrack(track)) return;
  const QString text = LibraryText(catalogue_, track, LibraryColumn::Track);
  const Styles styles = StylesIn(catalogue_.TrackStartEnd[track]);
  const auto word = [](int style) { return style == 0 ? QStringLiteral("Soft") : QStringLiteral("Strong"); };
  TrackDetails details;
  details.title = text.mid(text.indexOf(QLatin1Char('-')) + 1);
  for (const QStringView genre : ShownItems(catalogue_.TrackGenres[track])) {
    details.genres.append(genre.toString());
  }
  details.starts = QStringLiteral("Starts: ") + word(styles.start);
  details.ends = QStringLiteral("Ends: ") + word(styles.end);
  info_ = std::move(details);
  infoTrack_ = track;
  Q_EMIT InfoChanged();
}

void LibraryBrowser::CloseInfo() {
  if (!info_) return;
  info_.reset();
  Q_EMIT InfoChanged();
}

void LibraryBrowser::ChooseGenreOfInfo(int row) {
  if (!info_ || row < 0 || row >= info_->genres.size()) return;
  const QString genre = UpperName(info_->genres[row]);
  for (int entry = 0; entry < Count(Stage::Genre); ++entry) {
    if (Name(Stage::Genre, entry) != genre) continue;
    PressName(Stage::Genre, entry);
    return;
  }
}

void LibraryBrowser::ShowProfile(Stage stage) {
  if (OpenProfile && !Chosen(stage).isEmpty()) OpenProfile(stage, Chosen(stage));
}

}  // namespace kelvo
