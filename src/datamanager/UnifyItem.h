#pragma once

#include "datamanager/GainTool.h"
#include "datamanager/TreatedCopy.h"
#include "datamanager/VolumeUnify.h"

namespace kelvo {

/// A file on its way through the run. Logic thread.
struct VolumeUnify::Item {
  QString path;
  bool mp3 = false;   ///< the tool takes it
  bool gone = false;  ///< the track was removed meanwhile
  UnifyState state = UnifyState::Listed;
  FileMark mark = {};
  double percent = 0;  ///< of the step that it is in
  GainStop stop = {};

  [[nodiscard]] QString Name() const;
  /// Its part of all the work.
  [[nodiscard]] double Weight() const { return mark.size > 0 ? static_cast<double>(mark.size) : 1; }
};

}  // namespace kelvo
