#pragma once

#include <array>
#include <vector>

namespace kelvo::demo {

enum class Mode { Major, Minor, Dorian, Mixolydian };

/// A key: its first note (a note number in the octave of C4, 60 .. 71) and its mode.
struct Key {
  int root = 60;
  Mode mode = Mode::Major;

  /// The note of a scale degree: 0 is the root, 7 the root an octave above, below 0 goes down.
  [[nodiscard]] int NoteOf(int degree) const;
};

/// Four bars of harmony: a scale degree for each bar.
using Progression = std::array<int, 4>;

/// Progressions that sound at home in a mode; the first half are restful, the second half move on.
[[nodiscard]] const std::vector<Progression>& ProgressionsOf(Mode mode);

/// The scale degrees of the chord on `degree`: a triad, or with the seventh.
[[nodiscard]] std::vector<int> ChordOf(int degree, bool seventh);

/// The notes of the chord, each in the octave around `centre`, from low to high: so one chord leads to the
/// next with small steps of its voices.
[[nodiscard]] std::vector<int> VoicingOf(const Key& key, int degree, bool seventh, int centre);

/// `note` moved by octaves to stand within half an octave of `centre`.
[[nodiscard]] int Near(int note, int centre);

}  // namespace kelvo::demo
