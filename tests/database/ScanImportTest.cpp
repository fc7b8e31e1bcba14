#include "database/NetworkDrive.h"
#include "database/ScanImport.h"
#include "database/TaggedSound.h"
#include "database/TestDatabase.h"
#include "platform/ErrorLog.h"
#include "support/HeldWorkLoop.h"
#include "support/ScriptedPrompter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <numeric>
#include <optional>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::HeldWorkLoop;
using testing::Id3v2;
using testing::ScriptedPrompter;
using testing::SoundBytes;
using testing::TestDatabase;
using testing::TextFrame;
using ::testing::UnorderedElementsAre;

class ScanImportTest : public ::testing::Test {
 protected:
  ScanImportTest() { Open(); }
  void Open() {
    scan_.emplace(ScanImport::Services{.loop = loop_,
                                       .prompter = prompter_,
                                       .catalogue = catalogue_,
                                       .paths = database_.paths,
                                       .title = u"Kelvo 2007"_s});
  }
  QString AddSource(const QString& relative, const QByteArray& bytes = SoundBytes()) {
    return database_.tree.Write(u"drive/"_s + relative, bytes);
  }
  void Search() {
    scan_->Search({database_.tree.Path(u"drive"_s)});
    ASSERT_TRUE(loop_.RunUntil([this] { return !scan_->Busy(); }));
  }
  void Import(std::vector<int> rows) {
    scan_->Import(rows);
    ASSERT_TRUE(loop_.RunUntil([this] { return !scan_->Busy(); }));
  }
  std::vector<int> All() {
    std::vector<int> rows(static_cast<std::size_t>(scan_->Rows().Count()));
    std::iota(rows.begin(), rows.end(), 0);
    return rows;
  }
  QStringList Column(ScanColumn column) {
    loop_.RunFor(1s);
    QStringList texts;
    for (const int row : All()) texts.append(scan_->Rows().Row(row).Text(column));
    return texts;
  }
  /// The files of the utility folder, below it.
  QStringList Staged() {
    QStringList staged;
    const QDir utility(database_.paths(Paths::Utility));
    for (const QString& artist : utility.entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot)) {
      for (const QString& name : QDir(utility.filePath(artist)).entryList(QDir::Files | QDir::Hidden)) {
        staged.append(artist + u'/' + name);
      }
    }
    return staged;
  }
  QString Sum() { return prompter_.asked.empty() ? QString() : prompter_.asked.back().text; }
  ScanMark Mark(int row) { return scan_->Rows().Row(row).mark; }
  void Name(int row, const QString& artist, const QString& title) {
    EXPECT_TRUE(scan_->Rows().SetText(row, ScanArtistColumn, artist));
    EXPECT_TRUE(scan_->Rows().SetText(row, ScanTitleColumn, title));
  }

  TestDatabase database_;
  HeldWorkLoop loop_{QDateTime(QDate(2007, 6, 1), QTime(9, 0))};
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  Catalogue catalogue_;
  std::optional<ScanImport> scan_;
};

TEST_F(ScanImportTest, TheSearchListsMusicWithWhatFileAndTagsSay) {
  const auto tagged = [](const QByteArray& artist, const QByteArray& title, const QByteArray& year) {
    return Id3v2(TextFrame("TPE1", artist) + TextFrame("TIT2", title) + TextFrame("TYER", year)) +
           SoundBytes();
  };
  AddSource(u"Rock/01 - tnt.MP3"_s, tagged("AC/DC", "T.N.T.", "1975"));
  AddSource(u"Rock/Ann - Long Day (Live).mp3"_s, tagged("Ann", "long day", ""));
  AddSource(u"Rock/Bob - x.mp3"_s, tagged("", "Night", "1999"));
  AddSource(u"b.wav"_s);
  AddSource(u"a.Mp3"_s);
  AddSource(u"notes.txt"_s);
  AddSource(u".trash/c.mp3"_s);
  AddSource(u"Rock/._Ann.mp3"_s);
  AddSource(u"Rock/.notes"_s);
  Search();
  EXPECT_THAT(Column(ScanTitleColumn),
              ElementsAre(u"a"_s, u"b"_s, u"AC_DC - T.N.T."_s, u"Ann - Long Day (Live)"_s, u"Bob - Night"_s))
      << "a file that says as much keeps its name";
  EXPECT_THAT(Column(ScanArtistColumn), ElementsAre(u""_s, u""_s, u"AC_DC"_s, u"Ann"_s, u""_s));
  EXPECT_THAT(Column(ScanDateColumn),
              ElementsAre(u"2007-xxx"_s, u"2007-xxx"_s, u"1975-xxx"_s, u"2007-xxx"_s, u"1999-xxx"_s));
  EXPECT_THAT(Column(ScanFolderColumn), ElementsAre(u"drive"_s, u"drive"_s, u"Rock"_s, u"Rock"_s, u"Rock"_s));
  EXPECT_EQ(scan_->Words(), u"5 files in the list, 1 hidden file passed over"_s);

  scan_->Rows().SetText(0, ScanTitleColumn, u"Mine"_s);
  AddSource(u"new.mp3"_s);
  Search();
  EXPECT_EQ(Column(ScanTitleColumn)[0], u"Mine"_s) << "a second search keeps what was typed";
  EXPECT_EQ(scan_->Rows().Count(), 6);
}

