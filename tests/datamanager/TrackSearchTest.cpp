#include "datamanager/TrackSearch.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;
using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Field = SearchQuestion::Field;

namespace {

class TrackSearchTest : public ::testing::Test {
 protected:
  void Add(const QString& name, const QString& artists = {}, const QString& albums = {},
           const QString& genres = {}) {
    CatalogueRow row;
    row.name = name;
    row.extension = u".mp3"_s;
    row.artists = u"~ALL ARTISTS"_s + artists;
    row.albums = u"~ALL ALBUMS"_s + albums;
    row.genres = u"~ALL CATEGORIES"_s + genres;
    row.date = u"1999-Dec"_s;
    row.bpm = u"120"_s;
    row.hi = u"7"_s;
    catalogue.Append(row);
  }
  static SearchQuestion Question(Field field, const QString& text, bool whole = false) {
    SearchQuestion question;
    question.field = field;
    question.text = text;
    question.wholeString = whole;
    return question;
  }
  /// The names found.
  QStringList Find(const SearchQuestion& question) {
    search.Search(question);
    EXPECT_TRUE(loop.RunUntil([this] { return !search.Running(); }));
    QStringList names;
    for (const Mref track : search.Results().All()) names.append(search.ShownName(track));
    return names;
  }
  QStringList Find(Field field, const QString& text, bool whole = false) {
    return Find(Question(field, text, whole));
  }

