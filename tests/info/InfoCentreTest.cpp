#include "info/InfoCentre.h"
#include "info/InfoFixture.h"
#include "platform/FileSteps.h"

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class InfoCentreTest : public InfoTest {
 protected:
  InfoCentreTest() { database_.tree.MakeFolder(u"bank"_s); }

  void Open() {
    centre_.emplace(InfoCentre::Services{.loop = loop_,
                                         .disks = disks_,
                                         .prompter = prompter_,
                                         .root = database_.tree.Path(u"bank"_s),
                                         .pictures = {},
                                         .readOnly = [this] { return readOnly_; },
                                         .trash = TestTrash()});
    centre_->Enter();
    Finish();
  }
  void Finish() {
    ASSERT_TRUE(loop_.RunUntil([this] { return !centre_->AtWork(); }, 5min));
    loop_.RunFor(1s);
  }
  void New(InfoLevel level, const QString& name) {
    prompter_.texts = {name};
    centre_->New(level);
    Finish();
  }
  void Choose(InfoLevel level, const QString& name) {
    centre_->Choose(level, name);
    Finish();
  }
  void Rename(InfoLevel level, const QString& name, Answer answer = Answer::Yes) {
    prompter_.texts = {name};
    prompter_.answers = {answer};
    centre_->Rename(level);
    Finish();
  }
  void Delete(InfoLevel level, Answer answer = Answer::Yes) {
    prompter_.answers = {answer};
    centre_->Delete(level);
    Finish();
  }
  /// Station / News / Morning, with this text, and chosen.
  void MakeMorning(const QByteArray& text = "Good morning\r\n") {
    database_.tree.Write(u"bank/Station/News/Morning.txt"_s, text);
    Open();
    Choose(InfoLevel::Category, u"Station"_s);
    Choose(InfoLevel::Topic, u"News"_s);
    Choose(InfoLevel::Title, u"Morning"_s);
  }
  [[nodiscard]] QStringList Names(InfoLevel level) const {
    QStringList names;
    for (const InfoName& each : centre_->Names(level).All()) names.append(each.name);
    return names;
  }
  void Drop(const QString& file) {
    centre_->DropPicture({file});
    Finish();
  }
  [[nodiscard]] QByteArray Morning() const { return database_.tree.Read(u"bank/Station/News/Morning.txt"_s); }

  bool readOnly_ = false;
  std::optional<InfoCentre> centre_;
};

TEST_F(InfoCentreTest, ANewTreeGrowsLevelByLevelAndEachLevelNeedsTheOneAboveIt) {
  Open();
  centre_->New(InfoLevel::Topic);
  EXPECT_EQ(LastTold(), u"Please Select or Create A Category To Contain Your New Topic !"_s);
  centre_->New(InfoLevel::Title);
  EXPECT_EQ(LastTold(), u"Please Select or Create A Topic To Contain Your New Title !"_s);
  New(InfoLevel::Category, u" Station "_s);
  EXPECT_EQ(prompter_.asked.back().title, u"New Category"_s);
  EXPECT_TRUE(LastTold().startsWith(u"Please Enter New Info Centre Category"_s));
  New(InfoLevel::Topic, u"News"_s);
  EXPECT_TRUE(LastTold().startsWith(u"Please Enter Topic Name For Category :-"_s));
  New(InfoLevel::Title, u"Morning"_s);
  EXPECT_TRUE(LastTold().startsWith(u"Please Enter Title Name For Topic :-"_s));
  EXPECT_EQ(Morning(), "New Title Morning Created On: 01/06/2007\r\n");
  EXPECT_EQ(centre_->Chosen(), (InfoPath{u"Station"_s, u"News"_s, u"Morning"_s}));
  EXPECT_EQ(centre_->Page().Text(), u"New Title Morning Created On: 01/06/2007"_s);
}

