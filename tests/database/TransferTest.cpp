#include "audio/ClockAudio.h"
#include "database/CatalogueLoader.h"
#include "database/TaggedSound.h"
#include "database/TestDatabase.h"
#include "database/Transfer.h"
#include "platform/ErrorLog.h"
#include "platform/SimulatedEventLoop.h"
#include "platform/Words.h"
#include "support/ScriptedPrompter.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <optional>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::Id3v2;
using testing::InfoBytes;
using testing::ScriptedPrompter;
using testing::SoundBytes;
using testing::TestDatabase;
using testing::TextFrame;

const QByteArray kNewInfo =
    "~ALL CATEGORIES\r\n~ALL ARTISTS,Amber\r\n~ALL ALBUMS,Best\r\n2005-Dec\r\n0\r\n0\r\n0,1,1\r\n3,3\r\n"
    "25,25\r\n1\r\n0\r\n?\r\n60\r\nTrack Added On 01/06/2007\r\n";

class TransferTest : public ::testing::Test {
 protected:
  TransferTest() { Open(); }

  /// The window is opened: the waiting files are listed.
  void Open() {
    transfer_.emplace(Transfer::Services{.loop = loop_,
                                         .prompter = prompter_,
                                         .audio = audio_,
                                         .catalogue = catalogue_,
                                         .paths = database_.paths,
                                         .settings = {settings_, u"Kelvo"_s}});
    List();
  }
  void List() {
    transfer_->List();
    EXPECT_TRUE(loop_.RunUntil([this] { return !transfer_->Listing(); }));
  }
  /// The program begins anew over what lies on disk.
  void Restart() {
    CatalogueLoader loader(loop_, audio_, catalogue_, database_.paths, TrackDefaults{}, u"Kelvo"_s);
    Job<LoadOutcome> load = loader.Load();
    EXPECT_TRUE(loop_.RunUntil([&load] { return !load.Running(); }));
    Open();
  }
  QString Stage(const QString& name, const QByteArray& bytes = "sound") {
    const QString path = database_.Add(Paths::Utility, name, bytes);
    List();
    return path;
  }
  [[nodiscard]] std::vector<int> Ids() {
    std::vector<int> ids;
    for (const TransferRow& row : transfer_->Rows().All()) ids.push_back(row.id);
    return ids;
  }
  void MoveAll(std::deque<Answer> answers) {
    prompter_.answers = std::move(answers);
    transfer_->Move(Ids());
    EXPECT_TRUE(loop_.RunUntil([this] { return !transfer_->Busy(); }));
    EXPECT_TRUE(prompter_.answers.empty());
  }
  [[nodiscard]] QString Cell(int row, TransferRows::Column column) {
    return TransferRows::Shown(transfer_->Rows().Store()[row], column);
  }
  void SetCell(int row, TransferRows::Column column, const QString& text) {
    EXPECT_TRUE(transfer_->Rows().SetText(row, column, text));
  }
  [[nodiscard]] QByteArray Music(const QString& name) const {
    return database_.tree.Read(Paths::FolderName(Paths::Music) + u'/' + name);
  }

  TestDatabase database_;
  SimulatedEventLoop loop_;
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  ClockAudio audio_{loop_};
  SettingsStore settings_{loop_, database_.tree.Path(u"settings.ini"_s)};
  Catalogue catalogue_;
  std::optional<Transfer> transfer_;
};

