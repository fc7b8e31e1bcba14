#pragma once

#include <QByteArray>
#include <QString>

namespace kelvo {

/// Replaces the content of `path` with `bytes`, or creates it: written beside the file, flushed to disk,
/// renamed over it. After a crash, a full disk or a kill at any instant the file holds the old bytes or the
/// new, whole; a left-over beside it is removed by the next replacement. A symbolic link stays one: the file
/// that it points to is replaced. Permissions of an existing file are kept. Blocks until the disk has it; any
/// thread. Throws Failure.
void ReplaceFile(const QString& path, const QByteArray& bytes);

/// The same for a file that must be there: false, with nothing made, when it is not.
[[nodiscard]] bool ReplaceExistingFile(const QString& path, const QByteArray& bytes);

/// Puts the file `fresh`, which lies on the same file system, in the place of the file `path`: flushed, with
/// the permissions of the old one, renamed over it. After a kill at any instant `path` holds the old file or
/// the new, whole; who has the old one open keeps it. A symbolic link stays one. Throws Failure, when there is
/// no file at `path` too; `fresh` is then as it was. Blocks until the disk has it; any thread.
void MoveOver(const QString& fresh, const QString& path);

/// Does what ReplaceFile does, up to the renaming: throws the Failure that it would meet. Changes nothing.
void TryToReplaceFile(const QString& path);

/// The whole file. Throws Failure (missing, no permission, over `limit` bytes). Any thread.
[[nodiscard]] QByteArray ReadWholeFile(const QString& path, qint64 limit = qint64{64} << 20);

}  // namespace kelvo
