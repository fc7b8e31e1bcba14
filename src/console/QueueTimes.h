#pragma once

#include "console/automatic/AutoPlay.h"
#include "console/decks/DeckEngine.h"
#include "console/queue/PlayQueue.h"
#include "console/session/PlayedTracks.h"

#include <QDateTime>

#include <optional>
#include <vector>

namespace kelvo {

/// When each row of the queue will play, as far as can be told.
struct OutlookQuestion {
  struct Row {
    double seconds = 0;  ///< below 0: unknown
    bool toPlay = true;  ///< not played yet
  };
  std::vector<Row> rows;
  int onAir = 0;       ///< the row that plays, from 1; 0: none
  int next = 0;        ///< the row that is in the other deck already; 0: none
  double left = 0;     ///< seconds of the track on air
  int overlap = 0;     ///< seconds by which a track begins before the one in front of it ends
  bool again = false;  ///< automatic play: played rows play again, and the list goes round
};

/// Seconds until each row plays, in the order of the list; none for what plays, for what comes behind a track
/// of unknown length, and for all rows while nothing plays.
[[nodiscard]] std::vector<std::optional<double>> QueueOutlook(const OutlookQuestion& question);

/// For the rows of the queue: how long until each plays, and when its track was last played in this session.
/// Worked out once a beat. Owned by the Console; logic thread.
class QueueTimes {
 public:
  QueueTimes(const PlayQueue& queue, const DeckEngine& decks, const AutoPlay& automatic,
             const ConsoleState& state, const Catalogue& catalogue, const PlayedTracks& played);

  /// A beat of the clock.
  void Tick();

  /// For eyes, as "04:30"; empty when it can't be told. Rows from 1.
  [[nodiscard]] QString PlaysIn(int index) const;
  /// As "21:05"; empty when it was not played.
  [[nodiscard]] QString LastPlayed(int index) const;

 private:
  [[nodiscard]] OutlookQuestion Question() const;

  const PlayQueue& queue_;
  const DeckEngine& decks_;
  const AutoPlay& automatic_;
  const ConsoleState& state_;
  const Catalogue& catalogue_;
  const PlayedTracks& played_;
  std::vector<std::optional<double>> seconds_;
};

}  // namespace kelvo
