#include "audio/ClockAudio.h"
#include "database/CatalogueLoader.h"
#include "database/TestDatabase.h"
#include "platform/ErrorLog.h"
#include "platform/ShellLink.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"

#include <QDir>

#include <gmock/gmock.h>

#include <optional>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::InfoBytes;
using testing::ScriptedPrompter;
using testing::TestDatabase;

class CatalogueLoaderTest : public ::testing::Test {
 protected:
  Job<> Run(CatalogueLoader& loader) { outcome_ = co_await loader.Load(); }

  /// Loads the database; the words of both bars are kept as they come.
  LoadOutcome Load() {
    loader_.emplace(loop_, audio_, catalogue_, database_.paths, TrackDefaults{}, u"Kelvo"_s);
    loader_->OnProgress = [this] {
      for (const LoadBar* bar : {&loader_->references, &loader_->tracks}) {
        if (!bar->words.isEmpty() && !words_.contains(bar->words)) words_.append(bar->words);
      }
    };
    outcome_.reset();
    const Job<> job = Run(*loader_);
    EXPECT_TRUE(loop_.RunUntil([this] { return outcome_.has_value(); }));
    return outcome_.value_or(LoadOutcome::UnstableFile);
  }
  [[nodiscard]] QStringList Names() const {
    QStringList names;
    for (int row = 1; row <= catalogue_.LastTrack(); ++row) names.append(catalogue_.TrackNames[ToMref(row)]);
    return names;
  }
  [[nodiscard]] QString Log() const {
    return database_.tree.Exists(u"kelvo.log"_s) ? QString::fromUtf8(database_.tree.Read(u"kelvo.log"_s))
                                                 : QString();
  }

  TestDatabase database_;
  SimulatedEventLoop loop_;
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  ClockAudio audio_{loop_};
  Catalogue catalogue_;
  std::optional<CatalogueLoader> loader_;
  std::optional<LoadOutcome> outcome_;
  QStringList words_;
};

TEST_F(CatalogueLoaderTest, ReadsEachFieldOfATrackInfoFile) {
  const QString path = database_.AddTrack(u"Song"_s);
  EXPECT_EQ(Load(), LoadOutcome::Done);
  ASSERT_EQ(catalogue_.LastTrack(), 1);
  const Mref track = ToMref(1);
  EXPECT_EQ(catalogue_.TrackPaths(track), path);
  EXPECT_EQ(catalogue_.TrackGenres[track], u"~ALL CATEGORIES,Rock,Pop"_s);
  EXPECT_EQ(catalogue_.TrackArtists[track], u"~ALL ARTISTS,The Band"_s);
  EXPECT_EQ(catalogue_.TrackAlbums[track], u"~ALL ALBUMS"_s);
  EXPECT_EQ(catalogue_.TrackDates[track], u"1999-Dec"_s);
  EXPECT_EQ(catalogue_.TrackBpm[track], u"120"_s);
  EXPECT_EQ(catalogue_.TrackHi[track], u"7"_s);
  EXPECT_EQ(catalogue_.TrackStartEnd[track], u"0,1"_s);
  EXPECT_EQ(catalogue_.TrackGain[track], u"-3.5,0.2"_s);
  EXPECT_EQ(catalogue_.TrackDurations(track), 180.5);
  EXPECT_TRUE(prompter_.asked.empty());
}

TEST_F(CatalogueLoaderTest, TracksAreNumberedInTheOrderOfTheirUpperCasedNames) {
  for (const QString& name : {u"beta"_s, u"Alpha"_s, u"éclair"_s, u"ZULU"_s, u"_x"_s, u"gamma.live"_s}) {
    database_.AddTrack(name);
  }
  Load();
  EXPECT_THAT(Names(), ElementsAre(u"Alpha"_s, u"beta"_s, u"gamma.live"_s, u"ZULU"_s, u"_x"_s, u"éclair"_s));
  const QStringList first = Names();
  Load();
  EXPECT_EQ(Names(), first) << "a reload gives the same numbers";
}

