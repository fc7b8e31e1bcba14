// What would leave the desk silent: files, disks and decks that give no sound, and a queue that runs out.
#include "console/AutoPlayFixture.h"

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using testing::kStrong;

using AutoPlaySilenceTest = testing::AutoPlayFixture;

TEST_F(AutoPlaySilenceTest, BadFilesArePassedOverAtOnceAndTold) {
  MakeQueue(7, 60, kStrong);
  QFile::remove(Path(2));
  desk_->audio.SetDuration(Path(3), -1);
  TrackEdit edit;
  edit.duration = 0;
  desk_->catalogue.Change(desk_->queue.Row(4).track, edit);
  desk_->audio.SetDuration(Path(4), 0);
  desk_->audio.SetSilent(Path(5));
  On();
  desk_->Run(3);
  EXPECT_EQ(Record(Deck::Two).Title, u"F"_s);
  EXPECT_EQ(Play().SkippedCount(), 4);
  EXPECT_EQ(Play().LastSkipped(), u"E : No Sound In It"_s);
  EXPECT_TRUE(Play().StatusText().startsWith(u"Skipped : "_s));
  desk_->Run(250);
  EXPECT_TRUE(Heard().startsWith(u"AFGA"_s)) << Heard().toStdString();
  EXPECT_EQ(Play().SkippedCount(), 4) << "each is told once an hour";
  EXPECT_FALSE(Play().NothingPlayable());
}

TEST_F(AutoPlaySilenceTest, ASilentFileThatWasLoadedForARunThatEndedIsPassedOver) {
  MakeQueue(4, 60, kStrong);
  desk_->audio.SetSilent(Path(2));
  Play().ToggleAutoPlay();
  desk_->Run(0.03);
  ASSERT_TRUE(Record(Deck::Two).Loading);
  Play().ToggleAutoPlay();
  desk_->Run(1);
  ASSERT_EQ(Record(Deck::Two).Title, u"B"_s);
  On();
  desk_->Run(5);
  EXPECT_EQ(Record(Deck::Two).Title, u"C"_s);
}

TEST_F(AutoPlaySilenceTest, WhatWasPassedOverIsShownForAWhileThoughNothingElseIsToBeShown) {
  MakeQueue(4, 120, kStrong);
  On();
  desk_->Run(100);
  QFile::remove(Path(3));
  desk_->audio.openTime = std::chrono::seconds(60);
  desk_->Run(22);
  ASSERT_TRUE(Record(Deck::One).Loading);
  EXPECT_TRUE(Play().StatusText().startsWith(u"Skipped : C"_s)) << Play().StatusText().toStdString();
  desk_->Run(6);
  EXPECT_EQ(Play().StatusText(), QString());
}

TEST_F(AutoPlaySilenceTest, ANewRunTriesWhatFailedInTheLast) {
  MakeQueue(3, 60, kStrong);
  desk_->audio.SetDuration(Path(1), -1);
  On();
  ASSERT_EQ(Record(Deck::One).Title, u"B"_s);
  Play().ToggleAutoPlay();
  desk_->decks.StopDeck(Deck::One);
  desk_->decks.StopDeck(Deck::Two);
  desk_->audio.SetDuration(Path(1), 60);
  desk_->queue.Select(1);
  On();
  EXPECT_EQ(Record(Deck::One).Title, u"A"_s);
}

TEST_F(AutoPlaySilenceTest, WhereNothingCanBePlayedItSaysSoAndGoesOnWhenSomethingCan) {
  MakeQueue(3, 20, kStrong);
  for (int row = 1; row <= 3; ++row) desk_->audio.SetDuration(Path(row), -1);
  On();
  desk_->Run(30);
  EXPECT_TRUE(Play().NothingPlayable());
  EXPECT_EQ(Play().StatusText(), u"Nothing In The Play Queue Can Be Played !"_s);
  EXPECT_TRUE(desk_->state.AutoPlayOn);
  desk_->audio.SetDuration(Path(2), 20);
  desk_->Run(8);
  EXPECT_FALSE(Play().NothingPlayable());
  EXPECT_TRUE(Sounds());
  desk_->Run(100);
  EXPECT_TRUE(Heard().startsWith(u"BBB"_s)) << "one good track is better than silence";
}

TEST_F(AutoPlaySilenceTest, AStreamThatBreaksAStopByHandAndAHangingLoadGoOnWithTheNextTrack) {
  MakeQueue(5, 60, kStrong);
  desk_->audio.SetDuration(Path(1), 10);
  On();
  desk_->Run(12.5);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Playing);
  EXPECT_EQ(Play().LastSkipped(), u"A : It Ended At 00:10"_s);
  desk_->Run(10);
  desk_->decks.StopDeck(Deck::Two);
  desk_->Run(2);
  EXPECT_EQ(Record(Deck::One).Title, u"C"_s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Playing);
  desk_->decks.StopDeck(Deck::One);
  desk_->audio.openTime = std::chrono::hours(1);
  desk_->Run(5);
  desk_->audio.openTime = std::chrono::milliseconds(20);
  desk_->Run(15);
  EXPECT_TRUE(Sounds());
}

TEST_F(AutoPlaySilenceTest, AQueueThatShrinksUnderIt) {
  MakeQueue(3, 30, kStrong);
  On();
  desk_->Run(5);
  for (const int row : {3, 2}) {
    QFile::remove(Path(row));
    desk_->queue.Select(row);
    desk_->queue.EditSelected();
    desk_->Run(1);
  }
  ASSERT_EQ(desk_->queue.Count(), 1);
  desk_->Run(300);
  EXPECT_TRUE(Sounds());
  EXPECT_TRUE(Heard().endsWith(u"AAA"_s)) << Heard().toStdString();
}

}  // namespace
}  // namespace kelvo
