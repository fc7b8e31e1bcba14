#include "console/DeskFixture.h"
#include "console/windows/QueueModel.h"

#include <QColor>
#include <QFile>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::DeskTest;
using ::testing::ElementsAre;

const QString kGroupQuestion =
    u"My MixClear Group Playlist \r\nYou Cant Add Std Tracks To A Group Playlist ! ?"_s;

class PlayQueueTest : public DeskTest {
 protected:
  void SetUp() override {
    AddThreeTracks();
    Open();
  }
  void AddRequest(Mref track) {
    QueueEntry entry;
    entry.title = u"Wish %1"_s.arg(ToInt(track));
    entry.track = track;
    entry.requestText = u"Request From: Ann"_s;
    entry.requests = 1;
    Queue().AppendRow(entry, 10);
  }
};

TEST_F(PlayQueueTest, AnAddedTrackBringsItsFactsAndItsWholeSeconds) {
  EXPECT_EQ(Queue().Name(), u"(No Name)"_s);
  Enqueue({ToMref(3), ToMref(1)});
  const QueueEntry& row = Queue().Row(1);
  QStringList words;
  for (int column = 0; column < QueueColumnCount; ++column)
    words.append(row.Text(static_cast<QueueColumn>(column)));
  EXPECT_THAT(words, ElementsAre(u"Gamma"_s, u"Play Me"_s, u"1999-Dec"_s, u"7"_s, u"120"_s, u""_s,
                                 catalogue_.TrackPaths(ToMref(3)), u""_s, u"3"_s, u"Rock"_s));
  EXPECT_EQ(row.status, RowStatus::Waiting);
  EXPECT_THAT(Tags(), ElementsAre(1, 2));
  EXPECT_EQ(Queue().QueueTotalSeconds(), 150);
  EXPECT_EQ(Queue().Selected(), 2) << "the new row is selected";
}

TEST_F(PlayQueueTest, ATrackStandsInTheQueueOnceAndOneWithoutAFileNotAtAll) {
  EnqueueAll();
  QFile::remove(catalogue_.TrackPaths(ToMref(2)));
  Queue().Click(2);
  Queue().CutSelected();
  Enqueue({ToMref(2), ToMref(1), ToMref(1)});
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Alpha"_s, u"Gamma"_s));
  EXPECT_EQ(Queue().Selected(), 1) << "the row that is there is selected";
  EXPECT_EQ(Queue().QueueTotalSeconds(), 150);
  EXPECT_TRUE(prompter_.asked.empty());
}

TEST_F(PlayQueueTest, AutomaticPlayKeepsItsSelectionWhenTracksAreAdded) {
  Enqueue({ToMref(1)});
  desk_->State().AutoPlayOn = true;
  Enqueue({ToMref(3)});
  EXPECT_EQ(Queue().Count(), 2);
  EXPECT_EQ(Queue().Selected(), 1);
  desk_->State().AutoPlayOn = false;
  Queue().SortBy(TrackColumn);
  Queue().Click(2);
  desk_->State().AutoPlayOn = true;
  Enqueue({ToMref(2)});
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Alpha"_s, u"Beta"_s, u"Gamma"_s));
  EXPECT_EQ(Queue().Selected(), 3) << "the new one has taken its place";
}

TEST_F(PlayQueueTest, TheRowThatWasAddedIsSelectedAlsoWhenItsTrackStandsHigherUp) {
  EnqueueAll();
  Finish(Queue().AddTracks({ToMref(3), ToMref(1)}, PlayQueue::Route::Search));
  EXPECT_EQ(Queue().Selected(), 5);
  Queue().SortBy(TrackColumn);
  Finish(Queue().AddTracks({ToMref(2), ToMref(1)}, PlayQueue::Route::Search));
  EXPECT_THAT(Column(TrackColumn),
              ElementsAre(u"Alpha"_s, u"Alpha"_s, u"Alpha"_s, u"Beta"_s, u"Beta"_s, u"Gamma"_s, u"Gamma"_s));
  EXPECT_EQ(Queue().Selected(), 3);
}

