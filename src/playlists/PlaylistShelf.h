#pragma once

#include "database/LinkResolver.h"
#include "platform/RowStore.h"
#include "playlists/PlaylistOutlook.h"

#include <QObject>

namespace kelvo {

/// A category or a playlist, by the name of its folder.
struct ShelfName {
  QString name;
  bool operator==(const ShelfName&) const = default;
};

/// An entry of the chosen playlist.
struct ShelfEntry {
  PlaylistEntry entry;
  LinkState state = LinkState::NotFound;
  QString path = {};    ///< of the file that it leads to
  double seconds = -1;  ///< below 0: unknown

  /// A load takes it: a file of another kind is shown, and nothing more.
  [[nodiscard]] bool Playable() const { return entry.IsLinkFile() && state == LinkState::Found; }
  [[nodiscard]] QString NumberText() const;
  [[nodiscard]] QString LengthWords() const;
  /// What is wrong with it; empty: nothing.
  [[nodiscard]] QString StateWords() const;
};

/// The categories, the playlists of the chosen one, the entries of the chosen one of these, read from disk.
/// Owned by the PlaylistManager; logic thread.
class PlaylistShelf : public QObject {
  Q_OBJECT

 public:
  explicit PlaylistShelf(const PlaylistServices& services);

  [[nodiscard]] const RowStore<ShelfName>& Categories() const { return categories_; }
  [[nodiscard]] const RowStore<ShelfName>& Playlists() const { return playlists_; }
  [[nodiscard]] const RowStore<ShelfEntry>& Entries() const { return entries_; }

  /// Empty: none is chosen.
  [[nodiscard]] const QString& Category() const { return category_; }
  [[nodiscard]] const QString& Playlist() const { return playlist_; }
  void ChooseCategory(const QString& name);
  void ChoosePlaylist(const QString& name);
  /// Reads all of it anew. What was chosen stays chosen while it is there.
  void List();
  /// The same, with another choice.
  void List(const QString& category, const QString& playlist);
  /// Stops reading: nobody looks.
  void Rest();
  [[nodiscard]] bool Listing() const { return listing_.Running(); }

  /// What is known of the chosen playlist, for the eye; empty when there is nothing to tell.
  [[nodiscard]] QString Outlook() const;
  /// What can't be read, and why; empty: nothing.
  [[nodiscard]] const QString& Trouble() const { return trouble_; }

  [[nodiscard]] QString Root() const { return services_.paths(Paths::Playlists); }
  [[nodiscard]] QString CategoryFolder(const QString& category) const;
  [[nodiscard]] QString PlaylistFolderOf(const QString& playlist) const;
  /// The name among `names` that is this one, in whatever case; empty when there is none.
  [[nodiscard]] static QString NameAmong(const RowStore<ShelfName>& names, const QString& name);

 Q_SIGNALS:
  void Changed();

 private:
  enum class From { Categories, Playlists, Entries };
  void Start(From from);
  [[nodiscard]] Job<> RunList(From from);
  [[nodiscard]] Job<QStringList> ListCategories();
  [[nodiscard]] Job<QStringList> FoldersIn(QString folder);
  [[nodiscard]] Job<> ListEntries();
  void Show(RowStore<ShelfName>& rows, const QStringList& names);

  PlaylistServices services_;
  RowStore<ShelfName> categories_;
  RowStore<ShelfName> playlists_;
  RowStore<ShelfEntry> entries_;
  QString category_;
  QString playlist_;
  PlaylistOutlook outlook_;
  QString trouble_;
  bool resting_ = true;  ///< nobody looks: what changes is read when somebody does
  Timer stale_;
  Job<> listing_;
};

}  // namespace kelvo
