#include "datamanager/LibraryFixture.h"
#include "datamanager/References.h"

#include <QFile>

using namespace kelvo;
using namespace kelvo::testing;
using ::testing::ElementsAre;

namespace {

constexpr auto kGenres = ReferenceSet::Genres;
constexpr auto kArtists = ReferenceSet::Artists;

class ReferencesTest : public LibraryTest {
 protected:
  void SetUp() override { Make(); }
  void Make() {
    references_.emplace(References::Services{.loop = loop_,
                                             .prompter = prompter_,
                                             .catalogue = catalogue_,
                                             .paths = database_.paths,
                                             .title = u"Kelvo"_s,
                                             .changes = changes_});
  }
  void Finish() {
    ASSERT_TRUE(loop_.RunUntil([this] { return !references_->Busy(); }, 10min));
    loop_.RunFor(1ms);
  }
  void Answer_(std::deque<QString> texts, std::deque<Answer> answers = {Answer::Yes}) {
    prompter_.asked.clear();
    prompter_.texts = std::move(texts);
    prompter_.answers = std::move(answers);
  }
  void New(const QString& name) {
    Answer_({name});
    references_->New(kGenres);
    Finish();
  }
  void Rename(const QString& name, const QString& newName, ReferenceSet set = kGenres) {
    Answer_({newName});
    references_->Rename(set, name);
    Finish();
  }
  void Delete(const QString& name, ReferenceSet set = kGenres, Answer answer = Answer::Yes) {
    Answer_({}, {answer});
    references_->Delete(set, name);
    Finish();
  }
  void Merge(const QString& name, const QString& into) {
    Answer_({into});
    references_->Merge(kGenres, name);
    Finish();
  }
  void Add(const QString& name, const std::vector<Mref>& tracks) {
    Answer_({});
    references_->AddTo(kGenres, name, tracks);
    Finish();
  }
  void Remove(const QString& name, const std::vector<Mref>& tracks) {
    Answer_({});
    references_->RemoveFrom(kGenres, name, tracks);
    Finish();
  }
  [[nodiscard]] QString Genres(int track) const { return catalogue_.TrackGenres[ToMref(track)]; }
  [[nodiscard]] QString GenresOnDisk(const QString& name) const {
    return QString::fromUtf8(database_.Info(name)).section(u"\r\n"_s, 0, 0);
  }
  void SetGenres(const QString& name, const QByteArray& genres) {
    QByteArray info = InfoBytes();
    database_.Add(Paths::Info, name + u".kif"_s, info.replace("~ALL CATEGORIES,Rock,Pop", genres));
    Reload();
  }
  [[nodiscard]] bool HasFolder(const QString& name) const { return database_.Holds(Paths::Categories, name); }

  std::optional<References> references_;
};

TEST_F(ReferencesTest, ANameIsMadeAfterAQuestionUnlessItIsReservedTakenOrNoName) {
  New(u" Acid "_s);
  EXPECT_EQ(prompter_.asked.front().title, u"Create NewCATEGORIES Reference"_s);
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"New Reference Name !"_s, u"Create Reference Acid"_s));
  EXPECT_TRUE(HasFolder(u"Acid"_s));
  EXPECT_TRUE(catalogue_.GenreList.contains(u"Acid"_s));
  EXPECT_EQ(references_->Notice(), u"Acid Created"_s);
  New(u"rOCK"_s);
  EXPECT_EQ(LastTold(), u"Folder "_s + database_.paths(Paths::Categories) +
                            u"/Rock Already Exists !\r\nPlease Choose Another Name !"_s);
  EXPECT_FALSE(HasFolder(u"rOCK"_s));
  // The box is cleared and asks again; an empty answer ends it.
  Answer_({kAllAlbums, QString()}, {});
  references_->New(kGenres);
  Finish();
  EXPECT_THAT(prompter_.Told(), ElementsAre(::testing::_, u"Reserved Name !"_s, ::testing::_));
  for (const QString& bad : {u"a,b"_s, u"a/b"_s, u".hidden"_s, QString(300, u'x')}) {
    Answer_({bad}, {});
    references_->New(kGenres);
    Finish();
    EXPECT_TRUE(LastTold().contains(u"Not Allowed in Names !"_s) ||
                LastTold() == u"The Name Is Too Long !"_s);
  }
}

