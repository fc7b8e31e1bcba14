#include "audio/ClockAudio.h"
#include "audio/SimulatedStudio.h"
#include "console/Microphone.h"
#include "console/desk/ScopeSettings.h"
#include "console/scope/ProgrammeView.h"
#include "platform/SettingsStore.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <numeric>

namespace kelvo::testing {
namespace {

using namespace Qt::StringLiterals;
using ::testing::Each;

/// A tap that a test plays into.
class TappedAudio : public ClockAudio {
 public:
  using ClockAudio::ClockAudio;
  std::shared_ptr<Tap> tap = std::make_shared<Tap>();
  double reduction = 0;
  mutable int looks = 0;

  [[nodiscard]] std::shared_ptr<const Tap> TapOf(const QString&) const override {
    ++looks;
    return tap;
  }
  [[nodiscard]] double GainReduction(const QString&) const override { return reduction; }
};

/// A constant level on both sides.
Samples Level(float level, std::size_t frames) {
  return Samples(frames * 2, level);
}

class TheProgrammeView : public ::testing::Test {
 protected:
  void Make(AudioSystem& audio) {
    view_.emplace(Scope::Services{
        .loop = loop_, .audio = audio, .input = &microphone_, .settings = settings_, .slowed = [this] {
          return slowed_;
        }});
    QObject::connect(&view_->scope, &Scope::Renewed, [this] { ++pictures_; });
  }
  /// The values of a trace, in 8 bits and times the multiplier.
  [[nodiscard]] const Scope::Trace& Trace(std::size_t side) const { return view_->scope.TraceOf(side); }
  [[nodiscard]] float Band(double hertz) const {
    return view_->scope.Spectrum()[SpectrumAnalyser::BandOf(hertz)];
  }

