#include "audio/SimulatedStudio.h"
#include "audio/SoundLook.h"
#include "audio/engine/OpenDecoder.h"
#include "platform/ErrorLog.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace kelvo::testing {

namespace {

QByteArray RandomBytes(int count) {
  std::mt19937 generator(3);
  QByteArray bytes(count, '\0');
  for (char& each : bytes) each = static_cast<char>(generator());
  return bytes;
}

std::size_t PlayableFrames(const QString& path) {
  const auto decoder = OpenDecoder(path);
  std::size_t all = 0;
  Samples piece(8192);
  while (const std::size_t got = decoder->Read(piece)) all += got;
  return all;
}

}  // namespace

TEST(Files, WhatIsNoSoundIsRefusedWithASentenceThatNamesIt) {
  SimulatedStudio studio;
  const auto player = studio.engine.MakePlayer();
  const QString good = studio.File("good.wav", WaveFile(Noise(1000)));
  ASSERT_TRUE(studio.Open(*player, good).Ok());
  ::mkfifo(studio.folder.Path(QStringLiteral("pipe.mp3")).toUtf8().constData(), 0600);
  const QByteArray wave = WaveFile(Noise(100));
  const std::pair<QString, QString> rows[] = {
      {studio.File("text.mp3", QByteArray("Not a sound at all.\r\n").repeated(20000)),
       QStringLiteral("no sound file")},
      {studio.File("short.mp3", "x"), QStringLiteral("no sound file")},
      {studio.File("garbage.mp3", RandomBytes(3'000'000)), QStringLiteral("sound")},
      {studio.File("zeros.mp3", QByteArray(20'000'000, '\0')), QStringLiteral("no sound file")},
      {studio.File("empty.wav", ""), QStringLiteral("is empty")},
      {studio.File("no-frames.wav", WaveFile({})), QStringLiteral("no sound")},
      {studio.File("cut-in-header.wav", wave.left(30)), QStringLiteral("WAV file that can't be read")},
      {studio.folder.MakeFolder(QStringLiteral("folder.mp3")), QStringLiteral("is a folder")},
      {studio.folder.Path(QStringLiteral("pipe.mp3")), QStringLiteral("not a regular file")},
      {studio.folder.Path(QStringLiteral("missing.mp3")), QStringLiteral("can't be opened")},
  };
  for (const auto& [path, cause] : rows) {
    SCOPED_TRACE(path.toStdString());
    const OpenResult result = studio.Open(*player, path);
    EXPECT_EQ(result.kind, OpenResult::Kind::Failed);
    EXPECT_TRUE(result.error.contains(path) && result.error.contains(cause)) << result.error.toStdString();
    EXPECT_EQ(player->FileName(), good);
    // Where noise looks like sound at its start, only the whole file tells.
    if (path.endsWith(QStringLiteral("garbage.mp3"))) continue;
    const QString atOnce = WhyNotPlayable(path);
    EXPECT_TRUE(atOnce.startsWith(QStringLiteral("The file ")) && atOnce.contains(cause))
        << atOnce.toStdString();
  }
  EXPECT_EQ(WhyNotPlayable(good), QString());
  EXPECT_THROW(static_cast<void>(OpenDecoder(rows[0].first)), Failure);
}

TEST(Files, DamagedAndUnfinishedFilesPlayWhatIsThere) {
  const TemporaryTree folder;
  const Samples sound = Noise(44100 * 3);
  const QByteArray mp3 = Mp3File(sound);
  QByteArray torn = mp3;
  for (int i = 0; i < 3000; ++i) torn[mp3.size() / 2 + i] = static_cast<char>(i * 7);
  const QByteArray tagged = QByteArray::fromHex("49443303000000020000") + QByteArray(32768, 'x') + mp3;

  EXPECT_NEAR(static_cast<double>(PlayableFrames(folder.Write("half.mp3", mp3.left(mp3.size() / 2)))), 66150,
              3000);
  EXPECT_NEAR(static_cast<double>(PlayableFrames(folder.Write("torn.mp3", torn))), 132300, 12000);
  EXPECT_EQ(PlayableFrames(folder.Write("tagged.mp3", tagged)), 132300U);
  for (const QString& name :
       {QStringLiteral("half.mp3"), QStringLiteral("torn.mp3"), QStringLiteral("tagged.mp3")})
    EXPECT_EQ(WhyNotPlayable(folder.Path(name)), QString()) << name.toStdString();
  const QByteArray wave = WaveFile(sound);
  EXPECT_NEAR(static_cast<double>(PlayableFrames(folder.Write("half.wav", wave.left(wave.size() / 2)))),
              66150, 20);
  for (const auto header : {WaveKind::Header::SizesZero, WaveKind::Header::SizesOpen}) {
    for (const auto coding : {WaveKind::Coding::Pcm16, WaveKind::Coding::Float32}) {
      WaveKind kind;
      kind.header = header;
      kind.coding = coding;
      EXPECT_EQ(PlayableFrames(folder.Write("unfinished.wav", WaveFile(sound, kind))), 132300U);
    }
  }
}