TEST_F(ScanImportTest, WhatCannotBePlayedIsToldAtOnce) {
  AddSource(u"a.mp3"_s, "This is a letter, not a song.");
  AddSource(u"b.mp3"_s, "");
  AddSource(u"c.mp3"_s);
  AddSource(u"d.wav"_s, "RIFF");
  AddSource(u"e.mp3"_s, Id3v2(TextFrame("TIT2", "no sound behind it")));
  Search();
  QStringList troubles;
  for (const int row : All()) troubles.append(scan_->Rows().Row(row).trouble);
  const QString noSound = u"The file is no sound file: neither WAV nor MPEG audio was found in it."_s;
  EXPECT_THAT(troubles, ElementsAre(noSound, u"The file is empty."_s, QString(), noSound, noSound));
  EXPECT_EQ(scan_->Words(), u"5 files in the list, 4 that cannot be played"_s);
}

TEST_F(ScanImportTest, TheSearchSurvivesWhatDrivesHold) {
  AddSource(u"deep/song.mp3"_s);
  QFile::link(database_.tree.Path(u"drive"_s), database_.tree.Path(u"drive/deep/round"_s));
  QFile::link(u"nowhere"_s, database_.tree.Path(u"drive/dangling.mp3"_s));
  const QByteArray noText = QFile::encodeName(database_.tree.Path(u"drive/"_s)) + "\xFF\xFE.mp3";
  ASSERT_EQ(::mknod(noText.constData(), S_IFREG | 0600, 0), 0);
  QString deep = u"tower"_s;
  for (int level = 0; level < 90; ++level) deep += u"/level "_s + QString::number(level);
  AddSource(deep + u"/top.mp3"_s);
  QFile::link(u"../gone"_s, database_.tree.Path(u"drive/deep/broken"_s));
  scan_->Search({database_.tree.Path(u"no such folder"_s), database_.tree.Path(u"drive"_s)});
  ASSERT_TRUE(loop_.RunUntil([this] { return !scan_->Busy(); }));
  EXPECT_THAT(Column(ScanTitleColumn), UnorderedElementsAre(u"song"_s, u"top"_s));
  EXPECT_EQ(scan_->Words(), u"2 files in the list, 2 folders or names could not be read (see the log)"_s)
      << scan_->Words().toStdString();
  ::unlink(noText.constData());
}

TEST_F(ScanImportTest, AStopEndsTheSearchAtOnce) {
  for (int file = 0; file < 300; ++file) AddSource(u"song %1.mp3"_s.arg(file));
  scan_->Search({database_.tree.Path(u"drive"_s)});
  EXPECT_EQ(scan_->Words(), u"Searching"_s + database_.tree.Path(u"drive"_s) + u" for Mp3/Wav Files"_s);
  ASSERT_TRUE(loop_.RunUntil([this] { return scan_->Rows().Count() > 0; }));
  scan_->Stop();
  EXPECT_EQ(scan_->Words(), u"Cancelling..Please wait"_s);
  ASSERT_TRUE(loop_.RunUntil([this] { return !scan_->Busy(); }));
  EXPECT_LT(scan_->Rows().Count(), 300);
}

