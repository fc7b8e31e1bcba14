#pragma once

#include "demo_library/Drums.h"
#include "demo_library/Instruments.h"

#include <vector>

namespace kelvo::demo {

/// One instrument's line in a piece.
struct Line {
  Patch patch;
  std::vector<Note> notes;
  double level = 1.0;
  double place = 0.0;   ///< -1 left .. 1 right
  double reverb = 0.1;  ///< how much of it goes to the reverb
  double echo = 0.0;    ///< and to the echo
  bool ducks = false;   ///< gives way to the kick
};

struct Stroke {
  double start = 0.0;  ///< seconds
  Drum drum = Drum::Kick;
  double velocity = 1.0;
};

/// A piece, ready to be played.
struct Score {
  std::vector<Line> lines;
  std::vector<Stroke> strokes;
  KitSound kit;
  double kitLevel = 1.0;
  double kitReverb = 0.05;
  double duck = 0.0;         ///< 0 none .. 1 the lines that duck vanish under the kick
  double echoSeconds = 0.3;  ///< between two repetitions
  double roomSize = 0.5;     ///< 0 a cupboard .. 1 a church
  double length = 0.0;       ///< seconds, tails included
  double fadeIn = 0.0;       ///< seconds
  double fadeOut = 0.0;      ///< seconds, up to the end
};

}  // namespace kelvo::demo
