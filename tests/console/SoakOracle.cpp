#include "console/SoakOracle.h"

#include <QList>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace kelvo::testing {
namespace {

/// Until a deck that was started is known to be heard, seconds into its track.
constexpr double kHeardAfter = 0.5;
/// The slider's way a step, and its end.
constexpr int kStep = 3;
constexpr int kEnd = 200;
constexpr int kPartPlace = 50;

int NumberOf(const QByteArray& text) {
  bool ok = false;
  const int number = text.trimmed().toInt(&ok);
  return ok ? number : 0;
}

/// A single value serves for both.
int FieldOf(const QByteArray& list, int field) {
  const QList<QByteArray> fields = list.split(',');
  return NumberOf(fields.size() == 1 ? fields[0] : fields.value(field));
}

int SliderFor(int speed) {
  return std::clamp(50 - speed, 0, 50);
}

}  // namespace

TrackRules RulesOf(const std::optional<QByteArray>& infoFile, int defaultDelta) {
  TrackRules rules;
  if (!infoFile) {
    rules.fadeOutAt = rules.fadeInAt = defaultDelta;
    return rules;
  }
  QByteArray text = *infoFile;
  const QList<QByteArray> lines = text.replace("\r\n", "\n").split('\n');
  QList<QByteArray> playMode = lines.value(6).split(',');
  while (playMode.size() < 3) playMode.append("1");
  const QByteArray places = lines.value(7);
  const QByteArray speeds = lines.value(8);
  rules.custom = NumberOf(playMode[0]) >= 1;
  rules.kind = std::clamp(NumberOf(playMode[1]), kDub, kPan);
  rules.fadeOutAt = FieldOf(places, 0);
  rules.fadeInAt = FieldOf(places, 1);
  rules.fadeOutSpeed = FieldOf(speeds, 0);
  rules.fadeInSpeed = FieldOf(speeds, 1);
  const bool fadesIn = NumberOf(playMode.last()) > kDub && NumberOf(places.split(',').last()) > 3;
  if (fadesIn && speeds.contains(',')) rules.loadedSpeed = SliderFor(rules.fadeInSpeed);
  rules.startStyle = NumberOf(lines.value(9));
  rules.endStyle = NumberOf(lines.value(10));
  return rules;
}

StartPlan PlanAfterStart(SoakMode mode, StartPlan plan, const Started& started) {
  if (mode == SoakMode::Preview) return {started.length - started.prevSecs, kPartFade, 45};
  const TrackRules& track = started.track;
  if (track.custom) {
    plan = {track.fadeOutAt, track.kind, SliderFor(track.fadeOutSpeed)};
  } else if (track.startStyle == 1 && started.other.endStyle == 1) {
    plan = {2, kDub, SliderFor(39)};
  } else if (track.startStyle == 1 && started.other.endStyle == 0) {
    plan = {4, kDub, SliderFor(39)};
  } else if (track.startStyle == 0 && started.other.endStyle == 1) {
    plan = {4, kDub, SliderFor(39)};
  } else if (track.startStyle == 0 && started.other.endStyle == 0) {
    plan = {8, kPan, SliderFor(9)};
  }
  if (mode == SoakMode::Jukebox) {
    plan.delta = 1;
    plan.kind = kPartFade;
  }
  plan.delta = std::min(plan.delta, started.length);
  return plan;
}

StartPlan PlanAfterLoad(SoakMode mode, StartPlan plan, const TrackRules& loaded, bool otherHolds) {
  if (loaded.loadedSpeed) plan.speed = *loaded.loadedSpeed;
  const bool pulls = loaded.custom && loaded.fadeInAt > plan.delta;
  if (mode == SoakMode::Preview || !otherHolds || !pulls) return plan;
  return {loaded.fadeInAt, loaded.kind, SliderFor(loaded.fadeInSpeed)};
}

bool IsDue(const StartPlan& plan, double duration, double position) {
  return std::floor(duration - std::max(plan.delta, 1)) <= std::floor(position);
}

int LossAt(const LawOfLevels& law, int slider, Deck deck) {
  const bool left = deck == Deck::One;
  int loss = 0;
  if (law.kind != kPan) {
    // The deck on the other side of the slider loses, ten for each step.
    loss = left == (slider >= 0) ? 10 * std::abs(slider) : 0;
  } else {
    // Mirrored for Deck 2, so that the coming deck is on the side below 0.
    const int x = law.side == Deck::One ? slider : -slider;
    loss = deck == law.side ? x * law.panFadeBias : 5 * (kEnd - x);
  }
  return std::clamp(loss, 0, 2000);
}

FadeCourse CourseOf(int kind, Deck side, int slider, int speed) {
  const int toward = side == Deck::One ? -1 : 1;
  if (kind == kDub) return {toward, 0, std::nullopt};
  const double pace = 0.002 * std::max(speed, 1);
  FadeCourse course;
  course.home = toward * kEnd;
  int from = slider;
  double snap = 0;
  if (kind == kPartFade) {
    from = toward * kPartPlace;
    course.by = from;
    // A slider that is beyond that place is set back to it at once.
    snap = 0.001 * std::max(toward * (from - slider), 0);
  }
  const int steps = (std::abs(course.home - from) + kStep - 1) / kStep;
  course.endsAfter = kHeardAfter + snap + steps * pace;
  return course;
}

}  // namespace kelvo::testing
