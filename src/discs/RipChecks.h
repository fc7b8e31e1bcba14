#pragma once

#include "database/Paths.h"
#include "discs/RipRows.h"

#include <QSet>

#include <vector>

namespace kelvo {

/// What is wrong with a ticked row of the grid, in words for the operator: the first row, its columns from
/// the left; empty: nothing. What is empty but the name of the track is no error: it gets a default.
[[nodiscard]] QString GridError(const RipRows& rows);
/// The question whether what is empty of the ticked rows is to get its defaults; empty when nothing is.
[[nodiscard]] QString DefaultsQuestion(const RipRows& rows, const QString& title);
/// Whether a ticked row would not be named "Artist Name - Track Title".
[[nodiscard]] bool AnyUnconventional(const RipRows& rows, int fFormat);

/// The names, upper-cased, of the tracks that the music and the utility folder hold.
struct KnownNames {
  QSet<QString> music;
  QSet<QString> utility;

  /// Blocks for the disk; any thread. Throws Failure.
  [[nodiscard]] static KnownNames Read(const Paths& paths);
};

/// Looks for each ticked row in the database (`RipDbCheck`). What is in the music folder becomes yellow, what
/// waits in the utility folder red and loses its tick. Returns the question of the operator; empty when
/// nothing was found. `ending` is that of the files to come.
[[nodiscard]] QString RipDbCheck(RipRows& rows, const KnownNames& known, int fFormat, const QString& ending);

}  // namespace kelvo
