#include "demo_library/QuizSounds.h"

#include "demo_library/MusicFile.h"
#include "demo_library/Patches.h"
#include "demo_library/Renderer.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"

#include <QDir>

#include <initializer_list>

namespace kelvo::demo {
namespace {

Score Cymbal() {
  Score score;
  score.strokes = {{0.0, Drum::Crash, 1.0}, {0.0, Drum::Kick, 0.7}, {0.02, Drum::Ride, 0.6}};
  score.kitReverb = 0.3;
  score.length = 2.2;
  score.fadeOut = 0.9;
  return score;
}

Score DrumBreak() {
  Score score;
  for (int stroke = 0; stroke < 6; ++stroke) {
    const Drum drum = stroke < 2 ? Drum::Snare : stroke < 4 ? Drum::HighTom : Drum::LowTom;
    score.strokes.push_back({0.12 * stroke, drum, 0.6 + 0.06 * stroke});
  }
  score.strokes.push_back({0.78, Drum::Kick, 1.0});
  score.kitReverb = 0.25;
  score.length = 1.6;
  score.fadeOut = 0.4;
  return score;
}

/// A grunt, twice: a torn voice that slides up through its nose.
Score Grunt() {
  Patch voice = GrowlBass();
  voice.wave = Wave::Saw;
  voice.cutoff = 900.0;
  voice.resonance = 0.8;
  voice.sweep = 1.5;
  voice.sweepTime = 0.08;
  voice.drive = 0.7;
  Line line;
  line.patch = voice;
  line.level = 0.6;
  for (const double start : {0.0, 0.42}) {
    double pitch = 43.0;
    for (int slide = 0; slide < 5; ++slide) {
      line.notes.push_back({start + 0.045 * slide, 0.06, pitch, 0.9});
      pitch += slide < 3 ? 3.5 : -4.0;
    }
  }
  Score score;
  score.lines = {line};
  score.length = 1.1;
  score.fadeOut = 0.2;
  return score;
}

Score Opening() {
  const auto line = [](const Patch& patch, double level, double place, std::vector<Note> notes) {
    Line made;
    made.patch = patch;
    made.level = level;
    made.place = place;
    made.reverb = 0.3;
    made.notes = std::move(notes);
    return made;
  };
  std::vector<Note> brass;
  std::vector<Note> strings;
  std::vector<Note> bass;
  double start = 0.0;
  for (const double root : {60.0, 65.0, 67.0, 72.0}) {
    for (const double step : {0.0, 4.0, 7.0}) {
      brass.push_back({start + 0.09 * step / 4.0, 0.5, root + step, 0.85});
      strings.push_back({start, 0.95, root - 12.0 + step, 0.7});
    }
    bass.push_back({start, 0.9, root - 24.0, 0.9});
    start += 1.0;
  }
  for (const double step : {0.0, 4.0, 7.0, 12.0}) brass.push_back({4.0, 1.6, 72.0 + step, 0.9});
  Score score;
  score.lines = {line(Brass(), 0.26, -0.2, brass), line(Strings(), 0.16, 0.2, strings),
                 line(DeepBass(), 0.5, 0.0, bass)};
  for (int beat = 0; beat < 4; ++beat) {
    score.strokes.push_back({1.0 * beat, Drum::Kick, 0.9});
    score.strokes.push_back({0.5 + 1.0 * beat, Drum::Snare, 0.7});
  }
  for (int roll = 0; roll < 10; ++roll)
    score.strokes.push_back({3.5 + 0.05 * roll, Drum::Snare, 0.3 + 0.05 * roll});
  score.strokes.push_back({4.0, Drum::Crash, 1.0});
  score.roomSize = 0.7;
  score.length = 6.5;
  score.fadeOut = 1.2;
  return score;
}

struct QuizSound {
  QString name;
  Score score;
  Coding coding;
};

bool FillWhereEmpty(const QString& folder, const std::vector<QuizSound>& sounds, std::uint32_t seed) {
  QDir place(folder);
  if (!place.mkpath(QStringLiteral(".")))
    throw Failure(QStringLiteral("Cannot make the folder ") + folder, 0, folder);
  if (!place.isEmpty(QDir::Files)) return false;
  for (const QuizSound& each : sounds) {
    ReplaceFile(place.filePath(each.name), Encode(Render(each.score, seed), each.coding));
  }
  return true;
}

}  // namespace

bool MakeQuizSounds(const QString& programFolder, std::uint32_t seed) {
  const bool mixers = FillWhereEmpty(programFolder + QStringLiteral("/Quiz Mixers"),
                                     {{QStringLiteral("QzCymbol.wav"), Cymbal(), Coding::Wave16},
                                      {QStringLiteral("QzDrum.wav"), DrumBreak(), Coding::Wave16},
                                      {QStringLiteral("QzOink.WAV"), Grunt(), Coding::Wave16}},
                                     seed);
  const bool intros =
      FillWhereEmpty(programFolder + QStringLiteral("/Quiz Intros"),
                     {{QStringLiteral("Pop Quiz Fanfare.mp3"), Opening(), Coding::Mp3Constant192}}, seed);
  return mixers || intros;
}

}  // namespace kelvo::demo
