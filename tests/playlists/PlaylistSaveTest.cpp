#include "playlists/StoreFixture.h"

namespace kelvo::testing {
namespace {

using SavingPlaylists = StoreTest;

QStringList Numbered(int count) {
  QStringList titles;
  for (int number = 1; number <= count; ++number) titles.append(u"T%1"_s.arg(number));
  return titles;
}

TEST_F(SavingPlaylists, TheQueueIsWrittenAsNumberedShellLinksWithoutTargets) {
  MakeCategory(u"Rock"_s);
  Enqueue({u"Ann - One"_s, u"A/b~c"_s});
  OpenAt(PlaylistMode::SaveQueue, u"Rock"_s);
  EXPECT_EQ(manager_->Heading(), u"SAVE"_s);
  EXPECT_EQ(manager_->Name(), u"(No Name)"_s) << "the queue's";
  Save(u"  friday NIGHT "_s);
  EXPECT_EQ(Files(u"Rock/Friday Night"_s), (QStringList{u" 1~Ann - One.lnk"_s, u" 2~A_b~c.lnk"_s}));
  const PlaylistLink link = PlaylistLink::Read(Place(u"Rock/Friday Night/ 1~Ann - One.lnk"_s));
  EXPECT_EQ(link.targetPath, QString());
  EXPECT_EQ(link.arguments, u"Std"_s);
  EXPECT_EQ(queue_->name, u"Rock"_s) << "the category's, not the playlist's own";
  EXPECT_EQ(manager_->Shelf().Playlist(), u"Friday Night"_s);
  EXPECT_EQ(manager_->Shelf().Entries().Count(), 2);
  EXPECT_TRUE(prompter_.asked.empty());
}

TEST_F(SavingPlaylists, RefusesANameThatIsNone) {
  MakeCategory(u"Rock"_s);
  OpenAt(PlaylistMode::SaveQueue, u"Rock"_s);
  int wanted = 0;
  QObject::connect(&*manager_, &PlaylistManager::NameWanted, [&wanted] { ++wanted; });
  for (const QString& name : {u"   "_s, u"(no NAME)"_s}) {
    Save(name);
    EXPECT_EQ(LastTold(), u"Please Enter a Play List Name !"_s);
    EXPECT_EQ(manager_->Name(), QString());
  }
  EXPECT_EQ(wanted, 2);
  Save(u"a:b"_s);
  EXPECT_EQ(LastTold(), u"Character ( : ) Not Allowed in Names !"_s);
  Save(u".."_s);
  EXPECT_EQ(LastTold(), u"Character ( . ) Not Allowed in Names !"_s) << "no folder above";
  EXPECT_TRUE(manager_->Shelf().Playlists().All().empty());
}

TEST_F(SavingPlaylists, NeedsACategory) {
  Open(PlaylistMode::SaveQueue);
  Save(u"mix"_s);
  EXPECT_EQ(LastTold(), u"Please Create A Category To Save Playlist\r\nMix !"_s);
  MakeCategory(u"Most Requested"_s);
  MakeCategory(u"Rock"_s);
  Open(PlaylistMode::SaveQueue);
  EXPECT_EQ(manager_->Shelf().Categories().Count(), 1) << "the tally is no category";
  Save(u"mix"_s);
  EXPECT_EQ(LastTold(), u"Please Select A Category To Save Playlist\r\nMix !"_s);
}

TEST_F(SavingPlaylists, WhatIsThereIsReplacedAppendedToOrLeft) {
  AddEntry(u"Rock/mix"_s, u" 1~Old.lnk"_s, u"/old"_s);
  Enqueue({u"New"_s});
  OpenAt(PlaylistMode::SaveQueue, u"Rock"_s);
  prompter_.answers = {Answer::Cancel, Answer::No, Answer::Yes};
  Save(u"MIX"_s);
  EXPECT_EQ(prompter_.asked.back().title, u"Playlist Exists"_s);
  EXPECT_EQ(LastTold(),
            u"The Playlist Name mix Already Exists In Category Rock\r\n"
            "Click Yes To Replace The Existing Tracks\r\n"
            "Click No To Append Tracks To The PlayList \r\n"
            "Click CANCEL to Cancel Save"_s);
  EXPECT_EQ(Files(u"Rock/mix"_s), QStringList{u" 1~Old.lnk"_s}) << "found under its own case";
  Save(u"mix"_s);
  EXPECT_EQ(Files(u"Rock/mix"_s), (QStringList{u" 1~Old.lnk"_s, u" 2~New.lnk"_s}));
  Save(u"mix"_s);
  EXPECT_EQ(Files(u"Rock/mix"_s), QStringList{u" 1~New.lnk"_s});
  EXPECT_EQ(Trashed(), QStringList{u"mix"_s});

  dmanAccess_ = false;
  OpenAt(PlaylistMode::SaveQueue, u"Rock"_s);
  Save(u"mix"_s);
  EXPECT_EQ(LastTold(),
            u"The Playlist Name mix Already Exists In Category Rock\r\nPlease Choose Another Name !"_s);
}

TEST_F(SavingPlaylists, FiftyFilesAreTheLimitAndTheNewFolderStaysBehind) {
  MakeCategory(u"Rock"_s);
  Enqueue(Numbered(40));
  OpenAt(PlaylistMode::SaveQueue, u"Rock"_s);
  Save(u"mix"_s);
  prompter_.answers = {Answer::No, Answer::Yes, Answer::No};
  queue_->rows.resize(11);
  Save(u"mix"_s);
  EXPECT_EQ(LastTold(),
            u"Playlists Cannot Contain More than 50 Tracks !\r\nTracks Already In The Playlist= 40\r\n"
            " Requested Additions= 11\r\n\r\nPlease Reduce By 1"_s);
  Save(u"mix"_s);
  EXPECT_EQ(Files(u"Rock/Mix"_s).size(), 40) << "a replacement is counted like an addition";
  queue_->rows.resize(10);
  Save(u"mix"_s);
  EXPECT_EQ(Files(u"Rock/Mix"_s).size(), 50);
  Enqueue(Numbered(43));
  Save(u"big"_s);
  EXPECT_EQ(LastTold(), u"Playlists Cannot Contain More Than 50 Tracks, Please Reduce By 3 ! "_s);
  EXPECT_TRUE(QFileInfo::exists(Place(u"Rock/Big"_s)));
  EXPECT_TRUE(Files(u"Rock/Big"_s).isEmpty());
}

TEST_F(SavingPlaylists, AGroupKeepsALineForEachTimeATrackIsPlayed) {
  MakeCategory(u"Rock"_s);
  queue_->group = true;
  queue_->rows = {{ToMref(1), u"Ann - One"_s, {}, {}, u"1,a|4,d"_s},
                  {ToMref(2), u"Bob - Two"_s, {}, {}, u"2,b"_s}};
  OpenAt(PlaylistMode::SaveQueue, u"Rock"_s);
  prompter_.answers = {Answer::Yes, Answer::No};
  Save(u"mix (grp)"_s);
  EXPECT_EQ(LastTold(), u"The Playlist Contains Group Information\r\nSave As A Group Playlist ?"_s);
  EXPECT_EQ(Files(u"Rock/Mix (Grp)"_s),
            (QStringList{u" 1~Ann - One.lnk"_s, u" 2~Ann - One.lnk"_s, u" 3~Bob - Two.lnk"_s,
                         u"Ann - One1.txt"_s, u"Ann - One2.txt"_s, u"Bob - Two3.txt"_s}));
  const PlaylistFolder saved = ReadPlaylist(Place(u"Rock/Mix (Grp)"_s));
  EXPECT_EQ(saved.entries[1].line, u"4,d"_s);
  EXPECT_EQ(saved.entries[1].link->arguments, QString());
  Save(u"mix"_s);
  EXPECT_EQ(Files(u"Rock/Mix"_s).size(), 2) << "as a standard one: a link for each row";
}

TEST_F(SavingPlaylists, TheSessionsFadesGoIntoTheTracksInfoOnce) {
  MakeCategory(u"Rock"_s);
  const std::vector<SaveRow> rows{{u"Ann - One"_s, MusicPath(u"ann - one"_s), u"0,3,2"_s},
                                  {u"Ann - One"_s, MusicPath(u"ann - one"_s), u"3,40,9"_s},
                                  {u"Bob - Two"_s, MusicPath(u"bob - two"_s), {}},
                                  {u"Gone"_s, MusicPath(u"gone"_s), u"1,1,1"_s}};
  const QByteArray untouched = database_.Info(u"bob - two"_s);
  OpenAt(PlaylistMode::SaveSession, u"Rock"_s, {}, rows);
  Save(u"session"_s);
  EXPECT_TRUE(prompter_.asked.empty());
  EXPECT_EQ(Files(u"Rock/Session"_s).size(), 4);
  EXPECT_EQ(PlaylistLink::Read(Place(u"Rock/Session/ 3~Bob - Two.lnk"_s)).targetPath,
            MusicPath(u"bob - two"_s));
  const QByteArray info = database_.Info(u"ann - one"_s);
  EXPECT_TRUE(info.contains("\r\n1,2,1\r\n10,3\r\n20,5\r\n")) << info.constData();
  EXPECT_EQ(database_.Info(u"bob - two"_s), untouched);
  EXPECT_FALSE(database_.Holds(Paths::Info, u"gone.kif"_s));

  OpenAt(PlaylistMode::SaveGroupSession, u"Rock"_s, {}, rows);
  Save(u"session"_s);
  EXPECT_EQ(Files(u"Rock/Session(Grp)"_s).size(), 8);
  EXPECT_EQ(ReadPlaylist(Place(u"Rock/Session(Grp)"_s)).entries[1].line, u"3,40,9"_s);
}

TEST_F(SavingPlaylists, AFailedSaveIsToldAndNothingIsHalfThere) {
  AddEntry(u"Rock/Mix"_s, u" 1~Old.lnk"_s, u"/old"_s);
  OpenAt(PlaylistMode::SaveSelection, u"Rock"_s, {}, {{u"New"_s, MusicPath(u"ann - one"_s)}});
  prompter_.answers = {Answer::Yes};
  prompter_.meanwhile = [this](const Prompt&) { QDir().rename(Place(u"Rock"_s), Place(u"Away"_s)); };
  Save(u"mix"_s);
  EXPECT_TRUE(prompter_.Told().contains(u"Errors Ocurred While Creating/Updating Playlist Mix"_s));
  EXPECT_EQ(Files(u"Away/Mix"_s), QStringList{u" 1~Old.lnk"_s});
  EXPECT_FALSE(QFileInfo::exists(Place(u"Rock"_s)));
}

TEST_F(SavingPlaylists, EachModeOffersWhatItIsFor) {
  struct Expected {
    PlaylistMode mode;
    bool save, load, requests;
  };
  for (const auto& [mode, save, load, requests] :
       {Expected{PlaylistMode::Browse, false, false, true},
        Expected{PlaylistMode::SaveSelection, true, false, false},
        Expected{PlaylistMode::Load, false, true, true},
        Expected{PlaylistMode::SaveQueue, true, false, false},
        Expected{PlaylistMode::SaveGroupSession, true, false, false},
        Expected{PlaylistMode::SaveSession, true, false, false}}) {
    const PlaylistManager manager({ForPlaylists(), mode, {}});
    EXPECT_EQ(manager.MaySave(), save) << static_cast<int>(mode);
    EXPECT_EQ(manager.MayLoad(), load) << static_cast<int>(mode);
    EXPECT_EQ(manager.MaySeeRequests(), requests) << static_cast<int>(mode);
    EXPECT_EQ(manager.MayAddRequests(), load) << static_cast<int>(mode);
  }
}

}  // namespace
}  // namespace kelvo::testing
