#include "app/BesideTheDesk.h"
#include "database/windows/TransferWindow.h"
#include "datamanager/windows/DataManagerWindow.h"
#include "playlists/windows/PlaylistWindow.h"
#include "support/Lookup.h"
#include "support/WindowParts.h"
#include "ui/Fader.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class DataManagerBesideTheDesk : public BesideTheDesk {
 protected:
  void SetUp() override {
    BesideTheDesk::SetUp();
    database_.Add(Paths::Jingles, u"horn.wav"_s);
    database_.tree.MakeFolder(Paths::FolderName(Paths::Categories) + u"/Rock"_s);
    database_.tree.MakeFolder(Paths::FolderName(Paths::Categories) + u"/Pop"_s);
    Set(u"PFLDeviceName"_s, u"Headphones"_s);
    OpenDesk();
    BesideTheDesk::Press(u"DataManager"_s);
    loop_.RunFor(1s);
    ASSERT_NE(Opened<DataManagerWindow>(), nullptr);
    ASSERT_TRUE(Shown().isVisible());
  }
  DataManagerWindow& Shown() { return *Opened<DataManagerWindow>(); }
  template <typename Widget>
  Widget& Find(const QString& name) {
    return *FindNamed<Widget>(Shown(), name);
  }
  void Press(const QString& name) {
    QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton);
    loop_.RunFor(1s);
  }
  QTableView& Table() { return Find<QTableView>(u"ListView1"_s); }
  QString Cell(int row, int column = 0) { return Table().model()->index(row, column).data().toString(); }
  QStringList Names() {
    QStringList names;
    for (int row = 0; row < Table().model()->rowCount(); ++row) names.append(Cell(row));
    return names;
  }
  QStringList Picked() {
    QStringList names;
    for (const QModelIndex& each : Table().selectionModel()->selectedRows())
      names.append(each.data().toString());
    names.sort();
    return names;
  }
  void ClickRow(int row, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(Table().viewport(), Qt::LeftButton, keys,
                      Table().visualRect(Table().model()->index(row, 0)).center());
    loop_.RunFor(100ms);
  }
  QStringList Items(const QString& list) {
    QStringList items;
    for (int row = 0; row < Find<QListWidget>(list).count(); ++row)
      items.append(Find<QListWidget>(list).item(row)->text());
    return items;
  }
  [[nodiscard]] std::vector<FaultyPlayer*> Heard() const {
    std::vector<FaultyPlayer*> found;
    for (std::size_t place = 0; place < audio_.players.size(); ++place) {
      if (audio_.players[place]->State() == PlayState::Playing) found.push_back(audio_.players[place]);
    }
    return found;
  }
};

TEST_F(DataManagerBesideTheDesk, ShowsTheTracksFitsTheScreenAndHasAButtonForEachToolOnly) {
  EXPECT_THAT(Names(), ElementsAre(u"alpha.mp3"_s, u"beta.mp3"_s, u"gamma.mp3"_s));
  EXPECT_EQ(Cell(0, 1), u"0.00"_s) << "sizes of the rows in sight";
  EXPECT_EQ(Cell(0, 2), u"-3.5"_s);
  QStringList heads;
  for (int column = 0; column < Table().model()->columnCount(); ++column)
    heads.append(Table().model()->headerData(column, Qt::Horizontal).toString());
  EXPECT_THAT(heads, ElementsAre(u"File Name"_s, u"Mb's"_s, u"Vol"_s, u""_s, u"path"_s, u"BPM"_s,
                                 u"Year - Mth"_s, u"Hi"_s, u""_s, u"AR"_s, u"AL"_s, u"mref"_s));
  EXPECT_TRUE(Table().isColumnHidden(11));
  EXPECT_EQ(Find<QLabel>(u"Label18"_s).text(), u"3"_s);
  ExpectWellLaidOut(Shown());
  Press(u"CmdSeveral"_s);
  ExpectWellLaidOut(Shown());
  Press(u"CmdSeveral"_s);
  EXPECT_LE(Shown().minimumSizeHint().width(), 1000);
  EXPECT_LE(Shown().minimumSizeHint().height(), 650);
  for (const ManagerTool& tool : {ManagerTool{.id = u"Command13"_s, .words = {}, .tooltip = {}, .run = {}},
                                  ManagerTool{.id = u"Command30"_s, .words = {}, .tooltip = {}, .run = {}}})
    EXPECT_TRUE(Find<QPushButton>(tool.id).isVisible());

  Press(u"Command3_1"_s);
  EXPECT_THAT(Names(), ElementsAre(u"horn.wav"_s));
  EXPECT_EQ(Find<QPushButton>(u"Command13"_s).text(), u"Add Jingles"_s);
  Press(u"Command3_2"_s);
  EXPECT_EQ(Cell(0), u"alpha.kif"_s);
  Find<QCheckBox>(u"Check1"_s).click();
  Press(u"Command3_0"_s);
  EXPECT_EQ(Cell(0), u"alpha.kif"_s) << "suspended";
  Find<QCheckBox>(u"Check1"_s).click();
  EXPECT_EQ(Cell(0), u"alpha.mp3"_s);
}