TEST_F(TransferTest, ARowShowsWhatPathAndTagsSay) {
  Stage(u"Amber/Amber - Way#2005-Dec# #.mp3"_s, QByteArray(1'500'000, 'x'));
  Stage(u"Unknown/plain.wav"_s);
  EXPECT_EQ(catalogue_.UtilityCount(), 2);
  QStringList cells;
  for (int column = 0; column <= TransferRows::Date; ++column) {
    cells.append(Cell(0, static_cast<TransferRows::Column>(column)));
  }
  EXPECT_THAT(cells, ElementsAre(u"Amber - Way.mp3"_s, u"1.43"_s, u"Amber"_s, u"Unknown"_s, u"Unknown"_s,
                                 u"2005-Dec"_s));
  EXPECT_EQ(Cell(1, TransferRows::Date), u"0000-xxx"_s);

  const TrackTags tags{true, u"AC/DC"_s, u"T"_s, u"Tagged"_s, u"1999"_s, 128, 7, {}};
  const TransferRow plain = RowOf(u"/u/Folder/a.mp3"_s, 1, tags);
  EXPECT_EQ(plain.artist, u"AC_DC"_s);
  EXPECT_EQ(plain.category, u"Hip - Hop"_s);
  EXPECT_EQ(plain.album, u"Tagged"_s);
  EXPECT_EQ(plain.date, u"1999-xxx"_s);
  EXPECT_EQ(plain.bpm, 128);
  const TransferRow ripped = RowOf(u"/u/Folder/a#2005-Dec#Disc#.mp3"_s, 1, tags);
  EXPECT_EQ(ripped.album, u"Disc"_s) << "a tag only fills what is missing";
  EXPECT_EQ(ripped.date, u"2005-Dec"_s);
}

TEST_F(TransferTest, AMovedFileIsATrackWithItsFoldersInfoAndRow) {
  Stage(u"Amber/amber - way OUT#2005-Dec#Best#.mp3"_s, "the sound");
  catalogue_.AddReference(ReferenceSet::Artists, u"Zulu"_s);
  MoveAll({Answer::Yes});
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"Move 1 Files To Data Base ?"_s));
  EXPECT_EQ(Music(u"Amber - Way Out.mp3"_s), "the sound");
  EXPECT_EQ(database_.Info(u"Amber - Way Out"_s), kNewInfo);
  EXPECT_TRUE(database_.Holds(Paths::Artists, u"Amber"_s));
  EXPECT_TRUE(database_.Holds(Paths::Albums, u"Best"_s));
  EXPECT_FALSE(database_.Holds(Paths::Categories, u"Unknown"_s));
  EXPECT_FALSE(database_.Holds(Paths::Utility, u"Amber/amber - way OUT#2005-Dec#Best#.mp3"_s));
  EXPECT_THAT(Ids(), ElementsAre());
  EXPECT_EQ(catalogue_.UtilityCount(), 0);
  EXPECT_THAT(catalogue_.ArtistList, ElementsAre(u"Amber"_s, u"Zulu"_s));
  ASSERT_EQ(catalogue_.LastTrack(), 1);
  EXPECT_EQ(catalogue_.TrackNames[ToMref(1)], u"Amber - Way Out"_s);
  EXPECT_EQ(catalogue_.TrackArtists[ToMref(1)], u"~ALL ARTISTS,Amber"_s);
  EXPECT_EQ(catalogue_.TrackGain[ToMref(1)], u"?"_s);
  EXPECT_EQ(catalogue_.TrackStartEnd[ToMref(1)], u"1,0"_s);
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(1)), 60);
}

TEST_F(TransferTest, TypedNamesBecomeSafeReferencesSpelledAsTheDatabaseDoes) {
  database_.tree.MakeFolder(Paths::FolderName(Paths::Artists) + u"/ABBA"_s);
  Stage(u"x/song.mp3"_s);
  SetCell(0, TransferRows::Artist, u" abba "_s);
  SetCell(0, TransferRows::Album, u"..Hits, Vol\n1#"_s);
  SetCell(0, TransferRows::Category, u"~ALL CATEGORIES"_s);
  SetCell(0, TransferRows::Date, u" 1979-\n,xx"_s);
  MoveAll({Answer::Yes});
  const QString info = QString::fromLatin1(database_.Info(u"Song"_s));
  EXPECT_TRUE(info.startsWith(
      u"~ALL CATEGORIES\r\n~ALL ARTISTS,ABBA\r\n~ALL ALBUMS,_.Hits_ Vol_1_\r\n1979-,xx\r\n0\r\n"_s))
      << info.toStdString();
  EXPECT_FALSE(database_.Holds(Paths::Artists, u"abba"_s));
  EXPECT_EQ(ReferenceName(u"Unknown"_s), QString());
  EXPECT_EQ(ReferenceName(QString(300, u'é')).toUtf8().size(), 254);
}