TEST_F(ScanImportTest, ASlowDriveIsShownInSmallPiecesAndAFastOneInLarge) {
  for (int file = 0; file < 1000; ++file) AddSource(u"song %1.mp3"_s.arg(file));
  loop_.RunFor(1min);
  loop_.Hold();
  scan_->Search({database_.tree.Path(u"drive"_s)});
  const auto nextPiece = [this](Nanoseconds taken) {
    const int before = scan_->Rows().Count();
    loop_.RunFor(taken);
    loop_.LetGo();
    loop_.Hold();
    loop_.RunFor(1ms);
    return scan_->Rows().Count() - before;
  };
  int files = 0;
  for (int piece = 0; piece < 4; ++piece) files = nextPiece(1ms);
  EXPECT_GT(files, 64);
  for (int piece = 0; piece < 5; ++piece) files = nextPiece(300ms);
  EXPECT_GT(files, 0);
  EXPECT_LE(files, 16);
}

TEST_F(ScanImportTest, NamingCommandsWorkOnTheSelectedRows) {
  AddSource(u"Queen/01 - One Vision.mp3"_s);
  AddSource(u"Queen/Abba - SOS - live.mp3"_s);
  AddSource(u"Queen/plain.mp3"_s);
  AddSource(u"Queen/solo.mp3"_s);
  Search();
  ScanRows& rows = scan_->Rows();
  rows.ExtractArtists({1, 2});
  EXPECT_THAT(Column(ScanArtistColumn), ElementsAre(u""_s, u"Abba"_s, u""_s, u""_s));
  EXPECT_EQ(Column(ScanTitleColumn)[1], u"SOS - live"_s);
  rows.TakeArtistsFromFolders({2, 3});
  rows.PutArtistsInFront({0, 1, 2});
  rows.PutArtistsInFront({1});
  EXPECT_THAT(Column(ScanTitleColumn),
              ElementsAre(u"01 - One Vision"_s, u"Abba - SOS - live"_s, u"Queen - plain"_s, u"solo"_s));
  rows.ReplaceArtist(u"QUEEN"_s, u"The Queen"_s);
  rows.Insert({0, 3}, ScanCommentsColumn, u"loud"_s);
  rows.Insert({0, 1}, ScanDateColumn, u"1985-Nov"_s);
  EXPECT_THAT(Column(ScanArtistColumn), ElementsAre(u""_s, u"Abba"_s, u"The Queen"_s, u"The Queen"_s));
  EXPECT_THAT(Column(ScanCommentsColumn), ElementsAre(u"loud"_s, u""_s, u""_s, u"loud"_s));
  EXPECT_THAT(Column(ScanDateColumn),
              ElementsAre(u"1985-Nov"_s, u"1985-Nov"_s, u"2007-xxx"_s, u"2007-xxx"_s));

  EXPECT_FALSE(rows.SetText(4, ScanTitleColumn, u"gone meanwhile"_s));
  EXPECT_FALSE(rows.SetText(0, ScanDateColumn, u"1985"_s));
  EXPECT_FALSE(rows.SetText(0, ScanTitleColumn, u"  "_s));
  EXPECT_FALSE(rows.SetText(0, ScanPathColumn, u"/etc/passwd"_s));
  EXPECT_EQ(prompter_.Told().last(), u"Dates Must Be Entered in the form YYYY-mmm (Eg: 2005-Dec)"_s);
}

TEST_F(ScanImportTest, ATitleIsSplitWhereTheSeparatorHasBlanksAroundIt) {
  AddSource(u"Jean-Luc - Song.mp3"_s);
  AddSource(u"Jean-Luc.mp3"_s);
  AddSource(u"Zoe - A-Z - B.mp3"_s);
  Search();
  scan_->Rows().ExtractArtists(All());
  EXPECT_THAT(Column(ScanArtistColumn), ElementsAre(u"Jean-Luc"_s, u"Jean"_s, u"Zoe"_s));
  EXPECT_THAT(Column(ScanTitleColumn), ElementsAre(u"Song"_s, u"Luc"_s, u"A-Z - B"_s));
}

