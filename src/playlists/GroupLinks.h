#pragma once

#include "database/PlaylistEntry.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace kelvo {

/// What a playlist's folder keeps of the lines of a group playlist: companions hold them as they were
/// recorded, which is what a load takes; links hold them as they were last edited. Functions block for the
/// disk: off the logic's thread.

/// The entry of each line, by the name of its track; of a track that is there several times the entries are
/// taken in their order.
[[nodiscard]] std::vector<std::optional<std::size_t>> EntriesOf(const QStringList& names,
                                                                const std::vector<PlaylistEntry>& entries);

struct StoredLine {
  std::optional<QString> recorded;  ///< none: the entry has no companion
  std::optional<QString> edited;    ///< none: the link holds no line
};
/// Of the tracks of these names, in their order. Throws Failure.
[[nodiscard]] std::vector<StoredLine> ReadStoredLines(const QString& folder, const QStringList& names);

/// Puts the lines into the links of their entries, all or none. Returns how many have no entry. Throws.
int WriteEditedLines(const QString& folder, const QStringList& names, const QStringList& lines);

}  // namespace kelvo