TEST_F(PlayQueueTest, AGroupPlaylistIsGivenUpOnlyOnYes) {
  EnqueueAll();
  Queue().SetName(u"My Mix"_s);
  Queue().SetGroup({u"line"_s});
  prompter_.answers = {Answer::No, Answer::Yes};
  Enqueue({ToMref(1)});
  EXPECT_EQ(Queue().Count(), 3);
  Enqueue({ToMref(2)});
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Beta"_s));
  EXPECT_EQ(Queue().Name(), u"(No Name)"_s);
  EXPECT_FALSE(Queue().GroupQueueFlag());
  EXPECT_EQ(Queue().QueueTotalSeconds(), 60);
  EXPECT_EQ(Queue().GroupLines(), QStringList{u"line"_s}) << "the next group load clears them";
  EXPECT_THAT(prompter_.Told(), ElementsAre(kGroupQuestion, kGroupQuestion));
  EXPECT_EQ(prompter_.asked[0].buttons, Buttons::YesNo);

  desk_->State().GroupPlayOn = true;
  Enqueue({ToMref(3)});
  EXPECT_EQ(Queue().Count(), 1) << "nothing is added while a group playlist runs";
}

TEST_F(PlayQueueTest, MovedContentsTravelAndThePlacesKeepTheirTags) {
  EnqueueAll();
  Queue().MarkQueueRow(ToMref(2), RowStatus::Stopped);
  Queue().Click(2);
  Queue().MoveSelectedUp();
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Beta"_s, u"Alpha"_s, u"Gamma"_s));
  EXPECT_EQ(Queue().Row(1).status, RowStatus::Stopped);
  EXPECT_EQ(Queue().Row(2).status, RowStatus::Waiting);
  EXPECT_EQ(Queue().Selected(), 1);
  Queue().MoveSelectedUp();
  EXPECT_THAT(Tags(), ElementsAre(1, 2, 3));
  Queue().MoveTo(1, 3);
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Alpha"_s, u"Gamma"_s, u"Beta"_s));
  Queue().MoveSelectedDown();
  EXPECT_EQ(Queue().Selected(), 3);
  EXPECT_THAT(Tags(), ElementsAre(1, 2, 3));
}

TEST_F(PlayQueueTest, LockedRowsAndAFadeHoldTheRowsInTheirPlaces) {
  EnqueueAll();
  QueueEntry locked;
  locked.title = u"Locked"_s;
  locked.playlistData = u"data"_s;
  Queue().AppendRow(locked, 0);
  Queue().Click(4);
  Queue().MoveSelectedUp();
  Queue().CutSelected();
  EXPECT_EQ(Queue().Row(4).Text(TrackColumn), u"Locked"_s);
  desk_->State().TransitionActive = true;
  Queue().Click(2);
  Queue().MoveSelectedUp();
  Queue().CutSelected();
  Finish(Queue().ClearQueue());
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Alpha"_s, u"Beta"_s, u"Gamma"_s, u"Locked"_s));
}

TEST_F(PlayQueueTest, ACutClosesTheTagsAndSelectsTheRowThatTakesThePlace) {
  EnqueueAll();
  Queue().Click(2);
  Queue().CutSelected();
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Alpha"_s, u"Gamma"_s));
  EXPECT_THAT(Tags(), ElementsAre(1, 2));
  EXPECT_EQ(Queue().Selected(), 2);
  EXPECT_EQ(Queue().QueueTotalSeconds(), 150);
  Queue().CutSelected();
  EXPECT_EQ(Queue().Selected(), 1) << "the new last row";
  desk_->State().AutoPlayOn = true;
  Queue().CutSelected();
  EXPECT_EQ(Queue().Count(), 1);
  desk_->State().AutoPlayOn = false;
  Queue().CutSelected();
  Queue().CutSelected();
  EXPECT_EQ(Queue().Count(), 0);
  EXPECT_EQ(Queue().Selected(), 0);
  EXPECT_EQ(Queue().QueueTotalSeconds(), 0);
}

