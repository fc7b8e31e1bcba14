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

TrackInfo InfoOf(const QByteArray& bytes) {
  return TrackInfo(TextFile::FromBytes(bytes));
}

TEST(TrackInfo, IsReadIntoItsFields) {
  const TrackInfo info = InfoOf(InfoBytes());
  EXPECT_EQ(info.Get(InfoFields::Categories), (ReferenceLine{kAllCategories, {u"Rock"_s, u"Pop"_s}}));
  EXPECT_EQ(info.Get(InfoFields::Albums), (ReferenceLine{kAllAlbums, {}}));
  EXPECT_EQ(info.Get(InfoFields::ReleaseDate), (ReleaseDate{u"1999"_s, u"Dec"_s}));
  EXPECT_EQ(info.Get(InfoFields::Bpm), 120);
  EXPECT_EQ(info.Get(InfoFields::HiPos), 7);
  EXPECT_EQ(
      info.Play({}),
      (TrackPlaySettings{{true, TransitionKind::PartFade, TransitionKind::Pan}, {10, 5}, {20, 30}, 0, 1}));
  EXPECT_EQ(info.Get(InfoFields::GainRecord), (Gain{-3.5, 0.2}));
  EXPECT_EQ(info.Get(InfoFields::DurationSeconds), 180.5);
  EXPECT_EQ(info.Comments(), (QStringList{u"First comment"_s, u"Second comment"_s}));
}

TEST(TrackInfo, OlderShorterFieldsAreTakenAndGarbageIsNoNumber) {
  const auto mode = [](const char* text) { return InfoFields::PlayMode.read(QString::fromUtf8(text)); };
  using enum TransitionKind;
  EXPECT_EQ(mode("1"), (PlayMode{true, Dub, Dub}));
  EXPECT_EQ(mode("0,3"), (PlayMode{false, Pan, Dub}));
  EXPECT_EQ(mode(" 1 , 3 , 2 ,9"), (PlayMode{true, Pan, PartFade}));
  EXPECT_EQ(mode("x,0,4"), (PlayMode{false, None, None}));
  EXPECT_EQ(InfoFields::FadePosition.read(u"9"_s), (FadePair{9, std::nullopt}));
  EXPECT_EQ(InfoFields::FadePosition.read(u"9"_s).FadeIn(), 9) << "one value serves for both";
  EXPECT_EQ(InfoFields::FadePosition.read(u"-4,9e99"_s), (FadePair{0, 32767}));
  EXPECT_EQ(InfoFields::FadeSpeed.read(u"51,"_s), (FadePair{50, 0}));
  EXPECT_EQ(InfoFields::ReleaseDate.read(u"1999"_s), (ReleaseDate{u"1999"_s, u"xxx"_s}));
  for (const char* const none : {"?", "", "12x", "nan", "1e10"}) {
    EXPECT_EQ(InfoFields::DurationSeconds.read(QString::fromUtf8(none)), std::nullopt) << none;
    EXPECT_EQ(InfoFields::GainRecord.read(QString::fromUtf8(none)), std::nullopt) << none;
  }
  const TrackPlaySettings play = InfoOf("~ALL CATEGORIES\r\n").Play({.DefaultEndType = 1});
  EXPECT_EQ(play.StartStyle, 0);
  EXPECT_EQ(play.EndStyle, 1) << "the default stands for an empty end style alone";
}

