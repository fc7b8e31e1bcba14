// Images through libcdio and libcdio-paranoia: what is on them, and their samples bit for bit.

#include "discs/DiscDecoder.h"
#include "discs/MadeDisc.h"
#include "discs/TrackReading.h"

#include <cdio/paranoia/cdda.h>
#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class DiscImage : public ::testing::Test {
 protected:
  std::unique_ptr<CdioDrive> Open(const QString& place) {
    return std::make_unique<CdioDrive>(place, std::make_shared<DriveBeat>());
  }
  QString WhyNot(const QString& place) {
    try {
      (void)Open(place);
    } catch (const DriveFailure& failure) {
      return QString::fromUtf8(failure.what());
    }
    return {};
  }
  static std::vector<std::int16_t> ReadAll(TrackReading& reading) {
    std::vector<std::int16_t> all;
    while (!reading.AtEnd()) {
      const auto some = reading.Next();
      all.insert(all.end(), some.begin(), some.end());
    }
    return all;
  }

  TemporaryTree folder_;
  MadeDisc disc_{kFiveSectors};
};

TEST_F(DiscImage, TellsItsTracksTheirNamesAndWhatIsOdd) {
  const DiscToc toc = Open(WriteImage(folder_, disc_))->ReadToc();
  ASSERT_EQ(toc.tracks.size(), 5U);
  EXPECT_EQ(toc.title, u"The Album"_s);
  EXPECT_EQ(toc.performer, u"The Band"_s);
  EXPECT_EQ(toc.tracks[1].performer, u"A Guest"_s);
  EXPECT_EQ(toc.tracks[2].title, u"Dr\u00fcben"_s);
  EXPECT_EQ(toc.tracks[0].first, 265);
  EXPECT_EQ(toc.tracks[3].first, 975) << "the pause belongs to the track before";
  EXPECT_EQ(toc.tracks[2].sectors, 975 - 761);
  EXPECT_EQ(toc.End(), kFiveSectors);
  EXPECT_TRUE(toc.tracks[2].preEmphasis);
  EXPECT_FALSE(toc.tracks[1].preEmphasis);
  ASSERT_TRUE(toc.Hidden());
  EXPECT_EQ(toc.Hidden()->sectors, 265);
  EXPECT_EQ(LookAtDisc(folder_.Path(u"disc.cue"_s)), DiscState::Audio);
}

TEST_F(DiscImage, IsReadBitForBitInEveryModeAndFromEveryTrack) {
  const auto drive = Open(WriteImage(folder_, disc_));
  const DiscToc toc = drive->ReadToc();
  std::vector<TocTrack> tracks = toc.tracks;
  tracks.push_back(*toc.Hidden());
  for (const ReadMode mode : {ReadMode::Once, ReadMode::Twice, ReadMode::Full}) {
    for (const TocTrack& track : tracks) {
      TrackReading reading(*drive, toc, track, 0, mode);
      EXPECT_EQ(ReadAll(reading), disc_.Cut(track.first, track.sectors)) << track.number;
      EXPECT_EQ(reading.Facts().unsure, 0);
      EXPECT_EQ(reading.Facts().careful, mode == ReadMode::Full ? track.sectors : 0);
    }
  }
}

TEST_F(DiscImage, IsReadBitForBitThroughJitterAndUnderruns) {
  const auto drive = Open(WriteImage(folder_, disc_));
  const DiscToc toc = drive->ReadToc();
  for (const int faults :
       {int{CDDA_TEST_JITTER_SMALL}, int{CDDA_TEST_JITTER_LARGE}, int{CDDA_TEST_JITTER_MASSIVE},
        int{CDDA_TEST_UNDERRUN}, CDDA_TEST_JITTER_SMALL | CDDA_TEST_UNDERRUN}) {
    drive->InjectFaults(faults);
    for (const ReadMode mode : {ReadMode::Twice, ReadMode::Full}) {
      TrackReading reading(*drive, toc, toc.tracks[2], 0, mode);
      EXPECT_EQ(ReadAll(reading), disc_.Cut(toc.tracks[2].first, toc.tracks[2].sectors)) << faults;
    }
  }
}

TEST_F(DiscImage, ThatCannotBeReadSaysWhy) {
  EXPECT_TRUE(WhyNot(folder_.Path(u"gone.cue"_s)).contains(u"cannot be opened"_s));
  const QString sheet = folder_.Write(
      u"alone.cue"_s, "FILE \"alone.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n    INDEX 01 00:00:00\r\n");
  EXPECT_TRUE(WhyNot(sheet).contains(u"is not there"_s));
  const QString two = folder_.Write(u"two.cue"_s, "FILE \"a.bin\" BINARY\r\nFILE \"b.bin\" BINARY\r\n");
  EXPECT_TRUE(WhyNot(two).contains(u"several files"_s));
  for (const QByteArray& garbage : {QByteArray(), QByteArray("nonsense"), QByteArray(5000, '\xff')}) {
    EXPECT_FALSE(WhyNot(folder_.Write(u"garbage.cue"_s, garbage)).isEmpty());
    EXPECT_FALSE(WhyNot(folder_.Write(u"garbage.nrg"_s, garbage)).isEmpty());
    EXPECT_FALSE(WhyNot(folder_.Write(u"garbage.toc"_s, garbage)).isEmpty());
  }
  (void)WriteImage(folder_, disc_);
  EXPECT_EQ(ImageSheet(folder_.Path(u"disc.bin"_s)), folder_.Path(u"disc.cue"_s));
}

TEST_F(DiscImage, PlaysFromEveryPlaceAsItIs) {
  DiscDecoder decoder(Open(WriteImage(folder_, disc_)));
  EXPECT_EQ(decoder.Frames(), FrameIndex{kFiveSectors} * kCdSectorFrames);
  for (const FrameIndex place : {FrameIndex{0}, FrameIndex{100001}, decoder.Frames() - 700}) {
    decoder.Seek(place);
    std::vector<float> heard(2000);
    const std::size_t frames = decoder.Read(heard);
    EXPECT_EQ(frames, std::min<std::size_t>(1000, static_cast<std::size_t>(decoder.Frames() - place)));
    for (std::size_t sample = 0; sample < frames * 2; ++sample) {
      ASSERT_EQ(heard[sample] * 32768,
                static_cast<float>(disc_.samples[static_cast<std::size_t>(place) * 2 + sample]));
    }
  }
}

}  // namespace
