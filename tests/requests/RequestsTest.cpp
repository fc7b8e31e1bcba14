#include "database/PlaylistEntry.h"
#include "database/TestDatabase.h"
#include "platform/ErrorLog.h"
#include "platform/FileSteps.h"
#include "platform/SimulatedEventLoop.h"
#include "requests/RequestTally.h"
#include "requests/Requests.h"
#include "support/ScriptedPrompter.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <optional>

namespace kelvo::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

const QString kDashes = u"--------------------------"_s;

/// A queue over three tracks and the requests for them, in simulated time.
class RequestsTest : public ::testing::Test {
 protected:
  RequestsTest() {
    catalogue_.Replace(CatalogueTables(database_.paths(Paths::Music)));
    for (const QString& name : {u"ann - one"_s, u"bob - two"_s, u"cat - three"_s}) AddTrack(name);
    requests_.emplace(Requests::Services{.loop = loop_,
                                         .prompter = prompter_,
                                         .catalogue = catalogue_,
                                         .queue = queue_,
                                         .paths = database_.paths,
                                         .wordFolder = database_.tree.Path(u"words"_s)});
  }
  void AddTrack(const QString& name) {
    database_.AddTrack(name);
    CatalogueRow row;
    row.name = name;
    row.extension = u".mp3"_s;
    row.genres = u"~ALL CATEGORIES,~x,Soul"_s;
    row.duration = 60;
    catalogue_.Append(row);
  }
  void Ask(int track, const QString& from, const QString& to = u"Bo"_s, const QString& message = u"Hi"_s) {
    requests_->SetTrack(catalogue_.TrackPaths(ToMref(track)));
    requests_->Add({from, to, message});
    loop_.RunFor(1s);
  }
  [[nodiscard]] QStringList Comments() {
    QStringList comments;
    for (int index = 1; index <= queue_.Count(); ++index)
      comments.append(queue_.Row(index).Text(CommentColumn));
    return comments;
  }
  [[nodiscard]] QString TallyFolder() const {
    return database_.paths(Paths::Playlists) + u"/Most Requested"_s;
  }
  [[nodiscard]] QString Tally(const QString& name) const {
    return PlaylistLink::Read(TallyFolder() + u'/' + name + u".lnk"_s).arguments;
  }
  [[nodiscard]] QString WordFile(const QString& name) const {
    return QString::fromUtf8(database_.tree.Read(u"words/"_s + name));
  }

  TestDatabase database_;
  SimulatedEventLoop loop_{QDateTime(QDate(2007, 6, 1), QTime(9, 0))};
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  Disks disks_{loop_};
  Catalogue catalogue_;
  ConsoleState state_;
  PlayQueue queue_{loop_, disks_, prompter_, catalogue_, state_};
  std::optional<Requests> requests_;
};

TEST_F(RequestsTest, ThreeRequestsOfOneTrackAreStackedOnOneRowAndCounted) {
  Ask(2, u"Al"_s, u"Bo"_s, u"Hi"_s);
  const QueueEntry first = queue_.Row(1);
  QStringList words;
  for (int column = 0; column < QueueColumnCount; ++column)
    words.append(first.Text(static_cast<QueueColumn>(column)));
  EXPECT_THAT(words, ElementsAre(u"Bob - Two"_s, u"Request-1"_s, u"0000-xxx"_s, u"0"_s, u"0"_s, u""_s,
                                 catalogue_.TrackPaths(ToMref(2)),
                                 u"Request From: Al\r\nTo: Bo\r\nMessage: Hi"_s, u"2"_s, u"Soul"_s));
  EXPECT_EQ(queue_.QueueTotalSeconds(), 60);
  Ask(2, u"Cy"_s, u"Di"_s, u"Two\nlines"_s);
  Ask(2, u"Ed"_s);
  EXPECT_THAT(Comments(), ElementsAre(u"Request-3"_s));
  EXPECT_EQ(queue_.Row(1).requestText,
            (QStringList{u"Request From: Al"_s, u"To: Bo"_s, u"Message: Hi"_s, kDashes, u"Request From: Cy"_s,
                         u"To: Di"_s, u"Message: Two"_s, u"lines"_s, kDashes, u"Request From: Ed"_s,
                         u"To: Bo"_s, u"Message: Hi"_s}
                 .join(u"\r\n"_s)));
  EXPECT_EQ(Tally(u"bob - two"_s), u"3"_s);
  EXPECT_EQ(queue_.QueueTotalSeconds(), 60) << "the track is not added again";
  EXPECT_EQ(requests_->Words(), u"Request-3 : Bob - Two, row 1 of the queue"_s);
  EXPECT_TRUE(prompter_.asked.empty());
}

