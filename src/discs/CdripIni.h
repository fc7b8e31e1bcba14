#pragma once

#include "discs/TrackReading.h"

#include <QByteArray>
#include <QString>

namespace kelvo {

/// What `cdrip.ini` says, a text file in the program's folder that the operator edits: how discs are read. A
/// value.
struct CdripIni {
  QString device;  ///< the drive that is chosen at first; empty: the first one
  int offset = 0;  ///< frames by which the drive reads too early; negative: too late
  int speed = 0;   ///< times as fast as it is heard; 0: as the drive likes
  ReadMode mode = ReadMode::Twice;
  QString writer;             ///< the name of the output writer
  QStringList nonsense = {};  ///< lines that say nothing, for the log

  /// What is missing or nonsense is as it is at first.
  [[nodiscard]] static CdripIni FromBytes(const QByteArray& bytes);
  /// The file as it is made at first, with remarks.
  [[nodiscard]] static QByteArray First();
};

/// Reads the file, and makes it where there is none. Blocks; any thread. Throws Failure.
[[nodiscard]] CdripIni ReadCdripIni(const QString& path);

}  // namespace kelvo
