#include "demo_library/Composer.h"

#include "demo_library/Melody.h"
#include "platform/RandomSource.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

namespace kelvo::demo {

namespace {

/// Who plays in a section.
struct Layers {
  bool drums = false;
  bool bass = false;
  bool chords = false;
  bool pad = false;
  bool arpeggio = false;
  bool lead = false;
};

struct Section {
  char letter = 'A';  ///< I introduction, A and B, C the quiet one, O the end
  int firstBar = 0;
  int bars = 4;
  Layers layers;
};

/// The harmony and the melody of the sections of a letter.
struct Material {
  Progression chords{};
  std::vector<MelodyNote> melody;
};

class Composer {
 public:
  explicit Composer(const Plan& plan);
  Score Write();

 private:
  void LayOut();
  [[nodiscard]] Layers LayersOf(char letter, int phrase) const;
  [[nodiscard]] const Material& MaterialOf(const Section& section) const;
  [[nodiscard]] int ChordAt(const Section& section, int bar) const;
  [[nodiscard]] double TimeOf(int step) const;
  [[nodiscard]] double Human(double velocity);
  [[nodiscard]] static std::string_view StepsOf(const Role& role, const Section& section);

  void WriteDrums(const Section& section);
  void WriteFill(const Section& section);
  void WriteBass(const Section& section);
  void WriteChords(const Section& section);
  void WritePad(const Section& section);
  void WriteArpeggio(const Section& section);
  void WriteLead(const Section& section);
  void WriteEnd();

  enum LineIndex : std::size_t { kBass, kChords, kPad, kArpeggio, kLead, kLineCount };
  void Add(LineIndex line, double start, double end, double pitch, double velocity);
  void Strike(int step, Drum drum, double velocity);