TEST_F(RequestsTest, APlainOrAPlayedRowBecomesARequest) {
  Job<> adding = queue_.AddTracks({ToMref(1), ToMref(2), ToMref(3)});
  loop_.RunFor(1s);
  queue_.MarkQueueRow(ToMref(1), RowStatus::Played);
  Ask(1, u"Al"_s);
  Ask(3, u"Cy"_s);
  EXPECT_THAT(Comments(), ElementsAre(u"Request-1"_s, u"Play Me"_s, u"Request-1"_s));
  EXPECT_TRUE(queue_.QueueHasRequests());
  // Automatic play makes them rows like all others; their words still wait, and more come behind them.
  queue_.ResetMarks();
  Ask(3, u"Ed"_s);
  EXPECT_EQ(queue_.Row(3).requestText.count(u"Request From: "_s), 2);
  queue_.MarkQueueRow(ToMref(3), RowStatus::NowPlaying);
  EXPECT_TRUE(queue_.Row(3).requestText.isEmpty());
}

TEST_F(RequestsTest, NothingIsAddedOrSaidWhereAFieldIsEmptyOrAGroupPlaylistRuns) {
  Ask(1, u""_s);
  Ask(1, u"Al"_s, u" \t"_s);
  Ask(1, u"Al"_s, u"Bo"_s, u"\n\n"_s);
  state_.GroupPlayOn = true;
  Ask(1, u"Al"_s);
  EXPECT_EQ(queue_.Count(), 0);
  EXPECT_FALSE(QDir(TallyFolder()).exists());
  EXPECT_TRUE(prompter_.asked.empty());
}

TEST_F(RequestsTest, AGroupPlaylistIsGivenUpOnYesAlone) {
  Job<> adding = queue_.AddTracks({ToMref(1)});
  loop_.RunFor(1s);
  queue_.SetName(u"Wedding"_s);
  queue_.SetGroup({u"line"_s});
  prompter_.answers = {Answer::No, Answer::Yes};
  Ask(2, u"Al"_s);
  EXPECT_THAT(Comments(), ElementsAre(u"Play Me"_s));
  Ask(2, u"Al"_s);
  EXPECT_THAT(Comments(), ElementsAre(u"Request-1"_s));
  EXPECT_EQ(queue_.Name(), u"(No Name)"_s);
  EXPECT_FALSE(queue_.GroupQueueFlag());
  EXPECT_EQ(prompter_.Told().front(),
            u"You Can't Add Std Tracks To A Group Playlist !\r\nClear Group Playlist Wedding ?"_s);
  EXPECT_EQ(prompter_.asked.front().buttons, Buttons::YesNo);
}

TEST_F(RequestsTest, ATrackThatLeavesOrIsRenamedWhileTheWindowIsOpenIsFollowed) {
  requests_->SetTrack(catalogue_.TrackPaths(ToMref(2)));
  catalogue_.Rename(ToMref(2), u"bob - deux.mp3"_s);
  catalogue_.Remove(ToMref(1));
  EXPECT_EQ(requests_->TrackName(), u"Bob - Deux"_s);
  requests_->Add({u"Al"_s, u"Bo"_s, u"Hi"_s});
  loop_.RunFor(1s);
  EXPECT_EQ(Tally(u"bob - deux"_s), u"1"_s);
  catalogue_.Remove(ToMref(1));
  EXPECT_FALSE(requests_->WhyNoAdd().isEmpty());
  requests_->Add({u"Al"_s, u"Bo"_s, u"Hi"_s});
  loop_.RunFor(1s);
  EXPECT_EQ(queue_.Count(), 0) << "its row went with the track";
}

TEST_F(RequestsTest, WhateverIsTypedStaysInItsLine) {
  const QString big(10 << 20, u'x');
  Ask(1, u"a;b\r\nTo: c"_s, u"Ünal Öz 山田\u2028"_s, u"1;2\r\n3\r4"_s);
  EXPECT_EQ(queue_.Row(1).requestText,
            u"Request From: a;b To: c\r\nTo: Ünal Öz 山田\r\nMessage: 1;2\r\n3\r\n4"_s);
  Ask(2, big, big, big);
  EXPECT_LT(queue_.Row(2).requestText.size(), 5000);
}

TEST_F(RequestsTest, TheTallyFindsItsLinkInAnyCaseAndKeepsWhatItCounted) {
  const auto count = [this](const QString& name) {
    return CountRequest(TallyFolder(), name, u"/music/"_s + name + u".mp3"_s);
  };
  EXPECT_EQ(count(u"Ann - One"_s), 1);
  EXPECT_EQ(count(u"ANN - ONE"_s), 2);
  EXPECT_EQ(count(u"Ann - One two"_s), 1);
  const PlaylistLink link = PlaylistLink::Read(TallyFolder() + u"/Ann - One.lnk"_s);
  EXPECT_EQ(link.targetPath, u"/music/Ann - One.mp3"_s);
  database_.tree.Write(Paths::FolderName(Paths::Playlists) + u"/Most Requested/Bad.lnk"_s, "\0\1\2");
  EXPECT_EQ(count(u"Bad"_s), 1);
  for (const QString& name : {u"a\nb"_s, u"Ünal 山田; x"_s, QString(300, u'n')}) {
    EXPECT_EQ(count(name), 1);
    EXPECT_EQ(count(name), 2);
  }
}

