// Changes of the catalogue reach the lists of the browser.

#include "console/BrowserFixture.h"

using namespace kelvo;
using namespace kelvo::testing;

namespace {

TEST_F(Browsing, TakesNewTracksIntoWhatIsListedAndKeepsEveryChoice) {
  AddFive();
  Press(Stage::Genre, u"POP"_s);
  Press(Stage::Artist, u"ABBA"_s);
  browser_.ShowAllAlbums();
  Press(Stage::Album, u"JAZZ"_s);
  Press(Stage::Album, u"JAZZ"_s);
  Press(Stage::Genre, u"POP"_s);
  Press(Stage::Artist, u"QUEEN"_s);
  ASSERT_EQ(Rows(), (Numbers{4}));
  int resets = 0;
  QObject::connect(&browser_, &LibraryBrowser::RowsReset, [&] { ++resets; });
  Add(u"queen - radio ga ga"_s, u"Pop"_s, u"Queen,Roger"_s, u"The Works"_s);
  Add(u"queen - new rock"_s, u"Rock"_s, u"Queen"_s, u"The Miracle"_s);
  Add(u"blondie - atomic"_s, u"Pop"_s, u"Blondie"_s, u"Eat"_s);
  catalogue_.AddReference(ReferenceSet::Genres, u"Ambient"_s);
  Settle();
  EXPECT_EQ(Rows(), (Numbers{4, 6}));
  EXPECT_EQ(resets, 0);
  EXPECT_EQ(Names(Stage::Genre).front(), u"AMBIENT"_s);
  EXPECT_EQ(SelectedName(Stage::Genre), u"POP"_s);
  EXPECT_EQ(browser_.Tag(Stage::Genre), browser_.Selected(Stage::Genre));
  EXPECT_EQ(SelectedName(Stage::Artist), u"QUEEN"_s);
  EXPECT_EQ(Names(Stage::Artist),
            (QStringList{u"ABBA"_s, u"QUEEN"_s, u"DAVID BOWIE"_s, u"ROGER"_s, u"BLONDIE"_s}));
  EXPECT_EQ(Names(Stage::Album), (QStringList{u"HOT SPACE"_s, u"THE WORKS"_s}));

  // A track that was replaced may fit by now; what the words look for is found, each at its place.
  browser_.SortBy(LibraryColumn::Track);
  browser_.SetWords(u"e"_s);
  TrackEdit edit;
  edit.genres = u"~ALL CATEGORIES,Pop"_s;
  catalogue_.Change(ToMref(3), edit);
  Add(u"queen - a new one"_s, u"Pop"_s, u"Queen"_s);
  Settle();
  EXPECT_EQ(Rows(), (Numbers{9, 3, 6, 4}));
}

TEST_F(Browsing, TakesNewTracksInBehindAListingThatRunsAndNoOldOnesIntoOneThatWasStopped) {
  AddMany(1000);
  browser_.PressName(Stage::Genre, 0);
  ASSERT_TRUE(browser_.Listing());
  Add(u"late - song"_s, u"A line that nobody had,Even"_s, u"Late"_s);
  Settle();
  EXPECT_EQ(browser_.ListedCount(), 501);
  EXPECT_EQ(browser_.Count(Stage::Artist), 501);

  browser_.PressName(Stage::Genre, 1);
  const int listed = browser_.ListedCount();
  browser_.StopListing();
  Settle();
  ASSERT_EQ(browser_.ListedCount(), listed);
  Add(u"later - song"_s, u"Odd"_s, u"Later"_s);
  Settle();
  EXPECT_EQ(browser_.ListedCount(), listed + 1);
  EXPECT_EQ(browser_.Count(Stage::Artist), listed + 1);

  // The operator chooses another genre while the new tracks are looked through.
  Add(u"last - song"_s, u"Even"_s, u"Last"_s);
  loop_.RunFor(1us);
  ASSERT_TRUE(browser_.TakingIn());
  browser_.PressName(Stage::Genre, 0);
  Settle();
  EXPECT_EQ(browser_.ListedCount(), 502);
}

TEST_F(Browsing, BeginsAnewWhenTheCatalogueChangesEvenInTheMiddleOfAListing) {
  AddMany(1000);
  browser_.PressName(Stage::Genre, 0);
  ASSERT_TRUE(browser_.Listing());
  catalogue_.Replace(CatalogueTables(tree_.Path(u"music"_s)));
  AddFive();
  EXPECT_FALSE(browser_.Listing());
  EXPECT_EQ(Rows(), Numbers());
  EXPECT_EQ(browser_.Count(Stage::Artist), 0);
  EXPECT_EQ(browser_.Chosen(Stage::Genre), QString());
  Press(Stage::Genre, u"GLAM"_s);
  EXPECT_EQ(Rows(), (Numbers{1}));
  EXPECT_EQ(Names(Stage::Artist), (QStringList{u"ABBA"_s}));
}

TEST_F(Browsing, ARemovedTrackLeavesListOrderAndWordsAndTheOthersStay) {
  AddFive();
  Press(Stage::Genre, u"POP"_s);
  browser_.SortBy(LibraryColumn::Date);
  Settle();
  ASSERT_EQ(Rows(), (Numbers{4, 2, 1}));
  int resets = 0;
  std::vector<int> removed;
  QObject::connect(&browser_, &LibraryBrowser::RowsReset, [&] { ++resets; });
  QObject::connect(&browser_, &LibraryBrowser::RowRemoved, [&](int row) { removed.push_back(row); });
  browser_.OpenInfo(ToMref(2));
  catalogue_.Remove(ToMref(3));
  EXPECT_EQ(Rows(), (Numbers{3, 2, 1})) << "it was not listed, and the numbers are others";
  EXPECT_TRUE(browser_.Info());
  catalogue_.Remove(ToMref(2));
  EXPECT_EQ(Rows(), (Numbers{2, 1}));
  EXPECT_EQ(removed, (std::vector<int>{1}));
  EXPECT_FALSE(browser_.Info()) << "it told of the track that is gone";
  EXPECT_EQ(resets, 0);
  Settle();
  browser_.SetWords(u"pressure"_s);
  EXPECT_EQ(Rows(), (Numbers{2}));
  browser_.SetWords(u"nobody"_s);
  EXPECT_TRUE(browser_.Rows().empty());
  Press(Stage::Genre, u"POP"_s);
  EXPECT_EQ(Rows(), (Numbers{3})) << "without a choice the words look everywhere";
}

TEST_F(Browsing, AListingPassesOverNoTrackThatFollowsARemovedOne) {
  AddMany(1000);
  browser_.PressName(Stage::Genre, 0);
  ASSERT_TRUE(browser_.Listing());
  const int listed = browser_.ListedCount();
  ASSERT_GT(listed, 10);
  for (int number = 0; number < 10; ++number) catalogue_.Remove(ToMref(1));
  Settle();
  EXPECT_EQ(browser_.ListedCount(), 495);
  EXPECT_EQ(browser_.Rows().back(), ToMref(990));
  // A sort that is under way begins anew with the numbers of now.
  browser_.SortBy(LibraryColumn::Track);
  catalogue_.Remove(ToMref(1));
  Settle();
  EXPECT_EQ(Rows().size(), 495U);
  EXPECT_EQ(catalogue_.TrackNames[browser_.Rows().front()], u"artist 100 - song"_s);
}

TEST_F(Browsing, ANewNameOfATrackCountsForWordsAndOrder) {
  AddFive();
  browser_.SetWords(u"abba"_s);
  browser_.SortBy(LibraryColumn::Track);
  Settle();
  ASSERT_EQ(Rows(), (Numbers{2, 1}));
  int resets = 0;
  QObject::connect(&browser_, &LibraryBrowser::RowsReset, [&] { ++resets; });
  catalogue_.Rename(ToMref(1), u"Ábba - a new name.mp3"_s);
  Settle();
  EXPECT_EQ(Rows(), (Numbers{2, 1})) << "an accented letter sorts behind";
  catalogue_.Rename(ToMref(2), u"fernando.mp3"_s);
  catalogue_.Rename(ToMref(5), u"abba - aaa.mp3"_s);
  Settle();
  EXPECT_EQ(Rows(), (Numbers{5, 1}));
  EXPECT_EQ(resets, 0);
  browser_.SetWords(u"nando"_s);
  EXPECT_EQ(Rows(), (Numbers{2}));
}

TEST_F(Browsing, ARenamedOrDeletedNameKeepsTheChoiceOrReleasesIt) {
  AddFive();
  Press(Stage::Genre, u"POP"_s);
  Press(Stage::Artist, u"QUEEN"_s);
  ASSERT_EQ(Rows(), (Numbers{4}));
  TrackEdit edit;
  edit.genres = u"~ALL CATEGORIES,Zydeco"_s;
  for (const int row : {1, 2}) catalogue_.Change(ToMref(row), edit);
  edit.artists = u"~ALL ARTISTS,The Queen,David Bowie"_s;
  catalogue_.Change(ToMref(4), edit);
  catalogue_.RenameReference(ReferenceSet::Genres, u"Pop"_s, u"Zydeco"_s);
  catalogue_.RenameReference(ReferenceSet::Artists, u"Queen"_s, u"The Queen"_s);
  Settle();
  EXPECT_EQ(Names(Stage::Genre), (QStringList{u"GLAM"_s, u"ROCK"_s, u"ROCK OPERA"_s, u"ZYDECO"_s}));
  EXPECT_EQ(SelectedName(Stage::Genre), u"ZYDECO"_s);
  EXPECT_EQ(browser_.Chosen(Stage::Genre), u"ZYDECO"_s);
  EXPECT_EQ(Names(Stage::Artist), (QStringList{u"ABBA"_s, u"THE QUEEN"_s, u"DAVID BOWIE"_s}));
  EXPECT_EQ(browser_.Chosen(Stage::Artist), u"THE QUEEN"_s);
  EXPECT_EQ(browser_.Summary(300), u"ZYDECO / THE QUEEN / "_s);
  EXPECT_EQ(Rows(), (Numbers{4}));
  Add(u"new - song"_s, u"Zydeco"_s, u"The Queen"_s);
  Settle();
  EXPECT_EQ(Rows(), (Numbers{4, 6})) << "the listing goes by the new names";

  catalogue_.RemoveReference(ReferenceSet::Artists, u"The Queen"_s);
  EXPECT_EQ(Names(Stage::Artist), (QStringList{u"ABBA"_s, u"DAVID BOWIE"_s}));
  EXPECT_EQ(browser_.Tag(Stage::Artist), -1);
  EXPECT_EQ(browser_.Chosen(Stage::Artist), QString());
  EXPECT_EQ(Rows(), (Numbers{4, 6}));
}

TEST_F(Browsing, WordsInABigCatalogueAreFoundTurnByTurnAndFollowWhatChangesMeanwhile) {
  AddMany(12000);
  browser_.SetWords(u"artist 12000"_s);
  EXPECT_TRUE(browser_.FindingWords()) << "more tracks than one turn looks through";
  EXPECT_FALSE(browser_.Narrowed()) << "nothing half found is shown";
  catalogue_.Rename(ToMref(7), u"artist 12000 - early song.mp3"_s);
  catalogue_.Remove(ToMref(1));
  Settle();
  EXPECT_EQ(Rows(), (Numbers{6, 11999}));
  browser_.SetWords(u"artist 11"_s);
  browser_.SetWords({});
  Settle();
  EXPECT_TRUE(Rows().empty()) << "the words were taken back before they were found";
}

}  // namespace