TEST_F(DataManagerBesideTheDesk, ASelectionIsShownKeptWhenSortedAndGoesThroughTheButtons) {
  ClickRow(1);
  EXPECT_THAT(Items(u"LstCats"_s), ElementsAre(u"Rock"_s, u"Pop"_s));
  EXPECT_THAT(Items(u"LstArts"_s), ElementsAre(u"The Band"_s));
  EXPECT_EQ(Find<QLabel>(u"LblCurrent"_s).text(), u"No 2   01:00"_s);
  EXPECT_EQ(Find<QPushButton>(u"Command17"_s).text(), u"Clear Selected"_s);
  ClickRow(2, Qt::ControlModifier);
  EXPECT_THAT(Picked(), ElementsAre(u"beta.mp3"_s, u"gamma.mp3"_s));
  QHeaderView& head = *Table().horizontalHeader();
  for (int press = 0; press < 2; ++press) {
    QTest::mouseClick(head.viewport(), Qt::LeftButton, {}, QPoint(head.sectionViewportPosition(0) + 5, 5));
    loop_.RunFor(1s);
  }
  EXPECT_THAT(Names(), ElementsAre(u"gamma.mp3"_s, u"beta.mp3"_s, u"alpha.mp3"_s));
  EXPECT_THAT(Picked(), ElementsAre(u"beta.mp3"_s, u"gamma.mp3"_s));
  EXPECT_EQ(Find<QLabel>(u"LblCurrent"_s).text(), u"No 3   01:30"_s) << "a tool works on what is selected";
  QTest::mouseDClick(Table().viewport(), Qt::LeftButton, {},
                     Table().visualRect(Table().model()->index(2, 0)).center());
  EXPECT_THAT(Picked(), ElementsAre(u"alpha.mp3"_s));
  Press(u"Command17"_s);
  EXPECT_THAT(Picked(), IsEmpty());
  EXPECT_THAT(Items(u"LstCats"_s), IsEmpty());
  Press(u"Command17"_s);
  EXPECT_EQ(Picked().size(), 3);
  EXPECT_EQ(Find<QPushButton>(u"Command17"_s).text(), u"Clear All"_s);
  prompter_.texts = {u"A.MP"_s};
  Press(u"Command7"_s);
  EXPECT_EQ(Find<QPushButton>(u"Command7"_s).text(), u"Show 1 Of 3"_s);
  prompter_.texts = {u"bet"_s};
  for (int press = 0; press < 3; ++press) Press(u"Command7"_s);
  EXPECT_THAT(Picked(), ElementsAre(u"beta.mp3"_s));

  Find<QLineEdit>(u"TxtWords"_s).setText(u"AM"_s);
  loop_.RunFor(1s);
  EXPECT_THAT(Names(), ElementsAre(u"gamma.mp3"_s));
}

TEST_F(DataManagerBesideTheDesk, TheFilterIsChosenByKeysAndPlaylistsTakeTheSelection) {
  Press(u"Command1_0"_s);
  auto& names = Find<QTableView>(u"List1"_s);
  ASSERT_EQ(names.model()->rowCount(), 2);
  EXPECT_FALSE(Find<QPushButton>(u"Command22"_s).isEnabled());
  names.setFocus();
  QTest::keyClick(&names, Qt::Key_End);
  QTest::keyClick(&names, Qt::Key_Return);
  QTest::keyClick(&names, Qt::Key_Home);
  QTest::keyClick(&names, Qt::Key_Return);
  EXPECT_EQ(Find<QTableView>(u"List2"_s).model()->rowCount(), 2);
  Press(u"Command22"_s);
  EXPECT_EQ(Names().size(), 6) << "each track bears both";
  EXPECT_EQ(Find<QLabel>(u"Label18"_s).text(), u"6"_s);
  Press(u"Command28"_s);
  EXPECT_EQ(Names().size(), 3);
  EXPECT_EQ(Find<QTableView>(u"List2"_s).model()->rowCount(), 0);

  ClickRow(1);
  Press(u"Command30"_s);
  auto* form = Opened<PlaylistWindow>();
  ASSERT_NE(form, nullptr);
  EXPECT_TRUE(form->isVisible());
  EXPECT_TRUE(FindNamed<QPushButton>(*form, u"Cmdsave"_s)->isEnabled() ||
              !FindNamed<QPushButton>(*form, u"Cmdsave"_s)->toolTip().isEmpty());
  Press(u"Command13"_s);
  ASSERT_NE(Opened<TransferWindow>(), nullptr);
  EXPECT_TRUE(Opened<TransferWindow>()->isVisible());
}

