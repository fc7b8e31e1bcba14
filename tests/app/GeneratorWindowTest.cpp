#include "app/BesideTheDesk.h"
#include "playlists/windows/GeneratorWindow.h"
#include "playlists/windows/PlaylistWindow.h"
#include "playlists/windows/TempoChart.h"
#include "support/Lookup.h"
#include "support/WindowParts.h"
#include "ui/ListTable.h"

#include <QAccessible>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>
#include <QTimeEdit>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class TheGeneratorBesideTheDesk : public BesideTheDesk {
 protected:
  void SetUp() override {
    BesideTheDesk::SetUp();
    QDir().mkpath(database_.paths(Paths::Categories) + u"/Rock"_s);
    QDir().mkpath(database_.paths(Paths::Categories) + u"/Pop"_s);
    OpenDesk();
    for (int track = 1; track <= 3; ++track) {
      TrackEdit edit;
      edit.genres = track == 3 ? u"~ALL CATEGORIES,Rock,Pop"_s : u"~ALL CATEGORIES,Rock"_s;
      edit.bpm = u"120"_s;
      catalogue_.Change(ToMref(track), edit);
    }
    loop_.RunFor(1s);
  }
  GeneratorWindow& Window() {
    auto* window = Opened<GeneratorWindow>();
    EXPECT_NE(window, nullptr);
    window->activateWindow();
    EXPECT_TRUE(TurnUntil([window] { return window->isActiveWindow(); }));
    return *window;
  }
  template <typename Control>
  Control& The(const QString& name) {
    return *FindNamed<Control>(Window(), name);
  }
  void Click(const QString& button) {
    auto& found = The<QPushButton>(button);
    EXPECT_TRUE(found.isEnabled()) << button.toStdString();
    QTest::mouseClick(&found, Qt::LeftButton);
    loop_.RunFor(2s);
  }
  bool Enabled(const QString& button) { return The<QPushButton>(button).isEnabled(); }
  void Pick(const QString& list, int row) {
    auto& table = The<ListTable>(list);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                      table.visualRect(table.model()->index(row, 0)).center());
  }
  QStringList Cells(const QString& list, int column) {
    QStringList cells;
    const QAbstractItemModel& model = *The<ListTable>(list).model();
    for (int row = 0; row < model.rowCount(); ++row) cells.append(model.index(row, column).data().toString());
    return cells;
  }
  void ChooseAll() {
    for (int genre = 0; genre < 2; ++genre) {
      Pick(u"List1(0)"_s, 0);
      Click(u"Command1(0)"_s);
    }
  }
  void SetDuration(const QString& digits) {
    auto& box = The<QTimeEdit>(u"TimDuration"_s);
    box.setFocus();
    box.setSelectedSection(QDateTimeEdit::HourSection);
    QTest::keyClicks(&box, digits);
    QTest::keyClick(&box, Qt::Key_Return);
  }
};

