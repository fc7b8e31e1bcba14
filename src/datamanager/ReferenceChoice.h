#pragma once

#include "datamanager/TrackList.h"

#include <QHash>
#include <QObject>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

namespace kelvo {

/// A name of the chosen set, with the number of tracks that bear it.
struct ReferenceRow {
  QString name;
  std::optional<int> tracks = {};  ///< none: not counted, or nothing that tracks bear
};

/// The names of the Data Manager beside its tracks: those of one set, with one of them chosen; those that the
/// filter takes; and those of the selected track, with one chosen in each set. They follow the catalogue.
/// Owned by the DataManager; logic thread.
class ReferenceChoice : public QObject {
  Q_OBJECT

 public:
  ReferenceChoice(EventLoop& loop, const Catalogue& catalogue);

  /// None before a choice.
  [[nodiscard]] const std::optional<ReferenceSet>& Set() const { return set_; }
  /// "Categories", "Artists", "Albums", "Playlists"; "None" before a choice.
  [[nodiscard]] QString SetWord() const;
  void ChooseSet(ReferenceSet set);
  [[nodiscard]] const RowStore<ReferenceRow>& Names() const { return names_; }
  /// The name that is chosen in the list; empty for none.
  [[nodiscard]] const QString& Chosen() const { return chosen_; }
  void Choose(const QString& name);
  /// Names that begin with "~" are not shown.
  [[nodiscard]] static QStringList ShownNames(const Catalogue& catalogue, ReferenceSet set);
  /// The row of the first name that begins with this character, else with the nearest lower one; -1.
  [[nodiscard]] int LetterRow(QChar letter) const;

  // The filter.
  [[nodiscard]] const RowStore<Reference>& Filter() const { return filter_; }
  /// Why the chosen name can't be added to the filter, in words; empty when it can.
  [[nodiscard]] QString WhyNoAdd() const;
  void AddToFilter();
  /// Takes these rows out.
  void RemoveFromFilter(const std::vector<int>& rows);
  void ClearFilter();

  // The selected track's.
  /// Genres, artists, albums.
  static constexpr std::array kTrackSets{ReferenceSet::Genres, ReferenceSet::Artists, ReferenceSet::Albums};
  void ShowTrack(Mref track);
  [[nodiscard]] Mref Track() const { return track_; }
  [[nodiscard]] QStringList OfTrack(ReferenceSet set) const;
  /// The one that is chosen among them; empty for none.
  [[nodiscard]] const QString& ChosenOfTrack(ReferenceSet set) const { return ofTrack_[Place(set)]; }
  void ChooseOfTrack(ReferenceSet set, const QString& name);

 Q_SIGNALS:
  /// What is chosen, or what the filter holds, is another.
  void Changed();
  /// Another track is shown, or it bears other names.
  void TrackChanged();

 private:
  [[nodiscard]] static std::size_t Place(ReferenceSet set) { return static_cast<std::size_t>(set); }
  void FollowCatalogue();
  void ReferenceWasChanged(const ReferenceChanged& change);
  void FillNames();
  /// A moment later: many changes cost one count.
  void CountSoon();
  [[nodiscard]] Job<> Count();
  [[nodiscard]] const PooledTextColumn* Lines(ReferenceSet set) const;

  EventLoop& loop_;
  const Catalogue& catalogue_;
  std::optional<ReferenceSet> set_;
  RowStore<ReferenceRow> names_;
  QString chosen_;
  RowStore<Reference> filter_;
  Mref track_ = Mref::None;
  std::array<QString, 4> ofTrack_;
  bool countAgain_ = false;
  Job<> count_;
};

}  // namespace kelvo
