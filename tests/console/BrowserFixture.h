#pragma once

#include "console/browser/LibraryBrowser.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"
#include "support/TemporaryTree.h"

#include <gmock/gmock.h>

#include <chrono>

namespace kelvo::testing {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

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
    AddReferences(ReferenceSet::Genres,
                  {u"Glam"_s, u"Pop"_s, u"Rock"_s, u"Rock Opera"_s, u"~ALL CATEGORIES"_s});
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

}  // namespace kelvo::testing
