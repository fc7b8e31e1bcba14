#pragma once

#include "datamanager/LibraryChanges.h"

#include <QObject>

#include <memory>
#include <optional>
#include <vector>

namespace kelvo {

/// What becomes of several tracks at once. What is empty stays as it is. A value.
struct BulkChange {
  std::optional<QString> year = {};   ///< four digits, "0000" when unknown
  std::optional<QString> month = {};  ///< three letters, "xxx" when unknown
  QString artist = {};
  QString genre = {};
  /// Artist and genre take the place of those that a track has; otherwise they join them.
  bool replace = false;

  [[nodiscard]] bool IsEmpty() const { return !year && !month && artist.isEmpty() && genre.isEmpty(); }
};

/// Changes date, artist or genre of many tracks, as one change of the library: stopped, nothing was changed;
/// killed, the next start ends it; done, it can be undone. Owned by the DataManager; logic thread.
class BulkEdit : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    Catalogue& catalogue;
    Paths paths;
    std::shared_ptr<LibraryChanges> changes;
  };
  explicit BulkEdit(Services services) : services_(std::move(services)) {}

  /// Why these tracks can't be changed so, in words; empty when they can.
  [[nodiscard]] QString WhyNot(const BulkChange& change, std::size_t tracks) const;
  void Apply(const std::vector<Mref>& tracks, BulkChange change);
  [[nodiscard]] bool Running() const { return job_.Running(); }

 Q_SIGNALS:
  void Changed();

 private:
  struct Plan {
    std::vector<ChangeStep> steps;
    int tracks = 0;         ///< that become others
    QStringList full = {};  ///< tracks that take no more names
  };
  [[nodiscard]] Job<> Run(std::vector<Mref> tracks, BulkChange change);
  /// Makes the folder of a new name; the name as the database spells it.
  [[nodiscard]] Job<QString> Ensure(ReferenceSet set, QString name);
  [[nodiscard]] Job<Plan> PlanFor(std::vector<Mref> tracks, BulkChange change);
  void AddTrack(Plan& plan, const BulkChange& change, Mref track) const;
  void Tell(const Plan& plan, const LibraryChanges::Outcome& outcome);

  Services services_;
  Job<> job_;
};

}  // namespace kelvo
