#include "app/FolderChooser.h"
#include "app/Installer.h"
#include "app/windows/FolderDialog.h"
#include "app/windows/InstallerWindow.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"
#include "support/TemporaryTree.h"
#include "ui/Theme.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;
using namespace Qt::StringLiterals;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::StartsWith;

namespace {

class InstallerTest : public ::testing::Test {
 protected:
  void Make(const Paths& present = {}, const QString& generator = {}) {
    run_.Cancel();
    result_.reset();
    installer_ = std::make_unique<Installer>(Installer::Services{.loop = loop_,
                                                                 .prompter = prompter_,
                                                                 .settings = settings_,
                                                                 .facts = facts_,
                                                                 .programFolder = program_,
                                                                 .demoGenerator = generator},
                                             present);
    run_ = Await(*installer_, &result_);
  }
  void Finish() {
    EXPECT_TRUE(loop_.RunUntil([this] { return !installer_->Busy(); }));
    loop_.RunFor(std::chrono::milliseconds(1));
  }
  QString Setting(const QString& section, const QString& key) const {
    return settings_.GetSetting(facts_.title, section, key, u"none"_s);
  }
  QStringList Folders(int slot, const QString& place = u"program"_s) const {
    return QDir(tree_.Path(place + u'/' + Paths::FolderName(slot)))
        .entryList(QDir::Dirs | QDir::NoDotAndDotDot);
  }
  QString Script(const QByteArray& body) const {
    const QString path = tree_.Write(u"demo_library"_s, "#!/bin/sh\n" + body);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner);
    return path;
  }

  TemporaryTree tree_;
  SimulatedEventLoop loop_{QDateTime(QDate(2007, 6, 1), QTime(20, 0))};
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, tree_.Path(u"kelvo.log"_s)};
  SettingsStore settings_{loop_, tree_.Path(u"settings.ini"_s)};
  ProgramFacts facts_;
  QString program_ = tree_.MakeFolder(u"program"_s);
  std::unique_ptr<Installer> installer_;
  std::optional<Paths> result_;

 private:
  static Job<> Await(Installer& installer, std::optional<Paths>* result) {
    *result = co_await installer.Run();
  }
  Job<> run_;
};

TEST_F(InstallerTest, PutsEachFolderWhereItsRowSaysAndNeverIntoItself) {
  Installer::Locations rows;
  rows.fill(u"/data"_s);
  rows[1] = u"/media/stick/Kelvo2007_Jingles/"_s;
  rows[2] = u"/media/disc/Kelvo2007_Jingles"_s;
  rows[3] = u"/old/my infos"_s;
  rows[4] = u"/old/my genres"_s;
  Paths present;
  present.Set(Paths::Info, u"/old/my infos"_s);
  const Paths paths = ApplyLocations(rows, u"/home/dj/kelvo"_s, present);
  EXPECT_EQ(paths(Paths::Playlists), u"/data/Kelvo2007_Playlists"_s);
  EXPECT_EQ(paths(Paths::Jingles), u"/media/stick/Kelvo2007_Jingles"_s);
  EXPECT_EQ(paths(Paths::Music), u"/media/disc/Kelvo2007_Jingles/Kelvo2007_Music files"_s);
  EXPECT_EQ(paths(Paths::Info), u"/old/my infos"_s) << "the folder that is in use, not a new one in it";
  EXPECT_EQ(paths(Paths::Categories), u"/old/my genres/Kelvo2007_Categories"_s);
  EXPECT_EQ(paths(Paths::Utility), u"/home/dj/kelvo/Kelvo2007_Utility"_s);
}