TEST_F(TheGeneratorBesideTheDesk, ListsFitsPlaysAndSavesWhatItMade) {
  QDir().mkpath(database_.paths(Paths::Playlists) + u"/Evening"_s);
  Press(u"PlaylistLoad"_s);
  QTest::mouseClick(FindNamed<QPushButton>(*Opened<PlaylistWindow>(), u"genlist"_s), Qt::LeftButton);
  loop_.RunFor(2s);
  ExpectWellLaidOut(Window());
  EXPECT_FALSE(Enabled(u"CmdGenerate"_s));
  EXPECT_FALSE(Enabled(u"CmdAdd"_s));
  ChooseAll();
  EXPECT_EQ(Cells(u"List1(1)"_s, 0), (QStringList{u"Pop"_s, u"Rock"_s}));
  Pick(u"List1(1)"_s, 0);
  EXPECT_FALSE(Enabled(u"Command1(2)"_s));
  Click(u"Command1(3)"_s);
  EXPECT_EQ(Cells(u"List1(1)"_s, 0), (QStringList{u"Rock"_s, u"Pop"_s}));
  SetDuration(u"000200"_s);
  Click(u"Command2"_s);
  EXPECT_EQ(Cells(u"ListView1"_s, 0),
            (QStringList{u"=====Rock"_s, u"gamma"_s, u"beta"_s, u"alpha"_s, u"=====Pop"_s, u"gamma"_s}));
  EXPECT_EQ(Cells(u"ListView1"_s, 2), (QStringList{u""_s, u"90"_s, u"60"_s, u"60"_s, u""_s, u"90"_s}));
  EXPECT_EQ(The<QLabel>(u"Label4"_s).text(), u"Total 300 Seconds, 00:05:00"_s);

  // What was on air is not chosen again.
  Enqueue({ToMref(3)});
  Load(Deck::One, 1);
  Decks().StartDeck(Deck::One);
  loop_.RunFor(1s);
  Decks().StopByHand(Deck::One);
  Click(u"CmdFit"_s);
  ExpectWellLaidOut(Window());
  EXPECT_TRUE(The<QLabel>(u"LblFacts"_s).text().startsWith(u"2 tracks, 00:02:00, to the second"_s))
      << The<QLabel>(u"LblFacts"_s).text().toStdString();
  const QStringList fitted = Cells(u"LstSequence"_s, 1);
  prompter_.answers = {Answer::Yes};
  Click(u"CmdAdd"_s);
  EXPECT_EQ(Queue().Count(), 2);
  EXPECT_EQ(Queue().Row(1).title.toLower(), fitted[0]);

  QTest::keyClicks(&The<QLineEdit>(u"TxtPlaylistName"_s), u"two minutes"_s);
  auto& category = The<QComboBox>(u"CboCategory"_s);
  category.setFocus();
  QTest::keyClick(&category, Qt::Key_Down);
  loop_.RunFor(1s);
  Click(u"CmdSave"_s);
  EXPECT_EQ(QDir(database_.paths(Paths::Playlists) + u"/Evening/Two Minutes"_s).entryList(QDir::Files).size(),
            2);
  EXPECT_EQ(The<QLineEdit>(u"TxtPlaylistName"_s).text(), u"Two Minutes"_s);
}

TEST_F(TheGeneratorBesideTheDesk, ItsOutlineIsDrawnByMouseAndByKeysAndReadOut) {
  Press(u"GeneratePlaylist"_s);
  auto& chart = The<TempoChart>(u"Picture1"_s);
  const auto value = [&chart] {
    return QAccessible::queryAccessibleInterface(&chart)->valueInterface()->currentValue().toInt();
  };
  auto& bpm = The<QSpinBox>(u"UpDown2(0)"_s);
  chart.setFocus();
  QTest::keyClick(&chart, Qt::Key_Home);
  const int first = bpm.value();
  QTest::keyClick(&chart, Qt::Key_Up);
  QTest::keyClick(&chart, Qt::Key_PageUp);
  EXPECT_EQ(bpm.value(), first + 6);
  EXPECT_EQ(value(), first + 6);
  QTest::keyClick(&chart, Qt::Key_Right);
  EXPECT_NE(bpm.value(), first + 6);
  EXPECT_TRUE(chart.accessibleName().contains(The<QSpinBox>(u"UpDown2(3)"_s).text()));

  // From the left to the right end, rising from the lowest to the highest.
  QTest::mousePress(&chart, Qt::LeftButton, {}, chart.rect().bottomLeft());
  QTest::mouseMove(&chart, chart.rect().topRight());
  QTest::mouseRelease(&chart, Qt::LeftButton, {}, chart.rect().topRight());
  EXPECT_EQ(bpm.value(), The<QSpinBox>(u"UpDown2(1)"_s).value());
  for (int step = 0; step < 7; ++step) QTest::keyClick(&chart, Qt::Key_Left);
  const int upper = bpm.value();
  EXPECT_LT(upper, The<QSpinBox>(u"UpDown2(1)"_s).value());
  QTest::keyClick(&chart, Qt::Key_Left);
  EXPECT_LT(bpm.value(), upper) << "the mouse flew over it";
  QTest::keyClick(&chart, Qt::Key_Home);
  EXPECT_EQ(bpm.value(), The<QSpinBox>(u"UpDown2(2)"_s).value());

  The<QRadioButton>(u"Option1(1)"_s).setFocus();
  QTest::mouseClick(&The<QRadioButton>(u"Option1(1)"_s), Qt::LeftButton);
  chart.setFocus();
  QTest::keyClick(&chart, Qt::Key_PageDown);
  EXPECT_EQ(The<QSpinBox>(u"UpDown2(1)"_s).value(), 175);
  Window().close();
  Press(u"GeneratePlaylist"_s);
  EXPECT_EQ(The<QSpinBox>(u"UpDown2(1)"_s).value(), 175);
}

}  // namespace
