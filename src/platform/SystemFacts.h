#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace kelvo {

/// Main memory in bytes, as the kernel tells it; `available` is what can be taken without swapping.
struct MemoryStatus {
  std::int64_t total = 0;
  std::int64_t available = 0;
};
[[nodiscard]] MemoryStatus ReadMemoryStatus();

/// The operating system, for the splash: name ("Linux") and version details (distribution and kernel).
struct PlatformFacts {
  QString name;
  QString details;
};
[[nodiscard]] PlatformFacts ReadPlatformFacts();

/// What a display can show, in pixels.
struct DisplayMode {
  int width = 0;
  int height = 0;
};
/// The modes of the displays that are connected, as the kernel lists them below `folder`; empty where it
/// lists none.
[[nodiscard]] std::vector<DisplayMode> ReadDisplayModes(
    const QString& folder = QStringLiteral("/sys/class/drm"));

/// Free bytes on the file system that holds `path`; -1 when unknown.
[[nodiscard]] std::int64_t FreeBytes(const QString& path);

/// The folder of this user's documents; it need not exist.
[[nodiscard]] QString DocumentsFolder();

/// The folder that holds this program's own data of this user (XDG data folder); it need not exist.
[[nodiscard]] QString ProgramFolder();
/// The folder for what this program can make anew at any time (XDG cache folder); it need not exist.
[[nodiscard]] QString CacheFolder();

}  // namespace kelvo
