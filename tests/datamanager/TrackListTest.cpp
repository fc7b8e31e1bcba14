#include "datamanager/ManagerFixture.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class TrackListTest : public ManagerTest {
 protected:
  void Open(DispMode mode = DispMode::MusicFiles) {
    list_.emplace(ForList());
    list_->Refresh(mode);
  }
  QStringList Row(int row) {
    QStringList texts;
    for (int column = 0; column < kManagerColumns; ++column)
      texts.append(list_->Text(row, static_cast<ManagerColumn>(column)));
    return texts;
  }
  QStringList Names() { return Column(*list_); }
  void Sort(ManagerColumn column) {
    list_->SortBy(column);
    Settle(*list_);
  }
  void Filter(std::vector<Reference> references) {
    list_->Filter(std::move(references));
    Settle(*list_);
  }

  std::optional<TrackList> list_;
};

TEST_F(TrackListTest, ARowHasTheFiguresOfItsTrackAndItsSizeOnceItIsInSight) {
  Add(u"one"_s, u"Rock,Pop"_s, u"Ann"_s, u"-3.5,0.2"_s, u"120"_s, 1048576 * 3 / 2);
  Add(u"two"_s);
  QFile::remove(database_.paths(Paths::Music) + u"/two.mp3"_s);
  Open();
  const QString music = database_.paths(Paths::Music);
  EXPECT_THAT(Row(0), ElementsAre(u"one.mp3"_s, u""_s, u"-3.5"_s, u"0.2"_s, music + u"/one.mp3"_s, u"120"_s,
                                  u"1999-Dec"_s, u"0"_s, u"Rock,Pop"_s, u"Ann"_s, u""_s, u"1"_s));
  list_->Show(0, 0);
  loop_.RunFor(100ms);
  EXPECT_THAT(Column(*list_, ManagerColumn::Size), ElementsAre(u"1.50"_s, u""_s));
  list_->Show(0, 1);
  loop_.RunFor(100ms);
  EXPECT_THAT(Column(*list_, ManagerColumn::Size), ElementsAre(u"1.50"_s, u"?"_s)) << "the second is gone";
  EXPECT_EQ(list_->Text(1, ManagerColumn::Volume), u"?"_s);
  EXPECT_EQ(list_->Text(1, ManagerColumn::Change), u"?"_s);

  catalogue_.AddJingle(database_.Add(Paths::Jingles, u"horn.wav"_s));
  list_->Refresh(DispMode::Jingles);
  EXPECT_THAT(Row(0), ElementsAre(u"horn.wav"_s, u""_s, u""_s, u""_s, u""_s, u""_s, u""_s, u""_s, u""_s,
                                  u""_s, u""_s, u"1"_s));
  EXPECT_EQ(list_->Track(0), Mref::None);
  EXPECT_EQ(list_->SoundPath(0), database_.paths(Paths::Jingles) + u"/horn.wav"_s);
  list_->Refresh(DispMode::References);
  EXPECT_EQ(list_->Text(0, ManagerColumn::FileName), u"one.kif"_s);
  EXPECT_EQ(list_->FilePath(0), database_.paths(Paths::Info) + u"/one.kif"_s);
  EXPECT_EQ(list_->SoundPath(0), music + u"/one.mp3"_s);
}

TEST_F(TrackListTest, ADiskThatHangsKeepsOnlyTheSizesBack) {
  Add(u"one"_s);
  loop_.HangDisk(database_.tree.Path());
  Open();
  list_->Show(0, 0);
  loop_.RunFor(5s);
  EXPECT_EQ(list_->Text(0, ManagerColumn::FileName), u"one.mp3"_s);
  EXPECT_EQ(list_->Text(0, ManagerColumn::Size), u""_s);
  loop_.RunFor(20s);
  EXPECT_EQ(list_->Text(0, ManagerColumn::Size), u"?"_s);
  loop_.AnswerAgain(database_.tree.Path());
  list_->Refresh(DispMode::MusicFiles);
  list_->Show(0, 0);
  loop_.RunFor(1s);
  EXPECT_EQ(list_->Text(0, ManagerColumn::Size), u"0.00"_s);
}