TEST_F(InstallerTest, MakesAndSeedsTheTreeAndSavesItsPlace) {
  Make();
  EXPECT_EQ(installer_->Title(), u"Kelvo 2007 New Installation Settings"_s);
  EXPECT_EQ(installer_->Head(), u"Kelvo 2007 Will Create Directories On The Following Paths :"_s);
  EXPECT_EQ(installer_->Location(6), program_);
  const QString disc = tree_.MakeFolder(u"disc"_s);
  installer_->SetLocation(Paths::Albums - 1, disc);
  prompter_.answers = {Answer::Ok};
  installer_->Install();
  Finish();

  ASSERT_TRUE(result_);
  EXPECT_EQ((*result_)(Paths::Albums), disc + u"/Kelvo2007_Albums"_s);
  EXPECT_EQ(Folders(Paths::Categories).size(), 133);
  EXPECT_THAT(Folders(Paths::Categories), Contains(u"~ALL CATEGORIES"_s));
  EXPECT_THAT(Folders(Paths::Categories), Contains(u"Uk - Reggae"_s));
  EXPECT_EQ(Folders(Paths::Artists).size(), 12);
  EXPECT_THAT(Folders(Paths::Artists), Contains(u"Artist-Band 10"_s));
  EXPECT_EQ(Folders(Paths::Albums, u"disc"_s).size(), 11);
  EXPECT_THAT(Folders(Paths::Playlists),
              ElementsAre(u"Hen Night"_s, u"Old Farts Gathering"_s, u"Stag Night"_s, u"Wedding Reception"_s));
  EXPECT_TRUE(tree_.Exists(u"program/Kelvo2007_Utility"_s));

  EXPECT_EQ(Setting(u"Startup"_s, u"Paths"_s), result_->ToSetting());
  EXPECT_EQ(Setting(u"Startup"_s, u"Disclaim"_s), u"0"_s);
  EXPECT_EQ(Setting(u"Startup"_s, u"DmanAccess"_s), u"True"_s);
  EXPECT_EQ(Setting(u"ProgInfo"_s, u"AppPath"_s), program_);
  EXPECT_EQ(Setting(u"ProgInfo"_s, u"Version"_s), u"1,1,4"_s);
  EXPECT_EQ(Setting(u"ProgInfo"_s, u"InstallDate"_s), u"01/06/2007"_s);
  EXPECT_THAT(prompter_.Told().last().toStdString(), StartsWith("Thank You ! "));
}

TEST_F(InstallerTest, CompletesAnInstallationThatWasStoppedAndKeepsWhatIsThere) {
  Make();
  installer_->Install();
  ASSERT_TRUE(loop_.RunUntil([this] { return installer_->GetProgress().value == 40; }));
  installer_->GiveUp();
  EXPECT_FALSE(installer_->Busy());
  loop_.RunFor(std::chrono::seconds(1));
  EXPECT_LT(Folders(Paths::Categories).size(), 40);
  EXPECT_EQ(Setting(u"Startup"_s, u"Paths"_s), u"none"_s);
  EXPECT_FALSE(result_);

  tree_.Write(u"program/Kelvo2007_Music files/Mine - Own.mp3"_s, "music");
  tree_.MakeFolder(u"program/Kelvo2007_Artists/My Own Band"_s);
  Make();
  prompter_.answers = {Answer::Ok};
  installer_->Install();
  Finish();
  EXPECT_TRUE(result_);
  EXPECT_EQ(Folders(Paths::Categories).size(), 133);
  EXPECT_EQ(Folders(Paths::Artists).size(), 13);
  EXPECT_EQ(tree_.Read(u"program/Kelvo2007_Music files/Mine - Own.mp3"_s), "music");

  // Now that all eight are there, nothing is seeded: what the operator removed stays away.
  QDir().rmdir(tree_.Path(u"program/Kelvo2007_Artists/Pink Floyd"_s));
  Make(*result_);
  EXPECT_EQ(installer_->Location(0), tree_.Path(u"program/Kelvo2007_Playlists"_s));
  prompter_.answers = {Answer::Ok};
  installer_->Install();
  Finish();
  EXPECT_EQ(result_, Paths::Below(program_));
  EXPECT_EQ(Folders(Paths::Artists).size(), 12);
}

TEST_F(InstallerTest, RefusesAPlaceThatCannotHoldADatabaseBeforeItMakesAnything) {
  const QString file = tree_.Write(u"file"_s, "in the way");
  for (const QString& place : {file, file + u"/below"_s, u"music"_s}) {
    Make();
    installer_->SetLocation(Paths::Albums - 1, place);
    prompter_.answers = {Answer::Ok};
    installer_->Install();
    Finish();
    EXPECT_THAT(prompter_.Told().last().toStdString(),
                ::testing::HasSubstr(place.toStdString().substr(0, 5)));
    EXPECT_FALSE(result_);
  }
  EXPECT_TRUE(QDir(program_).isEmpty());
  EXPECT_EQ(Setting(u"Startup"_s, u"Paths"_s), u"none"_s);
}