TEST_F(CatalogueLoaderTest, InfoFilesOfEveryKindAreRead) {
  database_.Add(Paths::Music, u"cased.mp3"_s);
  database_.Add(Paths::Info, u"CASED.KIF"_s, InfoBytes());
  database_.AddTrack(u"code page"_s, InfoBytes().replace("The Band", "M\xF6we"));
  database_.AddTrack(u"old line ends"_s, InfoBytes().replace("\r\n", "\r"));
  database_.AddTrack(u"unix line ends"_s, InfoBytes().replace("\r\n", "\n"));
  database_.AddTrack(u"no end"_s, InfoBytes("12").chopped(
                                      static_cast<int>(qstrlen("\r\nFirst comment\r\nSecond comment\r\n"))));
  // The comments reach beyond what is read at once, so that a cut would fall into a letter of several bytes.
  database_.AddTrack(u"utf-8"_s, "\xEF\xBB\xBF" + InfoBytes().replace("The Band", "Кино") + "x" +
                                     QByteArray("ж").repeated(100'000));
  EXPECT_EQ(Load(), LoadOutcome::Done);
  QStringList artists;
  for (int row = 1; row <= catalogue_.LastTrack(); ++row)
    artists.append(catalogue_.TrackArtists[ToMref(row)].section(u',', 1));
  EXPECT_THAT(Names(), ElementsAre(u"cased"_s, u"code page"_s, u"no end"_s, u"old line ends"_s,
                                   u"unix line ends"_s, u"utf-8"_s));
  EXPECT_THAT(artists,
              ElementsAre(u"The Band"_s, u"Möwe"_s, u"The Band"_s, u"The Band"_s, u"The Band"_s, u"Кино"_s));
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(3)), 12);
}

TEST_F(CatalogueLoaderTest, AMusicFileWithoutInfoGetsANewOne) {
  const QString path = database_.Add(Paths::Music, u"Amber - Waterline.Mp3"_s);
  audio_.SetDuration(path, 163.5);
  const QString noSound = database_.Add(Paths::Music, u"broken.mp3"_s);
  audio_.SetDuration(noSound, -1);
  EXPECT_EQ(Load(), LoadOutcome::Done);
  EXPECT_EQ(database_.Info(u"Amber - Waterline"_s),
            "~ALL CATEGORIES\r\n~ALL ARTISTS,Amber\r\n~ALL "
            "ALBUMS\r\n0000-xxx\r\n?\r\n?\r\n0\r\n3\r\n25\r\n1\r\n0\r\n?\r\n163.5\r\n"
            "Kelvo Replaced This File On 01/06/2007\r\nPlease Re-Edit !\r\n");
  const Mref track = ToMref(1);
  EXPECT_EQ(catalogue_.TrackArtists[track], u"~ALL ARTISTS,Amber"_s);
  EXPECT_EQ(catalogue_.TrackBpm[track], u"0"_s)
      << "the tables begin with 0 where the file has a question mark";
  EXPECT_EQ(catalogue_.TrackStartEnd[track], u"1,0"_s);
  EXPECT_EQ(catalogue_.TrackDurations(track), 163.5);
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(2)), -1);
  EXPECT_TRUE(database_.Info(u"broken"_s).contains("?\r\n-1\r\nKelvo Replaced"));
}

TEST_F(CatalogueLoaderTest, TwoMusicFilesOfOneNameShareTheInfoFileThatIsMadeForTheFirst) {
  audio_.SetDuration(database_.Add(Paths::Music, u"Twin.mp3"_s), 100);
  audio_.SetDuration(database_.Add(Paths::Music, u"Twin.wav"_s), 200);
  EXPECT_EQ(Load(), LoadOutcome::Done);
  EXPECT_EQ(catalogue_.LastTrack(), 2);
  EXPECT_TRUE(database_.Info(u"Twin"_s).contains("\r\n100\r\n"));
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(2)), 100);
  EXPECT_TRUE(catalogue_.TrackPaths(ToMref(2)).endsWith(u"Twin.wav"_s));
}

TEST_F(CatalogueLoaderTest, AnEmptyMusicFolderEndsTheLoadWithOneEmptyRow) {
  EXPECT_EQ(Load(), LoadOutcome::NoMusic);
  EXPECT_EQ(loader_->tracks.words, u"Please Add Some Music To the Data Base"_s);
  EXPECT_EQ(catalogue_.LastTrack(), 0);
  EXPECT_EQ(catalogue_.TrackNames.Rows(), 1U);
}

