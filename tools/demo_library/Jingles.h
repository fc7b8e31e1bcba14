#pragma once

#include "demo_library/Score.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace kelvo::demo {

/// A short sound for between the tracks.
struct Jingle {
  QString name;
  Score score;
  bool asWave = false;
};

/// The jingles of the library: station idents, stings, hits and a laugh.
[[nodiscard]] std::vector<Jingle> MakeJingles();

/// The loop that warns the operator; at most 0.7 s.
[[nodiscard]] Score MakeWarning();

}  // namespace kelvo::demo
