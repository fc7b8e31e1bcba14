// The windows by which music and jingles come in, worked by their buttons.

#include "audio/ClockAudio.h"
#include "database/TestDatabase.h"
#include "database/windows/JingleImportWindow.h"
#include "database/windows/ScanWindow.h"
#include "database/windows/TransferWindow.h"
#include "database/windows/UtilityWindow.h"
#include "platform/ErrorLog.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"
#include "ui/Fader.h"
#include "ui/ListTable.h"
#include "ui/ProgressStrip.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QUrl>

#include <gmock/gmock.h>

#include <optional>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::ScriptedPrompter;
using testing::TestDatabase;

const QColor kYellow(0xF0, 0xC8, 0x1E);
const QColor kRed(0xB4, 0x1E, 0x28);

class ImportWindow : public ::testing::Test {
 protected:
  void SetUp() override {
    auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (application == nullptr) GTEST_SKIP() << "windows need a screen: QT_QPA_PLATFORM=offscreen";
    Theme::Apply(*application);
  }
  QString AddSource(const QString& relative, const QByteArray& bytes = "sound") {
    return database_.tree.Write(u"drive/"_s + relative, bytes);
  }
  [[nodiscard]] bool Holds(const QString& relative) { return database_.tree.Exists(u"drive/"_s + relative); }
  template <typename Window>
  void Show(Window& window) {
    window_ = &window;
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    loop_.RunFor(10ms);
  }
  template <typename Widget>
  Widget& Find(const QString& name) {
    auto* widget = window_->findChild<Widget*>(name);
    EXPECT_NE(widget, nullptr) << name.toStdString();
    return *widget;
  }
  ListTable& List() { return *window_->findChild<ListTable*>(); }
  bool Enabled(const QString& name) { return Find<QPushButton>(name).isEnabled(); }
  void Click(const QString& name) {
    EXPECT_TRUE(Enabled(name)) << name.toStdString();
    QTest::mouseClick(&Find<QPushButton>(name), Qt::LeftButton);
  }
  QString Cell(int row, int column = 0) { return List().model()->index(row, column).data().toString(); }
  QStringList Names() {
    QStringList names;
    for (int row = 0; row < List().model()->rowCount(); ++row) names.append(Cell(row));
    return names;
  }
  QVariant Ground(int row) { return List().model()->index(row, 0).data(Qt::BackgroundRole); }
  /// Picks the folder "drive" and searches it.
  template <typename Work>
  void SearchDrive(Work& work, const QString& search) {
    prompter_.paths = {database_.tree.Path(u"drive"_s)};
    Click(u"CmdBrowse"_s);
    loop_.RunFor(10ms);
    EXPECT_EQ(Find<QComboBox>(u"Combo1"_s).currentData().toString(), database_.tree.Path(u"drive"_s));
    Click(search);
    EXPECT_EQ(Find<QPushButton>(search).text().toUpper(), u"STOP"_s);
    Finish(work);
    EXPECT_EQ(Find<QPushButton>(search).text(), u"Search"_s);
  }
  template <typename Work>
  void Finish(Work& work) {
    ASSERT_TRUE(loop_.RunUntil([&work] { return !work.Busy(); }, 1min));
    loop_.RunFor(10ms);
  }

  TestDatabase database_;
  SimulatedEventLoop loop_{QDateTime(QDate(2007, 6, 1), QTime(9, 0))};
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  SettingsStore settings_{loop_, database_.tree.Path(u"settings.ini"_s)};
  ClockAudio audio_{loop_};
  Catalogue catalogue_;
  QWidget* window_ = nullptr;
};

class ScanOnScreen : public ImportWindow {
 protected:
  void OpenScan() {
    scan_.emplace(
        ScanWindow::Services{loop_, prompter_, settings_, catalogue_, database_.paths, u"Kelvo 2007"_s});
    Show(*scan_);
  }
  void Import() {
    Click(u"Command1"_s);
    Finish(scan_->Work());
  }
  QString Staged(const QString& title) { return u"Various/"_s + title + u"#2007-xxx# #.mp3"_s; }
  bool IsStaged(const QString& title) { return database_.Holds(Paths::Utility, Staged(title)); }
  void NameAll() {
    List().selectAll();
    auto& column = Find<QComboBox>(u"Combo2"_s);
    column.setCurrentIndex(column.findText(u"Artist"_s));
    Find<QLineEdit>(u"Text1"_s).setText(u"Various"_s);
    Click(u"CmdInsert"_s);
    loop_.RunFor(100ms);
  }
  std::optional<ScanWindow> scan_;
};

