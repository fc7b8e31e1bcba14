#include "database/DatabaseSettings.h"
#include "datamanager/ManagerDesks.h"

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class DataManagerTest : public WholeManagerTest {
 protected:
  /// With a tool of this name that notes what it was run on.
  void Open(const QString& tool = {}) {
    std::vector<ManagerTool> tools;
    if (!tool.isEmpty())
      tools.push_back({.id = tool,
                       .words = u"Tool"_s,
                       .tooltip = {},
                       .run = [this](const std::vector<Mref>& picked) { ranOn_ = picked; },
                       .whyOff = [this](const std::vector<Mref>&) { return whyOff_; }});
    WholeManagerTest::Open(std::move(tools));
    FindText& find = manager_->Find();
    QObject::connect(&find, &FindText::Found, &find, [this](const std::vector<int>& rows) { hits_ = rows; });
    QObject::connect(&find, &FindText::Reached, &find, [this](int row) { reached_.push_back(row); });
    QObject::connect(&find, &FindText::ClearSelections, &find, [this] { ++cleared_; });
  }
  QString Find(const QString& text = {}) {
    if (!text.isNull()) prompter_.texts = {text};
    manager_->Find().Press();
    loop_.RunFor(1s);
    return manager_->Find().Caption();
  }
  bool MayClose() {
    Job<bool> asked = manager_->MayClose();
    EXPECT_FALSE(asked.Running());
    bool may = false;
    Job<> wait = Take(std::move(asked), &may);
    return may;
  }
  static Job<> Take(Job<bool> asked, bool* may) { *may = co_await std::move(asked); }

  std::vector<Mref> ranOn_;
  QString whyOff_;
  int cleared_ = 0;
  std::vector<int> hits_;
  std::vector<int> reached_;
};

TEST_F(DataManagerTest, FindSelectsAllHitsAndLeadsThroughThemToItsEnd) {
  for (const char16_t* name : {u"Ann - Day", u"Bob - Night", u"DAYLIGHT", u"Été day", u"Night"})
    Add(QString::fromUtf16(name));
  Open();
  EXPECT_EQ(Find(u""_s), u"Find"_s) << "nothing is looked for";
  EXPECT_EQ(cleared_, 1);
  EXPECT_EQ(prompter_.asked[0].title, u"Find Text"_s);
  EXPECT_EQ(prompter_.asked[0].text, u"Enter Search Text"_s);
  EXPECT_EQ(Find(u"day"_s), u"Show 1 Of 3"_s);
  EXPECT_THAT(hits_, ElementsAre(0, 2, 3));
  EXPECT_EQ(Find(), u"Show 2 Of 3"_s);
  EXPECT_EQ(Find(), u"Find"_s) << "the last one";
  EXPECT_THAT(reached_, ElementsAre(0, 2, 3));
  EXPECT_EQ(Find(u"ÉTÉ"_s), u"Show 1 Of 1"_s);
  EXPECT_EQ(Find(), u"Find"_s);
  EXPECT_EQ(Find(u"zzz"_s), u"Find"_s);
  EXPECT_EQ(prompter_.asked.back().text, u"No Matches Found"_s);
  // Rows of before mean nothing when others are listed.
  EXPECT_EQ(Find(u".mp3"_s), u"Show 1 Of 5"_s);
  manager_->SetMode(DispMode::References);
  EXPECT_EQ(manager_->Find().Caption(), u"Find"_s);
}

TEST_F(DataManagerTest, AToolHasThePickedTracksInTheirOrderAndOnlyWhenItCanBeGiven) {
  Add(u"one"_s, u"Rock"_s);
  Add(u"two"_s, u"Rock"_s);
  Open(u"Command5"_s);
  manager_->SetPicked({1, 0}, 1);
  manager_->Run(u"Command5"_s);
  EXPECT_THAT(ranOn_, ElementsAre(ToMref(2), ToMref(1)));
  EXPECT_EQ(manager_->CurrentWords(), u"No 2   01:05"_s);
  EXPECT_EQ(manager_->References().Track(), ToMref(2));
  EXPECT_THAT(manager_->References().OfTrack(ReferenceSet::Genres), ElementsAre(u"Rock"_s));
  ranOn_.clear();
  whyOff_ = u"no"_s;
  manager_->Run(u"Command5"_s);
  EXPECT_THAT(ranOn_, IsEmpty());
  whyOff_.clear();
  catalogue_.AddJingle(database_.Add(Paths::Jingles, u"horn.wav"_s));
  manager_->SetMode(DispMode::Jingles);
  manager_->SetPicked({0}, 0);
  EXPECT_THAT(manager_->PickedTracks(), IsEmpty());
  EXPECT_THAT(manager_->PickedFiles(), ElementsAre(database_.paths(Paths::Jingles) + u"/horn.wav"_s));
  EXPECT_EQ(manager_->CurrentWords(), u"No N/A"_s);
}

