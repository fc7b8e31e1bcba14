#include "datamanager/BulkEdit.h"
#include "datamanager/ManagerFixture.h"
#include "platform/FileSteps.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;
using ::testing::ElementsAre;

namespace {

class BulkEditTest : public ManagerTest {
 protected:
  [[nodiscard]] BulkEdit::Services ForEdit() {
    return {.loop = loop_,
            .prompter = prompter_,
            .catalogue = catalogue_,
            .paths = database_.paths,
            .undoFile = database_.tree.Path(u"undo.txt"_s)};
  }
  void Run() {
    ASSERT_TRUE(loop_.RunUntil([this] { return !edit_.Running(); }));
  }
  void Apply(const std::vector<Mref>& tracks, const BulkChange& change) {
    edit_.Apply(tracks, change);
    Run();
  }

  BulkEdit edit_{ForEdit()};
};

TEST_F(BulkEditTest, ChangesWhatIsFilledInAndNothingElseOfEachFile) {
  const Mref one = Add(u"one"_s, u"Rock"_s, u"Ann"_s);
  const Mref two = Add(u"two"_s, u"pop"_s);
  const Mref three = Add(u"three"_s);
  const QByteArray other = database_.Info(u"three"_s);
  QByteArray wanted = database_.Info(u"one"_s);
  Apply({one, two, one}, {.year = u"2005"_s, .genre = u"POP"_s});
  wanted.replace("~ALL CATEGORIES,Rock", "~ALL CATEGORIES,Rock,pop").replace("1999-Dec", "2005-Dec");
  EXPECT_EQ(database_.Info(u"one"_s), wanted) << "in the spelling that the database has";
  EXPECT_TRUE(database_.Info(u"two"_s).startsWith("~ALL CATEGORIES,pop\r\n")) << "it bears it already";
  EXPECT_EQ(database_.Info(u"three"_s), other);
  EXPECT_EQ(catalogue_.TrackDates[two], u"2005-Dec"_s);
  EXPECT_EQ(catalogue_.TrackGenres[one], u"~ALL CATEGORIES,Rock,pop"_s);

  Apply({one, three}, {.month = u"xxx"_s, .artist = u"New/Band"_s, .replace = true});
  const QString band = catalogue_.ArtistList.last();
  EXPECT_FALSE(band.contains(u'/'));
  EXPECT_TRUE(QFileInfo(database_.paths(Paths::Artists) + u'/' + band).isDir());
  EXPECT_EQ(catalogue_.TrackArtists[one], u"~ALL ARTISTS,"_s + band);
  EXPECT_EQ(catalogue_.TrackDates[one], u"2005-xxx"_s);
  EXPECT_TRUE(prompter_.asked.empty());
  for (const QString& bad : {u"~ALL ARTISTS"_s, QString(300, u'x')})
    EXPECT_NE(edit_.WhyNot({.artist = bad}, 1), QString()) << bad.toStdString();
}

TEST_F(BulkEditTest, WhatCannotBeChangedIsToldAndTheOthersAreDone) {
  const Mref full = Add(u"full"_s, u"a,b,c,d,e,f,g,h,i,j"_s);
  const Mref gone = Add(u"gone"_s);
  const Mref good = Add(u"good"_s);
  QFile::remove(database_.paths(Paths::Info) + u"/gone.kif"_s);
  Apply({full, gone, good}, {.genre = u"k"_s});
  EXPECT_EQ(catalogue_.TrackGenres[good], u"~ALL CATEGORIES,k"_s);
  EXPECT_EQ(catalogue_.TrackGenres[full], u"~ALL CATEGORIES,a,b,c,d,e,f,g,h,i,j"_s);
  EXPECT_FALSE(database_.Holds(Paths::Info, u"gone.kif"_s));
  ASSERT_EQ(prompter_.asked.size(), 1U);
  EXPECT_EQ(prompter_.asked[0].text.count(u"\r\n"_s), 2) << prompter_.asked[0].text.toStdString();
  EXPECT_TRUE(prompter_.asked[0].text.contains(u"full - Max 10 References per track Exceeded"_s));
}

TEST_F(BulkEditTest, AStopLeavesTheRestAndAnUndoGivesBackWhatNobodyChangedSince) {
  std::vector<Mref> tracks;
  for (int number = 0; number < 6; ++number) tracks.push_back(Add(u"track %1"_s.arg(number), u"Rock"_s));
  std::vector<QByteArray> before;
  for (int number = 0; number < 6; ++number) before.push_back(database_.Info(u"track %1"_s.arg(number)));
  int told = 0;
  QObject::connect(&edit_, &BulkEdit::Changed, &edit_, [&] {
    if (++told == 4) edit_.Stop();
  });
  Apply(tracks, {.year = u"2005"_s, .genre = u"Rock"_s, .replace = true});
  QStringList dates;
  for (const Mref track : tracks) dates.append(catalogue_.TrackDates[track].left(4));
  EXPECT_THAT(dates, ElementsAre(u"2005"_s, u"2005"_s, u"2005"_s, u"2005"_s, u"1999"_s, u"1999"_s));

  // One goes, one is given another date by somebody else.
  catalogue_.Remove(tracks[0]);
  database_.tree.Write(Paths::FolderName(Paths::Info) + u"/track 2.kif"_s,
                       database_.Info(u"track 2"_s).replace("2005-Dec", "2007-Jan"));
  edit_.Undo();
  Run();
  EXPECT_EQ(database_.Info(u"track 1"_s), before[1]);
  EXPECT_TRUE(database_.Info(u"track 2"_s).contains("2007-Jan"));
  EXPECT_EQ(database_.Info(u"track 3"_s), before[3]);
  EXPECT_EQ(catalogue_.TrackDates[ToMref(1)], u"1999-Dec"_s) << "of the second track, by its number of now";
  EXPECT_NE(edit_.WhyNoUndo(), QString());
}

TEST_F(BulkEditTest, TheLastRunCanBeUndoneAfterARestart) {
  const Mref one = Add(u"a, b"_s, u"Rock"_s);
  const Mref two = Add(u"two"_s, u"Pop"_s);
  const QByteArray before = database_.Info(u"a, b"_s);
  Apply({two}, {.year = u"1980"_s});
  Apply({one}, {.year = u"2005"_s, .genre = u"Fresh"_s, .replace = true});
  BulkEdit next(ForEdit());
  loop_.RunFor(1s);
  EXPECT_EQ(next.WhyNoUndo(), QString());
  next.Undo();
  ASSERT_TRUE(loop_.RunUntil([&next] { return !next.Running(); }));
  EXPECT_EQ(database_.Info(u"a, b"_s), before);
  EXPECT_EQ(catalogue_.TrackGenres[one], u"~ALL CATEGORIES,Rock"_s);
  EXPECT_EQ(catalogue_.TrackDates[two], u"1980-Dec"_s) << "the last run only";
  BulkEdit last(ForEdit());
  loop_.RunFor(1s);
  EXPECT_NE(last.WhyNoUndo(), QString()) << "it was undone";
}

TEST_F(BulkEditTest, KilledAtAnyStepEveryFileIsTheOldOneOrTheNewAndEveryNameHasItsFolder) {
  const std::vector<Mref> tracks{Add(u"one"_s), Add(u"two"_s)};
  const std::vector<QByteArray> before{database_.Info(u"one"_s), database_.Info(u"two"_s)};
  const auto work = [this, &tracks] { Apply(tracks, {.genre = u"Fresh"_s}); };
  bool ended = false;
  const QString folder = database_.paths(Paths::Categories) + u"/Fresh"_s;
  for (int step = 0; !ended; ++step) {
    QDir().rmdir(folder);
    ended = !KilledBefore(step, work);
    for (int place = 0; place < 2; ++place) {
      const QString name = place == 0 ? u"one"_s : u"two"_s;
      const QByteArray now = database_.Info(name);
      QByteArray changed = before[static_cast<std::size_t>(place)];
      changed.replace("~ALL CATEGORIES", "~ALL CATEGORIES,Fresh");
      const bool isNew = now == changed;
      EXPECT_TRUE(isNew || now == before[static_cast<std::size_t>(place)])
          << step << ' ' << now.toStdString();
      EXPECT_TRUE(!isNew || QFileInfo(folder).isDir()) << step;
      EXPECT_TRUE(!isNew || database_.tree.Read(u"undo.txt"_s).contains(name.toUtf8())) << step;
      database_.Add(Paths::Info, name + u".kif"_s, before[static_cast<std::size_t>(place)]);
    }
  }
}

}  // namespace