TEST_F(ScanOnScreen, WhatIsFoundIsNamedPickedAndCopied) {
  AddSource(u"Ann - Day.mp3"_s);
  AddSource(u"Bob - Old.mp3"_s);
  AddSource(u"notes.txt"_s);
  database_.Add(Paths::Music, u"Bob - Old.mp3"_s);
  OpenScan();
  for (const QString& name : {u"Command1"_s, u"CmdSelect"_s, u"CmdClear"_s, u"Command7"_s})
    EXPECT_FALSE(Enabled(name)) << "an empty list: " << name.toStdString();
  SearchDrive(scan_->Work(), u"Command11"_s);
  EXPECT_THAT(Names(), ElementsAre(u"Ann - Day"_s, u"Bob - Old"_s));
  EXPECT_FALSE(Enabled(u"Command1"_s)) << "nothing is picked";
  Click(u"CmdSelect"_s);
  NameAll();
  EXPECT_EQ(Cell(1, ScanArtistColumn), u"Various"_s);
  Import();
  EXPECT_EQ(prompter_.Told().last().section(u"\r\n"_s, 0, 0), u"1 Tracks Copied Successfully"_s);
  EXPECT_TRUE(IsStaged(u"Ann - Day"_s));
  EXPECT_FALSE(IsStaged(u"Bob - Old"_s));
  EXPECT_TRUE(Holds(u"Ann - Day.mp3"_s)) << "the source stays";
  EXPECT_EQ(Ground(1).value<QColor>(), kYellow);
  EXPECT_FALSE(List().selectionModel()->hasSelection());
  List().selectRow(1);
  EXPECT_TRUE(Find<QLabel>(u"Label1"_s).text().startsWith(u"Yellow:"_s));

  Import();
  EXPECT_TRUE(IsStaged(u"Bob - Old"_s)) << "picked a second time it is meant to replace";
  List().selectRow(0);
  Import();
  EXPECT_EQ(Ground(0).value<QColor>(), kRed);
  Click(u"CmdClear"_s);
  EXPECT_EQ(List().model()->rowCount(), 0);
  EXPECT_TRUE(Holds(u"Bob - Old.mp3"_s));
}

TEST_F(ScanOnScreen, TitlesAndArtistsAreTakenApartByTheirButtons) {
  AddSource(u"Rock/Ann - Day.mp3"_s);
  AddSource(u"Rock/Cat + Rain.mp3"_s);
  OpenScan();
  SearchDrive(scan_->Work(), u"Command11"_s);
  const auto work = [this](const QString& button) {
    Click(button);
    loop_.RunFor(100ms);
  };
  List().selectRow(0);
  work(u"Command7"_s);
  EXPECT_EQ(Cell(0, ScanArtistColumn), u"Ann"_s);
  EXPECT_EQ(Cell(0), u"Day"_s);
  work(u"Command9"_s);
  EXPECT_EQ(Cell(0), u"Ann - Day"_s);
  prompter_.texts = {u"+"_s};
  work(u"Command8"_s);
  EXPECT_EQ(Find<QLabel>(u"Label5"_s).text(), u"Use New Seperator=+"_s);
  List().selectRow(1);
  work(u"Command7"_s);
  EXPECT_EQ(Cell(1, ScanArtistColumn), u"Cat"_s);
  work(u"Command6"_s);
  EXPECT_EQ(Cell(1, ScanArtistColumn), u"Rock"_s);
  EXPECT_EQ(Cell(0, ScanArtistColumn), u"Ann"_s) << "only of the selected rows";
  Find<QLineEdit>(u"Text2"_s).setText(u"rock"_s);
  Find<QLineEdit>(u"Text3"_s).setText(u"Pop"_s);
  Find<QLineEdit>(u"Text2"_s).setText(u"Rock"_s);
  work(u"CmdReplace"_s);
  EXPECT_EQ(Cell(1, ScanArtistColumn), u"Pop"_s);

  Click(u"Command10"_s);
  auto* editor = List().viewport()->findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  editor->setText(u"Typed"_s);
  QTest::keyClick(editor, Qt::Key_Return);
  QCoreApplication::processEvents();
  EXPECT_EQ(Cell(1), u"Typed"_s);
}

