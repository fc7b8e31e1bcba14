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

}  // namespace kelvo::testing
