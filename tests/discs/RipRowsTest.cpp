#include "database/TestDatabase.h"
#include "discs/RipChecks.h"
#include "support/ScriptedPrompter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;
using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

namespace {

cTrack Named(const QString& name, const QString& artist, const QString& year) {
  cTrack track;
  track.track.number = 7;
  track.name = name;
  track.artist = artist;
  track.year = year;
  return track;
}

TEST(TheNameOfARippedFile, IsReadBackAsItWasTyped) {
  const cTrack track = Named(u"The Band - Song"_s, u"The Band"_s, u"1999-Dec"_s);
  EXPECT_EQ(track.FileName(u"The Album"_s, 0), u"The Band/The Band - Song#1999-Dec#The Album#"_s);
  EXPECT_EQ(track.FileName(u"The Album"_s, 1), u"The Band/The Band - The Band - Song#1999-Dec#The Album#"_s);
  const StagedFile read = ReadStagedPath(u"/u/"_s + track.FileName(u"The Album"_s, 0) + u".Mp3"_s);
  EXPECT_EQ(read.name.artist, u"The Band"_s);
  EXPECT_EQ(read.name.title, u"The Band - Song"_s);
  EXPECT_EQ(read.name.date, u"1999-Dec"_s);
  EXPECT_EQ(read.name.album, u"The Album"_s);

  EXPECT_EQ(Named({}, {}, {}).FileName({}, 1), u"Track 07"_s);
  EXPECT_EQ(Named({}, {}, u"0000-xxx"_s).FileName({}, 0), u"Track 07#0000-xxx"_s);
  EXPECT_EQ(Named(u" a\\b/c:d?e*f<g>h|i#j "_s, u"AC/DC"_s, {}).FileName(u"What?"_s, 0),
            u"AC_DC/a_b_c_d_e_f_g_h_i_j#What_#"_s);
  EXPECT_EQ(Named(u"x"_s, u".hidden"_s, {}).FileName({}, 0), u"_hidden/x"_s) << "or nobody finds it again";
  const QString longName(300, QChar(0x00e4));
  const QString file = Named(longName, longName, u"1999-Dec"_s).FileName(u"Album"_s, 0);
  EXPECT_LE(file.section(u'/', 0, 0).toUtf8().size(), 255);
  EXPECT_LE((file.section(u'/', 1) + u".Mp3"_s).toUtf8().size(), 255);
  EXPECT_TRUE(file.endsWith(u"#1999-Dec#Album#"_s));
}

class TheGridOfTheRipper : public ::testing::Test {
 protected:
  void SetUp() override {
    toc_.performer = u"The Band"_s;
    toc_.tracks = {{.number = 1, .first = 300, .sectors = 4500, .title = u"One"_s},
                   {.number = 2, .first = 4800, .sectors = 4500, .title = u"Two"_s, .performer = u"Guest"_s},
                   {.number = 3, .first = 9300, .sectors = 100, .audio = false},
                   {.number = 4, .first = 20800, .sectors = 7500}};
    rows_.Fill(toc_, 0);
  }
  QStringList Column(RipRows::Column column) {
    QStringList cells;
    for (int row = 0; row < rows_.Count(); ++row) cells.append(RipRows::Text(rows_.Row(row), column));
    return cells;
  }
  void TickOnly(const std::vector<int>& rows) {
    for (int row = 0; row < rows_.Count(); ++row)
      rows_.Tick(row, std::count(rows.begin(), rows.end(), row) > 0);
  }