TEST_F(PlayQueueTest, ClearingAsksAndEmptiesEverything) {
  EnqueueAll();
  Queue().SetName(u"Party"_s);
  Queue().Click(2);
  prompter_.answers = {Answer::Cancel, Answer::Ok};
  Finish(Queue().ClearQueue());
  EXPECT_EQ(Queue().Count(), 3);
  Finish(Queue().ClearQueue());
  EXPECT_EQ(Queue().Count(), 0);
  EXPECT_EQ(Queue().QueueTotalSeconds(), 0);
  EXPECT_EQ(Queue().Name(), u"(No Name)"_s);
  EXPECT_EQ(Queue().LastQueueIndex(), -1);
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"Clear The Play Queue ?"_s, u"Clear The Play Queue ?"_s));
  EXPECT_EQ(prompter_.asked[0].buttons, Buttons::OkCancel);
}

TEST_F(PlayQueueTest, UnplayedRequestsCanSurviveAClear) {
  EnqueueAll();
  AddRequest(ToMref(2));
  Queue().SetName(u"Party"_s);
  Queue().Click(3);
  prompter_.answers = {Answer::Cancel, Answer::No, Answer::Yes};
  Finish(Queue().ClearQueue());
  EXPECT_EQ(Queue().Count(), 4);
  Finish(Queue().ClearQueue());
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Wish 2"_s));
  EXPECT_THAT(Tags(), ElementsAre(4));
  EXPECT_EQ(Queue().QueueTotalSeconds(), 60 + 60 + 90 + 10 - (1 + 2 + 3)) << "less the numbers of the tracks";
  EXPECT_EQ(Queue().Name(), u"Party"_s);
  EXPECT_EQ(Queue().LastQueueIndex(), 3);
  EXPECT_EQ(prompter_.asked[1].text,
            u"There Is/Are Unplayed Requests in the Queue ! \r\nDo you Want The Requests Cleared Too ?"_s);
  EXPECT_EQ(prompter_.asked[1].buttons, Buttons::YesNoCancel);
  Queue().Click(1);
  Finish(Queue().ClearQueue());
  EXPECT_EQ(Queue().Count(), 0);
}

TEST_F(PlayQueueTest, AutomaticPlayThatBeganWhileTheQuestionStoodKeepsItsRows) {
  testing::ScriptedPrompter prompter;
  ConsoleState state;
  Disks disks(loop_);
  PlayQueue queue(loop_, disks, prompter, catalogue_, state);
  Finish(queue.AddTracks({ToMref(1), ToMref(2)}));
  prompter.answers = {Answer::Ok, Answer::Yes};
  prompter.meanwhile = [&state](const Prompt&) { state.AutoPlayOn = true; };
  Finish(queue.ClearQueue());
  EXPECT_EQ(queue.Count(), 2);
  state.AutoPlayOn = false;
  queue.SetGroup({});
  prompter.meanwhile = [&state](const Prompt&) { state.GroupPlayOn = true; };
  Finish(queue.AddTracks({ToMref(3)}));
  EXPECT_EQ(queue.Count(), 2);
  EXPECT_TRUE(queue.GroupQueueFlag());
}

TEST_F(PlayQueueTest, EditingOpensTheFormThatSuitsTheQueue) {
  std::vector<std::pair<int, bool>> opened;
  Queue().OpenEditor = [&](int index, bool group) { opened.emplace_back(index, group); };
  EnqueueAll();
  const auto edit = [this](int index) {
    Queue().Click(index);
    Queue().EditSelected();
    loop_.RunFor(100ms);
  };
  edit(2);
  EXPECT_EQ(Queue().LastQueueIndex(), 2);
  Queue().SetGroup({});
  edit(3);
  EXPECT_THAT(opened, ElementsAre(std::pair(2, false), std::pair(3, true)));

  QFile::remove(database_.paths(Paths::Info) + u"/alpha.kif"_s);
  edit(1);
  EXPECT_EQ(opened.size(), 2U) << "without an info file nothing happens";
  EXPECT_EQ(Queue().Count(), 3);
  QFile::remove(catalogue_.TrackPaths(ToMref(2)));
  edit(2);
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Alpha"_s, u"Gamma"_s));
  EXPECT_EQ(Queue().QueueTotalSeconds(), 210) << "the total stays as it was";
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"The Requested Track Beta No Longer Exists !"_s));
}