TEST_F(ScanOnScreen, SourcesAreDeletedOnlyAfterTwoQuestions) {
  AddSource(u"Ann - Day.mp3"_s);
  AddSource(u"Bob - Night.mp3"_s);
  OpenScan();
  SearchDrive(scan_->Work(), u"Command11"_s);
  NameAll();
  auto& deletes = Find<QCheckBox>(u"Check1"_s);
  const auto tick = [&](Answer answer) {
    prompter_.answers = {answer};
    QTest::mouseClick(&deletes, Qt::LeftButton, {}, QPoint(6, deletes.height() / 2));
    loop_.RunFor(10ms);
  };
  tick(Answer::Cancel);
  EXPECT_FALSE(deletes.isChecked());
  tick(Answer::Ok);
  EXPECT_TRUE(deletes.isChecked());
  List().selectRow(0);
  prompter_.answers = {Answer::No};
  Import();
  EXPECT_TRUE(IsStaged(u"Ann - Day"_s));
  EXPECT_TRUE(Holds(u"Ann - Day.mp3"_s));
  List().selectRow(1);
  prompter_.answers = {Answer::Yes};
  Import();
  EXPECT_TRUE(IsStaged(u"Bob - Night"_s));
  EXPECT_FALSE(Holds(u"Bob - Night.mp3"_s));
  EXPECT_THAT(Names(), ElementsAre(u"Ann - Day"_s)) << "its row goes with it";
}

TEST_F(ScanOnScreen, WhatCannotBeCopiedIsTold) {
  const QString gone = AddSource(u"Ann - Gone.mp3"_s);
  AddSource(u"Bob - Day.mp3"_s);
  database_.Add(Paths::Utility, u"Various"_s, "no folder");
  OpenScan();
  SearchDrive(scan_->Work(), u"Command11"_s);
  NameAll();
  QFile::remove(gone);
  Import();
  EXPECT_EQ(prompter_.Told().last(),
            u"0 Tracks Copied Successfully\r\n"
            "1 Track/s Not Copied Which Are Gone, Unreadable Or Too Small\r\n"
            "1 Track/s Could Not Be Copied (See The Error Log)"_s);
  EXPECT_EQ(List().model()->rowCount(), 2);
  EXPECT_EQ(Find<ProgressStrip>(u"ProgressBar1"_s).value(), 0);
}

TEST_F(ScanOnScreen, AnImportGoesOnInAClosedWindowAndEndsAtItsStop) {
  for (int number = 0; number < 8; ++number) AddSource(u"Ann - Day %1.mp3"_s.arg(number));
  OpenScan();
  QMimeData folders;
  folders.setUrls({QUrl::fromLocalFile(database_.tree.Path(u"drive"_s))});
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &folders, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&*scan_, &enter);
  QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &folders, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&*scan_, &drop);
  EXPECT_TRUE(scan_->Work().Searching());
  Click(u"Command11"_s);
  EXPECT_EQ(scan_->Work().Words(), u"Cancelling..Please wait"_s);
  Finish(scan_->Work());
  scan_->Work().ClearList();
  scan_->Work().Search({database_.tree.Path(u"drive"_s)});
  Finish(scan_->Work());
  ASSERT_EQ(List().model()->rowCount(), 8);
  NameAll();
  List().selectRow(0);
  Click(u"Command1"_s);
  ASSERT_TRUE(scan_->Work().Importing());
  EXPECT_FALSE(Enabled(u"CmdClear"_s));
  EXPECT_FALSE(Find<QCheckBox>(u"Check1"_s).isEnabled());
  scan_->close();
  Finish(scan_->Work());
  EXPECT_TRUE(IsStaged(u"Ann - Day 0"_s));
  scan_->show();
  List().selectAll();
  Click(u"Command1"_s);
  Click(u"Command11"_s);
  Finish(scan_->Work());
  EXPECT_TRUE(prompter_.Told().last().endsWith(u"Interupted By User!"_s));
  EXPECT_FALSE(IsStaged(u"Ann - Day 7"_s));
}

