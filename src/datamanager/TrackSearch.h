#pragma once

#include "database/Catalogue.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"
#include "platform/RowStore.h"

#include <QObject>
#include <QString>

namespace kelvo {

/// What the operator looks for. A value.
struct SearchQuestion {
  enum class Field { Title, Artist, Album, Genre };
  QString text;  ///< part of the field, accents and case folded; empty asks nothing of it
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
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    const Catalogue& catalogue;
  };
  explicit TrackSearch(Services services);

  /// The button: starts a search, or stops the one that runs; the rows found so far stay. Four empty boxes
  /// start nothing.
  void Search(const SearchQuestion& question);
  /// Forgets what was found; not while a search runs.
  void Clear();
  [[nodiscard]] bool Running() const { return running_; }
  /// "SEARCH", or "CANCEL" while one runs.
  [[nodiscard]] QString Caption() const;

  [[nodiscard]] const RowStore<Mref>& Results() const { return results_; }
  [[nodiscard]] const Catalogue& Tracks() const { return services_.catalogue; }
  /// How a result is shown: by its whole name, or by title and artist.
  [[nodiscard]] QString ShownName(Mref track) const;
  /// "Search Results = ...", empty until a search has ended.
  [[nodiscard]] const QString& ResultWords() const { return resultWords_; }
  /// "Done", empty until a search has ended.
  [[nodiscard]] const QString& StateWords() const { return stateWords_; }

 Q_SIGNALS:
  /// A search began or ended.
  void Changed();

 private:
  [[nodiscard]] Job<> Run(SearchQuestion question);
  [[nodiscard]] Job<bool> Look(const SearchQuestion& question);
  void FollowCatalogue();
  void TrackWasRemoved(const TrackRemoved& removed);
  void ShowTrack(Mref track);

  Services services_;
  RowStore<Mref> results_;
  bool titleFirst_ = false;
  bool running_ = false;
  bool stop_ = false;
  QString resultWords_;
  QString stateWords_;
  Job<> run_;
};

}  // namespace kelvo
