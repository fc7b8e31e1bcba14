#include "console/DeskFixture.h"

#include <QFile>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::DeskTest;
using ::testing::ElementsAre;
using testing::InfoBytes;

class DeckLoadTest : public DeskTest {
 protected:
  void OpenDesk() {
    AddThreeTracks();
    Open();
    EnqueueAll();
  }
  /// Loads and starts Deck 1 with the queue's first row.
  void PlayDeckOne() {
    Load(Deck::One, 1);
    Decks().ManualStart(Deck::One);
    loop_.RunFor(5s);
  }
};

TEST_F(DeckLoadTest, ALoadedTrackShowsAllThatIsKnownOfIt) {
  const QString path = database_.AddTrack(
      u"amber - waterline"_s,
      InfoBytes("100").replace("Rock,Pop", "One,Two,Three,Four,Five").replace("Second", "\r\nSecond"));
  audio_.SetDuration(path, 99);
  Open();
  EnqueueAll();
  Load(Deck::One, 1);
  const DeckRecord& record = Record(Deck::One);
  EXPECT_EQ(record.State, DeckState::Loaded);
  EXPECT_EQ(record.Title, u"Amber - Waterline"_s);
  EXPECT_EQ(record.Duration, 100) << "the stored duration wins";
  EXPECT_EQ(record.RemainSeconds, 100);
  EXPECT_EQ(record.ProgressMaximum(), 101);
  EXPECT_EQ(record.CatalogueIndex, ToMref(1));
  EXPECT_EQ(record.FilePath, path);
  EXPECT_EQ(record.TrackInfoText,
            u"Date : 1999-Dec   Hi Pos : 7   BPM : 120   Dur : 01:40\r\nGenres  One: Two: Three: Four\r\n"
            "Artists   The Band\r\nAlbums  None\r\nFirst comment\r\nSecond comment\r\n"_s);
  EXPECT_EQ(record.Info, u"Starts: Soft : Ends: Strong"_s);
  EXPECT_EQ(
      record.Play,
      (TrackPlaySettings{{true, TransitionKind::PartFade, TransitionKind::Pan}, {10, 5}, {20, 30}, 0, 1}));
  EXPECT_EQ(Player(Deck::One).FileName(), path);
  EXPECT_EQ(Player(Deck::One).State(), PlayState::Stopped);
  EXPECT_THAT(SessionCodes(), ElementsAre(1));
  EXPECT_EQ(Queue().Count(), 1) << "the row stays";
}

TEST_F(DeckLoadTest, WithoutAStoredDurationThePlayersIsTaken) {
  AddTrack(u"zero"_s, 0, 42.5);
  AddTrack(u"unknown"_s, -1, 43.5);
  Open();
  EnqueueAll();
  Load(Deck::One, 2);
  Load(Deck::Two, 1);
  EXPECT_EQ(Record(Deck::One).Duration, 42.5);
  EXPECT_EQ(Record(Deck::Two).Duration, 43.5);
}

TEST_F(DeckLoadTest, ATrackWithoutAnInfoFileIsPlayedWithTheDefaults) {
  Set(u"DefaultFade"_s, u"1"_s);
  Set(u"DefaultDelta"_s, u"6"_s);
  OpenDesk();
  QFile::remove(database_.paths(Paths::Info) + u"/alpha.kif"_s);
  Load(Deck::One, 1);
  const DeckRecord& record = Record(Deck::One);
  EXPECT_EQ(record.TrackInfoText, u"Undefined Media File"_s);
  EXPECT_EQ(record.Info, u"Default - Track Start:"_s);
  EXPECT_EQ(
      record.Play,
      (TrackPlaySettings{
          {true, TransitionKind::Dub, TransitionKind::Dub}, {6, std::nullopt}, {25, std::nullopt}, 1, 0}));
  EXPECT_TRUE(prompter_.asked.empty());

  // An info file that is there and can't be read is reported, and the show goes on.
  QFile::remove(database_.paths(Paths::Info) + u"/beta.kif"_s);
  database_.tree.MakeFolder(Paths::FolderName(Paths::Info) + u"/beta.kif"_s);
  Load(Deck::Two, 2);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Loaded);
  EXPECT_EQ(Record(Deck::Two).TrackInfoText, u"Undefined Media File"_s);
  ASSERT_EQ(prompter_.asked.size(), 1U);
  const QString words = prompter_.asked[0].text;
  EXPECT_TRUE(words.startsWith(u"What is known of Beta could not be read.\r\n"_s)) << words.toStdString();
  EXPECT_EQ(words.count(u"/beta.kif"_s), 1) << words.toStdString();
  EXPECT_FALSE(words.contains(u"loaddk"_s)) << "that is for the log";
  EXPECT_TRUE(Log().contains(u"ERROR "_s) && Log().contains(u" in  loaddk ("_s)) << Log().toStdString();
}

