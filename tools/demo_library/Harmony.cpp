#include "demo_library/Harmony.h"

#include <algorithm>

namespace kelvo::demo {

namespace {

using Scale = std::array<int, 7>;

const Scale& ScaleOf(Mode mode) {
  static constexpr Scale kMajor{0, 2, 4, 5, 7, 9, 11};
  static constexpr Scale kMinor{0, 2, 3, 5, 7, 8, 10};
  static constexpr Scale kDorian{0, 2, 3, 5, 7, 9, 10};
  static constexpr Scale kMixolydian{0, 2, 4, 5, 7, 9, 10};
  switch (mode) {
    case Mode::Minor:
      return kMinor;
    case Mode::Dorian:
      return kDorian;
    case Mode::Mixolydian:
      return kMixolydian;
    case Mode::Major:
      break;
  }
  return kMajor;
}

}  // namespace

int Key::NoteOf(int degree) const {
  const int octave = degree >= 0 ? degree / 7 : -((6 - degree) / 7);
  return root + 12 * octave + ScaleOf(mode)[static_cast<std::size_t>(degree - 7 * octave)];
}

const std::vector<Progression>& ProgressionsOf(Mode mode) {
  static const std::vector<Progression> major{{0, 4, 5, 3}, {0, 5, 3, 4}, {0, 2, 3, 4},
                                              {3, 4, 2, 5}, {1, 4, 0, 5}, {3, 0, 1, 4}};
  static const std::vector<Progression> minor{{0, 5, 2, 6}, {0, 3, 6, 2}, {0, 6, 5, 6},
                                              {5, 6, 0, 0}, {3, 0, 5, 6}, {5, 2, 6, 0}};
  static const std::vector<Progression> dorian{{0, 3, 0, 3}, {0, 2, 3, 0}, {0, 6, 3, 0},
                                               {3, 3, 0, 6}, {1, 3, 0, 0}, {2, 3, 6, 0}};
  static const std::vector<Progression> mixolydian{{0, 6, 3, 0}, {0, 3, 6, 3}, {0, 0, 6, 3},
                                                   {3, 0, 6, 0}, {1, 6, 3, 0}, {6, 3, 0, 4}};
  switch (mode) {
    case Mode::Minor:
      return minor;
    case Mode::Dorian:
      return dorian;
    case Mode::Mixolydian:
      return mixolydian;
    case Mode::Major:
      break;
  }
  return major;
}

std::vector<int> ChordOf(int degree, bool seventh) {
  std::vector<int> tones{degree, degree + 2, degree + 4};
  if (seventh) tones.push_back(degree + 6);
  return tones;
}

int Near(int note, int centre) {
  while (note >= centre + 6) note -= 12;
  while (note < centre - 6) note += 12;
  return note;
}

std::vector<int> VoicingOf(const Key& key, int degree, bool seventh, int centre) {
  std::vector<int> notes;
  for (const int tone : ChordOf(degree, seventh)) notes.push_back(Near(key.NoteOf(tone), centre));
  std::sort(notes.begin(), notes.end());
  return notes;
}

}  // namespace kelvo::demo
