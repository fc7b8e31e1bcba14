#include "playlists/StoreFixture.h"

namespace kelvo::testing {
namespace {

class TheStore : public StoreTest {
 protected:
  [[nodiscard]] QStringList Categories() const {
    return QDir(Place({})).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
  }
  void Finished(const std::function<void()>& command) {
    command();
    Finish();
  }
};

TEST_F(TheStore, CategoriesAreMadeRenamedAndDeleted) {
  Open(PlaylistMode::Load);
  prompter_.texts = {QString(),          u"most requested"_s, QString(21, u'x'), u"a/b"_s,
                     u" dance  hits "_s, u"DANCE  hits"_s,    u"slow"_s};
  for (int round = 0; round < 7; ++round) Finished([this] { manager_->NewCategory(); });
  EXPECT_EQ(prompter_.asked.front().title, u"New Category"_s);
  EXPECT_EQ(prompter_.asked.front().text, u"Please Enter New Playlist Category"_s);
  const QStringList told = prompter_.Told();
  for (const QString& refusal :
       {u"Most Requested Is a Reserved name - Please Choose Another Name !"_s,
        u"Group Names Cannot Be Longer Than 20 Characters"_s, u"Character ( / ) Not Allowed in Names !"_s,
        u"Playlist Category Dance  Hits Already Exists\r\nPlease Choose Another Name !"_s}) {
    EXPECT_TRUE(told.contains(refusal)) << refusal.toStdString();
  }
  EXPECT_EQ(Categories(), (QStringList{u"Dance  Hits"_s, u"Slow"_s}));
  EXPECT_EQ(catalogue_.PlaylistNames, (QStringList{u"Dance  Hits"_s, u"Slow"_s}));
  EXPECT_EQ(manager_->Shelf().Category(), u"Slow"_s) << "the new one is chosen";

  prompter_.texts = {u"dance  hits"_s, QString(21, u'x'), u"slow"_s, u"very slow"_s};
  for (int round = 0; round < 4; ++round) Finished([this] { manager_->RenameCategory(); });
  EXPECT_TRUE(prompter_.Told().contains(u"Please Enter New Name For Group Slow"_s));
  EXPECT_TRUE(prompter_.Told().contains(u"Group Name Dance  Hits Already Exists !"_s));
  EXPECT_TRUE(prompter_.Told().contains(u"Group Name Slow Already Exists !"_s));
  EXPECT_EQ(Categories(), (QStringList{u"Dance  Hits"_s, u"Very Slow"_s}));
  EXPECT_EQ(catalogue_.PlaylistNames, Categories());

  Finished([this] { manager_->DeleteCategory(); });
  EXPECT_EQ(Categories(), QStringList{u"Dance  Hits"_s}) << "an empty one without a question";
  AddEntry(u"Dance  Hits/A"_s, u" 1~a.lnk"_s, {});
  AddEntry(u"Dance  Hits/B"_s, u" 1~b.lnk"_s, {});
  OpenAt(PlaylistMode::Load, u"Dance  Hits"_s);
  prompter_.answers = {Answer::No, Answer::Yes};
  Finished([this] { manager_->DeleteCategory(); });
  EXPECT_EQ(
      LastTold(),
      u"The Category Dance  Hits Contains 2 Playlists.\r\nAre You Sure You Want To Delete The Category ?"_s);
  EXPECT_EQ(Categories().size(), 1);
  Finished([this] { manager_->DeleteCategory(); });
  EXPECT_TRUE(Categories().isEmpty());
  EXPECT_TRUE(catalogue_.PlaylistNames.isEmpty());
  EXPECT_EQ(Trashed().size(), 2);
}

TEST_F(TheStore, PlaylistsAreRenamedAndDeleted) {
  AddEntry(u"Rock/Mix"_s, u" 1~a.lnk"_s, {});
  AddEntry(u"Rock/Live(Grp)"_s, u" 1~a.lnk"_s, {});
  OpenAt(PlaylistMode::Load, u"Rock"_s, u"Mix"_s);
  prompter_.texts = {QString(), u"live(GRP)"_s, QString(31, u'x'), u"a\"b"_s, u"new MIX"_s};
  for (int round = 0; round < 5; ++round) Finished([this] { manager_->RenamePlaylist(); });
  for (const QString& told :
       {u"Please Enter New Name for Mix"_s, u"Playlist Name Live(Grp) Already Exists !"_s,
        u"Playlist Names Cannot Be Longer Than 30 Characters"_s}) {
    EXPECT_TRUE(prompter_.Told().contains(told)) << told.toStdString();
  }
  EXPECT_EQ(manager_->Shelf().Playlist(), u"New Mix"_s);
  OpenAt(PlaylistMode::Load, u"Rock"_s, u"Live(Grp)"_s);
  prompter_.texts = {u"dance"_s};
  Finished([this] { manager_->RenamePlaylist(); });
  EXPECT_EQ(manager_->Shelf().Playlist(), u"(Grp)"_s) << "its last five letters are overwritten";

  prompter_.answers = {Answer::Cancel, Answer::Ok};
  Finished([this] { manager_->DeletePlaylist(); });
  EXPECT_EQ(LastTold(), u"Delete Playlist (Grp) From Rock ?"_s);
  EXPECT_EQ(manager_->Shelf().Playlists().Count(), 2);
  Finished([this] { manager_->DeletePlaylist(); });
  EXPECT_EQ(manager_->Shelf().Playlists().Count(), 1);
  EXPECT_EQ(manager_->Name(), QString());
  EXPECT_EQ(Trashed(), QStringList{u"(Grp)"_s});
}

TEST_F(TheStore, AnEntryIsDeletedAndThoseBehindItMoveUp) {
  for (int number = 1; number <= 11; ++number) {
    AddEntry(u"Rock/Mix"_s, u" %1~t%1.lnk"_s.arg(number), u"/t%1"_s.arg(number));
    AddEntry(u"Rock/Live(grp)"_s, u" %1~t%1.lnk"_s.arg(number), {});
  }
  OpenAt(PlaylistMode::Load, u"Rock"_s, u"Mix"_s);
  prompter_.answers = {Answer::Cancel, Answer::Ok};
  Finished([this] { manager_->DeleteEntry(9); });
  EXPECT_EQ(LastTold(), u"Delete Entry  10~t10.lnk\r\n From Playlist Mix ?"_s);
  Finished([this] { manager_->DeleteEntry(1); });
  EXPECT_EQ(Trashed(), QStringList{u" 2~t2.lnk"_s});
  EXPECT_EQ(manager_->Shelf().Entries().Count(), 10);
  EXPECT_TRUE(Files(u"Rock/Mix"_s).contains(u"10~t11.lnk"_s));
  EXPECT_TRUE(Files(u"Rock/Mix"_s).contains(u" 1~t1.lnk"_s));
  OpenAt(PlaylistMode::Load, u"Rock"_s, u"Live(grp)"_s);
  Finished([this] { manager_->DeleteEntry(1); });
  EXPECT_EQ(LastTold(), u"The Playlist Live(grp) Is A Group Playlist\r\nCannot Delete Tracks !"_s);
}

TEST_F(TheStore, WithoutAccessNothingIsRenamedOrDeleted) {
  AddEntry(u"Rock/Mix"_s, u" 1~a.lnk"_s, {});
  AddEntry(u"Most Requested"_s, u"Ann - One.lnk"_s, {}, u"3"_s);
  dmanAccess_ = false;
  OpenAt(PlaylistMode::Load, u"Rock"_s, u"Mix"_s);
  Finished([this] { manager_->CompileRequests(); });
  Finished([this] { manager_->RenameCategory(); });
  Finished([this] { manager_->DeleteCategory(); });
  Finished([this] { manager_->RenamePlaylist(); });
  Finished([this] { manager_->DeletePlaylist(); });
  Finished([this] { manager_->DeleteEntry(0); });
  Finished([this] { manager_->DeleteRequests({0}); });
  EXPECT_TRUE(prompter_.asked.empty());
  EXPECT_EQ(Files(u"Rock/Mix"_s).size(), 1);
}

TEST_F(TheStore, RepairMendsWhatItCanDeletesTheRestAndClosesTheGaps) {
  AddEntry(u"Rock/Mix"_s, u" 1~Gone.lnk"_s, u"C:\\gone.mp3"_s);
  AddEntry(u"Rock/Mix"_s, u" 2~Ann - One.lnk"_s, u"C:\\Kelvo\\ann - one.mp3"_s, u"data"_s);
  AddEntry(u"Rock/Mix"_s, u" 3~whole.lnk"_s, MusicPath(u"bob - two"_s));
  AddEntry(u"Rock/Mix"_s, u" 4~new.lnk"_s, u"X:/y\\fresh.mp3"_s);
  database_.Add(Paths::Music, u"fresh.mp3"_s);
  AddText(u"Rock/Mix"_s, u" 5~cat - three.lnk"_s, "no link at all\nreally\nnone");
  AddText(u"Rock/Mix"_s, u"notes.txt"_s, "kept");
  AddEntry(u"Jazz/Live(Grp)"_s, u" 2~Bob - Two.lnk"_s, {}, {});
  loop_.HangDisk(u"/dead"_s);
  AddEntry(u"Jazz/Far"_s, u" 1~far.lnk"_s, u"/dead/far.mp3"_s);
  const QByteArray whole = PlaylistLink{MusicPath(u"bob - two"_s), u"Std"_s}.targetPath.toUtf8();
  Open(PlaylistMode::SaveQueue);
  prompter_.answers = {Answer::No, Answer::Yes};
  Finished([this] { manager_->Repair(); });
  EXPECT_EQ(LastTold(),
            u"This Function Repairs Broken Links to the Tracks Data Base\r\n"
            " If Even After the Repair, A link Still Cannot be Established (Track Is Missing Etc.)\r\n"
            "The Playlist Entry will be Deleted ! \r\n Continue with Repair ?"_s);
  EXPECT_TRUE(Trashed().isEmpty());
  QStringList words;
  QObject::connect(&*manager_, &PlaylistManager::Changed,
                   [this, &words] { words.append(manager_->Words()); });
  Finished([this] { manager_->Repair(); });
  EXPECT_EQ(LastTold(),
            u"Total Files Scanned  : 8\r\nTotal Files Repaired : 4\r\nTotal Files Deleted  : 1"_s);
  EXPECT_TRUE(words.contains(u"Scanning "_s + Place(u"Rock/Mix"_s)));
  EXPECT_TRUE(words.contains(u"Repairing ann - one.mp3"_s));
  EXPECT_EQ(Trashed(), QStringList{u" 1~Gone.lnk"_s});
  const PlaylistFolder mix = ReadPlaylist(Place(u"Rock/Mix"_s));
  ASSERT_EQ(mix.entries.size(), 4U);
  for (std::size_t place = 0; place < 4; ++place) {
    EXPECT_EQ(mix.entries[place].name.number, static_cast<int>(place) + 1);
  }
  EXPECT_EQ(mix.entries[0].link->targetPath, MusicPath(u"ann - one"_s));
  EXPECT_EQ(mix.entries[0].link->arguments, u"data"_s);
  EXPECT_EQ(mix.entries[1].link->targetPath.toUtf8(), whole);
  EXPECT_EQ(mix.entries[2].link->targetPath, MusicPath(u"fresh"_s));
  EXPECT_EQ(mix.entries[3].link->arguments, u"Std"_s);
  EXPECT_EQ(ReadPlaylist(Place(u"Jazz/Live(Grp)"_s)).entries[0].link->targetPath, MusicPath(u"bob - two"_s));
  EXPECT_EQ(Files(u"Jazz/Far"_s).size(), 1) << "what does not answer is not deleted";
}

TEST_F(TheStore, ARepairThatIsStoppedEndsBehindThePlaylistUnderWay) {
  for (const QString& name : {u"A"_s, u"B"_s, u"C"_s}) AddEntry(u"Rock/"_s + name, u" 1~Gone.lnk"_s, {});
  Open(PlaylistMode::Browse);
  prompter_.answers = {Answer::Yes};
  QObject::connect(&*manager_, &PlaylistManager::Changed, [this] {
    if (manager_->Words().endsWith(u"/B"_s)) manager_->Stop();
  });
  manager_->Repair();
  EXPECT_TRUE(manager_->Repairing());
  Finish();
  EXPECT_FALSE(manager_->Repairing());
  EXPECT_EQ(LastTold(),
            u"Total Files Scanned  : 2\r\nTotal Files Repaired : 0\r\nTotal Files Deleted  : 2"_s);
  EXPECT_EQ(Files(u"Rock/C"_s).size(), 1);
}

TEST_F(TheStore, RepairDeletesNothingWhereTheMusicIsAway) {
  AddEntry(u"Rock/Mix"_s, u" 1~Ann - One.lnk"_s, MusicPath(u"ann - one"_s));
  QDir(database_.paths(Paths::Music)).removeRecursively();
  Open(PlaylistMode::Browse);
  prompter_.answers = {Answer::Yes};
  Finished([this] { manager_->Repair(); });
  EXPECT_TRUE(LastTold().startsWith(u"The Music Folder Cannot Be Read"_s));
  EXPECT_EQ(Files(u"Rock/Mix"_s).size(), 1);
}

TEST_F(TheStore, RequestedTracksGoIntoTheQueueOnceWithTheirCount) {
  Open(PlaylistMode::Load);
  Finished([this] { manager_->CompileRequests(); });
  EXPECT_EQ(LastTold(), u"Requests List Is Empty !"_s);
  AddEntry(u"Most Requested"_s, u"Ann - One.lnk"_s, MusicPath(u"ann - one"_s), u"3"_s);
  AddEntry(u"Most Requested"_s, u"bob - two.lnk"_s, {}, u"12"_s);
  AddEntry(u"Most Requested"_s, u"nobody.lnk"_s, u"/nobody.mp3"_s, u"1"_s);
  AddTrack(u"x~y"_s);
  AddEntry(u"Most Requested"_s, u"x~y.lnk"_s, {}, u"2"_s);
  Finished([this] { manager_->CompileRequests(); });
  const auto& rows = manager_->Requests().Rows();
  ASSERT_EQ(rows.Count(), 3);
  EXPECT_EQ(rows[2].name, u"x~y"_s) << "there is no number in front";
  EXPECT_EQ(rows[1].path, MusicPath(u"bob - two"_s));

  Finished([this] { manager_->AddRequests({}); });
  EXPECT_EQ(LastTold(), u"Nothing Was Selected To Add !"_s);
  catalogue_.Remove(ToMref(1));
  ASSERT_EQ(rows.Count(), 2) << "they follow the catalogue";
  queue_->rows.push_back({rows[1].track, u"there"_s, {}, {}});
  Finished([this] { manager_->AddRequests({0, 1}); });
  EXPECT_EQ(queue_->Titles(), (QStringList{u"there"_s, u"Bob - Two"_s}));
  EXPECT_EQ(queue_->rows[1].note, u"Tot-Req= 12"_s);
  EXPECT_EQ(queue_->rows[1].track, ToMref(1));
  EXPECT_EQ(queue_->name, u"(No Name)"_s);

  queue_->group = true;
  prompter_.answers = {Answer::No, Answer::Yes};
  Finished([this] { manager_->AddRequests({0}); });
  EXPECT_EQ(LastTold(), u"(No Name): Can't"_s);
  EXPECT_EQ(queue_->Count(), 2);
  Finished([this] { manager_->AddRequests({0}); });
  EXPECT_EQ(queue_->Titles(), QStringList{u"Bob - Two"_s});

  prompter_.answers = {Answer::Cancel, Answer::Ok};
  Finished([this] { manager_->DeleteRequests({0}); });
  EXPECT_EQ(LastTold(), u"Delete Selected Entries ?"_s);
  EXPECT_EQ(rows.Count(), 2);
  Finished([this] { manager_->DeleteRequests({0}); });
  EXPECT_EQ(rows.Count(), 1);
  EXPECT_EQ(Trashed(), QStringList{u"bob - two.lnk"_s});
}

TEST_F(TheStore, WhatACrashLeftIsMendedWhenTheStoreIsOpened) {
  AddEntry(u"Rock/.Mix.kelvo-whole"_s, u" 1~Ann - One.lnk"_s, {});
  AddEntry(u"Rock/.Mix.kelvo-old"_s, u" 1~Old.lnk"_s, {});
  AddEntry(u"Rock/.Half.kelvo-new"_s, u" 1~Old.lnk"_s, {});
  OpenAt(PlaylistMode::Load, u"Rock"_s, u"Mix"_s);
  EXPECT_EQ(manager_->Shelf().Playlists().Count(), 1);
  EXPECT_EQ(manager_->Shelf().Entries()[0].entry.name.name, u"Ann - One"_s);
  EXPECT_FALSE(HasLeftOvers(Place({})));
}

TEST_F(TheStore, NothingIsWrittenToADiskThatDoesNotAnswer) {
  AddEntry(u"Rock/Mix"_s, u" 1~Ann - One.lnk"_s, {});
  OpenAt(PlaylistMode::SaveQueue, u"Rock"_s, u"Mix"_s);
  loop_.HangDisk(database_.paths(Paths::Playlists));
  prompter_.texts = {u"new"_s};
  prompter_.answers = {Answer::Ok};
  for (const auto& command : std::vector<std::function<void()>>{[this] { manager_->NewCategory(); },
                                                                [this] { manager_->DeletePlaylist(); },
                                                                [this] { manager_->Save(); }}) {
    prompter_.asked.clear();
    Finished(command);
    EXPECT_TRUE(LastTold().startsWith(u"Disk Does Not Answer"_s)) << LastTold().toStdString();
  }
  EXPECT_FALSE(QFileInfo::exists(Place(u"New"_s)));
  EXPECT_EQ(Files(u"Rock/Mix"_s).size(), 1);
}

TEST_F(TheStore, ACategoryThatComesFromElsewhereIsShown) {
  MakeCategory(u"Rock"_s);
  OpenAt(PlaylistMode::Load, u"Rock"_s);
  MakeCategory(u"Jazz"_s);
  catalogue_.AddReference(ReferenceSet::Playlists, u"Jazz"_s);
  loop_.RunFor(2s);
  EXPECT_EQ(manager_->Shelf().Categories().Count(), 2);
  EXPECT_EQ(manager_->Shelf().Category(), u"Rock"_s);
}

TEST_F(TheStore, OneThingAtATime) {
  MakeCategory(u"Rock"_s);
  OpenAt(PlaylistMode::Load, u"Rock"_s);
  prompter_.away = true;
  manager_->Repair();
  ASSERT_TRUE(manager_->Busy());
  manager_->DeleteCategory();
  manager_->ChooseCategory(QString());
  EXPECT_EQ(prompter_.asked.size(), 1U);
  EXPECT_EQ(manager_->Shelf().Category(), u"Rock"_s);
}

}  // namespace
}  // namespace kelvo::testing
