#include "demo_library/Melody.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace kelvo::demo {

namespace {

struct Onset {
  int step;
  int steps;
};

std::vector<Onset> OnsetsOf(std::string_view rhythm) {
  std::vector<Onset> onsets;
  for (std::size_t i = 0; i < rhythm.size(); ++i) {
    if (rhythm[i] == 'x') {
      onsets.push_back({static_cast<int>(i), 1});
    } else if (rhythm[i] == '-' && !onsets.empty()) {
      ++onsets.back().steps;
    }
  }
  return onsets;
}

/// The chord tone, as a scale degree, that is nearest to `degree`.
int NearestChordTone(int degree, int chord) {
  int best = chord;
  for (int octave = -4; octave <= 4; ++octave) {
    for (const int tone : ChordOf(chord, false)) {
      const int candidate = tone + 7 * octave;
      if (std::abs(candidate - degree) < std::abs(best - degree)) best = candidate;
    }
  }
  return best;
}

}  // namespace

std::vector<MelodyNote> WriteMelody(const Key& key, const Progression& chords, int stepsPerBar,
                                    const std::vector<std::string_view>& rhythms, int centre,
                                    RandomSource& chance) {
  if (rhythms.empty()) return {};
  const auto pick = [&] {
    return rhythms[static_cast<std::size_t>(chance.Below(static_cast<int>(rhythms.size())))];
  };
  const std::string_view idea = pick();
  const std::string_view answer = pick();

  const auto middle = static_cast<int>(std::lround((centre - key.root) * 7.0 / 12.0));
  int degree = NearestChordTone(middle, chords[0]);
  std::vector<int> contour;  // the first bar's moves from note to note, for the third bar
  std::vector<MelodyNote> melody;
  for (int bar = 0; bar < 4; ++bar) {
    const int chord = chords[static_cast<std::size_t>(bar)];
    std::vector<Onset> onsets = OnsetsOf(bar % 2 == 0 ? idea : answer);
    if (bar == 3) {
      // The close: what begins in the first half, the last of it held to three quarters of the bar.
      std::erase_if(onsets, [&](const Onset& onset) { return onset.step > stepsPerBar / 2; });
      if (onsets.empty()) onsets.push_back({0, 1});
      onsets.back().steps = std::max(1, stepsPerBar * 3 / 4 - onsets.back().step);
    }
    for (std::size_t i = 0; i < onsets.size(); ++i) {
      const Onset& onset = onsets[i];
      const bool strong = onset.step % 8 == 0 || onset.steps >= 4;
      int move = 0;
      if (bar == 2 && i < contour.size()) {
        move = contour[i];
      } else {
        // It would rather go back when it has gone far.
        const bool up = chance.Next() < (degree > middle ? 0.35 : 0.65);
        move = (strong ? 1 + chance.Below(3) : 1) * (up ? 1 : -1);
      }
      if (bar == 0) contour.push_back(move);
      degree = std::clamp(degree + move, middle - 5, middle + 6);
      const bool last = bar == 3 && i + 1 == onsets.size();
      if (strong || last) degree = NearestChordTone(degree, chord);
      melody.push_back({bar * stepsPerBar + onset.step, onset.steps, key.NoteOf(degree)});
    }
  }
  return melody;
}

}  // namespace kelvo::demo