TEST(TrackInfo, AFieldIsWrittenAsItIsReadAndInItsFullForm) {
  TrackInfo info = InfoOf(InfoBytes());
  info.Set(InfoFields::Artists, {kAllArtists, {u"Ann"_s, u"Bob"_s}});
  info.Set(InfoFields::ReleaseDate, {u" "_s, {}});
  info.Set(InfoFields::Bpm, 97.5);
  info.Set(InfoFields::HiPos, std::nullopt);
  info.Set(InfoFields::PlayMode, {false, TransitionKind::Dub, TransitionKind::Pan});
  info.Set(InfoFields::FadePosition, {12, std::nullopt});
  info.Set(InfoFields::FadeSpeed, {1, 50});
  info.Set(InfoFields::StartStyle, 1);
  info.Set(InfoFields::GainRecord, Gain{0.25, -1});
  info.Set(InfoFields::DurationSeconds, 61);
  info.SetComments(u" one\ntwo\r\n\r\nfour\r\n"_s);
  EXPECT_EQ(info.ToBytes(),
            "~ALL CATEGORIES,Rock,Pop\r\n~ALL ARTISTS,Ann,Bob\r\n~ALL ALBUMS\r\n0000-xxx\r\n97.5\r\n?\r\n"
            "0,1,3\r\n12,12\r\n1,50\r\n1\r\n1\r\n0.3,-1.0\r\n61\r\none\r\ntwo\r\n\r\nfour\r\n");
  info.SetComments(u" \r\n "_s);
  EXPECT_EQ(info.Comments(), QStringList(u"No Comments"_s));
  info.SetText(InfoLine::ReleaseDate, u"20\r\n05"_s);
  EXPECT_EQ(info.Get(InfoFields::Bpm), 97.5) << "a line break would move the lines behind";

  TrackInfo shorter = InfoOf("~ALL CATEGORIES\r\n?");
  shorter.AddComment(u"Hello"_s);
  EXPECT_EQ(shorter.Comments(), QStringList(u"Hello"_s));
  EXPECT_EQ(InfoOf(shorter.ToBytes()).Comments(), QStringList(u"Hello"_s));
}

TEST(TrackInfo, WhatNobodySetGoesBackByteForByte) {
  const TestDatabase database;
  const auto path = [&](const QString& base) { return TrackInfoPath(database.paths, base); };
  QByteArray garbage;
  for (int code = 0; code < 256; ++code) garbage.append(static_cast<char>(code));
  database.AddTrack(u"garbage"_s, garbage);
  WriteTrackInfo(path(u"garbage"_s), *ReadTrackInfo(path(u"garbage"_s)));
  EXPECT_EQ(database.Info(u"garbage"_s), garbage);

  const QByteArray before =
      "~ALL CATEGORIES,Schlager f\xFCr alle\n~ALL ARTISTS\r\n~ALL "
      "ALBUMS\r\n\r\n?\r\n?\r\n 7 , x\r\n3\r\n25\r\n1\r\n";
  const QByteArray after = "0\r\n?\r\n\x80uro, no end";
  database.AddTrack(u"mixed"_s, before + after);
  TrackInfo info = *ReadTrackInfo(path(u"mixed"_s));
  EXPECT_EQ(info.Text(InfoLine::Categories), u"~ALL CATEGORIES,Schlager für alle"_s);
  EXPECT_EQ(info.Text(InfoLine::DurationSeconds), u"€uro, no end"_s);
  info.Set(InfoFields::Bpm, 128);
  WriteTrackInfo(path(u"mixed"_s), info);
  EXPECT_EQ(database.Info(u"mixed"_s), QByteArray(before).replace("?\r\n?", "128\r\n?") + after);
}

TEST(TrackInfo, WhatTheCodePageCannotHoldTurnsTheFileIntoUtf8) {
  const TestDatabase database;
  database.AddTrack(u"song"_s);
  const QString path = TrackInfoPath(database.paths, u"song"_s);
  TrackInfo info = *ReadTrackInfo(path);
  info.Set(InfoFields::Artists, {kAllArtists, {u"Кино"_s}});
  WriteTrackInfo(path, info);
  EXPECT_EQ(database.Info(u"song"_s), "\xEF\xBB\xBF" + InfoBytes().replace("The Band", "Кино"));
  EXPECT_EQ(ReadTrackInfo(path)->Text(InfoLine::Artists), u"~ALL ARTISTS,Кино"_s);
}

