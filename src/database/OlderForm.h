#pragma once

#include <QString>

namespace kelvo {

/// The first file in a folder of track info files, in the order of the names, that is none of the present
/// form, recognised by its extension alone; empty when there is none. Such a file is of a database from
/// before that form. Hidden files do not count, nor does what file managers and editors leave behind: a
/// half-written file beside its target (see NewFile) is no older database. Throws Failure when the folder
/// cannot be read. Blocks for the disk; any thread.
[[nodiscard]] QString FirstFileOfOlderForm(const QString& infoFolder);

}  // namespace kelvo
