#include "database/ImportOnScreen.h"
#include "database/windows/ScanWindow.h"
#include "ui/ProgressStrip.h"

#include <QCheckBox>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QUrl>

namespace kelvo {
namespace {

using testing::OnScreen;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

const QColor kYellow(0xF0, 0xC8, 0x1E);
const QColor kRed(0xB4, 0x1E, 0x28);

class ScanOnScreen : public OnScreen<ScanWindow, ScanImport> {
 protected:
  void OpenScan() {
    Open({.loop = loop_,
          .prompter = prompter_,
          .catalogue = catalogue_,
          .paths = database_.paths,
          .title = u"Kelvo 2007"_s});
  }
  void Import() {
    Click(u"CmdImport"_s);
    Finish(*work_);
  }
  QString Staged(const QString& title) { return u"Various/"_s + title + u"#2007-xxx# #.mp3"_s; }
  bool IsStaged(const QString& title) { return database_.Holds(Paths::Utility, Staged(title)); }
  void NameAll() {
    List().selectAll();
    auto& column = Find<QComboBox>(u"CboInsertColumn"_s);
    column.setCurrentIndex(column.findText(u"Artist"_s));
    Find<QLineEdit>(u"TxtInsert"_s).setText(u"Various"_s);
    Click(u"CmdInsert"_s);
    loop_.RunFor(100ms);
  }
};

TEST_F(ScanOnScreen, WhatIsFoundIsNamedPickedAndCopied) {
  AddSource(u"Ann - Day.mp3"_s);
  AddSource(u"Bob - Old.mp3"_s);
  AddSource(u"notes.txt"_s);
  database_.Add(Paths::Music, u"Bob - Old.mp3"_s);
  OpenScan();
  for (const QString& name : {u"CmdImport"_s, u"CmdSelectAll"_s, u"CmdClear"_s, u"CmdExtractArtist"_s})
    EXPECT_FALSE(Enabled(name)) << "an empty list: " << name.toStdString();
  SearchDrive(*work_, u"CmdSearch"_s);
  EXPECT_THAT(Names(), ElementsAre(u"Ann - Day"_s, u"Bob - Old"_s));
  EXPECT_FALSE(Enabled(u"CmdImport"_s)) << "nothing is picked";
  Click(u"CmdSelectAll"_s);
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
  EXPECT_TRUE(Find<QLabel>(u"LblRow"_s).text().startsWith(u"Yellow:"_s));

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
  SearchDrive(*work_, u"CmdSearch"_s);
  const auto work = [this](const QString& button) {
    Click(button);
    loop_.RunFor(100ms);
  };
  List().selectRow(0);
  work(u"CmdExtractArtist"_s);
  EXPECT_EQ(Cell(0, ScanArtistColumn), u"Ann"_s);
  EXPECT_EQ(Cell(0), u"Day"_s);
  work(u"CmdArtistInFront"_s);
  EXPECT_EQ(Cell(0), u"Ann - Day"_s);
  prompter_.texts = {u"+"_s};
  work(u"CmdSeparator"_s);
  EXPECT_EQ(Find<QLabel>(u"LblSeparator"_s).text(), u"Use New Seperator=+"_s);
  List().selectRow(1);
  work(u"CmdExtractArtist"_s);
  EXPECT_EQ(Cell(1, ScanArtistColumn), u"Cat"_s);
  work(u"CmdArtistFromFolder"_s);
  EXPECT_EQ(Cell(1, ScanArtistColumn), u"Rock"_s);
  EXPECT_EQ(Cell(0, ScanArtistColumn), u"Ann"_s) << "only of the selected rows";
  Find<QLineEdit>(u"TxtExistingArtist"_s).setText(u"rock"_s);
  Find<QLineEdit>(u"TxtNewArtist"_s).setText(u"Pop"_s);
  Find<QLineEdit>(u"TxtExistingArtist"_s).setText(u"Rock"_s);
  work(u"CmdReplace"_s);
  EXPECT_EQ(Cell(1, ScanArtistColumn), u"Pop"_s);

  Click(u"CmdRenameTitle"_s);
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
  SearchDrive(*work_, u"CmdSearch"_s);
  NameAll();
  auto& deletes = Find<QCheckBox>(u"ChkDeleteSources"_s);
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

TEST_F(ScanOnScreen, WhatCannotBePlayedIsToldOnItsRowAndNeverTickedGreen) {
  AddSource(u"Ann - Letter.mp3"_s, "Dear Bob, this is no song.");
  AddSource(u"Bob - Day.mp3"_s);
  OpenScan();
  SearchDrive(*work_, u"CmdSearch"_s);
  const auto look = [this](int row, Qt::ItemDataRole role) {
    return List().model()->index(row, ScanTitleColumn).data(role);
  };
  EXPECT_FALSE(look(0, Qt::DecorationRole).isNull());
  EXPECT_TRUE(look(1, Qt::DecorationRole).isNull());
  EXPECT_TRUE(look(0, Qt::AccessibleDescriptionRole).toString().startsWith(u"It cannot be played: "_s));
  List().selectRow(0);
  EXPECT_EQ(Find<QLabel>(u"LblRow"_s).text(), look(0, Qt::AccessibleDescriptionRole).toString());
  List().selectRow(1);
  EXPECT_EQ(Find<QLabel>(u"LblRow"_s).text(), Cell(1, ScanPathColumn));
  NameAll();
  Import();
  EXPECT_EQ(work_->Rows().Row(0).mark, ScanMark::Copied);
  EXPECT_EQ(prompter_.Told().last(),
            u"2 Tracks Copied Successfully\r\n1 Of Them Cannot Be Played (See Their Rows)"_s);
  EXPECT_EQ(look(0, Qt::ForegroundRole).value<QColor>(), Theme::Palette().amber);
  EXPECT_EQ(look(1, Qt::ForegroundRole).value<QColor>(), Theme::Palette().ready);

  shown_->resize(shown_->minimumSizeHint());
  EXPECT_FALSE(List().isColumnHidden(ScanPathColumn));
}

TEST_F(ScanOnScreen, WhatCannotBeCopiedIsTold) {
  const QString gone = AddSource(u"Ann - Gone.mp3"_s);
  AddSource(u"Bob - Day.mp3"_s);
  database_.Add(Paths::Utility, u"Various"_s, "no folder");
  OpenScan();
  SearchDrive(*work_, u"CmdSearch"_s);
  NameAll();
  QFile::remove(gone);
  Import();
  EXPECT_EQ(prompter_.Told().last(),
            u"0 Tracks Copied Successfully\r\n"
            "1 Track/s Not Copied Which Are Gone, Unreadable Or Too Small\r\n"
            "1 Track/s Could Not Be Copied:\r\nBob - Day: Cannot make the folder "_s +
                database_.paths(Paths::Utility) + u"/Various"_s);
  EXPECT_EQ(List().model()->rowCount(), 2);
  EXPECT_EQ(Find<ProgressStrip>(u"PrgImport"_s).value(), 0);
}

TEST_F(ScanOnScreen, AnImportGoesOnInAClosedWindowAndEndsAtItsStop) {
  for (int number = 0; number < 8; ++number) AddSource(u"Ann - Day %1.mp3"_s.arg(number));
  OpenScan();
  QMimeData folders;
  folders.setUrls({QUrl::fromLocalFile(database_.tree.Path(u"drive"_s))});
  const Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction;
  QDragEnterEvent enter(QPoint(5, 5), offered, &folders, Qt::LeftButton, Qt::NoModifier);
  QDragMoveEvent move(QPoint(5, 5), offered, &folders, Qt::LeftButton, Qt::NoModifier);
  QDropEvent drop(QPointF(5, 5), offered, &folders, Qt::LeftButton, Qt::NoModifier);
  for (QDropEvent* each : {static_cast<QDropEvent*>(&enter), static_cast<QDropEvent*>(&move), &drop}) {
    each->setDropAction(Qt::MoveAction);
    QApplication::sendEvent(&*shown_, each);
    EXPECT_TRUE(each->isAccepted());
    EXPECT_EQ(each->dropAction(), Qt::CopyAction) << "or the other program deletes its files";
  }
  EXPECT_TRUE(work_->Searching());
  Click(u"CmdSearch"_s);
  EXPECT_EQ(work_->Words(), u"Cancelling..Please wait"_s);
  Finish(*work_);
  work_->ClearList();
  work_->Search({database_.tree.Path(u"drive"_s)});
  Finish(*work_);
  ASSERT_EQ(List().model()->rowCount(), 8);
  NameAll();
  List().selectRow(0);
  Click(u"CmdImport"_s);
  ASSERT_TRUE(work_->Importing());
  EXPECT_FALSE(Enabled(u"CmdClear"_s));
  EXPECT_FALSE(Find<QCheckBox>(u"ChkDeleteSources"_s).isEnabled());
  shown_->close();
  Finish(*work_);
  EXPECT_TRUE(IsStaged(u"Ann - Day 0"_s));
  shown_->show();
  List().selectAll();
  Click(u"CmdImport"_s);
  Click(u"CmdSearch"_s);
  Finish(*work_);
  EXPECT_TRUE(prompter_.Told().last().endsWith(u"Interupted By User!"_s));
  EXPECT_FALSE(IsStaged(u"Ann - Day 7"_s));
}

}  // namespace
}  // namespace kelvo
