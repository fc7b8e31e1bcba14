#include "database/Paths.h"
#include "platform/ErrorLog.h"

#include <gtest/gtest.h>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;

TEST(Paths, ASettingWithFewerFieldsLeavesTheLastSlotsEmpty) {
  const Paths paths = Paths::FromSetting(u"/a,/b c,/music/"_s);
  EXPECT_EQ(paths(Paths::Playlists), u"/a"_s);
  EXPECT_EQ(paths(Paths::Jingles), u"/b c"_s);
  EXPECT_EQ(paths(Paths::Music), u"/music"_s) << "no separator at the end, or it would stand twice later";
  EXPECT_EQ(paths(Paths::Info), QString());
  EXPECT_EQ(Paths::FromSetting(u"/"_s)(1), u"/"_s);
  EXPECT_EQ(Paths::FromSetting(paths.ToSetting()), paths);
}

TEST(Paths, ACommaInAFolderStaysInItsField) {
  Paths paths = Paths::Below(u"/rock, pop/100%2C"_s);
  EXPECT_EQ(Paths::FromSetting(paths.ToSetting()), paths);
  EXPECT_EQ(paths.ToSetting().count(u','), 7) << "whoever splits at commas finds eight fields";
}

TEST(Paths, FieldsBeyondTheEighthAreNotTakenAndTheTableEndsAtNine) {
  const Paths paths = Paths::FromSetting(u"1,2,3,4,5,6,7,8,9,10,11"_s);
  EXPECT_EQ(paths(8), u"8"_s);
  EXPECT_EQ(paths(0), QString());
  EXPECT_EQ(paths(9), QString());
  EXPECT_THROW(static_cast<void>(paths(10)), Failure);
  EXPECT_THROW(static_cast<void>(paths(-1)), Failure);
}

TEST(Paths, ANewDatabaseHasItsEightFoldersInTheOrderOfTheTable) {
  EXPECT_EQ(Paths::Below(u"/db"_s).ToSetting(),
            u"/db/Kelvo2007_Playlists,/db/Kelvo2007_Jingles,/db/Kelvo2007_Music files,/db/Kelvo2007_Extra,"
            "/db/Kelvo2007_Categories,/db/Kelvo2007_Artists,/db/Kelvo2007_Albums,/db/Kelvo2007_Utility"_s);
}

}  // namespace
}  // namespace kelvo