TEST_F(TrackListTest, TheFilterListsATrackOnceForEachReferenceThatItBears) {
  Add(u"one"_s, u"Rock,Pop"_s, u"Ann"_s);
  Add(u"two"_s, u"Rock Opera"_s);
  Add(u"three"_s, u"rock"_s, u"Bob"_s);
  Open();
  Filter({});
  EXPECT_EQ(list_->Count(), 3) << "nothing to filter by";
  Filter({{ReferenceSet::Genres, u"Rock"_s}, {ReferenceSet::Artists, u"Ann"_s}});
  EXPECT_THAT(Names(), ElementsAre(u"one.mp3"_s, u"three.mp3"_s, u"one.mp3"_s));
  EXPECT_TRUE(list_->Filtered());
  catalogue_.Remove(ToMref(2));
  EXPECT_THAT(Names(), ElementsAre(u"one.mp3"_s, u"three.mp3"_s, u"one.mp3"_s));
  catalogue_.Remove(ToMref(1));
  EXPECT_THAT(Names(), ElementsAre(u"three.mp3"_s));
  list_->Refresh(DispMode::Jingles);
  Filter({{ReferenceSet::Genres, u"Rock"_s}});
  EXPECT_EQ(list_->Count(), 0) << "jingles have no references";
  EXPECT_EQ(list_->Mode(), DispMode::Jingles);
}

TEST_F(TrackListTest, WhileRefreshesAreSuspendedOnlyWhatWouldBeWrongMoves) {
  Add(u"one"_s);
  Add(u"two"_s);
  Open();
  list_->Suspend(true);
  Add(u"three"_s);
  list_->Refresh(DispMode::References);
  EXPECT_THAT(Names(), ElementsAre(u"one.mp3"_s, u"two.mp3"_s));
  catalogue_.Remove(ToMref(1));
  EXPECT_THAT(Names(), ElementsAre(u"two.mp3"_s)) << "a number would mean another track";
  catalogue_.Rename(ToMref(1), u"deux.mp3"_s);
  EXPECT_THAT(Names(), ElementsAre(u"deux.mp3"_s));
  list_->Suspend(false);
  EXPECT_THAT(Names(), ElementsAre(u"deux.kif"_s, u"three.kif"_s)) << "what was due is made up for";
}

TEST_F(TrackListTest, ALetterLeadsToItsFirstRowOrToThatOfTheNearestLowerOne) {
  for (const char16_t* name : {u"2 hot", u"abba", u"Delta", u"delta two", u"Émile"})
    Add(QString::fromUtf16(name));
  Open();
  EXPECT_EQ(list_->LetterRow(u'D'), 2);
  EXPECT_EQ(list_->LetterRow(u'Z'), 2);
  EXPECT_EQ(list_->LetterRow(u'C'), 1);
  EXPECT_EQ(list_->LetterRow(u'9'), 0);
  EXPECT_EQ(list_->LetterRow(u'1'), -1);
  EXPECT_EQ(list_->RowBeginning(u"dEL"_s, 3), 3);
  EXPECT_EQ(list_->RowBeginning(u"é"_s, 0), 4);
  EXPECT_EQ(list_->RowBeginning(u"x"_s, 0), -1);
}

