#pragma once

#include "database/LinkResolver.h"
#include "playlists/PlaylistServices.h"

#include <QStringList>

namespace kelvo {

/// Brings playlists into the play queue: those of the store, and files of other players. Owned by who offers
/// it; logic thread. Each job gives true when the queue has taken it; the operator was told or asked why not.
class PlaylistLoad {
 public:
  explicit PlaylistLoad(PlaylistServices services) : services_(std::move(services)) {}

  /// A playlist of the store. An entry that leads nowhere is asked about; one whose file is no track of the
  /// database is passed over. A load that is cancelled leaves the queue as it was.
  [[nodiscard]] Job<bool> FromStore(QString folder, QString name);
  /// A file of another player, by its path. What of it is no track of the database is listed afterwards.
  [[nodiscard]] Job<bool> FromFile(QString path);
  /// The same for a file that was dropped, where nobody waits for its end.
  [[nodiscard]] Job<> Import(QString path);
  /// Tracks of the catalogue, in this order. Those whose file is gone are left out, and named.
  [[nodiscard]] Job<bool> FromTracks(std::vector<Mref> tracks);
  /// Asks for such a file.
  [[nodiscard]] Job<bool> FromPickedFile();

  /// Whether a file is of this kind, by its name.
  [[nodiscard]] static bool IsListFile(const QString& path);

 private:
  enum class Room { Refused, Append, Clear };
  /// The queue takes nothing now; the operator was told.
  [[nodiscard]] bool Closed();
  [[nodiscard]] Job<Room> AskForRoom(QString name, bool group);
  [[nodiscard]] Job<bool> Take(PlaylistQueue::Load load, Room room, bool asked);
  [[nodiscard]] Job<bool> SkipsMissing(QString name);
  void TellSilent(int silent);
  /// Names those that were not found, the first of them; the log has all.
  void TellMissing(const QString& sum, const QString& from, const QStringList& missing);

  PlaylistServices services_;
};

}  // namespace kelvo