TEST_F(InstallerTest, APlaceWithACommaInItsNameIsAPlaceLikeAnyOther) {
  Make();
  installer_->SetLocation(Paths::Albums - 1, tree_.MakeFolder(u"rock, pop"_s));
  prompter_.answers = {Answer::Ok};
  installer_->Install();
  Finish();
  ASSERT_TRUE(result_);
  EXPECT_EQ(Paths::FromSetting(Setting(u"Startup"_s, u"Paths"_s)), *result_);
  EXPECT_TRUE(tree_.Exists(u"rock, pop/Kelvo2007_Albums"_s));
}

TEST_F(InstallerTest, GivingUpEndsWithoutATrace) {
  bool ended = false;
  const auto await = [](Installer& installer, bool* done) -> Job<> {
    const std::optional<Paths> paths = co_await installer.Run();
    EXPECT_FALSE(paths);
    *done = true;
  };
  installer_ = std::make_unique<Installer>(Installer::Services{.loop = loop_,
                                                               .prompter = prompter_,
                                                               .settings = settings_,
                                                               .facts = facts_,
                                                               .programFolder = program_});
  const Job<> run = await(*installer_, &ended);
  installer_->GiveUp();
  EXPECT_TRUE(loop_.RunUntil([&] { return ended; }));
  EXPECT_TRUE(QDir(program_).isEmpty());
}

TEST_F(InstallerTest, StartsWithTheDemoLibraryThatItsProgramMakes) {
  Make({}, Script("if [ $1 = --quiz-sounds ]; then mkdir -p \"$2/Quiz Mixers\"; exit; fi\n"
                  "echo ' 45%  Neon Harbour'; mkdir -p \"$3/Kelvo2007_Music files\"\n"));
  QStringList words;
  QObject::connect(installer_.get(), &Installer::Changed,
                   [&] { words.append(installer_->GetProgress().words); });
  installer_->SetDemoLocation(tree_.Path(u"else where"_s));
  prompter_.answers = {Answer::Ok};
  installer_->InstallDemo();
  Finish();
  EXPECT_THAT(words, Contains(u"Neon Harbour"_s));
  EXPECT_EQ(result_, Paths::Below(tree_.Path(u"else where/demo"_s)));
  EXPECT_TRUE(tree_.Exists(u"else where/demo/Kelvo2007_Music files"_s));
  EXPECT_TRUE(QDir(program_).exists(u"Quiz Mixers"_s));
  EXPECT_EQ(Setting(u"Startup"_s, u"AudioWarningFilePath"_s), tree_.Path(u"else where/demo/ello.Mp3"_s));
}

TEST_F(InstallerTest, SaysWhyTheDemoLibraryWasNotMadeAndGoesOnAsking) {
  Make({}, Script("echo 'demo_library: no room' >&2; exit 1\n"));
  prompter_.answers = {Answer::Ok};
  installer_->InstallDemo();
  Finish();
  EXPECT_THAT(prompter_.Told().last().toStdString(), ::testing::HasSubstr("no room"));
  EXPECT_FALSE(result_);
  EXPECT_EQ(Setting(u"Startup"_s, u"Paths"_s), u"none"_s);
}

TEST_F(InstallerTest, ShowsItsRowsAndTakesAPlaceFromTheFolderDialog) {
  Theme::Apply(*qApp);
  tree_.MakeFolder(u"discs/blue"_s);
  Make();
  InstallerWindow window(loop_, *installer_);
  window.show();
  installer_->SetLocation(2, tree_.Path(u"discs"_s));
  QTest::mouseClick(window.findChild<QPushButton*>(u"CmdFolderPlace2"_s), Qt::LeftButton);
  auto* dialog = window.findChild<QDialog*>(u"FolderDialog"_s);
  ASSERT_NE(dialog, nullptr);
  loop_.RunFor(std::chrono::milliseconds(10));
  QTest::keyClick(dialog->findChild<QListWidget*>(u"FolderList"_s), Qt::Key_Return);
  loop_.RunFor(std::chrono::milliseconds(10));
  QTest::mouseClick(dialog->findChild<QPushButton*>(u"OKButton"_s), Qt::LeftButton);
  EXPECT_EQ(window.findChild<QLabel*>(u"FolderName2"_s)->text(), u"Kelvo2007_Music files"_s);
  EXPECT_EQ(window.findChild<QLabel*>(u"FolderPlace2"_s)->text(), tree_.Path(u"discs/blue"_s));
  EXPECT_FALSE(window.findChild<QPushButton*>(u"StartDemo"_s)->isVisible());

  prompter_.answers = {Answer::Ok};
  auto* install = window.findChild<QPushButton*>(u"CmdInstall"_s);
  QTest::mouseClick(install, Qt::LeftButton);
  EXPECT_FALSE(install->isEnabled()) << "once is enough";
  Finish();
  ASSERT_TRUE(result_);
  EXPECT_EQ((*result_)(Paths::Music), tree_.Path(u"discs/blue/Kelvo2007_Music files"_s));
}

