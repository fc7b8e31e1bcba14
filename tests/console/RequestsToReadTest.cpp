#include "console/DeskFixture.h"

namespace kelvo::testing {
namespace {

class RequestsToReadTest : public DeskTest {
 protected:
  void SetUp() override {
    AddThreeTracks();
    Open();
    EnqueueAll();
  }
  void Ask(int track, const QString& words) {
    Job<PlayQueue::Requested> asking = Queue().AddRequest(ToMref(track), words);
    EXPECT_FALSE(asking.Running());
  }
  QStringList OnAir() {
    QStringList words;
    for (const RequestsToRead::Request& each : desk_->ToRead().OnAir())
      words.append(each.title + u": "_s + each.words);
    return words;
  }
};

TEST_F(RequestsToReadTest, ARowThatIsCutBehindItsLoadKeepsItsWordsForTheAir) {
  Ask(1, u"for Al"_s);
  Load(Deck::One, 1);
  Queue().Click(1);
  Queue().CutSelected();
  ASSERT_EQ(Queue().Count(), 2);
  EXPECT_TRUE(OnAir().isEmpty());
  Decks().ManualStart(Deck::One);
  loop_.RunFor(1s);
  EXPECT_EQ(OnAir(), QStringList(u"Alpha: for Al"_s));
  Decks().StopDeck(Deck::One);
  EXPECT_TRUE(OnAir().isEmpty());
}

TEST_F(RequestsToReadTest, TheWordsAreThoseOfTheTrackWhicheverOfItsRowsIsPlayed) {
  Finish(Queue().AddTracks({ToMref(1)}, PlayQueue::Route::Search));
  Ask(1, u"for Al"_s);
  Load(Deck::Two, 4);
  Decks().ManualStart(Deck::Two);
  loop_.RunFor(1s);
  EXPECT_EQ(OnAir(), QStringList(u"Alpha: for Al"_s));
}

TEST_F(RequestsToReadTest, TwoDecksOnAirHaveTheirWordsEach) {
  Ask(1, u"for Al"_s);
  Ask(2, u"for Bo"_s);
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  Decks().StartDeck(Deck::One);
  Decks().StartDeck(Deck::Two);
  loop_.RunFor(1s);
  EXPECT_EQ(OnAir(), (QStringList{u"Alpha: for Al"_s, u"Beta: for Bo"_s}));
  Decks().StopDeck(Deck::One);
  EXPECT_EQ(OnAir(), QStringList(u"Beta: for Bo"_s));
  desk_->ToRead().Done();
  EXPECT_TRUE(OnAir().isEmpty());
  EXPECT_FALSE(Queue().QueueHasRequests());
}

}  // namespace
}  // namespace kelvo::testing