TEST(Files, AFileOfSilenceIsToldFromOneThatBeginsWithIt) {
  SimulatedStudio studio;
  const auto player = studio.engine.MakePlayer();
  Samples sound(44100 * 2 * 20, 0.0002F);
  ASSERT_TRUE(studio.Open(*player, studio.File("hush.wav", WaveFile(sound))).Ok());
  EXPECT_FALSE(player->HasSound());
  ASSERT_TRUE(studio.Open(*player, studio.File("hush.mp3", Mp3File(sound))).Ok());
  EXPECT_FALSE(player->HasSound());
  sound[44100 * 2 * 19] = 0.25F;
  ASSERT_TRUE(studio.Open(*player, studio.File("late.wav", WaveFile(sound))).Ok());
  EXPECT_TRUE(player->HasSound());
  EXPECT_EQ(player->CurrentPosition(), 0);
  player->Play();
  studio.loop.RunFor(19500ms);
  EXPECT_NEAR(*std::max_element(studio.heard.begin(), studio.heard.end()), 0.25F, 0.001F)
      << "it plays from its start all the same";
  player->Close();
  EXPECT_FALSE(player->HasSound());
}

TEST(Files, AFileOfFloatsCannotHarmTheOutput) {
  SimulatedStudio studio;
  Samples sound(44100 * 2 * 4, 0.5F);
  sound[1000] = std::numeric_limits<float>::quiet_NaN();
  sound[2000] = std::numeric_limits<float>::infinity();
  sound[3000] = -1e30F;
  WaveKind kind;
  kind.coding = WaveKind::Coding::Float32;
  const auto player = studio.engine.MakePlayer();
  ASSERT_TRUE(studio.Open(*player, studio.File("wild.wav", WaveFile(sound, kind))).Ok());
  player->SetRate(1.3);
  player->Play();
  studio.loop.RunFor(4s);
  EXPECT_TRUE(std::all_of(studio.heard.begin(), studio.heard.end(),
                          [](float sample) { return std::abs(sample) <= 1.0F; }));
  // Each wild sample spoils what is near it, then the limiter lets go of it.
  const auto fine = std::count_if(studio.heard.begin(), studio.heard.end(),
                                  [](float sample) { return std::abs(sample - 0.5F) < 0.005F; });
  const auto all =
      std::count_if(studio.heard.begin(), studio.heard.end(), [](float sample) { return sample != 0.0F; });
  EXPECT_GT(static_cast<double>(fine), 0.8 * static_cast<double>(sound.size()) / 1.3);
  EXPECT_GT(static_cast<double>(fine), 0.8 * static_cast<double>(all));
}

TEST(Files, DurationsAreReadWithoutAPlayer) {
  SimulatedStudio studio;
  std::optional<double> seconds;
  bool failed = false;
  const auto read = [](AudioEngine& engine, QString path, std::optional<double>& into,
                       bool& failure) -> Job<> {
    try {
      into = co_await engine.DurationOf(path);
    } catch (const Failure&) {
      failure = true;
    }
  };
  const Job<> good = read(
      studio.engine, studio.File("a.mp3", Mp3File(Sine(300, 2), Mp3Kind::VbrWithoutHeader)), seconds, failed);
  studio.loop.RunFor(10ms);
  EXPECT_NEAR(seconds.value_or(0), 2.0, 0.08);
  const Job<> bad = read(studio.engine, studio.File("b.mp3", "nothing"), seconds, failed);
  studio.loop.RunFor(10ms);
  EXPECT_TRUE(failed);
}

}  // namespace kelvo::testing
