#pragma once

#include "console/queue/QueueEntry.h"

namespace kelvo {

/// What a deck is to load: found when the command is given, so that the queue may change meanwhile.
struct LoadRequest {
  RowId row = RowId::None;  ///< none in a preview
  Mref track = Mref::None;
  QString path;
  QString requestText;
};

/// What came of a load.
enum class DeckLoad {
  Loaded,
  BadFile,   ///< gone, of another kind, or without sound that can be decoded
  NoAnswer,  ///< its disk gave nothing in time
  Dropped,   ///< nothing to load, or overtaken by another
};

}  // namespace kelvo
