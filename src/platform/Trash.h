#pragma once

#include <QFile>
#include <QString>

#include <functional>

namespace kelvo {

/// Takes a file or folder into the desktop's trash; false where there is none. Blocks for the disk.
using Trash = std::function<bool(const QString& path)>;

[[nodiscard]] inline Trash DesktopTrash() {
  return [](const QString& path) { return QFile::moveToTrash(path); };
}

}  // namespace kelvo
