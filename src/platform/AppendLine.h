#pragma once

#include <QByteArray>
#include <QString>

namespace kelvo {

/// Adds a whole line, with its line end, to a file and flushes it. A broken line at the file's end is ended
/// first, and what a full disk has taken by half is cut off again. Throws Failure. Blocks; any thread.
void AppendWholeLine(const QString& path, const QByteArray& line);

}  // namespace kelvo
