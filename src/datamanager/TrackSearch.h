#pragma once

#include "database/Catalogue.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QObject>
#include <QString>

#include <vector>

namespace kelvo {

/// What the operator looks for. A value.
struct SearchQuestion {
  enum class Field { Title, Artist, Album, Genre };
  QString text;  ///< part of the field; empty asks nothing of it
  QString date;  ///< these three are compared whole, in any case; empty asks nothing
  QString hiPos;
  QString bpm;
  Field field = Field::Title;
  bool wholeString = false;  ///< only whole words: between two blanks in the field
  bool titleFirst = false;   ///< shows the tracks as title and artist
};

/// Finds tracks in the catalogue, with no look at the disk. What it found follows the catalogue. Owned by who
/// shows it; the catalogue outlives it; logic thread.
class TrackSearch : public QObject {
  Q_OBJECT

 public:
  TrackSearch(EventLoop& loop, Prompter& prompter, const Catalogue& catalogue);

  /// The button: starts a search, or stops the one that runs; the rows found so far stay. Four empty boxes
  /// start nothing.
  void Search(const SearchQuestion& question);
  [[nodiscard]] bool Running() const { return running_; }
  /// "SEARCH", or "CANCEL" while one runs.
  [[nodiscard]] QString Caption() const;

  [[nodiscard]] const std::vector<Mref>& Results() const { return results_; }
  /// How a result is shown: by its name as it stands, or by title and artist.
  [[nodiscard]] QString ShownName(Mref track) const;
  /// "Search Results = ...", empty until a search has ended.
  [[nodiscard]] const QString& ResultWords() const { return resultWords_; }
  /// "Done", empty until a search has ended.
  [[nodiscard]] const QString& StateWords() const { return stateWords_; }

 Q_SIGNALS:
  void ResultsCleared();
  /// Results from row `first`, from 0, on are new.
  void ResultsAdded(int first);
  void ResultAboutToBeRemoved(int row);
  void ResultRemoved();
  void ResultChanged(int row);
  /// A search began or ended.
  void Changed();

 private:
  [[nodiscard]] Job<> Run(SearchQuestion question);
  [[nodiscard]] Job<bool> Look(const SearchQuestion& question);
  void TellAdded();
  void FollowCatalogue();
  void TrackWasRemoved(const TrackRemoved& removed);
  void ShowTrack(Mref track);

  EventLoop& loop_;
  Prompter& prompter_;
  const Catalogue& catalogue_;
  std::vector<Mref> results_;
  std::size_t told_ = 0;  ///< how many of them were told
  bool titleFirst_ = false;
  bool running_ = false;
  bool stop_ = false;
  QString resultWords_;
  QString stateWords_;
  Job<> run_;
};

/// The first item of a reference line behind its base item ("~ALL ARTISTS" and a comma).
[[nodiscard]] QString FirstReference(const QString& line, const QString& baseItem);

}  // namespace kelvo
