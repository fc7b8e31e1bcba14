#include "console/DeskFixture.h"

namespace kelvo::testing {
namespace {

class TheLastChangeOfTheQueue : public DeskTest {
 protected:
  void SetUp() override {
    AddThreeTracks();
    Open();
  }
  [[nodiscard]] bool MayUndo() { return Queue().WhyNoUndo().isEmpty(); }
  void Clear() {
    Queue().Click(1);
    prompter_.answers.push_back(Answer::Ok);
    Finish(Queue().ClearQueue());
    ASSERT_EQ(Queue().Count(), 0);
  }
  [[nodiscard]] QueueFill::Row RowOf(int track, const QString& line = {}) {
    return {ToMref(track), u"Loaded %1"_s.arg(track), catalogue_.TrackPaths(ToMref(track)), u"Std"_s, line};
  }
  /// A playlist of these tracks takes the queue's place.
  void Take(const std::vector<int>& tracks, bool clearFirst, bool group = false) {
    QueueFill fill{
        .name = u"List"_s, .folder = u"/lists/List"_s, .group = group, .clearFirst = clearFirst, .rows = {}};
    for (const int track : tracks) fill.rows.push_back(RowOf(track, u"line %1"_s.arg(fill.rows.size())));
    Queue().Take(fill);
  }
};

TEST_F(TheLastChangeOfTheQueue, ACutRowComesBackToItsPlaceBesideWhatCameSince) {
  EXPECT_FALSE(MayUndo());
  Enqueue({ToMref(1), ToMref(2)});
  Queue().Click(1);
  Queue().CutSelected();
  Enqueue({ToMref(3)});
  Queue().Undo();
  EXPECT_EQ(Column(TrackColumn), (QStringList{u"Alpha"_s, u"Beta"_s, u"Gamma"_s}));
  EXPECT_EQ(Tags(), (std::vector{1, 2, 3}));
  EXPECT_EQ(Queue().QueueTotalSeconds(), 60 + 60 + 90);
  EXPECT_EQ(Queue().Selected(), 1);
  EXPECT_FALSE(MayUndo()) << "once";
}

TEST_F(TheLastChangeOfTheQueue, AClearedQueueComesBackWithItsNameUnlessItGotAnother) {
  EnqueueAll();
  Queue().SetName(u"Friday"_s);
  Clear();
  Queue().Undo();
  EXPECT_EQ(Queue().Count(), 3);
  EXPECT_EQ(Queue().Name(), u"Friday"_s);
  Clear();
  Queue().SetName(u"Saturday"_s);
  Queue().Undo();
  EXPECT_EQ(Queue().Name(), u"Saturday"_s);
  EXPECT_EQ(Queue().QueueTotalSeconds(), 210);
}

TEST_F(TheLastChangeOfTheQueue, ALoadIntoASortedListTakesItsPlacesBehindItsEquals) {
  Enqueue({ToMref(2)});
  Queue().SetName(u"Friday"_s);
  Queue().SortBy(CommentColumn);
  Queue().Click(1);
  Take({3, 1}, false);
  EXPECT_EQ(Column(TrackColumn), (QStringList{u"Beta"_s, u"Loaded 3"_s, u"Loaded 1"_s}));
  Queue().SortBy(TrackColumn);
  EXPECT_EQ(Queue().Row(Queue().Selected()).title, u"Beta"_s);
  Take({2}, false);
  EXPECT_EQ(Column(TrackColumn), (QStringList{u"Beta"_s, u"Loaded 1"_s, u"Loaded 2"_s, u"Loaded 3"_s}));
  EXPECT_EQ(Queue().Row(Queue().Selected()).title, u"Beta"_s);
}

TEST_F(TheLastChangeOfTheQueue, ALoadIsTakenBackButForWhatWasPlayedOfIt) {
  Enqueue({ToMref(3)});
  Take({1, 2}, true);
  EXPECT_EQ(Queue().Name(), u"List"_s);
  EXPECT_EQ(Queue().PlaylistFolder(), u"/lists/List"_s);
  EXPECT_EQ(Column(TrackColumn), (QStringList{u"Loaded 1"_s, u"Loaded 2"_s}));
  EXPECT_EQ(Queue().QueueTotalSeconds(), 120);
  Load(Deck::One, 2);
  Decks().StartDeck(Deck::One);
  loop_.RunFor(1s);
  Queue().Undo();
  EXPECT_EQ(Column(TrackColumn), (QStringList{u"Gamma"_s, u"Loaded 2"_s}));
  EXPECT_TRUE(Column(CommentColumn)[1].startsWith(u"Now Playing"_s));
  EXPECT_EQ(Queue().Name(), u"(No Name)"_s);
  EXPECT_EQ(Queue().PlaylistFolder(), QString());
  EXPECT_EQ(Queue().QueueTotalSeconds(), 150);
}

TEST_F(TheLastChangeOfTheQueue, ARowThatWasCutWhileItPlayedComesBackAsWhatBecameOfIt) {
  Enqueue({ToMref(1)});
  Load(Deck::One, 1);
  Decks().StartDeck(Deck::One);
  loop_.RunFor(1s);
  Queue().Click(1);
  Queue().CutSelected();
  Decks().StopDeck(Deck::One);
  loop_.RunFor(1s);
  Queue().Undo();
  EXPECT_TRUE(Column(CommentColumn)[0].startsWith(u"Stopped"_s)) << Column(CommentColumn)[0].toStdString();
}

TEST_F(TheLastChangeOfTheQueue, WhatIsKeptFollowsTheCatalogue) {
  EnqueueAll();
  Clear();
  catalogue_.Rename(ToMref(2), u"Beta Two.mp3"_s);
  catalogue_.Change(ToMref(2), {.bpm = u"99"_s, .duration = 70});
  catalogue_.Remove(ToMref(1));
  Queue().Undo();
  EXPECT_EQ(Column(TrackColumn), (QStringList{u"Beta Two"_s, u"Gamma"_s}));
  EXPECT_EQ(Column(MrefColumn), (QStringList{u"1"_s, u"2"_s}));
  EXPECT_EQ(Column(BpmColumn)[0], u"99"_s);
  EXPECT_EQ(Queue().QueueTotalSeconds(), 70 + 90);
}

TEST_F(TheLastChangeOfTheQueue, ASortedListTakesItsRowsBackSorted) {
  EnqueueAll();
  Queue().SortBy(TrackColumn);
  Queue().Click(2);
  Queue().CutSelected();
  Queue().Undo();
  EXPECT_EQ(Column(TrackColumn), (QStringList{u"Alpha"_s, u"Beta"_s, u"Gamma"_s}));
  Queue().SortBy(TrackColumn);
  EXPECT_EQ(Tags(), (std::vector{1, 2, 3}));
}

TEST_F(TheLastChangeOfTheQueue, WaitsWhileTheDeskPlaysByItself) {
  EnqueueAll();
  Queue().Click(3);
  Queue().CutSelected();
  desk_->State().AutoPlayOn = true;
  EXPECT_FALSE(MayUndo());
  Queue().Undo();
  EXPECT_EQ(Queue().Count(), 2);
  desk_->State().AutoPlayOn = false;
  desk_->State().TransitionActive = true;
  EXPECT_FALSE(MayUndo());
  desk_->State().TransitionActive = false;
  EXPECT_TRUE(MayUndo());
}

TEST_F(TheLastChangeOfTheQueue, LinesOfAGroupHaveTheNumbersOfTodayAndCanBecomeOthers) {
  const auto line = [](int track) { return u"1,00:00:01,%1,2,0,-1,1,-1,60"_s.arg(track); };
  QueueFill fill{.name = u"List"_s, .folder = {}, .group = true, .clearFirst = true, .rows = {}};
  for (const int track : {2, 3}) fill.rows.push_back(RowOf(track, line(7)));
  Queue().Take(fill);
  EXPECT_EQ(Queue().GroupLines(), (QStringList{line(2), line(3)}));
  const int revision = Queue().GroupRevision();
  catalogue_.Remove(ToMref(1));
  EXPECT_EQ(Queue().GroupLines(), (QStringList{line(1), line(2)}));
  EXPECT_EQ(Queue().GroupRevision(), revision);
  Queue().ChangeGroup({line(2), line(0), line(1)}, {ToMref(2), Mref::None, ToMref(1)});
  EXPECT_NE(Queue().GroupRevision(), revision);
  EXPECT_EQ(Queue().GroupTracks(), (std::vector{ToMref(2), Mref::None, ToMref(1)}));
  EXPECT_EQ(Queue().GroupLinesOf(1), QStringList{line(1)}) << "each is of its row";
  catalogue_.Remove(ToMref(1));
  EXPECT_EQ(Queue().GroupLines(), (QStringList{line(1), line(0), line(0)}));
}

TEST_F(TheLastChangeOfTheQueue, AGroupKeepsItsLinesAndMixesWithNothing) {
  Take({1, 2, 1}, true, true);
  EXPECT_EQ(Queue().Count(), 2) << "a track that is played twice has a row";
  EXPECT_EQ(Queue().GroupLines().size(), 3);
  Queue().Click(1);
  Queue().MoveSelectedDown();
  EXPECT_EQ(Queue().GroupLinesOf(2), (QStringList{u"line 0"_s, u"line 2"_s})) << "they go with their row";
  EXPECT_EQ(Queue().GroupLinesOf(1), QStringList{u"line 1"_s});
  Clear();
  Enqueue({ToMref(3)});
  EXPECT_FALSE(MayUndo());
  Queue().Click(1);
  Queue().CutSelected();
  Queue().Undo();
  EXPECT_EQ(Column(TrackColumn), QStringList{u"Gamma"_s});
  EXPECT_FALSE(Queue().GroupQueueFlag());
}

TEST_F(TheLastChangeOfTheQueue, AutomaticPlayGoesOnWithAPlaylistThatTakesTheQueuesPlace) {
  EnqueueAll();
  Queue().Click(1);
  desk_->Automatic().ToggleAutoPlay();
  loop_.RunFor(10s);
  ASSERT_TRUE(desk_->State().AutoPlayOn);
  Take({2, 3}, true);
  loop_.RunFor(120s);
  EXPECT_TRUE(desk_->Plays()) << "the air goes on";
  EXPECT_FALSE(Column(CommentColumn).join(u' ').isEmpty());
}

}  // namespace
}  // namespace kelvo::testing