TEST_F(TransferTest, TheBeatsOfTheTagsComeAlong) {
  Stage(u"Amber/song.mp3"_s, Id3v2(TextFrame("TBPM", "127.6")) + SoundBytes());
  Stage(u"Amber/text.mp3"_s, Id3v2(TextFrame("TBPM", "fast")) + SoundBytes());
  MoveAll({Answer::Yes});
  EXPECT_TRUE(database_.Info(u"Song"_s).contains("0000-xxx\r\n128\r\n0\r\n"));
  EXPECT_TRUE(database_.Info(u"Text"_s).contains("0000-xxx\r\n0\r\n0\r\n"));
  EXPECT_EQ(catalogue_.TrackBpm[ToMref(1)], u"128"_s);
}

TEST_F(TransferTest, ADateThatIsNoneIsToldAndNothingBegins) {
  Stage(u"x/one#soon#a#.mp3"_s);
  Stage(u"x/two#1999-Dec#a#.mp3"_s);
  List();
  EXPECT_EQ(transfer_->Rows().Find(Ids()[0])->date, u"0000-xxx"_s) << "nobody typed that";
  SetCell(0, TransferRows::Date, u"1985"_s);
  MoveAll({});
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"Dates Must Be Entered in the form YYYY-mmm (Eg: 2005-Dec)"_s));
  EXPECT_EQ(Ids().size(), 2U);
}

TEST_F(TransferTest, ATrackThatStandsThereIsReplacedKeptOrJoinedByANewName) {
  database_.Add(Paths::Music, u"SONG.mp3"_s, "old");
  database_.Add(Paths::Info, u"SONG.kif"_s, InfoBytes());
  database_.Add(Paths::Music, u"Song_1.wav"_s, "other");
  Stage(u"a/song.mp3"_s, "one");
  Stage(u"b/song.mp3"_s, "two");
  Stage(u"c/song.mp3"_s, "three");
  Restart();
  MoveAll({Answer::Yes, Answer::Yes, Answer::No, Answer::Cancel});
  EXPECT_EQ(prompter_.asked[1].title, u"File Duplication"_s);
  EXPECT_EQ(prompter_.asked[1].buttons, Buttons::YesNoCancel);
  EXPECT_EQ(prompter_.asked[1].safe, Answer::Cancel);
  EXPECT_EQ(prompter_.asked[1].text,
            u"The File Song.mp3 Already Exists On The Data Base ! \r\nDo You Wish To Replace the Existing "
            "Track \r\nClick CANCEL To Cancel The Move and Proceed to the Next Track In the List (If Any)\r\n"
            "\r\nYes: the waiting file takes the place of \"SONG.mp3\", whose sound is lost.\r\n"
            "No: both stay; the waiting file comes in as \"Song_2.mp3\".\r\n"
            "Cancel: \"SONG.mp3\" stays as it is; the file waits on in this list."_s);
  EXPECT_EQ(Music(u"SONG.mp3"_s), "one") << "the name stays as the database knows it";
  EXPECT_EQ(database_.Info(u"SONG"_s),
            InfoBytes().replace("-3.5,0.2", "?") + "Track Was Replaced On 01/06/2007\r\n");
  EXPECT_EQ(Music(u"Song_2.mp3"_s), "two") << "the info file of Song_1 belongs to another track";
  EXPECT_TRUE(database_.Holds(Paths::Utility, u"c/song.mp3"_s));
  EXPECT_EQ(catalogue_.LastTrack(), 3) << "the replaced track is not there twice";
  EXPECT_EQ(catalogue_.TrackGain[ToMref(1)], u"?"_s);
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(1)), 60);
  EXPECT_EQ(catalogue_.TrackGenres[ToMref(1)], u"~ALL CATEGORIES,Rock,Pop"_s);
}

