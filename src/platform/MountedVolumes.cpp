#include "platform/MountedVolumes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <unistd.h>

#include <algorithm>
#include <array>

namespace kelvo {
namespace {

struct Mount {
  QString device;
  QString path;
  QString type;
};

/// The table writes blank, tab, newline and backslash as "\040" and so on.
QString Unescaped(const QByteArray& field) {
  QByteArray text;
  for (qsizetype at = 0; at < field.size(); ++at) {
    bool octal = false;
    const int code = field[at] == '\\' ? field.mid(at + 1, 3).toInt(&octal, 8) : 0;
    text += octal ? static_cast<char>(code) : field[at];
    if (octal) at += 3;
  }
  return QFile::decodeName(text);
}

std::vector<Mount> MountsOf(const QByteArray& table) {
  std::vector<Mount> mounts;
  for (const QByteArray& line : table.split('\n')) {
    const QList<QByteArray> fields = line.split(' ');
    if (fields.size() < 3) continue;
    mounts.push_back({Unescaped(fields[0]), Unescaped(fields[1]), Unescaped(fields[2])});
  }
  return mounts;
}

bool IsNetwork(const Mount& mount) {
  static const QSet<QString> types{
      QStringLiteral("cifs"),
      QStringLiteral("smb3"),
      QStringLiteral("smbfs"),
      QStringLiteral("nfs"),
      QStringLiteral("nfs4"),
      QStringLiteral("afs"),
      QStringLiteral("davfs"),
      QStringLiteral("ceph"),
      QStringLiteral("9p"),
      QStringLiteral("fuse.sshfs"),
      QStringLiteral("fuse.davfs"),
      QStringLiteral("fuse.rclone"),
      QStringLiteral("fuse.gvfsd-fuse"),
      QStringLiteral("fuse.glusterfs"),
      QStringLiteral("virtiofs"),
  };
  return types.contains(mount.type);
}

bool IsDisk(const Mount& mount) {
  // A loop device holds an installed package, not a drive of the operator; and the system starts from /boot.
  const bool device = mount.device.startsWith(QLatin1StringView("/dev/")) &&
                      !mount.device.startsWith(QLatin1StringView("/dev/loop"));
  const bool disk = device || mount.type == QLatin1StringView("zfs") || mount.path == QLatin1StringView("/");
  return disk && mount.path != QLatin1StringView("/boot") &&
         !mount.path.startsWith(QLatin1StringView("/boot/"));
}

bool IsOptical(const Mount& mount) {
  return mount.type == QLatin1StringView("iso9660") || mount.type == QLatin1StringView("udf");
}

QByteArray ReadTable(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
QByteArray ReadMountTable() {
  return ReadTable(QStringLiteral("/proc/self/mounts"));
}

/// Whether a device can be taken away: a drive of changing media, or anything on the universal serial bus.
bool IsRemovable(const QString& device) {
  const QString name = QFileInfo(QFileInfo(device).canonicalFilePath()).fileName();
  const QString place = QFileInfo(QStringLiteral("/sys/class/block/") + name).canonicalFilePath();
  if (name.isEmpty() || place.isEmpty()) return false;
  if (place.contains(QLatin1StringView("/usb"))) return true;
  for (const QString& folder : {place, QFileInfo(place).path()}) {
    QFile flag(folder + QStringLiteral("/removable"));
    if (flag.open(QIODevice::ReadOnly)) return flag.readAll().trimmed() == "1";
  }
  return false;
}

/// The desktop gathers the network places of its user in one mount; each folder in it is a drive.
std::vector<MountedVolume> PlacesIn(const QString& gathered) {
  std::vector<MountedVolume> places;
  for (const QString& name : QDir(gathered).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
    places.push_back({MountedVolume::Kind::Network, gathered + QLatin1Char('/') + name});
  }
  return places;
}

}  // namespace

std::vector<MountedVolume> VolumesOf(const QByteArray& mountTable,
                                     const std::function<bool(const QString& device)>& isRemovable) {
  std::vector<MountedVolume> volumes;
  QSet<QString> paths;
  for (const Mount& mount : MountsOf(mountTable)) {
    const bool network = IsNetwork(mount);
    if ((!network && !IsDisk(mount)) || paths.contains(mount.path)) continue;
    paths.insert(mount.path);
    MountedVolume volume;
    volume.path = mount.path;
    const bool removable = !network && (IsOptical(mount) || isRemovable(mount.device));
    if (network) volume.kind = MountedVolume::Kind::Network;
    if (removable) volume.kind = MountedVolume::Kind::Removable;
    volumes.push_back(volume);
  }
  std::sort(volumes.begin(), volumes.end(),
            [](const MountedVolume& left, const MountedVolume& right) { return left.path < right.path; });
  return volumes;
}

std::vector<MountedVolume> ListVolumes() {
  std::vector<MountedVolume> volumes;
  for (const MountedVolume& volume : VolumesOf(ReadMountTable(), IsRemovable)) {
    if (volume.kind == MountedVolume::Kind::Network && volume.path.endsWith(QLatin1StringView("/gvfs"))) {
      const std::vector<MountedVolume> places = PlacesIn(volume.path);
      volumes.insert(volumes.end(), places.begin(), places.end());
      continue;
    }
    // A container has single files mounted. A network drive is not asked: it may not answer.
    const bool isFile = volume.kind != MountedVolume::Kind::Network && QFileInfo(volume.path).isFile();
    if (!isFile) volumes.push_back(volume);
  }
  return volumes;
}

EventLoop::Disk DiskIn(const QByteArray& mountInfo, const QString& path) {
  constexpr qsizetype kId = 0;
  constexpr qsizetype kMountPoint = 4;
  const QString clean = QDir::cleanPath(path);
  EventLoop::Disk disk;
  for (const QByteArray& line : mountInfo.split('\n')) {
    const QList<QByteArray> fields = line.split(' ');
    if (fields.size() <= kMountPoint) continue;
    const QString place = Unescaped(fields[kMountPoint]);
    const bool root = place == QLatin1StringView("/");
    const bool holds = root || clean == place || clean.startsWith(place + QLatin1Char('/'));
    // Of two mounts in one place the later one is seen.
    if (!holds || place.size() < disk.name.size()) continue;
    disk = {QString::fromLatin1(fields[kId]) + QLatin1Char(' ') + place, place};
  }
  return disk;
}

EventLoop::Disk DiskThatHolds(const QString& path) {
  return DiskIn(ReadTable(QStringLiteral("/proc/self/mountinfo")), path);
}

bool FollowLinks(const QString& path, const std::function<bool(const QString& place)>& mayGoOn) {
  constexpr int kMostLinks = 40;
  QString reached;
  QStringList rest = QDir::cleanPath(path).split(QLatin1Char('/'), Qt::SkipEmptyParts);
  for (int links = 0; !rest.isEmpty();) {
    const QString next = QDir::cleanPath(reached + QLatin1Char('/') + rest.takeFirst());
    if (!mayGoOn(next)) return false;
    std::array<char, 4096> target{};
    const ssize_t length = ::readlink(QFile::encodeName(next).constData(), target.data(), target.size());
    if (length <= 0 || ++links > kMostLinks) {
      reached = next;
      continue;
    }
    const QString to = QFile::decodeName(QByteArray(target.data(), length));
    if (to.startsWith(QLatin1Char('/'))) reached.clear();
    rest = to.split(QLatin1Char('/'), Qt::SkipEmptyParts) + rest;
  }
  return true;
}

QStringList OtherMountsOf(const QByteArray& mountTable, const QString& root) {
  const std::vector<Mount> mounts = MountsOf(mountTable);
  const bool rootIsDrive =
      std::any_of(mounts.begin(), mounts.end(), [&root](const Mount& each) { return each.path == root; });
  QStringList others;
  for (const Mount& mount : mounts) {
    const bool drive = IsNetwork(mount) || IsDisk(mount) || mount.type.startsWith(QLatin1StringView("fuse"));
    if (mount.path != root && (rootIsDrive || !drive)) others.append(mount.path);
  }
  return others;
}

QStringList FoldersOfOtherMounts(const QString& root) {
  return OtherMountsOf(ReadMountTable(), root);
}

}  // namespace kelvo