  ScriptedPrompter prompter_;
  DiscToc toc_;
  RipRows rows_{prompter_};
};

TEST_F(TheGridOfTheRipper, TakesTheDiscsNamesAndOffersWhatIsHidden) {
  EXPECT_EQ(Column(RipRows::Name),
            (QStringList{u"Track 00"_s, u"The Band - One"_s, u"Guest - Two"_s, u"Track 04"_s}));
  EXPECT_EQ(Column(RipRows::Artist), (QStringList{u"The Band"_s, u"The Band"_s, u"Guest"_s, u"The Band"_s}));
  EXPECT_EQ(Column(RipRows::Track), (QStringList{u"0"_s, u"1"_s, u"2"_s, u"4"_s})) << "data is left out";
  EXPECT_EQ(Column(RipRows::StartTime), (QStringList{u"00:00"_s, u"00:04"_s, u"01:04"_s, u"04:37"_s}));
  EXPECT_EQ(Column(RipRows::Length), (QStringList{u"00:04"_s, u"01:00"_s, u"01:00"_s, u"01:40"_s}));
  EXPECT_EQ(Column(RipRows::Size).first(), u"0.67MB"_s);
  EXPECT_THAT(rows_.Ticked(), ElementsAre(1, 2, 3));
  rows_.Invert();
  EXPECT_THAT(rows_.Ticked(), ElementsAre(0));
  rows_.TickAll();
  EXPECT_EQ(rows_.Ticked().size(), 4U);
  rows_.Fill(toc_, 1);
  EXPECT_EQ(Column(RipRows::Name)[2], u"Two"_s) << "the file's name puts the artist in front";
}

TEST_F(TheGridOfTheRipper, RefusesWhatCannotBeAndNamesTheFirstError) {
  EXPECT_FALSE(rows_.SetText(1, RipRows::Year, u"1999-dec"_s));
  EXPECT_FALSE(rows_.SetText(1, RipRows::Year, u"99-Dec"_s));
  EXPECT_TRUE(rows_.SetText(1, RipRows::Year, u"1999-Dec"_s));
  EXPECT_FALSE(rows_.FillTicked(RipRows::Artist, u" "_s));
  EXPECT_FALSE(rows_.SetText(1, RipRows::Artist, u"~ALL ARTISTS"_s));
  EXPECT_EQ(prompter_.Told().last(), u"Please Select Or Enter a Valid Artist Name"_s);
  EXPECT_FALSE(rows_.SetText(1, RipRows::Track, u"9"_s));
  EXPECT_TRUE(GridError(rows_).isEmpty());
  EXPECT_TRUE(rows_.SetText(2, RipRows::Name, u" "_s));
  EXPECT_EQ(GridError(rows_), u"The Error Is In Row 3 Of Track Name Column"_s);
  rows_.Tick(2, false);
  EXPECT_TRUE(GridError(rows_).isEmpty()) << "rows without a tick may be as they are";
  toc_.performer = u"~Band"_s;
  rows_.Fill(toc_, 0);
  EXPECT_EQ(GridError(rows_), u"The Error Is In Row 2 Of Artist Name Column"_s);
}

TEST_F(TheGridOfTheRipper, AsksForItsDefaultsWhereSomethingIsEmpty) {
  TickOnly({1, 3});
  const QString years = u"1 Or More Entries In Year Columns are Empty ! (Default Date = 0000-xxx)"_s;
  const QString end = u"Would You Like Kelvo To Insert Defaults into Empty Rows ?"_s;
  EXPECT_EQ(DefaultsQuestion(rows_, u"Kelvo"_s), years + u"\r\n"_s + end);
  rows_.SetText(3, RipRows::Artist, {});
  EXPECT_EQ(DefaultsQuestion(rows_, u"Kelvo"_s),
            u"1 or more Entries in Artist Columns are Empty ! (Default Artist = Unknown)\r\n"_s + years +
                u"\r\n"_s + end);
  EXPECT_TRUE(AnyUnconventional(rows_, 0)) << "\"Track 04\"";
  EXPECT_TRUE(AnyUnconventional(rows_, 1)) << "nobody is in front of it";
  rows_.InsertDefaults();
  EXPECT_EQ(Column(RipRows::Artist)[3], u"Unknown"_s);
  EXPECT_EQ(Column(RipRows::Year), (QStringList{{}, u"0000-xxx"_s, {}, u"0000-xxx"_s}));
  EXPECT_TRUE(DefaultsQuestion(rows_, u"Kelvo"_s).isEmpty());
  EXPECT_FALSE(AnyUnconventional(rows_, 1));
}

TEST_F(TheGridOfTheRipper, MarksWhatTheDatabaseHasAlready) {
  const TestDatabase database;
  (void)database.Add(Paths::Music, u"THE BAND - one.mp3"_s);
  (void)database.Add(Paths::Utility, u"Guest/guest - TWO#2001-xxx#Other#.Mp3"_s);
  const KnownNames known = KnownNames::Read(database.paths);
  TickOnly({1, 2, 3});
  EXPECT_EQ(RipDbCheck(rows_, known, 0, u".Mp3"_s),
            u"1 File/s  Already Exist In The Main Data Base\r\n"
            "These File/s Have Been Highlighted In Yellow\r\n"
            "If It Is Your Intention to Replace the Data base File/s, Click O.K.\r\n"
            "1 File/s Already Existed In The Utilities Folder And Can Not Be Copied\r\n"
            "Without first Re-Naming Them !\r\n"
            "These File/s Have Been Deselected And Highlighted In Red\r\n"
            "Continue With Rip ?"_s);
  EXPECT_THAT(rows_.Ticked(), ElementsAre(1, 3));
  EXPECT_EQ(rows_.Row(1).mark, RipMark::InDatabase);
  EXPECT_EQ(rows_.Row(2).mark, RipMark::InUtility);
  rows_.SetText(2, RipRows::Name, u"Guest - Three"_s);
  EXPECT_EQ(rows_.Row(2).mark, RipMark::None);
  TickOnly({2, 3});
  EXPECT_TRUE(RipDbCheck(rows_, known, 0, u".Mp3"_s).isEmpty());
}

}  // namespace
