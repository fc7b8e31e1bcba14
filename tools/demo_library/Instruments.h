#pragma once

#include "demo_library/Filters.h"
#include "demo_library/Oscillator.h"
#include "demo_library/Sound.h"

#include <cstdint>

namespace kelvo::demo {

/// How a tone comes about.
enum class Voice {
  Subtractive,  ///< oscillators through a low-pass filter
  Plucked,      ///< a string model: a noise burst going round a damped delay
  Bell,         ///< one sine bends the phase of another: electric pianos, bells, marimbas
  Organ,        ///< a few sines, as by drawbars
};

/// The settings of an instrument. Only those of its voice count.
struct Patch {
  Voice voice = Voice::Subtractive;
  EnvelopeShape loudness;

  Wave wave = Wave::Saw;
  int copies = 1;            ///< oscillators a note, spread over the stereo width
  double detuneCents = 0.0;  ///< of the outermost copies
  double sub = 0.0;          ///< level of a sine one octave below
  double cutoff = 2000.0;    ///< hertz at the note C4; follows the note half way
  double resonance = 0.1;
  double sweep = 0.0;       ///< octaves that the cutoff begins above its place
  double sweepTime = 0.2;   ///< seconds of its way back
  double vibratoCents = 0;  ///< sets in after a third of a second
  double drive = 0.0;       ///< 0 clean .. 1 a torn amplifier

  double ring = 3.0;        ///< Plucked: seconds that the string sounds
  double brightness = 0.5;  ///< Plucked: 0 dull .. 1 wire

  double ratio = 1.0;     ///< Bell: the bending sine's frequency by the note's
  double bend = 1.0;      ///< Bell: how far it bends at first
  double bendTime = 0.5;  ///< Bell: seconds until that has gone
};

/// One note as it's played.
struct Note {
  double start = 0.0;   ///< seconds
  double length = 0.5;  ///< seconds until it's let go
  double pitch = 60.0;  ///< note number
  double velocity = 0.8;
};

/// Adds a note to `target`, which cuts what would ring beyond its end. `seed` decides the phases and the
/// noise.
void AddNote(const Patch& patch, const Note& note, std::uint32_t seed, StereoSound& target);

}  // namespace kelvo::demo
