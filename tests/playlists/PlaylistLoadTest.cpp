#include "playlists/StoreFixture.h"

namespace kelvo::testing {
namespace {

class LoadingPlaylists : public StoreTest {
 protected:
  void Load(const QString& playlist) {
    OpenAt(PlaylistMode::Load, u"Rock"_s, playlist);
    manager_->Load();
    Finish();
  }
};

TEST_F(LoadingPlaylists, WhatWasSavedFromTheQueueLoadsBackByItsNames) {
  MakeCategory(u"Rock"_s);
  Enqueue({u"Cat - Three"_s, u"Ann - One"_s});
  OpenAt(PlaylistMode::SaveQueue, u"Rock"_s);
  Save(u"mix"_s);
  queue_->rows.clear();
  Load(u"Mix"_s);
  EXPECT_TRUE(prompter_.asked.empty());
  EXPECT_EQ(queue_->Titles(), (QStringList{u"Cat - Three"_s, u"Ann - One"_s}));
  EXPECT_EQ(queue_->rows[0].track, ToMref(3));
  EXPECT_EQ(queue_->rows[0].path, MusicPath(u"cat - three"_s));
  EXPECT_EQ(queue_->rows[0].note, u"Std"_s);
  EXPECT_EQ(queue_->name, u"Mix"_s);
  EXPECT_EQ(queue_->last->folder, Place(u"Rock/Mix"_s));
}

TEST_F(LoadingPlaylists, ANameIsTheSameHoweverItIsWritten) {
  const QString dotted = u"\u0130STANBUL - \u00C9T\u00C9 \u1E9E"_s;
  AddTrack(dotted);
  MakeCategory(u"Rock"_s);
  Enqueue({ProperCase(dotted)});
  OpenAt(PlaylistMode::SaveQueue, u"Rock"_s);
  Save(u"mix"_s);
  const QString apart = u"/nowhere/"_s + dotted.normalized(QString::NormalizationForm_D) + u".mp3"_s;
  AddEntry(u"Rock/Mix"_s, u" 2~from a mac.lnk"_s, apart);
  queue_->rows.clear();
  Load(u"Mix"_s);
  EXPECT_EQ(queue_->Count(), 2);
}

TEST_F(LoadingPlaylists, NumbersCountNotTheOrderOfTheFolderAndAGapHangsNothing) {
  AddEntry(u"Rock/Mix"_s, u" 10~Ann - One.lnk"_s, MusicPath(u"ann - one"_s));
  AddEntry(u"Rock/Mix"_s, u"2~Bob - Two.LNK"_s, MusicPath(u"bob - two"_s), QString());
  AddEntry(u"Rock/Mix"_s, u" 2~Ann - One.lnk"_s, MusicPath(u"ann - one"_s));
  AddEntry(u"Rock/Mix"_s, u"Cat - Three.lnk"_s, MusicPath(u"cat - three"_s));
  AddEntry(u"Rock/Mix"_s, u"-5~Cat - Three.lnk"_s, MusicPath(u"cat - three"_s));
  AddEntry(u"Rock/Mix"_s, u" 99999999999999~Bob - Two.lnk"_s, MusicPath(u"bob - two"_s));
  Load(u"Mix"_s);
  EXPECT_EQ(queue_->Titles(), (QStringList{u"Ann - One"_s, u"Bob - Two"_s, u"Ann - One"_s, u"Bob - Two"_s,
                                           u"Cat - Three"_s, u"Cat - Three"_s}))
      << "twice is twice; those without a number come last";
  EXPECT_EQ(queue_->rows[1].note, QString());
}

TEST_F(LoadingPlaylists, AnEntryThatLeadsNowhereIsAskedAboutAndACancelLeavesTheQueue) {
  AddEntry(u"Rock/Mix"_s, u" 1~Nobody.lnk"_s, u"C:\\Music\\nobody.mp3"_s);
  AddEntry(u"Rock/Mix"_s, u" 2~renamed since.lnk"_s, u"D:\\Kelvo2007_Music files\\BOB - TWO.mp3"_s);
  AddEntry(u"Rock/Mix"_s, u" 3~cat - three.lnk"_s, u"relative.mp3"_s);
  AddEntry(u"Rock/Mix"_s, u" 4~Stranger.lnk"_s, database_.tree.Write(u"elsewhere/stranger.mp3"_s, "x"));
  Enqueue({u"Before"_s});
  prompter_.answers = {Answer::Yes, Answer::Yes, Answer::Yes, Answer::No};
  Load(u"Mix"_s);
  EXPECT_EQ(prompter_.Told(),
            (QStringList{u"Clear The Play Queue First ?"_s,
                         u"Nobody File Or Track Not Found\r\nDo You Want To Cancel Playlist Load ? "
                         "(Press No To Just Skip this Track)"_s}));
  EXPECT_EQ(queue_->Titles(), QStringList{u"Before"_s});
  Load(u"Mix"_s);
  EXPECT_EQ(queue_->Titles(), (QStringList{u"Renamed Since"_s, u"Cat - Three"_s}))
      << "a file that is no track is passed over in silence";
  EXPECT_EQ(queue_->rows[0].track, ToMref(2)) << "made on another system";
}

TEST_F(LoadingPlaylists, AsksWhatBecomesOfTheQueue) {
  AddEntry(u"Rock/Mix"_s, u" 1~Ann - One.lnk"_s, MusicPath(u"ann - one"_s));
  Enqueue({u"Before"_s});
  prompter_.answers = {Answer::Cancel, Answer::No};
  Load(u"Mix"_s);
  EXPECT_EQ(queue_->Titles(), QStringList{u"Before"_s});
  Load(u"Mix"_s);
  EXPECT_EQ(queue_->Titles(), (QStringList{u"Before"_s, u"Ann - One"_s}));
  queue_->group = true;
  queue_->name = u"Wedding"_s;
  prompter_.answers = {Answer::No, Answer::Yes};
  Load(u"Mix"_s);
  EXPECT_EQ(LastTold(), u"Wedding: Cant"_s);
  EXPECT_EQ(queue_->Count(), 2);
  Load(u"Mix"_s);
  EXPECT_EQ(queue_->Titles(), QStringList{u"Ann - One"_s});
  EXPECT_FALSE(queue_->group);
  queue_->closed = true;
  Load(u"Mix"_s);
  EXPECT_EQ(queue_->Count(), 1);
  EXPECT_EQ(LastTold(), u"The Play Queue Takes Nothing While A Group Playlist Runs !"_s);
}

TEST_F(LoadingPlaylists, RowsThatCameMeanwhileAreAskedAbout) {
  AddEntry(u"Rock/Mix"_s, u" 1~Nobody.lnk"_s, u"/nobody.mp3"_s);
  AddEntry(u"Rock/Mix"_s, u" 2~Ann - One.lnk"_s, MusicPath(u"ann - one"_s));
  prompter_.meanwhile = [this](const Prompt&) {
    if (queue_->rows.empty()) Enqueue({u"Request"_s});
  };
  prompter_.answers = {Answer::No, Answer::Cancel};
  Load(u"Mix"_s);
  EXPECT_EQ(LastTold(), u"Clear The Play Queue First ?"_s);
  EXPECT_EQ(queue_->Titles(), QStringList{u"Request"_s});

  queue_->rows.clear();
  AddEntry(u"Rock/Mix"_s, u" 3~Cat - Three.lnk"_s, MusicPath(u"cat - three"_s));
  prompter_.meanwhile = [this](const Prompt& prompt) {
    if (queue_->rows.empty()) Enqueue({u"Request"_s});
    if (prompt.buttons == Buttons::YesNoCancel) catalogue_.Remove(ToMref(1));
  };
  prompter_.answers = {Answer::No, Answer::Yes};
  Load(u"Mix"_s);
  ASSERT_EQ(queue_->Count(), 2);
  EXPECT_EQ(queue_->rows[0].track, Mref::None) << "the desk takes no track that is gone";
  EXPECT_EQ(queue_->rows[1].track, ToMref(2)) << "and each under its number of now";
}

TEST_F(LoadingPlaylists, AGroupBringsItsLinesOrDoesNotComeAtAll) {
  AddEntry(u"Rock/Mix(Grp)"_s, u" 1~Ann - One.lnk"_s, MusicPath(u"ann - one"_s), u"edited"_s);
  AddEntry(u"Rock/Mix(Grp)"_s, u" 2~Ann - One.lnk"_s, MusicPath(u"ann - one"_s), {});
  AddText(u"Rock/Mix(Grp)"_s, u"Ann - One1.txt"_s, "1,first\r\nmore");
  Enqueue({u"Before"_s});
  prompter_.answers = {Answer::Cancel, Answer::Ok, Answer::Ok};
  Load(u"Mix(Grp)"_s);
  EXPECT_EQ(LastTold(), u"Mix(Grp) Is A Group Playlist\r\nThe Play Queue will be Cleared First !"_s);
  EXPECT_FALSE(queue_->last);
  Load(u"Mix(Grp)"_s);
  EXPECT_EQ(LastTold(), u"An Error Occured While Loading Playlist"_s);
  EXPECT_EQ(queue_->Titles(), QStringList{u"Before"_s});
  AddText(u"Rock/Mix(Grp)"_s, u"Ann - One2.txt"_s, "2,00:00:05,99,3,0,-1,1,-1,60");
  Load(u"Mix(Grp)"_s);
  ASSERT_TRUE(queue_->last && queue_->last->group && queue_->last->clearFirst);
  EXPECT_EQ(queue_->last->rows[0].line, u"1,first"_s);
  EXPECT_EQ(queue_->last->rows[1].line, u"2,00:00:05,1,3,0,-1,1,-1,60"_s) << "the number of today";
  EXPECT_EQ(queue_->rows[0].note, u"Grp"_s);
}

TEST_F(LoadingPlaylists, HostileFoldersAreReadToTheirEnd) {
  QDir().mkpath(Place(u"Rock/Mix/ 1~Ann - One.lnk"_s));
  AddText(u"Rock/Mix"_s, u" 2~Bob - Two.lnk"_s, QByteArray("\x4C\0\0\0", 4) + QByteArray((1 << 20) - 4, 'x'));
  AddText(u"Rock/Mix"_s, u" 3~Cat - Three.lnk"_s, QByteArray((1 << 20) + 1, 'x'));
  AddText(u"Rock/Mix"_s, u" 4~garbage.lnk"_s, QByteArray("\x4C\0\0\0\1\x14", 6));
  AddText(u"Rock/Mix"_s, u" 5~ann - one.lnk"_s, "TargetPath = C:\\gone.mp3\r\narguments=Std\r\n");
  AddText(u"Rock/Mix"_s, u" 6~plain.lnk"_s, MusicPath(u"bob - two"_s).toUtf8() + "\r\nOld\r\n");
  AddText(u"Rock/Mix"_s, u" 7~Ann - One.mp3"_s, "music in the wrong place");
  AddText(u"Rock/Mix"_s, u"desktop.ini"_s, "x");
  AddEntry(u"Rock/Mix"_s, u" 8~itself.lnk"_s, Place(u"Rock/Mix/ 8~itself.lnk"_s));
  QFile::link(Place(u"Rock/Mix/ 9~loop.lnk"_s), Place(u"Rock/Mix/ 9~loop.lnk"_s));
  AddEntry(u"Rock/Mix"_s, u" 10~folder.lnk"_s, database_.paths(Paths::Music));
  OpenAt(PlaylistMode::Load, u"Rock"_s, u"Mix"_s);
  EXPECT_TRUE(manager_->Shelf().Outlook().startsWith(u"4 tracks"_s))
      << manager_->Shelf().Outlook().toStdString();
  prompter_.answers = {Answer::No};
  manager_->Load();
  Finish();
  EXPECT_EQ(prompter_.Told().size(), 1) << "of the garbage alone: its name is no track's";
  EXPECT_EQ(queue_->Titles(), (QStringList{u"Bob - Two"_s, u"Cat - Three"_s, u"Ann - One"_s, u"Plain"_s}));
  EXPECT_EQ(queue_->rows[3].note, u"Old"_s);
}

TEST_F(LoadingPlaylists, ADiskThatDoesNotAnswerHoldsUpNobody) {
  loop_.HangDisk(u"/dead"_s);
  for (int number = 1; number <= 30; ++number) {
    AddEntry(u"Rock/Mix"_s, u" %1~far %1.lnk"_s.arg(number), u"/dead/far%1.mp3"_s.arg(number));
  }
  AddEntry(u"Rock/Mix"_s, u" 31~Ann - One.lnk"_s, u"/dead/ann - one.mp3"_s);
  OpenAt(PlaylistMode::Load, u"Rock"_s, u"Mix"_s);
  EXPECT_EQ(manager_->Shelf().Entries()[0].StateWords(), u"Disk Does Not Answer"_s);
  const Nanoseconds before = loop_.Elapsed();
  manager_->Load();
  Finish();
  EXPECT_LT(loop_.Elapsed() - before, 15s);
  EXPECT_EQ(queue_->Titles(), QStringList{u"Ann - One"_s}) << "the database has it on a disk that answers";
  EXPECT_EQ(LastTold(), u"Tracks Not Added, Their Disk Does Not Answer : 30"_s);

  loop_.HangDisk(database_.paths(Paths::Playlists));
  manager_->Shelf().List();
  Finish();
  EXPECT_TRUE(manager_->Shelf().Trouble().startsWith(u"Disk Does Not Answer"_s));
}

TEST_F(LoadingPlaylists, TracksThatAreRenumberedWhileItAsksKeepTheirRows) {
  AddEntry(u"Rock/Mix"_s, u" 1~Nobody.lnk"_s, u"/nobody.mp3"_s);
  AddEntry(u"Rock/Mix"_s, u" 2~Cat - Three.lnk"_s, MusicPath(u"cat - three"_s));
  prompter_.meanwhile = [this](const Prompt&) { catalogue_.Remove(ToMref(1)); };
  prompter_.answers = {Answer::No};
  Load(u"Mix"_s);
  ASSERT_EQ(queue_->Count(), 1);
  EXPECT_EQ(queue_->rows[0].track, ToMref(2));
}

TEST_F(LoadingPlaylists, ItsOutlookIsShownBeforehand) {
  AddEntry(u"Rock/Mix"_s, u" 1~Ann - One.lnk"_s, {});
  AddEntry(u"Rock/Mix"_s, u" 2~Bob - Two.lnk"_s, {});
  AddEntry(u"Rock/Mix"_s, u" 3~Nobody.lnk"_s, {});
  catalogue_.Change(ToMref(1), {.duration = 3600});
  catalogue_.Change(ToMref(2), {.duration = 2500.9});
  manager_.emplace(PlaylistManager::Services{ForPlaylists(), PlaylistMode::Load, {}});
  PlaylistServices services = ForPlaylists();
  services.overlaps = [](const std::vector<TrackPlaySettings>& tracks) {
    EXPECT_TRUE(tracks.at(0).Mode.custom) << "as its info file says";
    return std::vector<int>{tracks.at(0).FadePosition.fadeOut * 10};
  };
  manager_.emplace(PlaylistManager::Services{services, PlaylistMode::Load, {}});
  manager_->Shelf().List(u"Rock"_s, u"Mix"_s);
  Finish();
  EXPECT_EQ(manager_->Shelf().Outlook(), u"2 tracks, 01:41:40, ends at 23:40, overlaps counted, 1 missing"_s);
  EXPECT_EQ(manager_->Shelf().Entries()[2].StateWords(), u"Not Found"_s);
  EXPECT_EQ(manager_->Shelf().Entries()[1].LengthWords(), u"41:40"_s);
  catalogue_.Change(ToMref(2), {.duration = -1});
  loop_.RunFor(1s);
  EXPECT_EQ(manager_->Shelf().Outlook(),
            u"2 tracks, 01:00:00, ends at 22:58, overlaps counted, 1 of unknown length, 1 missing"_s);
}

TEST_F(LoadingPlaylists, ListsOfOtherPlayersComeInAndWhatIsMissingIsNamed) {
  const QString list = database_.tree.Write(
      u"lists/Party Mix.m3u8"_s,
      "#EXTM3U\r\n#EXTINF:60,Somebody - Something\r\n../Kelvo2007_Music files/ann - one.mp3\r\n"
      "#EXTINF:60,Cat - Three\r\nC:\\Music\\track 07.mp3\r\n"
      "\\\\server\\share\\BOB - TWO.wav\r\nhttp://radio/stream\r\n");
  OpenAt(PlaylistMode::Load, u""_s);
  prompter_.paths = {std::nullopt, list};
  manager_->Import();
  Finish();
  EXPECT_FALSE(queue_->last);
  int closed = 0;
  QObject::connect(&*manager_, &PlaylistManager::Loaded, [&closed] { ++closed; });
  manager_->Import();
  Finish();
  EXPECT_EQ(queue_->Titles(), (QStringList{u"Ann - One"_s, u"Cat - Three"_s, u"Bob - Two"_s}));
  EXPECT_EQ(queue_->name, u"Party Mix"_s);
  EXPECT_EQ(closed, 1);
  EXPECT_EQ(LastTold(), u"1 Of 4 Tracks Were Not Found In The Data Base :\r\nhttp://radio/stream"_s);
  manager_->Import(database_.tree.Write(u"lists/empty.m3u"_s, "#EXTM3U\n"));
  Finish();
  EXPECT_EQ(LastTold(), u"empty.m3u Holds No Tracks !"_s);
  manager_->Import(u"/nowhere.m3u"_s);
  Finish();
  EXPECT_EQ(closed, 1);
  EXPECT_TRUE(LastTold().contains(u"nowhere"_s)) << "the error is told";
}

TEST_F(LoadingPlaylists, AnExportedListOpensAgain) {
  AddEntry(u"Rock/Mix"_s, u" 1~Ann - One.lnk"_s, {});
  AddEntry(u"Rock/Mix"_s, u" 2~Nobody.lnk"_s, {});
  OpenAt(PlaylistMode::Load, u"Rock"_s, u"Mix"_s);
  const QString folder = database_.tree.Path();
  prompter_.paths = {folder, folder, database_.tree.MakeFolder(u"stick"_s)};
  prompter_.answers = {Answer::No};
  manager_->Export();
  Finish();
  EXPECT_EQ(database_.tree.Read(u"Mix.m3u8"_s),
            QByteArray("#EXTM3U\n#EXTINF:60,Ann - One\nKelvo2007_Music files/ann - one.mp3\n"));
  EXPECT_EQ(LastTold(), u"1 Tracks Written To\r\n%1/Mix.m3u8\r\n1 Missing Tracks Left Out"_s.arg(folder));
  manager_->Export();
  Finish();
  EXPECT_EQ(LastTold(), folder + u"/Mix.m3u8 Already Exists.\r\nReplace It ?"_s);
  manager_->Export();
  Finish();
  EXPECT_TRUE(database_.tree.Read(u"stick/Mix.m3u8"_s).contains("\n/"))
      << "beside the music, an absolute path";
  manager_->Import(database_.tree.Path(u"stick/Mix.m3u8"_s));
  Finish();
  EXPECT_EQ(queue_->Titles(), QStringList{u"Ann - One"_s});
}

}  // namespace
}  // namespace kelvo::testing