TEST_F(DataManagerBesideTheDesk, ARowIsHeardInTheMonitorAloneAndNoLongerThanTheWindowIsThere) {
  EXPECT_FALSE(Find<QPushButton>(u"Command18"_s).isEnabled());
  ClickRow(0);
  Press(u"Command18"_s);
  ASSERT_EQ(Heard().size(), 1U);
  EXPECT_TRUE(Heard()[0]->FileName().endsWith(u"/alpha.mp3"_s));
  EXPECT_EQ(audio_.outputs.back(), u"Headphones"_s);
  auto& place = Find<Fader>(u"Slider1"_s);
  loop_.RunFor(3s);
  EXPECT_NEAR(place.value(), 4, 1);
  QTest::keyClick(&place, Qt::Key_End);
  EXPECT_NEAR(Heard()[0]->CurrentPosition(), 60, 0.1);
  Press(u"Command19"_s);
  EXPECT_THAT(Heard(), IsEmpty());
  EXPECT_EQ(Find<QLabel>(u"LblPlaying"_s).text(), u"Stopped"_s);
  Press(u"Command18"_s);
  desk_->Pfl().SetDevice(u"Main"_s);
  loop_.RunFor(1s);
  EXPECT_THAT(Heard(), IsEmpty()) << "that device is on air";
  EXPECT_TRUE(Find<QPushButton>(u"Command18"_s)
                  .toolTip()
                  .endsWith(u"The monitor's device is the one that is on air"_s));
  desk_->Pfl().SetDevice(u"Headphones"_s);
  loop_.RunFor(1s);
  Press(u"Command18"_s);
  ASSERT_EQ(Heard().size(), 1U);
  Press(u"Command6"_s);
  EXPECT_FALSE(Shown().isVisible());
  EXPECT_THAT(Heard(), IsEmpty());
}

TEST_F(DataManagerBesideTheDesk, SeveralTracksAreChangedAtOnceAndTheDeckHearsOfIt) {
  Press(u"Command17"_s);
  Press(u"CmdSeveral"_s);
  EXPECT_FALSE(Find<QPushButton>(u"CmdBulkApply"_s).isEnabled());
  Find<QComboBox>(u"CboBulkYear"_s).setCurrentText(u"2005"_s);
  QTest::keyClicks(Find<QComboBox>(u"CboBulkGenre"_s).lineEdit(), u"Fresh"_s);
  Press(u"CmdBulkApply"_s);
  EXPECT_EQ(Cell(2, 6), u"2005-Dec"_s);
  EXPECT_TRUE(database_.Info(u"gamma"_s).startsWith("~ALL CATEGORIES,Rock,Pop,Fresh\r\n"));
  EXPECT_EQ(Picked().size(), 3) << "the list was not built anew";
  prompter_.answers = {Answer::Yes};
  Press(u"UndoChange"_s);
  EXPECT_EQ(Cell(2, 6), u"1999-Dec"_s);
  EXPECT_EQ(database_.Info(u"gamma"_s), InfoBytes("90"));
}

TEST_F(DataManagerBesideTheDesk, ClosingAsksForWhatWaitsAndAPasswordCountsFromTheNextStartOn) {
  catalogue_.SetStagedFiles({u"/a.mp3"_s});
  prompter_.answers = {Answer::No};
  Press(u"Command6"_s);
  EXPECT_EQ(prompter_.asked.back().text,
            u"There Are 1 Tracks in the Utility Folder !\r\nMove them into the Data base Now ?"_s);
  EXPECT_FALSE(Shown().isVisible());
  BesideTheDesk::Press(u"DataManager"_s);
  ASSERT_TRUE(Shown().isVisible());
  prompter_.answers = {Answer::Yes};
  Press(u"Command6"_s);
  EXPECT_FALSE(Shown().isVisible());
  ASSERT_NE(Opened<TransferWindow>(), nullptr);
  EXPECT_TRUE(Opened<TransferWindow>()->isVisible());
  prompter_.texts = {u"secret"_s};
  BesideTheDesk::Press(u"DataManager"_s);
  Press(u"mnuRestrict"_s);
  EXPECT_FALSE(desk_->Settings().Get(setting::DmanAccess));
  EXPECT_TRUE(desk_->ManagerAccess().Free()) << "it counts from the next start on";
}

}  // namespace