TEST_F(TrackListTest, SortsByWhatAColumnMeansAndTellsWhereEachRowWent) {
  Add(u"b"_s, {}, {}, u"-10,1"_s, u"90"_s, 4000);
  Add(u"a"_s, u"Rock"_s, u"Ann"_s, u"2.5,1"_s, u"120"_s, 100000);
  Add(u"C"_s, u"Rock"_s, {}, u"-9,1"_s, u"1000"_s, 20000);
  Open();
  std::vector<int> moved;
  QObject::connect(&*list_, &TrackList::RowsSorted, &*list_,
                   [&moved](const std::vector<int>& rowNow) { moved = rowNow; });
  Sort(ManagerColumn::FileName);
  EXPECT_THAT(Names(), ElementsAre(u"a.mp3"_s, u"b.mp3"_s, u"C.mp3"_s));
  EXPECT_THAT(moved, ElementsAre(1, 0, 2));
  Sort(ManagerColumn::Bpm);
  EXPECT_THAT(Names(), ElementsAre(u"b.mp3"_s, u"a.mp3"_s, u"C.mp3"_s));
  Sort(ManagerColumn::Bpm);
  EXPECT_THAT(Names(), ElementsAre(u"C.mp3"_s, u"a.mp3"_s, u"b.mp3"_s)) << "again: the other way round";
  Sort(ManagerColumn::Volume);
  EXPECT_THAT(Names(), ElementsAre(u"b.mp3"_s, u"C.mp3"_s, u"a.mp3"_s));
  Sort(ManagerColumn::Size);
  EXPECT_THAT(Names(), ElementsAre(u"b.mp3"_s, u"C.mp3"_s, u"a.mp3"_s)) << "sizes of rows out of sight too";
  // The order stays for what is listed next, and a track that goes meanwhile takes no other with it.
  loop_.Hold();
  list_->SortBy(ManagerColumn::FileName);
  ASSERT_TRUE(loop_.RunUntil([this] { return loop_.Holds(); }));
  catalogue_.Remove(ToMref(1));
  loop_.LetGo();
  Settle(*list_);
  EXPECT_THAT(Names(), ElementsAre(u"a.mp3"_s, u"C.mp3"_s));
  Filter({{ReferenceSet::Genres, u"Rock"_s}, {ReferenceSet::Artists, u"Ann"_s}});
  EXPECT_THAT(Names(), ElementsAre(u"a.mp3"_s, u"a.mp3"_s, u"C.mp3"_s));
}

TEST_F(TrackListTest, TypedWordsNarrowTheRowsWhateverIsListed) {
  Add(u"Ann - Lovely Day"_s, u"Pop"_s);
  Add(u"Bob - Day Of Löve"_s, u"Pop"_s);
  Add(u"Cid - Night"_s, u"Pop"_s);
  IndexNames();
  Open();
  list_->SetWords(u"love day"_s);
  loop_.RunFor(100ms);
  EXPECT_THAT(Names(), ElementsAre(u"Ann - Lovely Day.mp3"_s, u"Bob - Day Of Löve.mp3"_s));
  list_->SortBy(ManagerColumn::FileName);
  Settle(*list_);
  list_->SortBy(ManagerColumn::FileName);
  Settle(*list_);
  EXPECT_THAT(Names(), ElementsAre(u"Bob - Day Of Löve.mp3"_s, u"Ann - Lovely Day.mp3"_s));
  Add(u"Day - Love"_s);
  Add(u"Eve"_s);
  EXPECT_EQ(list_->Count(), 3) << "of new tracks those that have the words";
  catalogue_.Remove(ToMref(2));
  EXPECT_THAT(Names(), ElementsAre(u"Ann - Lovely Day.mp3"_s, u"Day - Love.mp3"_s));
  list_->SetWords({});
  EXPECT_EQ(list_->Count(), 4);
  catalogue_.AddJingle(database_.Add(Paths::Jingles, u"horn.wav"_s));
  catalogue_.AddJingle(database_.Add(Paths::Jingles, u"bell.wav"_s));
  list_->Refresh(DispMode::Jingles);
  list_->SetWords(u"HORN"_s);
  loop_.RunFor(100ms);
  EXPECT_THAT(Names(), ElementsAre(u"horn.wav"_s));
}

}  // namespace
