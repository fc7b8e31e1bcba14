#include "discs/CdripIni.h"
#include "discs/DiscTrackWriter.h"
#include "discs/FakeDrives.h"
#include "discs/TrackReading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

namespace {

class ReadingOfATrack : public ::testing::Test {
 protected:
  std::vector<std::int16_t> Read(int number, int offset = 0, ReadMode mode = ReadMode::Twice) {
    FakeDrive drive(disc_, std::make_shared<DriveBeat>());
    TrackReading reading(drive, disc_->toc, *disc_->toc.Track(number), offset, mode);
    std::vector<std::int16_t> all;
    double share = 0;
    while (!reading.AtEnd()) {
      const auto some = reading.Next();
      all.insert(all.end(), some.begin(), some.end());
      EXPECT_GE(reading.Share(), share);
      share = reading.Share();
    }
    EXPECT_EQ(share, 1);
    facts_ = reading.Facts();
    return all;
  }
  std::vector<std::int16_t> Track(int number) const {
    const TocTrack& track = *disc_->toc.Track(number);
    return disc_->disc.Cut(track.first, track.sectors);
  }
  void FailRead(int sector, DriveFailure::Kind kind) {
    disc_->spoil = [sector, kind](int first, int, std::span<std::int16_t> samples) {
      if (first <= sector && sector < first + static_cast<int>(samples.size()) / kCdSectorSamples)
        throw DriveFailure(kind, u"no"_s, {});
    };
  }

