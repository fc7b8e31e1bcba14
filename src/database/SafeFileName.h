#pragma once

#include <QString>

namespace kelvo {

/// A name, or a piece of one, that a folder of the database can hold whatever a person or a tag says: free of
/// forbidden and control characters (see CleanFileName), and not hidden: a leading dot becomes "_". Empty
/// stays empty; for its length see FittingName.
[[nodiscard]] QString SafeFileName(const QString& name);

}  // namespace kelvo
