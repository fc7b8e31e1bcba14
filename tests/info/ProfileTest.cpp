#include "info/InfoFixture.h"
#include "info/Profile.h"
#include "info/ProfileKeeper.h"

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class ProfileTest : public InfoTest {
 protected:
  ProfileTest() {
    catalogue_.AddReference(ReferenceSet::Artists, u"The Band"_s);
    catalogue_.AddReference(ReferenceSet::Artists, u"Ann"_s);
    catalogue_.AddReference(ReferenceSet::Genres, u"Rock"_s);
    keeper_.emplace(ProfileKeeper::Services{.loop = loop_,
                                            .prompter = prompter_,
                                            .catalogue = catalogue_,
                                            .paths = database_.paths,
                                            .trash = TestTrash()});
  }
  void Open(const QString& name, ProfileKind kind = ProfileKind::Artist) {
    if (!profile_ || profile_->Words().id != WordsOf(kind).id) {
      profile_.emplace(Profile::Services{.loop = loop_,
                                         .disks = disks_,
                                         .prompter = prompter_,
                                         .catalogue = catalogue_,
                                         .paths = database_.paths,
                                         .pictures = {},
                                         .kind = kind,
                                         .readOnly = [this] { return readOnly_; },
                                         .trash = TestTrash()});
    }
    profile_->Open(name);
    Finish();
  }
  void Finish() {
    ASSERT_TRUE(loop_.RunUntil([this] { return !profile_->AtWork(); }, 5min));
    loop_.RunFor(1s);
  }
  void Save(const QString& text) {
    profile_->Page().SetText(text);
    profile_->SaveAndClose();
    Finish();
  }
  void DropText(const QString& file, std::optional<Answer> answer = {}) {
    if (answer) prompter_.answers = {*answer};
    profile_->DropText({file});
    Finish();
  }
  [[nodiscard]] QStringList Artists() const { return Files(Paths::FolderName(Paths::Artists)); }
  [[nodiscard]] QByteArray Artist(const QString& file) const {
    return database_.tree.Read(Paths::FolderName(Paths::Artists) + u'/' + file);
  }
  void AddArtist(const QString& file, const QByteArray& bytes) const {
    database_.Add(Paths::Artists, file, bytes);
  }
  static QString Lines(int count) { return QStringList(count, u"line"_s).join(u'\n'); }

  bool readOnly_ = false;
  std::optional<ProfileKeeper> keeper_;
  std::optional<Profile> profile_;
};

TEST_F(ProfileTest, WhereNothingIsWrittenTheOperatorIsToldAndASaveMakesTheFile) {
  Open(u"THE BAND"_s);
  EXPECT_EQ(profile_->Name(), u"The Band"_s) << "the library shows names in capitals";
  EXPECT_EQ(LastTold(),
            u"No Information Exists for Artist/Band The Band\r\nPlease Edit then Click Save And Close !"_s);
  EXPECT_EQ(prompter_.asked.back().title, u"Info File"_s);
  Save(u"From Leeds\n"_s);
  EXPECT_EQ(Artist(u"The Band.txt"_s), "From Leeds\r\n");
  EXPECT_FALSE(profile_->Page().Dirty());
  Open(u"Rock"_s, ProfileKind::Genre);
  EXPECT_EQ(LastTold(), u"No Info Exists for Genre Rock"_s);
  Save(u"loud"_s);
  EXPECT_TRUE(database_.Holds(Paths::Categories, u"Rock.txt"_s));
}

TEST_F(ProfileTest, AHundredLinesAreSavedAndOneMoreIsNot) {
  Open(u"Ann"_s);
  Save(Lines(101));
  EXPECT_EQ(LastTold(),
            u"The Current File Contains 1 lines more than the maximum allowed for info files\r\n"
            "Please Reduce then try again !"_s);
  EXPECT_TRUE(profile_->Page().Dirty());
  EXPECT_THAT(Artists(), IsEmpty());
  Save(Lines(100) + u'\n');
  EXPECT_EQ(Artist(u"Ann.txt"_s).count('\n'), 100);
  Save(QString(InfoPage::kMostLetters + 1, u'x'));
  EXPECT_TRUE(LastTold().startsWith(u"A Text Can Be No Longer"_s));
}

TEST_F(ProfileTest, ANameThatIsTooLongForItsFileIsRefusedInWords) {
  const QString longest(253, u'x');
  catalogue_.AddReference(ReferenceSet::Artists, longest);
  Open(longest);
  Save(u"text"_s);
  EXPECT_EQ(LastTold(), u"The Name %1 Is Too Long For A File !"_s.arg(longest));
  EXPECT_TRUE(profile_->Page().Dirty());
}

TEST_F(ProfileTest, ADroppedTextReplacesOrComesBehindAndOtherFilesAreRefused) {
  Open(u"Ann"_s);
  for (const QString& wrong :
       {database_.tree.Write(u"a.doc"_s, "text"), database_.tree.Write(u"b.txt"_s, QByteArray("\0\1", 2))}) {
    DropText(wrong);
    EXPECT_EQ(LastTold(), u"Only Text Files can be Dropped"_s) << wrong.toStdString();
  }
  DropText(database_.tree.Write(u"huge.txt"_s, QByteArray(10 << 20, 'x')));
  EXPECT_THAT(Artists(), IsEmpty());
  DropText(database_.tree.Write(u"one.TXT"_s, "one\n"));
  EXPECT_EQ(Artist(u"Ann.txt"_s), "one\r\n");
  const QString two = database_.tree.Write(u"two.txt"_s, "two\r\n");
  DropText(two, Answer::Cancel);
  EXPECT_EQ(LastTold(),
            u"File Ann Already Exists !\r\nDo You Want To Replace The File ?\r\n"
            "(Press No To Append to End Of file)"_s);
  EXPECT_EQ(Artist(u"Ann.txt"_s), "one\r\n");
  profile_->Page().SetText(u"one typed"_s);
  DropText(two, Answer::No);
  EXPECT_EQ(Artist(u"Ann.txt"_s), "one typed\r\ntwo\r\n");
  DropText(two, Answer::Yes);
  EXPECT_EQ(Artist(u"Ann.txt"_s), "two\r\n");
}

