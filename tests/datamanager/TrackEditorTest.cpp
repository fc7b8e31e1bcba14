#include "datamanager/LibraryFixture.h"
#include "datamanager/TrackEditor.h"

#include <QFile>

using namespace kelvo;
using namespace kelvo::testing;
using ::testing::ElementsAre;

namespace {

class TrackEditorTest : public LibraryTest {
 protected:
  void SetUp() override { MakeEditor(); }
  void MakeEditor() {
    editor_.emplace(TrackEditor::Services{
        .loop = loop_,
        .disks = disks_,
        .prompter = prompter_,
        .catalogue = catalogue_,
        .paths = database_.paths,
        .changes = changes_,
        .whyNotDeleted = [this](const QString& path) { return path == onAir_ ? u"On air"_s : QString(); }});
  }
  void Open(const QString& path) {
    editor_->Open(path);
    loop_.RunFor(10ms);
  }
  void OpenTrack(const QString& name = u"ann - one"_s) { Open(MusicPath(name)); }
  void Finish() {
    ASSERT_TRUE(loop_.RunUntil([this] { return !editor_->Busy(); }, 1min));
    loop_.RunFor(1ms);
  }
  void Rename(const QString& name, std::deque<Answer> answers = {Answer::Yes}) {
    prompter_.answers = std::move(answers);
    editor_->SetNewName(name);
    editor_->Rename();
    Finish();
  }
  void Delete(std::deque<Answer> answers = {Answer::Yes}) {
    prompter_.answers = std::move(answers);
    editor_->Delete();
    Finish();
  }
  void Change(const std::function<void(TrackFacts&)>& change) { editor_->Change(change); }
  void Save() {
    editor_->Save();
    Finish();
  }
  /// Entries of each kind that lead to "ann - one", and one that does not.
  void AddPlaylists() {
    AddEntry(u"Party/Mix"_s, u" 1~Ann - One.lnk"_s, MusicPath(u"ann - one"_s));
    AddEntry(u"Party/Mix"_s, u" 2~Bob.lnk"_s, MusicPath(u"bob - two"_s));
    AddEntry(u"Party/Old"_s, u"3~nick.lnk"_s, u"C:\\Music\\ANN - ONE.mp3"_s);
    AddEntry(u"Party/Night(Grp)"_s, u" 1~Ann - One.lnk"_s, MusicPath(u"ann - one"_s).toUpper());
    AddText(u"Party/Night(Grp)"_s, u"Ann - One1.txt"_s, "1,0,1,2,0,0,1,0,60");
    AddEntry(u"Most Requested"_s, u"ann - one.lnk"_s, MusicPath(u"ann - one"_s), u"7"_s);
    AddEntry(u"Party/Elsewhere"_s, u" 1~Ann - One.lnk"_s,
             database_.tree.Write(u"other/ann - one.mp3"_s, "x"));
  }
  /// Kills the work before each of its steps in turn. What the next start makes of it is the library of
  /// before or that of after, and can then be undone.
  void KillAtEachStep(const std::function<void()>& work) {
    const Snapshot before = Library();
    Snapshot after;
    int finished = 0;
    for (int step = 0;; ++step) {
      SCOPED_TRACE(step);
      const bool killed = KilledBefore(step, work, Writes::InARow);
      const QString told = MendLibrary(database_.paths, *trash_);
      const Snapshot now = Library();
      EXPECT_FALSE(database_.Holds(Paths::Utility, u".running-change"_s));
      if (now != before) {
        if (after.empty()) after = now;
        EXPECT_EQ(Difference(now, after), "");
        EXPECT_TRUE(!killed || told.isEmpty() || told.contains(u"It Is Finished Now"_s))
            << told.toStdString();
        finished += killed && !told.isEmpty() ? 1 : 0;
        MakeChanges();
        Undo();
        ExpectLibrary(before);
        MakeChanges();
        MakeEditor();
      }
      if (!killed) break;
      ASSERT_LT(step, 500);
    }
    EXPECT_FALSE(after.empty());
    EXPECT_GT(finished, 5) << "the steps are seen";
  }

