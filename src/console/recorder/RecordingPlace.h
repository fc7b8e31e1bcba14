#pragma once

#include "audio/RecordingFile.h"

#include <QDateTime>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace kelvo {

/// Where a recording can begin.
struct RecordingPlace {
  QString path;
  std::int64_t freeBytes = -1;  ///< on its disk; -1: unknown
};

/// Makes `folder` where it is missing, and gives the name of a recording that begins `now`: "On air
/// 2007-06-01 20-00-00.flac", with a number behind it where a sound file or a cue sheet of that name is
/// there. Throws Failure. Blocks; any thread.
[[nodiscard]] RecordingPlace PlaceForRecording(const QString& folder, const QDateTime& now,
                                               RecordingFile::Kind kind);

/// A recording that lies in the folder. A value.
struct KeptRecording {
  QString name;  ///< the file's, without a folder
  QString path;
  std::int64_t bytes = 0;
  std::optional<double> seconds = {};  ///< none: it can't be read
};

/// The recordings in `folder`, known by their names, the latest first: a hundred at most. None where there is
/// no such folder. Blocks; any thread.
[[nodiscard]] std::vector<KeptRecording> RecordingsIn(const QString& folder);

/// "512 kB", "84 MB", "12.5 GB" (of 1024).
[[nodiscard]] QString SizeText(std::int64_t bytes);

}  // namespace kelvo
