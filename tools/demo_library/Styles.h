#pragma once

#include "demo_library/Drums.h"
#include "demo_library/Instruments.h"

#include <string_view>
#include <vector>

namespace kelvo::demo {

/// A drum's line through a bar: a character a sixteenth, "x" a stroke, "X" an accent, "o" a soft one, "."
/// none. A line of two bars' length goes over two bars.
struct DrumLine {
  Drum drum = Drum::Kick;
  std::string_view steps;
};

/// An instrument's place in a style. Its steps are read by its job:
/// bass: 1 3 5 7 a chord tone, 8 the octave, a the step that leads to the next chord;
/// chords: x X o as drums; arpeggio: 0 .. 9 the chord tone counted upwards. In all "-" holds and "." is
/// silent.
struct Role {
  Patch patch;
  std::string_view first;   ///< in the A sections
  std::string_view second;  ///< in the B sections; empty: as the first
  int centre = 60;          ///< the note around which it plays
  double level = 0.0;       ///< 0: the style has none
  double place = 0.0;
  double reverb = 0.15;
  double echo = 0.0;
};

/// How a kind of music goes: who plays, and in which patterns.
struct Style {
  int beatsPerBar = 4;
  double swing = 0.0;            ///< 0 straight .. 1 triplets
  bool swingSixteenths = false;  ///< the sixteenths swing, not the eighths
  bool sevenths = false;
  std::vector<DrumLine> beat;
  std::vector<DrumLine> secondBeat;  ///< in the B sections; empty: as the first
  Role bass;
  Role chords;
  Role pad;  ///< holds each bar's chord
  Role arpeggio;
  Role lead;
  std::vector<std::string_view> leadRhythms;  ///< bars of onsets and holds that the melody is made of
  KitSound kit;
  double kitLevel = 0.8;
  double kitReverb = 0.06;
  double duck = 0.0;
  double echoBeats = 0.75;
  double roomSize = 0.5;
};

enum class StyleName {
  House,
  Disco,
  Trance,
  DrumAndBass,
  Reggae,
  Ballad,
  Rock,
  Ambient,
  Bossa,
  TripHop,
  NewWave,
  Waltz,
  Swing,
  Chip,
  Techno,
  Polka,
  Ska,
  JazzFunk,
};

[[nodiscard]] Style StyleOf(StyleName name);

}  // namespace kelvo::demo