TEST_F(CatalogueLoaderTest, AnInfoFileOfFewerThanThirteenLinesEndsTheLoadAndIsNamedInTheLog) {
  database_.AddTrack(u"good"_s);
  const QByteArray twelve = InfoBytes().left(InfoBytes().indexOf("180.5"));
  for (const QByteArray& bytes : {twelve, twelve + "caf\xE9", QByteArray()}) {
    database_.AddTrack(u"too short"_s, bytes.isEmpty() ? bytes : bytes.chopped(bytes.endsWith('\n') ? 0 : 4));
    EXPECT_EQ(Load(), LoadOutcome::UnstableFile);
    EXPECT_EQ(loader_->UnstableFile(), database_.paths(Paths::Info) + u"/too short.kif"_s);
  }
  EXPECT_TRUE(Log().contains(u"/too short.kif has fewer than 13 lines"_s)) << Log().toStdString();
  EXPECT_TRUE(prompter_.asked.empty()) << "the console has its own words for this";
}

TEST_F(CatalogueLoaderTest, ADurationThatIsNoNumberIsLoggedForEachFileToldOnceAndTheLoadGoesOn) {
  const QByteArray bad[] = {"three minutes", "", "1,5", "nan", "1e400"};
  for (std::size_t number = 0; number < std::size(bad); ++number) {
    database_.AddTrack(u"bad %1"_s.arg(number), InfoBytes(bad[number]));
  }
  database_.AddTrack(u"good"_s, InfoBytes(" +200.25 "));
  EXPECT_EQ(Load(), LoadOutcome::Done);
  EXPECT_EQ(catalogue_.LastTrack(), 6);
  for (int row = 1; row <= 5; ++row) EXPECT_EQ(catalogue_.TrackDurations(ToMref(row)), -1) << row;
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(6)), 200.25);
  EXPECT_EQ(catalogue_.TrackBpm[ToMref(1)], u"120"_s);
  ASSERT_EQ(prompter_.asked.size(), 1U);
  EXPECT_EQ(prompter_.asked[0].text,
            u"A track info file could not be read; others like it are in the log.\r\n"
            u"Line 13 is no number\r\n%1/bad 0.kif"_s.arg(database_.paths(Paths::Info)));
  EXPECT_EQ(Log().count(u"Line 13 is no number"_s), 5);
}

TEST_F(CatalogueLoaderTest, ReferenceFoldersLoseTheirLinksAndNothingElse) {
  const QByteArray link = ShellLink{u"/music/a.mp3"_s, u"Std"_s}.ToBytes();
  database_.Add(Paths::Categories, u"Rock/old.lnk"_s, link);
  database_.Add(Paths::Categories, u"Rock/notes.txt"_s, "keep");
  database_.Add(Paths::Artists, u"Amber/OLD.LNK"_s, link);
  database_.Add(Paths::Playlists, u"Party/entry.lnk"_s, link);
  database_.tree.MakeFolder(Paths::FolderName(Paths::Categories) + u"/~ALL CATEGORIES"_s);
  database_.tree.MakeFolder(Paths::FolderName(Paths::Albums) + u"/Best"_s);
  Load();
  EXPECT_FALSE(database_.Holds(Paths::Categories, u"Rock/old.lnk"_s));
  EXPECT_TRUE(database_.Holds(Paths::Categories, u"Rock/notes.txt"_s));
  EXPECT_FALSE(database_.Holds(Paths::Artists, u"Amber/OLD.LNK"_s));
  EXPECT_TRUE(database_.Holds(Paths::Playlists, u"Party/entry.lnk"_s)) << "playlists are made of links";
  EXPECT_THAT(catalogue_.GenreList, ElementsAre(u"Rock"_s, u"~ALL CATEGORIES"_s));
  EXPECT_THAT(catalogue_.AlbumList, ElementsAre(u"Best"_s));
  EXPECT_THAT(catalogue_.ArtistList, ElementsAre(u"Amber"_s));
  EXPECT_THAT(catalogue_.PlaylistNames, ElementsAre(u"Party"_s));
}