TEST_F(ScanImportTest, TheSeparatorCanBeChanged) {
  AddSource(u"Jay-Z - Song.mp3"_s);
  Search();
  prompter_.texts = {u""_s, u" - "_s};
  scan_->Rows().ChangeSeparator();
  EXPECT_EQ(scan_->Rows().Separator(), u"-"_s);
  scan_->Rows().ChangeSeparator();
  EXPECT_EQ(prompter_.asked[1].title, u"Change The Extraction Separator"_s);
  scan_->Rows().ExtractArtists({0});
  EXPECT_EQ(Column(ScanArtistColumn)[0] + u'|' + Column(ScanTitleColumn)[0], u"Jay-Z|Song"_s);
  scan_->Rows().PutArtistsInFront({0});
  EXPECT_EQ(Column(ScanTitleColumn)[0], u"Jay-Z - Song"_s);
}

TEST_F(ScanImportTest, TracksAreStagedUnderTheirNamesAndTheSumIsTold) {
  AddSource(u"one.mp3"_s);
  AddSource(u"two.WAV"_s, SoundBytes().repeated(7));
  AddSource(u"short.wav"_s, QByteArray(10239, 'w'));
  Search();
  Name(0, u"Abba"_s, u"Abba - SOS"_s);
  Name(1, u""_s, u"Short - One"_s);
  Name(2, u""_s, u"Abba - Waterloo"_s);
  Import(All());
  EXPECT_THAT(Staged(), UnorderedElementsAre(u"Abba/Abba - SOS#2007-xxx# #.mp3"_s,
                                             u"Unknown/Abba - Waterloo#2007-xxx# #.WAV"_s));
  EXPECT_EQ(database_.tree.Read(u"Kelvo2007_Utility/Abba/Abba - SOS#2007-xxx# #.mp3"_s), SoundBytes());
  EXPECT_EQ(
      Sum(),
      u"2 Tracks Copied Successfully\r\n1 Track/s Not Copied Which Are Gone, Unreadable Or Too Small"_s);
  EXPECT_EQ(prompter_.asked.back().title, u"File Import"_s);
  EXPECT_EQ(catalogue_.UtilityCount(), 2);
  EXPECT_EQ(Mark(0), ScanMark::Copied);
  EXPECT_TRUE(QFile::exists(scan_->Rows().Row(0).Text(ScanPathColumn)));
}

TEST_F(ScanImportTest, UnconventionalNamesAreAskedAbout) {
  AddSource(u"noname.mp3"_s);
  Search();
  prompter_.answers = {Answer::No, Answer::Yes};
  Import({0});
  EXPECT_TRUE(Staged().isEmpty());
  EXPECT_EQ(
      Sum(),
      u"1 Track Name/s Are UnConventional !(Artist Name - Track Title)\r\nSome Kelvo 2007 Search Functions "
      "Require This Format To Work Properly !\r\nContinue With Import ?"_s);
  Import({0});
  EXPECT_THAT(Staged(), ElementsAre(u"Unknown/noname#2007-xxx# #.mp3"_s));
}

TEST_F(ScanImportTest, WhatStandsAlreadyIsMarkedAndYellowRowsGoThroughWhenPickedAgain) {
  database_.Add(Paths::Music, u"abba - sos.MP3"_s);
  AddSource(u"a.mp3"_s);
  AddSource(u"b.mp3"_s);
  AddSource(u"c.mp3"_s);
  Search();
  Name(0, u"Abba"_s, u"Abba - SOS"_s);
  Name(1, u"Queen"_s, u"Queen - One"_s);
  Name(2, u"QUEEN"_s, u"Queen - ONE"_s);
  Import(All());
  EXPECT_THAT(Staged(), ElementsAre(u"Queen/Queen - One#2007-xxx# #.mp3"_s));
  EXPECT_EQ(
      Sum(),
      u"1 Tracks Copied Successfully\r\n"
      "1 Track/s Were Not Copied, Which Already Existed In The Main Data Base (Highlighted In Yellow)\r\n"
      "If You wish to replace The data base file/s, Please Reselect and Click Import Again !\r\n"
      "1 Track/s Not Copied Which Already Existed In The Utilities Folder (Highlighted In Red)\r\n"
      "These Tracks Cannot Be imported without First Re-Naming"_s);
  EXPECT_EQ(Mark(0), ScanMark::InDatabase);
  EXPECT_EQ(Mark(2), ScanMark::InUtility);
  Import({0, 2});
  EXPECT_TRUE(Staged().contains(u"Abba/Abba - SOS#2007-xxx# #.mp3"_s));
  EXPECT_EQ(Staged().size(), 2) << "a red row stays out";
  Name(2, u"QUEEN"_s, u"Queen - Two"_s);
  EXPECT_EQ(Mark(2), ScanMark::None);
  Import({2});
  EXPECT_TRUE(Staged().contains(u"Queen/Queen - Two#2007-xxx# #.mp3"_s)) << "in the folder that is there";
}