/// Remembers the player of the window, to see what is heard.
class HeardAudio : public ClockAudio {
 public:
  using ClockAudio::ClockAudio;
  std::unique_ptr<MediaPlayer> MakePlayer(const QString& output) override {
    auto made = ClockAudio::MakePlayer(output);
    player = made.get();
    return made;
  }
  MediaPlayer* player = nullptr;
};

class UtilityOnScreen : public ImportWindow {
 protected:
  void OpenUtility() {
    utility_.emplace(
        UtilityFolder::Services{loop_, settings_, heard_, catalogue_, database_.paths, u"Kelvo"_s});
    Show(*utility_);
  }
  QString Playing() { return Find<QLabel>(u"Label1"_s).text(); }
  HeardAudio heard_{loop_};
  std::optional<UtilityWindow> utility_;
};

TEST_F(UtilityOnScreen, TheFilesThatWaitAreListedAndHeard) {
  OpenUtility();
  EXPECT_EQ(List().model()->rowCount(), 0);
  EXPECT_FALSE(Enabled(u"CmdPlay"_s));
  EXPECT_FALSE(Enabled(u"CmdStop"_s));
  database_.Add(Paths::Utility, u"Amber/Way#2005-Dec# #.mp3"_s);
  database_.Add(Paths::Utility, u"Zulu/plain.wav"_s);
  QTest::keyClick(&*utility_, Qt::Key_F5);
  loop_.RunFor(100ms);
  EXPECT_THAT(Names(), ElementsAre(u"Way.mp3"_s, u"plain.wav"_s));
  EXPECT_EQ(Cell(0, UtilityFolder::Artist), u"Amber"_s);

  List().selectRow(1);
  Click(u"CmdPlay"_s);
  loop_.RunFor(100ms);
  EXPECT_EQ(Playing(), u"Currently Playing Sample plain.wav"_s);
  EXPECT_EQ(heard_.player->State(), PlayState::Playing);
  Click(u"CmdStop"_s);
  EXPECT_EQ(Playing(), QString());
  EXPECT_NE(heard_.player->State(), PlayState::Playing);
  EXPECT_FALSE(Enabled(u"CmdStop"_s));
  List().selectRow(0);
  QTest::keyClick(&List(), Qt::Key_Return);
  loop_.RunFor(100ms);
  EXPECT_EQ(Playing(), u"Currently Playing Sample Way.mp3"_s);
  utility_->close();
  EXPECT_NE(heard_.player->State(), PlayState::Playing) << "nobody sees what would sound";
}

TEST_F(UtilityOnScreen, TheVolumeIsSetByItsSliderAndFoundAgain) {
  OpenUtility();
  auto& slider = Find<Fader>(u"Slider1"_s);
  slider.setFocus();
  for (int press = 0; press < 3; ++press) QTest::keyClick(&slider, Qt::Key_Left);
  const int loss = 3 * slider.singleStep();
  EXPECT_EQ(slider.value(), loss) << "to the left is softer";
  EXPECT_EQ(heard_.player->Volume(), -2 * loss);
  loop_.RunFor(1s);
  utility_.reset();
  OpenUtility();
  EXPECT_EQ(Find<Fader>(u"Slider1"_s).value(), loss);
  EXPECT_EQ(heard_.player->Volume(), -2 * loss);
}

TEST_F(UtilityOnScreen, AFileThatCannotBePlayedIsTold) {
  heard_.SetDuration(database_.Add(Paths::Utility, u"Amber/broken.mp3"_s), -1);
  OpenUtility();
  List().selectRow(0);
  Click(u"CmdPlay"_s);
  loop_.RunFor(1s);
  EXPECT_EQ(prompter_.asked.size(), 1U);
  EXPECT_EQ(Playing(), QString());
  EXPECT_FALSE(Enabled(u"CmdStop"_s));
}

class JinglesOnScreen : public ImportWindow {
 protected:
  void OpenJingles() {
    jingles_.emplace(
        JingleImportWindow::Services{loop_, prompter_, settings_, catalogue_, database_.paths, u"Kelvo"_s});
    Show(*jingles_);
  }
  std::optional<JingleImportWindow> jingles_;
};