TEST_F(ReferencesTest, ARenameKeepsTheOrderOfTheNamesReachesEveryTrackAndIsUndone) {
  SetGenres(u"bob - two"_s, "~ALL CATEGORIES,a,ROCK,b,Rocker");
  SetGenres(u"cat - three"_s, "~ALL CATEGORIES,Pop");
  database_.Add(Paths::Categories, u"Rock.txt"_s, "About it");
  const Snapshot before = Library(true);
  Rename(u"Rock"_s, u"Hard"_s);
  EXPECT_EQ(prompter_.asked.front().title, u"Rename Reference"_s);
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"Rename Reference As !"_s, u"Rename Reference Rock To Hard"_s));
  EXPECT_EQ(references_->Notice(), u"Renamed to Hard"_s);
  EXPECT_EQ(GenresOnDisk(u"ann - one"_s), u"~ALL CATEGORIES,Hard,Pop"_s);
  EXPECT_EQ(GenresOnDisk(u"bob - two"_s), u"~ALL CATEGORIES,a,Hard,b,Rocker"_s);
  EXPECT_EQ(Genres(2), u"~ALL CATEGORIES,a,Hard,b,Rocker"_s);
  EXPECT_TRUE(HasFolder(u"Hard"_s) && !HasFolder(u"Rock"_s));
  EXPECT_EQ(database_.tree.Read(Paths::FolderName(Paths::Categories) + u"/Hard.txt"_s), "About it");
  EXPECT_FALSE(catalogue_.GenreList.contains(u"Rock"_s));

  Rename(u"Hard"_s, u"pop"_s);
  EXPECT_TRUE(LastTold().contains(u"/Pop Already Exists !"_s));
  Rename(kAllCategories, {});
  EXPECT_THAT(prompter_.Told(),
              ElementsAre(u"Cannot Rename ~ALL CATEGORIES It is Required By The System !"_s));
  MakeChanges();
  Undo();
  ExpectLibrary(before, true);
  EXPECT_EQ(Genres(2), u"~ALL CATEGORIES,a,ROCK,b,Rocker"_s);
  EXPECT_TRUE(catalogue_.GenreList.contains(u"Rock"_s));
}

TEST_F(ReferencesTest, TracksWhoseFileIsMissingAreNamedAndTheOthersChangedAllTheSame) {
  ASSERT_TRUE(QFile::remove(TrackInfoPath(database_.paths, u"ann - one"_s)));
  Rename(u"Rock"_s, u"Hard"_s);
  EXPECT_EQ(LastTold(), u"ann - one Not found"_s);
  EXPECT_EQ(GenresOnDisk(u"cat - three"_s), u"~ALL CATEGORIES,Hard,Pop"_s);
  EXPECT_FALSE(database_.Holds(Paths::Info, u"ann - one.kif"_s));
  // Lines 1 to 3 of a file come from the catalogue, the others as they are by now.
  QByteArray info = database_.Info(u"bob - two"_s);
  database_.Add(Paths::Info, u"bob - two.kif"_s,
                info.replace("The Band", "Nobody").replace("\r\n120\r\n", "\r\n99\r\n"));
  Rename(u"Hard"_s, u"Soft"_s);
  EXPECT_TRUE(
      database_.Info(u"bob - two"_s)
          .startsWith(
              "~ALL CATEGORIES,Soft,Pop\r\n~ALL ARTISTS,The Band\r\n~ALL ALBUMS\r\n1999-Dec\r\n99\r\n"));
}

TEST_F(ReferencesTest, ADeleteCountsTheTracksTakesTheNameFromThemAndKeepsWhatWasInItsFolder) {
  MakeName(Paths::Categories, u"Empty"_s);
  catalogue_.AddReference(kGenres, u"Empty"_s);
  database_.Add(Paths::Categories, u"Rock/note.doc"_s, "mine");
  const Snapshot before = Library(true);
  Delete(u"Empty"_s);
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"Delete Reference Empty !"_s));
  EXPECT_EQ(prompter_.asked.front().title, u"Delete Reference"_s);
  EXPECT_EQ(references_->Notice(), u"Empty Deleted !"_s);
  EXPECT_FALSE(HasFolder(u"Empty"_s));
  Undo();
  ExpectLibrary(before, true);
  Delete(u"Rock"_s, kGenres, Answer::No);
  EXPECT_THAT(prompter_.Told(),
              ElementsAre(u"The Reference Rock Has 3 Track Entries Defined\r\nContinue with Delete ?"_s));
  ExpectLibrary(before, true);
  Delete(u"Rock"_s);
  EXPECT_EQ(GenresOnDisk(u"ann - one"_s), u"~ALL CATEGORIES,Pop"_s);
  EXPECT_FALSE(catalogue_.GenreList.contains(u"Rock"_s));
  EXPECT_THAT(trash_->Names(), ElementsAre(u"Rock"_s));
  Undo();
  ExpectLibrary(before, true);
  Delete(kAllArtists, kArtists);
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"Cannot Delete ~ALL ARTISTS It is Required By  Kelvo"_s));
  // Its entries alone: the name stays.
  Answer_({});
  references_->RemoveFromAll(kGenres, u"Rock"_s);
  Finish();
  EXPECT_TRUE(HasFolder(u"Rock"_s));
  EXPECT_EQ(Genres(3), u"~ALL CATEGORIES,Pop"_s);
}