TEST_F(DeckLoadTest, ARequestStandsAboveTheTrackInABanner) {
  OpenDesk();
  Decks().SetInfoTextWidth(12);
  QueueEntry entry;
  entry.title = u"Wish"_s;
  entry.path = catalogue_.TrackPaths(ToMref(3));
  entry.track = ToMref(3);
  entry.requestText = u"Request From: Ann\r\nTo: Bob\r\nMessage: Hi"_s;
  Queue().AppendRow(entry, 0);
  Load(Deck::One, 4);
  EXPECT_TRUE(Record(Deck::One).TrackInfoText.startsWith(
      u"****REQUESTS****\r\nRequest From: Ann\r\nTo: Bob\r\nMessage: Hi\r\nDate : "_s))
      << Record(Deck::One).TrackInfoText.toStdString();
}

TEST_F(DeckLoadTest, TheTracksOwnFadeInSpeedGoesToTheSlider) {
  const auto load = [this](const QString& name, const char* mode, const char* position, const char* speed) {
    database_.AddTrack(name,
                       InfoBytes().replace("1,2,3", mode).replace("10,5", position).replace("20,30", speed));
  };
  load(u"a fades in"_s, "1,2,3", "10,5", "20,30");
  load(u"b dubs in"_s, "1,2,1", "10,5", "20,10");
  load(u"c too near"_s, "1,2,3", "10,3", "20,10");
  load(u"d one speed"_s, "1,2,3", "10,5", "10");
  load(u"e single position"_s, "2", "9", "20,45");
  Open();
  EnqueueAll();
  EXPECT_EQ(desk_->Fades().FadeSpeed(), 25);
  Load(Deck::One, 1);
  EXPECT_EQ(desk_->Fades().FadeSpeed(), 20);
  for (const int row : {2, 3, 4, 5}) Load(Deck::One, row);
  EXPECT_EQ(desk_->Fades().FadeSpeed(), 20);
}

TEST_F(DeckLoadTest, TheFadeInSpeedStaysWhenTheSettingIsOff) {
  Set(u"AfadeSet"_s, u"False"_s);
  OpenDesk();
  Load(Deck::One, 1);
  EXPECT_EQ(desk_->Fades().FadeSpeed(), 25);
}

TEST_F(DeckLoadTest, NothingIsLoadedWithoutASelectionOrOverTheSameTitle) {
  OpenDesk();
  Queue().Select(0);
  Decks().LoadCommand(Deck::One);
  EXPECT_FALSE(Record(Deck::One).Loading);
  Load(Deck::One, 1);
  QueueEntry twin = Queue().Row(1);
  twin.title = u"ALPHA"_s;
  Queue().AppendRow(twin, 0);
  Queue().Click(4);
  Decks().LoadCommand(Deck::One);
  EXPECT_FALSE(Record(Deck::One).Loading) << "another row of the same title";
  EXPECT_FALSE(Panel().Visible());
}

TEST_F(DeckLoadTest, ALiveDeckIsLoadedOnlyOnConfirmation) {
  OpenDesk();
  PlayDeckOne();
  Queue().Click(2);
  Decks().LoadCommand(Deck::One);
  ASSERT_TRUE(Panel().Visible());
  EXPECT_EQ(Panel().Question().text, u"DECK 1 IS PLAYING LIVE !\r\n"_s);
  EXPECT_EQ(Panel().Question().button, u"LOAD NEW TRACK"_s);
  loop_.RunFor(2900ms);
  EXPECT_TRUE(Panel().Visible());
  loop_.RunFor(200ms);
  EXPECT_FALSE(Panel().Visible()) << "it hides by itself after three seconds";
  Panel().Confirm();
  EXPECT_FALSE(Record(Deck::One).Loading) << "a panel that is gone confirms nothing";

  Decks().LoadCommand(Deck::One);
  Panel().Confirm();
  EXPECT_EQ(Player(Deck::One).State(), PlayState::Playing)
      << "the old track goes on until the new one is good";
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Title, u"Beta"_s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Loaded);
  EXPECT_EQ(Player(Deck::One).State(), PlayState::Stopped);
  EXPECT_TRUE(Queue().Row(1).Text(CommentColumn).startsWith(u"Faded- 9:00"_s));
  EXPECT_EQ(Queue().Row(1).status, RowStatus::Faded);
}

