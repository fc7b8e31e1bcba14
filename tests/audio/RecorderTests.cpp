#include "audio/Recorder.h"
#include "audio/SimulatedStudio.h"
#include "audio/Spawned.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <sndfile.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>

namespace kelvo::testing {

namespace {

using Kind = RecordingFile::Kind;

constexpr Kind kKinds[] = {Kind::Flac, Kind::Wav};

QString NameOf(Kind kind) {
  return kind == Kind::Flac ? QStringLiteral("air.flac") : QStringLiteral("air.wav");
}

/// All that a reader of its own finds in the file.
Samples ReadBack(const QString& path) {
  SF_INFO info{};
  SNDFILE* const file = sf_open(path.toUtf8().constData(), SFM_READ, &info);
  EXPECT_NE(file, nullptr) << sf_strerror(nullptr);
  EXPECT_EQ(info.samplerate, kEngineRate);
  Samples all;
  Samples part(8192);
  for (sf_count_t got = 1; file && got > 0;) {
    got = sf_readf_float(file, part.data(), 4096);
    all.insert(all.end(), part.begin(), part.begin() + got * 2);
  }
  sf_close(file);
  return all;
}

/// The judgement of the format's own program, where it is installed.
bool IsWhole(const QString& path) {
  if (!path.endsWith(QStringLiteral(".flac"))) return true;
  const int code = Spawned({"flac", "--test", "--silent", path.toUtf8()}).ExitCode();
  return code == 0 || code == 127;
}

/// The frame of `heard` with which `recorded` begins; negative when that is nowhere.
FrameIndex PlaceOf(const Samples& recorded, const Samples& heard) {
  const auto same = [](float a, float b) { return std::abs(a - b) < 2e-7F; };
  // From the end, for both may begin with silence.
  for (std::size_t at = 0; at + recorded.size() <= heard.size(); at += 2) {
    const auto end = heard.begin() + static_cast<std::ptrdiff_t>(at + recorded.size());
    if (std::equal(recorded.rbegin(), recorded.rend(), std::make_reverse_iterator(end), same))
      return static_cast<FrameIndex>(at / 2);
  }
  return -1;
}

/// Sound whose every sample is known.
float SampleAt(std::size_t i) {
  return static_cast<float>(i * 7919 % 16384) / 32768.0F;
}

void Feed(Tap& tap, FrameIndex& at, FrameIndex frames) {
  Samples sound(static_cast<std::size_t>(frames) * 2);
  for (std::size_t i = 0; i < sound.size(); ++i) sound[i] = SampleAt(static_cast<std::size_t>(at) * 2 + i);
  tap.Write(at, sound);
  at += frames;
  tap.Publish(at, at);
}

}  // namespace

TEST(Recorder, TheFileHoldsWhatWentOnAirAndTheCueSheetWhereItsTitlesBegan) {
  for (const Kind kind : kKinds) {
    SimulatedStudio studio;
    Recorder recorder(studio.loop);
    QStringList ended;
    QObject::connect(&recorder, &Recorder::Ended, [&ended](const QString& error) { ended << error; });
    const auto one = studio.engine.MakePlayer();
    const auto two = studio.engine.MakePlayer();
    ASSERT_TRUE(studio.Open(*one, studio.File("one.wav", WaveFile(Noise(44100 * 5)))).Ok());
    ASSERT_TRUE(studio.Open(*two, studio.File("two.wav", WaveFile(Noise(44100 * 5, 2)))).Ok());
    const auto tap = studio.engine.TapOf();
    studio.loop.RunFor(333ms);
    const QString path = studio.folder.Path(NameOf(kind));
    recorder.Start(tap, path, kind);
    studio.loop.RunFor(1234ms);
    one->Play();
    recorder.NoteTitle(QStringLiteral("The \"One\""), QStringLiteral("First"),
                       [&] { return one->OnAirFrom(); });
    studio.loop.RunFor(1517ms);
    two->Play();
    recorder.NoteTitle(QStringLiteral("Two"), QStringLiteral("Second"), [&] { return two->OnAirFrom(); });
    studio.loop.RunFor(2s);
    EXPECT_EQ(recorder.Now(), Recorder::State::Recording);
    EXPECT_NEAR(recorder.Seconds(), 4.7, 0.15);
    EXPECT_GT(recorder.Bytes(), 400'000);
    EXPECT_GT(recorder.BytesLeft(), 0);
    recorder.Stop();
    studio.loop.RunFor(200ms);
    EXPECT_EQ(recorder.Now(), Recorder::State::Idle);
    EXPECT_EQ(ended, QStringList{QString()});

    EXPECT_TRUE(IsWhole(path));
    const Samples recorded = ReadBack(path);
    EXPECT_EQ(recorder.Seconds(), static_cast<double>(recorded.size() / 2) / 44100);
    EXPECT_EQ(recorder.Bytes(), QFileInfo(path).size());
    const FrameIndex first = PlaceOf(recorded, studio.heard);
    ASSERT_GE(first, 0);

    const auto began = std::find_if(recorded.begin(), recorded.end(), [](float each) { return each != 0; });
    const auto frame = (began - recorded.begin()) / 2;
    const auto at = [](FrameIndex frames) {
      const FrameIndex cue = frames * 75 / 44100;
      return QStringLiteral("00:%1:%2")
          .arg(cue / 75, 2, 10, QLatin1Char('0'))
          .arg(cue % 75, 2, 10, QLatin1Char('0'));
    };
    const QString sheet = QString::fromUtf8(studio.folder.Read(QStringLiteral("air.cue")));
    EXPECT_EQ(sheet,
              QStringLiteral("FILE \"%1\" WAVE\r\n"
                             "  TRACK 01 AUDIO\r\n    TITLE \"First\"\r\n    PERFORMER \"The 'One'\"\r\n"
                             "    INDEX 01 %2\r\n"
                             "  TRACK 02 AUDIO\r\n    TITLE \"Second\"\r\n    PERFORMER \"Two\"\r\n"
                             "    INDEX 01 %3\r\n")
                  .arg(NameOf(kind), at(frame), at(*two->OnAirFrom() - first)));
  }
}

TEST(Recorder, AFullDiskEndsTheRecordingLeavesAFileThatIsWholeAndTheDeskPlaysOn) {
  struct FullDisk {
    rlimit before{};
    FullDisk() {
      std::signal(SIGXFSZ, SIG_IGN);
      ::getrlimit(RLIMIT_FSIZE, &before);
      const rlimit small{.rlim_cur = 400'000, .rlim_max = before.rlim_max};
      ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk() {
      ::setrlimit(RLIMIT_FSIZE, &before);
      std::signal(SIGXFSZ, SIG_DFL);
    }
  };
  for (const Kind kind : kKinds) {
    SimulatedStudio studio;
    Recorder recorder(studio.loop);
    QStringList ended;
    QObject::connect(&recorder, &Recorder::Ended, [&ended](const QString& error) { ended << error; });
    const auto player = studio.engine.MakePlayer();
    ASSERT_TRUE(studio.Open(*player, studio.File("one.wav", WaveFile(Noise(44100 * 30)))).Ok());
    player->Play();
    const QString path = studio.folder.Path(NameOf(kind));
    {
      const FullDisk disk;
      recorder.Start(studio.engine.TapOf(), path, kind);
      studio.loop.RunFor(5s);
    }
    EXPECT_EQ(recorder.Now(), Recorder::State::Idle);
    ASSERT_EQ(ended.size(), 1);
    EXPECT_TRUE(ended.front().contains(path)) << ended.front().toStdString();
    EXPECT_NEAR(player->CurrentPosition(), 5, 0.05);

    EXPECT_TRUE(IsWhole(path));
    const Samples recorded = ReadBack(path);
    EXPECT_GT(recorded.size() / 2, 44100U);
    const auto first = PlaceOf(recorded, studio.heard);
    ASSERT_GE(first, 0);
    // The next one tells at once that it can't begin: the file is there.
    recorder.Start(studio.engine.TapOf(), path, kind);
    studio.loop.RunFor(500ms);
    EXPECT_EQ(ended.size(), 2);
  }
}

TEST(Recorder, WhatADiskIsTooSlowForIsSilentAndTheLengthStaysTrue) {
  const TemporaryTree folder;
  const auto tap = std::make_shared<Tap>();
  FrameIndex at = 1000;
  Feed(*tap, at, 1000);
  Recording recording(tap, folder.Path(QStringLiteral("air.wav")), Kind::Wav);
  EXPECT_TRUE(recording.Step());
  Feed(*tap, at, 44100);
  EXPECT_TRUE(recording.Step());
  EXPECT_EQ(recording.Lost(), 0);
  for (int i = 0; i < 10; ++i) Feed(*tap, at, 44100);
  EXPECT_TRUE(recording.Step());
  recording.Finish();
  EXPECT_EQ(recording.Frames(), at - 2000);
  EXPECT_GE(recording.Lost(), 10 * 44100 - Tap::kFrames);
  EXPECT_LT(recording.Lost(), 10 * 44100 - Tap::kFrames + 4096);
  const Samples recorded = ReadBack(folder.Path(QStringLiteral("air.wav")));
  ASSERT_EQ(recorded.size() / 2, static_cast<std::size_t>(recording.Frames()));
  for (const std::size_t i : {std::size_t{0}, std::size_t{88'199}, recorded.size() - 1})
    EXPECT_NEAR(recorded[i], SampleAt(i + 4000), 1e-6F);
  EXPECT_EQ(recorded[88'200], 0) << "the first that was lost";
}

/// Run in a process of its own by the test below: records, says how far it is, and never ends.
TEST(RecorderChild, DISABLED_RecordsUntilItIsKilled) {
  const QString path = qEnvironmentVariable("RECORDING");
  const Kind kind = path.endsWith(QStringLiteral("flac")) ? Kind::Flac : Kind::Wav;
  const auto tap = std::make_shared<Tap>();
  FrameIndex at = 0;
  Feed(*tap, at, 1);
  Recording recording(tap, path, kind);
  QFile progress(path + QStringLiteral(".progress"));
  ASSERT_TRUE(progress.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
  while (recording.Step()) {
    // So much sound comes from one step to the next.
    Feed(*tap, at, 4410);
    progress.seek(0);
    progress.write(QByteArray::number(qlonglong{at}).rightJustified(12));
  }
}

TEST(Recorder, AKillLosesLessThanASecond) {
  const TemporaryTree folder;
  Dice dice;
  SCOPED_TRACE(::testing::Message() << "seed " << dice.Seed());
  for (int round = 0; round < 8; ++round) {
    const QString path = folder.Path(QStringLiteral("%1-").arg(round) + NameOf(kKinds[round % 2]));
    const QString told = path + QStringLiteral(".progress");
    Spawned child({QCoreApplication::applicationFilePath().toUtf8(), "--gtest_also_run_disabled_tests",
                   "--gtest_filter=RecorderChild.*"},
                  // It runs its one test whatever part of them this process runs.
                  {"RECORDING=" + path.toUtf8(), "GTEST_TOTAL_SHARDS=1", "GTEST_SHARD_INDEX=0"});
    const auto until = 44100LL * (1 + dice.Below(8)) + dice.Below(44100);
    const auto progress = [&] {
      QFile file(told);
      return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toLongLong() : 0;
    };
    while (progress() < until) ASSERT_FALSE(child.HasEnded());
    child.Signal(SIGKILL);
    child.ExitCode();
    const auto fed = progress();
    EXPECT_TRUE(IsWhole(path));
    const Samples recorded = ReadBack(path);
    EXPECT_NEAR(RecordedSeconds(path).value_or(-1), static_cast<double>(recorded.size()) / 88200, 1e-6);
    EXPECT_GT(static_cast<long long>(recorded.size() / 2), fed - 44100);
    for (std::size_t i = 0; i < recorded.size(); ++i) ASSERT_NEAR(recorded[i], SampleAt(i + 2), 1e-6F) << i;
  }
}

}  // namespace kelvo::testing
