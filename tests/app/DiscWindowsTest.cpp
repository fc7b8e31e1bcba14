// The ripper and the CD player in the joined desk: a disc image from the window to the waiting files, and on
// air.

#include "app/SoundingDesk.h"
#include "database/windows/TransferWindow.h"
#include "discs/MadeDisc.h"
#include "discs/windows/CdPlayerWindow.h"
#include "discs/windows/RipperWindow.h"
#include "support/WindowParts.h"
#include "ui/ListTable.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class DiscWindows : public SoundingDesk {
 protected:
  void SetUp() override {
    image_ = WriteImage(folder_, disc_);
    OpenDesk();
  }
  template <typename Window>
  Window& Open(const QString& id) {
    for (QMenu* menu : window_->findChildren<QMenu*>()) {
      for (QAction* entry : menu->actions()) {
        if (entry->objectName() != id) continue;
        menu->popup(window_->mapToGlobal(QPoint(10, 30)));
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(entry).center());
        menu->close();
      }
    }
    loop_.RunFor(1s);
    for (QWidget* each : QApplication::topLevelWidgets()) {
      if (auto* window = qobject_cast<Window*>(each)) {
        window->activateWindow();
        EXPECT_TRUE(TurnUntil([window] { return window->isActiveWindow(); }));
        return *window;
      }
    }
    throw std::runtime_error("not opened");
  }
  template <typename Control>
  Control& The(const QWidget& window, const QString& name) {
    return *FindNamed<Control>(window, name);
  }
  void Click(const QWidget& window, const QString& name) {
    auto& button = The<QPushButton>(window, name);
    EXPECT_TRUE(button.isEnabled()) << name.toStdString() << ": " << button.toolTip().toStdString();
    QTest::mouseClick(&button, Qt::LeftButton);
    loop_.RunFor(1s);
  }
  void Drop(QWidget& window) {
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(image_)});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton,
                          Qt::NoModifier);
    QApplication::sendEvent(&window, &enter);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &drop);
    EXPECT_TRUE(drop.isAccepted());
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
    loop_.RunFor(2s);
  }
  static QString Cell(const ListTable& table, int row, int column) {
    return table.model()->index(row, column).data().toString();
  }

  const TemporaryTree folder_;
  const MadeDisc disc_{kFiveSectors};
  QString image_;
};