TEST_F(DeckLoadTest, ADeckThatPlaysUnheardAndAutomaticPlayLoadWithoutAsking) {
  OpenDesk();
  PlayDeckOne();
  Decks().SetLoss(Deck::One, 200);
  Load(Deck::One, 2);
  EXPECT_EQ(Record(Deck::One).Title, u"Beta"_s);
  Decks().SetLoss(Deck::One, 0);
  Decks().ManualStart(Deck::One);
  desk_->State().AutoPlayOn = true;
  int overrides = 0;
  Decks().CheckFadeOverride = [&overrides](Deck) { ++overrides; };
  const std::size_t records = SessionCodes().size();
  Queue().Click(3);
  const Job<DeckLoad> load = Decks().LoadDeck(Deck::One);
  EXPECT_TRUE(loop_.RunUntil([&load] { return !load.Running(); }, 30s));
  EXPECT_EQ(Record(Deck::One).Title, u"Gamma"_s);
  EXPECT_EQ(overrides, 0) << "only a track that it has looked at";
  Decks().TakeFadeIn(Deck::One);
  EXPECT_EQ(overrides, 1);
  Load(Deck::One, 1);
  EXPECT_EQ(overrides, 2) << "one that comes by hand at once";
  EXPECT_EQ(SessionCodes().size(), records) << "automatic play records no load";
}

TEST_F(DeckLoadTest, ATrackComesToBothDecksOnlyOnConfirmation) {
  OpenDesk();
  Load(Deck::Two, 1);
  Queue().Click(1);
  Decks().LoadCommand(Deck::One);
  ASSERT_TRUE(Panel().Visible());
  EXPECT_EQ(Panel().Question().text, u"TRACK ALREADY LOADED IN DECK 2 !\r\n"_s);
  EXPECT_EQ(Panel().Question().button, u"LOAD SAME TRACK"_s);
  Panel().Cancel();
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Empty);
  Decks().LoadCommand(Deck::One);
  Panel().Confirm();
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Title, u"Alpha"_s);
}

TEST_F(DeckLoadTest, ATrackOnItsWayIntoOneDeckComesToTheOtherOnlyOnConfirmation) {
  OpenDesk();
  Load(Deck::One, 2);
  Queue().Click(1);
  Decks().LoadCommand(Deck::One);
  Decks().LoadCommand(Deck::Two);
  ASSERT_TRUE(Panel().Visible());
  EXPECT_EQ(Panel().Question().text, u"TRACK ALREADY LOADED IN DECK 1 !\r\n"_s);
  Panel().Cancel();
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Title, u"Alpha"_s);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Empty);
  Load(Deck::Two, 2);
  EXPECT_EQ(Record(Deck::Two).Title, u"Beta"_s) << "what the first deck held before is free again";

  // A load that failed leaves nothing behind to ask about.
  QFile::remove(catalogue_.TrackPaths(ToMref(3)));
  Load(Deck::One, 3);
  Queue().Click(3);
  Decks().LoadCommand(Deck::Two);
  EXPECT_FALSE(Panel().Visible());
}

TEST_F(DeckLoadTest, ATransitionRefusesTheLoadAndTheNextLoadTakesTheWordAway) {
  OpenDesk();
  desk_->State().TransitionActive = true;
  desk_->State().CrossPan = -150;
  Queue().Click(1);
  Decks().LoadCommand(Deck::One);
  EXPECT_TRUE(Record(Deck::One).LoadFailed) << "within 100 of its rest";
  Decks().LoadCommand(Deck::Two);
  EXPECT_FALSE(Record(Deck::Two).LoadFailed);
  EXPECT_FALSE(Record(Deck::One).Loading || Record(Deck::Two).Loading);
  desk_->State().TransitionActive = false;
  Load(Deck::One, 1);
  EXPECT_FALSE(Record(Deck::One).LoadFailed);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Loaded);
}

TEST_F(DeckLoadTest, AFileThatIsGoneOrNoSoundLeavesTheDeckAsItWas) {
  OpenDesk();
  Load(Deck::One, 1);
  const QString gone = catalogue_.TrackPaths(ToMref(2));
  QFile::remove(gone);
  Load(Deck::One, 2);
  const QString broken = catalogue_.TrackPaths(ToMref(3));
  audio_.SetDuration(broken, -1);
  EXPECT_EQ(Record(Deck::One).Info, u"Bad File "_s + gone);
  Load(Deck::One, 3);
  EXPECT_EQ(Record(Deck::One).Info, u"Bad File "_s + broken);
  EXPECT_EQ(Record(Deck::One).Title, u"Alpha"_s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Loaded);
  EXPECT_EQ(Player(Deck::One).FileName(), catalogue_.TrackPaths(ToMref(1)));
  EXPECT_THAT(SessionCodes(), ElementsAre(1));
}

