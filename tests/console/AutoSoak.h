#pragma once

#include "console/SoakOracle.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <map>

namespace kelvo::testing {

struct SoakOptions {
  int seconds = 3600;
  std::uint64_t seed = 1;
  SoakMode mode = SoakMode::Kelvo;
  std::function<void(int)> OnSecond;  ///< called at each simulated second
};

struct SoakResult {
  int faults = 0;
  int starts = 0;
  int startsCompared = 0;  ///< in time and manner with what the rules say
  int startsExcused = 0;   ///< a fault had touched them
  int skipped = 0;
  double longestSilence = 0;           ///< seconds of silence for which there was no reason
  std::map<QString, double> silences;  ///< seconds in which nothing could have been heard, by reason
  std::map<QString, int> excuses;      ///< the starts that were excused, by reason
  QStringList violations;              ///< what must not be, with its second; the first few
  int violationCount = 0;
  [[nodiscard]] double ExcusedSeconds() const;
};

/// Seconds within which sound must be back when something can be played: the tick that sees a deck end, two
/// seconds while a fade runs, the load, the tick that starts it and the way to its first audible step. The
/// pause of the jukebox is not counted.
inline constexpr int kSilenceBound = 5;

/// Automatic play on the joined desk for `options.seconds` of simulated time over a database made in
/// `folder`, with faults by chance. Ten times a second what the decks do is compared with what the rules say:
/// when each track starts and how, that it is heard to where the next one comes in, how high the levels are,
/// which row comes next, and that there is no silence but for a reason. The same options give the same
/// result.
[[nodiscard]] SoakResult RunSoak(const QString& folder, const SoakOptions& options);

}  // namespace kelvo::testing
