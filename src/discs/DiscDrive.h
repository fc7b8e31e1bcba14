#pragma once

#include "discs/DiscToc.h"
#include "platform/ErrorLog.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>

namespace kelvo {

/// What a drive could not do.
class DriveFailure : public Failure {
 public:
  enum class Kind {
    NoDrive,  ///< there is no such drive, or no such image
    NoDisc,   ///< nothing is in it, or no longer
    Refused,  ///< it is not ready, in use, or does not do this
    Unread,   ///< sectors could not be read
    Stopped,  ///< the operator ended it
  };
  DriveFailure(Kind kind, const QString& words, const QString& place)
      : Failure(words, 0, place), kind_(kind) {}

  [[nodiscard]] Kind What() const { return kind_; }

 private:
  Kind kind_;
};

/// The two ends of a drive at work: it counts what it gets done, whoever waits asks it to stop.
struct DriveBeat {
  std::atomic<bool> stop{false};        ///< the reads that follow throw DriveFailure, Stopped
  std::atomic<std::uint64_t> steps{0};  ///< counts up with every read; a drive that hangs does not count
};
using DriveBeatPtr = std::shared_ptr<DriveBeat>;

/// A disc in a drive, or the image of one. Every call blocks for the drive and may hang with it: made off the
/// logic's thread (see DriveCalls), one thread at a time. Throws DriveFailure.
class DiscDrive {
 public:
  virtual ~DiscDrive() = default;

  [[nodiscard]] virtual DiscToc ReadToc() = 0;
  /// Reads whole sectors as the drive gives them, `target` full. What is scratched may come out wrong.
  virtual void Read(int first, std::span<std::int16_t> target) = 0;
  /// Reads whole sectors again and again until they agree. Returns how many of them never did: these are
  /// what the drive gave last, or silence.
  [[nodiscard]] virtual int ReadCarefully(int first, std::span<std::int16_t> target) = 0;
  /// So many times as fast as it is heard; 0: as the drive likes. A drive may not care.
  virtual void SetSpeed(int times) = 0;
};

/// What is in a drive.
enum class DiscState {
  Audio,  ///< sound alone
  Mixed,  ///< sound and data
  Data,
  NoDisc,
  NotReady,  ///< it does not answer to the question, or is in use
};

/// The drives of this machine. The places of drives are their device files, those of images the files that
/// describe them. As DiscDrive: blocks, off the logic's thread; any thread, several at a time.
class DiscDrives {
 public:
  virtual ~DiscDrives() = default;

  /// The device files of the drives that there are.
  [[nodiscard]] virtual QStringList Devices() = 0;
  [[nodiscard]] virtual DiscState Look(const QString& place) = 0;
  [[nodiscard]] virtual std::unique_ptr<DiscDrive> Open(const QString& place, DriveBeatPtr beat) = 0;
  /// Of drives alone: an image has no tray.
  virtual void Eject(const QString& place) = 0;
  virtual void CloseTray(const QString& place) = 0;
};

/// Whether the name is that of a disc image: a CUE sheet or its BIN file, a TOC or an NRG file.
[[nodiscard]] bool IsDiscImage(const QString& name);
/// The file by which an image is opened: the CUE sheet beside a BIN file, else the file itself.
[[nodiscard]] QString ImageSheet(const QString& path);

/// The drives of the system, through libcdio.
[[nodiscard]] std::shared_ptr<DiscDrives> SystemDrives();

}  // namespace kelvo