TEST_F(RequestsTest, ACountThatIsBrokenOffIsTheOldOneOrTheNew) {
  const QString folder = TallyFolder();
  CountRequest(folder, u"one"_s, u"/one.mp3"_s);
  for (int step = 0;; ++step) {
    const int before = Tally(u"one"_s).toInt();
    const bool killed = KilledBefore(step, [&] { CountRequest(folder, u"one"_s, u"/one.mp3"_s); });
    const int after = Tally(u"one"_s).toInt();
    EXPECT_TRUE(after == before + 1 || (killed && after == before)) << step;
    if (!killed) {
      EXPECT_GT(step, 2);
      return;
    }
    ASSERT_LT(step, 100);
  }
}

TEST_F(RequestsTest, ATallyThatCannotBeWrittenLeavesTheRequestInTheQueue) {
  database_.tree.Write(Paths::FolderName(Paths::Playlists) + u"/Most Requested"_s, "a file in its way");
  Ask(1, u"Al"_s);
  EXPECT_THAT(Comments(), ElementsAre(u"Request-1"_s));
  ASSERT_EQ(prompter_.asked.size(), 1U);
  EXPECT_TRUE(prompter_.asked[0].text.startsWith(u"The request is in the queue"_s));
}

TEST_F(RequestsTest, TheWordListsAreReadEditedAndWrittenAsAWhole) {
  database_.tree.Write(u"words/NamesMale.txt"_s, "Andy\r\n\r\nBj\xF6rn\r\n");
  database_.tree.Write(u"words/Messages.txt"_s, QByteArray(10 << 20, 'm') + "\nShort\n");
  requests_->ReadLists();
  loop_.RunFor(1s);
  WordLists& lists = requests_->Lists();
  EXPECT_THAT(lists.Entries(WordList::Males).All(), ElementsAre(u"Andy"_s, u"Björn"_s));
  EXPECT_EQ(lists.Entries(WordList::Females).Count(), 0) << "a missing file is an empty list";
  EXPECT_EQ(lists.Entries(WordList::Messages)[0].size(), WordLists::kLongestEntry);
  prompter_.texts = {u" 山田;\n太郎 "_s, QString(), u"Eve"_s};
  requests_->AddToList(WordList::Males);
  requests_->AddToList(WordList::Males);
  requests_->AddToList(WordList::Females);
  lists.Remove(WordList::Males, 0);
  lists.Remove(WordList::Males, 7);
  loop_.RunFor(1s);
  EXPECT_EQ(WordFile(u"NamesMale.txt"_s), u"Björn\r\n山田; 太郎\r\n"_s);
  EXPECT_EQ(WordFile(u"NamesFem.txt"_s), u"Eve\r\n"_s);
  EXPECT_EQ(prompter_.asked[0].title, u"Update Males"_s);
  EXPECT_EQ(prompter_.asked[0].text, u"Please Enter New Males"_s);
}

TEST_F(RequestsTest, AListThatCannotBeWrittenIsKeptAndTriedAgainAndAnUnreadableOneIsLeftAlone) {
  database_.tree.MakeFolder(u"words/NamesMale.txt"_s);
  database_.tree.Write(u"words/NamesFem.txt"_s, "Alice\r\n");
  requests_->ReadLists();
  loop_.RunFor(1s);
  prompter_.asked.clear();
  WordLists& lists = requests_->Lists();
  EXPECT_FALSE(lists.WhyNoChange(WordList::Males).isEmpty());
  requests_->AddToList(WordList::Males);
  EXPECT_TRUE(prompter_.asked.empty());
  const QString file = database_.tree.Path(u"words/NamesFem.txt"_s);
  QFile::remove(file);
  database_.tree.MakeFolder(u"words/NamesFem.txt"_s);
  lists.Remove(WordList::Females, 0);
  loop_.RunFor(1s);
  EXPECT_THAT(prompter_.Told(), ElementsAre(u"can't access file"_s));
  QDir().rmdir(file);
  requests_->ReadLists();
  loop_.RunFor(1s);
  EXPECT_EQ(lists.Entries(WordList::Females).Count(), 0) << "the change is not read away";
  lists.WriteOpenChanges();
  loop_.RunFor(1s);
  EXPECT_TRUE(QFile::exists(file));
}

}  // namespace
}  // namespace kelvo::testing
