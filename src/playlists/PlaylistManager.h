#pragma once

#include "playlists/M3uList.h"
#include "playlists/PlaylistLoad.h"
#include "playlists/PlaylistRepair.h"
#include "playlists/PlaylistSave.h"
#include "playlists/PlaylistShelf.h"
#include "playlists/RequestedTracks.h"

#include <QObject>

namespace kelvo {

/// "Playlist Manager": the store of playlists, with all that can be done to it. One thing at a time: while it
/// is busy a command does nothing. Owned beside its window; logic thread.
class PlaylistManager : public QObject {
  Q_OBJECT

 public:
  struct Services {
    PlaylistServices playlists;
    PlaylistMode mode = PlaylistMode::Browse;
    /// The selected rows of the list that is saved; not asked for the play queue.
    std::function<std::vector<SaveRow>()> rows = {};
    /// The name that a save begins with each time that the window comes up; empty: the play queue's where
    /// that is saved, else none.
    std::function<QString()> name = {};
  };
  static constexpr int kMostCategoryLetters = 20;
  static constexpr int kMostPlaylistLetters = 30;

  explicit PlaylistManager(Services services);

  [[nodiscard]] PlaylistMode Mode() const { return mode_; }
  [[nodiscard]] QString Heading() const;
  [[nodiscard]] PlaylistShelf& Shelf() { return shelf_; }
  [[nodiscard]] RequestedTracks& Requests() { return requests_; }

  // What the mode and the operator's rights let through; the commands do nothing otherwise.
  [[nodiscard]] bool MaySave() const;
  [[nodiscard]] bool MayLoad() const { return mode_ == PlaylistMode::Load; }
  [[nodiscard]] bool MaySeeRequests() const;
  [[nodiscard]] bool MayAddRequests() const { return MayLoad(); }
  [[nodiscard]] bool MayUpkeep() const { return services_.dmanAccess; }

  [[nodiscard]] bool Busy() const { return work_.Running(); }
  /// What it does, and how far it is, 0 to 1; empty while it does nothing.
  [[nodiscard]] const QString& Words() const { return words_; }
  [[nodiscard]] double Share() const { return share_; }
  [[nodiscard]] bool Repairing() const { return repairing_; }
  /// Ends a repair behind the playlist under way.
  void Stop() { repair_.Stop(); }

  /// The window came up.
  void Enter();
  /// The name that a save takes; while playlists are loaded, the chosen one's.
  [[nodiscard]] const QString& Name() const { return name_; }
  void SetName(const QString& name);
  void ChooseCategory(const QString& name);
  void ChoosePlaylist(const QString& name);

  void Save();
  void Load();
  void Import();
  /// A file of another player was dropped.
  void Import(const QString& path);
  /// Writes the chosen playlist, or the play queue where that is saved, as a file of other players.
  void Export();
  void NewCategory();
  void RenameCategory();
  void DeleteCategory();
  void RenamePlaylist();
  void DeletePlaylist();
  /// The entry in this row.
  void DeleteEntry(int row);
  void Repair();

  void CompileRequests();
  void AddRequests(std::vector<int> rows);
  void DeleteRequests(std::vector<int> rows);

 Q_SIGNALS:
  void Changed();
  /// The name has to be typed.
  void NameWanted();
  /// A playlist was loaded: the window is done.
  void Loaded();

 private:
  void Begin(Job<> job);
  [[nodiscard]] Job<> Guard(Job<> job);
  void Say(const QString& words, double share);
  [[nodiscard]] Job<> RunLoad();
  [[nodiscard]] Job<> RunImport(QString path);
  [[nodiscard]] Job<> RunExport();
  [[nodiscard]] Job<> RunNewCategory();
  [[nodiscard]] Job<> RunRenameCategory();
  [[nodiscard]] Job<> RunDeleteCategory();
  [[nodiscard]] Job<> RunRenamePlaylist();
  [[nodiscard]] Job<> RunDeletePlaylist();
  [[nodiscard]] Job<> RunDeleteEntry(QString file);
  [[nodiscard]] Job<> RunRepair();
  [[nodiscard]] Job<Answer> Ask(QString text, Buttons buttons);
  /// Changes files of the store, when their disk answers: what hangs there would hold up all that the
  /// program keeps. False, with the operator told, when it does not.
  [[nodiscard]] Job<bool> Change(std::function<void()> work);
  void Refuse(const QString& text);
  [[nodiscard]] M3uList ListToExport() const;

  PlaylistServices services_;
  PlaylistMode mode_;
  PlaylistShelf shelf_;
  RequestedTracks requests_;
  PlaylistLoad load_;
  PlaylistSave save_;
  PlaylistRepair repair_;
  std::function<QString()> firstName_;
  QString name_;
  QString words_;
  double share_ = 0;
  bool repairing_ = false;
  Job<> work_;
};

}  // namespace kelvo
