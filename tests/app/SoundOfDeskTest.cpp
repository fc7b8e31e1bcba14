// What the joined desk tells of its sound device.

#include "app/SoundingDesk.h"
#include "ui/DeckTally.h"
#include "ui/NoticeBar.h"

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class SoundOfDesk : public SoundingDesk {
 protected:
  void SetUp() override {
    AddTrack(u"Ann - One"_s, Noise(44100 * 100));
    AddTrack(u"Bob - Two"_s, Noise(44100 * 100, 2));
    OpenDesk();
    notices_ = window_->findChild<NoticeBar*>();
  }
  DeckTally::State Tally(int deck) { return Find<DeckTally>(u"DeckTally%1"_s.arg(deck)).TallyState(); }

  NoticeBar* notices_ = nullptr;
};

TEST_F(SoundOfDesk, NobodyIsOnAirWhileTheDeviceIsLostAndAtOnceAgainWhenItIsBack) {
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  desk_->Decks().ManualStart(Deck::One);
  loop_.RunFor(300ms);
  EXPECT_EQ(Tally(1), DeckTally::State::OnAir);
  backend_->Pull();
  loop_.RunFor(50ms);
  EXPECT_EQ(Tally(1), DeckTally::State::NoDevice);
  EXPECT_EQ(Find<DeckTally>(u"DeckTally1"_s).accessibleName(), u"NO DEVICE"_s);
  EXPECT_EQ(Tally(2), DeckTally::State::Loaded) << "nothing is claimed of it";
  // In a fade, when the desk beats at half its pace, and in a track's last seconds too.
  desk_->Fades().PressPan(Deck::Two);
  desk_->Decks().SetPosition(Deck::One, 80);
  loop_.RunFor(1s);
  EXPECT_EQ(Tally(1), DeckTally::State::NoDevice);
  EXPECT_EQ(Tally(2), DeckTally::State::NoDevice);
  backend_->plugged = true;
  ASSERT_TRUE(loop_.RunUntil(
      [this] { return engine_->DefaultOutputStatus().kind == OutputStatus::Kind::OnAir; }, 2s));
  EXPECT_EQ(Tally(1), DeckTally::State::Ending);
  EXPECT_EQ(Tally(2), DeckTally::State::OnAir);
  EXPECT_EQ(notices_->Text(), QString());
}

TEST_F(SoundOfDesk, AReserveThatHasGrownIsToldUntilItIsSmallAgain) {
  const auto dropout = [this](Nanoseconds reserve) {
    backend_->device->TellDropout();
    backend_->device->SetReserve(reserve);
    loop_.RunFor(1s);
  };
  // Another device has another reserve, and has not broken off.
  for (const Nanoseconds reserve : {93ms, 250ms, 139ms}) {
    backend_->device->SetReserve(reserve);
    loop_.RunFor(2s);
    EXPECT_EQ(notices_->Text(), QString());
  }
  dropout(209ms);
  dropout(314ms);
  EXPECT_EQ(notices_->Text(), u"The sound has broken off 2 times: its reserve is 314 ms now, it was 139."_s);
  backend_->device->SetReserve(209ms);
  loop_.RunFor(5s);
  EXPECT_TRUE(notices_->Text().contains(u"209 ms now"_s)) << notices_->Text().toStdString();
  backend_->device->SetReserve(139ms);
  loop_.RunFor(5s);
  EXPECT_EQ(notices_->Text(), u"The sound is calm: its reserve is back to 139 ms."_s);
  loop_.RunFor(1min);
  EXPECT_EQ(notices_->Text(), QString());
  // A device whose reserve can't grow.
  dropout(139ms);
  EXPECT_EQ(notices_->Text(), u"The sound has broken off 1 time."_s);
}

}  // namespace
