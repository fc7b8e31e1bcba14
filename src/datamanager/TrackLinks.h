#pragma once

#include "database/Catalogue.h"
#include "database/Paths.h"
#include "database/PlaylistEntry.h"
#include "platform/Disks.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace kelvo {

/// An entry of a playlist that leads to a certain music file.
struct TrackLink {
  QString folder;
  QString file;      ///< of the link, in the folder
  QByteArray bytes;  ///< of that file
  PlaylistLink link;
  QString companion = {};  ///< text file beside it that holds its line; empty: it has none
  QByteArray companionBytes = {};
  /// The entry's file when its track has another name: what is in front of the name stays, "3~".
  [[nodiscard]] QString FileFor(const QString& baseName) const;
};

struct TrackLinks {
  std::vector<TrackLink> links;
  QStringList unseen;    ///< folders that could not be looked into
  bool stopped = false;  ///< not all folders were looked into
};

/// The entries of all playlists that lead to this music file: those of each folder below that of the
/// playlists, and of the folders in it. `progress` gets how much is done, 0 to 1, and says whether to go on.
[[nodiscard]] Job<TrackLinks> FindTrackLinks(EventLoop& loop, Disks& disks, const Catalogue& catalogue,
                                             Paths paths, QString musicFile,
                                             std::function<bool(double share)> progress);

}  // namespace kelvo