TEST(TrackInfo, AFileUnderAnotherCaseIsFoundAndRewrittenWhereItIs) {
  const TestDatabase database;
  database.Add(Paths::Info, u"SÖNG.Kif"_s, InfoBytes());
  const QString path = TrackInfoPath(database.paths, u"söng"_s);
  TrackInfo info = *ReadTrackInfo(path);
  info.Set(InfoFields::HiPos, 1);
  WriteTrackInfo(path, info);
  EXPECT_FALSE(database.Holds(Paths::Info, u"söng.kif"_s));
  EXPECT_EQ(ReadTrackInfo(TrackInfoPath(database.paths, u"SÖNG"_s))->Get(InfoFields::HiPos), 1);
}

TEST(TrackInfo, AFileThatHasVanishedIsNotMadeAgain) {
  const TestDatabase database;
  database.AddTrack(u"song"_s);
  const QString path = TrackInfoPath(database.paths, u"song"_s);
  const TrackInfo info = *ReadTrackInfo(path);
  QFile::remove(path);
  try {
    WriteTrackInfo(path, info);
    ADD_FAILURE() << "it was saved";
  } catch (const Failure& failure) {
    EXPECT_STREQ(failure.what(), "Could Not Save info File !");
  }
  EXPECT_FALSE(database.Holds(Paths::Info, u"song.kif"_s));
  EXPECT_FALSE(ReadTrackInfo(path));
}

TEST(TrackInfo, ANewFileHoldsTheDefaultsTheArtistOfItsNameAndTheTwoComments) {
  const TestDatabase database;
  const TrackDefaults defaults{.DefaultFade = 1, .DefaultFadeSpeed = 30, .DefaultDelta = 4};
  TrackInfo info = DefaultTrackInfo(u"Céline - Title"_s, 215.25, defaults,
                                    ReplacedFileComments(u"Kelvo"_s, u"01/06/2007"_s));
  CreateTrackInfo(TrackInfoPath(database.paths, u"new"_s), info);
  const QByteArray references =
      "~ALL CATEGORIES\r\n~ALL ARTISTS,C\xE9line\r\n~ALL ALBUMS\r\n0000-xxx\r\n?\r\n?\r\n";
  const QByteArray rest =
      "1\r\n0\r\n?\r\n215.25\r\nKelvo Replaced This File On 01/06/2007\r\nPlease Re-Edit !\r\n";
  EXPECT_EQ(database.Info(u"new"_s), references + "1\r\n4\r\n30\r\n" + rest);
  info.CompletePlayLines();
  EXPECT_EQ(info.ToBytes(), references + "1,1,1\r\n4,4\r\n30,30\r\n" + rest);
}

TEST(TrackInfo, TheArtistIsWhatIsBeforeTheFirstDashFromTheThirdCharacterOn) {
  EXPECT_EQ(ArtistsFromName(u"Amber - Money - Money"_s).Text(), u"~ALL ARTISTS,Amber"_s);
  EXPECT_EQ(ArtistsFromName(u"U2-One"_s).Text(), u"~ALL ARTISTS,U2"_s);
  for (const QString& none : {u"No dash"_s, u"-Title"_s, u"X-Title"_s, QString()}) {
    EXPECT_EQ(ArtistsFromName(none).Text(), u"~ALL ARTISTS"_s) << none.toStdString();
  }
}

TEST(ReferenceLine, KeepsEveryItemAndShowsThoseThatAreReferences) {
  for (const QString& text : {u"~ALL CATEGORIES,Rock,~X,,Pop"_s, u"Rock"_s, QString(), u",,"_s}) {
    EXPECT_EQ(ReferenceLine::Parse(text).Text(), text);
  }
  EXPECT_EQ(ReferenceLine::Parse(u"~ALL CATEGORIES,Rock,~X,,Pop"_s).Shown(),
            (QStringList{u"Rock"_s, u"Pop"_s}));
  EXPECT_EQ(ReferenceLine::Parse(u"Rock"_s).Shown(), QStringList());
  EXPECT_EQ(ShownItems(u"Rock,~X,,Pop"), (QList<QStringView>{u"Rock", u"Pop"}));
}

}  // namespace
}  // namespace kelvo