TEST_F(InfoCentreTest, NamesThatAreTakenTooLongOrNoNamesOfFilesAreRefusedInWords) {
  MakeMorning();
  const auto refused = [this](InfoLevel level, const QString& name) {
    New(level, name);
    return LastTold();
  };
  EXPECT_EQ(refused(InfoLevel::Category, u"STATION"_s),
            u"Info Centre Category STATION Already Exists\r\nPlease Choose Another Category Name !"_s);
  EXPECT_EQ(refused(InfoLevel::Topic, u"News"_s),
            u"Topic Name NewsIn Category Station Already Exists\r\nPlease Choose Another Topic Name !"_s);
  EXPECT_EQ(refused(InfoLevel::Title, u"Morning"_s),
            u"Title Name MorningIn News Already Exists\r\nPlease Choose Another Title Name !"_s);
  EXPECT_EQ(refused(InfoLevel::Category, QString(21, u'x')),
            u"Category Names Cannot be longer than 20 Characters"_s);
  EXPECT_EQ(refused(InfoLevel::Topic, QString(21, u'x')),
            u"Topic Names Cannot be longer than 20 Characters  "_s);
  EXPECT_EQ(refused(InfoLevel::Title, QString(31, u'x')),
            u"Title Names Cannot be longer than 30 Characters"_s);
  EXPECT_EQ(refused(InfoLevel::Category, u"../up"_s), u"Character ( / ) Not Allowed in Names !"_s);
  EXPECT_EQ(refused(InfoLevel::Category, u".."_s), u"Names Cannot Begin With A Dot !"_s);
  EXPECT_EQ(refused(InfoLevel::Title, u"two\nlines"_s), u"Names Cannot Hold Line Breaks Or Tabs !"_s);
  const std::size_t before = prompter_.asked.size();
  New(InfoLevel::Category, QString(20, u'\u30ab'));
  New(InfoLevel::Category, u"   "_s);
  EXPECT_EQ(prompter_.asked.size(), before + 2)
      << "20 letters of any script are taken, and blanks do nothing";
  EXPECT_THAT(Names(InfoLevel::Category), ElementsAre(u"Station"_s, QString(20, u'\u30ab')));
}

TEST_F(InfoCentreTest, ARenameKeepsTextPictureAndWhatWasTypedAndAClashIsRefused) {
  MakeMorning();
  Drop(database_.tree.Write(u"photo.jpg"_s, kJpg));
  database_.tree.Write(u"bank/Station/News/Evening.txt"_s, "late\r\n");
  database_.tree.MakeFolder(u"bank/Other"_s);
  centre_->List();
  Finish();
  centre_->Page().SetText(u"typed"_s);
  Rename(InfoLevel::Title, u"EVENING"_s);
  EXPECT_EQ(LastTold(), u"Cannot Rename File Name Already Exists !"_s);
  EXPECT_EQ(prompter_.asked[prompter_.asked.size() - 2].text, u"Rename Morning To EVENING"_s);
  Rename(InfoLevel::Category, u"Other"_s);
  EXPECT_EQ(LastTold(), u"Cannot Rename Folder Name Already Exists !"_s);
  Rename(InfoLevel::Title, QString(31, u'x'));
  EXPECT_EQ(LastTold(), QString(31, u'x') + u" Cannot be longer that 30 Characters !"_s);
  Rename(InfoLevel::Title, u"Dawn"_s, Answer::No);
  EXPECT_EQ(centre_->Chosen().title, u"Morning"_s);

  Rename(InfoLevel::Title, u"Dawn"_s);
  Rename(InfoLevel::Category, u"STATION"_s);
  EXPECT_THAT(Files(u"bank/STATION/News"_s), ElementsAre(u"Dawn.jpg"_s, u"Dawn.txt"_s, u"Evening.txt"_s));
  EXPECT_EQ(centre_->Chosen(), (InfoPath{u"STATION"_s, u"News"_s, u"Dawn"_s}));
  EXPECT_EQ(centre_->Page().Text(), u"typed"_s);
  centre_->SaveAndClose();
  Finish();
  EXPECT_EQ(database_.tree.Read(u"bank/STATION/News/Dawn.txt"_s), "typed\r\n");
}

TEST_F(InfoCentreTest, ADeletionTellsWhatGoesAndGoesToTheTrashWhereThereIsOne) {
  MakeMorning();
  Drop(database_.tree.Write(u"photo.png"_s, kPng));
  database_.tree.Write(u"bank/Station/Rules/Doors.txt"_s, "shut\r\n");
  Delete(InfoLevel::Category, Answer::No);
  EXPECT_EQ(
      LastTold(),
      u"Deleting The Folder: Station Will Also Delete:-2 SubFolders And 3 Files\r\nContinue With Delete ?"_s);
  EXPECT_EQ(prompter_.asked.back().title, u"Delete Station"_s);
  EXPECT_EQ(prompter_.asked.back().safe, Answer::No);
  centre_->Page().SetText(u"typed"_s);
  Delete(InfoLevel::Title);
  EXPECT_EQ(LastTold(), u"Delete Morning"_s) << "and no question about what was typed";
  EXPECT_THAT(Trashed(), ElementsAre(u"Morning.png"_s, u"Morning.txt"_s));
  EXPECT_FALSE(centre_->Page().Shown());
  hasTrash_ = false;
  Delete(InfoLevel::Category);
  EXPECT_THAT(Files(u"bank"_s), IsEmpty());
  EXPECT_EQ(centre_->Chosen(), InfoPath());
}

