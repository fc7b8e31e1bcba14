#pragma once

#include <QString>

namespace kelvo {

/// Why the file cannot be played, in a sentence ("The file is empty."); empty when it can. Looks at the start
/// of its content, not at its name: damage behind that does not show. Blocks for the disk; any thread but the
/// logic's.
[[nodiscard]] QString WhyNotPlayable(const QString& path);

/// A sentence that begins with the path of a file, without that path.
[[nodiscard]] QString WithoutPath(const QString& sentence, const QString& path);

}  // namespace kelvo
