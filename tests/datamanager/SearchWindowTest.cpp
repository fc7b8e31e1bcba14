#include "datamanager/windows/SearchWindow.h"
#include "platform/SimulatedEventLoop.h"
#include "support/Lookup.h"
#include "support/ScriptedPrompter.h"
#include "support/TurnUntil.h"
#include "support/WindowParts.h"
#include "ui/ListTable.h"
#include "ui/Theme.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

using namespace kelvo;
using namespace kelvo::testing;
using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

namespace {

class SearchOnScreen : public ::testing::Test {
 protected:
  void SetUp() override {
    Theme::Apply(*qApp);
    for (const QString& name : {u"Ann - Lovely Day"_s, u"Bob - Love & Peace"_s, u"Cat - Rain"_s}) {
      CatalogueRow row;
      row.name = name;
      catalogue.Append(row);
    }
    Open();
  }
  void Open() {
    window.emplace(loop, search);
    window->OnAdd = [this](std::vector<Mref> tracks) { added = std::move(tracks); };
    Show();
  }
  void Show() {
    window->show();
    window->activateWindow();
    ASSERT_TRUE(TurnUntil([this] { return window->isActiveWindow(); }));
    ExpectWellLaidOut(*window);
  }
  template <typename Widget>
  Widget& Find(const QString& name) {
    return *FindNamed<Widget>(*window, name);
  }
  void Click(const QString& name) { QTest::mouseClick(&Find<QPushButton>(name), Qt::LeftButton); }
  void ClickKey(const QString& word) {
    for (QPushButton* key : window->findChildren<QPushButton*>()) {
      if (key->accessibleName() == word) QTest::mouseClick(key, Qt::LeftButton);
    }
  }