  SimulatedEventLoop loop;
  ScriptedPrompter prompter;
  Catalogue catalogue;
  TrackSearch search{{loop, prompter, catalogue}};
};

TEST_F(TrackSearchTest, LooksForPartsAndForWholeWordsOfATitle) {
  Add(u"Ann - Lovely Day"_s);
  Add(u"Bob - All You Need Is Love"_s);
  Add(u"Love Club - Love-In"_s);
  EXPECT_THAT(Find(Field::Title, u" lOVe "_s),
              ElementsAre(u"Ann - Lovely Day"_s, u"Bob - All You Need Is Love"_s, u"Love Club - Love-In"_s));
  EXPECT_THAT(Find(Field::Title, u"love"_s, true), ElementsAre(u"Bob - All You Need Is Love"_s));
  EXPECT_THAT(Find(Field::Title, u"is love"_s, true), ElementsAre(u"Bob - All You Need Is Love"_s));
  EXPECT_THAT(Find(Field::Title, u"club"_s), IsEmpty()) << "that is the artist's half of the name";
  EXPECT_EQ(search.ResultWords(), u"Search Results = 0 in 0.0 Seconds"_s);
  EXPECT_EQ(search.StateWords(), u"Done"_s);
}

TEST_F(TrackSearchTest, LooksForAnArtistInTheNameAndInTheTracksOwnLine) {
  Add(u"Ann - One"_s, u",Ann,The Guest"_s);
  Add(u"The Guest - Two"_s);
  Add(u"Three"_s);
  EXPECT_THAT(Find(Field::Artist, u"guest"_s), ElementsAre(u"Ann - One"_s, u"The Guest - Two"_s));
  EXPECT_THAT(Find(Field::Artist, u"guest"_s, true), ElementsAre(u"Ann - One"_s, u"The Guest - Two"_s));
  EXPECT_THAT(Find(Field::Artist, u"the"_s, true), ElementsAre(u"The Guest - Two"_s))
      << "in the line the word stands behind a comma";
}

TEST_F(TrackSearchTest, LooksForAlbumsAndGenresAsTheirLinesStand) {
  Add(u"A - One"_s, {}, u",Big Love Songs"_s, u",Rock"_s);
  Add(u"A - Two"_s, {}, u",Love"_s, u",Hard Rock,Pop"_s);
  Add(u"A - Three"_s, {}, u",Big Love"_s);
  EXPECT_THAT(Find(Field::Album, u"love"_s), ElementsAre(u"A - One"_s, u"A - Two"_s, u"A - Three"_s));
  EXPECT_THAT(Find(Field::Album, u"love"_s, true), ElementsAre(u"A - One"_s));
  EXPECT_THAT(Find(Field::Genre, u"rock"_s), ElementsAre(u"A - One"_s, u"A - Two"_s));
  EXPECT_THAT(Find(Field::Genre, u"POP"_s), ElementsAre(u"A - Two"_s));
  EXPECT_EQ(FirstReference(catalogue.TrackGenres[ToMref(2)]), u"Hard Rock"_s);
  EXPECT_EQ(FirstReference(catalogue.TrackArtists[ToMref(2)]), QString());
}

TEST_F(TrackSearchTest, FoldsCaseAndAccentsOfEveryScript) {
  Add(u"Ärzte - Été À Paris"_s);
  Add(u"Straße - Weiß"_s);
  EXPECT_THAT(Find(Field::Title, u"ÉTÉ à"_s), ElementsAre(u"Ärzte - Été À Paris"_s));
  EXPECT_THAT(Find(Field::Artist, u"ärz"_s), ElementsAre(u"Ärzte - Été À Paris"_s));
  EXPECT_THAT(Find(Field::Title, u"weiss"_s), ElementsAre(u"Straße - Weiß"_s));
  Add(u"Bjork - Plain"_s, u",Sigur Rós"_s);
  EXPECT_THAT(Find(Field::Title, u"ete a paris"_s), ElementsAre(u"Ärzte - Été À Paris"_s));
  EXPECT_THAT(Find(Field::Artist, u"björk"_s), ElementsAre(u"Bjork - Plain"_s));
  EXPECT_THAT(Find(Field::Artist, u"ROS"_s), ElementsAre(u"Bjork - Plain"_s));
}

TEST_F(TrackSearchTest, DateBpmAndHiPosRuleOutByTheirWholeValue) {
  Add(u"A - One"_s);
  Add(u"A - Two"_s);
  TrackEdit edit;
  edit.bpm = u"12"_s;
  catalogue.Change(ToMref(2), edit);
  SearchQuestion question;
  question.date = u"1999-DEC"_s;
  EXPECT_THAT(Find(question), ElementsAre(u"A - One"_s, u"A - Two"_s));
  question.bpm = u" 12 "_s;
  EXPECT_THAT(Find(question), ElementsAre(u"A - Two"_s));
  question.hiPos = u"8"_s;
  EXPECT_THAT(Find(question), IsEmpty());
}

TEST_F(TrackSearchTest, FindsANameWithoutADashByItsTitleAndTurnsTheDisplayRound) {
  Add(u"Jingle Bells"_s);
  Add(u"Ann -  Bells - Live "_s);
  SearchQuestion question = Question(Field::Title, u"bells"_s);
  question.titleFirst = true;
  EXPECT_THAT(Find(question), ElementsAre(u"Jingle Bells - "_s, u"Bells - Live - Ann"_s));
  EXPECT_THAT(Find(Field::Artist, u"jingle"_s), IsEmpty());
}

TEST_F(TrackSearchTest, FourEmptyBoxesStartNothingAndKeepTheResults) {
  Add(u"Ann - One"_s);
  EXPECT_EQ(Find(Field::Title, u"one"_s).size(), 1);
  EXPECT_EQ(Find(SearchQuestion()).size(), 1);
}

TEST_F(TrackSearchTest, ASecondClickStopsItAndKeepsWhatWasFound) {
  for (int number = 0; number < 20000; ++number) Add(u"Ann - Song %1"_s.arg(number));
  const SearchQuestion question = Question(Field::Title, u"song"_s);
  search.Search(question);
  EXPECT_EQ(search.Caption(), u"CANCEL"_s);
  search.Search(question);
  EXPECT_TRUE(loop.RunUntil([this] { return !search.Running(); }));
  EXPECT_EQ(search.Caption(), u"SEARCH"_s);
  EXPECT_GT(search.Results().Count(), 0);
  EXPECT_LT(search.Results().Count(), 20000);
  EXPECT_THAT(prompter.Told(), ElementsAre(u"Search Interupted By User !"_s));
  EXPECT_TRUE(search.StateWords().isEmpty());

  EXPECT_EQ(Find(question).size(), 20000) << "a new search begins from the first track again";
}

}  // namespace
