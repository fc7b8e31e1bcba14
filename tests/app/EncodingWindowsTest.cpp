#include "app/BesideTheDesk.h"
#include "audio/TestSounds.h"
#include "burning/windows/BurnWindow.h"
#include "database/windows/JingleImportWindow.h"
#include "database/windows/TransferWindow.h"
#include "encoding/windows/EncoderWindow.h"
#include "support/Lookup.h"
#include "support/WindowParts.h"
#include "ui/ListTable.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class DiscsBesideTheDesk : public BesideTheDesk {
 protected:
  void SetUp() override {
    BesideTheDesk::SetUp();
    waiting_ = database_.Add(Paths::Utility, u"Band/One#2001-Jan#Album#.wav"_s, WaveFile(Sine(440, 2)));
    OpenDesk();
  }
  template <typename Window>
  Window& Shown() {
    loop_.RunFor(2s);
    Window* window = Opened<Window>();
    EXPECT_TRUE(window != nullptr && window->isVisible());
    window->activateWindow();
    EXPECT_TRUE(TurnUntil([window] { return window->isActiveWindow(); }));
    return *window;
  }
  void KeyOnDesk(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    window_->activateWindow();
    ASSERT_TRUE(TurnUntil([this] { return window_->isActiveWindow(); }));
    QTest::keyClick(&*window_, key, modifiers);
    loop_.RunFor(2s);
  }
  void Click(QWidget& window, const QString& button) {
    QPushButton& found = *FindNamed<QPushButton>(window, button);
    EXPECT_TRUE(found.isEnabled()) << button.toStdString() << ": " << found.toolTip().toStdString();
    QTest::mouseClick(&found, Qt::LeftButton);
    loop_.RunFor(2s);
  }
  static QStringList Cells(QWidget& window, const QString& list, int column = 0) {
    QStringList cells;
    const QAbstractItemModel& model = *FindNamed<ListTable>(window, list)->model();
    for (int row = 0; row < model.rowCount(); ++row) cells.append(model.index(row, column).data().toString());
    return cells;
  }

  QString waiting_;
};

TEST_F(DiscsBesideTheDesk, AWaitingWaveFileGoesFromTheTransferThroughTheEncoderAndWaitsAsMp3) {
  KeyOnDesk(Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
  auto& transfer = Shown<TransferWindow>();
  ExpectWellLaidOut(transfer);
  Click(transfer, u"CmdMp3"_s);
  EXPECT_EQ(prompter_.Told().last(), u"Please Select Some Files to encode!"_s);
  Click(transfer, u"CmdSelect"_s);
  Click(transfer, u"CmdMp3"_s);
  auto& encoder = Shown<EncoderWindow>();
  ExpectWellLaidOut(encoder);
  EXPECT_EQ(encoder.windowTitle(), u"Kelvo Mp3 Encoder"_s);
  EXPECT_EQ(Cells(encoder, u"List1"_s), QStringList{u"One#2001-Jan#Album#.wav"_s});
  EXPECT_EQ(Cells(encoder, u"List1"_s, 1), QStringList{u"Waits"_s});
  QTest::mouseClick(FindNamed<QCheckBox>(encoder, u"Check2"_s), Qt::LeftButton, {}, QPoint(8, 8));
  Click(encoder, u"Command1"_s);
  EXPECT_EQ(Cells(encoder, u"List2"_s),
            QStringList{u"One#2001-Jan#Album#.wav - One#2001-Jan#Album#.Mp3 Successfull"_s});
  EXPECT_EQ(Cells(encoder, u"List1"_s, 1), QStringList{u"Encoded"_s});
  EXPECT_FALSE(QFileInfo::exists(waiting_));
  EXPECT_FALSE(FindNamed<QPushButton>(encoder, u"Command1"_s)->isEnabled()) << "all is encoded";
  EXPECT_EQ(Cells(transfer, u"LstWaiting"_s), QStringList{u"One.Mp3"_s}) << "the transfer follows";
  Click(encoder, u"Command2"_s);
  EXPECT_FALSE(encoder.isVisible());
}

TEST_F(DiscsBesideTheDesk, TheQueueGoesOntoTheListOfTheBurner) {
  EnqueueAll();
  KeyOnDesk(Qt::Key_B, Qt::ControlModifier);
  auto& burner = Shown<BurnWindow>();
  ExpectWellLaidOut(burner);
  EXPECT_EQ(burner.windowTitle(), u"Kelvo CD Data Burner"_s);
  ASSERT_TRUE(loop_.RunUntil(
      [&] { return !FindNamed<QPushButton>(burner, u"CmdBurn"_s)->text().contains(u"Stop"_s); }));
  Click(burner, u"CmdAddQueue"_s);
  EXPECT_EQ(Cells(burner, u"LstFiles"_s), (QStringList{u"alpha.mp3"_s, u"beta.mp3"_s, u"gamma.mp3"_s}));
  EXPECT_TRUE(FindNamed<QPushButton>(burner, u"CmdStage"_s)->isEnabled());
  QComboBox& kind = *FindNamed<QComboBox>(burner, u"CboKind"_s);
  kind.setFocus();
  QTest::keyClick(&kind, Qt::Key_Down);
  loop_.RunFor(1s);
  EXPECT_FALSE(FindNamed<QPushButton>(burner, u"CmdStage"_s)->isEnabled())
      << "an audio CD is made of the list";
  EXPECT_TRUE(FindNamed<QLineEdit>(burner, u"TxtImage"_s)->text().endsWith(u".cue"_s));
}

TEST_F(DiscsBesideTheDesk, JinglesThatWereFoundAreEncodedWhereTheyAre) {
  KeyOnDesk(Qt::Key_J, Qt::ControlModifier);
  auto& jingles = Shown<JingleImportWindow>();
  ExpectWellLaidOut(jingles);
  EXPECT_FALSE(FindNamed<QPushButton>(jingles, u"CmdEncode"_s)->isEnabled());
  KeyOnDesk(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Cells(Shown<EncoderWindow>(), u"List1"_s), QStringList()) << "by its key it opens empty";
}

}  // namespace
