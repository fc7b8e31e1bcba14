// Tracks are renamed and deleted while the desk holds them: the joined desk in simulated time.

#include "console/DeskFixture.h"

#include <QFile>

namespace kelvo {
namespace {

using namespace testing;
using ::testing::ElementsAre;

class CatalogueFeedOnDesk : public DeskTest {
 protected:
  /// As the database does it: the music file and its info file first, then the catalogue.
  void Rename(Mref track, const QString& name) {
    const QString path = catalogue_.TrackPaths(track);
    const QString info = TrackInfoPath(database_.paths, catalogue_.TrackNames[track]);
    const QString newPath = database_.paths(Paths::Music) + u'/' + name + u".mp3"_s;
    audio_.SetDuration(newPath, 60);
    ASSERT_TRUE(QFile::rename(path, newPath));
    ASSERT_TRUE(QFile::rename(info, TrackInfoPath(database_.paths, name)));
    catalogue_.Rename(track, name + u".mp3"_s);
  }
  void Remove(Mref track) {
    ASSERT_TRUE(QFile::remove(catalogue_.TrackPaths(track)));
    ASSERT_TRUE(QFile::remove(TrackInfoPath(database_.paths, catalogue_.TrackNames[track])));
    catalogue_.Remove(track);
  }
  void AddTracks(int count) {
    for (int number = 1; number <= count; ++number) AddTrack(u"track %1"_s.arg(number), 60, 60);
  }
  [[nodiscard]] std::vector<int> TracksInQueue() {
    std::vector<int> tracks;
    for (int index = 1; index <= Queue().Count(); ++index) tracks.push_back(ToInt(Queue().Row(index).track));
    return tracks;
  }
};

TEST_F(CatalogueFeedOnDesk, AnInfoFileThatIsSavedWhileItsTrackIsLoadedCounts) {
  AddTracks(2);
  Open();
  EnqueueAll();
  TrackInfo info(TextFile::FromBytes(InfoBytes("44")));
  info.Set(InfoFields::FadePosition, {17, 18});
  info.SetComments(u"Saved meanwhile"_s);
  audio_.openTime = 5s;
  Queue().Click(1);
  Decks().LoadCommand(Deck::One);
  loop_.RunFor(1s);
  ASSERT_TRUE(Record(Deck::One).Loading);
  catalogue_.TakeInfo(ToMref(1), info);
  loop_.RunFor(10s);
  EXPECT_EQ(Record(Deck::One).Play.FadePosition, (FadePair{17, 18}));
  EXPECT_EQ(Record(Deck::One).Duration, 44);
  EXPECT_TRUE(Record(Deck::One).TrackInfoText.contains(u"Saved meanwhile"_s));
  EXPECT_EQ(Queue().QueueTotalSeconds(), 104) << "the queue counts the new length";

  // On air the words of automatic play stay, and what is left follows the new length.
  Decks().ManualStart(Deck::One);
  Decks().SetInfo(Deck::One, u"Custom - Track Start/Fade:"_s);
  loop_.RunFor(4s);
  info.Set(InfoFields::DurationSeconds, 30);
  catalogue_.TakeInfo(ToMref(1), info);
  EXPECT_EQ(Record(Deck::One).RemainSeconds, 26);
  EXPECT_EQ(Record(Deck::One).Info, u"Custom - Track Start/Fade:"_s);
  info.Set(InfoFields::DurationSeconds, std::nullopt);
  catalogue_.TakeInfo(ToMref(1), info);
  EXPECT_EQ(Record(Deck::One).Duration, 60) << "where none is stored, the player's";
}

TEST_F(CatalogueFeedOnDesk, ATrackThatIsRenamedOnAirStaysTheSameTrack) {
  AddTrack(u"alpha"_s, 40, 60);
  AddTrack(u"beta"_s, 60, 60);
  Open();
  EnqueueAll();
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(10s);
  Rename(ToMref(1), u"omega"_s);
  const QString path = database_.paths(Paths::Music) + u"/omega.mp3"_s;
  EXPECT_EQ(Record(Deck::One).Title, u"Omega"_s);
  EXPECT_EQ(Record(Deck::One).FilePath, path);
  EXPECT_EQ(Queue().Row(1).Text(TrackColumn), u"Omega"_s);
  EXPECT_EQ(Queue().Row(1).Text(PathColumn), path);
  EXPECT_EQ(desk_->Session().Events().front().Description, u"omega"_s);
  Queue().Click(1);
  Decks().LoadCommand(Deck::Two);
  EXPECT_TRUE(Panel().Question().text.startsWith(u"TRACK ALREADY LOADED"_s));

  loop_.RunFor(60s);
  EXPECT_TRUE(Queue().Row(1).Text(CommentColumn).startsWith(u"Played"_s));
  EXPECT_TRUE(database_.Info(u"omega"_s).contains("\r\n60\r\n")) << "its true length, in its own info file";
  EXPECT_FALSE(database_.Holds(Paths::Info, u"alpha.kif"_s));
}

TEST_F(CatalogueFeedOnDesk, ALoadThatIsUnderWayOrAskedAboutFindsTheFileUnderItsNewName) {
  AddThreeTracks();
  Open();
  EnqueueAll();
  Queue().Click(1);
  Decks().LoadCommand(Deck::One);
  ASSERT_TRUE(Record(Deck::One).Loading);
  Rename(ToMref(1), u"omega"_s);
  loop_.RunFor(1s);
  ASSERT_EQ(Record(Deck::One).State, DeckState::Loaded);
  EXPECT_EQ(Record(Deck::One).Title, u"Omega"_s);
  EXPECT_EQ(Player(Deck::One).FileName(), database_.paths(Paths::Music) + u"/omega.mp3"_s);

  Decks().ManualStart(Deck::One);
  loop_.RunFor(1s);
  Queue().Click(2);
  Decks().LoadCommand(Deck::One);
  ASSERT_TRUE(Panel().Visible());
  Rename(ToMref(2), u"zeta"_s);
  Remove(ToMref(1));
  Panel().Confirm();
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Title, u"Zeta"_s);
  EXPECT_EQ(Record(Deck::One).CatalogueIndex, ToMref(1));
}

TEST_F(CatalogueFeedOnDesk, ARemovalInFrontRenumbersQueueDecksAndSession) {
  AddThreeTracks();
  Open();
  EnqueueAll();
  Load(Deck::One, 3);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(5s);
  Queue().Click(2);
  Remove(ToMref(1));
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Beta"_s, u"Gamma"_s)) << "what is gone can't be played";
  EXPECT_THAT(TracksInQueue(), ElementsAre(1, 2));
  EXPECT_THAT(Tags(), ElementsAre(1, 2));
  EXPECT_EQ(Queue().Selected(), 1) << "the row that was clicked";
  EXPECT_EQ(Queue().QueueTotalSeconds(), 60 + 90);
  EXPECT_EQ(Record(Deck::One).CatalogueIndex, ToMref(2));
  EXPECT_EQ(desk_->Session().Events().front().Track, ToMref(2));
  Decks().StopByHand(Deck::One);
  EXPECT_TRUE(Queue().Row(2).Text(CommentColumn).startsWith(u"Stopped"_s));
  Enqueue({ToMref(2)});
  EXPECT_EQ(Queue().Count(), 2) << "it is in the queue already";
}

TEST_F(CatalogueFeedOnDesk, ATrackRemovedOnAirPlaysToItsEndAndItsRowTellsSo) {
  AddThreeTracks();
  Open();
  EnqueueAll();
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(5s);
  Remove(ToMref(1));
  EXPECT_EQ(Record(Deck::One).CatalogueIndex, Mref::None);
  EXPECT_THAT(TracksInQueue(), ElementsAre(0, 1, 2));
  loop_.RunFor(60s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Done);
  EXPECT_THAT(Column(CommentColumn), ElementsAre(u"Played- 9:01"_s, u"Play Me"_s, u"Play Me"_s));
  EXPECT_TRUE(prompter_.asked.empty());
}

TEST_F(CatalogueFeedOnDesk, AutomaticPlayGoesOnWhenWaitingTracksAreRemovedAndRenamed) {
  AddTracks(6);
  Open();
  EnqueueAll();
  Queue().Click(1);
  desk_->Automatic().ToggleAutoPlay();
  ASSERT_TRUE(loop_.RunUntil([this] { return Record(Deck::Two).State == DeckState::Loaded; }, 60s));
  ASSERT_EQ(Record(Deck::One).Title, u"Track 1"_s);
  ASSERT_EQ(Record(Deck::Two).Title, u"Track 2"_s);
  // The one that waits in the deck, and one behind it.
  Remove(ToMref(2));
  Remove(ToMref(3));
  Rename(ToMref(2), u"third"_s);
  QStringList heard;
  const auto listen = [&] {
    for (const Deck deck : kDecks) {
      const DeckRecord& record = Record(deck);
      if (record.State == DeckState::Playing && !heard.contains(record.Title)) heard.append(record.Title);
    }
  };
  const Timer timer = loop_.Every(1s, listen);
  loop_.RunFor(250s);
  EXPECT_THAT(heard, ElementsAre(u"Track 1"_s, u"Track 2"_s, u"Third"_s, u"Track 5"_s, u"Track 6"_s));
  EXPECT_TRUE(desk_->State().AutoPlayOn);
}

TEST_F(CatalogueFeedOnDesk, TracksThatAreBeingAddedAreTheOnesThatWereChosen) {
  AddTracks(4);
  Open();
  Enqueue({ToMref(1)});
  Queue().SetGroup({u"line"_s});
  prompter_.answers = {Answer::Yes};
  prompter_.meanwhile = [this](const Prompt&) {
    Remove(ToMref(3));
    Remove(ToMref(1));
  };
  Enqueue({ToMref(2), ToMref(3), ToMref(4)});
  EXPECT_EQ(desk_->StatusLine(), u"Total Tracks :2"_s);
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Track 2"_s, u"Track 4"_s));
  EXPECT_THAT(TracksInQueue(), ElementsAre(1, 2));
}

TEST_F(CatalogueFeedOnDesk, AnotherLoadOfTheCatalogueFindsWhatTheDeskHolds) {
  AddThreeTracks();
  Open();
  EnqueueAll();
  Load(Deck::One, 3);
  database_.AddTrack(u"aaa"_s);
  ASSERT_TRUE(QFile::remove(catalogue_.TrackPaths(ToMref(2))));
  CatalogueLoader loader(loop_, audio_, catalogue_, database_.paths, TrackDefaults{}, u"Kelvo"_s);
  Job<LoadOutcome> load = loader.Load();
  ASSERT_TRUE(loop_.RunUntil([&load] { return !load.Running(); }));
  EXPECT_THAT(TracksInQueue(), ElementsAre(2, 0, 3));
  EXPECT_EQ(Record(Deck::One).CatalogueIndex, ToMref(3));
  EXPECT_EQ(desk_->Session().Events().front().Track, ToMref(3));
}

TEST_F(CatalogueFeedOnDesk, WhatARowShowsOfItsTrackFollows) {
  AddThreeTracks();
  Open();
  EnqueueAll();
  TrackEdit edit;
  edit.genres = u"~ALL CATEGORIES,Polka"_s;
  edit.bpm = u"99"_s;
  edit.duration = 75;
  catalogue_.Change(ToMref(2), edit);
  EXPECT_EQ(Queue().Row(2).Text(GenreColumn), u"Polka"_s);
  EXPECT_EQ(Queue().Row(2).Text(BpmColumn), u"99"_s);
  EXPECT_EQ(Queue().QueueTotalSeconds(), 60 + 75 + 90);
  Queue().Click(2);
  Queue().CutSelected();
  EXPECT_EQ(Queue().QueueTotalSeconds(), 60 + 90);
}

}  // namespace
}  // namespace kelvo
