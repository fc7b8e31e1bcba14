#pragma once

#include "console/browser/NameIndex.h"
#include "console/browser/TrackOrder.h"
#include "console/desk/ConsoleState.h"
#include "console/queue/PlayQueue.h"
#include "database/Catalogue.h"
#include "database/TrackFilter.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QObject>
#include <QStringList>

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace kelvo {

/// The three lists of names; each narrows the next.
enum class Stage { Genre, Artist, Album };
inline constexpr std::array kStages{Stage::Genre, Stage::Artist, Stage::Album};

/// What the panel beside a track tells of it.
struct TrackDetails {
  QString title;
  QStringList genres;
  QString starts;
  QString ends;
};

/// The way into the catalogue: choose a genre, an artist, an album, and the track list holds what fits all
/// three; type words, and it shows what has them too. A listing goes through the whole catalogue in turns of
/// the loop and can be stopped; what it found stays. Changes of the catalogue reach the lists by
/// themselves: the choice, what is listed and what is selected stay. Owned by the Console; logic thread.
class LibraryBrowser : public QObject {
  Q_OBJECT

 public:
  LibraryBrowser(EventLoop& loop, const Catalogue& catalogue, TrackFilter& filter, PlayQueue& queue,
                 const ConsoleState& state);

  /// Something came to the catalogue and is not in all lists yet.
  [[nodiscard]] bool TakingIn() const { return takeIn_.Running(); }

  // The lists of names: rows from 0, -1 is none.
  [[nodiscard]] int Count(Stage stage) const { return static_cast<int>(At(stage).names.size()); }
  /// An entry, in upper case.
  [[nodiscard]] QString Name(Stage stage, int row) const { return UpperName(At(stage).names[row]); }
  [[nodiscard]] int Selected(Stage stage) const { return At(stage).selected; }
  /// The row that was chosen by a press and not released since. Another row may be selected by a click on a
  /// track.
  [[nodiscard]] int Tag(Stage stage) const { return At(stage).Tag; }
  /// The name chosen, for the label of the list.
  [[nodiscard]] const QString& Chosen(Stage stage) const { return At(stage).chosen; }
  /// Yellow: the list holds some of its names. Green: all.
  [[nodiscard]] bool Yellow(Stage stage) const { return At(stage).yellow; }
  /// `ArtistsFiltered`, `AlbumsFiltered`.
  [[nodiscard]] bool Filtered(Stage stage) const { return At(stage).filtered; }
  [[nodiscard]] bool FilterWordsShown(Stage stage) const { return At(stage).filtered && At(stage).wordsLit; }
  /// A beat of the clock: the words above a filtered list come and go.
  void BlinkFilterWords();

  /// A press on an entry chooses it, or releases it when it was chosen. A running listing is stopped first.
  void PressName(Stage stage, int row);
  void ShowAllArtists();
  void ShowAllAlbums();
  /// The row to jump to for a letter: the first entry that begins with it, else with the nearest lower
  /// character, down to "1"; -1 when there is none.
  [[nodiscard]] int LetterRow(Stage stage, QChar letter) const;
  /// The first entry at or behind `from`, wrapping at the end, that begins with these letters in any case;
  /// else -1.
  [[nodiscard]] int RowStarting(Stage stage, const QString& letters, int from) const;
  /// The top row with which a list that shows `rows` rows has its selected one in sight; none: it stays.
  [[nodiscard]] static std::optional<int> CentredTopRow(int selected, int rows);

  // The track list.
  /// The tracks listed, in the order in which they were; each once.
  [[nodiscard]] const std::vector<Mref>& ListedRefs() const { return listedRefs_; }
  [[nodiscard]] int ListedCount() const { return static_cast<int>(listedRefs_.size()); }
  /// The tracks shown: those listed, sorted, narrowed by the words. While nothing is chosen the words look
  /// through the whole catalogue.
  [[nodiscard]] const std::vector<Mref>& Rows() const { return rows_; }
  [[nodiscard]] bool Narrowed() const { return narrowed_; }
  [[nodiscard]] bool WordsLookEverywhere() const;
  /// Narrows the list to the tracks with these words, within a turn over 100,000 tracks.
  void SetWords(const QString& words);
  [[nodiscard]] bool FindingWords() const { return search_.Running(); }
  /// The chosen names, each cut to a third of `letters`, as they were when the listing began.
  [[nodiscard]] QString Summary(int letters) const;

  [[nodiscard]] bool Listing() const { return listing_; }
  /// "Stop Listing": what was listed stays.
  void StopListing() { listingStopRequested_ = true; }

  /// A click on a track selects its artist, and lists nothing.
  void ClickTrack(Mref track);
  void SortBy(LibraryColumn column);
  /// "Select All" and "Clear All" in turn; nothing while the list is empty.
  void ToggleAll();
  [[nodiscard]] QString SelectAllCaption() const;
  /// "Add To Queue": the selected tracks, in the order shown.
  void AddToQueue(std::vector<Mref> tracks);
  /// Why it takes none now, in words for the operator; empty when it does.
  [[nodiscard]] QString WhyNoAdd() const { return queue_.WhyNoAdd(); }

  /// Opens what is written about a name; set by whoever makes the windows.
  std::function<void(Stage stage, const QString& name)> OpenProfile;
  /// Shows what is written about the name that is chosen in this list; nothing where none is.
  void ShowProfile(Stage stage);

  // The panel of a track's details.
  void OpenInfo(Mref track);
  void CloseInfo();
  [[nodiscard]] const std::optional<TrackDetails>& Info() const { return info_; }
  /// A double click on a genre of the panel presses it in the list of genres.
  void ChooseGenreOfInfo(int row);

 Q_SIGNALS:
  void NamesReset(kelvo::Stage stage);
  void NamesAdded(kelvo::Stage stage);
  /// What is selected, chosen, or blinks.
  void ChoiceChanged();
  /// Lists with a selection should bring it into sight, see CentredTopRow.
  void CentreSelections();
  /// Rows is new.
  void RowsReset();
  /// Rows became longer.
  void RowsAdded();
  /// Rows holds the same tracks in another order.
  void RowsSorted();
  /// A row of Rows is gone.
  void RowRemoved(int row);
  /// What is shown of a row's track is another.
  void RowChanged(int row);
  /// The tracks of Rows have other numbers; they are the same in the same order.
  void RowsRenumbered();
  /// All rows are to be selected, or none.
  void SelectRows(bool all);
  /// These tracks went to the queue: they are selected no more.
  void Deselect(const std::vector<kelvo::Mref>& tracks);
  /// A listing began or ended.
  void ListingChanged();
  void InfoChanged();

 private:
  /// What was listed: the tracks that fit a name of each stage (empty: any), and of those that come later the
  /// ones from `newFrom` on. The first, unless the listing was stopped.
  struct Listed {
    std::array<QString, kStages.size()> by;
    int newFrom = 1;
  };
  struct NameList {
    explicit NameList(const PooledTextColumn& lines) : column(lines), index(lines) {}
    const PooledTextColumn& column;
    NameIndex index;
    QStringList names;  ///< as the catalogue writes them
    int selected = -1;
    int Tag = -1;
    QString chosen;
    bool yellow = false;
    bool filtered = false;
    bool wordsLit = false;
    std::optional<Listed> filled;  ///< the names are those of these tracks
  };
  /// The lines of a column that fit a name.
  struct Test {
    const PooledTextColumn* column;
    std::vector<bool> lines;
  };
  class NamesOfTracks;
  [[nodiscard]] NameList& At(Stage stage) { return lists_[static_cast<std::size_t>(stage)]; }
  [[nodiscard]] const NameList& At(Stage stage) const { return lists_[static_cast<std::size_t>(stage)]; }

  void FilterByGenre();
  void FilterByArtist();
  void ListTracksByChoice();
  void Release(Stage stage);
  void ClearNames(Stage stage);
  void ShowAll(Stage stage, const QStringList& names);
  void RecomputeFiltered();

  void StartListing(std::optional<Stage> fills);
  [[nodiscard]] Job<> RunListing(std::optional<Stage> fills);
  [[nodiscard]] Job<> WalkCatalogue(std::optional<Stage> fills);
  [[nodiscard]] std::vector<Test> TestsFor(const Listed& listed) const;
  [[nodiscard]] static bool Fits(const std::vector<Test>& tests, Mref track);

  // What happens to the catalogue.
  void FollowCatalogue();
  /// The catalogue was read: all lists begin anew, with the genres.
  void BeginAnew();
  void ShowTrack(Mref track);
  void TrackWasRemoved(const TrackRemoved& removed);
  void ReferenceWasChanged(const ReferenceChanged& change);
  [[nodiscard]] bool ShowsAll(Stage stage) const { return !Yellow(stage) && Count(stage) > 0; }
  /// Other names in a list; what is selected keeps its row by its name, which `nameNow` may change.
  void ReplaceNames(Stage stage, const QStringList& names,
                    const std::function<QString(const QString&)>& nameNow = {});
  /// At the loop's next turn: many changes cost one pass over the catalogue.
  void TakeInSoon();
  [[nodiscard]] Job<> TakeIn();
  /// False when the operator chose something else meanwhile.
  [[nodiscard]] Job<bool> TakeInTracks();
  void ShowMoreRows();
  void BeginListing(bool enabled);
  void EndListingAtOnce();
  void AddToTrackList(Mref track);
  void Publish(std::optional<Stage> fills);
  /// Takes what is found into `found_`, unless other words were typed meanwhile.
  [[nodiscard]] Job<> FindWords();
  [[nodiscard]] Job<> RunSearch();
  void RefreshRows();
  [[nodiscard]] std::vector<Mref> ShownRows();
  [[nodiscard]] Job<> RunSort(LibraryColumn column);
  [[nodiscard]] Job<> RunAdd(std::vector<Mref> tracks);

  EventLoop& loop_;
  const Catalogue& catalogue_;
  TrackFilter& filter_;
  PlayQueue& queue_;
  const ConsoleState& state_;
  std::array<NameList, kStages.size()> lists_;
  TrackOrder order_;
  std::optional<LibraryColumn> sortColumn_;
  std::vector<Mref> listedRefs_;
  std::vector<bool> isListed_;  ///< by row number
  std::vector<Mref> rows_;
  QString words_;
  bool narrowed_ = false;
  std::vector<Mref> found_;  ///< all tracks that have the words
  QStringList summary_;
  std::optional<Listed> listed_;
  unsigned choices_ = 0;  ///< counts what the operator chose
  bool listing_ = false;
  bool listingStopRequested_ = false;
  bool allSelected_ = false;
  std::optional<TrackDetails> info_;
  Mref infoTrack_ = Mref::None;
  bool moreToTakeIn_ = false;
  Job<> takeIn_;
  Job<> walk_;
  Job<> search_;
  Job<> sort_;
  JobList adding_;
};

}  // namespace kelvo
