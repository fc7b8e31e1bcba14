#include "app/SessionEnd.h"
#include "console/DeskFixture.h"
#include "platform/SettingsStore.h"

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class FakeSession : public SessionManager {
 public:
  explicit FakeSession(bool mayAsk) : mayAsk_(mayAsk) {}
  [[nodiscard]] bool AllowsInteraction() override { return mayAsk_; }
  void Release() override { told += u"released "_s; }
  void Cancel() override { told += u"cancelled "_s; }
  QString told;

 private:
  const bool mayAsk_;
};

class SessionEndTest : public DeskTest {
 protected:
  void SetUp() override {
    AddThreeTracks();
    Open();
  }
  /// A deck on air.
  void PlayOne() {
    EnqueueAll();
    Load(Deck::One, 1);
    Decks().StartDeck(Deck::One);
    ASSERT_TRUE(desk_->Plays());
  }
  /// Whether the program is to end.
  bool Answer(FakeSession& session) {
    const DeskAtSessionEnd desk{[this] { return desk_->Plays(); }, [this] { return desk_->QueryClose(true); },
                                [this] { ++saved_; }};
    std::optional<bool> quit;
    const Job<> job = Await(session, desk, &quit);
    EXPECT_TRUE(loop_.RunUntil([&] { return quit.has_value(); }));
    return quit.value_or(false);
  }
  /// The desk does what it did: its clock runs.
  [[nodiscard]] bool GoesOn() {
    const QString before = desk_->Status().Status().sessionTime;
    loop_.RunFor(3s);
    return desk_->Status().Status().sessionTime != before;
  }
  int saved_ = 0;

 private:
  static Job<> Await(FakeSession& session, DeskAtSessionEnd desk, std::optional<bool>* quit) {
    *quit = co_await AnswerSessionEnd(session, desk);
  }
};

TEST_F(SessionEndTest, WithNothingOnAirTheDeskIsSavedUnaskedAndGoesOnInCaseTheSessionDoes) {
  FakeSession session(true);
  EXPECT_FALSE(Answer(session));
  EXPECT_TRUE(prompter_.asked.empty());
  EXPECT_EQ(session.told, QString());
  EXPECT_EQ(saved_, 1);
  EXPECT_TRUE(GoesOn());
}

TEST_F(SessionEndTest, WhileADeckPlaysThePersonIsAskedAndANoKeepsTheSession) {
  PlayOne();
  prompter_.answers = {Answer::No};
  FakeSession session(true);
  EXPECT_FALSE(Answer(session));
  EXPECT_EQ(prompter_.Told().last(), u"Quit Kelvo ? "_s);
  EXPECT_EQ(session.told, u"cancelled "_s);
  EXPECT_GE(saved_, 1);
  EXPECT_TRUE(desk_->Plays());
  EXPECT_TRUE(GoesOn());
}

TEST_F(SessionEndTest, AYesEndsTheProgramAndLetsTheSessionEnd) {
  PlayOne();
  prompter_.answers = {Answer::Yes};
  FakeSession session(true);
  EXPECT_TRUE(Answer(session));
  EXPECT_EQ(session.told, u"released "_s);
  EXPECT_EQ(saved_, 2) << "also what was done while the question stood";
}

TEST_F(SessionEndTest, WhereNobodyMayBeAskedTheDeskIsSavedAndPlaysToTheEndOfTheSession) {
  PlayOne();
  FakeSession session(false);
  EXPECT_FALSE(Answer(session));
  EXPECT_TRUE(prompter_.asked.empty());
  EXPECT_EQ(session.told, QString());
  EXPECT_EQ(saved_, 1);
  EXPECT_TRUE(desk_->Plays());
  EXPECT_TRUE(GoesOn());
}

}  // namespace
