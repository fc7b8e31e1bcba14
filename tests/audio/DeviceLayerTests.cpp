#include "audio/CMixer.h"
#include "audio/SimulatedStudio.h"
#include "audio/cDshow.h"
#include "audio/engine/NoDeviceBackend.h"
#include "platform/ErrorLog.h"

#include <gtest/gtest.h>

namespace kelvo::testing {

namespace {

/// The failure of `call` as "source: text".
template <typename Call>
std::string FailureOf(Call call) {
  try {
    call();
  } catch (const Failure& failure) {
    return failure.Source().toStdString() + ": " + failure.what();
  }
  return "none";
}

}  // namespace

TEST(DeviceLayer, TheMixerTreeTellsTheOutputsAndRefusesBadIndices) {
  SimulatedStudio studio;
  CMixer mixer(studio.engine);
  mixer.Create();
  ASSERT_EQ(mixer.numMixerDevs(), 2);
  EXPECT_EQ(mixer.MixerName(), QStringLiteral("Main"));
  mixer.SetDstChannelID(1);
  mixer.SetDstChannelValue(1000);
  mixer.SetMixerID(1);
  EXPECT_EQ(mixer.MixerName(), QStringLiteral("Headphones"));
  EXPECT_EQ(mixer.DstChannelID(), 0);
  EXPECT_EQ(mixer.DstChannelValue(), mixer.DstChannelMaxValue());
  EXPECT_EQ(FailureOf([&] { mixer.SetMixerID(2); }),
            "CMixer:MixerID[LET]: There are only 2mixers on this system.");
  EXPECT_EQ(FailureOf([&] { mixer.SetDstLineID(-1); }),
            "CMixer:DstLineID[LET]: There are only 1 destination lines on this mixer.");
  EXPECT_EQ(
      FailureOf([&] { mixer.SetSrcLineID(1); }),
      "CMixer:SrcLineID[LET]: There are only 1 source lines associated with the current destination line ( "
      "Headphones )");
  EXPECT_EQ(FailureOf([&] { mixer.SetDstControlID(1); }),
            "CMixer:DstcontrolID[LET]: There are only 1 controls  on this line.");
  EXPECT_EQ(FailureOf([&] { mixer.SetSrcChannelID(2); }),
            "CMixer:SrcChannelID[LET]: There are only 2 channels  on this line.");
  EXPECT_EQ(mixer.MixerID(), 1) << "a refused index changes nothing";
  EXPECT_EQ(MixerErrorText(0), QStringLiteral("no error"));
  EXPECT_EQ(MixerErrorText(20), QStringLiteral("driver does not call DriverCallback"));
  EXPECT_EQ(MixerErrorText(1025), QStringLiteral("invalid control"));
  EXPECT_EQ(MixerErrorText(-1), QStringLiteral("unknown error"));
}

TEST(DeviceLayer, WithoutOutputsTheMixerCannotBeCreated) {
  SimulatedEventLoop loop;
  AudioEngine engine(loop, std::make_unique<NoDeviceBackend>(QStringList(), false));
  CMixer mixer(engine);
  EXPECT_EQ(FailureOf([&] { mixer.Create(); }), "CMixer:Create: no device driver present");
  EXPECT_EQ(mixer.numMixerDevs(), 0);
  EXPECT_EQ(mixer.MixerName(), QString());
  EXPECT_EQ(mixer.DstChannelValue(), 0);
}

TEST(DeviceLayer, AGraphPlaysOnItsOutputAndNeverOnTheDefaultInItsPlace) {
  SimulatedStudio studio;
  const QString path = studio.File("sine.wav", WaveFile(Sine(440, 5)));
  cDshow graph(studio.engine);
  graph.GraphPlay();
  EXPECT_EQ(graph.GraphPlayState(), cDshow::State::Stopped);
  graph.SetGraphVolume(-600);

  graph.SetOutPutDevice(QStringLiteral("Unplugged"));
  EXPECT_TRUE(graph.DeviceMissing());
  {
    const Job<OpenResult> job = graph.SetGraphFile(path);
    studio.loop.RunFor(20ms);
  }
  graph.GraphPlay();
  studio.loop.RunFor(1s);
  EXPECT_EQ(graph.GraphPlayState(), cDshow::State::Running);
  EXPECT_NEAR(graph.GraphPosition(), 1.0, 0.05);
  EXPECT_TRUE(studio.FromFirstSound().empty());
  graph.GraphPause();
  EXPECT_EQ(graph.GraphPlayState(), cDshow::State::Paused);

  graph.SetOutPutDevice({});
  EXPECT_EQ(graph.OutPutDevice(), QStringLiteral("Default WaveOut Device"));
  EXPECT_FALSE(graph.DeviceMissing());
  {
    const Job<OpenResult> job = graph.SetGraphFile(path);
    studio.loop.RunFor(20ms);
  }
  EXPECT_DOUBLE_EQ(graph.GraphDuration(), 5.0);
  graph.SetGraphPosition(2);
  graph.GraphMute(true);
  graph.GraphPlay();
  studio.loop.RunFor(100ms);
  EXPECT_TRUE(studio.FromFirstSound().empty());
  graph.GraphMute(false);
  studio.loop.RunFor(100ms);
  const auto loudest = std::max_element(studio.heard.begin(), studio.heard.end());
  EXPECT_NEAR(*loudest, 0.25, 0.01);
}

TEST(DeviceLayer, DevicesOfDifferentClocksPlayOnWithoutAClick) {
  // As far apart in a minute as two devices of +-100 ppm are in an hour: a third of a second each way.
  struct Ear {
    FrameIndex frames = 0;
    float last = 0;
    float largestStep = 0;
  };
  QHash<QString, Ear> ears;
  TemporaryTree folder;
  SimulatedEventLoop loop;
  auto backend = std::make_unique<SimulatedBackend>(
      loop,
      [&](const QString& output, std::span<const float> sound) {
        Ear& ear = ears[output];
        for (std::size_t at = 0; at < sound.size(); at += kChannels) {
          ear.largestStep = std::max(ear.largestStep, std::abs(sound[at] - ear.last));
          ear.last = sound[at];
        }
        ear.frames += static_cast<FrameIndex>(sound.size() / kChannels);
      },
      QStringList{QStringLiteral("Main"), QStringLiteral("Headphones")});
  backend->SetDrift({}, 6000);
  backend->SetDrift(QStringLiteral("Headphones"), -6000);
  AudioEngine engine(loop, std::move(backend));
  const QString path = folder.Write(QStringLiteral("sine.wav"), WaveFile(Sine(100, 70)));
  const auto deck = engine.MakePlayer();
  const auto monitor = engine.MakePlayer(QStringLiteral("Headphones"));
  for (MediaPlayer* const player : {deck.get(), monitor.get()}) {
    const Job<OpenResult> job = player->Open(path);
    loop.RunFor(20ms);
    player->Play();
  }
  const double apart = deck->CurrentPosition() - monitor->CurrentPosition();
  loop.RunFor(60s);
  EXPECT_NEAR(deck->CurrentPosition() - monitor->CurrentPosition() - apart, 0.72, 0.05);
  for (const Ear& ear : {ears[{}], ears[QStringLiteral("Headphones")]}) {
    EXPECT_NEAR(static_cast<double>(ear.frames), 60.04 * kEngineRate, 0.0061 * 60 * kEngineRate);
    EXPECT_LT(ear.largestStep, 0.0075F) << "the sine's own steps are 0.0071";
    EXPECT_GT(ear.largestStep, 0.0070F);
  }
  EXPECT_EQ(engine.Underruns() + engine.Underruns(QStringLiteral("Headphones")), 0U);
}

}  // namespace kelvo::testing