  SimulatedEventLoop loop;
  ScriptedPrompter prompter;
  Catalogue catalogue;
  TrackSearch search{{.loop = loop, .prompter = prompter, .catalogue = catalogue}};
  std::optional<SearchWindow> window;
  std::vector<Mref> added;
};

TEST_F(SearchOnScreen, FindsWhatIsTypedAndHandsTheSelectionOver) {
  auto& text = Find<QLineEdit>(u"TxtSearch"_s);
  auto& list = Find<ListTable>(u"LstResults"_s);
  QTest::keyClicks(&text, u"love"_s);
  QTest::keyClick(&text, Qt::Key_Return);
  ASSERT_EQ(list.model()->rowCount(), 2);
  EXPECT_TRUE(text.hasFocus()) << "the next word can be typed at once";
  EXPECT_TRUE(Find<QLabel>(u"LblResults"_s).text().startsWith(u"Search Results = 2 in 0.0"_s));
  EXPECT_FALSE(Find<QPushButton>(u"CmdAdd"_s).isEnabled());

  Click(u"CmdSelectAll"_s);
  EXPECT_EQ(Find<QPushButton>(u"CmdSelectAll"_s).text(), u"Clear All"_s);
  Click(u"CmdAdd"_s);
  EXPECT_THAT(added, ElementsAre(ToMref(1), ToMref(2)));
  Click(u"CmdSelectAll"_s);
  EXPECT_FALSE(list.selectionModel()->hasSelection());
  Click(u"Command4"_s);
  list.clearSelection();
  EXPECT_EQ(Find<QPushButton>(u"Command4"_s).text(), u"Select All"_s) << "also when the mouse took it away";

  Find<QRadioButton>(u"OptWholeString"_s).click();
  Click(u"CmdSearch"_s);
  ASSERT_EQ(list.model()->rowCount(), 1);
  list.selectRow(0);
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_THAT(added, ElementsAre(ToMref(2)));
}

TEST_F(SearchOnScreen, AnEmptyQuestionHasNoOldAnswer) {
  auto& text = Find<QLineEdit>(u"TxtSearch"_s);
  auto& list = Find<ListTable>(u"LstResults"_s);
  QTest::keyClicks(&text, u"love"_s);
  QTest::keyClick(&text, Qt::Key_Return);
  ASSERT_EQ(list.model()->rowCount(), 2);
  QTest::keyClick(&text, Qt::Key_Backspace);
  EXPECT_EQ(list.model()->rowCount(), 2) << "while another is being typed";
  text.clear();
  EXPECT_EQ(list.model()->rowCount(), 0);
  EXPECT_TRUE(Find<QLabel>(u"LblResults"_s).text().isEmpty());
}

TEST_F(SearchOnScreen, ResultsFollowTheirTracks) {
  auto& list = Find<ListTable>(u"LstResults"_s);
  QTest::keyClicks(&Find<QLineEdit>(u"TxtSearch"_s), u"love"_s);
  QTest::keyClick(&Find<QLineEdit>(u"TxtSearch"_s), Qt::Key_Return);
  ASSERT_EQ(list.model()->rowCount(), 2);
  list.selectRow(1);
  catalogue.Rename(ToMref(2), u"Renamed.mp3"_s);
  catalogue.Remove(ToMref(1));
  ASSERT_EQ(list.model()->rowCount(), 1);
  EXPECT_EQ(list.model()->index(0, 0).data().toString(), u"Renamed"_s);
  Click(u"CmdAdd"_s);
  EXPECT_THAT(added, ElementsAre(ToMref(1))) << "what was selected, under its number of now";
}

TEST_F(SearchOnScreen, TypesWithTheKeysOnTheScreenIntoTheBoxThatHasTheFocus) {
  ClickKey(u"R"_s);
  ClickKey(u"&"_s);
  Click(u"KeyBackSpace"_s);
  ClickKey(u"A"_s);
  EXPECT_EQ(Find<QLineEdit>(u"TxtSearch"_s).text(), u"RA"_s);
  Find<QLineEdit>(u"TxtBpm"_s).setFocus();
  ClickKey(u"7"_s);
  EXPECT_EQ(Find<QLineEdit>(u"TxtBpm"_s).text(), u"7"_s);
}

TEST_F(SearchOnScreen, EachFieldOfTheQuestionCounts) {
  CatalogueRow row;
  row.name = u"Dan - Blue"_s;
  row.artists = u"~ALL ARTISTS,Erin"_s;
  row.albums = u"~ALL ALBUMS,Best Of"_s;
  row.genres = u"~ALL CATEGORIES,Rock"_s;
  row.date = u"1999-Dec"_s;
  row.bpm = u"120"_s;
  row.hi = u"7"_s;
  catalogue.Append(row);
  const auto found = [this](const QString& box, const QString& text, const QString& option) {
    for (const QString& each : {u"TxtSearch"_s, u"TxtDate"_s, u"TxtHiPos"_s, u"TxtBpm"_s})
      Find<QLineEdit>(each).clear();
    Find<QRadioButton>(option).click();
    Find<QLineEdit>(box).setText(text);
    QTest::keyClick(&Find<QLineEdit>(box), Qt::Key_Return);
    return search.Results().Count();
  };
  EXPECT_EQ(found(u"TxtDate"_s, u"1999-Dec"_s, u"OptTitle"_s), 1);
  EXPECT_EQ(found(u"TxtHiPos"_s, u"7"_s, u"OptTitle"_s), 1);
  EXPECT_EQ(found(u"TxtBpm"_s, u"120"_s, u"OptTitle"_s), 1);
  EXPECT_EQ(found(u"TxtBpm"_s, u"7"_s, u"OptTitle"_s), 0);
  EXPECT_EQ(found(u"TxtSearch"_s, u"erin"_s, u"OptArtist"_s), 1);
  EXPECT_EQ(found(u"TxtSearch"_s, u"erin"_s, u"OptAlbum"_s), 0);
  EXPECT_EQ(found(u"TxtSearch"_s, u"best"_s, u"OptAlbum"_s), 1);
  EXPECT_EQ(found(u"TxtSearch"_s, u"rock"_s, u"OptGenre"_s), 1);
  const auto cell = [this](int column) {
    return Find<ListTable>(u"LstResults"_s).model()->index(0, column).data().toString();
  };
  EXPECT_EQ(
      (QStringList{cell(0), cell(1), cell(2), cell(3), cell(4), cell(5), cell(6)}),
      (QStringList{u"Dan - Blue"_s, u"Erin"_s, u"Best Of"_s, u"Rock"_s, u"1999-Dec"_s, u"7"_s, u"120"_s}));
  Find<QCheckBox>(u"ChkTitleFirst"_s).click();
  found(u"TxtSearch"_s, u"rock"_s, u"OptGenre"_s);
  EXPECT_EQ(cell(0), u"Blue - Dan"_s);
}

TEST_F(SearchOnScreen, EscapeClosesItAndLeavesTheSearchAlone) {
  for (int number = 0; number < 20000; ++number) {
    CatalogueRow row;
    row.name = u"Dan - Love %1"_s.arg(number);
    catalogue.Append(row);
  }
  auto& text = Find<QLineEdit>(u"TxtSearch"_s);
  QTest::keyClicks(&text, u"love"_s);
  QTest::keyClick(&*window, Qt::Key_F5);
  ASSERT_TRUE(search.Running());
  QTest::keyClick(&*window, Qt::Key_F5);
  EXPECT_TRUE(search.Running()) << "to refresh is not to stop";
  QTest::keyClick(&*window, Qt::Key_Escape);
  EXPECT_FALSE(window->isVisible());
  ASSERT_TRUE(loop.RunUntil([this] { return !search.Running(); }));
  EXPECT_EQ(search.Results().Count(), 20002);
  Show();
  QTest::keyClick(&text, Qt::Key_Return);
  EXPECT_TRUE(search.Running()) << "the same Enter doesn't stop what it began";
  EXPECT_TRUE(Find<QPushButton>(u"CmdSearch"_s).hasFocus());
  QTest::keyClick(&Find<QPushButton>(u"CmdSearch"_s), Qt::Key_Return);
  ASSERT_TRUE(loop.RunUntil([this] { return !search.Running(); }));
  EXPECT_EQ(prompter.Told(), QStringList{u"Search Interupted By User !"_s}) << "Enter works its button";
  EXPECT_TRUE(text.hasFocus());
}

}  // namespace
