#pragma once

#include "database/Paths.h"
#include "database/StagedName.h"

#include <QHash>
#include <QSet>

namespace kelvo {

/// The files that are in the music and the utility folder, by name in any case. Read once for an import,
/// which tells it of each file that it adds. A value; read off the logic's thread.
struct StandingNames {
  /// Blocks for the disk; any thread. Throws Failure when the folders can't be read.
  [[nodiscard]] static StandingNames Read(const Paths& paths);

  [[nodiscard]] bool InMusic(const StagedName& name) const;
  [[nodiscard]] bool InUtility(const StagedName& name) const;
  /// The artist as his folder is spelled, if he has one.
  [[nodiscard]] QString ArtistFolder(const QString& artist) const;
  void AddStaged(const StagedName& name);

 private:
  QSet<QString> music_;
  QSet<QString> staged_;
  QHash<QString, QString> artists_;
};

}  // namespace kelvo
