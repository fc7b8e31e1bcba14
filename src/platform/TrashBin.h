#pragma once

#include <QString>

#include <memory>
#include <optional>

namespace kelvo {

/// Where deleted files and folders go, so that they can be brought back. Its calls block for the disk; any
/// thread.
class TrashBin {
 public:
  virtual ~TrashBin() = default;

  /// Takes a file or folder in; its place there, or none where there is no trash.
  [[nodiscard]] virtual std::optional<QString> Put(const QString& path) = 0;
  /// The place of what was taken from `path` last; empty when it is not there.
  [[nodiscard]] virtual QString Find(const QString& path) const = 0;
  /// Brings back what lies at `place`. False, with nothing done, when it is not there or `path` is taken.
  [[nodiscard]] virtual bool TakeBack(const QString& place, const QString& path) = 0;
};

/// That of the desktop.
[[nodiscard]] std::shared_ptr<TrashBin> DesktopTrashBin();

}  // namespace kelvo
