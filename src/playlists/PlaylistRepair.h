#pragma once

#include "playlists/PlaylistServices.h"

#include <QString>

#include <functional>

namespace kelvo {

/// What a repair came to.
struct RepairSum {
  int scanned = 0;
  int repaired = 0;
  int deleted = 0;

  [[nodiscard]] QString Words() const;
};

/// Mends the links of all playlists: one whose target is gone gets that of the track that it means, one that
/// means none goes to the trash, and the numbers are closed up behind it. What lies on a disk that does not
/// answer stays as it is. Owned by the PlaylistManager; logic thread.
class PlaylistRepair {
 public:
  explicit PlaylistRepair(PlaylistServices services) : services_(std::move(services)) {}

  /// Asks first, reports at the end.
  [[nodiscard]] Job<> Run();
  /// The playlist under way is finished, no other is begun.
  void Stop() { stop_ = true; }

  /// Called with what it does and how far it is, 0 to 1.
  std::function<void(const QString& words, double share)> OnProgress;

 private:
  [[nodiscard]] Job<QStringList> FindPlaylists();
  [[nodiscard]] Job<> Repair(QString folder, double share, RepairSum& sum);

  PlaylistServices services_;
  bool stop_ = false;
};

}  // namespace kelvo