  QString onAir_;
  std::optional<TrackEditor> editor_;
};

TEST_F(TrackEditorTest, WhatIsSavedIsTheFourteenEntriesAndTheCatalogueAndNothingElse) {
  OpenTrack();
  EXPECT_EQ(editor_->Facts(), (TrackFacts{.year = u"1999"_s,
                                          .month = u"Dec"_s,
                                          .hiPos = u"7"_s,
                                          .bpm = u"120"_s,
                                          .startStrong = false,
                                          .endStrong = true,
                                          .comments = u"First comment\nSecond comment"_s}));
  Change([](TrackFacts& facts) { facts.endStrong = false, facts.hiPos = u" "_s, facts.year.clear(); });
  // Another writer changes what the editor does not show.
  QByteArray other = InfoBytes();
  database_.Add(Paths::Info, u"ann - one.kif"_s, other.replace("-3.5,0.2", "1.0,2.0"));
  Save();
  EXPECT_EQ(database_.Info(u"ann - one"_s),
            "~ALL CATEGORIES,Rock,Pop\r\n~ALL ARTISTS,The Band\r\n~ALL "
            "ALBUMS\r\n0000-Dec\r\n120\r\n0\r\n1,2,3\r\n10,5\r\n"
            "20,30\r\n0\r\n0\r\n1.0,2.0\r\n180.5\r\nFirst comment\r\nSecond comment\r\n");
  EXPECT_EQ(catalogue_.TrackDates[ToMref(1)], u"0000-Dec"_s);
  EXPECT_EQ(catalogue_.TrackStartEnd[ToMref(1)], u"0,0"_s);
  EXPECT_FALSE(editor_->Dirty());

  Change([](TrackFacts& facts) { facts.comments.clear(), facts.month.clear(), facts.hiPos = u"x"_s; });
  EXPECT_FALSE(editor_->CheckHiPos());
  Save();
  Change([](TrackFacts& facts) { facts.hiPos = u"1"_s, facts.bpm = u"?"_s; });
  EXPECT_FALSE(editor_->CheckBpm());
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"Hi Pos Must Be A Number !"_s, u"Hi Pos Must Be A Number !"_s,
                                            u"Bpm Must Be A Number"_s));
  Change([](TrackFacts& facts) { facts.bpm.clear(); });
  editor_->TakeConverted();
  Save();
  EXPECT_TRUE(database_.Info(u"ann - one"_s).contains("\r\n0000-xxx\r\n0\r\n1\r\n")) << "blank fields";
  EXPECT_TRUE(database_.Info(u"ann - one"_s).endsWith("\r\n0\r\n0\r\n?\r\n180.5\r\nNo Comments\r\n"));
}

TEST_F(TrackEditorTest, AFileThatIsMissingClosesTheEditorAndOneThatVanishesIsNotMade) {
  int closed = 0;
  QObject::connect(&*editor_, &TrackEditor::Closed, [&closed] { ++closed; });
  OpenTrack();
  Change([](TrackFacts& facts) { facts.bpm = u"99"_s; });
  ASSERT_TRUE(QFile::remove(TrackInfoPath(database_.paths, u"ann - one"_s)));
  Save();
  EXPECT_EQ(LastTold(), u"Could Not Save info File !"_s);
  EXPECT_FALSE(database_.Holds(Paths::Info, u"ann - one.kif"_s));
  EXPECT_TRUE(editor_->Dirty()) << "nothing typed is lost";
  EXPECT_EQ(closed, 0);
  prompter_.answers = {Answer::No};
  OpenTrack(u"bob - two"_s);
  EXPECT_EQ(editor_->Title(), u"bob - two.mp3"_s);
  OpenTrack();
  EXPECT_EQ(LastTold(), u"Requested File Dousn't Exist !"_s);
  EXPECT_EQ(closed, 1);
}

