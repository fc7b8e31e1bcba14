#pragma once

#include "console/AutoDecision.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>

namespace kelvo::testing {

struct SoakOptions {
  int seconds = 3600;
  std::uint64_t seed = 1;
  AutoMode mode = AutoMode::Kelvo;
  bool random = false;
  std::function<void(int)> OnSecond;  ///< told of each simulated second
};

struct SoakResult {
  int faults = 0;
  int starts = 0;
  int skipped = 0;
  int longestSilence = 0;  ///< seconds of silence for which there was no reason
  int excusedSeconds = 0;  ///< seconds in which nothing could have been played
  QStringList violations;  ///< what must not be, with its second; the first few
};

/// Seconds within which sound must be back when something can be played: a tick (two seconds while a fade
/// walks), up to three ticks that come late, the loads and the start. The pause of the jukebox is not
/// counted.
inline constexpr int kSilenceBound = 8;

/// Automatic play for `options.seconds` of simulated time over a database made in `folder`, with faults by
/// chance: files that vanish, cannot be opened, are empty, end early; info files gone or garbled; the queue
/// edited; decks stopped by hand; the sound device lost; disks slow or hanging, or dying under a deck that
/// plays; ticks late; pauses; the operator speaking, cancelling, and switching it off and on with the slider
/// anywhere. Each second the desk must be in a state that it may be in, no start may come before its time,
/// and no track that is heard may be cut.
[[nodiscard]] SoakResult RunSoak(const QString& folder, const SoakOptions& options);

}  // namespace kelvo::testing
