#include "console/SoakLevels.h"

namespace kelvo::testing {

using namespace Qt::StringLiterals;

namespace {

/// Looks are a tenth of a second apart, those of a fade's timer a quarter.
constexpr double kBefore = 0.15;
constexpr double kAfter = 0.5;
/// A snap of a dub.
constexpr double kSnap = 0.3;
/// Until the outcome of a start is known, in seconds.
constexpr double kHeard = 1;
/// The desk waits no longer for the first sound of a deck, in seconds.
constexpr double kGivenUp = 3.5;

QString NameOf(int kind) {
  return kind == kPan ? u"pan"_s : kind == kPartFade ? u"part fade"_s : u"dub"_s;
}

}  // namespace

void SoakLevels::OnSlider(int place) {
  home_ = place;
  law_.kind = 0;
  lawFrom_.reset();
}

void SoakLevels::OnStart(Deck deck, int kind, int speed, const QString& excuse, const SoakLook& look) {
  // The fade before goes on until this one has the slider.
  const bool overtakes = fade_ && (fade_->kind != kDub || !fade_->excuse.isEmpty());
  if (fade_) {
    Excuse(u"overtaken"_s);
    End(look.now);
  }
  Fade fade;
  fade.deck = deck;
  fade.kind = kind;
  fade.slider = look.before.slider;
  fade.from = look.before.at;
  fade.course = CourseOf(kind, deck, fade.slider, speed);
  fade.excuse = excuse.isEmpty() && overtakes ? u"overtakes"_s : excuse;
  fade_ = fade;
  disturbed_ = false;
  lawBefore_ = law_;
  lawFrom_ = fade.slider;
  law_.kind = kind;
  law_.side = deck;
}

bool SoakLevels::Runs(double now) const {
  if (!fade_) return false;
  if (!fade_->excuse.isEmpty()) return fade_->walks || now < fade_->from + kHeard;
  return fade_->kind != kDub || now < fade_->from + kSnap;
}

void SoakLevels::Excuse(const QString& reason) {
  if (fade_ && fade_->excuse.isEmpty()) fade_->excuse = reason;
}

void SoakLevels::Look(const SoakLook& look) {
  if (fade_) {
    Follow(look);
  } else if (look.now.slider != home_) {
    scene_.Violate(u"the slider moves from %1 to %2 while nothing runs"_s.arg(home_).arg(look.now.slider));
    home_ = look.now.slider;
  }
  CheckLosses(look.now);
}

void SoakLevels::Follow(const SoakLook& look) {
  Fade& fade = *fade_;
  const DeskSight& now = look.now;
  const double passed = now.at - fade.from;
  fade.walks = now.walking;
  // What happens to a deck before it is heard may end the start; later it may change the pace of the fade.
  QString reason = scene_.excuses.For(Touch::Kill, fade.from, now.at);
  if (reason.isEmpty() && !now.decks[fade.deck].playing) reason = u"ended in its fade"_s;
  if (!reason.isEmpty()) {
    Excuse(reason);
    disturbed_ = disturbed_ || passed <= kHeard;
  }
  if (!fade.excuse.isEmpty()) {
    if (passed > kGivenUp && !now.walking) {
      const DeskPlan plan = scene_.desk.Plan();
      law_.kind = plan.lawKind;
      law_.side = plan.lawSide;
      home_ = now.slider;
      End(now);
    }
    return;
  }
  const bool atHome = now.slider == fade.course.home;
  const QString name = NameOf(fade.kind);
  fade.moved = fade.moved || now.slider != fade.slider;
  fade.stoodBy = fade.stoodBy || (fade.course.by && now.slider == *fade.course.by);
  if (fade.kind == kDub) {
    if (passed < kSnap) return;
    if (!atHome) scene_.Violate(u"a dub leaves the slider at %1"_s.arg(now.slider));
    if (passed > kHeard) {
      home_ = now.slider;
      End(now);
    }
    return;
  }
  if (atHome && fade.moved) {
    if (passed < fade.course.endsAfter - kBefore)
      scene_.Violate(
          u"a %1 ends after %2 s instead of %3 s"_s.arg(name).arg(passed).arg(fade.course.endsAfter));
    if (fade.course.by && !fade.stoodBy) scene_.Violate(u"a part fade passes over its part"_s);
    home_ = now.slider;
    End(now);
  } else if (passed > fade.course.endsAfter + kAfter + 0.1) {
    if (!atHome || fade.kind == kPartFade) {
      scene_.Violate(
          u"a %1 has not ended after %2 s: the slider stands at %3"_s.arg(name).arg(passed).arg(now.slider));
    }
    home_ = now.slider;
    End(now);
  }
}

void SoakLevels::End(const DeskSight& /*now*/) {
  if (fade_->excuse.isEmpty()) {
    ++scene_.result.startsCompared;
  } else {
    ++scene_.result.startsExcused;
    ++scene_.result.excuses[fade_->excuse];
  }
  fade_.reset();
}

void SoakLevels::CheckLosses(const DeskSight& now) {
  if (fade_ && !fade_->excuse.isEmpty()) return;
  const bool dipped = !scene_.excuses.For(Touch::Level, now.at).isEmpty();
  // Until the slider moves the levels are those of the transition before.
  if (lawFrom_ && *lawFrom_ != now.slider) lawFrom_.reset();
  const bool either = lawFrom_.has_value();
  for (const Deck deck : kDecks) {
    const int loss = now.decks[deck].loss;
    const int wanted = LossAt(law_, now.slider, deck);
    const int before = LossAt(lawBefore_, now.slider, deck);
    const bool right = dipped ? loss >= (either ? std::min(wanted, before) : wanted)
                              : loss == wanted || (either && loss == before);
    if (right) continue;
    scene_.Violate(u"deck %1 has lost %2 instead of %3 with the slider at %4"_s.arg(DisplayNumber(deck))
                       .arg(loss)
                       .arg(wanted)
                       .arg(now.slider));
  }
}

}  // namespace kelvo::testing