  SimulatedStudio studio_;
  SimulatedEventLoop& loop_ = studio_.loop;
  SettingsStore store_{loop_, studio_.folder.Path(u"settings.ini"_s)};
  ProgramSettings settings_{store_, u"Kelvo"_s};
  TappedAudio audio_{loop_};
  Microphone microphone_;
  bool slowed_ = false;
  int pictures_ = 0;
  std::optional<ProgrammeView> view_;
};

TEST_F(TheProgrammeView, DrawsBothSidesOfTheProgrammeAndItsSpectrum) {
  Make(studio_.engine);
  const auto player = studio_.engine.MakePlayer();
  Samples tone = Sine(441, 20);
  for (std::size_t i = 1; i < tone.size(); i += 2) tone[i] *= 0.25F;
  ASSERT_TRUE(studio_.Open(*player, studio_.File(u"tone.wav"_s, WaveFile(tone))).Ok());
  player->Play();
  const auto watch = view_->scope.Watch();
  loop_.RunFor(500ms);
  EXPECT_FALSE(view_->scope.Empty());
  const auto highest = [this](std::size_t side) {
    return *std::max_element(Trace(side).begin(), Trace(side).end());
  };
  EXPECT_NEAR(highest(0), 64 * 5, 5);
  EXPECT_NEAR(highest(1), 16 * 5, 5);
  // 441 Hz at 11025 frames a second.
  EXPECT_TRUE(std::equal(Trace(0).begin(), Trace(0).end() - 25, Trace(0).begin() + 25,
                         [](int one, int other) { return std::abs(one - other) <= 5; }));

  settings_.Set(setting::SpectralDisplay, 12);
  loop_.RunFor(20ms);
  EXPECT_NEAR(highest(0), 64 * 12, 12) << "it acts at once";

  view_->scope.ShowSpectrum(true);
  // The edge of two bands is at 441 Hz: in the upper one it is whole.
  loop_.RunFor(200ms);
  EXPECT_NEAR(Band(445), -6, 1.5) << "the louder side counts";
  for (const double hertz : {25.0, 100.0, 300.0, 700.0, 5000.0, 19'000.0})
    EXPECT_LT(Band(hertz), -60) << hertz;
  player->Stop();
  loop_.RunFor(1200ms);
  EXPECT_LT(Band(445), -30);
  EXPECT_GT(Band(445), -45) << "it falls slowly";
}

TEST_F(TheProgrammeView, ShowsWhatIsHeardAndNotWhatWaits) {
  Make(audio_);
  const auto scope = view_->scope.Watch();
  const auto levels = view_->levels.Watch();
  audio_.tap->Write(0, Level(0, 20'000));
  audio_.tap->Write(20'000, Level(0.5F, 10'000));
  audio_.tap->Publish(30'000, 19'900);
  audio_.reduction = 3;
  loop_.RunFor(PictureBeat::kInterval);
  EXPECT_THAT(Trace(0), Each(0));
  EXPECT_EQ(view_->levels.Levels().sides[0].peak, MeterLevels::kSilence);
  EXPECT_FALSE(view_->levels.LampLit()) << "the sound that it turns down is on its way";
  // Between two words of the device the clock goes on.
  loop_.RunFor(10 * PictureBeat::kInterval);
  EXPECT_EQ(Trace(0).back(), 64 * 5);
  loop_.RunFor(100ms);
  EXPECT_TRUE(view_->levels.LampLit());
  EXPECT_EQ(view_->levels.Reduction(), 3);
  audio_.tap->Publish(30'000, 30'000);
  audio_.reduction = 0;
  loop_.RunFor(50ms);
  EXPECT_NEAR(view_->levels.Levels().sides[1].peak, -6, 0.1);
  loop_.RunFor(1s);
  EXPECT_FALSE(view_->levels.LampLit());
  EXPECT_TRUE(view_->scope.Empty()) << "the device tells nothing any more";
}

TEST_F(TheProgrammeView, LooksAtNothingWhileNobodyLooks) {
  Make(audio_);
  settings_.Set(setting::ScopeInput, u"mic.1"_s);
  const auto play = [this] {
    for (int i = 0; i < 60; ++i) {
      const FrameIndex at = std::max<FrameIndex>(audio_.tap->Settled(), 0);
      audio_.tap->Write(at, Level(0.1F, 735));
      audio_.tap->Publish(at + 735, at + 735);
      loop_.RunFor(PictureBeat::kInterval);
    }
  };
  play();
  EXPECT_EQ(audio_.looks, 0);
  EXPECT_EQ(microphone_.chosen, QString()) << "nobody is listened to";
  auto watch = view_->scope.Watch();
  EXPECT_EQ(microphone_.chosen, u"mic.1"_s);
  settings_.Set(setting::ScopeInput, QString());
  EXPECT_EQ(microphone_.chosen, QString());
  play();
  EXPECT_GT(pictures_, 55) << "sixty a second";
  view_->beat.Hold(true);
  pictures_ = 0;
  play();
  EXPECT_EQ(pictures_, 0);
  view_->beat.Hold(false);
  slowed_ = true;
  play();
  EXPECT_LE(pictures_, 3) << "a fade runs";
  slowed_ = false;
  watch = nullptr;
  const int looks = audio_.looks;
  play();
  EXPECT_EQ(audio_.looks, looks);
}

TEST_F(TheProgrammeView, AnInputThatIsPulledLeavesAnEmptyPictureUntilItIsBack) {
  Make(audio_);
  const auto watch = view_->scope.Watch();
  view_->scope.ChooseInput(u"mic.1"_s);
  loop_.RunFor(100ms);
  EXPECT_TRUE(view_->scope.Empty()) << "there is none";
  EXPECT_EQ(view_->scope.SourceWords(), u"mic.1 (isn't there)"_s);
  const auto plug = [this] {
    microphone_.tap = std::make_shared<Tap>();
    microphone_.tap->Write(0, Level(-0.25F, 4096));
    microphone_.tap->Publish(4096, 4096);
    loop_.RunFor(PictureBeat::kInterval);
  };
  int told = 0;
  QObject::connect(&view_->scope, &Scope::ChoiceChanged, [&told] { ++told; });
  plug();
  EXPECT_EQ(view_->scope.SourceWords(), u"Studio Microphone"_s);
  EXPECT_EQ(told, 1) << "who shows the words hears of it";
  EXPECT_THAT(Trace(0), Each(-32 * 5));
  microphone_.tap = nullptr;
  loop_.RunFor(PictureBeat::kInterval);
  EXPECT_TRUE(view_->scope.Empty());
  plug();
  EXPECT_FALSE(view_->scope.Empty());
}

}  // namespace
}  // namespace kelvo::testing