  std::shared_ptr<FakeDisc> disc_ = ThreeTracks();
  ReadFacts facts_;
};

TEST_F(ReadingOfATrack, IsCarefulWhereTheTwoPassesDifferAndNowhereElse) {
  EXPECT_EQ(Read(2), Track(2));
  EXPECT_THAT(disc_->carefully, IsEmpty());
  const std::uint32_t checksum = facts_.checksum;
  // In either pass a drive may have jumped: the sectors from 610 on come late by some frames, those from 640
  // are well again.
  for (const int pass : {0, 1}) {
    disc_->reads.clear();
    disc_->carefully.clear();
    disc_->spoil = [pass, this](int first, int times, std::span<std::int16_t> samples) {
      if (times != pass || first != 600) return;
      const auto shifted = disc_->disc.Cut(609, 31);
      std::copy_n(shifted.begin() + 1000, 30 * kCdSectorSamples, samples.begin() + 10 * kCdSectorSamples);
    };
    EXPECT_EQ(Read(2), Track(2));
    EXPECT_THAT(disc_->carefully, ElementsAre(Pair(610, 30)));
    EXPECT_EQ(facts_.checksum, checksum);
  }
  // One pass takes it as it comes.
  disc_->reads.clear();
  disc_->spoil = [](int, int, std::span<std::int16_t> samples) { samples[5] ^= 1; };
  EXPECT_NE(Read(2, 0, ReadMode::Once), Track(2));
  EXPECT_NE(facts_.checksum, checksum);
}

TEST_F(ReadingOfATrack, GoesOnBehindWhatCannotBeReadAndEndsWithoutADisc) {
  FailRead(333, DriveFailure::Kind::Unread);
  disc_->unsureSectors = 2;
  EXPECT_EQ(Read(2), Track(2));
  EXPECT_EQ(facts_.unsure, 2);
  EXPECT_THAT(disc_->carefully, ElementsAre(Pair(300, 150)));
  FailRead(333, DriveFailure::Kind::NoDisc);
  EXPECT_THROW((void)Read(2), DriveFailure);
}

TEST_F(ReadingOfATrack, IsMovedByTheReadOffsetOfTheDrive) {
  const auto whole = disc_->disc.samples;
  const auto moved = [&](int number, int offset) {
    const TocTrack& track = *disc_->toc.Track(number);
    std::vector<std::int16_t> samples(static_cast<std::size_t>(track.sectors) * kCdSectorSamples, 0);
    for (std::size_t i = 0; i < samples.size(); ++i) {
      const auto from =
          static_cast<std::int64_t>(i) + (std::int64_t{track.first} * kCdSectorFrames + offset) * 2;
      if (from >= 0 && from < std::int64_t{disc_->toc.End()} * kCdSectorSamples)
        samples[i] = whole[static_cast<std::size_t>(from)];
    }
    return samples;
  };
  for (const int offset : {6, -6, 588, -1000, 30000}) {
    for (const int number : {1, 2, 3}) {
      EXPECT_EQ(Read(number, offset), moved(number, offset)) << number << " by " << offset;
      EXPECT_EQ(Read(number, offset, ReadMode::Full), moved(number, offset)) << number << " by " << offset;
    }
  }
}

TEST_F(ReadingOfATrack, DoesNotTakeTheDrivesMemoryForTheDisc) {
  disc_->disc = MadeDisc(4000);
  disc_->toc.tracks = {{.number = 1, .first = 0, .sectors = 200},
                       {.number = 2, .first = 200, .sectors = 3800}};
  EXPECT_EQ(Read(1), Track(1));
  EXPECT_EQ(disc_->reads[2800], 1) << "1200 sectors from elsewhere between the two passes";
  EXPECT_EQ(disc_->reads[0], 2);
}

TEST(TheZonesOfADisc, EndWhereDataBegins) {
  DiscToc toc;
  toc.tracks = {{.number = 1, .first = 0, .sectors = 1000, .audio = false},
                {.number = 2, .first = 1000, .sectors = 500},
                {.number = 3, .first = 1500, .sectors = 500},
                {.number = 4, .first = 13400, .sectors = 800, .audio = false}};
  EXPECT_FALSE(toc.Hidden());
  EXPECT_EQ(toc.AudioZone(1700).first, 1000);
  EXPECT_EQ(toc.AudioZone(1700).end, 2000);
  EXPECT_EQ(toc.AudioZone(500).end, 0);
  EXPECT_EQ(toc.AudioZone(5000).end, 0) << "between two sessions";
  EXPECT_EQ(toc.TrackAt(5000)->number, 3);
}

TEST(TheIniOfTheRipper, IsMadeReadAndForgivesNonsense) {
  const TemporaryTree folder;
  const QString path = folder.Path(u"cdrip.ini"_s);
  const CdripIni first = ReadCdripIni(path);
  EXPECT_TRUE(folder.Exists(u"cdrip.ini"_s));
  EXPECT_EQ(first.mode, ReadMode::Twice);
  EXPECT_EQ(first.writer, WriterName::kMp3);
  EXPECT_THAT(ReadCdripIni(path).nonsense, IsEmpty()) << "what it makes it understands";
  const CdripIni typed = CdripIni::FromBytes(
      "device = /dev/sr1\nREADOFFSET=-30\nSpeed=fast\nparanoia=Full\nwhat is this\nReadOffset=9999999\n");
  EXPECT_EQ(typed.device, u"/dev/sr1"_s);
  EXPECT_EQ(typed.offset, -30);
  EXPECT_EQ(typed.speed, 0);
  EXPECT_EQ(typed.mode, ReadMode::Full);
  EXPECT_THAT(typed.nonsense, ElementsAre(u"Speed=fast"_s, u"what is this"_s, u"ReadOffset=9999999"_s));
}

TEST(TheWriters, AreLoadedByNameOnceAndNeverOverwrite) {
  auto kinds = OwnWriters();
  kinds[u"some.Thing"_s] = {};
  cPluginManager plugins(kinds);
  const WriterKind wave = plugins.Load(WriterName::kWave);
  const auto refusal = [&plugins](const QString& name) {
    try {
      (void)plugins.Load(name);
    } catch (const Failure& failure) {
      return QString::fromUtf8(failure.what());
    }
    return QString();
  };
  EXPECT_EQ(refusal(WriterName::kWave), u"This plugin has already been loaded."_s);
  EXPECT_TRUE(
      refusal(u"some.Thing"_s).startsWith(u"The specified object does not appear to be a valid plugin"_s));
  EXPECT_EQ(refusal(u"gone"_s),
            u"Could not create an instance of the object 'goneThe object may not be registered"_s);

  const TemporaryTree folder;
  const std::vector<std::int16_t> samples{1, -2, 3, -4};
  for (const bool taken : {false, true}) {
    const auto writer = wave.make({folder.Path(u"a.Wav"_s), {}});
    writer->Write(samples);
    EXPECT_EQ(folder.Exists(u"a.Wav"_s), taken) << "it has its name when it is whole";
    EXPECT_EQ(writer->Finish(), !taken);
  }
  const QByteArray bytes = folder.Read(u"a.Wav"_s);
  EXPECT_EQ(bytes.size(), 44 + 8);
  EXPECT_EQ(bytes.mid(44), QByteArray("\x01\x00\xfe\xff\x03\x00\xfc\xff", 8));
}

}  // namespace