TEST_F(DataManagerTest, TheNamesOfASetAreCountedAndTheChosenOnesFollowTheirNames) {
  Add(u"one"_s, u"Rock,Pop"_s, u"Ann"_s);
  Add(u"two"_s, u"rock"_s);
  catalogue_.AddReference(ReferenceSet::Genres, u"~hidden"_s);
  Open();
  ReferenceChoice& references = manager_->References();
  EXPECT_EQ(references.SetWord(), u"None"_s);
  references.ChooseSet(ReferenceSet::Genres);
  loop_.RunFor(1s);
  QStringList rows;
  for (const ReferenceRow& row : references.Names().All())
    rows.append(row.name + u' ' + QString::number(row.tracks.value_or(-1)));
  EXPECT_THAT(rows, ElementsAre(u"Pop 1"_s, u"Rock 2"_s));
  EXPECT_EQ(references.LetterRow(u'S'), 1);
  EXPECT_EQ(references.LetterRow(u'A'), -1);
  references.Choose(u"Rock"_s);
  references.AddToFilter();
  references.AddToFilter();
  EXPECT_EQ(references.Filter().Count(), 1);
  catalogue_.RenameReference(ReferenceSet::Genres, u"Rock"_s, u"Rack"_s);
  EXPECT_EQ(references.Chosen(), u"Rack"_s);
  EXPECT_EQ(references.Filter()[0].name, u"Rack"_s);
  catalogue_.RemoveReference(ReferenceSet::Genres, u"Rack"_s);
  EXPECT_EQ(references.Chosen(), QString());
  EXPECT_EQ(references.Filter().Count(), 0);
  references.ChooseSet(ReferenceSet::Playlists);
  EXPECT_NE(references.WhyNoAdd(), QString());
}

TEST_F(DataManagerTest, ClosingAsksForWaitingFilesAndForTracksThatWereNotUnified) {
  Add(u"one"_s, {}, {}, u"?"_s);
  Add(u"two"_s, {}, {}, u"1,2"_s);
  Add(u"three"_s, {}, {}, u"?"_s);
  Open();
  EXPECT_TRUE(MayClose()) << "nothing waits, and there is no unify to lead to";
  Open(u"Command8"_s);
  catalogue_.SetStagedFiles({u"/a.mp3"_s, u"/b.mp3"_s});
  prompter_.answers = {Answer::Yes, Answer::No};
  EXPECT_TRUE(MayClose());
  EXPECT_THAT(
      prompter_.Told(),
      ElementsAre(u"There Are 2 Tracks in the Utility Folder !\r\nMove them into the Data base Now ?"_s,
                  u"2 Track/s have not had Volume Unified\r\nUnify Now?"_s));
  EXPECT_EQ(transfers_, 1);
  prompter_.answers = {Answer::No, Answer::Yes};
  EXPECT_FALSE(MayClose()) << "it stays for the unify";
  EXPECT_EQ(transfers_, 1);
  EXPECT_THAT(ranOn_, ElementsAre(ToMref(1), ToMref(3)));
}

TEST_F(DataManagerTest, APasswordIsStoredAndTakenBackButNotByLookingAtIt) {
  Open();
  const auto restrict = [this](const QString& answer, std::deque<Answer> sure = {}) {
    prompter_.texts = {answer};
    prompter_.answers = std::move(sure);
    manager_->Restrict();
    loop_.RunFor(1s);
  };
  restrict(u""_s);
  EXPECT_TRUE(settings_.Get(setting::DmanAccess));
  restrict(u"secret"_s);
  EXPECT_EQ(prompter_.asked.back().title, u"Data Base Access"_s);
  EXPECT_TRUE(prompter_.asked.back().text.startsWith(
      u"Restrict Access To This Data Manager\r\nEnter A PassWord Here to Deny Access\r\n(Be Sure"_s));
  EXPECT_FALSE(settings_.Get(setting::DmanAccess));
  EXPECT_EQ(settings_.Get(setting::DmanPassWord), u"secret"_s);
  restrict(u""_s, {Answer::No});
  EXPECT_FALSE(settings_.Get(setting::DmanAccess)) << "the box was only closed";
  restrict(u""_s, {Answer::Yes});
  EXPECT_TRUE(settings_.Get(setting::DmanAccess));
}

}  // namespace
