#include "console/browser/LibraryBrowser.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"
#include "support/TemporaryTree.h"

#include <gmock/gmock.h>

#include <chrono>

using namespace kelvo;
using namespace kelvo::testing;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A browser over a catalogue made by hand.
class Browsing : public ::testing::Test {
 protected:
  Browsing() {
    tree_.MakeFolder(u"music"_s);
    catalogue_.Replace(CatalogueTables(tree_.Path(u"music"_s)));
  }
  void Add(const QString& name, const QString& genres, const QString& artists, const QString& albums = {},
           const QString& date = u"2000-Jan"_s, const QString& bpm = u"100"_s) {
    CatalogueRow row;
    row.name = name;
    row.extension = u".mp3"_s;
    row.genres = u"~ALL CATEGORIES,"_s + genres;
    row.artists = u"~ALL ARTISTS,"_s + artists;
    row.albums = u"~ALL ALBUMS"_s + (albums.isEmpty() ? QString() : u',' + albums);
    row.date = date;
    row.bpm = bpm;
    catalogue_.Append(row);
  }
  void AddFive() {
    Add(u"abba - waterloo"_s, u"Pop,Glam"_s, u"Abba"_s, u"Waterloo,Gold"_s, u"1974-Mar"_s, u"148"_s);
    Add(u"abba - fernando"_s, u"Pop"_s, u"Abba"_s, u"Gold"_s, u"1976-Mar"_s, u"110"_s);
    Add(u"queen - bicycle race"_s, u"Rock"_s, u"Queen"_s, u"Jazz"_s, u"1978-Oct"_s, u"89"_s);
    Add(u"queen - under pressure"_s, u"rock,Pop"_s, u"Queen,David Bowie"_s, u"Hot Space"_s, u"1981-Oct"_s,
        u"110"_s);
    Add(u"song of nobody"_s, u"Rock Opera"_s, {}, {}, u"1969-May"_s, u"0"_s);
    AddReferences(ReferenceSet::Genres, {u"Glam"_s, u"Pop"_s, u"Rock"_s, u"Rock Opera"_s, u"~ALL CATEGORIES"_s});
    AddReferences(ReferenceSet::Artists, {u"Abba"_s, u"David Bowie"_s, u"Queen"_s, u"~ALL ARTISTS"_s});
    AddReferences(ReferenceSet::Albums, {u"Gold"_s, u"Hot Space"_s, u"Jazz"_s, u"Waterloo"_s});
    Settle();
  }
  void AddMany(int tracks) {
    for (int number = 1; number <= tracks; ++number)
      Add(u"artist %1 - song"_s.arg(number), number % 2 == 0 ? u"Even"_s : u"Odd"_s,
          u"Artist %1"_s.arg(number));
    AddReferences(ReferenceSet::Genres, {u"Even"_s, u"Odd"_s});
    Settle();
  }
  void AddReferences(ReferenceSet set, const QStringList& names) {
    for (const QString& name : names) catalogue_.AddReference(set, name);
  }
  void Settle() {
    EXPECT_TRUE(loop_.RunUntil([&] { return !browser_.TakingIn() && !browser_.Listing(); }));
    loop_.RunFor(1s);
  }

  [[nodiscard]] QStringList Names(Stage stage) const {
    QStringList names;
    for (int row = 0; row < browser_.Count(stage); ++row) names.append(browser_.Name(stage, row));
    return names;
  }
  void Press(Stage stage, const QString& name) {
    browser_.PressName(stage, static_cast<int>(Names(stage).indexOf(name)));
    Settle();
  }
  [[nodiscard]] std::vector<int> Rows() const {
    std::vector<int> rows;
    for (const Mref track : browser_.Rows()) rows.push_back(ToInt(track));
    return rows;
  }
  [[nodiscard]] QString SelectedName(Stage stage) const {
    const int row = browser_.Selected(stage);
    return row < 0 ? QString() : browser_.Name(stage, row);
  }

  using Numbers = std::vector<int>;
  TemporaryTree tree_;
  SimulatedEventLoop loop_;
  ScriptedPrompter prompter_;
  ConsoleState state_;
  Catalogue catalogue_;
  TrackFilter filter_{catalogue_};
  Disks disks_{loop_};
  PlayQueue queue_{loop_, disks_, prompter_, catalogue_, state_};
  LibraryBrowser browser_{loop_, catalogue_, filter_, queue_, state_};
};

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
  Settle(order.Sort(loop_, LibraryColumn::Mref));
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

}  // namespace
