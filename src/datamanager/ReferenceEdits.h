#pragma once

#include <QString>

#include <optional>

namespace kelvo {

// What becomes of the line of a track's names; none: it stays as it is. Names compare in upper case. An item
// that is the line's first is its base item.

/// Every item that is `name` becomes `newName`, in its place; one that would then be there twice is left out.
[[nodiscard]] std::optional<QString> LineWithRenamed(const QString& line, const QString& name,
                                                     const QString& newName);
/// Without `name`. The base item stays.
[[nodiscard]] std::optional<QString> LineWithout(const QString& line, const QString& name);
/// With `name` behind the others. An empty line gets nothing.
[[nodiscard]] std::optional<QString> LineWith(const QString& line, const QString& name);
/// Ten names are in the line: it takes no other.
[[nodiscard]] bool IsLineFull(const QString& line);

}  // namespace kelvo
