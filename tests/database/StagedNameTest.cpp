#include "database/GenreNames.h"
#include "database/StagedName.h"

#include <gmock/gmock.h>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;

TEST(StagedNameTest, AFileSaysOfItselfWhatItWasStagedWith) {
  const QString ripped =
      StagedPath(u"/u"_s, {u"Amber"_s, u"Amber - Way"_s, u"2005-Dec"_s, u"Best"_s, u".wav"_s});
  EXPECT_EQ(ripped, u"/u/Amber/Amber - Way#2005-Dec#Best#.wav"_s);
  const QString scanned = StagedPath(u"/u"_s, {u"Amber"_s, u"Way v1.2"_s, u"2007-xxx"_s, {}, u".mp3"_s});
  EXPECT_EQ(scanned, u"/u/Amber/Way v1.2#2007-xxx# #.mp3"_s);

  const StagedFile file = ReadStagedPath(scanned);
  EXPECT_EQ(file.trackName, u"Way v1.2.mp3"_s);
  EXPECT_EQ(file.name.artist, u"Amber"_s);
  EXPECT_EQ(file.name.date, u"2007-xxx"_s);
  EXPECT_EQ(file.name.album, QString());
  EXPECT_EQ(ReadStagedPath(ripped).name.album, u"Best"_s);
}

TEST(StagedNameTest, AnyOtherNumberOfFieldsIsAPlainName) {
  for (const QString& name : {u"Way.mp3"_s, u"Way #1.mp3"_s, u"a#b#.mp3"_s, u"a#b#c#d#.mp3"_s}) {
    const StagedFile file = ReadStagedPath(u"/u/Amber/"_s + name);
    EXPECT_EQ(file.trackName, name);
    EXPECT_EQ(file.name.album, u"Unknown"_s);
    EXPECT_EQ(file.name.date, u"0000-xxx"_s);
  }
}

TEST(StagedNameTest, ALongNameIsShortenedBetweenCharacters) {
  EXPECT_EQ(FittingName(u"Way"_s, u".mp3"_s), u"Way.mp3"_s);
  const QString umlauts = FittingName(QString(300, u'ü'), u".mp3"_s);
  EXPECT_EQ(umlauts, QString(125, u'ü') + u".mp3"_s);
  const QString notes = FittingName(u"x"_s + u"\U0001D11E"_s.repeated(200));
  EXPECT_EQ(notes, u"x"_s + u"\U0001D11E"_s.repeated(63));
}

TEST(GenreNamesTest, AGenreIsFoundByItsNumberAndByWhatTagsMakeOfItsName) {
  EXPECT_EQ(GenreName(0), u"Blues"_s);
  EXPECT_EQ(GenreName(131), u"Saxophone Rif"_s);
  EXPECT_EQ(GenreName(132), u"Unknown"_s);
  EXPECT_EQ(GenreName(-1), u"Unknown"_s);
  for (int number = 0; number < kGenreCount; ++number) {
    EXPECT_EQ(GenreNumber(GenreName(number)), number) << number;
    EXPECT_EQ(GenreNumber(u"(%1)"_s.arg(number)), number);
  }
  EXPECT_EQ(GenreNumber(u"hip-hop"_s), 7);
  EXPECT_EQ(GenreNumber(u"17"_s), 17);
  EXPECT_EQ(GenreNumber(u"(17)Rock"_s), 17);
  for (const QString& none : {u""_s, u"132"_s, u"-1"_s, u"(RX)"_s, u"Kirtan"_s, u"99999999999"_s}) {
    EXPECT_EQ(GenreNumber(none), -1) << none.toStdString();
  }
}

}  // namespace
}  // namespace kelvo