TEST_F(ReferencesTest, ATrackTakesTenNamesAndNoEleventhWhileTheOtherTracksAreHandled) {
  SetGenres(u"bob - two"_s, "~ALL CATEGORIES,1,2,3,4,5,6,7,8,9,Pop");
  SetGenres(u"cat - three"_s, "");
  const std::vector all{ToMref(1), ToMref(2), ToMref(3), ToMref(1)};
  Add(u"Acid"_s, all);
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"Cannot Add More References !\r\n"
                                            "bob - two - Max 10 References per track Exceeded"_s));
  EXPECT_EQ(GenresOnDisk(u"ann - one"_s), u"~ALL CATEGORIES,Rock,Pop,Acid"_s);
  EXPECT_EQ(Genres(3), QString()) << "an empty line gets nothing";
  const Snapshot before = Library(true);
  Add(u"aCID"_s, {ToMref(1)});
  EXPECT_TRUE(prompter_.asked.empty());
  ExpectLibrary(before, true);  // a name that it has
  Remove(u"POP"_s, all);
  EXPECT_EQ(GenresOnDisk(u"ann - one"_s), u"~ALL CATEGORIES,Rock,Acid"_s);
  EXPECT_EQ(Genres(2), u"~ALL CATEGORIES,1,2,3,4,5,6,7,8,9"_s);
  Remove(u"~ALL CATEGORIES"_s, all);
  EXPECT_EQ(Genres(1), u"~ALL CATEGORIES,Rock,Acid"_s) << "the base item stays";
  // A file that is missing is left out, in the catalogue too.
  ASSERT_TRUE(QFile::remove(TrackInfoPath(database_.paths, u"ann - one"_s)));
  Add(u"Late"_s, all);
  EXPECT_EQ(Genres(1), u"~ALL CATEGORIES,Rock,Acid"_s);
  EXPECT_EQ(Genres(2), u"~ALL CATEGORIES,1,2,3,4,5,6,7,8,9,Late"_s);
}

TEST_F(ReferencesTest, AMergeLeavesOneNameInEveryLineAndIsUndone) {
  SetGenres(u"bob - two"_s, "~ALL CATEGORIES,Rock,x");
  database_.Add(Paths::Categories, u"Rock.txt"_s, "About it");
  database_.Add(Paths::Categories, u"Rock.jpg"_s, "picture");
  database_.Add(Paths::Categories, u"Pop.jpg"_s, "other");
  const Snapshot before = Library(true);
  Merge(u"Rock"_s, u"none"_s);
  EXPECT_EQ(LastTold(), u"none Not found"_s);
  Merge(u"Rock"_s, u"POP"_s);
  EXPECT_EQ(GenresOnDisk(u"ann - one"_s), u"~ALL CATEGORIES,Pop"_s);
  EXPECT_EQ(GenresOnDisk(u"bob - two"_s), u"~ALL CATEGORIES,Pop,x"_s);
  EXPECT_TRUE(!HasFolder(u"Rock"_s) && HasFolder(u"Pop.txt"_s));
  EXPECT_EQ(database_.tree.Read(Paths::FolderName(Paths::Categories) + u"/Pop.jpg"_s), "other");
  EXPECT_FALSE(catalogue_.GenreList.contains(u"Rock"_s));
  MakeChanges();
  Undo();
  ExpectLibrary(before, true);
  EXPECT_EQ(Genres(1), u"~ALL CATEGORIES,Rock,Pop"_s);
}