TEST_F(ScanImportTest, NamesThatNoFolderCanHoldAreMadeSafe) {
  for (const char letter : {'a', 'b', 'c'}) AddSource(QChar::fromLatin1(letter) + u".mp3"_s);
  Search();
  Name(0, u".."_s, u".hidden - a/b#c\n?"_s);
  Name(1, QString(200, u'\u00E4'), u"x - "_s + QString(300, u'\u20AC'));
  Name(2, u"."_s, u"..\\..\\x - y"_s);
  Import(All());
  EXPECT_EQ(Staged().size(), 3);
  EXPECT_TRUE(Staged().contains(u"_./_hidden - a_b_c__#2007-xxx# #.mp3"_s));
  EXPECT_TRUE(Staged().contains(u"_/_._.._x - y#2007-xxx# #.mp3"_s)) << Staged().join(u'\n').toStdString();
  for (const QString& staged : Staged()) {
    EXPECT_EQ(ReadStagedPath(staged).name.date, u"2007-xxx"_s);
    for (const QString& name : staged.split(u'/')) EXPECT_LE(name.toUtf8().size(), 255);
  }
}

TEST_F(ScanImportTest, SourcesAreDeletedOnlyWhenConfirmedAndOnlyAfterTheirCopy) {
  const QString first = AddSource(u"Abba - a.mp3"_s);
  const QString second = AddSource(u"Abba - b.mp3"_s);
  database_.Add(Paths::Music, u"Abba - B.mp3"_s);
  const QString own = database_.Add(Paths::Music, u"Own - Track.mp3"_s, SoundBytes());
  prompter_.answers = {Answer::Cancel, Answer::Ok, Answer::No, Answer::Yes, Answer::Yes};
  scan_->SetDeletesSources(true);
  EXPECT_FALSE(scan_->DeletesSources());
  scan_->SetDeletesSources(true);
  EXPECT_TRUE(scan_->DeletesSources());
  Search();
  Import({0});
  EXPECT_TRUE(QFile::exists(first)) << "No to the last question copies without deleting";
  scan_->Rows().SetText(0, ScanTitleColumn, u"Abba - again"_s);
  Import({0, 1});
  EXPECT_FALSE(QFile::exists(first));
  const auto asked = std::find_if(prompter_.asked.begin(), prompter_.asked.end(),
                                  [](const Prompt& each) { return each.text.startsWith(u"Are You Sure"_s); });
  EXPECT_EQ(asked->safe, Answer::No);
  EXPECT_TRUE(
      asked->text.endsWith(u"(This function Dousn't use the Recycle Bin !)\r\n\r\n1 file is selected."_s));
  EXPECT_TRUE(QFile::exists(second)) << "it was not copied";
  EXPECT_THAT(Column(ScanTitleColumn), ElementsAre(u"Abba - b"_s)) << "the row goes with its file";

  scan_->ClearList();
  scan_->Search({database_.paths(Paths::Music)});
  loop_.RunUntil([this] { return !scan_->Busy(); });
  ASSERT_EQ(scan_->Rows().Row(1).Text(ScanPathColumn), own);
  scan_->Rows().SetText(1, ScanTitleColumn, u"Own - Copy"_s);
  Import({1});
  EXPECT_TRUE(QFile::exists(own)) << "a file of the database is never deleted";
  EXPECT_EQ(Sum(), u"1 Tracks Copied Successfully\r\n1 Source File/s Were Not Deleted"_s);
}