TEST_F(CatalogueLoaderTest, EmptyUtilityFoldersAreDeletedAndStagedFilesCounted) {
  database_.tree.MakeFolder(Paths::FolderName(Paths::Utility) + u"/empty"_s);
  database_.tree.MakeFolder(Paths::FolderName(Paths::Utility) + u"/deep/deeper"_s);
  for (const QString& name :
       {u"disc/1.wav"_s, u"disc/2.wav"_s, u"scan/1.mp3"_s, u"hidden/.state"_s, u"loose.mp3"_s}) {
    database_.Add(Paths::Utility, name);
  }
  database_.Add(Paths::Jingles, u"Horn.wav"_s);
  Load();
  EXPECT_EQ(catalogue_.UtilityCount(), 3);
  EXPECT_FALSE(database_.Holds(Paths::Utility, u"empty"_s));
  EXPECT_TRUE(database_.Holds(Paths::Utility, u"deep/deeper"_s));
  EXPECT_TRUE(database_.Holds(Paths::Utility, u"hidden/.state"_s));
  EXPECT_THAT(catalogue_.SoundBiteNames, ElementsAre(u"Horn"_s));
  EXPECT_THAT(catalogue_.SoundBitePaths, ElementsAre(database_.paths(Paths::Jingles) + u"/Horn.wav"_s));
}

TEST_F(CatalogueLoaderTest, TheDatabasesOwnFoldersAreNeverTakenForEmptyUtilityFolders) {
  const QString own = database_.tree.MakeFolder(Paths::FolderName(Paths::Utility) + u"/Playlists"_s);
  const QString jingles = database_.tree.MakeFolder(Paths::FolderName(Paths::Utility) + u"/Jingles"_s);
  database_.Add(Paths::Utility, u"Jingles/Horn.wav"_s);
  database_.paths.Set(Paths::Playlists, own);
  database_.paths.Set(Paths::Jingles, jingles);
  Load();
  EXPECT_TRUE(database_.Holds(Paths::Utility, u"Playlists"_s));
  EXPECT_EQ(catalogue_.UtilityCount(), 0) << "what is in them does not wait";
}

TEST_F(CatalogueLoaderTest, TheLengthOfATrackWhoseInfoFileCannotBeReadIsNotKnown) {
  database_.AddTrack(u"song"_s);
  database_.Add(Paths::Music, u"odd.mp3"_s);
  database_.tree.MakeFolder(Paths::FolderName(Paths::Info) + u"/odd.kif"_s);
  EXPECT_EQ(Load(), LoadOutcome::Done);
  ASSERT_EQ(catalogue_.TrackNames[ToMref(1)], u"odd"_s);
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(1)), -1);
}

TEST_F(CatalogueLoaderTest, AFolderThatCannotBeReadIsToldAndTheRestIsLoaded) {
  database_.AddTrack(u"song"_s);
  for (const Paths::Slot gone : {Paths::Albums, Paths::Jingles, Paths::Utility}) {
    ASSERT_TRUE(QDir(database_.paths(gone)).removeRecursively());
  }
  database_.tree.MakeFolder(Paths::FolderName(Paths::Artists) + u"/Amber"_s);
  EXPECT_EQ(Load(), LoadOutcome::Done);
  EXPECT_EQ(catalogue_.LastTrack(), 1);
  EXPECT_THAT(catalogue_.ArtistList, ElementsAre(u"Amber"_s));
  ASSERT_EQ(prompter_.asked.size(), 2U);
  EXPECT_TRUE(prompter_.asked[0].text.startsWith(
      u"A folder of the database could not be read: %1\r\n"_s.arg(database_.paths(Paths::Albums))));
}