  const Plan& plan_;
  Style style_;
  RandomSource chance_;
  int stepsPerBar_;
  double stepSeconds_;
  Material first_;
  Material second_;
  std::vector<Section> sections_;
  int bars_ = 0;
  Score score_;
};

Line LineOf(const Role& role, bool ducks) {
  Line line;
  line.patch = role.patch;
  line.level = role.level;
  line.place = role.place;
  line.reverb = role.reverb;
  line.echo = role.echo;
  line.ducks = ducks;
  return line;
}

double VelocityOf(char step) {
  switch (step) {
    case 'X':
      return 1.0;
    case 'x':
      return 0.75;
    case 'o':
      return 0.42;
    default:
      return 0.0;
  }
}

/// How many steps from `place` on a pattern holds what begins there.
int HeldSteps(std::string_view steps, std::size_t place) {
  std::size_t end = place + 1;
  while (end < steps.size() && steps[end] == '-') ++end;
  return static_cast<int>(end - place);
}

/// Calls `play(step, place)` for each step of a section; the pattern begins anew where it ends.
template <typename Play>
void Walk(std::string_view steps, const Section& section, int stepsPerBar, Play play) {
  const int first = section.firstBar * stepsPerBar;
  for (int i = 0; i < section.bars * stepsPerBar; ++i) {
    play(first + i, static_cast<std::size_t>(i) % steps.size());
  }
}

Composer::Composer(const Plan& plan)
    : plan_(plan),
      style_(StyleOf(plan.style)),
      chance_(plan.seed),
      stepsPerBar_(style_.beatsPerBar * 4),
      stepSeconds_(60.0 / plan.bpm / 4.0) {
  const std::vector<Progression>& choice = ProgressionsOf(plan.key.mode);
  const int half = static_cast<int>(choice.size()) / 2;
  const int restful = chance_.Below(half);
  const int moving = half + chance_.Below(half);
  first_.chords = choice[static_cast<std::size_t>(restful)];
  second_.chords = choice[static_cast<std::size_t>(moving)];
  first_.melody =
      WriteMelody(plan.key, first_.chords, stepsPerBar_, style_.leadRhythms, style_.lead.centre, chance_);
  second_.melody = WriteMelody(plan.key, second_.chords, stepsPerBar_, style_.leadRhythms,
                               style_.lead.centre + 2, chance_);
}

Layers Composer::LayersOf(char letter, int phrase) const {
  switch (letter) {
    case 'I':
      return plan_.strongStart ? Layers{.drums = true, .bass = true, .chords = true}
                               : Layers{.pad = true, .arpeggio = true};
    case 'A':
      return {.drums = true,
              .bass = true,
              .chords = true,
              .pad = phrase > 0,
              .arpeggio = phrase > 0,
              .lead = true};
    case 'B':
      return {.drums = true, .bass = true, .chords = true, .pad = true, .arpeggio = true, .lead = true};
    case 'C':
      return {.bass = phrase % 2 == 0, .pad = true, .arpeggio = true, .lead = true};
    default:
      return plan_.strongEnd ? Layers{.drums = true, .bass = true, .chords = true, .pad = true}
                             : Layers{.drums = true, .bass = true, .chords = true, .arpeggio = true};
  }
}

void Composer::LayOut() {
  static constexpr std::array<std::string_view, 7> kForms{"A",     "AB",     "ABA",    "AABA",
                                                          "AABCA", "AABCBA", "AABACBA"};
  const int wanted = static_cast<int>(std::lround(plan_.seconds / (stepsPerBar_ * stepSeconds_)));
  const int edge = wanted >= 20 ? 4 : 2;
  const int phrases = std::clamp((wanted - 2 * edge + 2) / 4, 1, static_cast<int>(kForms.size()));
  const std::string_view form = kForms[static_cast<std::size_t>(phrases - 1)];

  const auto add = [this](char letter, int bars, int phrase) {
    sections_.push_back({letter, bars_, bars, LayersOf(letter, phrase)});
    bars_ += bars;
  };
  add('I', edge, 0);
  for (std::size_t i = 0; i < form.size(); ++i) add(form[i], 4, static_cast<int>(i));
  add('O', edge, 0);
}

const Material& Composer::MaterialOf(const Section& section) const {
  return section.letter == 'B' || section.letter == 'C' ? second_ : first_;
}

int Composer::ChordAt(const Section& section, int bar) const {
  if (bar >= section.firstBar + section.bars) return first_.chords[0];
  return MaterialOf(section).chords[static_cast<std::size_t>(bar - section.firstBar) % 4];
}

double Composer::TimeOf(int step) const {
  // Swing moves the middle of each pair of steps (or of each beat) back, at most to two thirds.
  const int pair = style_.swingSixteenths ? 2 : 4;
  const int inPair = step % pair;
  const double middle = 0.5 + style_.swing / 6.0;
  const double part = static_cast<double>(inPair) / pair;
  const double swung = part < 0.5 ? part * 2.0 * middle : middle + (part - 0.5) * 2.0 * (1.0 - middle);
  return stepSeconds_ * (step - inPair + swung * pair);
}

double Composer::Human(double velocity) {
  return std::clamp(velocity * (0.93 + 0.14 * chance_.Next()), 0.0, 1.0);
}

std::string_view Composer::StepsOf(const Role& role, const Section& section) {
  const bool second = (section.letter == 'B' || section.letter == 'C') && !role.second.empty();
  return second ? role.second : role.first;
}

void Composer::Add(LineIndex line, double start, double end, double pitch, double velocity) {
  score_.lines[line].notes.push_back({start, std::max(0.03, end - start), pitch, Human(velocity)});
}

void Composer::Strike(int step, Drum drum, double velocity) {
  score_.strokes.push_back({TimeOf(step), drum, Human(velocity)});
}

void Composer::WriteDrums(const Section& section) {
  const bool second = section.letter == 'B' && !style_.secondBeat.empty();
  const int fillFrom = (section.firstBar + section.bars) * stepsPerBar_ - stepsPerBar_ / 2;
  const bool fills = section.layers.drums && style_.beat.size() > 1 && section.letter != 'O';
  for (const DrumLine& line : second ? style_.secondBeat : style_.beat) {
    // A section without drums keeps the time with what is quiet.
    const bool quiet = line.drum == Drum::Hat || line.drum == Drum::Shaker;
    if (!section.layers.drums && !(quiet && section.letter == 'C')) continue;
    Walk(line.steps, section, stepsPerBar_, [&](int step, std::size_t place) {
      const double velocity = VelocityOf(line.steps[place]);
      if (velocity <= 0.0 || (fills && step >= fillFrom && line.drum != Drum::Kick)) return;
      Strike(step, line.drum, section.layers.drums ? velocity : 0.5 * velocity);
    });
  }
  if (!section.layers.drums) return;
  if (style_.beat.size() > 2 && section.letter != 'I')
    Strike(section.firstBar * stepsPerBar_, Drum::Crash, 0.7);
  if (fills) WriteFill(section);
}

void Composer::WriteFill(const Section& section) {
  struct FillStep {
    int step;
    Drum drum;
    double velocity;
  };
  static const std::array<std::vector<FillStep>, 3> kFills{{
      {{0, Drum::Snare, 0.6},
       {2, Drum::Snare, 0.7},
       {3, Drum::HighTom, 0.7},
       {4, Drum::HighTom, 0.8},
       {5, Drum::LowTom, 0.7},
       {6, Drum::LowTom, 0.9}},
      {{0, Drum::Snare, 0.8},
       {3, Drum::Snare, 0.6},
       {4, Drum::Snare, 0.5},
       {5, Drum::Snare, 0.6},
       {6, Drum::Snare, 0.8},
       {7, Drum::Snare, 0.9}},
      {{0, Drum::HighTom, 0.7}, {2, Drum::HighTom, 0.6}, {4, Drum::LowTom, 0.8}, {6, Drum::Snare, 0.9}},
  }};
  const int last = (section.firstBar + section.bars) * stepsPerBar_ - 8;
  const double level = 0.5 + 0.5 * style_.kitLevel;
  for (const FillStep& each : kFills[static_cast<std::size_t>(chance_.Below(3))]) {
    Strike(last + each.step, each.drum, each.velocity * level);
  }
}

void Composer::WriteBass(const Section& section) {
  const std::string_view steps = StepsOf(style_.bass, section);
  Walk(steps, section, stepsPerBar_, [&](int step, std::size_t place) {
    const int bar = step / stepsPerBar_;
    const int chord = ChordAt(section, bar);
    const int root = Near(plan_.key.NoteOf(chord), style_.bass.centre);
    int pitch = root;
    switch (steps[place]) {
      case '1':
        break;
      case '3':
        pitch = root + plan_.key.NoteOf(chord + 2) - plan_.key.NoteOf(chord);
        break;
      case '5':
        pitch = root + plan_.key.NoteOf(chord + 4) - plan_.key.NoteOf(chord);
        break;
      case '7':
        pitch = root + plan_.key.NoteOf(chord + 6) - plan_.key.NoteOf(chord);
        break;
      case '8':
        pitch = root + 12;
        break;
      case 'a':
        pitch = Near(plan_.key.NoteOf(ChordAt(section, bar + 1) - 1), style_.bass.centre);
        break;
      default:
        return;
    }
    const double end = TimeOf(step + HeldSteps(steps, place));
    Add(kBass, TimeOf(step), end - 0.2 * stepSeconds_, pitch, step % stepsPerBar_ == 0 ? 0.95 : 0.8);
  });
}

void Composer::WriteChords(const Section& section) {
  const std::string_view steps = StepsOf(style_.chords, section);
  Walk(steps, section, stepsPerBar_, [&](int step, std::size_t place) {
    const double velocity = VelocityOf(steps[place]);
    if (velocity <= 0.0) return;
    const int chord = ChordAt(section, step / stepsPerBar_);
    const double end = TimeOf(step + HeldSteps(steps, place)) - 0.1 * stepSeconds_;
    double strum = TimeOf(step);
    for (const int pitch : VoicingOf(plan_.key, chord, style_.sevenths, style_.chords.centre)) {
      Add(kChords, strum, end, pitch, velocity);
      // Fingers reach the strings one after the other.
      if (style_.chords.patch.voice == Voice::Plucked) strum += 0.008;
    }
  });
}

void Composer::WritePad(const Section& section) {
  for (int bar = section.firstBar; bar < section.firstBar + section.bars; ++bar) {
    const double start = TimeOf(bar * stepsPerBar_);
    const double end = TimeOf((bar + 1) * stepsPerBar_);
    for (const int pitch : VoicingOf(plan_.key, ChordAt(section, bar), style_.sevenths, style_.pad.centre)) {
      Add(kPad, start, end, pitch, 0.7);
    }
  }
}

void Composer::WriteArpeggio(const Section& section) {
  const std::string_view steps = StepsOf(style_.arpeggio, section);
  Walk(steps, section, stepsPerBar_, [&](int step, std::size_t place) {
    if (steps[place] < '0' || steps[place] > '9') return;
    const std::vector<int> tones =
        VoicingOf(plan_.key, ChordAt(section, step / stepsPerBar_), false, style_.arpeggio.centre);
    const int index = steps[place] - '0';
    const int count = static_cast<int>(tones.size());
    const int pitch = tones[static_cast<std::size_t>(index % count)] + 12 * (index / count);
    const double end = TimeOf(step + HeldSteps(steps, place));
    Add(kArpeggio, TimeOf(step), end, pitch, step % 4 == 0 ? 0.85 : 0.65);
  });
}

void Composer::WriteLead(const Section& section) {
  const int first = section.firstBar * stepsPerBar_;
  for (const MelodyNote& note : MaterialOf(section).melody) {
    const double end = TimeOf(first + note.step + note.steps) - 0.15 * stepSeconds_;
    Add(kLead, TimeOf(first + note.step), end, note.pitch, section.letter == 'C' ? 0.6 : 0.8);
  }
}

void Composer::WriteEnd() {
  const double end = TimeOf(bars_ * stepsPerBar_);
  if (!plan_.strongEnd) {
    score_.length = end;
    const Section& outro = sections_.back();
    score_.fadeOut = std::min(9.0, end - TimeOf(outro.firstBar * stepsPerBar_));
    return;
  }
  const int home = 0;
  const double ring = 0.9;
  Add(kBass, end, end + ring, Near(plan_.key.NoteOf(home), style_.bass.centre), 1.0);
  for (const int pitch : VoicingOf(plan_.key, home, style_.sevenths, style_.chords.centre)) {
    Add(kChords, end, end + ring, pitch, 1.0);
  }
  if (style_.lead.level > 0.0)
    Add(kLead, end, end + ring, Near(plan_.key.NoteOf(home), style_.lead.centre), 0.9);
  if (style_.beat.size() > 1) {
    Strike(bars_ * stepsPerBar_, Drum::Kick, 1.0);
    Strike(bars_ * stepsPerBar_, Drum::Crash, 0.9);
  }
  score_.length = end + ring + 0.6;
  score_.fadeOut = 0.5;
}

Score Composer::Write() {
  score_.lines.resize(kLineCount);
  score_.lines[kBass] = LineOf(style_.bass, true);
  score_.lines[kChords] = LineOf(style_.chords, true);
  score_.lines[kPad] = LineOf(style_.pad, true);
  score_.lines[kArpeggio] = LineOf(style_.arpeggio, false);
  score_.lines[kLead] = LineOf(style_.lead, false);
  score_.kit = style_.kit;
  score_.kitLevel = style_.kitLevel;
  score_.kitReverb = style_.kitReverb;
  score_.duck = style_.duck;
  score_.echoSeconds = style_.echoBeats * 4.0 * stepSeconds_;
  score_.roomSize = style_.roomSize;

  LayOut();
  for (const Section& section : sections_) {
    WriteDrums(section);
    if (section.layers.bass) WriteBass(section);
    if (section.layers.chords) WriteChords(section);
    if (section.layers.pad && style_.pad.level > 0.0) WritePad(section);
    if (section.layers.arpeggio) WriteArpeggio(section);
    if (section.layers.lead) WriteLead(section);
  }
  if (!plan_.strongStart) score_.fadeIn = 0.5 * TimeOf(sections_.front().bars * stepsPerBar_);
  if (plan_.strongStart && style_.beat.size() > 1) Strike(0, Drum::Crash, 0.8);
  WriteEnd();
  return std::move(score_);
}

}  // namespace

Score Compose(const Plan& plan) {
  return Composer(plan).Write();
}

}  // namespace kelvo::demo