TEST_F(JinglesOnScreen, SoundsAreSearchedImportedAndDeletedByTheirButtons) {
  AddSource(u"bell.mp3"_s);
  AddSource(u"horn.mp3"_s);
  AddSource(u"small.wav"_s);
  OpenJingles();
  for (const QString& name : {u"CmdImport"_s, u"Command5"_s, u"CmdSelect"_s})
    EXPECT_FALSE(Enabled(name)) << "an empty list: " << name.toStdString();
  SearchDrive(jingles_->Work(), u"Command6"_s);
  EXPECT_THAT(Names(), ElementsAre(u"bell.mp3"_s, u"horn.mp3"_s, u"small.wav"_s));
  Click(u"CmdSelect"_s);
  Click(u"CmdImport"_s);
  EXPECT_FALSE(Enabled(u"CmdImport"_s)) << "one at a time";
  EXPECT_FALSE(Enabled(u"Command5"_s));
  Finish(jingles_->Work());
  EXPECT_EQ(prompter_.Told().last(),
            u"2 Files Were Imported Successfully !\r\n"
            "1 File/s Were Too Small(less than 10kbytes )And were Not Imported!"_s);
  EXPECT_TRUE(database_.Holds(Paths::Jingles, u"bell.mp3"_s));
  EXPECT_FALSE(database_.Holds(Paths::Jingles, u"small.wav"_s));

  List().selectRow(0);
  prompter_.answers = {Answer::Cancel};
  QTest::keyClick(&List(), Qt::Key_Delete);
  Finish(jingles_->Work());
  EXPECT_TRUE(Holds(u"bell.mp3"_s));
  List().selectAll();
  prompter_.answers = {Answer::Ok, Answer::Yes, Answer::No, Answer::No};
  Click(u"Command5"_s);
  Finish(jingles_->Work());
  EXPECT_FALSE(Holds(u"bell.mp3"_s));
  EXPECT_TRUE(Holds(u"horn.mp3"_s));
  EXPECT_THAT(Names(), ElementsAre(u"horn.mp3"_s, u"small.wav"_s));
  EXPECT_TRUE(database_.Holds(Paths::Jingles, u"bell.mp3"_s)) << "the jingle is another file";
}

TEST_F(JinglesOnScreen, ASearchIsStoppedAndAnImportGoesOnInAClosedWindow) {
  AddSource(u"bell.mp3"_s);
  OpenJingles();
  prompter_.paths = {database_.tree.Path(u"drive"_s)};
  Click(u"CmdBrowse"_s);
  loop_.RunFor(10ms);
  Click(u"Command6"_s);
  Click(u"Command6"_s);
  Finish(jingles_->Work());
  Click(u"Command6"_s);
  Finish(jingles_->Work());
  ASSERT_THAT(Names(), ElementsAre(u"bell.mp3"_s));
  Click(u"CmdSelect"_s);
  Click(u"CmdImport"_s);
  jingles_->close();
  Finish(jingles_->Work());
  EXPECT_TRUE(database_.Holds(Paths::Jingles, u"bell.mp3"_s));
}

class TransferOnScreen : public ImportWindow {
 protected:
  void OpenTransfer() {
    transfer_.emplace(TransferWindow::Services{loop_, prompter_, settings_, audio_, catalogue_,
                                               database_.paths, TrackDefaults{}, u"Kelvo"_s});
    Show(*transfer_);
    loop_.RunFor(1s);
  }
  QString Stage(const QString& title) {
    return database_.Add(Paths::Utility, u"Amber/"_s + title + u"#2005-Dec#Best#.mp3"_s);
  }
  std::optional<TransferWindow> transfer_;
};

