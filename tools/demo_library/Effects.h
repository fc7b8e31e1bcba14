#pragma once

#include "demo_library/Sound.h"

namespace kelvo::demo {

/// The room: adds the reverberation of `in` to `out`. `size` 0 .. 1.
void AddReverb(const StereoSound& in, double size, StereoSound& out);

/// Repetitions that wander from side to side, each duller and softer than the last; added to `out`.
void AddEcho(const StereoSound& in, double seconds, StereoSound& out);

/// Takes away what lies below hearing, and any constant part.
void RemoveRumble(StereoSound& sound);

/// Straight lines up at the beginning and down at the end, in seconds; a very short one keeps the edges from
/// clicking.
void Fade(StereoSound& sound, double in, double out);

/// Brings the mean power of what sounds to `loudness` decibels, as far as its peaks allow, and the peak to -1
/// dB. Peaks are turned down ahead of themselves, not cut.
void Master(StereoSound& sound, double loudness);

}  // namespace kelvo::demo
