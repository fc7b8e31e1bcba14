#include "console/BrowserFixture.h"

using namespace kelvo;
using namespace kelvo::testing;

namespace {

TEST_F(Browsing, NarrowsFromGenreToArtistToAlbum) {
  AddFive();
  EXPECT_EQ(Names(Stage::Genre), (QStringList{u"GLAM"_s, u"POP"_s, u"ROCK"_s, u"ROCK OPERA"_s}));
  EXPECT_TRUE(browser_.Rows().empty());

  Press(Stage::Genre, u"POP"_s);
  EXPECT_EQ(Rows(), (Numbers{1, 2, 4}));
  EXPECT_EQ(Names(Stage::Artist), (QStringList{u"ABBA"_s, u"QUEEN"_s, u"DAVID BOWIE"_s}));
  EXPECT_TRUE(browser_.Yellow(Stage::Artist));
  EXPECT_TRUE(browser_.Filtered(Stage::Artist));
  EXPECT_EQ(browser_.Count(Stage::Album), 0);

  Press(Stage::Artist, u"ABBA"_s);
  EXPECT_EQ(Rows(), (Numbers{1, 2}));
  EXPECT_EQ(Names(Stage::Album), (QStringList{u"WATERLOO"_s, u"GOLD"_s}));
  EXPECT_TRUE(browser_.Filtered(Stage::Album));

  Press(Stage::Album, u"WATERLOO"_s);
  EXPECT_EQ(Rows(), (Numbers{1}));
  EXPECT_EQ(browser_.Summary(300), u"POP / ABBA / WATERLOO"_s);
  EXPECT_EQ(browser_.Summary(12), u"POP / ABBA / WATE"_s);
  Press(Stage::Artist, u"QUEEN"_s);
  EXPECT_EQ(Rows(), Numbers()) << "the album stays chosen";
  Press(Stage::Artist, u"ABBA"_s);
  EXPECT_EQ(Rows(), (Numbers{1}));
}

TEST_F(Browsing, TakesANameOfTheSameLengthInAnyCaseAndNoPartOfOne) {
  AddFive();
  Press(Stage::Genre, u"ROCK"_s);
  EXPECT_EQ(Rows(), (Numbers{3, 4})) << "\"rock\" too, \"Rock Opera\" not";

  Add(u"straße"_s, u"Groß"_s, u"Jürgen"_s);
  Add(u"strasse"_s, u"GROSS"_s, u"Anna"_s);
  AddReferences(ReferenceSet::Genres, {u"Groß"_s, u"Gross"_s});
  Settle();
  Press(Stage::Genre, u"GROß"_s);
  EXPECT_EQ(Rows(), (Numbers{6})) << "a name keeps its length in upper case";
  EXPECT_EQ(Names(Stage::Artist), (QStringList{u"JÜRGEN"_s}));
}

TEST_F(Browsing, ReleasesAChosenNameAtItsSecondPress) {
  AddFive();
  Press(Stage::Genre, u"POP"_s);
  Press(Stage::Artist, u"QUEEN"_s);
  EXPECT_EQ(Rows(), (Numbers{4}));
  Press(Stage::Genre, u"POP"_s);
  EXPECT_EQ(Rows(), (Numbers{3, 4})) << "the artist alone decides";
  EXPECT_EQ(browser_.Chosen(Stage::Genre), QString());
  EXPECT_EQ(browser_.Chosen(Stage::Artist), u"QUEEN"_s);
  Press(Stage::Artist, u"QUEEN"_s);
  EXPECT_EQ(Rows(), (Numbers{3, 4})) << "with nothing chosen the list stays";
  Press(Stage::Genre, u"POP"_s);
  EXPECT_EQ(Rows(), (Numbers{1, 2, 4})) << "and can be chosen again";
}

TEST_F(Browsing, KeepsAChosenArtistWhenAnotherGenreIsChosen) {
  AddFive();
  Press(Stage::Genre, u"POP"_s);
  Press(Stage::Artist, u"QUEEN"_s);
  Press(Stage::Genre, u"ROCK"_s);
  EXPECT_EQ(Rows(), (Numbers{3, 4}));
  EXPECT_EQ(SelectedName(Stage::Artist), u"QUEEN"_s);
  EXPECT_EQ(Names(Stage::Album), (QStringList{u"HOT SPACE"_s})) << "only the tracks change";
}

TEST_F(Browsing, ShowsAllArtistsAndAllAlbumsAndLeavesTheTracks) {
  AddFive();
  Press(Stage::Genre, u"POP"_s);
  Press(Stage::Artist, u"ABBA"_s);
  browser_.ShowAllArtists();
  EXPECT_EQ(Names(Stage::Artist), (QStringList{u"ABBA"_s, u"DAVID BOWIE"_s, u"QUEEN"_s}));
  EXPECT_FALSE(browser_.Yellow(Stage::Artist));
  EXPECT_FALSE(browser_.Filtered(Stage::Artist));
  EXPECT_FALSE(browser_.Filtered(Stage::Album)) << "an empty list is not filtered";
  EXPECT_EQ(browser_.Selected(Stage::Genre), -1);
  EXPECT_EQ(Rows(), (Numbers{1, 2}));
  Press(Stage::Artist, u"QUEEN"_s);
  EXPECT_EQ(Rows(), (Numbers{3, 4}));
  EXPECT_EQ(Names(Stage::Album), (QStringList{u"JAZZ"_s, u"HOT SPACE"_s}));
  browser_.ShowAllAlbums();
  EXPECT_EQ(browser_.Selected(Stage::Artist), -1);
  Press(Stage::Album, u"GOLD"_s);
  EXPECT_EQ(Rows(), (Numbers{1, 2}));
}

TEST_F(Browsing, BlinksItsWordsOverFilteredListsOnly) {
  AddFive();
  Press(Stage::Genre, u"POP"_s);
  browser_.BlinkFilterWords();
  EXPECT_TRUE(browser_.FilterWordsShown(Stage::Artist));
  EXPECT_FALSE(browser_.FilterWordsShown(Stage::Album));
  browser_.BlinkFilterWords();
  EXPECT_FALSE(browser_.FilterWordsShown(Stage::Artist));
  browser_.BlinkFilterWords();
  browser_.ShowAllArtists();
  EXPECT_FALSE(browser_.FilterWordsShown(Stage::Artist));
}

TEST_F(Browsing, StopsAListingWhereItStands) {
  AddMany(1000);
  browser_.PressName(Stage::Genre, 0);
  EXPECT_TRUE(browser_.Listing());
  const int listed = browser_.ListedCount();
  EXPECT_GT(listed, 0);
  browser_.StopListing();
  Settle();
  EXPECT_EQ(browser_.ListedCount(), listed);
  EXPECT_EQ(browser_.Rows().size(), static_cast<std::size_t>(listed));
  EXPECT_EQ(browser_.Count(Stage::Artist), listed);
  EXPECT_TRUE(browser_.Filtered(Stage::Artist));

  browser_.StopListing();
  Press(Stage::Genre, u"ODD"_s);
  EXPECT_EQ(browser_.ListedCount(), 500) << "a stop with nothing to stop is forgotten";
}

TEST_F(Browsing, StopsARunningListingForTheNextChoiceAndListsThatWhole) {
  AddMany(1000);
  browser_.PressName(Stage::Genre, 0);
  loop_.RunFor(0ms);
  ASSERT_TRUE(browser_.Listing());
  browser_.ShowAllArtists();
  EXPECT_EQ(browser_.Tag(Stage::Genre), 0) << "commands wait for the end of a listing";
  Press(Stage::Genre, u"ODD"_s);
  EXPECT_EQ(browser_.ListedCount(), 500);
  EXPECT_EQ(browser_.Count(Stage::Artist), 500);
  EXPECT_EQ(browser_.Name(Stage::Artist, 0), u"ARTIST 1"_s);
}

TEST_F(Browsing, JumpsToALetterOrTheNextLowerOne) {
  AddFive();
  for (const QString& name : QStringList(catalogue_.ArtistList))
    catalogue_.RemoveReference(ReferenceSet::Artists, name);
  AddReferences(ReferenceSet::Artists, {u"0 first"_s, u"1 second"_s, u"abba"_s, u"Blur"_s, u"Queen"_s});
  browser_.ShowAllArtists();
  EXPECT_EQ(browser_.LetterRow(Stage::Artist, u'Q'), 4);
  EXPECT_EQ(browser_.LetterRow(Stage::Artist, u'M'), 3);
  EXPECT_EQ(browser_.LetterRow(Stage::Artist, u'A'), 2);
  EXPECT_EQ(browser_.LetterRow(Stage::Artist, u'9'), 1);
  EXPECT_EQ(browser_.LetterRow(Stage::Artist, u'0'), 0);
  for (const QString& name : {u"1 second"_s, u"abba"_s, u"Blur"_s, u"Queen"_s})
    catalogue_.RemoveReference(ReferenceSet::Artists, name);
  EXPECT_EQ(browser_.LetterRow(Stage::Artist, u'Z'), -1) << "\"0\" is beyond the end of the search";
  EXPECT_EQ(browser_.LetterRow(Stage::Album, u'A'), -1);
  EXPECT_EQ(LibraryBrowser::CentredTopRow(5, 10), std::nullopt);
  EXPECT_EQ(LibraryBrowser::CentredTopRow(6, 10), 1);
}

TEST_F(Browsing, SelectsTheArtistOfAClickedTrackWithoutListing) {
  AddFive();
  Add(u"a-ha - take on me"_s, u"Pop"_s, u"A-ha"_s);
  browser_.ClickTrack(ToMref(3));
  EXPECT_EQ(browser_.Selected(Stage::Artist), -1) << "no artist is listed yet";
  browser_.ShowAllArtists();
  browser_.ClickTrack(ToMref(3));
  EXPECT_EQ(SelectedName(Stage::Artist), u"QUEEN"_s);
  EXPECT_EQ(browser_.Chosen(Stage::Artist), QString());
  EXPECT_TRUE(browser_.Rows().empty());
  browser_.ClickTrack(ToMref(5));
  browser_.ClickTrack(ToMref(6));
  EXPECT_EQ(SelectedName(Stage::Artist), u"QUEEN"_s) << "no dash, or one behind the first letter";
  Press(Stage::Artist, u"QUEEN"_s);
  EXPECT_EQ(Rows(), (Numbers{3, 4})) << "a selected name is not yet a chosen one";
}

TEST_F(Browsing, TellsOfATrackAndTakesAGenreFromThere) {
  AddFive();
  TrackEdit edit;
  edit.startEnd = u"0,2,1"_s;
  catalogue_.Change(ToMref(1), edit);
  browser_.OpenInfo(ToMref(1));
  ASSERT_TRUE(browser_.Info());
  EXPECT_EQ(browser_.Info()->title, u" Waterloo"_s);
  EXPECT_EQ(browser_.Info()->genres, (QStringList{u"Pop"_s, u"Glam"_s}));
  EXPECT_EQ(browser_.Info()->starts, u"Starts: Soft"_s);
  EXPECT_EQ(browser_.Info()->ends, u"Ends: Strong"_s);
  browser_.ChooseGenreOfInfo(1);
  Settle();
  EXPECT_FALSE(browser_.Info());
  EXPECT_EQ(browser_.Chosen(Stage::Genre), u"GLAM"_s);
  EXPECT_EQ(Rows(), (Numbers{1}));
  browser_.OpenInfo(ToMref(5));
  EXPECT_EQ(browser_.Info()->title, u"Song Of Nobody"_s);
}

TEST_F(Browsing, SortsStablyDatesBackwardsNumbersByValueAndKeepsTheOrderForWhatComes) {
  AddFive();
  Press(Stage::Genre, u"POP"_s);
  browser_.SortBy(LibraryColumn::Date);
  Settle();
  EXPECT_EQ(Rows(), (Numbers{4, 2, 1}));
  browser_.SortBy(LibraryColumn::Bpm);
  Settle();
  EXPECT_EQ(Rows(), (Numbers{4, 2, 1})) << "equal ones stay in the order of their dates";
  Press(Stage::Genre, u"POP"_s);
  Press(Stage::Genre, u"ROCK"_s);
  EXPECT_EQ(Rows(), (Numbers{3, 4})) << "89 before 110";
  browser_.SortBy(LibraryColumn::Track);
  browser_.SetWords(u"e"_s);
  Settle();
  Press(Stage::Genre, u"ROCK"_s);
  EXPECT_EQ(Rows(), (Numbers{2, 1, 3, 4}));
  TrackOrder order(catalogue_);
  Job<> sorting = order.Sort(loop_, LibraryColumn::Mref);
  ASSERT_TRUE(loop_.RunUntil([&sorting] { return !sorting.Running(); }));
  Add(u"late"_s, {}, {});
  EXPECT_EQ(order.Tracks().size(), 6U);
  EXPECT_EQ(order.Tracks().back(), ToMref(6));
}

TEST_F(Browsing, NarrowsWhatIsChosenByWordsAndWithoutAChoiceTheWholeCatalogue) {
  AddFive();
  browser_.SetWords(u"race bic"_s);
  EXPECT_EQ(Rows(), (Numbers{3}));
  browser_.SetWords(u"er"_s);
  EXPECT_EQ(Rows(), (Numbers{1, 2, 4}));
  Press(Stage::Genre, u"ROCK"_s);
  EXPECT_EQ(Rows(), (Numbers{4})) << "listed while words stand in the box";
  browser_.SetWords(u" "_s);
  EXPECT_EQ(Rows(), (Numbers{3, 4}));
  browser_.SetWords(u"abba"_s);
  EXPECT_TRUE(Rows().empty());
  Press(Stage::Genre, u"ROCK"_s);
  EXPECT_EQ(Rows(), (Numbers{1, 2})) << "released, the words look everywhere";
  browser_.ShowAllArtists();
  browser_.ClickTrack(ToMref(1));
  EXPECT_EQ(Rows(), (Numbers{1, 2})) << "a click on a found track keeps it in sight";
  browser_.SetWords({});
  EXPECT_EQ(Rows(), (Numbers{3, 4}));
}

TEST_F(Browsing, AddsTheSelectionAndKeepsItWhenAGroupPlaylistIsNotGivenUp) {
  AddFive();
  tree_.Write(u"music/abba - waterloo.mp3"_s, "sound");
  tree_.Write(u"music/abba - fernando.mp3"_s, "sound");
  std::vector<bool> selects;
  std::vector<Mref> deselected;
  QObject::connect(&browser_, &LibraryBrowser::SelectRows, [&](bool all) { selects.push_back(all); });
  QObject::connect(&browser_, &LibraryBrowser::Deselect,
                   [&](const std::vector<Mref>& tracks) { deselected = tracks; });
  browser_.ToggleAll();
  EXPECT_TRUE(selects.empty()) << "the list is empty";
  Press(Stage::Genre, u"POP"_s);
  browser_.ToggleAll();
  EXPECT_EQ(browser_.SelectAllCaption(), u"Clear All"_s);
  browser_.AddToQueue(browser_.Rows());
  Settle();
  EXPECT_EQ(queue_.Count(), 2) << "the third one's file is gone";
  EXPECT_EQ(browser_.SelectAllCaption(), u"Select All"_s);
  EXPECT_EQ(selects, std::vector<bool>{true});
  EXPECT_EQ(deselected, browser_.Rows()) << "whether it was added or not";

  queue_.SetGroup({u"1"_s});
  prompter_.answers = {Answer::No};
  browser_.ToggleAll();
  browser_.AddToQueue({ToMref(1)});
  Settle();
  EXPECT_EQ(queue_.Count(), 2);
  EXPECT_EQ(browser_.SelectAllCaption(), u"Clear All"_s);
}

}  // namespace