TEST_F(TransferOnScreen, FilesAreSelectedEditedAndDeletedByTheirButtons) {
  OpenTransfer();
  EXPECT_FALSE(Enabled(u"CmdMove"_s));
  EXPECT_FALSE(Enabled(u"CmdSelect"_s));
  const QString first = Stage(u"Amber - One"_s);
  const QString second = Stage(u"Amber - Two"_s);
  QTest::keyClick(&*transfer_, Qt::Key_F5);
  loop_.RunFor(1s);
  ASSERT_EQ(List().model()->rowCount(), 2);
  Click(u"CmdSelect"_s);
  EXPECT_EQ(Find<QPushButton>(u"CmdSelect"_s).text(), u"Clear All"_s);
  EXPECT_TRUE(Enabled(u"CmdDelete"_s));
  Click(u"CmdSelect"_s);
  EXPECT_EQ(Find<QPushButton>(u"CmdSelect"_s).text(), u"Select All"_s);
  EXPECT_FALSE(Enabled(u"CmdDelete"_s));

  catalogue_.AddReference(ReferenceSet::Genres, u"Blues"_s);
  catalogue_.AddReference(ReferenceSet::Genres, u"Rock"_s);
  const QModelIndex category = List().model()->index(0, TransferRows::Category);
  List().setCurrentIndex(category);
  QTest::keyClick(&List(), Qt::Key_F2);
  auto* choice = List().viewport()->findChild<QComboBox*>();
  ASSERT_NE(choice, nullptr);
  EXPECT_EQ(Find<QLabel>(u"Label1"_s).text(), u"Extracting Genre Names"_s);
  EXPECT_GE(choice->findText(u"Rock"_s, Qt::MatchFixedString), 0);
  choice->setEditText(u"Folk"_s);
  QTest::keyClick(choice->lineEdit(), Qt::Key_Return);
  QCoreApplication::processEvents();
  EXPECT_EQ(category.data().toString(), u"Folk"_s);

  const bool oneIsFirst = Cell(0).contains(u"One"_s);
  List().selectRow(0);
  prompter_.answers = {Answer::No};
  Click(u"CmdDelete"_s);
  loop_.RunFor(1s);
  EXPECT_TRUE(QFile::exists(first) && QFile::exists(second));
  prompter_.answers = {Answer::Yes};
  Click(u"CmdDelete"_s);
  loop_.RunFor(1s);
  EXPECT_EQ(prompter_.Told().last(),
            u"This Action Will Delete All Selected Files in The List !\r\nContinue With Delete ?"_s);
  EXPECT_FALSE(QFile::exists(oneIsFirst ? first : second));
  EXPECT_TRUE(QFile::exists(oneIsFirst ? second : first));
  EXPECT_EQ(List().model()->rowCount(), 1);
}

TEST_F(TransferOnScreen, AFileThatIsNoMusicStaysAndIsToldOf) {
  const QString broken = Stage(u"Amber - Broken"_s);
  const QString good = Stage(u"Amber - Good"_s);
  audio_.SetDuration(broken, -1);
  OpenTransfer();
  Click(u"CmdSelect"_s);
  prompter_.answers = {Answer::Yes};
  Click(u"CmdMove"_s);
  EXPECT_FALSE(Enabled(u"CmdMove"_s)) << "one run at a time";
  EXPECT_TRUE(Find<QPushButton>(u"CmdStop"_s).isVisible());
  loop_.RunFor(5s);
  EXPECT_FALSE(Find<QPushButton>(u"CmdStop"_s).isVisible());
  EXPECT_THAT(Names(), ElementsAre(u"Amber - Broken.mp3"_s));
  EXPECT_EQ(prompter_.asked.size(), 2U) << "the question and the trouble";
  EXPECT_TRUE(QFile::exists(broken));
  EXPECT_FALSE(QFile::exists(good));
  EXPECT_TRUE(database_.Holds(Paths::Music, u"Amber - Good.mp3"_s));
  EXPECT_EQ(catalogue_.LastTrack(), 1);
}

TEST_F(TransferOnScreen, AStopLeavesWhatIsNotMovedAndARunGoesOnInAClosedWindow) {
  for (int number = 0; number < 6; ++number) Stage(u"Amber - Song %1"_s.arg(number));
  OpenTransfer();
  Click(u"CmdSelect"_s);
  prompter_.answers = {Answer::Yes};
  Click(u"CmdMove"_s);
  Click(u"CmdStop"_s);
  loop_.RunFor(5s);
  const int left = List().model()->rowCount();
  EXPECT_GT(left, 0);
  EXPECT_EQ(catalogue_.LastTrack(), 6 - left);
  List().selectAll();
  prompter_.answers = {Answer::Yes};
  Click(u"CmdMove"_s);
  transfer_->close();
  loop_.RunFor(10s);
  EXPECT_EQ(catalogue_.LastTrack(), 6);
  EXPECT_EQ(List().model()->rowCount(), 0);
}

}  // namespace
}  // namespace kelvo