TEST_F(CatalogueLoaderTest, WhatIsNoTextOrNoFileIsPassedOver) {
  database_.AddTrack(u"song"_s);
  const QByteArray music = QFile::encodeName(database_.paths(Paths::Music));
  for (const QByteArray& name : {QByteArray("/bad \xFF name.mp3"), QByteArray("/.hidden.mp3")}) {
    std::FILE* file = std::fopen((music + name).constData(), "w");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
  }
  database_.tree.MakeFolder(Paths::FolderName(Paths::Music) + u"/folder.mp3"_s);
  ASSERT_TRUE(QFile::link(u"loop.mp3"_s, database_.paths(Paths::Music) + u"/loop.mp3"_s));
  // A folder in the place of an info file cannot be read, and its track is played with the defaults.
  database_.Add(Paths::Music, u"Amber - odd.mp3"_s);
  database_.tree.MakeFolder(Paths::FolderName(Paths::Info) + u"/Amber - odd.kif"_s);
  EXPECT_EQ(Load(), LoadOutcome::Done);
  EXPECT_THAT(Names(), ElementsAre(u"Amber - odd"_s, u"song"_s));
  EXPECT_EQ(catalogue_.TrackArtists[ToMref(1)], u"~ALL ARTISTS,Amber"_s);
  EXPECT_TRUE(Log().contains(u"is no valid text"_s));
  EXPECT_TRUE(Log().contains(u"Cannot read the track info file"_s));
  std::remove((music + "/bad \xFF name.mp3").constData());
}

TEST_F(CatalogueLoaderTest, TheBarsTellHowFarTheLoadIs) {
  for (const QString& name : {u"a"_s, u"b"_s, u"c"_s}) database_.AddTrack(name);
  database_.tree.MakeFolder(Paths::FolderName(Paths::Categories) + u"/Rock"_s);
  database_.tree.MakeFolder(Paths::FolderName(Paths::Albums) + u"/Best"_s);
  database_.tree.MakeFolder(Paths::FolderName(Paths::Artists) + u"/Amber"_s);
  database_.tree.MakeFolder(Paths::FolderName(Paths::Playlists) + u"/Party"_s);
  database_.Add(Paths::Jingles, u"horn.wav"_s);
  Load();
  EXPECT_THAT(words_,
              ElementsAre(u"Loading Genres (100%)"_s, u"Loading Albums (100%)"_s, u"Loading Artists (100%)"_s,
                          u"Loading Playlists (100%)"_s, u"Done 01/06/2007 20:00:00"_s,
                          u"Loading Sound Bites (100%)"_s, u"Extracting Track Data.. (33%)"_s,
                          u"Extracting Track Data.. (67%)"_s, u"Extracting Track Data.. (100%)"_s));
  EXPECT_EQ(loader_->tracks, (LoadBar{3, 3, u"Done 01/06/2007 20:00:00"_s}));
}

class BigCatalogueTest : public CatalogueLoaderTest {
 protected:
  void SetUp() override {
    for (int number = 0; number < kTracks; ++number) {
      database_.AddTrack(u"Artist %1 - Title"_s.arg(number, 4, 10, QLatin1Char('0')),
                         InfoBytes(QByteArray::number(number)));
    }
  }
  static constexpr int kTracks = 2000;
};

TEST_F(BigCatalogueTest, ATimerKeepsItsBeatWhileTracksAreLoaded) {
  int beats = 0;
  int tracksAtLastBeat = 0;
  int mostBetweenBeats = 0;
  const Timer timer = loop_.Every(100us, [&] {
    ++beats;
    mostBetweenBeats = std::max(mostBetweenBeats, loader_->tracks.value - tracksAtLastBeat);
    tracksAtLastBeat = loader_->tracks.value;
  });
  EXPECT_EQ(Load(), LoadOutcome::Done);
  EXPECT_EQ(catalogue_.LastTrack(), kTracks);
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(kTracks)), kTracks - 1);
  EXPECT_LE(mostBetweenBeats, 1000) << "the load held the loop";
  EXPECT_GE(beats, 3);
}

TEST_F(BigCatalogueTest, ALoadDroppedHalfWayLeavesTheLoopAndTheFilesInPeace) {
  loader_.emplace(loop_, audio_, catalogue_, database_.paths, TrackDefaults{}, u"Kelvo"_s);
  Job<> job = Run(*loader_);
  EXPECT_TRUE(loop_.RunUntil([this] { return loader_->tracks.value > kTracks / 2; }));
  job.Cancel();
  loader_.reset();
  loop_.RunFor(10s);
  EXPECT_EQ(catalogue_.LastTrack(), 0) << "what was read comes in one piece or not at all";
  EXPECT_FALSE(outcome_);
  EXPECT_EQ(Load(), LoadOutcome::Done);
  EXPECT_EQ(catalogue_.LastTrack(), kTracks) << "a later load begins anew";
}

}  // namespace
}  // namespace kelvo