TEST_F(ProfileTest, AnotherNameAsksForWhatWasTypedAndADeletionTakesTextAndPicture) {
  Open(u"Ann"_s);
  Save(u"old"_s);
  profile_->DropPicture({database_.tree.Write(u"ann.webp"_s, kWebp)});
  Finish();
  profile_->Page().SetText(u"new"_s);
  prompter_.answers = {Answer::Cancel};
  Open(u"The Band"_s);
  EXPECT_EQ(LastTold(), u"Do you Want to Save Changes to Artist.."_s);
  EXPECT_EQ(profile_->Name(), u"Ann"_s);
  prompter_.answers = {Answer::Yes};
  Open(u"The Band"_s);
  EXPECT_EQ(Artist(u"Ann.txt"_s), "new\r\n");
  Open(u"Ann"_s);
  prompter_.answers = {Answer::Yes};
  profile_->Delete();
  Finish();
  EXPECT_EQ(LastTold(), u"Delete File Ann"_s);
  EXPECT_THAT(Trashed(), ElementsAre(u"Ann.txt"_s, u"Ann.webp"_s));
  EXPECT_EQ(profile_->Page().Text(), QString());
  EXPECT_TRUE(profile_->Page().Picture().isEmpty());
}

TEST_F(ProfileTest, AProfileFollowsTheRenameOfItsNameAlsoWhileItIsOpenAndChanged) {
  AddArtist(u"the band.TXT"_s, "text\r\n");
  AddArtist(u"the band.jpg"_s, kJpg);
  Open(u"The Band"_s);
  EXPECT_EQ(profile_->Page().Text(), u"text"_s) << "written in another way";
  profile_->Page().SetText(u"typed"_s);
  catalogue_.RenameReference(ReferenceSet::Artists, u"The Band"_s, u"Bands"_s);
  loop_.RunFor(1s);
  EXPECT_THAT(Artists(), ElementsAre(u"Bands.jpg"_s, u"Bands.txt"_s));
  EXPECT_EQ(profile_->Name(), u"Bands"_s);
  profile_->SaveAndClose();
  Finish();
  EXPECT_THAT(Artists(), ElementsAre(u"Bands.jpg"_s, u"Bands.txt"_s));
  EXPECT_EQ(Artist(u"Bands.txt"_s), "typed\r\n");
}

TEST_F(ProfileTest, ARenameOntoANameThatStillHasATextKeepsBothAndSaysSo) {
  AddArtist(u"Ann.txt"_s, "ann\r\n");
  AddArtist(u"Eve.txt"_s, "from before\r\n");
  catalogue_.RenameReference(ReferenceSet::Artists, u"Ann"_s, u"Eve"_s);
  loop_.RunFor(1s);
  EXPECT_EQ(Artist(u"Eve.txt"_s), "ann\r\n");
  EXPECT_EQ(Artist(u"Eve (2).txt"_s), "from before\r\n");
  EXPECT_TRUE(LastTold().startsWith(u"Eve Had A Profile Already, From Before. It Is Kept As Eve (2) In "_s));
}

TEST_F(ProfileTest, AProfileOfADeletedNameGoesToTheTrashOrStaysAndTheOperatorIsTold) {
  AddArtist(u"Ann.txt"_s, "ann\r\n");
  AddArtist(u"the band.txt"_s, "band\r\n");
  Open(u"Ann"_s);
  profile_->Page().SetText(u"typed"_s);
  catalogue_.RemoveReference(ReferenceSet::Artists, u"Ann"_s);
  loop_.RunFor(1s);
  EXPECT_EQ(LastTold(), u"The Profile Of Ann Is In The Trash Of The Desktop"_s);
  EXPECT_THAT(Trashed(), ElementsAre(u"Ann.txt"_s));
  EXPECT_TRUE(profile_->Gone());
  EXPECT_EQ(profile_->Page().Text(), u"typed"_s) << "what was typed is not lost";
  hasTrash_ = false;
  catalogue_.RemoveReference(ReferenceSet::Artists, u"The Band"_s);
  loop_.RunFor(1s);
  EXPECT_TRUE(LastTold().startsWith(u"The Profile Of The Band Is Kept In "_s));
  EXPECT_EQ(Artist(u"the band.txt"_s), "band\r\n");
  const std::size_t told = prompter_.asked.size();
  catalogue_.RemoveReference(ReferenceSet::Genres, u"Rock"_s);
  loop_.RunFor(1s);
  EXPECT_EQ(prompter_.asked.size(), told) << "nothing is told where nothing is";
}

TEST_F(ProfileTest, OpenedToReadAProfileIsShownAndNothingMore) {
  AddArtist(u"Ann.txt"_s, "ann\r\n");
  readOnly_ = true;
  Open(u"Ann"_s);
  EXPECT_EQ(profile_->Page().Text(), u"ann"_s);
  profile_->Delete();
  DropText(database_.tree.Write(u"one.txt"_s, "one\n"));
  profile_->DropPicture({database_.tree.Write(u"ann.png"_s, kPng)});
  EXPECT_THAT(Artists(), ElementsAre(u"Ann.txt"_s));
  Open(u"The Band"_s);
  EXPECT_EQ(LastTold(), u"No Information Exists for Artist/Band The Band"_s)
      << "a reader is not asked to edit";
}

}  // namespace
