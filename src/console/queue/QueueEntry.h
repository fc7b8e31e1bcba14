#pragma once

#include "database/TextColumns.h"

#include <QString>
#include <QTime>

namespace kelvo {

/// What became of a row's track.
enum class RowStatus {
  Waiting,     ///< not played yet
  Reset,       ///< not played since automatic play was started
  Faded,       ///< another track was loaded over it before it came to its end
  NowPlaying,  ///< it was started
  Stopped,     ///< by hand
  Played,      ///< to its end
};

/// The columns of the queue list, by sub-item number. Those from PlistData to MrefColumn are never shown.
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

/// What a row holds, wherever it is in the list. A value.
struct QueueContent {
  RowId id = RowId::None;   ///< given by the queue
  QString title;            ///< the track's name for the eye
  Mref track = Mref::None;  ///< none for a sound bite
  QString path;             ///< of the file that the deck plays
  QString date;
  QString hi;
  QString bpm;
  QString genre;         ///< or its length, while the queue shows timings
  QString playlistData;  ///< a row with data of its own can be neither moved nor cut
  QString note;          ///< how it came in: "Play Me", a playlist's words
  int requests = 0;      ///< so many wishes wait for this track
  QString requestText;
  bool soundBite = false;
  RowStatus status = RowStatus::Waiting;
  QTime statusTime;  ///< since when, for all but the first two

  [[nodiscard]] bool Locked() const { return !playlistData.isEmpty(); }
  [[nodiscard]] bool IsRequest() const { return requests > 0; }
  /// The words of a column, as the list shows and sorts them.
  [[nodiscard]] QString Text(QueueColumn column) const;
};

/// A row of the play queue. A value.
struct QueueEntry : QueueContent {
  int Tag = 0;  ///< list position from 1, what "By List Position" sorts on
};

}  // namespace kelvo
