#include "database/Catalogue.h"

#include <gtest/gtest.h>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;

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
  catalogue.Clear(u"/music"_s);
  EXPECT_EQ(catalogue.LastTrack(), 0);
  EXPECT_FALSE(catalogue.IsTrack(Mref::None));
  EXPECT_EQ(catalogue.TrackPaths(Mref::None), QString());
  catalogue.SetTrackDuration(Mref::None, 99);
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

}  // namespace
}  // namespace kelvo