TEST_F(ReferencesTest, ARenameOnThreeThousandTracksIsDoneInTurnsAndTakenBackWhenItIsStopped) {
  for (int number = 0; number < 3000; ++number)
    database_.AddTrack(u"track %1"_s.arg(number, 4, 10, QChar(u'0')));
  Reload();
  const Snapshot before = Library();
  int changed = 0;
  int inTurn = 0;
  int mostInTurn = 0;
  const QObject listener;
  catalogue_.Listen(&listener,
                    [&](const TrackChanged&) { ++changed, mostInTurn = std::max(mostInTurn, ++inTurn); });
  const std::function<void()> turn = [&] {
    inTurn = 0;
    if (references_->Busy()) loop_.Post(turn);
  };
  Answer_({u"The Group"_s});
  references_->Rename(kArtists, u"The Band"_s);
  turn();
  QString words;
  ASSERT_TRUE(loop_.RunUntil([&] { return changed > 600; }));
  words = changes_->Words();
  EXPECT_THAT(words.toStdString(), ::testing::MatchesRegex("Renaming Track Entries \\(2[0-9]%\\)"));
  changes_->Stop();
  Finish();
  EXPECT_EQ(LastTold(), u"Stopped: Everything Is As It Was"_s);
  ExpectLibrary(before);
  EXPECT_EQ(catalogue_.TrackArtists[ToMref(1)], u"~ALL ARTISTS,The Band"_s);
  EXPECT_TRUE(catalogue_.ArtistList.contains(u"The Band"_s));
  EXPECT_EQ(changes_->LastChange(), QString());
  Answer_({u"The Group"_s});
  references_->Rename(kArtists, u"The Band"_s);
  turn();
  Finish();
  EXPECT_EQ(catalogue_.TrackArtists[ToMref(3003)], u"~ALL ARTISTS,The Group"_s);
  EXPECT_LE(mostInTurn, 8) << "tracks that change while nothing else has a turn";
}

TEST_F(ReferencesTest, AKillAtAnyStepOfAnyCommandLeavesTheNameInAllTracksOrInNone) {
  database_.Add(Paths::Categories, u"Rock.txt"_s, "About it");
  const Snapshot before = Library();
  const std::vector<std::function<void()>> commands{
      [this] { Rename(u"Rock"_s, u"Hard"_s); },
      [this] { Delete(u"Rock"_s); },
      [this] { Merge(u"Rock"_s, u"Pop"_s); },
      [this] {
        Add(u"Acid"_s, {ToMref(1), ToMref(2), ToMref(3)});
      },
      // Stopped on its way, and taken back.
      [this] {
        Answer_({u"Hard"_s});
        const QObject listener;
        catalogue_.Listen(&listener, [this](const ReferenceChanged&) { changes_->Stop(); });
        references_->Rename(kGenres, u"Rock"_s);
        Finish();
      },
  };
  for (const std::function<void()>& command : commands) {
    Snapshot after;
    for (int step = 0;; ++step) {
      SCOPED_TRACE(step);
      const bool killed = KilledBefore(step, command, Writes::InARow);
      const QString told = MendLibrary(database_.paths, *trash_);
      EXPECT_FALSE(told.contains(u"Could Not"_s)) << told.toStdString();
      if (const Snapshot now = Library(); now != before) {
        if (after.empty()) after = now;
        EXPECT_EQ(Difference(now, after), "");
        MakeChanges();
        Undo();
        ExpectLibrary(before);
      }
      MakeChanges();
      Make();
      if (!killed) break;
      ASSERT_LT(step, 500);
    }
  }
}

TEST_F(ReferencesTest, WhatChangedSinceIsLeftAloneByTheUndoAndAnotherProgramsChangeIsWaitedFor) {
  Rename(u"Rock"_s, u"Hard"_s);
  SetGenres(u"bob - two"_s, "~ALL CATEGORIES,Mine");
  MakeChanges();
  Make();
  Undo();
  EXPECT_EQ(LastTold(), u"1 Part(s) Could Not Be Taken Back: They Are Not As They Were Left"_s);
  EXPECT_EQ(GenresOnDisk(u"bob - two"_s), u"~ALL CATEGORIES,Mine"_s);
  EXPECT_EQ(GenresOnDisk(u"ann - one"_s), u"~ALL CATEGORIES,Rock,Pop"_s);
  {
    const ChangeJournal other(database_.paths);
    const Snapshot before = Library();
    Rename(u"Rock"_s, u"Hard"_s);
    EXPECT_TRUE(prompter_.Told().join(u' ').contains(u"Another Program Changes The Library."_s));
    ExpectLibrary(before);
  }
  // A journal that can't be read is told of and harms nothing; nor does one that leads out of the library.
  database_.Add(Paths::Utility, u".running-change"_s, "{\"steps\":[[\"move\"");
  EXPECT_TRUE(MendLibrary(database_.paths, *trash_).contains(u"Can't Be Read"_s));
  const QString outside = database_.tree.Write(u"outside.txt"_s, "x");
  LibraryChange hostile{.what = u"x"_s, .steps = {DiscardEntry{.path = outside}}};
  database_.Add(Paths::Utility, u".running-change"_s, hostile.ToBytes());
  static_cast<void>(MendLibrary(database_.paths, *trash_));
  EXPECT_TRUE(QFileInfo::exists(outside));
}

}  // namespace
