#include "datamanager/windows/SearchModel.h"
#include "datamanager/windows/SearchWindow.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"
#include "support/TemporaryTree.h"
#include "ui/ListTable.h"
#include "ui/Theme.h"

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
    window.emplace(SearchWindow::Services{loop, prompter, settings, catalogue, u"Kelvo"_s}, nullptr);
    window->OnAdd = [this](std::vector<Mref> tracks) { added = std::move(tracks); };
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&*window));
  }
  template <typename Widget>
  Widget& Find(const QString& name) {
    auto* widget = window->findChild<Widget*>(name);
    EXPECT_NE(widget, nullptr) << name.toStdString();
    return *widget;
  }
  void Click(const QString& name) { QTest::mouseClick(&Find<QPushButton>(name), Qt::LeftButton); }
  void ClickKey(const QString& word) {
    for (QPushButton* key : window->findChildren<QPushButton*>()) {
      if (key->accessibleName() == word) QTest::mouseClick(key, Qt::LeftButton);
    }
  }

  TemporaryTree tree;
  SimulatedEventLoop loop;
  ScriptedPrompter prompter;
  SettingsStore settings{loop, tree.Path(u"settings.ini"_s)};
  Catalogue catalogue;
  std::optional<SearchWindow> window;
  std::vector<Mref> added;
};

TEST_F(SearchOnScreen, FindsWhatIsTypedAndHandsTheSelectionOver) {
  auto& text = Find<QLineEdit>(u"Text1"_s);
  auto& list = Find<ListTable>(u"ListView1"_s);
  QTest::keyClicks(&text, u"love"_s);
  QTest::keyClick(&text, Qt::Key_Return);
  ASSERT_EQ(list.model()->rowCount(), 2);
  EXPECT_TRUE(text.hasFocus()) << "the next word can be typed at once";
  EXPECT_TRUE(Find<QLabel>(u"Label2"_s).text().startsWith(u"Search Results = 2 in 0.0"_s));
  EXPECT_FALSE(Find<QPushButton>(u"CmdAdd"_s).isEnabled());

  Click(u"Command4"_s);
  EXPECT_EQ(Find<QPushButton>(u"Command4"_s).text(), u"Clear All"_s);
  Click(u"CmdAdd"_s);
  EXPECT_THAT(added, ElementsAre(ToMref(1), ToMref(2)));
  Click(u"Command4"_s);
  EXPECT_FALSE(list.selectionModel()->hasSelection());

  Find<QRadioButton>(u"Option5"_s).click();
  Click(u"OKButton"_s);
  ASSERT_EQ(list.model()->rowCount(), 1);
  list.selectRow(0);
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_THAT(added, ElementsAre(ToMref(2)));
}

TEST_F(SearchOnScreen, ResultsFollowTheirTracks) {
  auto& list = Find<ListTable>(u"ListView1"_s);
  QTest::keyClicks(&Find<QLineEdit>(u"Text1"_s), u"love"_s);
  QTest::keyClick(&Find<QLineEdit>(u"Text1"_s), Qt::Key_Return);
  ASSERT_EQ(list.model()->rowCount(), 2);
  list.selectRow(1);
  catalogue.Rename(ToMref(2), u"Renamed.mp3"_s);
  catalogue.Remove(ToMref(1));
  ASSERT_EQ(list.model()->rowCount(), 1);
  EXPECT_EQ(list.model()->index(0, SearchModel::Track).data().toString(), u"Renamed"_s);
  Click(u"CmdAdd"_s);
  EXPECT_THAT(added, ElementsAre(ToMref(1))) << "what was selected, under its number of now";
}

TEST_F(SearchOnScreen, TypesWithTheKeysOnTheScreenIntoTheBoxThatHasTheFocus) {
  ClickKey(u"R"_s);
  ClickKey(u"&"_s);
  Click(u"Command3"_s);
  ClickKey(u"A"_s);
  EXPECT_EQ(Find<QLineEdit>(u"Text1"_s).text(), u"RA"_s);
  Find<QLineEdit>(u"Text4"_s).setFocus();
  ClickKey(u"7"_s);
  EXPECT_EQ(Find<QLineEdit>(u"Text4"_s).text(), u"7"_s);
}

TEST_F(SearchOnScreen, ClosesAtEscapeAndComesBackWhereItWas) {
  window->resize(700, 600);
  window->move(15, 60);
  QTest::keyClick(&Find<QLineEdit>(u"Text1"_s), Qt::Key_Escape);
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(settings.GetSetting(u"Kelvo"_s, u"Startup"_s, u"SearchPosx"_s), u"15"_s);
  EXPECT_EQ(settings.GetSetting(u"Kelvo"_s, u"Startup"_s, u"SearchPosy"_s), u"60"_s);
  Open();
  EXPECT_EQ(window->pos(), QPoint(15, 60));
}

}  // namespace