TEST_F(TransferTest, OneAnswerCountsForAllThatFollowAndTheQuestionCanStopTheRun) {
  for (const QString& name : {u"one"_s, u"two"_s, u"three"_s}) {
    database_.Add(Paths::Music, ProperCase(name) + u".mp3"_s, "old");
    Stage(u"a/"_s + name + u".mp3"_s, "new");
  }
  MoveAll({Answer::Yes, Answer::Stop});
  EXPECT_EQ(Ids().size(), 3U);
  prompter_.forAll = true;
  MoveAll({Answer::Yes, Answer::Yes});
  EXPECT_TRUE(Ids().empty());
  for (const QString& name : {u"One.mp3"_s, u"Two.mp3"_s, u"Three.mp3"_s}) EXPECT_EQ(Music(name), "new");
}

TEST_F(TransferTest, OnlyWhatACrashLeftIsFinishedWithoutAQuestion) {
  database_.AddTrack(u"Song"_s);
  const QString staged = Stage(u"a/song.mp3"_s, "new");
  HalfMoved half;
  half.Add(staged, {u"Song.mp3"_s, true});
  half.Write(database_.paths(Paths::Utility));
  MoveAll({Answer::Yes, Answer::Cancel});
  EXPECT_EQ(Music(u"Song.mp3"_s), "sound") << "its copy had not come there yet";

  database_.Add(Paths::Music, u"Song.mp3"_s, "new");
  MoveAll({Answer::Yes, Answer::Cancel});
  EXPECT_EQ(Ids().size(), 1U) << "the same file, and no crash";
  half.Write(database_.paths(Paths::Utility));
  MoveAll({Answer::Yes});
  EXPECT_TRUE(Ids().empty());
  EXPECT_EQ(database_.Info(u"Song"_s),
            InfoBytes().replace("-3.5,0.2", "?") + "Track Was Replaced On 01/06/2007\r\n");
  EXPECT_FALSE(database_.Holds(Paths::Utility, u".half-moved"_s));
}

TEST_F(TransferTest, AFileThatComesThereDuringTheRunIsAskedAboutToo) {
  Stage(u"a/song.mp3"_s, "new");
  transfer_->HasRoom = [this](const QString&, qint64) {
    database_.Add(Paths::Music, u"Song.mp3"_s, "somebody's");
    return true;
  };
  MoveAll({Answer::Yes, Answer::No});
  EXPECT_EQ(Music(u"Song.mp3"_s), "somebody's");
  EXPECT_EQ(Music(u"Song_1.mp3"_s), "new");
}

TEST_F(TransferTest, TwoKindsOfOneNameBothStay) {
  database_.Add(Paths::Music, u"Song.wav"_s, "wave");
  database_.Add(Paths::Info, u"Song.kif"_s, InfoBytes());
  Restart();
  Stage(u"a/song.mp3"_s, "mp3");
  MoveAll({Answer::Yes});
  EXPECT_EQ(Music(u"Song.wav"_s), "wave");
  EXPECT_EQ(Music(u"Song.mp3"_s), "mp3");
  EXPECT_EQ(catalogue_.LastTrack(), 2);
  EXPECT_TRUE(catalogue_.TrackPaths(ToMref(2)).endsWith(u"Song.mp3"_s));
}

TEST_F(TransferTest, OddNamesBecomeFilesThatTheDatabaseShows) {
  EXPECT_EQ(MusicFileName(u".hidden (live) x.MP3"_s), u"_.hidden (Live) X.mp3"_s);
  EXPECT_EQ(MusicFileName(u".mp3"_s), u"_.mp3"_s);
  EXPECT_EQ(MusicFileName(u"a\nb.mp3"_s), u"A_B.mp3"_s);
  EXPECT_EQ(MusicFileName(QString(126, u'é') + u".mp3"_s), u"É"_s + QString(124, u'é') + u".mp3"_s);
}

