#include "datamanager/BulkEdit.h"
#include "datamanager/ManagerFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class BulkEditTest : public ManagerTest {
 protected:
  [[nodiscard]] LibraryChanges::Services ForChanges() {
    return {.loop = loop_, .prompter = prompter_, .catalogue = catalogue_, .paths = database_.paths};
  }
  void Run() {
    ASSERT_TRUE(loop_.RunUntil([this] { return !edit_.Running(); }));
  }
  void Apply(const std::vector<Mref>& tracks, const BulkChange& change) {
    edit_.Apply(tracks, change);
    Run();
  }

  std::shared_ptr<LibraryChanges> changes_ = std::make_shared<LibraryChanges>(ForChanges());
  BulkEdit edit_{{.loop = loop_,
                  .prompter = prompter_,
                  .catalogue = catalogue_,
                  .paths = database_.paths,
                  .changes = changes_}};
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

TEST_F(BulkEditTest, AStopAndAnUndoGiveAllTracksBackAsTheyWereAlsoAfterARestart) {
  std::vector<Mref> tracks;
  for (int number = 0; number < 40; ++number) tracks.push_back(Add(u"track %1"_s.arg(number), u"Rock"_s));
  const auto infos = [this] {
    QList<QByteArray> all;
    for (int number = 0; number < 40; ++number) all.append(database_.Info(u"track %1"_s.arg(number)));
    return all;
  };
  const QList<QByteArray> before = infos();
  const BulkChange change{.year = u"2005"_s, .genre = u"Fresh"_s, .replace = true};
  const auto stop = QObject::connect(changes_.get(), &LibraryChanges::Changed, &edit_, [this] {
    if (changes_->Share() > 0.3) changes_->Stop();
  });
  Apply(tracks, change);
  QObject::disconnect(stop);
  EXPECT_EQ(infos(), before);
  EXPECT_EQ(catalogue_.TrackDates[tracks[0]], u"1999-Dec"_s);
  ASSERT_EQ(prompter_.asked.size(), 1U);
  EXPECT_TRUE(prompter_.asked[0].text.contains(u"Stopped: Everything Is As It Was"_s));

  Apply(tracks, change);
  EXPECT_EQ(catalogue_.TrackGenres[tracks[39]], u"~ALL CATEGORIES,Fresh"_s);
  EXPECT_EQ(catalogue_.TrackDates[tracks[0]], u"2005-Dec"_s);
  LibraryChanges next(ForChanges());
  loop_.RunFor(1s);
  EXPECT_EQ(next.LastChange(), u"Change Of 40 Track(s)"_s);
  prompter_.answers = {Answer::Yes};
  next.Undo();
  ASSERT_TRUE(loop_.RunUntil([&next] { return !next.Running(); }));
  EXPECT_EQ(infos(), before);
  EXPECT_EQ(catalogue_.TrackDates[tracks[0]], u"1999-Dec"_s);
}

}  // namespace