TEST_F(TrackEditorTest, ARenameTakesEveryEntryTheInfoFileAndTheCatalogueAlongAndIsUndoneAfterARestart) {
  AddPlaylists();
  const Snapshot before = Library(true);
  OpenTrack();
  Rename(u" Mr. Big - Song"_s);
  EXPECT_EQ(prompter_.asked.front().text,
            u"Rename The file\r\nann - one.mp3\r\nTo :\r\nMr Big - Song.mp3\r\nContinue With Rename ?"_s);
  EXPECT_EQ(prompter_.asked.front().safe, Answer::No);
  EXPECT_EQ(LastTold(), u"File Rename Was Successful"_s);
  const QString path = MusicPath(u"Mr Big - Song"_s);
  EXPECT_EQ(editor_->Title(), u"Mr Big - Song.mp3"_s);
  EXPECT_EQ(editor_->NewName(), u"Mr Big - Song"_s);
  EXPECT_EQ(catalogue_.TrackPaths(ToMref(1)), path);
  EXPECT_TRUE(QFileInfo::exists(path));
  EXPECT_EQ(database_.Info(u"Mr Big - Song"_s), InfoBytes());
  EXPECT_FALSE(database_.Holds(Paths::Info, u"ann - one.kif"_s));
  EXPECT_THAT(Files(u"Party/Mix"_s), ElementsAre(u" 1~Mr Big - Song.lnk"_s, u" 2~Bob.lnk"_s));
  EXPECT_EQ(Target(u"Party/Mix"_s, u" 1~Mr Big - Song.lnk"_s), path);
  EXPECT_EQ(Target(u"Party/Old"_s, u"3~Mr Big - Song.lnk"_s), path) << "a link of another system";
  EXPECT_THAT(Files(u"Party/Night(Grp)"_s), ElementsAre(u" 1~Mr Big - Song.lnk"_s, u"Mr Big - Song1.txt"_s));
  EXPECT_THAT(Files(u"Most Requested"_s), ElementsAre(u"Mr Big - Song.lnk"_s));
  EXPECT_EQ(Target(u"Most Requested"_s, u"Mr Big - Song.lnk"_s), path);
  EXPECT_THAT(Files(u"Party/Elsewhere"_s), ElementsAre(u" 1~Ann - One.lnk"_s)) << "it leads to another file";
  // The same name in another case is the same name.
  const std::size_t asked = prompter_.asked.size();
  Rename(u"MR BIG - SONG"_s, {});
  EXPECT_EQ(prompter_.asked.size(), asked);

  MakeChanges();
  EXPECT_EQ(changes_->LastChange(), u"Rename ann - one.mp3 To Mr Big - Song.mp3"_s);
  Undo();
  ExpectLibrary(before, true);
  EXPECT_EQ(catalogue_.TrackPaths(ToMref(1)), MusicPath(u"ann - one"_s));
  EXPECT_EQ(changes_->LastChange(), QString());
}

TEST_F(TrackEditorTest, ANameThatIsTakenOrNoneIsRefusedBeforeAnythingIsTouched) {
  database_.Add(Paths::Music, u"dan - four.wav"_s);
  const Snapshot before = Library();
  OpenTrack();
  Rename(u" . "_s, {});
  EXPECT_EQ(LastTold(), u"Please Enter New File Name In Rename Box !"_s);
  Rename(u"a/b"_s, {});
  EXPECT_EQ(LastTold(), u"Character ( / ) Not Allowed in Names !"_s);
  Rename(QString(254, u'x'), {});
  EXPECT_EQ(LastTold(), u"The Name Is Too Long !"_s);
  for (const QString& taken : {u"BOB - two"_s, u"Dan - Four"_s}) {
    Rename(taken);
    EXPECT_EQ(LastTold(), u"Can`t Rename As "_s + taken +
                              u" . ( Name Already Exists )  - Please Choose Another Name !"_s);
  }
  Rename(u"free"_s, {Answer::No});
  ExpectLibrary(before);
}

TEST_F(TrackEditorTest, ARenameThatFailsAtTheFileLeavesTheEntriesChangedSaysSoAndIsUndone) {
  AddPlaylists();
  ASSERT_TRUE(QFile::remove(MusicPath(u"ann - one"_s)));
  const Snapshot before = Library();
  OpenTrack();
  Rename(u"new"_s);
  EXPECT_EQ(LastTold(),
            u"Cant find file to Rename !\r\nEntries Of Playlists Have Been Changed Already; Undo Brings "
            "Them Back"_s);
  EXPECT_THAT(Files(u"Party/Mix"_s), ElementsAre(u" 1~new.lnk"_s, u" 2~Bob.lnk"_s));
  EXPECT_EQ(catalogue_.TrackPaths(ToMref(1)), MusicPath(u"ann - one"_s));
  EXPECT_TRUE(database_.Holds(Paths::Info, u"ann - one.kif"_s))
      << "the info file belongs to what did not move";
  Undo();
  ExpectLibrary(before);
}

