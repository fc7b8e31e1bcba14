#pragma once

#include "console/queue/QueueEntry.h"

#include <QStringList>

#include <vector>

namespace kelvo {

/// What a playlist brings into the queue.
struct QueueFill {
  struct Row {
    Mref track = Mref::None;
    QString title;
    QString path;
    QString note;
    QString line = {};  ///< of a group playlist
  };
  QString name = {};  ///< empty: the queue keeps its own, and stays what it is
  QString folder = {};
  bool group = false;  ///< a track that is in the queue gets another line, and no second row
  bool clearFirst = false;
  std::vector<Row> rows;
};

/// The queue as it was before the last cut, clear or load. A value of the PlayQueue, which keeps its tracks
/// true to the catalogue.
struct QueueUndo {
  std::vector<QueueEntry> rows;
  int selected = 0;
  QString name;
  qint64 totalSeconds = 0;
  int lastQueueIndex = 0;
  bool group = false;
  QStringList groupLines;
  std::vector<RowId> groupRows;
  QString playlistFolder;

  std::vector<RowId> added;  ///< by the load that is undone
  QString nameAfter;         ///< the operator may have given another since
};

}  // namespace kelvo
