#pragma once

#include "platform/EventLoop.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace kelvo {

/// A file system that a person would call a drive.
struct MountedVolume {
  enum class Kind { Removable, Fixed, Network };
  Kind kind = Kind::Fixed;
  QString path;  ///< where it is mounted
};

/// The drives of this system, in the order of their paths. Asks no drive anything: one that does not answer
/// blocks no caller. Reads the system's files; any thread.
[[nodiscard]] std::vector<MountedVolume> ListVolumes();

/// The drives of a mount table. `isRemovable` knows the devices ("/dev/sdb1").
[[nodiscard]] std::vector<MountedVolume> VolumesOf(
    const QByteArray& mountTable, const std::function<bool(const QString& device)>& isRemovable);

/// The disk that `path` names, links not followed. Asks no disk anything; any thread.
[[nodiscard]] EventLoop::Disk DiskThatHolds(const QString& path);
/// The same by a table as in /proc/self/mountinfo.
[[nodiscard]] EventLoop::Disk DiskIn(const QByteArray& mountInfo, const QString& path);

/// Follows `path` through its links. Before it looks at a place it asks `mayGoOn`; returns false when that
/// says no. So whoever waits knows whose answer it waits for. Any thread but the logic's.
[[nodiscard]] bool FollowLinks(const QString& path, const std::function<bool(const QString& place)>& mayGoOn);

/// The folders that a search through `root` leaves out: what the system makes up (/proc), and, when `root` is
/// a drive itself, the other drives that are mounted in it. Any thread.
[[nodiscard]] QStringList FoldersOfOtherMounts(const QString& root);
[[nodiscard]] QStringList OtherMountsOf(const QByteArray& mountTable, const QString& root);

}  // namespace kelvo
