#pragma once

#include "datamanager/LibraryChanges.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kelvo {

/// Creates, renames, deletes and merges the names of genres, artists, albums and categories of playlists,
/// and puts such a name to many tracks or takes it from them, with every track info file kept in step. Each
/// command asks what it needs, says what came of it, and can be undone. Owned by the join; logic thread.
class References : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    Catalogue& catalogue;
    Paths paths;
    QString title;  ///< of the program
    std::shared_ptr<LibraryChanges> changes;
  };
  explicit References(Services services) : services_(std::move(services)) {}

  void New(ReferenceSet set);
  void Rename(ReferenceSet set, const QString& name);
  void Delete(ReferenceSet set, const QString& name);
  /// The tracks that bear the name bear another, existing one in its place; the name goes.
  void Merge(ReferenceSet set, const QString& name);
  /// "Add Multiple", "Delete Multiple", and "Delete" below the names of one track.
  void AddTo(ReferenceSet set, const QString& name, const std::vector<Mref>& tracks);
  void RemoveFrom(ReferenceSet set, const QString& name, const std::vector<Mref>& tracks);
  /// Takes the name from all tracks that bear it; the name itself stays.
  void RemoveFromAll(ReferenceSet set, const QString& name);

  [[nodiscard]] bool Busy() const { return work_.Running(); }
  /// Why no command can be given now, in words; empty when one can.
  [[nodiscard]] QString WhyNot() const {
    return Busy() ? tr("A name is being changed") : services_.changes->WhyNot();
  }
  /// The same for a command on this name; the empty name is none.
  [[nodiscard]] QString WhyNot(const QString& name) const;
  /// The same for tracks: those of playlists have no such names.
  [[nodiscard]] QString WhyNoTracks(ReferenceSet set, const QString& name,
                                    const std::vector<Mref>& tracks) const;
  /// What the last command came to, for a line of words: "Rock Created".
  [[nodiscard]] const QString& Notice() const { return notice_; }

  [[nodiscard]] LibraryChanges& Changes() { return *services_.changes; }
  [[nodiscard]] Catalogue& Tracks() { return services_.catalogue; }
  [[nodiscard]] EventLoop& Loop() { return services_.loop; }

  /// "CATEGORIES", "ARTISTS", "ALBUMS", "PLAYLISTS".
  [[nodiscard]] static QString SetWord(ReferenceSet set);
  /// The lines of the tracks in which names of this set are; none for playlists.
  [[nodiscard]] const PooledTextColumn* LinesOf(ReferenceSet set) const;

 Q_SIGNALS:
  void Changed();

 private:
  /// What a track's line becomes; none: it stays.
  using LineEdit = std::function<std::optional<QString>(const QString& line)>;
  struct Plan {
    std::vector<ChangeStep> steps;
    int tracks = 0;         ///< whose line becomes another
    QStringList full = {};  ///< names of the tracks that take no more
  };

  void Begin(Job<> work);
  void Done(const QString& notice);
  [[nodiscard]] QString Folder(ReferenceSet set, const QString& name = {}) const;
  [[nodiscard]] Job<bool> Ask(QString text, QString title = {});
  void Tell(const QString& text);
  /// Asks for a name until there is one that is not reserved; empty: the operator gave up, or was refused.
  [[nodiscard]] Job<QString> AskName(QString title, QString prompt, QString initial);
  /// Whether a folder of that name is there, in any case; the operator is told.
  [[nodiscard]] Job<bool> IsTaken(ReferenceSet set, QString name);
  /// The guard of the three names that the system needs.
  [[nodiscard]] bool IsFree(const QString& name, const QString& refusal);
  /// For these tracks, or for all.
  [[nodiscard]] Job<Plan> PlanFor(ReferenceSet set, LineEdit edit,
                                  std::optional<std::vector<Mref>> tracks = std::nullopt);
  void AddStep(Plan& plan, ReferenceSet set, const LineEdit& edit, Mref track);
  /// The files beside the folder that tell about the name.
  [[nodiscard]] Job<QStringList> Profiles(ReferenceSet set, QString name);

  [[nodiscard]] Job<> RunNew(ReferenceSet set);
  [[nodiscard]] Job<> RunRename(ReferenceSet set, QString name);
  [[nodiscard]] Job<> RunDelete(ReferenceSet set, QString name);
  [[nodiscard]] Job<> RunMerge(ReferenceSet set, QString name);
  [[nodiscard]] Job<> RunAdd(ReferenceSet set, QString name, std::vector<Mref> tracks);
  [[nodiscard]] Job<> RunRemove(ReferenceSet set, QString name, std::vector<Mref> tracks);
  [[nodiscard]] Job<> RunRemoveFromAll(ReferenceSet set, QString name);
  [[nodiscard]] Job<QString> RunBulk(QString what, Plan plan);
  [[nodiscard]] static LibraryChanges::Order OrderFor(const QString& what, const QString& tag);
  /// Tells of tracks without a file, of a stop and of a failure; true when the change came to its end.
  [[nodiscard]] bool TellOutcome(const LibraryChanges::Outcome& outcome);

  Services services_;
  QString notice_;
  Job<> work_;
};

}  // namespace kelvo
