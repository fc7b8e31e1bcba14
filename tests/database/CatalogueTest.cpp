#include "database/KeptTracks.h"

#include <gmock/gmock.h>

#include <utility>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

TEST(PackedTextColumn, ChangedTextsLeaveTheOthersAlone) {
  PackedTextColumn column;
  for (int row = 0; row < 100; ++row) column.Append("row " + std::to_string(row));
  // Enough waste that the column packs itself again, more than once.
  const QString longText(1000, u'ä');
  for (int round = 0; round < 300; ++round) column.Set(ToMref(7), longText + QString::number(round));
  EXPECT_EQ(column[ToMref(7)], longText + u"299"_s);
  EXPECT_EQ(column[ToMref(6)], u"row 6"_s);
  EXPECT_EQ(column[ToMref(99)], u"row 99"_s);
  EXPECT_LT(column.Bytes(), 600'000U);
}

TEST(PackedTextColumn, RowsBeyondTheEndAreEmpty) {
  PackedTextColumn column;
  column.Append("");
  column.Append("one");
  column.Set(ToMref(2), u"nothing"_s);
  EXPECT_EQ(column[ToMref(2)], QString());
  EXPECT_EQ(column[ToMref(-5)], QString());
  EXPECT_EQ(column.Rows(), 2U);
}

TEST(PooledTextColumn, RowsOfOneTextShareItUntilOneChanges) {
  PooledTextColumn column;
  for (const char* text : {"", "Rock", "Pop", "Rock"}) column.Append(text);
  EXPECT_EQ(column.Id(ToMref(1)), column.Id(ToMref(3)));
  EXPECT_EQ(column.Distinct(), 3U);
  column.Set(ToMref(1), u"Größe"_s);
  EXPECT_EQ(column[ToMref(1)], u"Größe"_s);
  EXPECT_EQ(column[ToMref(3)], u"Rock"_s);
  EXPECT_EQ(column[ToMref(4)], QString());
}

TEST(Catalogue, RowZeroIsNoTrack) {
  Catalogue catalogue;
  catalogue.Replace(CatalogueTables(u"/music"_s));
  EXPECT_EQ(catalogue.LastTrack(), 0);
  EXPECT_FALSE(catalogue.IsTrack(Mref::None));
  EXPECT_EQ(catalogue.TrackPaths(Mref::None), QString());
  catalogue.Rename(Mref::None, u"nothing.mp3"_s);
  catalogue.Remove(Mref::None);
  EXPECT_EQ(catalogue.TrackDurations(Mref::None), 0);
  EXPECT_EQ(catalogue.TrackDurations(ToMref(-3)), 0);

  CatalogueRow row;
  row.name = u"A.B - C"_s;
  row.extension = u".Mp3"_s;
  EXPECT_EQ(catalogue.Append(row), ToMref(1));
  EXPECT_EQ(catalogue.TrackPaths(ToMref(1)), u"/music/A.B - C.Mp3"_s);
}

TEST(Catalogue, TheMainGenreIsTheFirstThatIsNotReserved) {
  Catalogue catalogue;
  const auto genreOf = [&catalogue](const QString& line) {
    CatalogueRow row;
    row.genres = line;
    return catalogue.MainGenre(catalogue.Append(row));
  };
  EXPECT_EQ(genreOf(u"~ALL CATEGORIES,~X,Rock,Pop"_s), u"Rock"_s);
  EXPECT_EQ(genreOf(u"~ALL CATEGORIES"_s), u"UnDefined"_s);
  EXPECT_EQ(genreOf(u"Rock"_s), u"UnDefined"_s) << "one name alone is the list's base item";
  EXPECT_EQ(genreOf(u"~ALL CATEGORIES,~X"_s), u"UnDefined"_s);
}

CatalogueRow RowOf(const QString& name) {
  CatalogueRow row;
  row.name = name;
  row.extension = u".mp3"_s;
  row.genres = u"~ALL CATEGORIES,"_s + name.toUpper();
  row.duration = static_cast<double>(name.size());
  return row;
}

/// A catalogue of four tracks, and what it tells, in words.
class CatalogueFeed : public ::testing::Test {
 protected:
  CatalogueFeed() {
    CatalogueTables tables(u"/music"_s);
    for (const char* name : {"a", "bb", "ccc", "dddd"}) tables.Append(RowOf(QString::fromLatin1(name)));
    catalogue_.Replace(std::move(tables));
    catalogue_.Listen(
        &listener_, [this](const CatalogueReplaced&) { told_.append(u"replaced"_s); },
        [this](const TrackAdded& added) {
          Tell(u"added"_s, added.track, catalogue_.TrackNames[added.track]);
        },
        [this](const TrackChanged& change) {
          Tell(u"changed %1"_s.arg(change.fields.toInt()), change.track,
               u"%1 to %2"_s.arg(change.durationBefore).arg(catalogue_.TrackDurations(change.track)));
        },
        [this](const TrackRenamed& renamed) {
          EXPECT_EQ(catalogue_.TrackPaths(renamed.track), renamed.path);
          Tell(u"renamed"_s, renamed.track, renamed.pathBefore + u" to "_s + renamed.path);
        },
        [this](const TrackRemoved& removed) { Tell(u"removed"_s, removed.track, removed.path); },
        [this](const ReferenceChanged& change) {
          told_.append(u"reference %1:%2"_s.arg(change.before, change.name));
        },
        [this](const StagedFileChanged& change) {
          told_.append((change.waits ? u"staged "_s : u"taken "_s) + change.path);
        });
  }
  void Tell(const QString& what, Mref track, const QString& words) {
    told_.append(u"%1 %2 %3"_s.arg(what).arg(ToInt(track)).arg(words));
  }
  [[nodiscard]] QStringList Told() { return std::exchange(told_, {}); }

  Catalogue catalogue_;
  QObject listener_;
  QStringList told_;
};

TEST_F(CatalogueFeed, WhatIsDoneToATrackIsToldOnceAndWhatChangesNothingIsNot) {
  catalogue_.Append(RowOf(u"eeeee"_s));
  EXPECT_THAT(Told(), ElementsAre(u"added 5 eeeee"_s));
  TrackEdit edit;
  edit.bpm = u"0"_s;
  edit.genres = catalogue_.TrackGenres[ToMref(2)];
  catalogue_.Change(ToMref(2), edit);
  EXPECT_TRUE(Told().isEmpty());
  edit.bpm = u"120"_s;
  edit.duration = 99;
  catalogue_.Change(ToMref(2), edit);
  EXPECT_THAT(Told(), ElementsAre(u"changed 272 2 2 to 99"_s));
  catalogue_.Rename(ToMref(3), u"New.Name.WAV"_s);
  catalogue_.Rename(ToMref(3), u"New.Name.WAV"_s);
  EXPECT_THAT(Told(), ElementsAre(u"renamed 3 /music/ccc.mp3 to /music/New.Name.WAV"_s));
  EXPECT_EQ(catalogue_.TrackNames[ToMref(3)], u"New.Name"_s);
  catalogue_.Remove(ToMref(6));
  catalogue_.Rename(ToMref(6), u"x.mp3"_s);
  catalogue_.Change(ToMref(0), edit);
  EXPECT_TRUE(Told().isEmpty());
}

TEST_F(CatalogueFeed, ARemovalMovesEveryColumnUp) {
  catalogue_.Remove(ToMref(2));
  EXPECT_THAT(Told(), ElementsAre(u"removed 2 /music/bb.mp3"_s));
  ASSERT_EQ(catalogue_.LastTrack(), 3);
  EXPECT_EQ(catalogue_.TrackPaths(ToMref(2)), u"/music/ccc.mp3"_s);
  EXPECT_EQ(catalogue_.MainGenre(ToMref(2)), u"CCC"_s);
  EXPECT_EQ(catalogue_.TrackDurations(ToMref(2)), 3);
  EXPECT_EQ(catalogue_.Find(u"/music/dddd.mp3"_s), ToMref(3));
  EXPECT_EQ(catalogue_.Find(u"/music/bb.mp3"_s), Mref::None);
  EXPECT_EQ(catalogue_.Find(u"/elsewhere/a.mp3"_s), Mref::None);
  EXPECT_EQ(catalogue_.Append(RowOf(u"bb"_s)), ToMref(4));
}

TEST_F(CatalogueFeed, NamesKeepTheirOrderInAnyCase) {
  for (const char* name : {"Queen", "abba", "Blur", "abba"})
    catalogue_.AddReference(ReferenceSet::Artists, QString::fromLatin1(name));
  EXPECT_THAT(catalogue_.ArtistList, ElementsAre(u"abba"_s, u"Blur"_s, u"Queen"_s));
  EXPECT_THAT(Told(), ElementsAre(u"reference :Queen"_s, u"reference :abba"_s, u"reference :Blur"_s));
  catalogue_.RenameReference(ReferenceSet::Artists, u"abba"_s, u"The Abba"_s);
  catalogue_.RenameReference(ReferenceSet::Artists, u"nobody"_s, u"x"_s);
  catalogue_.RenameReference(ReferenceSet::Artists, u"Queen"_s, u"Blur"_s);
  EXPECT_THAT(catalogue_.ArtistList, ElementsAre(u"Blur"_s, u"The Abba"_s));
  catalogue_.RemoveReference(ReferenceSet::Artists, u"Blur"_s);
  EXPECT_THAT(Told(),
              ElementsAre(u"reference abba:The Abba"_s, u"reference Queen:Blur"_s, u"reference Blur:"_s));
  EXPECT_TRUE(catalogue_.GenreList.isEmpty());
}

TEST_F(CatalogueFeed, ANewListOfStagedFilesTellsTheDifference) {
  catalogue_.AddStagedFile(u"/u/1"_s);
  catalogue_.AddStagedFile(u"/u/2"_s);
  catalogue_.AddStagedFile(u"/u/2"_s);
  catalogue_.RemoveStagedFile(u"/u/9"_s);
  EXPECT_THAT(Told(), ElementsAre(u"staged /u/1"_s, u"staged /u/2"_s));
  CatalogueTables tables(u"/music"_s);
  tables.StagedFiles = QStringList{u"/u/2"_s, u"/u/3"_s};
  catalogue_.Replace(std::move(tables));
  EXPECT_THAT(Told(), ElementsAre(u"replaced"_s, u"taken /u/1"_s, u"staged /u/3"_s));
  EXPECT_EQ(catalogue_.UtilityCount(), 2);
}

TEST_F(CatalogueFeed, AWalkThatWaitsPassesOverNoTrackWhenOthersAreRemoved) {
  TrackWalk walk(catalogue_);
  KeptTracks kept(catalogue_, {ToMref(4), ToMref(2), ToMref(1)});
  ASSERT_TRUE(walk.Next() && walk.Next());
  catalogue_.Remove(ToMref(2));  // the one that it is at
  catalogue_.Remove(ToMref(1));  // one behind it
  EXPECT_THAT(kept.All(), ElementsAre(ToMref(2), Mref::None, Mref::None));
  QStringList rest;
  while (walk.Next()) rest.append(catalogue_.TrackNames[walk.Track()]);
  EXPECT_THAT(rest, ElementsAre(u"ccc"_s, u"dddd"_s));
  TrackWalk other(catalogue_);
  ASSERT_TRUE(other.Next());
  catalogue_.Replace(CatalogueTables());
  EXPECT_FALSE(other.Next());
  EXPECT_EQ(kept[0], Mref::None);
}

}  // namespace
}  // namespace kelvo