TEST_F(TrackEditorTest, ADeleteTakesEntriesFileAndInfoToTheTrashAndItsUndoBringsTheTrackBack) {
  AddPlaylists();
  const Snapshot before = Library(true);
  OpenTrack(u"bob - two"_s);
  onAir_ = MusicPath(u"bob - two"_s);
  Delete({});
  EXPECT_EQ(LastTold(), u"On air"_s);
  onAir_.clear();
  // It goes on air while the playlists are looked through.
  prompter_.meanwhile = [this](const Prompt&) { onAir_ = MusicPath(u"bob - two"_s); };
  Delete();
  EXPECT_EQ(LastTold(), u"On air"_s);
  prompter_.meanwhile = nullptr;
  onAir_.clear();
  ExpectLibrary(before, true);

  OpenTrack();
  Delete();
  EXPECT_EQ(prompter_.asked.rbegin()[1].text,
            u"Delete The file\r\nann - one.mp3\r\nContinue With Delete ?"_s);
  EXPECT_EQ(prompter_.asked.rbegin()[1].safe, Answer::No);
  EXPECT_EQ(LastTold(), u"File Deleted"_s);
  EXPECT_EQ(editor_->Title(), u"ann - one.mp3 - Removed"_s);
  EXPECT_EQ(editor_->NewName(), QString());
  EXPECT_EQ(editor_->WhyNoChange(), u"The file was removed"_s);
  EXPECT_THAT(trash_->Names(),
              ::testing::UnorderedElementsAre(u"ann - one.mp3"_s, u"ann - one.kif"_s, u" 1~Ann - One.lnk"_s,
                                              u"3~nick.lnk"_s, u" 1~Ann - One.lnk"_s, u"Ann - One1.txt"_s,
                                              u"ann - one.lnk"_s));
  EXPECT_THAT(Files(u"Party/Mix"_s), ElementsAre(u" 2~Bob.lnk"_s)) << "the others keep their numbers";
  ASSERT_EQ(catalogue_.LastTrack(), 2);
  EXPECT_EQ(catalogue_.TrackNames[ToMref(1)], u"bob - two"_s);

  MakeChanges();
  Undo();
  ExpectLibrary(before, true);
  ASSERT_EQ(catalogue_.LastTrack(), 3);
  EXPECT_EQ(catalogue_.TrackNames[ToMref(3)], u"ann - one"_s);
  EXPECT_EQ(catalogue_.TrackBpm[ToMref(3)], u"120"_s);

  // Where there is no trash a hidden folder keeps it until the next change.
  trash_->there = false;
  OpenTrack();
  Delete();
  MakeChanges();
  Undo();
  ExpectLibrary(before, true);
  OpenTrack();
  Delete();
  OpenTrack(u"bob - two"_s);
  Rename(u"new"_s);
  EXPECT_FALSE(database_.Holds(Paths::Music, u".kelvo-deleted"_s));
  // A file that is not there is not deleted.
  OpenTrack(u"cat - three"_s);
  ASSERT_TRUE(QFile::remove(MusicPath(u"cat - three"_s)));
  Delete();
  EXPECT_EQ(LastTold(), u"cat - three.mp3 Could Not Locate File To Remove !"_s);
  EXPECT_TRUE(database_.Holds(Paths::Info, u"cat - three.kif"_s));
}

TEST_F(TrackEditorTest, AJingleHasOnlyItsNameAndNoPlaylistIsTouched) {
  const QString jingle = database_.Add(Paths::Jingles, u"ann - one.mp3"_s);
  AddPlaylists();
  catalogue_.AddJingle(jingle);
  Open(jingle);
  EXPECT_EQ(editor_->Facts().comments, u"N/A"_s);
  EXPECT_EQ(editor_->WhyNoFacts(), u"A jingle has no info file"_s);
  EXPECT_EQ(editor_->WhyNoChange(), QString());
  Rename(u"Horn"_s);
  EXPECT_TRUE(catalogue_.SoundBiteNames.contains(u"Horn"_s));
  EXPECT_TRUE(Files(u"Party/Mix"_s).contains(u" 1~Ann - One.lnk"_s));
  Delete();
  EXPECT_TRUE(catalogue_.SoundBiteNames.isEmpty());
  EXPECT_TRUE(database_.Holds(Paths::Info, u"ann - one.kif"_s));
  Undo();
  EXPECT_TRUE(catalogue_.SoundBiteNames.contains(u"Horn"_s));
}

TEST_F(TrackEditorTest, TwoMusicFilesOfOneNameKeepTheirInfoWhenOneIsRenamedOrDeleted) {
  database_.Add(Paths::Music, u"ann - one.wav"_s);
  Reload();
  OpenTrack();
  Rename(u"new"_s);
  EXPECT_EQ(database_.Info(u"new"_s), InfoBytes());
  EXPECT_EQ(database_.Info(u"ann - one"_s), InfoBytes());
  Undo();
  EXPECT_FALSE(database_.Holds(Paths::Info, u"new.kif"_s));
  OpenTrack();
  Delete();
  EXPECT_EQ(database_.Info(u"ann - one"_s), InfoBytes());
}

TEST_F(TrackEditorTest, AKillAtAnyStepOfARenameLeavesTheOldNameOrTheNewEverywhere) {
  AddPlaylists();
  KillAtEachStep([this] {
    OpenTrack();
    Rename(u"new"_s);
  });
}

TEST_F(TrackEditorTest, AKillAtAnyStepOfADeleteLeavesTheTrackOrNothingOfItAndItCanBeBroughtBack) {
  AddPlaylists();
  const auto work = [this] {
    OpenTrack();
    Delete();
  };
  KillAtEachStep(work);
  trash_->there = false;
  KillAtEachStep(work);
}

}  // namespace
