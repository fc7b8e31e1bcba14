// Disks that do not answer: a disk that hangs holds up only those who wait for it.

#include "console/DeskFixture.h"

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::Contains;
using testing::DeskTest;
using ::testing::HasSubstr;

class SilentDiskTest : public DeskTest {
 protected:
  /// Tracks "a", "b", ... of `seconds`, all in the queue.
  void OpenDesk(int tracks, double seconds = 30) {
    for (int each = 0; each < tracks; ++each) AddTrack(QString(QChar(u'a' + each)), seconds, seconds);
    Open();
    EnqueueAll();
    Queue().Click(1);
  }
  [[nodiscard]] QString Path(int row) { return Queue().Row(row).Text(PathColumn); }
  void Start() { desk_->Automatic().ToggleAutoPlay(); }
  [[nodiscard]] bool Sounds() {
    return std::any_of(kDecks.begin(), kDecks.end(), [this](Deck deck) {
      return Player(deck).State() == PlayState::Playing && Decks().Moves(deck) &&
             !desk_->Fades().FadedOut(deck);
    });
  }
  /// Seconds of the longest silence in `span`.
  double LongestSilence(Nanoseconds span) {
    double longest = 0;
    double present = 0;
    for (Nanoseconds passed{0}; passed < span; passed += 50ms) {
      loop_.RunFor(50ms);
      present = Sounds() ? 0 : present + 0.05;
      longest = std::max(longest, present);
    }
    return longest;
  }
  [[nodiscard]] bool FirstSoundWithin(Nanoseconds limit) {
    return loop_.RunUntil([this] { return Sounds(); }, limit);
  }
  /// Rows whose comment tells that they were heard.
  [[nodiscard]] int Heard() {
    const QStringList comments = Column(CommentColumn);
    return static_cast<int>(
        std::count_if(comments.begin(), comments.end(), [](const QString& each) { return !each.isEmpty(); }));
  }
  [[nodiscard]] const DeskStatus& Status() { return desk_->Status().Status(); }
};

TEST_F(SilentDiskTest, OneTrackOnADiskThatHangsCostsNoSilenceAndNoOtherTrackItsPlace) {
  OpenDesk(8);
  const QString hung = Path(3);
  loop_.HangDisk(hung);
  Start();
  ASSERT_TRUE(FirstSoundWithin(2s));
  EXPECT_LT(LongestSilence(5min), 0.5);
  EXPECT_EQ(Heard(), 7);
  EXPECT_THAT(Status().silentDisks, Contains(hung));
  EXPECT_FALSE(Log().contains(u"Bad File"_s)) << Log().toStdString();

  loop_.AnswerAgain(hung);
  loop_.RunFor(1s);
  EXPECT_TRUE(Status().silentDisks.isEmpty());
  EXPECT_LT(LongestSilence(5min), 0.5);
  EXPECT_EQ(Heard(), 8) << "its turn comes again";
}

TEST_F(SilentDiskTest, ManyRowsOnADiskThatHangsLeaveTheGoodOnesToPlay) {
  OpenDesk(20);
  for (int row = 1; row <= 18; ++row) loop_.HangDisk(Path(row));
  Start();
  ASSERT_TRUE(loop_.RunUntil([this] { return Sounds(); }, 40s)) << "each of these is a disk of its own";
  EXPECT_LT(LongestSilence(5min), 0.5);
  EXPECT_EQ(Heard(), 2);
}

TEST_F(SilentDiskTest, ADiskThatIsKnownToHangIsNotAskedForEachOfItsRows) {
  OpenDesk(20);
  // All but the last two are in one folder that hangs.
  const QString folder = database_.paths(Paths::Music);
  for (const int row : {19, 20}) {
    const QString good = database_.tree.Path(u"good%1.mp3"_s.arg(row));
    database_.tree.Write(u"good%1.mp3"_s.arg(row), "sound");
    audio_.SetDuration(good, 30);
    QueueEntry entry;
    entry.title = u"Good %1"_s.arg(row);
    entry.path = good;
    Queue().AppendRow(entry, 30);
  }
  loop_.HangDisk(folder);
  Start();
  EXPECT_TRUE(FirstSoundWithin(5s));
}

