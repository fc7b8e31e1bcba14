#include "console/DeskFixture.h"
#include "console/monitor/FadeTrial.h"

namespace kelvo {
namespace {

using namespace testing;

/// What the monitor lets the operator hear must be what the desk then does.
class FadeTrialOnDesk : public DeskTest {
 protected:
  /// Milliseconds after a start by this fade at which the slider passes `place`.
  int OnTheDesk(TransitionKind kind, int fadeSp, int place) {
    Open();
    EnqueueAll();
    Load(Deck::One, 1);
    Load(Deck::Two, 2);
    desk_->Fades().SetCrossPan(kDeckOneAlone);
    Decks().ManualStart(Deck::One);
    loop_.RunFor(2s);
    desk_->Fades().SetFadeSpeed(fadeSp);
    desk_->Fades().StartRoutine(Deck::Two, kind);
    int time = 0;
    for (; time < 60000 && desk_->State().CrossPan < place; time += 10) loop_.RunFor(10ms);
    desk_.reset();
    return time;
  }
  static int InTheTrial(TransitionKind kind, int fadeSp, int place) {
    int time = 0;
    while (time < 60000 && TrialSlider(kind, fadeSp, time * 1ms) < place) time += 10;
    return time;
  }
};

TEST_F(FadeTrialOnDesk, TheTrialsSliderGoesTheWayOfTheDesks) {
  AddThreeTracks();
  for (const TransitionKind kind : {TransitionKind::Pan, TransitionKind::PartFade}) {
    for (const int fadeSp : {0, 11, 50}) {
      for (const int place : {-100, 60, 200}) {
        EXPECT_NEAR(InTheTrial(kind, fadeSp, place), OnTheDesk(kind, fadeSp, place), 300)
            << static_cast<int>(kind) << ' ' << fadeSp << ' ' << place;
      }
    }
  }
  EXPECT_EQ(TrialSlider(TransitionKind::Dub, 25, 0s), 0) << "both are at full level at once";
}

}  // namespace
}  // namespace kelvo