TEST_F(ScanImportTest, LackOfRoomAStopAndAFailureLeaveTheSourcesWhereTheyAre) {
  for (const char letter : {'a', 'b', 'c'}) AddSource(u"Abba - "_s + QChar::fromLatin1(letter) + u".mp3"_s);
  Search();
  scan_->HasRoom = [](const QString&, std::int64_t) { return false; };
  Import(All());
  EXPECT_EQ(
      Sum(),
      u"0 Tracks Copied Successfully\r\nThe Copy Operation Did Not Fully Complete Due To Insufficiant Disc "
      "Space !"_s);
  EXPECT_TRUE(prompter_.Told()[0].startsWith(u"Cannot Continue...Not Enough Free Disc Space on Drive "_s +
                                             database_.paths(Paths::Utility) + u"\r\nFree Disc Space : "_s));

  int looks = 0;
  scan_->HasRoom = [this, &looks](const QString&, std::int64_t) {
    if (++looks == 2) scan_->Stop();
    return true;
  };
  Import(All());
  EXPECT_EQ(Sum(), u"1 Tracks Copied Successfully\r\nInterupted By User!"_s);

  scan_->HasRoom = HasRoomFor;
  database_.tree.Write(u"Kelvo2007_Utility/Blocked"_s, "a file where a folder must go");
  scan_->Rows().Insert({1}, ScanArtistColumn, u"Blocked"_s);
  loop_.RunFor(1s);
  Import({1, 2});
  EXPECT_TRUE(
      Sum().startsWith(u"1 Tracks Copied Successfully\r\n1 Track/s Could Not Be Copied:\r\n"
                       "Abba - b: Cannot make the folder "_s))
      << Sum().toStdString();
  EXPECT_TRUE(QString::fromUtf8(database_.tree.Read(u"kelvo.log"_s)).contains(u" scan copy"_s));
  EXPECT_EQ(Staged().size(), 2);
}

TEST_F(ScanImportTest, DroppedInTheMiddleItCopiesNoFurther) {
  AddSource(u"Abba - a.mp3"_s);
  Search();
  // The copy itself waits for its disk.
  scan_->HasRoom = [this](const QString&, std::int64_t) {
    loop_.Hold();
    return true;
  };
  scan_->Import({0});
  ASSERT_TRUE(loop_.RunUntil([this] { return loop_.Holds(); }));
  scan_.reset();
  loop_.LetGo();
  loop_.RunFor(1s);
  EXPECT_EQ(Staged(), QStringList()) << "nobody waits for it any more";
}

TEST_F(ScanImportTest, NetworkDrivesAreMountedByTheDesktopOrRefused) {
  EXPECT_EQ(NetworkAddress(u"\\\\Studio PC\\Our Music"_s), u"smb://Studio%20PC/Our%20Music"_s);
  EXPECT_EQ(NetworkAddress(u"sftp://ann@host/music"_s), u"sftp://ann@host/music"_s);
  EXPECT_EQ(NetworkAddress(u"music"_s), QString());

  const QString place = database_.tree.MakeFolder(u"place"_s);
  const QString script = database_.tree.Write(
      u"bin/gio"_s, "#!/bin/sh\nif [ $1 = info ]; then echo \"local path: " + place.toUtf8() +
                        "\"; else printf '%s ' \"$@\" > " + place.toUtf8() + "/said; cat >> " +
                        place.toUtf8() + "/said; fi\n");
  QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  const QByteArray before = qgetenv("PATH");
  qputenv("PATH", database_.tree.Path(u"bin:"_s).toUtf8() + before);
  prompter_.texts = {u"\\\\pc\\music"_s, u"secret"_s};
  scan_->Drives().MapNetworkDrive();
  EXPECT_TRUE(loop_.RunUntil([this] { return !scan_->Drives().Places().empty(); }));
  EXPECT_EQ(scan_->Drives().Places()[0].path, place);
  const QByteArray said = database_.tree.Read(u"place/said"_s);
  EXPECT_TRUE(said.startsWith("mount smb://pc/music ") && said.endsWith("WORKGROUP\nsecret\n"))
      << said.toStdString();

  for (const QString& none : {u"nothing"_s, u"/no/such/place"_s}) {
    prompter_.asked.clear();
    prompter_.texts = {none, u"secret"_s};
    scan_->Drives().MapNetworkDrive();
    loop_.RunFor(1s);
    EXPECT_EQ(Sum(), u"Kelvo 2007 Was Unable to Map the Specified Network Drive."_s) << none.toStdString();
  }
  prompter_.texts = {u"\\\\pc\\music"_s};
  qputenv("PATH", "/nowhere");
  scan_->Drives().MapNetworkDrive();
  loop_.RunFor(1s);
  EXPECT_EQ(Sum(), u"Please Select Map Network Drive From Windows Explorer"_s);
  qputenv("PATH", before);
}

}  // namespace
}  // namespace kelvo