TEST_F(SilentDiskTest, DeckOneStartsAsSoonAsItIsReadyWhateverTheDiskOfDeckTwoDoes) {
  OpenDesk(5);
  loop_.HangDisk(Path(2));
  Start();
  EXPECT_TRUE(FirstSoundWithin(1s));
  EXPECT_LT(LongestSilence(3min), 0.5);
}

TEST_F(SilentDiskTest, AStartWhoseFirstDiskHangsGoesOnWithTheNextRow) {
  OpenDesk(5);
  loop_.HangDisk(Path(1));
  Start();
  EXPECT_TRUE(FirstSoundWithin(3s));
  EXPECT_LT(LongestSilence(3min), 0.5);
}

TEST_F(SilentDiskTest, ALoadByHandThatHangsIsToldAndTheOtherDeckAndTheQueueGoOn) {
  OpenDesk(4);
  const QString hung = Path(1);
  const Mref spare = catalogue_.Append([] {
    CatalogueRow row;
    row.name = u"spare"_s;
    row.extension = u".mp3"_s;
    return row;
  }());
  database_.Add(Paths::Music, u"spare.mp3"_s);
  loop_.HangDisk(hung);
  Decks().LoadCommand(Deck::One);
  loop_.RunFor(100ms);
  Load(Deck::Two, 2);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Loaded);
  Enqueue({spare});
  EXPECT_EQ(Queue().Count(), 5);
  loop_.RunFor(3s);
  EXPECT_THAT(Status().silentDisks, Contains(hung)) << "named while it is waited for";
  EXPECT_TRUE(Record(Deck::One).Loading);
  loop_.RunFor(7s);
  EXPECT_FALSE(Record(Deck::One).Loading);
  EXPECT_EQ(Record(Deck::One).Info, u"Disk Does Not Answer : "_s + hung);
  EXPECT_TRUE(Log().contains(u"was given up"_s));
  Load(Deck::One, 3);
  EXPECT_EQ(Record(Deck::One).Title, u"C"_s);
}

TEST_F(SilentDiskTest, TracksWhoseDiskHangsAreNotAddedAndThatIsSaid) {
  for (const QString& name : {u"a"_s, u"b"_s, u"c"_s}) AddTrack(name, 30, 30);
  Open();
  const QString hung = catalogue_.TrackPaths(ToMref(2));
  loop_.HangDisk(hung);
  Job<> adding = Queue().AddTracks({ToMref(1), ToMref(2), ToMref(3)});
  ASSERT_TRUE(loop_.RunUntil([&adding] { return !adding.Running(); }, 5s));
  EXPECT_EQ(Queue().Count(), 2);
  EXPECT_EQ(desk_->StatusLine(), u"Tracks Not Added, Their Disk Does Not Answer : 1"_s);
}

TEST_F(SilentDiskTest, ALongFileOnASlowDiskStillLoads) {
  OpenDesk(4, 400);
  audio_.openTime = 90s;
  Decks().LoadCommand(Deck::One);
  loop_.RunFor(91s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Loaded);
  EXPECT_TRUE(Status().silentDisks.isEmpty());

  // In automatic play too, while there is time for it.
  audio_.openTime = 20ms;
  Start();
  ASSERT_TRUE(FirstSoundWithin(2s));
  audio_.openTime = 90s;
  EXPECT_LT(LongestSilence(20min), 0.5);
  EXPECT_GE(Heard(), 3);
}

TEST_F(SilentDiskTest, NothingButSlowTracksIsStillBetterThanNothing) {
  OpenDesk(3, 60);
  audio_.openTime = 8s;
  Start();
  EXPECT_TRUE(FirstSoundWithin(30s));
}

TEST_F(SilentDiskTest, WhereEveryFileIsSlowTheRowsAreNotGivenUpInTurn) {
  OpenDesk(12, 60);
  audio_.openTime = 3s;
  Start();
  EXPECT_TRUE(FirstSoundWithin(5s)) << "the second row has the time that the first had not";
}

TEST_F(SilentDiskTest, AnOpenThatStopsHalfWayIsGivenUpAndItsDiskNamed) {
  OpenDesk(3);
  const QString path = Path(1);
  audio_.openTime = 5s;
  Decks().LoadCommand(Deck::One);
  loop_.RunFor(2s);
  loop_.HangDisk(path);
  loop_.RunFor(5s);
  EXPECT_THAT(Status().silentDisks, Contains(path));
  loop_.RunFor(7s);
  EXPECT_FALSE(Record(Deck::One).Loading);
  EXPECT_EQ(Record(Deck::One).Info, u"Disk Does Not Answer : "_s + path);
}