TEST_F(PlayQueueTest, TheFirstHeadTogglesBetweenContentsAndListOrder) {
  EXPECT_EQ(Queue().TrackHead(), u"Tracks (By Position Or Contents)"_s);
  Enqueue({ToMref(3), ToMref(1), ToMref(2)});
  Queue().Click(1);
  Queue().SortBy(TrackColumn);
  EXPECT_EQ(Queue().TrackHead(), u"Tracks ( By List Contents )"_s);
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Alpha"_s, u"Beta"_s, u"Gamma"_s));
  EXPECT_THAT(Tags(), ElementsAre(2, 3, 1));
  EXPECT_EQ(Queue().Selected(), 3) << "the selection stays with its row";
  Queue().SortBy(TrackColumn);
  EXPECT_EQ(Queue().TrackHead(), u"Tracks ( By List Position )"_s);
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Gamma"_s, u"Alpha"_s, u"Beta"_s));
  EXPECT_EQ(Queue().Selected(), 1);

  Queue().SortBy(MrefColumn);
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Alpha"_s, u"Beta"_s, u"Gamma"_s));
  desk_->State().AutoPlayOn = true;
  Queue().SortBy(TrackColumn);
  desk_->State().AutoPlayOn = false;
  Queue().SetGroup({});
  Queue().SortBy(TrackColumn);
  EXPECT_EQ(Queue().TrackHead(), u"Tracks ( By List Position )"_s);
}

TEST_F(PlayQueueTest, ASortedListTakesNewRowsAtTheirPlaceAndTheListOrderComesBackWhole) {
  Enqueue({ToMref(3), ToMref(1)});
  Queue().SortBy(TrackColumn);
  Enqueue({ToMref(2)});
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Alpha"_s, u"Beta"_s, u"Gamma"_s));
  EXPECT_EQ(Queue().Selected(), 2);
  Queue().SortBy(TrackColumn);
  EXPECT_THAT(Column(TrackColumn), ElementsAre(u"Gamma"_s, u"Alpha"_s, u"Beta"_s));

  // A clear that spares a request leaves a gap in the tags; no row may get lost over it.
  AddRequest(ToMref(1));
  Queue().Click(1);
  prompter_.answers = {Answer::No};
  Finish(Queue().ClearQueue());
  Enqueue({ToMref(2), ToMref(3)});
  EXPECT_THAT(Tags(), ElementsAre(4, 5, 6)) << "no number twice";
  Queue().SortBy(TrackColumn);
  Queue().SortBy(TrackColumn);
  EXPECT_EQ(Queue().Count(), 3);
  EXPECT_THAT(Tags(), ElementsAre(1, 2, 3));
}

TEST_F(PlayQueueTest, TheLastColumnShowsGenresOrTimings) {
  Queue().SwitchTimings();
  EXPECT_EQ(Queue().TimingsCaption(), u"Timings"_s) << "an empty queue has nothing to show";
  Enqueue({ToMref(3)});
  TrackEdit edit;
  edit.genres = u"~ALL CATEGORIES"_s;
  catalogue_.Change(ToMref(1), edit);
  Queue().SwitchTimings();
  EXPECT_EQ(Queue().GenreHead(), u"Timings"_s);
  EXPECT_EQ(Queue().TimingsCaption(), u"Genres"_s);
  Enqueue({ToMref(1)});
  EXPECT_THAT(Column(GenreColumn), ElementsAre(u"01:30"_s, u"01:00"_s));
  Queue().SwitchTimings();
  EXPECT_EQ(Queue().GenreHead(), u"Genres"_s);
  EXPECT_THAT(Column(GenreColumn), ElementsAre(u"Rock"_s, u"Undefined"_s));
}

