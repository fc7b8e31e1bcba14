// The drives of the system: what there are, what is in them, and their trays.

#include "discs/CdioDrive.h"
#include "platform/NewFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <cdio/cdio.h>
#include <fcntl.h>
#include <linux/cdrom.h>
#include <sys/ioctl.h>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(SystemDrives)
};

/// The drive's device file, opened without a disc in it and without waiting for one.
Descriptor DriveFile(const QString& place) {
  return Descriptor(::open(QFile::encodeName(place).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
}

DiscState StateOf(const DiscToc& toc) {
  const int audio = toc.AudioTracks();
  if (audio == 0) return DiscState::Data;
  return audio == static_cast<int>(toc.tracks.size()) ? DiscState::Audio : DiscState::Mixed;
}

DiscState LookAtImage(const QString& place) {
  try {
    return StateOf(CdioDrive(place, std::make_shared<DriveBeat>()).ReadToc());
  } catch (const Failure&) {
    return QFileInfo::exists(place) ? DiscState::NotReady : DiscState::NoDisc;
  }
}

DiscState LookAtDrive(const QString& place) {
  const Descriptor drive = DriveFile(place);
  if (!drive.Valid()) return DiscState::NotReady;
  switch (::ioctl(drive.Number(), CDROM_DRIVE_STATUS, CDSL_CURRENT)) {
    case CDS_NO_DISC:
    case CDS_TRAY_OPEN:
      return DiscState::NoDisc;
    case CDS_DISC_OK:
    case CDS_NO_INFO:
      break;
    default:
      return DiscState::NotReady;
  }
  switch (::ioctl(drive.Number(), CDROM_DISC_STATUS)) {
    case CDS_AUDIO:
      return DiscState::Audio;
    case CDS_MIXED:
      return DiscState::Mixed;
    case CDS_NO_INFO:
      return DiscState::NoDisc;
    default:
      return DiscState::Data;
  }
}

class CdioDrives final : public DiscDrives {
 public:
  [[nodiscard]] QStringList Devices() override {
    QStringList devices;
    char** found = cdio_get_devices(DRIVER_DEVICE);
    for (char** each = found; each != nullptr && *each != nullptr; ++each) {
      // The same drive has several names.
      const QString device = QFileInfo(QFile::decodeName(*each)).canonicalFilePath();
      if (!device.isEmpty() && !devices.contains(device)) devices.append(device);
    }
    if (found != nullptr) cdio_free_device_list(found);
    devices.sort();
    return devices;
  }

  [[nodiscard]] DiscState Look(const QString& place) override { return LookAtDisc(place); }

  [[nodiscard]] std::unique_ptr<DiscDrive> Open(const QString& place, DriveBeatPtr beat) override {
    return std::make_unique<CdioDrive>(place, std::move(beat));
  }

  void Eject(const QString& place) override {
    Move(place, CDROMEJECT, Text::tr("The tray of %1 does not open."));
  }
  void CloseTray(const QString& place) override {
    Move(place, CDROMCLOSETRAY, Text::tr("The tray of %1 does not close."));
  }

 private:
  static void Move(const QString& place, unsigned long order, const QString& words) {
    const Descriptor drive = DriveFile(place);
    // A desktop that has mounted the disc may have locked the door.
    if (drive.Valid() && order == CDROMEJECT) (void)::ioctl(drive.Number(), CDROM_LOCKDOOR, 0);
    if (!drive.Valid() || ::ioctl(drive.Number(), order) != 0)
      throw DriveFailure(DriveFailure::Kind::Refused, words.arg(place), place);
  }
};

}  // namespace

DiscState LookAtDisc(const QString& place) {
  return IsDiscImage(place) ? LookAtImage(place) : LookAtDrive(place);
}

bool IsDiscImage(const QString& name) {
  static const QStringList endings{QStringLiteral("cue"), QStringLiteral("bin"), QStringLiteral("toc"),
                                   QStringLiteral("nrg")};
  return endings.contains(QFileInfo(name).suffix().toLower());
}

QString ImageSheet(const QString& path) {
  if (!path.endsWith(QLatin1StringView(".bin"), Qt::CaseInsensitive)) return path;
  for (const QString& ending : {QStringLiteral("cue"), QStringLiteral("CUE"), QStringLiteral("Cue")}) {
    const QString sheet = path.chopped(3) + ending;
    if (QFileInfo::exists(sheet)) return sheet;
  }
  return path;
}

std::shared_ptr<DiscDrives> SystemDrives() {
  return std::make_shared<CdioDrives>();
}

}  // namespace kelvo