TEST_F(SilentDiskTest, ATrackWhoseInfoFileIsOutOfReachPlaysWithTheDefaults) {
  OpenDesk(3);
  loop_.HangDisk(database_.paths(Paths::Info));
  Decks().LoadCommand(Deck::One);
  loop_.RunFor(11s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Loaded);
  EXPECT_EQ(Record(Deck::One).TrackInfoText, u"Undefined Media File"_s);
  Load(Deck::Two, 2);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Loaded) << "not asked a second time";
}

TEST_F(SilentDiskTest, ADiskThatDiesUnderTheTrackOnAirCostsNoSilence) {
  OpenDesk(6, 60);
  Start();
  ASSERT_TRUE(FirstSoundWithin(2s));
  loop_.RunFor(20s);
  const QString dead = Record(Deck::One).FilePath;
  loop_.HangDisk(dead);
  Disk(Deck::One).LoseDisk(loop_, 4s);
  EXPECT_LT(LongestSilence(3min), 0.5);
  EXPECT_THAT(Status().silentDisks, Contains(dead));
}

// ---- the alarm

TEST_F(SilentDiskTest, SilenceThatNobodyPlannedIsToldAlsoInManualPlay) {
  OpenDesk(3, 20);
  loop_.RunFor(10s);
  EXPECT_FALSE(Status().airSilent) << "nothing was begun yet";
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(20s);
  EXPECT_FALSE(Status().airSilent);
  loop_.RunFor(1s);
  EXPECT_FALSE(Status().airSilent) << "two seconds are bearable";
  loop_.RunFor(3s);
  EXPECT_TRUE(Status().airSilent) << "it ran out and nothing follows";
  Decks().ManualStart(Deck::One);
  loop_.RunFor(2s);
  EXPECT_FALSE(Status().airSilent);

  Decks().StopByHand(Deck::One);
  loop_.RunFor(10s);
  EXPECT_FALSE(Status().airSilent) << "the operator wants it";

  Decks().ManualStart(Deck::One);
  loop_.RunFor(3s);
  Disk(Deck::One).StandStill();
  loop_.RunFor(4s);
  EXPECT_TRUE(Status().airSilent) << "it says that it plays, and stands still";
  desk_->Status().AcceptSilence();
  EXPECT_FALSE(Status().airSilent);
}

TEST_F(SilentDiskTest, ALostDeviceIsSilenceAndAPauseIsNot) {
  OpenDesk(5, 20);
  Start();
  loop_.RunFor(5s);
  audio_.SetDefaultOutputStatus({OutputStatus::Kind::OnSilentClock, u"Main"_s});
  loop_.RunFor(4s);
  EXPECT_TRUE(Status().airSilent);
  audio_.SetDefaultOutputStatus({OutputStatus::Kind::OnAir, u"Main"_s});
  loop_.RunFor(1s);
  EXPECT_FALSE(Status().airSilent);

  desk_->Automatic().TogglePauseAtEnd();
  loop_.RunFor(60s);
  EXPECT_FALSE(Sounds());
  EXPECT_FALSE(Status().airSilent);
  desk_->Automatic().TogglePauseAtEnd();
  loop_.RunFor(5s);
  EXPECT_TRUE(Sounds());
}

TEST_F(SilentDiskTest, WhenNothingCanBePlayedTheAirIsSaidToBeSilent) {
  OpenDesk(4, 20);
  loop_.HangDisk(database_.paths(Paths::Music));
  Start();
  loop_.RunFor(30s);
  EXPECT_TRUE(Status().airSilent);
  loop_.AnswerAgain(database_.paths(Paths::Music));
  loop_.RunFor(15s);
  EXPECT_TRUE(Sounds());
  EXPECT_FALSE(Status().airSilent);

  // What the decks hold is repeated as long as nothing else can be had.
  loop_.HangDisk(database_.paths(Paths::Music));
  EXPECT_LT(LongestSilence(5min), 0.5);
}

}  // namespace
}  // namespace kelvo
