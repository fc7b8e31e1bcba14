#include "datamanager/ManagerDesks.h"
#include "datamanager/windows/DataManagerWindow.h"
#include "support/Lookup.h"
#include "support/WindowParts.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class ManagerWindowTest : public WholeManagerTest {
 protected:
  void SetUp() override { Theme::Apply(*qApp); }
};

TEST_F(ManagerWindowTest, HasRoomForEveryToolOnASmallScreen) {
  Add(u"one"_s, u"Rock"_s);
  const std::vector<std::pair<QString, QString>> all{{u"Command13"_s, u"Add Tracks"_s},
                                                     {u"Command5"_s, u"Edit"_s},
                                                     {u"Command8"_s, u"UNIFY VOLUME"_s},
                                                     {u"Command25"_s, u"Count Bpm"_s},
                                                     {u"Command26"_s, u"Save To Track"_s},
                                                     {u"Command10"_s, u"New"_s},
                                                     {u"Command9"_s, u"Rename"_s},
                                                     {u"Command2"_s, u"Delete"_s},
                                                     {u"Command12"_s, u"Add Multiple"_s},
                                                     {u"Command15"_s, u"Delete Multiple"_s},
                                                     {u"Command21"_s, u"Delete"_s},
                                                     {u"Command23"_s, u"Delete"_s},
                                                     {u"Command24"_s, u"Delete"_s},
                                                     {u"Command16"_s, u"Delete"_s},
                                                     {u"Command20"_s, u"REPORTS"_s},
                                                     {u"Command29"_s, u"Show Info"_s},
                                                     {u"Command30"_s, u"Start Playlist Manager"_s},
                                                     {u"Command4"_s, u"ISO CD RIPPER"_s},
                                                     {u"Cmdimport"_s, u"FILE IMPORT"_s},
                                                     {u"Command11"_s, u"BURN CD"_s},
                                                     {u"Another"_s, u"Convert To Mp3"_s}};
  std::vector<ManagerTool> tools;
  for (const auto& [id, words] : all)
    tools.push_back({.id = id, .words = words, .tooltip = {}, .run = [](const std::vector<Mref>&) {}});
  Open(std::move(tools));
  DataManagerWindow window(loop_, *manager_);
  window.resize(1000, 660);
  window.show();
  loop_.RunFor(1s);
  QCoreApplication::processEvents();
  EXPECT_LE(window.minimumSizeHint().width(), 1000);
  EXPECT_LE(window.minimumSizeHint().height(), 660);
  ExpectWellLaidOut(window);
  for (const auto& [id, words] : all) {
    auto* button = FindNamed<QPushButton>(window, id);
    ASSERT_NE(button, nullptr);
    EXPECT_TRUE(button->isVisible()) << id.toStdString();
    EXPECT_EQ(button->text(), words);
  }
}

TEST_F(ManagerWindowTest, ManyScatteredHitsAreSelectedAsFarAsAListCanPaintThemInTime) {
  CatalogueTables tables(database_.paths(Paths::Music));
  for (int number = 0; number < 10000; ++number) {
    CatalogueRow row;
    row.name = (number % 2 == 0 ? u"even %1"_s : u"odd %1"_s).arg(number);
    row.extension = u".mp3"_s;
    tables.Append(row);
  }
  catalogue_.Replace(std::move(tables));
  Open({});
  DataManagerWindow window(loop_, *manager_);
  window.show();
  prompter_.texts = {u"even"_s};
  QTest::mouseClick(FindNamed<QPushButton>(window, u"Command7"_s), Qt::LeftButton);
  loop_.RunFor(1s);
  EXPECT_EQ(FindNamed<QPushButton>(window, u"Command7"_s)->text(), u"Show 1 Of 5000"_s);
  EXPECT_EQ(manager_->PickedRows().size(), 2000U);
  EXPECT_EQ(manager_->PickedRows()[1], 2);
  EXPECT_TRUE(FindNamed<QLabel>(window, u"LblCurrent"_s)->text().startsWith(u"Only the first hits"_s));
}

}  // namespace
