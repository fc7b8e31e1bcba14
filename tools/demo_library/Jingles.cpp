#include "demo_library/Jingles.h"

#include "demo_library/Patches.h"

#include <initializer_list>

namespace kelvo::demo {

namespace {

Line Play(const Patch& patch, double level, double place, std::vector<Note> notes) {
  Line line;
  line.patch = patch;
  line.level = level;
  line.place = place;
  line.reverb = 0.3;
  line.notes = std::move(notes);
  return line;
}

std::vector<Note> Chord(double start, double length, std::initializer_list<double> pitches) {
  std::vector<Note> notes;
  for (const double pitch : pitches) notes.push_back({start, length, pitch, 0.85});
  return notes;
}

/// Notes one after the other, `gap` seconds apart.
std::vector<Note> Run(double start, double gap, double length, std::initializer_list<double> pitches) {
  std::vector<Note> notes;
  for (const double pitch : pitches) {
    notes.push_back({start, length, pitch, 0.85});
    start += gap;
  }
  return notes;
}

Score StationIdent() {
  Score score;
  score.lines = {Play(GlassBell(), 0.35, 0.2, Run(0.0, 0.16, 1.6, {67, 71, 74, 79, 83})),
                 Play(Strings(), 0.16, 0.0, Chord(0.64, 1.8, {55, 62, 67, 71, 74})),
                 Play(Brass(), 0.22, -0.2, Run(0.8, 0.24, 0.22, {67, 71, 74})),
                 Play(Brass(), 0.24, -0.2, Chord(1.6, 0.9, {67, 71, 79})),
                 Play(DeepBass(), 0.5, 0.0, Run(0.8, 0.8, 0.75, {31, 43}))};
  score.strokes = {{0.8, Drum::Kick, 0.9},
                   {1.6, Drum::Kick, 1.0},
                   {1.6, Drum::Crash, 0.8},
                   {1.28, Drum::Snare, 0.5},
                   {1.44, Drum::Snare, 0.7}};
  score.roomSize = 0.7;
  score.length = 3.6;
  score.fadeOut = 0.8;
  return score;
}

Score ShortIdent() {
  Score score;
  score.lines = {Play(ElectricPiano(), 0.4, 0.0, Run(0.0, 0.14, 0.9, {74, 79, 83})),
                 Play(WideSaw(), 0.14, 0.0, Chord(0.42, 0.6, {55, 62, 67, 71}))};
  score.strokes = {{0.42, Drum::Clap, 0.9}, {0.42, Drum::Kick, 1.0}};
  score.length = 1.7;
  score.fadeOut = 0.5;
  return score;
}

Score NewsSting() {
  Score score;
  score.lines = {
      Play(SquareLead(), 0.12, 0.3, Run(0.0, 0.1, 0.08, {72, 72, 79, 72, 72, 79, 72, 72, 81, 72, 72, 79})),
      Play(Strings(), 0.2, 0.0, Chord(0.0, 1.15, {48, 60, 67, 72})),
      Play(Brass(), 0.3, -0.1, Chord(1.2, 0.8, {55, 62, 67, 74}))};
  score.strokes = {{0.0, Drum::LowTom, 1.0},  {0.6, Drum::LowTom, 0.8}, {1.0, Drum::HighTom, 0.7},
                   {1.1, Drum::HighTom, 0.8}, {1.2, Drum::Kick, 1.0},   {1.2, Drum::Crash, 0.9}};
  score.roomSize = 0.6;
  score.length = 2.8;
  score.fadeOut = 0.7;
  return score;
}

Score DrumRoll() {
  Score score;
  for (int i = 0; i < 36; ++i) score.strokes.push_back({0.045 * i, Drum::Snare, 0.25 + 0.018 * i});
  score.strokes.push_back({1.66, Drum::Kick, 1.0});
  score.strokes.push_back({1.66, Drum::Crash, 1.0});
  score.kitReverb = 0.2;
  score.length = 3.2;
  score.fadeOut = 0.8;
  return score;
}

Score Fanfare() {
  Score score;
  score.lines = {Play(Brass(), 0.3, -0.3, Run(0.0, 0.16, 0.14, {67, 67, 67})),
                 Play(Brass(), 0.3, -0.3, Chord(0.48, 1.1, {72, 76})),
                 Play(Brass(), 0.26, 0.3, Run(0.0, 0.16, 0.14, {60, 60, 60})),
                 Play(Brass(), 0.26, 0.3, Chord(0.48, 1.1, {60, 67})),
                 Play(Tuba(), 0.4, 0.0, Run(0.0, 0.48, 0.5, {43, 36}))};
  score.strokes = {{0.48, Drum::Crash, 0.8}, {0.48, Drum::Kick, 1.0}};
  score.roomSize = 0.8;
  score.length = 2.4;
  score.fadeOut = 0.7;
  return score;
}

Score RobotLaugh() {
  Patch voice = Brass();
  voice.resonance = 0.75;
  voice.vibratoCents = 60.0;
  Score score;
  score.lines = {Play(voice, 0.4, 0.0, Run(0.0, 0.17, 0.11, {64, 62.6, 61.3, 60.1, 59, 57.8, 56.4})),
                 Play(voice, 0.4, 0.1, Run(1.3, 0.24, 0.2, {60, 56}))};
  score.length = 2.2;
  score.fadeOut = 0.3;
  return score;
}

Score BigHit() {
  Score score;
  score.lines = {Play(WideSaw(), 0.2, 0.0, Chord(0.0, 0.35, {48, 55, 60, 63, 67})),
                 Play(GrowlBass(), 0.4, 0.0, Chord(0.0, 0.5, {36}))};
  score.strokes = {{0.0, Drum::Kick, 1.0}, {0.0, Drum::Crash, 1.0}, {0.0, Drum::Clap, 1.0}};
  score.kitReverb = 0.3;
  score.roomSize = 0.9;
  score.length = 2.0;
  score.fadeOut = 1.0;
  return score;
}

Score PubBell() {
  Score score;
  score.lines = {Play(GlassBell(), 0.5, 0.0, Run(0.0, 0.42, 0.4, {84, 84, 84})),
                 Play(GlassBell(), 0.2, 0.0, Run(0.0, 0.42, 0.4, {91.3, 91.3, 91.3}))};
  score.roomSize = 0.4;
  score.length = 2.6;
  score.fadeOut = 0.9;
  return score;
}

}  // namespace

std::vector<Jingle> MakeJingles() {
  return {{QStringLiteral("Ident Long"), StationIdent(), false},
          {QStringLiteral("Ident Short"), ShortIdent(), false},
          {QStringLiteral("News Sting"), NewsSting(), false},
          {QStringLiteral("Drum Roll"), DrumRoll(), true},
          {QStringLiteral("Fanfare"), Fanfare(), false},
          {QStringLiteral("Robot Laugh"), RobotLaugh(), true},
          {QStringLiteral("Big Hit"), BigHit(), false},
          {QStringLiteral("Last Orders Bell"), PubBell(), false}};
}

Score MakeWarning() {
  Score score;
  score.lines = {Play(SquareLead(), 0.4, 0.0, Run(0.0, 0.16, 0.12, {81, 76}))};
  score.lines.front().reverb = 0.0;
  score.length = 0.6;
  return score;
}

}  // namespace kelvo::demo
