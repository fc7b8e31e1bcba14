#include "demo_library/Renderer.h"

#include "demo_library/Effects.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kelvo::demo {

namespace {

struct Sides {
  double left;
  double right;
};

/// Equal power, so that a sound is as loud at the side as in the middle.
Sides SidesOf(double place) {
  const double turn = (std::clamp(place, -1.0, 1.0) + 1.0) / 8.0;
  return {std::sqrt(2.0) * SineOf(turn + 0.25), std::sqrt(2.0) * SineOf(turn)};
}

void Mix(const StereoSound& from, double level, double place, const std::vector<float>& duck,
         StereoSound& to) {
  const Sides sides = SidesOf(place);
  const double left = sides.left * level;
  const double right = sides.right * level;
  for (std::size_t i = 0; i < from.Frames(); ++i) {
    const double gain = duck.empty() ? 1.0 : duck[i];
    to.left[i] += static_cast<float>(from.left[i] * left * gain);
    to.right[i] += static_cast<float>(from.right[i] * right * gain);
  }
}

/// The gain of the lines that give way to the kick.
std::vector<float> DuckOf(const Score& score, std::size_t frames) {
  std::vector<float> gains(frames, 1.0F);
  const std::size_t hold = FramesOf(0.22);
  for (const Stroke& stroke : score.strokes) {
    if (stroke.drum != Drum::Kick) continue;
    const std::size_t first = FramesOf(stroke.start);
    for (std::size_t i = 0; i < hold && first + i < frames; ++i) {
      const double back = static_cast<double>(i) / static_cast<double>(hold);
      const double onset = std::min(1.0, static_cast<double>(i) / 200.0);
      const auto gain = static_cast<float>(1.0 - score.duck * onset * (1.0 - back) * (1.0 - back));
      gains[first + i] = std::min(gains[first + i], gain);
    }
  }
  return gains;
}

void AddDrums(const Score& score, std::uint32_t seed, StereoSound& out) {
  std::array<std::vector<float>, kDrumCount> samples;
  for (const Stroke& stroke : score.strokes) {
    const auto index = static_cast<std::size_t>(stroke.drum);
    std::vector<float>& sample = samples[index];
    if (sample.empty()) sample = MakeDrum(stroke.drum, score.kit, seed + static_cast<std::uint32_t>(index));
    const Sides sides = SidesOf(PlaceOf(stroke.drum));
    const double level = LevelOf(stroke.drum) * stroke.velocity;
    const std::size_t first = FramesOf(stroke.start);
    for (std::size_t i = 0; i < sample.size() && first + i < out.Frames(); ++i) {
      out.left[first + i] += static_cast<float>(sample[i] * level * sides.left);
      out.right[first + i] += static_cast<float>(sample[i] * level * sides.right);
    }
  }
}

}  // namespace

StereoSound Render(const Score& score, std::uint32_t seed, double loudness) {
  const std::size_t frames = FramesOf(score.length);
  StereoSound mix(frames);
  StereoSound reverb(frames);
  StereoSound echo(frames);
  const std::vector<float> duck = score.duck > 0.0 ? DuckOf(score, frames) : std::vector<float>();

  const std::vector<float> steady;
  std::uint32_t noteSeed = seed;
  for (const Line& line : score.lines) {
    if (line.notes.empty()) continue;
    StereoSound bus(frames);
    for (const Note& note : line.notes) AddNote(line.patch, note, ++noteSeed, bus);
    const std::vector<float>& gains = line.ducks ? duck : steady;
    Mix(bus, line.level, line.place, gains, mix);
    if (line.reverb > 0.0) Mix(bus, line.level * line.reverb, line.place, gains, reverb);
    if (line.echo > 0.0) Mix(bus, line.level * line.echo, line.place, gains, echo);
  }
  StereoSound kit(frames);
  AddDrums(score, seed, kit);
  Mix(kit, score.kitLevel, 0.0, steady, mix);
  Mix(kit, score.kitLevel * score.kitReverb, 0.0, steady, reverb);

  AddEcho(echo, score.echoSeconds, mix);
  AddReverb(reverb, score.roomSize, mix);
  RemoveRumble(mix);
  Fade(mix, score.fadeIn, score.fadeOut);
  Master(mix, loudness);
  return mix;
}

}  // namespace kelvo::demo
