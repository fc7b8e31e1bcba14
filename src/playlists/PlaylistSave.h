#pragma once

#include "playlists/PlaylistServices.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace kelvo {

class PlaylistShelf;

/// What Playlist Manager was opened for: where it takes tracks from and what it may do.
enum class PlaylistMode : int {
  Browse = -1,           ///< by the Data Manager, to look and to tidy up
  SaveSelection = 0,     ///< tracks of the Data Manager
  Load = 1,              ///< into the play queue
  SaveQueue = 2,         ///< the play queue
  SaveGroupSession = 3,  ///< a stretch of the session, to be played again step by step
  SaveSession = 4,       ///< tracks of the session, with the fades that the operator used
};

/// A row of the list that is saved.
struct SaveRow {
  QString name;
  QString path;       ///< of the music file; the play queue gives none
  QString data = {};  ///< the line of a group, or the fade of a session: type, speed, delta
};

/// Writes a list into the store. Owned by the PlaylistManager; logic thread.
class PlaylistSave {
 public:
  static constexpr int kMostFiles = 50;

  PlaylistSave(const PlaylistServices& services, PlaylistShelf& shelf, PlaylistMode mode)
      : services_(services), shelf_(shelf), mode_(mode) {}

  /// The rows that are to be saved: for all modes but SaveQueue those that are selected.
  std::function<std::vector<SaveRow>()> Rows;
  /// The name as it is kept, while the save goes on; empty: it is to be typed anew.
  std::function<void(const QString&)> OnName;
  std::function<void(const QString& words, double share)> OnProgress;

  /// Saves under this name in the chosen category. The operator is told or asked what stands against it.
  [[nodiscard]] Job<> Run(QString typed);

 private:
  enum class IfThere { New, Append, Replace };
  [[nodiscard]] bool Fits(const QString& name);
  [[nodiscard]] Job<std::optional<bool>> AskForGroup();
  [[nodiscard]] Job<std::optional<IfThere>> AskIfThere(QString folder, QString name);
  [[nodiscard]] Job<int> CountFiles(QString folder);
  [[nodiscard]] std::vector<NewEntry> Entries(bool group) const;
  [[nodiscard]] Job<bool> Write(PlaylistOrder order, QString name);
  void TellTooMany(bool isNew, int existing, int added);

  PlaylistServices services_;
  PlaylistShelf& shelf_;
  PlaylistMode mode_;
};

/// Keeps in a track's info the fade that the operator used: `data` is type, speed and delta, joined by ",".
/// Nothing without a file or without data. Throws Failure. Blocks: off the logic's thread.
void StoreSessionFade(const QString& infoPath, const QString& data);

}  // namespace kelvo
