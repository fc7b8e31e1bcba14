#include "database/TestDatabase.h"
#include "database/TrackInfo.h"
#include "platform/ErrorLog.h"

#include <QFile>

#include <gtest/gtest.h>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using testing::InfoBytes;
using testing::TestDatabase;

TEST(TrackInfo, AnyFileIsReadAndItsMissingLinesAreEmpty) {
  const TestDatabase database;
  database.AddTrack(u"short"_s, "~ALL CATEGORIES\r\n\r\n");
  const TextFile shortFile = ReadTrackInfo(database.paths, u"short"_s);
  EXPECT_EQ(shortFile.Count(), 2);
  EXPECT_EQ(shortFile.Line(InfoLine::DurationSeconds), QString());
  EXPECT_EQ(CompletePlayMode(shortFile.Line(InfoLine::PlayMode)), u",1,1"_s);

  QByteArray garbage;
  for (int code = 0; code < 256; ++code) garbage.append(static_cast<char>(code));
  database.AddTrack(u"garbage"_s, garbage);
  WriteTrackInfo(database.paths, u"garbage"_s, ReadTrackInfo(database.paths, u"garbage"_s));
  EXPECT_EQ(database.Info(u"garbage"_s), garbage);

  EXPECT_THROW(static_cast<void>(ReadTrackInfo(database.paths, u"missing"_s)), Failure);
}

TEST(TrackInfo, APatchedLineLeavesEveryOtherByteAlone) {
  const TestDatabase database;
  const QByteArray before =
      "~ALL CATEGORIES,Schlager f\xFCr alle\n~ALL ARTISTS\r\n~ALL "
      "ALBUMS\r\n\r\n?\r\n?\r\n0\r\n3\r\n25\r\n1\r\n";
  const QByteArray after = "0\r\n?\r\n\x80uro, no end";
  database.AddTrack(u"mixed"_s, before + after);
  TextFile lines = ReadTrackInfo(database.paths, u"mixed"_s);
  EXPECT_EQ(lines.Line(InfoLine::Categories), u"~ALL CATEGORIES,Schlager für alle"_s);
  EXPECT_EQ(lines.Line(InfoLine::DurationSeconds), u"€uro, no end"_s);
  lines.SetLine(InfoLine::Bpm, u"128"_s);
  WriteTrackInfo(database.paths, u"mixed"_s, lines);
  EXPECT_EQ(database.Info(u"mixed"_s), QByteArray(before).replace("?\r\n?", "128\r\n?") + after);
}

TEST(TrackInfo, WhatTheCodePageCannotHoldTurnsTheFileIntoUtf8) {
  const TestDatabase database;
  database.AddTrack(u"song"_s);
  TextFile lines = ReadTrackInfo(database.paths, u"song"_s);
  lines.SetLine(InfoLine::Artists, u"~ALL ARTISTS,Кино"_s);
  WriteTrackInfo(database.paths, u"song"_s, lines);
  EXPECT_EQ(database.Info(u"song"_s), "\xEF\xBB\xBF" + InfoBytes().replace("The Band", "Кино"));
  EXPECT_EQ(ReadTrackInfo(database.paths, u"song"_s).Line(InfoLine::Artists), u"~ALL ARTISTS,Кино"_s);
}

TEST(TrackInfo, AFileUnderAnotherCaseIsFoundAndRewrittenWhereItStands) {
  const TestDatabase database;
  database.Add(Paths::Info, u"SÖNG.Kif"_s, InfoBytes());
  TextFile lines = ReadTrackInfo(database.paths, u"söng"_s);
  EXPECT_EQ(lines.Line(InfoLine::ReleaseDate), u"1999-Dec"_s);
  lines.SetLine(InfoLine::HiPos, u"1"_s);
  WriteTrackInfo(database.paths, u"söng"_s, lines);
  EXPECT_FALSE(database.Holds(Paths::Info, u"söng.kif"_s));
  EXPECT_EQ(ReadTrackInfo(database.paths, u"SÖNG"_s).Line(InfoLine::HiPos), u"1"_s);
}

TEST(TrackInfo, ANewFileHoldsTheDefaultsTheArtistOfItsNameAndTheTwoComments) {
  const TestDatabase database;
  TrackDefaults defaults;
  defaults.DefaultFade = 1;
  defaults.DefaultFadeSpeed = 30;
  defaults.DefaultDelta = 4;
  CreateDefaultTrackInfo(database.paths, u"Céline - Title"_s, 215.25, defaults,
                         ReplacedFileComments(u"Kelvo"_s, u"01/06/2007"_s));
  EXPECT_EQ(database.Info(u"Céline - Title"_s),
            "~ALL CATEGORIES\r\n~ALL ARTISTS,C\xE9line\r\n~ALL "
            "ALBUMS\r\n0000-xxx\r\n?\r\n?\r\n1\r\n4\r\n30\r\n1\r\n0\r\n?\r\n"
            "215.25\r\nKelvo Replaced This File On 01/06/2007\r\nPlease Re-Edit !\r\n");
}

TEST(TrackInfo, TheArtistIsWhatStandsBeforeTheFirstDashFromTheThirdCharacterOn) {
  EXPECT_EQ(ArtistsFromName(u"Amber - Money - Money"_s), u"~ALL ARTISTS,Amber"_s);
  EXPECT_EQ(ArtistsFromName(u"U2-One"_s), u"~ALL ARTISTS,U2"_s);
  for (const QString& none : {u"No dash"_s, u"-Title"_s, u"X-Title"_s, QString()}) {
    EXPECT_EQ(ArtistsFromName(none), u"~ALL ARTISTS"_s) << none.toStdString();
  }
}

TEST(TrackInfo, OlderShorterFieldsAreCompletedAndReservedNamesAreNoReferences) {
  EXPECT_EQ(CompletePlayMode(u"1"_s), u"1,1,1"_s);
  EXPECT_EQ(CompletePlayMode(u"1,3"_s), u"1,3,1"_s);
  EXPECT_EQ(CompletePlayMode(u"1,3,2"_s), u"1,3,2"_s);
  EXPECT_EQ(References(u"~ALL CATEGORIES,Rock,~X,,Pop"_s), (QStringList{u"Rock"_s, u"Pop"_s}));
  EXPECT_EQ(References(u"Rock"_s), QStringList());
  EXPECT_EQ(DurationText(-1), u"-1"_s);
  EXPECT_EQ(DurationText(3600), u"3600"_s);
}

}  // namespace
}  // namespace kelvo