TEST_F(PlayQueueTest, AMarkTellsWhatBecameOfTheFirstRowOfATrack) {
  EnqueueAll();
  AddRequest(ToMref(2));
  loop_.RunFor(5min);
  const QueueModel model(Queue());
  const auto colour = [&model](int row) {
    return model.data(model.index(row - 1, TrackColumn), Qt::ForegroundRole).value<QColor>().name();
  };
  const auto mark = [&](RowStatus status) {
    Queue().MarkQueueRow(ToMref(2), status);
    return std::pair(Queue().Row(2).Text(CommentColumn), colour(2));
  };
  EXPECT_EQ(mark(RowStatus::NowPlaying), std::pair(u"Now Playing 9:05"_s, u"#ff6aff"_s));
  EXPECT_EQ(mark(RowStatus::Faded), std::pair(u"Faded- 9:05"_s, u"#ffffff"_s));
  EXPECT_EQ(mark(RowStatus::Stopped), std::pair(u"Stopped 9:05"_s, u"#3ce63c"_s));
  EXPECT_EQ(mark(RowStatus::Played), std::pair(u"Played- 9:05"_s, u"#3ce63c"_s));
  EXPECT_EQ(mark(RowStatus::Reset), std::pair(QString(), u"#00ffff"_s));
  EXPECT_EQ(colour(4), u"#ffff00"_s) << "a request";
  EXPECT_TRUE(Queue().Row(4).IsRequest()) << "only the first row of the track";

  desk_->State().PreviewOn = true;
  Queue().MarkQueueRow(ToMref(1), RowStatus::Played);
  EXPECT_EQ(Queue().Row(1).Text(CommentColumn), u"Play Me"_s);
}

TEST_F(DeskTest, ATrackThatIsCutWhileManyAreAddedIsAddedAnew) {
  for (int number = 0; number < 200; ++number) AddTrack(u"track %1"_s.arg(number), 60, 60);
  Open();
  std::vector<Mref> tracks;
  for (int row = 1; row <= catalogue_.LastTrack(); ++row) tracks.push_back(ToMref(row));
  Enqueue({tracks.back()});
  Job<> adding = Queue().AddTracks(tracks);
  ASSERT_TRUE(loop_.RunUntil([this] { return Queue().Count() > 1; }, 1s));
  ASSERT_LT(Queue().Count(), 200);
  Queue().Click(1);
  Queue().CutSelected();
  ASSERT_TRUE(loop_.RunUntil([&adding] { return !adding.Running(); }, 1s));
  ASSERT_EQ(Queue().Count(), 200);
  EXPECT_EQ(Queue().Row(200).track, tracks.back());
}

TEST_F(PlayQueueTest, TracksThatComeMeanwhileLeaveTheOperatorsSelection) {
  EnqueueAll();
  loop_.HangDisk(catalogue_.TrackPaths(ToMref(1)));
  AddRequest(ToMref(2));
  Queue().Click(1);
  Job<> adding = Queue().AddTracks({ToMref(1), ToMref(2), ToMref(3)}, PlayQueue::Route::Search);
  loop_.RunFor(100ms);
  Queue().Click(2);
  ASSERT_TRUE(loop_.RunUntil([&adding] { return !adding.Running(); }, 5s));
  EXPECT_EQ(Queue().Count(), 6);
  EXPECT_EQ(Queue().Selected(), 2);
}

TEST_F(PlayQueueTest, APlayedRequestIsNoRequestAnyMore) {
  AddRequest(ToMref(1));
  EXPECT_TRUE(Queue().QueueHasRequests());
  Queue().MarkQueueRow(ToMref(1), RowStatus::NowPlaying);
  EXPECT_FALSE(Queue().QueueHasRequests());
  EXPECT_EQ(Queue().Row(1).Text(ReqdataColumn), QString());
  Queue().ResetMarks();
  EXPECT_EQ(Queue().Row(1).Text(CommentColumn), QString());
  EXPECT_EQ(Queue().Row(1).status, RowStatus::Reset);
}

}  // namespace
}  // namespace kelvo
