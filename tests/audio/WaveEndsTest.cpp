#include "audio/SimulatedStudio.h"
#include "audio/WaveEnds.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"

#include <QDir>

#include <gtest/gtest.h>

namespace kelvo::testing {

namespace {

int Peak(const QByteArray& peaks, qsizetype place) {
  return static_cast<unsigned char>(peaks[place]);
}

OpeningPtr Wanted() {
  return std::make_shared<Opening>();
}

}  // namespace

TEST(WaveEnds, TellHowLoudBothEndsAreWhateverTheLength) {
  SimulatedStudio studio;
  Samples sound(static_cast<std::size_t>(44100 * 2 * 50));
  const Samples tone = Sine(441, 1);
  std::copy(tone.begin(), tone.end(), sound.begin() + 44100 * 2 * 3);
  std::copy(tone.begin(), tone.end(), sound.end() - 44100 * 2);
  const QString longer = studio.File(QStringLiteral("longer.wav"), WaveFile(sound));
  const WaveEnds ends = ReadWaveEnds(longer, Wanted());
  EXPECT_NEAR(ends.seconds, 50, 0.01);
  ASSERT_EQ(ends.start.size(), kWaveSeconds * kWavePeaksPerSecond);
  ASSERT_EQ(ends.end.size(), kWaveSeconds * kWavePeaksPerSecond);
  EXPECT_EQ(Peak(ends.start, 29), 0);
  EXPECT_NEAR(Peak(ends.start, 30), 128, 2);
  EXPECT_EQ(Peak(ends.start, 40), 0);
  EXPECT_NEAR(Peak(ends.end, 399), 128, 2);
  EXPECT_EQ(Peak(ends.end, 389), 0);

  const WaveEnds brief =
      ReadWaveEnds(studio.File(QStringLiteral("brief.wav"), WaveFile(Sine(441, 0.25))), Wanted());
  EXPECT_EQ(brief.start.size(), 3);
  EXPECT_EQ(brief.end, brief.start);
  EXPECT_THROW(ReadWaveEnds(studio.File(QStringLiteral("bad.mp3"), "no sound"), Wanted()), Failure);
  const OpeningPtr unwanted = Wanted();
  unwanted->cancelled = true;
  EXPECT_THROW(ReadWaveEnds(longer, unwanted), Failure);
}

TEST(WaveEnds, AreKeptInABoundedCacheWhoseGarbageIsMadeAnew) {
  SimulatedStudio studio;
  const QString folder = studio.folder.Path(QStringLiteral("cache/waves"));
  const QDir cache(folder);
  const QString path = studio.File(QStringLiteral("a.wav"), WaveFile(Sine(441, 1)));
  const WaveEnds ends = CachedWaveEnds(folder, path, Wanted());
  ASSERT_EQ(cache.entryList(QDir::Files).size(), 1);
  const QString kept = cache.filePath(cache.entryList(QDir::Files).first());
  EXPECT_EQ(WaveEndsIn(ReadWholeFile(kept)), ends);
  // What is there is taken: a picture of another sound shows it.
  WaveEnds other = ends;
  other.seconds = 7;
  Save(kept, WaveBytes(other));
  EXPECT_EQ(CachedWaveEnds(folder, path, Wanted()).seconds, 7);
  QByteArray flipped = WaveBytes(other);
  flipped[flipped.size() / 2] = static_cast<char>(flipped[flipped.size() / 2] ^ 1);
  for (const QByteArray& garbage : {QByteArray(), QByteArray("KelvoWave1"), WaveBytes(other).chopped(1),
                                    flipped, WaveBytes(other) + "x", QByteArray(100000, 'x')}) {
    Save(kept, garbage);
    EXPECT_EQ(CachedWaveEnds(folder, path, Wanted()), ends);
    EXPECT_EQ(WaveEndsIn(ReadWholeFile(kept)), ends) << "put right";
  }
  Save(path, WaveFile(Sine(441, 2)));
  EXPECT_NEAR(CachedWaveEnds(folder, path, Wanted()).seconds, 2, 0.01) << "the file is another";
  for (int number = 0; number < 6; ++number) {
    const QString each = studio.File(QStringLiteral("%1.wav").arg(number), WaveFile(Sine(441, 1)));
    static_cast<void>(CachedWaveEnds(folder, each, Wanted(), 3));
  }
  EXPECT_EQ(cache.entryList(QDir::Files).size(), 3);
  // A cache that can't be is none.
  EXPECT_EQ(CachedWaveEnds(path + QStringLiteral("/x"), path, Wanted()).start.size(), 20);
}

}  // namespace kelvo::testing
