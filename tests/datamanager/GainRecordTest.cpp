// The arithmetic of the gain record, and what is made of the tool's words.

#include "database/InfoFields.h"
#include "datamanager/GainOutput.h"
#include "datamanager/MeasuredGains.h"

#include <gtest/gtest.h>

#include <random>

using namespace kelvo;
using namespace Qt::StringLiterals;

namespace {

QString Text(const Mp3Info& record) {
  return InfoFields::GainRecord.text(record.Shown());
}

TEST(GainRecord, CountsInStepsOfTheFormat) {
  Mp3Info record;
  EXPECT_EQ(record.RadioMp3Gain(), 0);
  EXPECT_EQ(record.MaxNoclipMp3Gain(), 0);
  EXPECT_EQ(Text(record), u"?"_s);
  record.RadiodBGain = 3.0;
  record.AlbumdBGain = -1.0;
  record.ModifydBGain = 3.0;
  record.CurrMaxAmp = 16384;
  record.CurrMaxGain = 210;
  record.CurrMinGain = 80;
  EXPECT_EQ(record.RadioMp3Gain(), 4);
  EXPECT_EQ(record.AlbumMp3Gain(), 1);
  EXPECT_EQ(Text(record), u"89.0,6.0"_s) << "a target of 92";
  EXPECT_EQ(record.MaxNoclipMp3Gain(), 3) << "just below an octave";

  record.AlterDb(-4 * Mp3Info::kStep);
  EXPECT_NEAR(*record.RadiodBGain, 3.0 - 4 * Mp3Info::kStep, 1e-9);
  EXPECT_NEAR(*record.AlbumdBGain, -1.0 - 4 * Mp3Info::kStep, 1e-9);
  EXPECT_NEAR(*record.CurrMaxAmp, 32768, 1e-6);
  EXPECT_EQ(record.CurrMaxGain, 214);
  EXPECT_EQ(record.CurrMinGain, 84);
  EXPECT_EQ(record.RadioMp3Gain(), 0) << "it is where it should be";
  EXPECT_EQ(record.MaxNoclipMp3Gain(), -1) << "it clips by a hair";
  EXPECT_EQ(record.ModifydBGain, 3.0);

  Mp3Info little;
  little.RadiodBGain = 1.0;
  little.AlterDb(1.5);
  EXPECT_EQ(little.CurrMaxAmp, std::nullopt) << "what is not known stays so";
  little.RadiodBGain = 1e9;
  EXPECT_EQ(little.RadioMp3Gain(), 32767);
  little.CurrMaxAmp = 2'000'000;
  EXPECT_EQ(little.MaxNoclipMp3Gain(), 0);
}

const QByteArray kTagHeads =
    "File\tMP3 gain\tdB gain\tMax Amplitude\tMax global_gain\tMin global_gain\tAlbum gain\tAlbum dB gain\t"
    "Album Max Amplitude\tAlbum Max global_gain\tAlbum Min global_gain\n";
const QByteArray kHeads = "File\tMP3 gain\tdB gain\tMax Amplitude\tMax global_gain\tMin global_gain\n";

TEST(GainOutputs, AreJudgedByTheirFields) {
  const auto tags = [](const QByteArray& gain) {
    return StoredTagsIn(kTagHeads + "a.mp3\t-4\t" + gain + "\t50855.7\t213\t80\tNA\tNA\tNA\tNA\tNA\n");
  };
  ASSERT_TRUE(tags("-6.165"));
  EXPECT_EQ(tags("-6.165")->RadiodBGain, -6.165);
  EXPECT_EQ(tags("-6.165")->CurrMaxAmp, 50855.7);
  EXPECT_EQ(tags("-6.165")->CurrMinGain, 80);
  for (const char* none : {"NA", "-9.999999", "9.999999", "nan", "inf", "1e300", "6,1", ""})
    EXPECT_EQ(tags(none)->RadiodBGain, std::nullopt) << none;
  EXPECT_FALSE(StoredTagsIn(kTagHeads));
  EXPECT_FALSE(StoredTagsIn({}));
  EXPECT_FALSE(StoredTagsIn(kTagHeads + "a\tb\n"));

  const AnalysisAnswer good = AnalysisIn(
      QByteArray(kHeads + "a.mp3\t-1\t-2.09\t29353.4\t255\t141\n\"Album\"\t-1\t-2.09\t29353.4\t255\t141\n")
          .replace("\n", "\r\n"),
      u"a.mp3"_s);
  ASSERT_TRUE(good.record);
  EXPECT_EQ(good.record->RadiodBGain, -2.09);
  EXPECT_EQ(good.record->CurrMaxAmp, 29353.4);
  EXPECT_EQ(good.record->CurrMaxGain, 255);
  EXPECT_EQ(good.record->CurrMinGain, 141);
  const AnalysisAnswer named = AnalysisIn(kHeads + "Not enough samples in /m/a.mp3\n", u"a.mp3"_s);
  EXPECT_FALSE(named.record);
  EXPECT_EQ(named.told, u"Not enough samples in /m/a.mp3"_s);
  EXPECT_EQ(AnalysisIn(kHeads + "Something else\n", u"a.mp3"_s).told, QString());
  EXPECT_FALSE(AnalysisIn(kHeads + "a\t1\tNA\tNA\t1\t1\n\"Album\"\t1\tNA\tNA\t1\t1\n", u"a"_s).record);

  EXPECT_EQ(ApplyWordsIn("NOT enough temp space on disk"), ApplyWords::NoDiscSpace);
  EXPECT_EQ(ApplyWordsIn("\nCan't open a.mp3 for modifying\n"), ApplyWords::CannotOpen);
  EXPECT_EQ(ApplyWordsIn({}), ApplyWords::Nothing);
}

TEST(GainOutputs, ProgressIsReadFromPiecesOfAnyForm) {
  ProgressReader reader;
  EXPECT_EQ(reader.Take("             \r  4"), std::nullopt);
  EXPECT_EQ(reader.Take("5% of 903251 bytes analyzed\r"), 45);
  EXPECT_EQ(reader.Take(" 200% of 903251 bytes analyzed\r"), 100);
  EXPECT_EQ(reader.Take("x% of 9 bytes analyzed\r% of 1 bytes a\r-7% of\r"), std::nullopt);
  EXPECT_EQ(reader.Take(QByteArray(100'000, ' ') + "7% of 3 bytes analyzed\r"), 7);
  std::mt19937 dice(7);
  for (int round = 0; round < 500; ++round) {
    QByteArray noise(40, Qt::Uninitialized);
    for (char& byte : noise) byte = "\r\n\t %of0123456789bytesNA."[dice() % 24];
    EXPECT_GE(reader.Take(noise).value_or(0), 0);
    (void)StoredTagsIn(kTagHeads + noise);
    (void)AnalysisIn(kHeads + noise + noise, u"a"_s);
  }
}

TEST(MeasuredGains, HoldForTheFileAsItWasAndForgetTornLines) {
  MeasuredGains gains;
  Mp3Info record;
  record.RadiodBGain = record.RawRadiodBGain = -2.25;
  record.CurrMaxAmp = 29353.5;
  record.CurrMaxGain = 210;
  const QString odd = u"/m/Tab\tand\nline - Ünï%41.mp3"_s;
  QByteArray file = gains.Add(odd, {100, 5}, record);
  file += gains.Add(u"/m/b.mp3"_s, {100, 5}, record);
  Mp3Info later = record;
  later.RadiodBGain = later.RawRadiodBGain = 1;
  later.ModifydBGain = 3;
  file += gains.Add(u"/m/b.mp3"_s, {101, 6}, later);
  file += "\xff\t\t\nrubbish\n" + gains.Add(u"/m/c.mp3"_s, {1, 1}, record).chopped(4);
  const MeasuredGains read = MeasuredGains::FromBytes(file);
  EXPECT_EQ(read.Find(odd, {100, 5}), record);
  EXPECT_EQ(read.Find(odd, {100, 6}), std::nullopt);
  EXPECT_EQ(read.Find(u"/m/b.mp3"_s, {101, 6})->RadiodBGain, 1);
  EXPECT_EQ(read.Find(u"/m/b.mp3"_s, {101, 6})->ModifydBGain, std::nullopt) << "the target is of the moment";
  EXPECT_FALSE(read.Knows(u"/m/c.mp3"_s));
}

}  // namespace
