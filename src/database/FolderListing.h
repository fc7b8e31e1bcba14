#pragma once

#include <QStringList>

namespace kelvo {

/// The names in a folder, in the order of their upper-cased forms, so that numbers drawn from it are the same
/// at each start. Hidden entries (leading dot) are apart.
struct FolderListing {
  QStringList names;
  /// Entries whose name is no valid text and can't be used, for the log.
  QStringList unusable;
  QStringList hidden;
};

enum class EntryKind { Files, Folders };

/// Lists one kind of entry; symbolic links count as what they point to. Throws Failure when the folder cannot
/// be read. Blocks for the disk; any thread.
[[nodiscard]] FolderListing ListFolder(const QString& folder, EntryKind kind);

/// Whether the folder holds any file. False when it cannot be read. Blocks; any thread.
[[nodiscard]] bool HoldsFiles(const QString& folder);

}  // namespace kelvo