TEST_F(InfoCentreTest, AChangedTextIsAskedForBeforeAnotherRowAndBeforeTheEnd) {
  MakeMorning("one\r\ntwo\nthree");
  database_.tree.Write(u"bank/Station/News/Evening.txt"_s, "late\r\n");
  centre_->List();
  Finish();
  centre_->Page().SetText(u"one\nTWO\nthree"_s);
  prompter_.answers = {Answer::Cancel};
  Choose(InfoLevel::Title, u"Evening"_s);
  EXPECT_EQ(LastTold(), u"Save Changes to Morning"_s);
  EXPECT_EQ(centre_->Chosen().title, u"Morning"_s);
  prompter_.answers = {Answer::Yes};
  Choose(InfoLevel::Title, u"Evening"_s);
  EXPECT_EQ(centre_->Page().Text(), u"late"_s);
  EXPECT_EQ(Morning(), "one\r\nTWO\nthree") << "lines that were not changed keep their ends";

  centre_->Page().SetText(u"later \u266b"_s);
  prompter_.answers = {Answer::No};
  bool may = false;
  const auto ask = [](InfoCentre& centre, bool* answer) -> Job<> { *answer = co_await centre.MayClose(); };
  const Job<> closing = ask(*centre_, &may);
  EXPECT_EQ(LastTold(), u"Do you Want to Save Changes to .."_s);
  EXPECT_TRUE(may);
  EXPECT_EQ(centre_->Page().Text(), u"late"_s);
  centre_->Page().SetText(u"later \u266b"_s);
  centre_->SaveAndClose();
  Finish();
  EXPECT_EQ(database_.tree.Read(u"bank/Station/News/Evening.txt"_s), "\xEF\xBB\xBFlater \xE2\x99\xAB\r\n");
}

TEST_F(InfoCentreTest, ATitleThatIsGoneOrTooLargeIsNoTextToBeEdited) {
  MakeMorning();
  Choose(InfoLevel::Topic, {});
  Choose(InfoLevel::Topic, u"News"_s);
  QFile::remove(database_.tree.Path(u"bank/Station/News/Morning.txt"_s));
  Choose(InfoLevel::Title, u"Morning"_s);
  EXPECT_TRUE(centre_->Page().Missing());
  EXPECT_FALSE(centre_->Page().Editable());
  database_.tree.Write(u"bank/Station/News/Huge.txt"_s, QByteArray(10 << 20, 'x'));
  Choose(InfoLevel::Title, u"Huge"_s);
  EXPECT_FALSE(centre_->Page().Missing());
  EXPECT_FALSE(centre_->Page().Editable());
  EXPECT_TRUE(LastTold().contains(u"The text cannot be read."_s)) << LastTold().toStdString();
}

TEST_F(InfoCentreTest, PicturesAreToldByTheirContentAndOneTakesThePlaceOfTheOther) {
  MakeMorning();
  const QString folder = u"bank/Station/News"_s;
  for (const QString& wrong :
       {database_.tree.Write(u"song.mp3"_s, "sound"), database_.tree.Write(u"fake.png"_s, "text"),
        database_.tree.MakeFolder(u"folder.jpg"_s), database_.tree.Path(u"missing.gif"_s)}) {
    Drop(wrong);
    EXPECT_EQ(LastTold(), u"Only Graphics Can Be Dropped ! "_s) << wrong.toStdString();
  }
  QByteArray large = kPng;
  large.resize(kMostPictureBytes + 1);
  Drop(database_.tree.Write(u"large.png"_s, large));
  EXPECT_EQ(LastTold(), u"A Picture Can Be No Larger Than 20 Megabytes !"_s);
  centre_->DropPicture({u"one.png"_s, u"two.png"_s});
  EXPECT_EQ(LastTold(), u"Please Drop One File !"_s);
  EXPECT_THAT(Files(folder), ElementsAre(u"Morning.txt"_s));

  Drop(database_.tree.Write(u"photo.PNG"_s, kPng));
  EXPECT_TRUE(centre_->Page().Picture().endsWith(u"/Morning.png"_s));
  prompter_.paths = {database_.tree.Write(u"photo.webp"_s, kWebp)};
  centre_->PickPicture();
  Finish();
  EXPECT_THAT(Files(folder), ElementsAre(u"Morning.txt"_s, u"Morning.webp"_s));
  Drop(database_.tree.Path(folder + u"/Morning.webp"_s));
  EXPECT_EQ(database_.tree.Read(folder + u"/Morning.webp"_s), kWebp) << "dropped on itself";
  centre_->RemovePicture();
  Finish();
  EXPECT_THAT(Files(folder), ElementsAre(u"Morning.txt"_s));
  EXPECT_THAT(Trashed(), ElementsAre(u"Morning.webp"_s));
}