TEST(FolderChooserTest, WalksThroughFoldersAndSaysWhyItCannot) {
  const TemporaryTree tree;
  tree.MakeFolder(u"a/b"_s);
  tree.Write(u"a/file"_s, "no folder");
  SimulatedEventLoop loop;
  FolderChooser chooser(loop, tree.Path(u"a/gone/deeper"_s));
  const auto settle = [&] { EXPECT_TRUE(loop.RunUntil([&] { return !chooser.Looking(); })); };
  settle();
  EXPECT_EQ(chooser.Folder(), tree.Path(u"a"_s)) << "the nearest that is there";
  EXPECT_THAT(chooser.Subfolders(), ElementsAre(u"b"_s));
  chooser.Enter(u"b"_s);
  settle();
  chooser.MakeFolder(u" new one "_s);
  settle();
  EXPECT_EQ(chooser.Folder(), tree.Path(u"a/b/new one"_s));
  chooser.MakeFolder(u"this/that"_s);
  EXPECT_FALSE(chooser.Trouble().isEmpty());
  chooser.Up();
  settle();
  EXPECT_THAT(chooser.Subfolders(), ElementsAre(u"new one"_s));
  EXPECT_TRUE(chooser.Trouble().isEmpty());
  for (const QString& wrong : {tree.Path(u"a/file"_s), tree.Path(u"gone"_s), u"relative"_s, QString()}) {
    chooser.Open(wrong);
    settle();
    EXPECT_FALSE(chooser.Trouble().isEmpty()) << wrong.toStdString();
    EXPECT_EQ(chooser.Folder(), tree.Path(u"a/b"_s));
  }
}

TEST(FolderChooserTest, TellsFreeSpaceInAUnitThatShowsIt) {
  EXPECT_EQ(FreeSpaceText(13421772800), u"12.50 GB"_s);
  EXPECT_EQ(FreeSpaceText(536870912), u"512.00 MB"_s);
  EXPECT_EQ(FreeSpaceText(1000), u"0 MB"_s);
  EXPECT_EQ(FreeSpaceText(-1), QString());
}

TEST_F(InstallerTest, ARefusedNameOfANewFolderStaysToBeMended) {
  Theme::Apply(*qApp);
  FolderDialog dialog(loop_, program_, nullptr);
  dialog.show();
  loop_.RunFor(std::chrono::milliseconds(10));
  auto& name = *dialog.findChild<QLineEdit*>(u"NewName"_s);
  QTest::mouseClick(dialog.findChild<QPushButton*>(u"NewFolder"_s), Qt::LeftButton);
  EXPECT_EQ(dialog.focusWidget(), &name) << "it wants a name first";
  const auto make = [&](const QString& text) {
    name.setText(text);
    QTest::keyClick(&name, Qt::Key_Return);
    loop_.RunFor(std::chrono::milliseconds(10));
    return name.text();
  };
  EXPECT_EQ(make(u"this/that"_s), u"this/that"_s);
  EXPECT_EQ(make(QString(300, u'x')), QString(300, u'x'));
  EXPECT_TRUE(dialog.findChild<QLabel*>(u"LblTrouble"_s)->text().endsWith(u": File name too long"_s));
  EXPECT_EQ(make(u"that"_s), QString());
  EXPECT_EQ(dialog.findChild<QLineEdit*>(u"Path"_s)->text(), program_ + u"/that"_s);
}

}  // namespace