TEST_F(DiscWindows, ADroppedImageIsNamedTickedRippedAndWaits) {
  auto& ripper = Open<RipperWindow>(u"CdRipper"_s);
  EXPECT_EQ(The<QComboBox>(ripper, u"CboDrive"_s).currentText(), u"(none)"_s);
  EXPECT_FALSE(The<QPushButton>(ripper, u"Command1"_s).isEnabled());
  ExpectWellLaidOut(ripper);
  Drop(ripper);
  auto& grid = The<ListTable>(ripper, u"grdTracks"_s);
  ASSERT_EQ(grid.model()->rowCount(), 6);
  EXPECT_EQ(The<QComboBox>(ripper, u"CboDrive"_s).currentText(), u"disc (Image): CDA"_s);
  EXPECT_EQ(The<QComboBox>(ripper, u"CboAlbum"_s).currentText(), u"The Album"_s);
  ExpectWellLaidOut(ripper);

  // Of the ticks only the last row's is left, by mouse and by key.
  Click(ripper, u"Command2(0)"_s);
  Click(ripper, u"Command2(1)"_s);
  const QModelIndex tick = grid.model()->index(5, RipRows::Selected);
  QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(tick).topLeft() + QPoint(10, 8));
  EXPECT_EQ(tick.data(Qt::CheckStateRole), Qt::Checked);
  grid.selectRow(5);
  QCoreApplication::processEvents();
  QTest::keyClick(&grid, Qt::Key_T, Qt::ControlModifier);
  EXPECT_EQ(tick.data(Qt::CheckStateRole), Qt::Unchecked);
  QTest::keyClick(&grid, Qt::Key_T, Qt::ControlModifier);
  EXPECT_EQ(tick.data(Qt::CheckStateRole), Qt::Checked);

  The<QComboBox>(ripper, u"CboDate"_s).setEditText(u"2001-Feb"_s);
  Click(ripper, u"CmdInsertDate"_s);
  grid.setFocus();
  grid.setCurrentIndex(grid.model()->index(5, RipRows::Artist));
  QTest::keyClick(&grid, Qt::Key_F2);
  auto* editor = grid.viewport()->findChild<QComboBox*>();
  ASSERT_NE(editor, nullptr);
  editor->setEditText(u"Somebody"_s);
  QTest::keyClick(editor, Qt::Key_Return);
  QCoreApplication::processEvents();
  EXPECT_EQ(Cell(grid, 5, RipRows::Artist), u"Somebody"_s);
  EXPECT_EQ(Cell(grid, 5, RipRows::Year), u"2001-Feb"_s);

  auto& rip = The<QPushButton>(ripper, u"Command1"_s);
  QTest::mouseClick(&rip, Qt::LeftButton);
  ASSERT_TRUE(loop_.RunUntil([&] { return The<QPushButton>(ripper, u"CmdCancelRip"_s).isVisible(); }, 1s));
  EXPECT_EQ(The<QLabel>(ripper, u"lblInfo"_s).text(), u"Preparing to rip 1 tracks..."_s);
  ripper.close();
  EXPECT_TRUE(ripper.isVisible());
  EXPECT_EQ(prompter_.Told().last(), u"Please Cancel From Rip Progress First !"_s);
  loop_.RunUntil([&] { return rip.isEnabled(); }, 60s);
  EXPECT_EQ(prompter_.Told().last(), u"Kelvo Has Completed Ripping your Selections "_s);
  const QString staged =
      database_.paths(Paths::Utility) + u"/Somebody/The Band - Last#2001-Feb#The Album#.Mp3"_s;
  ASSERT_TRUE(QFileInfo::exists(staged));
  ripper.close();
  EXPECT_FALSE(ripper.isVisible());

  auto& transfer = Open<TransferWindow>(u"Transfer"_s);
  auto& waiting = The<ListTable>(transfer, u"LstWaiting"_s);
  ASSERT_EQ(waiting.model()->rowCount(), 1);
  EXPECT_EQ(Cell(waiting, 0, 2), u"Somebody"_s);
  EXPECT_EQ(Cell(waiting, 0, 3), u"The Album"_s);
  Click(transfer, u"CmdSelect"_s);
  prompter_.answers = {Answer::Yes};
  Click(transfer, u"CmdMove"_s);
  loop_.RunUntil([this] { return catalogue_.LastTrack() == 1; }, 10s);
  EXPECT_EQ(catalogue_.LastTrack(), 1);
  EXPECT_NEAR(catalogue_.TrackDurations(ToMref(1)), (kFiveSectors - 1202) / 75.0, 0.1);
}

TEST_F(DiscWindows, ThePlayerPlaysTheImageOnAirAndGivesItUpWhenItCloses) {
  auto& player = Open<CdPlayerWindow>(u"CdPlayer"_s);
  EXPECT_EQ(player.windowTitle(), u"Kelvo CD Player"_s);
  EXPECT_FALSE(The<QPushButton>(player, u"CmdPlay"_s).isEnabled());
  ExpectWellLaidOut(player);
  Drop(player);
  EXPECT_EQ(The<QLabel>(player, u"LblDisc"_s).text(), u"Tracks: 5  Total time: 00:20"_s);
  ExpectWellLaidOut(player);
  Click(player, u"CmdPlay"_s);
  Click(player, u"CmdNext"_s);
  EXPECT_TRUE(The<QLabel>(player, u"LblTrackTime"_s).text().endsWith(u"Track 2   playing"_s))
      << The<QLabel>(player, u"LblTrackTime"_s).text().toStdString();
  auto& tracks = The<ListTable>(player, u"LstTracks"_s);
  EXPECT_EQ(Cell(tracks, 1, 1), u"A Guest - Second: Part 1/2"_s);

  // The ripper is its one neighbour; any other form takes its place, and the disc plays on.
  auto& ripper = Open<RipperWindow>(u"CdRipper"_s);
  EXPECT_TRUE(player.isVisible());
  EXPECT_TRUE(ripper.isVisible());
  EXPECT_TRUE(prompter_.Told().isEmpty());
  ripper.close();
  player.close();
  loop_.RunFor(1s);
  EXPECT_FALSE(The<QPushButton>(player, u"CmdPlay"_s).isEnabled()) << "nothing is open";
}

}  // namespace
