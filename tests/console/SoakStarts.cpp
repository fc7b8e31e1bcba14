#include "console/SoakStarts.h"

#include <QFile>

#include <cmath>

namespace kelvo::testing {

using namespace Qt::StringLiterals;

namespace {

/// A tick, and one more where it is left out; and the moment between two looks.
constexpr double kTolerance = 2.4;
constexpr double kLook = 0.15;
/// A deck that waits for its next track gets it in so many seconds.
constexpr double kLoadBound = 4;
/// Until a start or a load has told the desk all that it says of the next start.
constexpr double kPlanTime = 1.5;
constexpr double kShortest = 1;

std::optional<QByteArray> Contents(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  return file.readAll();
}

}  // namespace

SoakStarts::SoakStarts(SoakScene& scene, SoakLevels& levels, SoakRounds& rounds)
    : scene_(scene), levels_(levels), rounds_(rounds), planUnknown_(u"switched on"_s) {}

double SoakStarts::DurationOf(Deck deck, const DeskSight& now) const {
  const SoakTrack* track = scene_.desk.Find(decks_[deck].path);
  return track && track->stored > 0 ? track->stored : now.decks[deck].length;
}

bool SoakStarts::Sounds(Deck deck, const SoakLook& look) const {
  const DeckSight& before = look.before.decks[deck];
  const DeckSight& now = look.now.decks[deck];
  const bool moves = !before.playing || before.path != now.path || now.position > before.position;
  return now.playing && now.hasSound && moves && levels_.Lets(deck, look.now);
}

bool SoakStarts::Silent(const SoakLook& look) const {
  return std::none_of(kDecks.begin(), kDecks.end(), [&](Deck deck) {
    return Sounds(deck, look) || (levels_.ComesIn(deck) && look.now.decks[deck].playing);
  });
}

void SoakStarts::Look(const SoakLook& look) {
  loadDue_ = false;
  // Ends come before the starts that they give rise to. Where there is a pause between the two, it is the load
  // of the next track that may fall into the same look: that follows the start.
  const Deck playing = look.now.decks[Deck::One].playing ? Deck::One : Deck::Two;
  const Deck first = scene_.Lag() > 0 ? playing : Other(playing);
  SeeDeck(first, look);
  SeeDeck(Other(first), look);
  if (!std::exchange(disturbed_, levels_.Disturbed()) && disturbed_) Resync(u"start disturbed"_s);
  for (const Deck deck : kDecks) {
    CheckDue(deck, look);
    CheckFree(deck, look);
  }
  CheckPlan(look);
}

void SoakStarts::Resync(const QString& reason) {
  const DeskPlan plan = scene_.desk.Plan();
  plan_ = {plan.delta, std::max(plan.transition, kDub), plan.fadeSpeed};
  planUnknown_ = reason;
}

void SoakStarts::SeeDeck(Deck deck, const SoakLook& look) {
  const DeckSight& before = look.before.decks[deck];
  const DeckSight& now = look.now.decks[deck];
  DeckCourse& course = decks_[deck];
  const bool other = now.path != before.path;
  const bool back = !other && before.playing && now.playing && now.position < before.position - kLook;
  if (before.playing && (!now.playing || other || back)) OnEnded(deck, look);
  if (before.loaded && !course.started && !now.playing && (!now.loaded || other)) {
    const bool excused = !scene_.excuses.For(Touch::Cut, look.before.at, look.now.at).isEmpty();
    if (!excused) scene_.Violate(u"%1 was loaded and gave way before it was heard"_s.arg(course.path));
    course.done = course.started = true;
  }
  const bool starts = now.playing && (!before.playing || other || back);
  // A load may be followed by its start between two looks.
  const bool atOnce = starts && (other || (switched_ && !before.loaded));
  const bool loaded = now.loaded ? !before.loaded || other : atOnce;
  if (loaded && now.hasSound && now.length >= kShortest) OnLoaded(deck, look);
  if (starts) OnStarted(deck, look);
  if (!now.loading) course.loadingFrom = look.now.at;
}

void SoakStarts::OnLoaded(Deck deck, const SoakLook& look) {
  const QString path = look.now.decks[deck].path;
  const DeckCourse old = decks_[deck];
  DeckCourse course;
  course.path = path;
  course.rules = old.rules;
  const SoakTrack* track = scene_.desk.Find(path);
  if (!track) {
    scene_.Violate(u"%1 was loaded, which nobody knows"_s.arg(path));
    return;
  }
  course.rules = RulesOf(Contents(track->infoPath), scene_.settings.delta);
  // A track that is put back to its beginning is not read anew.
  const bool again = old.path == path;
  course.loadedAt = again ? old.loadedAt : look.now.at;
  const double readAt = again ? old.loadedAt : old.loadingFrom;
  if (infoChanged_.value(track->infoPath, -1) > readAt) course.unknown = u"info file changed"_s;
  const QString other = decks_[Other(deck)].path;
  decks_[deck] = course;
  if (!look.now.on) return;
  plan_ = PlanAfterLoad(scene_.options.mode, plan_, course.rules, !other.isEmpty());
  // The two decks of a desk that is switched on are filled in one go, before what they hold decides.
  if (firstStart_ && levels_.Starting(look.now.at)) Resync(u"switched on"_s);
  if (!course.unknown.isEmpty()) planUnknown_ = course.unknown;
  planFrom_ = look.now.at;
  rounds_.OnLoaded(path, old.path, other);
}

void SoakStarts::OnStarted(Deck deck, const SoakLook& look) {
  ++scene_.result.starts;
  DeckCourse& course = decks_[deck];
  rounds_.OnStarted(course.path);
  DeckCourse& other = decks_[Other(deck)];
  const double now = look.now.at;
  const double due = course.dueFrom >= 0 ? course.dueFrom : Due(deck, {look.before, look.now}) ? now : -1;
  QString excuse = scene_.excuses.For(Touch::Start, due >= 0 ? due : look.before.at, now);
  firstStart_ = std::exchange(switched_, false);
  if (firstStart_) excuse = u"switched on"_s;
  if (excuse.isEmpty()) excuse = levels_.Excused();
  if (excuse.isEmpty()) excuse = planUnknown_;
  if (excuse.isEmpty()) {
    const double late = now - due - scene_.Lag();
    const QString name = u"deck %1 (%2)"_s.arg(DisplayNumber(deck)).arg(course.path.section(u'/', -1));
    if (due < 0) {
      const double left = DurationOf(Other(deck), look.now) - look.now.decks[Other(deck)].position;
      scene_.Violate(
          u"%1 is started before its time: %2 s are left and it is due at %3"_s.arg(name).arg(left).arg(
              plan_.delta));
    } else if (late < -kLook && scene_.excuses.For(Touch::Kill, due - scene_.Lag() - 2, now).isEmpty()) {
      scene_.Violate(u"%1 is started without the pause of the jukebox"_s.arg(name));
    } else if (late > kTolerance) {
      scene_.Violate(u"%1 is started %2 s late"_s.arg(name).arg(late));
    }
    if (look.now.decks[deck].position > 0.3)
      scene_.Violate(u"%1 is not started from its beginning"_s.arg(name));
  }
  const int kind = plan_.kind;
  const TrackRules& otherRules = other.path.isEmpty() ? course.rules : other.rules;
  const int length = static_cast<int>(DurationOf(deck, look.now));
  plan_ = PlanAfterStart(scene_.options.mode, plan_,
                         {course.rules, otherRules, length, scene_.settings.prevSecs});
  const bool style = course.rules.startStyle == 0 || course.rules.startStyle == 1;
  if (!course.unknown.isEmpty()) {
    planUnknown_ = course.unknown;
  } else if (!course.rules.custom && !other.unknown.isEmpty()) {
    planUnknown_ = other.unknown;
  } else if (scene_.Preview() || course.rules.custom || style) {
    planUnknown_.clear();
  }
  planFrom_ = now;
  levels_.OnStart(deck, kind, plan_.speed, excuse, look);
  if (plan_.kind > kDub && other.started) other.done = true;
  course.started = true;
  course.done = course.ended = course.brokeOff = false;
  course.dueFrom = other.dueFrom = -1;
}

void SoakStarts::OnEnded(Deck deck, const SoakLook& look) {
  DeckCourse& course = decks_[deck];
  const DeckSight& before = look.before.decks[deck];
  course.ended = course.brokeOff || before.position + kLook >= before.length;
  if (!course.ended && course.sounded && levels_.Lets(deck, look.now) &&
      scene_.excuses.For(Touch::Cut, look.before.at, look.now.at).isEmpty()) {
    scene_.Violate(u"%1 is cut at %2 of %3 s"_s.arg(course.path).arg(before.position).arg(before.length));
  }
  course.done = true;
}

bool SoakStarts::Due(Deck deck, const SoakLook& look) const {
  const DeskSight& now = look.now;
  const DeckSight& sight = now.decks[deck];
  // A start is looked at when the deck plays already.
  const bool loaded = (sight.loaded && !sight.loading) || look.before.decks[deck].loaded || sight.playing;
  if (!now.on || !loaded || now.pause || levels_.Starting(now.at)) return false;
  const bool silent = Silent(look);
  if (levels_.Runs(now.at) && !silent) return false;
  const DeckCourse& other = decks_[Other(deck)];
  const double duration = DurationOf(Other(deck), now);
  const double position = other.ended ? duration : now.decks[Other(deck)].position;
  return silent || (other.started && IsDue(plan_, duration, position));
}

void SoakStarts::CheckDue(Deck deck, const SoakLook& look) {
  DeckCourse& course = decks_[deck];
  course.sounded = Sounds(deck, look);
  const double now = look.now.at;
  if (!look.now.decks[deck].loaded || !Due(deck, look)) {
    course.dueFrom = -1;
    course.told = false;
    return;
  }
  if (course.dueFrom < 0) course.dueFrom = now;
  if (now - course.dueFrom <= scene_.Lag() + kTolerance || std::exchange(course.told, true)) return;
  if (planUnknown_.isEmpty() && !switched_ && scene_.excuses.For(Touch::Start, course.dueFrom, now).isEmpty())
    scene_.Violate(
        u"deck %1 is not started: it is due since %2"_s.arg(DisplayNumber(deck)).arg(course.dueFrom));
}

void SoakStarts::CheckFree(Deck deck, const SoakLook& look) {
  DeckCourse& course = decks_[deck];
  const DeckSight& sight = look.now.decks[deck];
  const DeckSight& other = look.now.decks[Other(deck)];
  const bool walks = levels_.Runs(look.now.at) && !Silent(look);
  const bool waits = look.now.on && course.done && !course.sounded && !sight.loaded && !other.loaded &&
                     !other.loading && !walks;
  if (!waits) {
    course.freeFrom = -1;
    return;
  }
  loadDue_ = loadDue_ || course.freeFrom < 0;
  const double now = look.now.at;
  if (course.freeFrom < 0) course.freeFrom = now;
  if (now - course.freeFrom <= kLoadBound) return;
  if (planUnknown_.isEmpty() && scene_.excuses.For(Touch::Load, course.freeFrom, now).isEmpty())
    scene_.Violate(
        u"deck %1 waits for its next track since %2"_s.arg(DisplayNumber(deck)).arg(course.freeFrom));
  // Said once in a while.
  course.freeFrom = now + 60;
}

void SoakStarts::CheckPlan(const SoakLook& look) {
  const bool loading = look.now.decks[Deck::One].loading || look.now.decks[Deck::Two].loading;
  if (loading || levels_.Starting(look.now.at)) planFrom_ = std::max(planFrom_, look.now.at - 1);
  if (!look.now.on || !planUnknown_.isEmpty() || switched_ || look.now.at < planFrom_ + kPlanTime) return;
  const DeskPlan said = scene_.desk.Plan();
  const StartPlan plan{said.delta, said.transition, said.fadeSpeed};
  if (plan == plan_) return;
  scene_.Violate(u"the next start is planned %1 s before the end, kind %2, speed %3, instead of %4, %5, %6"_s
                     .arg(plan.delta)
                     .arg(plan.kind)
                     .arg(plan.speed)
                     .arg(plan_.delta)
                     .arg(plan_.kind)
                     .arg(plan_.speed));
  plan_ = plan;
}

}  // namespace kelvo::testing