TEST_F(InfoCentreTest, OpenedToReadNothingCanBeChanged) {
  MakeMorning();
  readOnly_ = true;
  centre_->Enter();
  Finish();
  EXPECT_TRUE(centre_->ReadOnly());
  centre_->New(InfoLevel::Category);
  centre_->Rename(InfoLevel::Title);
  centre_->Delete(InfoLevel::Category);
  Drop(database_.tree.Write(u"photo.png"_s, kPng));
  centre_->SaveAndClose();
  EXPECT_TRUE(prompter_.asked.empty());
  EXPECT_THAT(Files(u"bank/Station/News"_s), ElementsAre(u"Morning.txt"_s));
}

TEST_F(InfoCentreTest, ASearchLooksThroughAllTitlesWhateverTheirAccentsAndAHitOpensIts) {
  database_.tree.Write(u"bank/Station/Rules/Doors.txt"_s, "Lock them\r\nCaf\xE9 key: second drawer\r\n");
  database_.tree.Write(u"bank/Station/Rules/Bad.txt"_s, QByteArray(2 << 20, 'x'));
  database_.tree.Write(u"bank/Ideas/Shows/Cafe.txt"_s, "nothing yet");
  MakeMorning();
  centre_->Find(u"CAFE  drawer"_s);
  EXPECT_TRUE(centre_->Finding());
  loop_.RunFor(1s);
  ASSERT_EQ(centre_->Hits().Count(), 1);
  EXPECT_EQ(centre_->Hits()[0].excerpt, u"Caf\u00e9 key: second drawer"_s);
  centre_->ChooseHit(0);
  Finish();
  EXPECT_EQ(centre_->Chosen(), (InfoPath{u"Station"_s, u"Rules"_s, u"Doors"_s}));
  EXPECT_THAT(Names(InfoLevel::Title), ElementsAre(u"Bad"_s, u"Doors"_s));
  centre_->Find(u"cafe"_s);
  loop_.RunFor(1s);
  EXPECT_EQ(centre_->Hits().Count(), 2) << "names count too";
  centre_->Find({});
  EXPECT_EQ(centre_->Hits().Count(), 0);
}

TEST_F(InfoCentreTest, ADiskThatDoesNotAnswerIsToldAndLosesNoText) {
  MakeMorning();
  centre_->Page().SetText(u"typed"_s);
  loop_.HangDisk(database_.tree.Path(u"bank"_s));
  centre_->SaveAndClose();
  Finish();
  EXPECT_TRUE(LastTold().startsWith(u"Disk Does Not Answer : "_s)) << LastTold().toStdString();
  EXPECT_TRUE(centre_->Page().Dirty());
  loop_.AnswerAgain(database_.tree.Path(u"bank"_s));
  centre_->SaveAndClose();
  Finish();
  EXPECT_EQ(Morning(), "typed\r\n");
}

TEST(InfoFiles, AKillAtAnyStepLeavesTheOldTextOrTheNewAndNeverATextWithoutItsPicture) {
  for (int step = 0;; ++step) {
    const TemporaryTree tree;
    tree.Write(u"A.txt"_s, "old\r\n");
    tree.Write(u"A.png"_s, kPng);
    tree.Write(u"new.jpg"_s, kJpg);
    const InfoPlace place{tree.Path(), u"A"_s};
    const bool killed = KilledBefore(step, [&] {
      SaveInfo(place, u"new"_s);
      TakePicture(place, tree.Path(u"new.jpg"_s));
      static_cast<void>(RenameInfo(place, u"B"_s));
    });
    const InfoContent before = ReadInfo(place);
    const InfoContent after = ReadInfo({tree.Path(), u"B"_s});
    EXPECT_NE(before.found, after.found) << step;
    const InfoContent& found = before.found ? before : after;
    EXPECT_TRUE(found.text == u"old"_s || found.text == u"new"_s) << step;
    ASSERT_FALSE(found.picture.isEmpty()) << step;
    QFile picture(found.picture);
    ASSERT_TRUE(picture.open(QIODevice::ReadOnly)) << step;
    const QByteArray bytes = picture.readAll();
    EXPECT_TRUE(bytes == kPng || bytes == kJpg) << step;
    // The next try comes to the end.
    EXPECT_TRUE(!before.found || RenameInfo(place, u"B"_s)) << step;
    EXPECT_FALSE(ReadInfo({tree.Path(), u"B"_s}).picture.isEmpty()) << step;
    if (!killed) break;
  }
}

}  // namespace