TEST_F(TransferTest, AFullDiskEndsTheRun) {
  Stage(u"a/one.mp3"_s);
  Stage(u"a/two.mp3"_s);
  int asked = 0;
  transfer_->HasRoom = [&](const QString& folder, qint64 bytes) {
    ++asked;
    EXPECT_EQ(folder, database_.paths(Paths::Music));
    EXPECT_EQ(bytes, 5);
    return false;
  };
  MoveAll({Answer::Yes, Answer::Ok});
  EXPECT_EQ(asked, 1);
  const QString told = prompter_.asked.back().text;
  EXPECT_TRUE(told.startsWith(u"Cannot Continue...Free Disc Space Is Seriously low!\r\n\r\n"_s +
                              database_.paths(Paths::Music) + u"\r\nFree Disc Space : "_s))
      << told.toStdString();
  EXPECT_EQ(Ids().size(), 2U);
}

TEST_F(TransferTest, WhatCannotBeMovedStaysWithAMessageAndTheRestGoesOn) {
  audio_.SetDuration(Stage(u"a/broken.mp3"_s), -1);
  Stage(u"a/notes.txt"_s);
  const QString vanished = Stage(u"a/vanished.mp3"_s);
  Stage(u"Block/zed.mp3"_s);
  Stage(u"z/good.mp3"_s);
  database_.Add(Paths::Artists, u"Block"_s);
  QFile::remove(vanished);
  MoveAll({Answer::Yes});
  QStringList left;
  for (const TransferRow& row : transfer_->Rows().All()) left.append(row.trackName);
  EXPECT_THAT(left, ElementsAre(u"broken.mp3"_s, u"notes.txt"_s, u"zed.mp3"_s));
  EXPECT_EQ(catalogue_.UtilityCount(), 3);
  EXPECT_EQ(catalogue_.LastTrack(), 1);
  ASSERT_EQ(prompter_.asked.size(), 2U);
  const QStringList lines = prompter_.asked[1].text.split(u"\r\n"_s);
  ASSERT_EQ(lines.size(), 4);
  EXPECT_EQ(lines[0], u"3 files were not moved and wait on:"_s);
  EXPECT_TRUE(lines[1].startsWith(u"broken.mp3: "_s)) << lines[1].toStdString();
  EXPECT_EQ(lines[2], u"notes.txt: The file is no Mp3 or Wav file."_s);
  EXPECT_TRUE(lines[3].startsWith(u"zed.mp3: Cannot make the folder "_s)) << lines[3].toStdString();
  EXPECT_EQ(transfer_->Rows().All()[2].trouble, lines[3].mid(9)) << "the row tells it too";
  EXPECT_TRUE(
      QString::fromUtf8(database_.tree.Read(u"kelvo.log"_s)).contains(u"list is gone: "_s + vanished));
}

TEST_F(TransferTest, AStopLeavesTheRestWhereItWas) {
  Stage(u"a/one.mp3"_s);
  Stage(u"a/song.mp3"_s);
  database_.AddTrack(u"Song"_s);
  Stage(u"a/three.mp3"_s);
  prompter_.meanwhile = [this](const Prompt& prompt) {
    if (prompt.title == u"File Duplication"_s) transfer_->Stop();
  };
  MoveAll({Answer::Yes, Answer::Yes});
  EXPECT_EQ(Ids().size(), 2U);
  EXPECT_EQ(Music(u"Song.mp3"_s), "sound");
  EXPECT_EQ(database_.Info(u"Song"_s), InfoBytes());
  EXPECT_EQ(Cell(0, TransferRows::Artist), u"a"_s) << "the row is as it was";
  EXPECT_FALSE(transfer_->Progress().words.isEmpty());
}

