#include "audio/SimulatedStudio.h"
#include "console/Console.h"
#include "database/TestDatabase.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"
#include "support/ScriptedPrompter.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace testing;

/// A desk whose decks play real sound in simulated time.
class TransitionSoundTest : public ::testing::TestWithParam<std::tuple<TransitionKind, Deck>> {
 protected:
  void AddTrack(const QString& name, const Samples& sound) {
    const QString base = name.section(u'.', 0, 0);
    database_.Add(Paths::Info, base + u".kif"_s, InfoBytes("30"));
    database_.Add(Paths::Music, name, WaveFile(sound));
  }
  void Open() {
    desk_.emplace(Console::Services{.loop = studio_.loop,
                                    .prompter = prompter_,
                                    .audio = studio_.engine,
                                    .settings = settings_,
                                    .catalogue = catalogue_,
                                    .paths = database_.paths,
                                    .title = u"Kelvo"_s,
                                    .aboutLine = u"About Kelvo"_s,
                                    .programFolder = database_.tree.Path()});
    desk_->Activate();
    ASSERT_TRUE(studio_.loop.RunUntil([this] { return desk_->CatalogueLoaded(); }));
    const Job<> add = desk_->Queue().AddTracks({ToMref(1), ToMref(2)});
    ASSERT_TRUE(studio_.loop.RunUntil([&add] { return !add.Running(); }, 1s));
  }
  void Load(Deck deck, const QString& title) {
    for (int row = 1; row <= 2; ++row) {
      if (desk_->Queue().Row(row).Text(TrackColumn).compare(title, Qt::CaseInsensitive) == 0)
        desk_->Queue().Click(row);
    }
    desk_->Decks().LoadCommand(deck);
    ASSERT_TRUE(studio_.loop.RunUntil(
        [this, deck] { return desk_->Decks().Record(deck).State == DeckState::Loaded; }, 10s));
  }
  void Fade(TransitionKind kind) {
    Transitions& fades = desk_->Fades();
    if (kind == TransitionKind::Dub) {
      fades.PressDub(Deck::Two);
      studio_.loop.RunFor(1500ms);
      fades.ReleaseDub(Deck::Two);
    } else if (kind == TransitionKind::Pan) {
      fades.PressPan(Deck::Two);
    } else {
      fades.PressPartFade(Deck::Two);
    }
    studio_.loop.RunFor(9s);
    EXPECT_EQ(fades.CrossPan(), kDeckTwoAlone);
  }
  static float Peak(Samples::const_iterator begin, Samples::const_iterator end) {
    return std::accumulate(begin, end, 0.0F,
                           [](float peak, float sample) { return std::max(peak, std::abs(sample)); });
  }

  SimulatedStudio studio_;
  TestDatabase database_;
  ScriptedPrompter prompter_;
  ErrorLog log_{studio_.loop, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  SettingsStore settings_{studio_.loop, database_.tree.Path(u"settings.ini"_s)};
  Catalogue catalogue_;
  std::optional<Console> desk_;
};

TEST_P(TransitionSoundTest, FromDeckOneToDeckTwoIsHeardWithoutAClick) {
  const auto [kind, toneDeck] = GetParam();
  const Samples tone = Sine(440, 30);
  AddTrack(u"tone.wav"_s, tone);
  AddTrack(u"silence.wav"_s, Samples(tone.size(), 0.0F));
  Open();
  // One deck plays the tone, the other silence: nothing covers a click.
  Load(toneDeck, u"tone"_s);
  Load(Other(toneDeck), u"silence"_s);
  desk_->Fades().SetCrossPan(kDeckOneAlone);
  desk_->Decks().ManualStart(Deck::One);
  studio_.loop.RunFor(2s);
  studio_.heard.clear();
  Fade(kind);
  const Samples& heard = studio_.heard;
  const std::ptrdiff_t second = 2 * 44100;
  ASSERT_GE(heard.size(), static_cast<std::size_t>(9 * second));
  const float before = Peak(heard.begin() + second / 10, heard.begin() + second / 3);
  const float after = Peak(heard.end() - second / 2, heard.end());
  EXPECT_NEAR(toneDeck == Deck::One ? before : after, 0.5F, 0.02F) << "full at its end of the slider";
  const float atTheOther = toneDeck == Deck::One ? after : before;
  EXPECT_NEAR(atTheOther / (kind == TransitionKind::Dub && toneDeck == Deck::Two ? 0.5F : 0.005F), 1, 0.05)
      << "40 dB down and not silent, unless it was let in";
  EXPECT_LT(LargestStep(heard), LargestStep(tone) * 1.03F);
}

std::string NameOf(const ::testing::TestParamInfo<std::tuple<TransitionKind, Deck>>& info) {
  const auto [kind, toneDeck] = info.param;
  const std::string name = kind == TransitionKind::Dub        ? "Dub"
                           : kind == TransitionKind::PartFade ? "PartFade"
                                                              : "Pan";
  return name + (toneDeck == Deck::One ? "OfTheGoingDeck" : "OfTheComingDeck");
}

INSTANTIATE_TEST_SUITE_P(Each, TransitionSoundTest,
                         ::testing::Combine(::testing::Values(TransitionKind::Dub, TransitionKind::PartFade,
                                                              TransitionKind::Pan),
                                            ::testing::Values(Deck::One, Deck::Two)),
                         NameOf);

}  // namespace
}  // namespace kelvo
