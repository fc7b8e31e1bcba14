#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace kelvo {

// What the tools that write discs are called with, and what they tell. Plain functions.

/// A recorder that the system has.
struct BurnDrive {
  QString device;  ///< "/dev/sr0"
  QString words;   ///< maker and model
};
/// The drives in the output of xorriso's list.
[[nodiscard]] std::vector<BurnDrive> DrivesIn(const QByteArray& output);

/// A disc as it is in the drive.
struct BurnMedium {
  bool there = false;
  bool blank = false;
  bool writable = false;         ///< blank, or something can be written all the same
  std::int64_t freeSectors = 0;  ///< of 2048 bytes; 75 sectors are a second of an audio CD
};
/// Of what xorriso told, both of its outputs.
[[nodiscard]] BurnMedium MediumIn(const QByteArray& output);
/// The sectors that the files will take.
[[nodiscard]] std::optional<std::int64_t> ImageSectorsIn(const QByteArray& output);
/// How much is done, 0 to 1, in a line of progress of one of the tools; none in any other line.
[[nodiscard]] std::optional<double> ShareIn(const QByteArray& line);
/// Whether a comparison said that all is equal.
[[nodiscard]] bool SaysEqual(const QByteArray& output);
/// The first sectors of a disc's tracks in cdrskin's table of contents.
[[nodiscard]] std::vector<std::int64_t> TrackStartsIn(const QByteArray& output);
/// The lines that tell of a failure, in the words of the tool; the last lines where none does.
[[nodiscard]] QString TroubleIn(const QByteArray& output);

// Arguments. `device` is a drive, or "stdio:" and the path of a file.
[[nodiscard]] QStringList ListDrives();
[[nodiscard]] QStringList LookAtMedium(const QString& device);
[[nodiscard]] QStringList MeasureImage(const QString& device, const QString& folder);
[[nodiscard]] QStringList BurnFolder(const QString& device, const QString& folder);
[[nodiscard]] QStringList CompareFolder(const QString& device, const QString& folder);
[[nodiscard]] QStringList BurnAudio(const QString& device, const QString& cueSheet);
[[nodiscard]] QStringList ReadContents(const QString& device);

/// Cuts output that comes in pieces into lines; "\r" ends one too. A line without an end is cut.
class LineCutter {
 public:
  explicit LineCutter(std::function<void(const QByteArray& line)> onLine) : onLine_(std::move(onLine)) {}
  void Take(const QByteArray& piece);

 private:
  std::function<void(const QByteArray& line)> onLine_;
  QByteArray rest_;
};

}  // namespace kelvo