/// Ends the program after each step in turn. Whatever was done by then, the file waits or is a whole track,
/// and after a restart the same run makes one whole track of it.
TEST_F(TransferTest, WhereverTheProgramEndsNothingIsLostAndRunningAgainMendsIt) {
  const QString staged = u"Amber/song#2005-Dec#Best#.mp3"_s;
  bool complete = false;
  int ends = 0;
  for (int events = 0; !complete; ++events) {
    SCOPED_TRACE(events);
    ASSERT_LT(events, 200);
    for (const Paths::Slot slot : {Paths::Music, Paths::Info, Paths::Artists, Paths::Albums}) {
      ASSERT_TRUE(QDir(database_.paths(slot)).removeRecursively());
      database_.tree.MakeFolder(Paths::FolderName(slot));
    }
    Restart();
    Stage(staged, "the sound");
    prompter_.answers = {Answer::Yes};
    transfer_->Move(Ids());
    int passed = 0;
    loop_.RunUntil([&] { return passed++ >= events || !transfer_->Busy(); }, 5s);
    complete = !transfer_->Busy();
    transfer_.reset();
    ++ends;

    const bool waits = database_.Holds(Paths::Utility, staged);
    const bool stands = database_.Holds(Paths::Music, u"Song.mp3"_s);
    EXPECT_TRUE(waits || (stands && database_.Info(u"Song"_s) == kNewInfo));
    if (stands) {
      EXPECT_EQ(Music(u"Song.mp3"_s), "the sound");
    }
    Restart();
    if (waits) MoveAll({Answer::Yes});
    EXPECT_EQ(Music(u"Song.mp3"_s), "the sound");
    EXPECT_TRUE(database_.Info(u"Song"_s).startsWith(kNewInfo.left(kNewInfo.indexOf("0\r\n0\r\n"))));
    EXPECT_FALSE(database_.Holds(Paths::Utility, staged));
    EXPECT_EQ(catalogue_.LastTrack(), 1);
    EXPECT_EQ(catalogue_.TrackAlbums[ToMref(1)], u"~ALL ALBUMS,Best"_s);
    EXPECT_EQ(catalogue_.UtilityCount(), 0);
  }
  EXPECT_GT(ends, 8);
}

TEST_F(TransferTest, AStepThatFailedIsMadeGoodByRunningAgain) {
  Stage(u"Amber/song#2005-Dec#Best#.mp3"_s);
  const QString obstacle = database_.tree.MakeFolder(Paths::FolderName(Paths::Info) + u"/Song.kif"_s);
  MoveAll({Answer::Yes});
  EXPECT_TRUE(prompter_.asked.back().text.startsWith(u"1 file was not moved and waits on:\r\nsong.mp3: "_s));
  EXPECT_TRUE(QString::fromUtf8(database_.tree.Read(u"kelvo.log"_s)).contains(u" in  FrmTransfer info"_s));
  EXPECT_EQ(catalogue_.LastTrack(), 0);
  ASSERT_EQ(Ids().size(), 1U);
  EXPECT_EQ(Cell(0, TransferRows::Artist), u"Amber"_s);
  QDir().rmdir(obstacle);
  MoveAll({Answer::Yes});
  EXPECT_EQ(database_.Info(u"Song"_s), kNewInfo);
  EXPECT_EQ(catalogue_.LastTrack(), 1);
}

TEST_F(TransferTest, AFolderOfTheDatabaseIsNotTakenForWaitingFiles) {
  database_.AddTrack(u"Song"_s);
  ASSERT_TRUE(QFile::link(database_.paths(Paths::Music), database_.paths(Paths::Utility) + u"/linked"_s));
  List();
  EXPECT_THAT(Ids(), ElementsAre());
}

TEST_F(TransferTest, DeletingAsksAndTakesFilesAndRows) {
  Stage(u"a/one.mp3"_s);
  Stage(u"a/two.mp3"_s);
  prompter_.answers = {Answer::No, Answer::Yes};
  const auto remove = [this](int id) {
    transfer_->Delete({id});
    EXPECT_TRUE(loop_.RunUntil([this] { return !transfer_->Busy(); }));
  };
  const int first = Ids().front();
  remove(first);
  EXPECT_EQ(Ids().size(), 2U);
  remove(first);
  EXPECT_EQ(
      prompter_.asked[0].text,
      u"This Action Will Delete All Selected Files in The List !\r\nContinue With Delete ?\r\n\r\n1 file is "
      "selected."_s);
  EXPECT_EQ(prompter_.asked[0].safe, Answer::No);
  EXPECT_FALSE(database_.Holds(Paths::Utility, u"a/one.mp3"_s));
  EXPECT_TRUE(database_.Holds(Paths::Utility, u"a/two.mp3"_s));
  EXPECT_EQ(catalogue_.UtilityCount(), 1);
}

}  // namespace
}  // namespace kelvo
