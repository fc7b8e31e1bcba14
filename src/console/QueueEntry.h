#pragma once

#include "database/TextColumns.h"

#include <QString>

#include <array>

namespace kelvo {

/// What the colour of a queue row tells.
enum class QueueColour {
  Plain,       ///< added by hand or from a playlist, not yet played
  Request,     ///< yellow: an unplayed request; this alone is how the queue knows requests
  Reset,       ///< cyan: reset by the start of automatic play
  NowPlaying,  ///< magenta
  Faded,       ///< white: a faded track, or a queued sound bite
  Played,      ///< green: stopped or played to its end
};

/// What became of a track, as MarkQueueRow takes it.
enum class QueueStatus { Reset = 1, Faded = 2, NowPlaying = 3, Stopped = 4, Played = 5 };

/// The columns of the queue list, by sub-item number. Those from PlistData to MrefColumn are hidden data.
enum QueueColumn : int {
  TrackColumn,
  CommentColumn,
  DateColumn,
  HiColumn,
  BpmColumn,
  PlistDataColumn,
  PathColumn,
  ReqdataColumn,
  MrefColumn,
  GenreColumn,
  QueueColumnCount,
};

/// A row for as long as it is in the queue, wherever it moves.
enum class RowId : int { None = 0 };

/// A row of the play queue. A value.
struct QueueEntry {
  RowId Id = RowId::None;  ///< given by the queue
  std::array<QString, QueueColumnCount> columns;
  int Tag = 0;  ///< list position from 1, what "By List Position" sorts on
  QueueColour ForeColor = QueueColour::Plain;

  [[nodiscard]] const QString& Text(QueueColumn column) const {
    return columns[static_cast<std::size_t>(column)];
  }
  void Set(QueueColumn column, const QString& text) { columns[static_cast<std::size_t>(column)] = text; }
  /// None for a sound bite and for a row without a number.
  [[nodiscard]] Mref Track() const { return ToMref(Text(MrefColumn).toInt()); }
  /// A row with playlist data of its own can be neither moved nor cut.
  [[nodiscard]] bool Locked() const { return !Text(PlistDataColumn).isEmpty(); }
};

}  // namespace kelvo
