#include "console/DataManagerAccess.h"
#include "console/DeskFixture.h"
#include "console/ScreenLock.h"

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::DeskTest;
using ::testing::ElementsAre;
using testing::ScriptedPrompter;

class ScreenLockTest : public ::testing::Test {
 protected:
  void SetUp() override {
    QObject::connect(&lock_, &ScreenLock::Changed, [this](bool locked) { changes_.push_back(locked); });
  }
  ScriptedPrompter prompter_;
  ScreenLock lock_{prompter_};
  std::vector<bool> changes_;
};

TEST_F(ScreenLockTest, ACodeLocksAndTheSameCodeAloneUnlocks) {
  prompter_.texts = {u" 47 11 "_s, u"4711"_s, u""_s, u"47 11"_s};
  prompter_.answers = {Answer::Ok, Answer::Ok};
  lock_.Lockscr();
  EXPECT_TRUE(lock_.Locked());
  lock_.Lockscr();
  EXPECT_TRUE(lock_.Locked());
  lock_.Lockscr();
  EXPECT_TRUE(lock_.Locked()) << "a cancelled question is no way out";
  lock_.Lockscr();
  EXPECT_FALSE(lock_.Locked());
  EXPECT_THAT(changes_, ElementsAre(true, false));
  EXPECT_EQ(prompter_.secretsAsked, 4) << "the new code is not shown either";
  EXPECT_THAT(prompter_.Told(),
              ElementsAre(u"Please Enter A Screen Lock Code"_s, u"Enter Code To Unlock Screen"_s,
                          u"Sorry, Screen Unlock Code Not Valid !"_s, u"Enter Code To Unlock Screen"_s,
                          u"Sorry, Screen Unlock Code Not Valid !"_s, u"Enter Code To Unlock Screen"_s));
  // The next lock takes a code of its own.
  prompter_.texts = {u"other"_s};
  lock_.Lockscr();
  EXPECT_TRUE(lock_.Locked());
}

TEST_F(ScreenLockTest, NothingOrBlanksAloneDoNotLock) {
  prompter_.texts = {u""_s, u"   "_s};
  lock_.Lockscr();
  lock_.Lockscr();
  EXPECT_FALSE(lock_.Locked());
  EXPECT_TRUE(changes_.empty());
}

class LockedDeskTest : public DeskTest {};

TEST_F(LockedDeskTest, TheDeckThatPlaysGoesOnToItsEndBehindAWrongCode) {
  AddThreeTracks();
  Open();
  EnqueueAll();
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  ScreenLock lock(prompter_);
  prompter_.texts = {u"a"_s, u"b"_s};
  prompter_.answers = {Answer::Ok};
  lock.Lockscr();
  lock.Lockscr();
  loop_.RunFor(61s);
  EXPECT_TRUE(lock.Locked());
  EXPECT_TRUE(Record(Deck::One).PlayedOut);
}

TEST(DataManagerAccessTest, ThePasswordOpensAndNothingElseDoes) {
  const testing::TemporaryTree tree;
  SimulatedEventLoop loop;
  SettingsStore store(loop, tree.Path(u"settings.ini"_s));
  const ProgramSettings settings(store, u"Kelvo"_s);
  settings.Set(setting::DmanAccess, false);
  settings.Set(setting::DmanPassWord, u"Secret"_s);
  ScriptedPrompter prompter;
  int opened = 0;
  const auto open = [&opened] { ++opened; };
  DataManagerAccess access(prompter, settings);
  prompter.texts = {u""_s, u"secret"_s, u"Secret"_s};
  prompter.answers = {Answer::Ok};
  access.Enter(open);
  EXPECT_EQ(prompter.asked.size(), 1U) << "nothing is said to an empty answer";
  EXPECT_EQ(prompter.asked.front().title, u"Data Manager Access"_s);
  EXPECT_EQ(prompter.asked.front().text, u"Enter PassWord"_s);
  access.Enter(open);
  EXPECT_EQ(prompter.asked.back().text, u"PassWord Not Recognized!"_s);
  EXPECT_EQ(opened, 0);
  access.Enter(open);
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(prompter.secretsAsked, 3);

  settings.Set(setting::DmanPassWord, {});
  DataManagerAccess unset(prompter, settings);
  prompter.texts = {u""_s};
  unset.Enter(open);
  EXPECT_EQ(opened, 1) << "no password set is no free access";
}

TEST_F(LockedDeskTest, TheToolsOfTheDataManagerObeyTheSettingsOfTheStart) {
  int opened = 0;
  const auto open = [&opened] { ++opened; };
  Make();
  desk_->ManagerAccess().Enter(open);
  EXPECT_EQ(opened, 1) << "free unless it is said otherwise";
  Set(u"DmanAccess"_s, u"False"_s);
  Set(u"DmanPassWord"_s, u"Secret"_s);
  desk_->ManagerAccess().Enter(open);
  EXPECT_EQ(opened, 2);
  Make();
  prompter_.texts = {u"guess"_s, u"Secret"_s};
  prompter_.answers = {Answer::Ok};
  desk_->ManagerAccess().Enter(open);
  EXPECT_EQ(opened, 2);
  desk_->ManagerAccess().Enter(open);
  EXPECT_EQ(opened, 3);
}

}  // namespace
}  // namespace kelvo
