#pragma once

#include "audio/engine/SoundBlock.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace kelvo {

/// A title of a recording.
struct CueTitle {
  QString performer;
  QString title;
  FrameIndex frame = 0;  ///< where it begins, from the start of the recording on
};

/// The text of the cue sheet for `soundFile`, a file's name without a folder. The titles are in the order of
/// their frames; a sheet holds 99 of them, and the last one stands for all that follow.
[[nodiscard]] QByteArray CueSheetText(const QString& soundFile, const std::vector<CueTitle>& titles);

}  // namespace kelvo
