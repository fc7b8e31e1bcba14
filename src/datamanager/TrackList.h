#pragma once

#include "database/Catalogue.h"
#include "database/TrackFilter.h"
#include "datamanager/FileSizes.h"
#include "datamanager/ManagerColumns.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/RowStore.h"

#include <QString>

#include <optional>
#include <vector>

namespace kelvo {

/// A name of a set, as the filter takes it.
struct Reference {
  ReferenceSet set;
  QString name;
  bool operator==(const Reference&) const = default;
};

/// The rows of the Data Manager: all tracks, the tracks of some references, the jingles, or the track info
/// files. A row is a number; its texts are made when they are shown. It follows the catalogue by itself:
/// numbers always, new tracks unless refreshes are suspended. Owned by the DataManager; logic thread.
class TrackList : public RowFeed {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Disks& disks;
    const Catalogue& catalogue;
    const TrackFilter& words;  ///< the desk's
    const Paths& paths;
  };
  explicit TrackList(Services services);

  [[nodiscard]] int Count() const override { return static_cast<int>(shown_.size()); }
  /// The number of the row, from 1.
  [[nodiscard]] Mref Number(int row) const { return listed_[static_cast<std::size_t>(At(row))]; }
  /// The track of the row; None where jingles are listed.
  [[nodiscard]] Mref Track(int row) const { return mode_ == DispMode::Jingles ? Mref::None : Number(row); }
  [[nodiscard]] QString Text(int row, ManagerColumn column) const;
  /// The file that the row is about: music, jingle or track info file.
  [[nodiscard]] QString FilePath(int row) const { return texts_.Path(mode_, Number(row)); }
  /// What can be heard of it.
  [[nodiscard]] QString SoundPath(int row) const;
  /// What the rows are. Differs from the operator's choice while refreshes are suspended.
  [[nodiscard]] DispMode Mode() const { return mode_; }
  /// Only the tracks of some references are listed.
  [[nodiscard]] bool Filtered() const { return filtered_; }

  /// Lists all of `mode`. Does nothing while suspended but to note that it is due.
  void Refresh(DispMode mode);
  /// "Suspend File Refreshes". When it ends, a refresh that was due is made up for.
  void Suspend(bool suspended);
  [[nodiscard]] bool Suspended() const { return suspended_; }
  /// Lists the tracks that bear each of `references`, one after the other: a track that bears two of them is
  /// listed twice. Nothing unless tracks are listed and there is a reference.
  void Filter(std::vector<Reference> references);
  /// Ends a filter or a sort under way; what was listed before stays.
  void Stop();

  /// Shows only the rows with all these words in their names.
  void SetWords(const QString& words);
  [[nodiscard]] const QString& Words() const { return words_; }
  /// Ascending, or descending when it is sorted so already.
  void SortBy(ManagerColumn column);
  struct Sorting {
    ManagerColumn column;
    bool descending = false;
    bool operator==(const Sorting&) const = default;
  };
  [[nodiscard]] const std::optional<Sorting>& SortedBy() const { return sorting_; }

  /// The rows that are in sight: their sizes are read.
  void Show(int first, int last);

  /// The first row whose file name begins with this character in upper case, else with the nearest lower
  /// character down to "0"; -1 when there is none.
  [[nodiscard]] int LetterRow(QChar letter) const;
  /// The next row, from `from` on and wrapping, whose file name begins with these letters in any case; -1.
  [[nodiscard]] int RowBeginning(const QString& letters, int from) const;
  /// The rows whose file names hold this text, in any case. Takes turns.
  [[nodiscard]] Job<std::vector<int>> RowsHolding(QString text) const;

  /// What goes on, "Filtering Track List (40%)"; empty while nothing does. `JobShare` from 0 to 1.
  [[nodiscard]] const QString& JobWords() const { return jobWords_; }
  [[nodiscard]] double JobShare() const { return jobShare_; }
  /// Another number whenever the rows are others or in another order.
  [[nodiscard]] unsigned Version() const { return version_; }

 Q_SIGNALS:
  /// The same rows are about to come into another order, and came: `rowNow` of each row of before.
  void RowsAboutToBeSorted();
  void RowsSorted(const std::vector<int>& rowNow);
  /// What goes on, or what is listed, is another.
  void StateChanged();

 private:
  [[nodiscard]] int At(int row) const { return shown_[static_cast<std::size_t>(row)]; }
  void FollowCatalogue();
  void TrackWasAdded(Mref track);
  void TrackWasRemoved(const TrackRemoved& removed);
  void ShowTrack(Mref track);
  void Replace(std::vector<Mref> listed, bool filtered);
  [[nodiscard]] std::vector<int> ShownPlaces() const;
  /// Other rows of those listed are shown.
  void ShowAgain();
  [[nodiscard]] bool HasWords(Mref row) const;
  void Say(const QString& words, double share);
  void EndJob();
  [[nodiscard]] Job<> RunFilter(std::vector<Reference> references);
  [[nodiscard]] Job<> RunWords();
  [[nodiscard]] Job<> RunSort(Sorting sorting);
  void Reorder(const std::vector<int>& order);
  [[nodiscard]] std::string_view UpperName(Mref row, std::string* buffer) const;

  Services services_;
  ManagerTexts texts_;
  FileSizes sizes_;
  DispMode mode_ = DispMode::MusicFiles;
  DispMode wantedMode_ = DispMode::MusicFiles;
  bool suspended_ = false;
  bool due_ = false;  ///< a refresh was left out
  bool filtered_ = false;
  std::vector<Mref> listed_;
  std::vector<int> shown_;  ///< the places in `listed_` of the rows
  QString words_;
  std::vector<bool> holds_;  ///< by number: whether a track has the words; empty: there are none
  std::optional<Sorting> sorting_;
  int firstSeen_ = 0;
  int lastSeen_ = -1;
  unsigned version_ = 0;
  unsigned changes_ = 0;  ///< counts what made numbers mean other tracks
  QString jobWords_;
  double jobShare_ = 0;
  Job<> filterJob_;
  Job<> sortJob_;
  Job<> wordsJob_;
};

}  // namespace kelvo