TEST_F(DeckLoadTest, TheConfirmedLoadIsOfTheRowThatWasAskedAbout) {
  OpenDesk();
  PlayDeckOne();
  Queue().Click(2);
  Decks().LoadCommand(Deck::One);
  ASSERT_TRUE(Panel().Visible());
  Queue().Click(3);
  Queue().MoveSelectedUp();
  Panel().Confirm();
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Title, u"Beta"_s);
}

TEST_F(DeckLoadTest, ALoadThatHangsIsGivenUpAfterTenSecondsAndDisturbsNothingLater) {
  OpenDesk();
  Load(Deck::Two, 3);
  Decks().ManualStart(Deck::Two);
  const QString hung = catalogue_.TrackPaths(ToMref(1));
  audio_.Hangs = [hung](const QString& path) { return path == hung; };
  Queue().Click(1);
  Decks().LoadCommand(Deck::One);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(9500ms);
  EXPECT_TRUE(Record(Deck::One).Loading);
  EXPECT_GT(Record(Deck::Two).Position, 9) << "the other deck plays on";
  loop_.RunFor(1s);
  EXPECT_FALSE(Record(Deck::One).Loading);
  EXPECT_EQ(Record(Deck::One).Info, u"Disk Does Not Answer : "_s + hung);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Empty);
  EXPECT_TRUE(Log().contains(u"was given up"_s));
  Load(Deck::One, 2);
  EXPECT_EQ(Record(Deck::One).Title, u"Beta"_s);
  audio_.Hangs = nullptr;
  loop_.RunFor(80s);
  EXPECT_EQ(Player(Deck::One).FileName(), catalogue_.TrackPaths(ToMref(2))) << "the late answer is not heard";
}

TEST_F(DeckLoadTest, WhatWasAskedForIsLoadedWhateverBecomesOfTheQueueMeanwhile) {
  OpenDesk();
  Queue().Click(2);
  Decks().LoadCommand(Deck::One);
  Queue().CutSelected();
  Queue().Click(2);
  Decks().LoadCommand(Deck::One);
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Title, u"Beta"_s) << "a deck at work takes no second load";
}

TEST_F(DeckLoadTest, ALoadThatIsOvertakenInItsPlayerLeavesTheRecord) {
  OpenDesk();
  Queue().Click(1);
  Decks().LoadCommand(Deck::One);
  loop_.RunFor(5ms);
  const Job<OpenResult> other = Player(Deck::One).Open(catalogue_.TrackPaths(ToMref(3)));
  loop_.RunFor(1s);
  EXPECT_FALSE(Record(Deck::One).Loading);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Empty);
}

TEST_F(DeckLoadTest, TheDeskMayGoWhileItLoadsAndWrites) {
  AddTrack(u"wrong"_s, 60, 40);
  Open();
  EnqueueAll();
  Load(Deck::Two, 1);
  Decks().ManualStart(Deck::Two);
  ASSERT_TRUE(loop_.RunUntil([this] { return Record(Deck::Two).PlayedOut; }));
  Queue().Click(1);
  const QueueEntry& row = Queue().Row(1);
  Decks().LoadTrack(Deck::One, {.row = row.id, .track = row.track, .path = row.path, .requestText = {}});
  ASSERT_TRUE(Record(Deck::One).Loading);
  desk_.reset();
  loop_.RunFor(1min);
  EXPECT_EQ(database_.Info(u"wrong"_s), InfoBytes("40")) << "what is to be written is";
}

TEST_F(DeckLoadTest, PreviewTakesARandomTrackAndLeavesTheQueueAlone) {
  OpenDesk();
  PlayDeckOne();
  desk_->State().PreviewOn = true;
  desk_->State().AutoPlayOn = true;
  Queue().Select(0);
  Decks().PickPreview = nullptr;
  const Job<DeckLoad> nothing = Decks().LoadDeck(Deck::One);
  EXPECT_FALSE(nothing.Running()) << "nobody picks";
  Decks().PickPreview = [] { return std::optional(ToMref(3)); };
  const Job<DeckLoad> load = Decks().LoadDeck(Deck::One);
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Title, u"Gamma"_s);
  EXPECT_TRUE(Queue().Row(1).Text(CommentColumn).startsWith(u"Now Playing"_s));
}

}  // namespace
}  // namespace kelvo
