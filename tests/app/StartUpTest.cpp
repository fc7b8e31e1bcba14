#include "app/DatabaseCheck.h"
#include "app/SplashChecks.h"
#include "app/windows/SplashWindow.h"
#include "audio/ClockAudio.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"
#include "support/TemporaryTree.h"

#include <QFile>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <vector>

using namespace kelvo;
using namespace kelvo::testing;
using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

/// A loop on which some of the looks at disks never end.
class DeadDisks : public SimulatedEventLoop {
 public:
  void RunOffThread(Lane lane, std::function<void()> work, Callback done) override {
    if (lane == Lane::Apart && dead.contains(++looks)) {
      hanging_.push_back(std::move(work));
      return;
    }
    SimulatedEventLoop::RunOffThread(lane, std::move(work), std::move(done));
  }
  /// By their number, from 1.
  std::set<int> dead;
  int looks = 0;

 private:
  std::vector<std::function<void()>> hanging_;  ///< kept, as by their threads
};

/// The looks that come before those at the database's folders: whether the settings can be written.
constexpr int kFirstLook = 1;

class StartUp : public ::testing::Test {
 protected:
  std::optional<Paths> Check() { return Check(settings); }
  std::optional<Paths> Check(SettingsStore& store) {
    const DatabaseCheck::Install install = [this](Paths paths) { return Install(std::move(paths)); };
    DatabaseCheck check(loop, prompter, store, facts, install);
    std::optional<Paths> result;
    bool ended = false;
    Job<> run = Await(check, &result, &ended);
    EXPECT_TRUE(loop.RunUntil([&] { return ended; }));
    return result;
  }
  QString Stored() const {
    return settings.GetSetting(facts.title, QStringLiteral("Startup"), QStringLiteral("Paths"));
  }
  void Store(const QString& paths) {
    settings.SaveSetting(facts.title, QStringLiteral("Startup"), QStringLiteral("Paths"), paths);
  }
  /// A whole tree under `name`, in the settings.
  Paths MakeDatabase(const QString& name) {
    const Paths paths = Paths::Below(tree.Path(name));
    for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) QDir().mkpath(paths(slot));
    Store(paths.ToSetting());
    return paths;
  }

  TemporaryTree tree;
  DeadDisks loop;
  ScriptedPrompter prompter;
  SettingsStore settings{loop, tree.Path(QStringLiteral("settings.ini"))};
  ProgramFacts facts;
  /// What the installer was called with, and what it gives.
  std::vector<Paths> installs;
  std::optional<Paths> installed;

 private:
  Job<std::optional<Paths>> Install(Paths present) {
    installs.push_back(present);
    co_return installed;
  }
  static Job<> Await(DatabaseCheck& check, std::optional<Paths>* result, bool* ended) {
    *result = co_await check.Run();
    *ended = true;
  }
};

TEST_F(StartUp, WithAWholeDatabaseAsksNothing) {
  const Paths paths = MakeDatabase(QStringLiteral("music"));
  EXPECT_EQ(Check(), paths);
  EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(StartUp, WithoutPathsRunsTheInstallerAndEndsWhenThatIsGivenUp) {
  EXPECT_EQ(Check(), std::nullopt);
  installed = MakeDatabase(QStringLiteral("music"));
  Store(QStringLiteral("NoPaths"));
  EXPECT_EQ(Check(), installed);
  EXPECT_THAT(installs, ElementsAre(Paths(), Paths()));
  EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(StartUp, RepairsAMissingFolderByANewPathAndChecksFromTheFirstAgain) {
  Paths paths = MakeDatabase(QStringLiteral("music"));
  const QString gone = paths(Paths::Jingles);
  QDir().rmdir(gone);
  QDir().rmdir(paths(Paths::Albums));
  const QString jingles = tree.MakeFolder(QStringLiteral("elsewhere/jingles"));
  const QString albums = tree.MakeFolder(QStringLiteral("elsewhere/albums"));
  prompter.answers = {Answer::No, Answer::No};
  prompter.texts = {jingles, albums};
  const std::optional<Paths> repaired = Check();
  paths.Set(Paths::Jingles, jingles);
  paths.Set(Paths::Albums, albums);
  EXPECT_EQ(repaired, paths);
  EXPECT_EQ(Stored(), paths.ToSetting());
  EXPECT_EQ(prompter.asked[0].text,
            QStringLiteral("Cannot Find path ") + gone + QStringLiteral(" Run Install Again ?"));
  EXPECT_EQ(prompter.asked[0].icon, PromptIcon::Information);
  EXPECT_EQ(prompter.asked[1].title, QStringLiteral("Path error"));
  EXPECT_EQ(prompter.asked[1].text,
            QStringLiteral("The Folder Path ") + gone +
                QStringLiteral(" Cannot Be Located !\r\nPlease Enter The Path To This Folder"));
}

TEST_F(StartUp, EndsOnlyWhenTheRepairIsCancelledTwice) {
  const Paths paths = MakeDatabase(QStringLiteral("music"));
  QDir().rmdir(paths(Paths::Music));
  const QString before = Stored();
  prompter.answers = {Answer::No, Answer::No, Answer::Yes};
  prompter.texts = {QString(), QString()};
  EXPECT_EQ(Check(), std::nullopt);
  EXPECT_EQ(Stored(), before);
  EXPECT_THAT(prompter.Told(), Contains(QStringLiteral("Cancel resetting Paths ?")));
}

TEST_F(StartUp, TooFewFieldsFailAtTheFirstEmptySlotAndTheInstallerGetsTheFoldersThatAreThere) {
  const Paths paths = MakeDatabase(QStringLiteral("music"));
  Store(paths.ToSetting().section(QLatin1Char(','), 0, 4));
  QDir().rmdir(paths(Paths::Info));
  prompter.answers = {Answer::Yes};
  installed = Paths::Below(tree.Path(QStringLiteral("music")));
  installed->Set(Paths::Info, tree.MakeFolder(QStringLiteral("elsewhere/info")));
  EXPECT_EQ(Check(), installed);
  EXPECT_EQ(prompter.asked[0].text, QStringLiteral("Cannot Find path ") + paths(Paths::Info) +
                                        QStringLiteral(" Run Install Again ?"));
  ASSERT_EQ(installs.size(), 1U);
  EXPECT_EQ(installs[0](Paths::Categories), paths(Paths::Categories));
  EXPECT_EQ(installs[0](Paths::Info), QString());
  EXPECT_EQ(installs[0](Paths::Utility), QString());
}

TEST_F(StartUp, ARepairTakesWholePathsAlsoWithACommaAndNoOthers) {
  const Paths paths = MakeDatabase(QStringLiteral("music"));
  QDir().rmdir(paths(Paths::Music));
  const QString comma = tree.MakeFolder(QStringLiteral("rock, pop"));
  prompter.answers = {Answer::No, Answer::Ok};
  prompter.texts = {QStringLiteral("rock, pop"), comma};
  const std::optional<Paths> repaired = Check();
  ASSERT_TRUE(repaired);
  EXPECT_EQ((*repaired)(Paths::Music), comma);
  EXPECT_EQ(Stored(), repaired->ToSetting());
  EXPECT_EQ(Check(), repaired) << "the next start finds all eight folders";
}

TEST_F(StartUp, ADatabaseOfAnOlderFormIsNamedLeftAsItIsAndEndsTheRun) {
  const Paths paths = MakeDatabase(QStringLiteral("music"));
  const QString info = QStringLiteral("music/") + Paths::FolderName(Paths::Info) + QLatin1Char('/');
  tree.Write(info + QStringLiteral("Abba.kif"), "new");
  tree.Write(info + QStringLiteral(".directory"), "[Desktop Entry]");
  EXPECT_EQ(Check(), paths);
  EXPECT_TRUE(prompter.asked.empty());

  tree.Write(info + QStringLiteral("Blur.inf"), "old");
  for (const QString& stored : {paths.ToSetting(), QStringLiteral("NoPaths")}) {
    Store(stored);
    installed = paths;
    prompter.answers = {Answer::Ok};
    EXPECT_EQ(Check(), std::nullopt) << "also one that the installer was shown";
    EXPECT_THAT(prompter.asked.back().text.toStdString(), HasSubstr("Blur.inf"));
    EXPECT_THAT(prompter.asked.back().text.toStdString(), HasSubstr(paths(Paths::Info).toStdString()));
  }
  EXPECT_EQ(prompter.asked.size(), 2U);
  EXPECT_EQ(tree.Read(info + QStringLiteral("Blur.inf")), "old");
  EXPECT_EQ(QDir(paths(Paths::Info)).entryList(QDir::Files).size(), 2);
}

TEST_F(StartUp, ARepairDoesNotTakeAFolderThatHoldsSomethingElseForTheTrackInfo) {
  Paths paths = MakeDatabase(QStringLiteral("music"));
  QDir().rmdir(paths(Paths::Info));
  tree.Write(QStringLiteral("songs/Abba.mp3"), "sound");
  const QString good = tree.MakeFolder(QStringLiteral("info"));
  prompter.answers = {Answer::No, Answer::Ok};
  prompter.texts = {tree.Path(QStringLiteral("songs")), good};
  paths.Set(Paths::Info, good);
  EXPECT_EQ(Check(), paths);
  EXPECT_EQ(Stored(), paths.ToSetting());
  EXPECT_THAT(prompter.asked.at(2).text.toStdString(), HasSubstr("Abba.mp3"));
}

TEST_F(StartUp, AFolderThatDoesNotAnswerIsMissingAfterTenSecondsAndCanBeRepaired) {
  Paths paths = MakeDatabase(QStringLiteral("music"));
  const QString gone = paths(Paths::Music);
  const QString near = tree.MakeFolder(QStringLiteral("near"));
  loop.dead = {kFirstLook + Paths::Music, kFirstLook + Paths::Utility};
  prompter.answers = {Answer::No};
  prompter.texts = {near};
  paths.Set(Paths::Music, near);
  EXPECT_EQ(Check(), paths);
  EXPECT_EQ(prompter.asked[0].text,
            QStringLiteral("Cannot Find path ") + gone + QStringLiteral(" Run Install Again ?"));
  EXPECT_GE(loop.Elapsed(), 10s);
  EXPECT_LT(loop.Elapsed(), 11s) << "all disks are waited for at once";
}

TEST_F(StartUp, NoConsoleOpensOnTrackInfoFilesThatCouldNotBeLookedThrough) {
  const Paths paths = MakeDatabase(QStringLiteral("music"));
  loop.dead = {kFirstLook + Paths::kLast + 1};
  prompter.answers = {Answer::Yes};
  EXPECT_EQ(Check(), std::nullopt);
  EXPECT_EQ(prompter.asked[0].text, QStringLiteral("Cannot Find path ") + paths(Paths::Info) +
                                        QStringLiteral(" Run Install Again ?"));
}

TEST_F(StartUp, SettingsThatCannotBeReadAreNoFirstStartUnlessTheOperatorSaysSo) {
  tree.MakeFolder(QStringLiteral("odd.ini"));
  SettingsStore odd(loop, tree.Path(QStringLiteral("odd.ini")));
  prompter.answers = {Answer::No};
  EXPECT_EQ(Check(odd), std::nullopt);
  EXPECT_TRUE(installs.empty());
  ASSERT_EQ(prompter.asked.size(), 1U);
  EXPECT_THAT(prompter.asked[0].text.toStdString(),
              HasSubstr("The Settings File " + odd.FilePath().toStdString() + " Cannot Be Read !"));
  EXPECT_EQ(prompter.asked[0].buttons, Buttons::YesNo);

  prompter.answers = {Answer::Yes};
  installed = MakeDatabase(QStringLiteral("music"));
  EXPECT_EQ(Check(odd), installed);
  EXPECT_EQ(installs.size(), 1U);
  EXPECT_EQ(prompter.asked.size(), 2U) << "it can be written when the folder is set aside";
}

TEST_F(StartUp, SettingsThatCannotBeWrittenAreToldAndTheStartGoesOn) {
  const Paths paths = MakeDatabase(QStringLiteral("music"));
  tree.Write(QStringLiteral("file"), "in the folder's place");
  SettingsStore lost(loop, tree.Path(QStringLiteral("file/settings.ini")));
  lost.SaveSetting(facts.title, QStringLiteral("Startup"), QStringLiteral("Paths"), paths.ToSetting());
  prompter.answers = {Answer::Ok};
  EXPECT_EQ(Check(lost), paths);
  ASSERT_EQ(prompter.asked.size(), 1U);
  EXPECT_TRUE(prompter.asked[0].text.startsWith(QStringLiteral("The Settings Cannot Be Saved !")));
  QFile::remove(tree.Path(QStringLiteral("file")));
}

class Splash : public StartUp {
 protected:
  SplashChecks& Run(DisplayFacts display = {1920, 1080}) {
    checks = std::make_unique<SplashChecks>(
        SplashChecks::Services{.loop = loop,
                               .prompter = prompter,
                               .audio = audio,
                               .settings = settings,
                               .facts = facts,
                               .paths = MakeDatabase(QStringLiteral("music")),
                               .programFolder = programFolder,
                               .display = display,
                               .platform = {QStringLiteral("Linux"), QStringLiteral("Test 1")}});
    checks->OnStatus = [this](const QString& line) { lines.append(line); };
    run = checks->Run();
    EXPECT_TRUE(loop.RunUntil([this] { return !run.Running(); }));
    return *checks;
  }

  QString programFolder = tree.MakeFolder(QStringLiteral("program"));
  ClockAudio audio{loop};
  std::unique_ptr<SplashChecks> checks;
  Job<> run;
  QStringList lines;
};

TEST_F(Splash, NamesPlatformAndSoundDevicesAndEnablesTheMonitorFromTwoOn) {
  settings.SaveSetting(facts.title, QStringLiteral("Startup"), QStringLiteral("PFLDeviceName"),
                       QStringLiteral("Headphones"));
  EXPECT_TRUE(Run().PflEnabled());
  EXPECT_FALSE(checks->AudioFailed());
  EXPECT_THAT(
      lines,
      ElementsAre(
          QStringLiteral("Platform Linux : Test 1"), QStringLiteral("Default Output Device is Main"),
          QStringLiteral(
              "2 Sound Output Devices Installed: PFL Was Enabled.  Current PFL Device is Headphones")));
  EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(Splash, AsksForAMonitorThatWasNeverChosenAndDoesWithoutOneOnASingleDevice) {
  Run();
  EXPECT_TRUE(lines.last().endsWith(QStringLiteral("(Please Select PFL Device In Configuration)")));
  audio.outputNames = {QStringLiteral("Main")};
  EXPECT_FALSE(Run().PflEnabled());
  EXPECT_EQ(lines.last(), QStringLiteral("Single Sound Output Device Installed : PFL Was Not Enabled !"));
}

TEST_F(Splash, SaysThatThereIsNoSoundDeviceAndStillPlacesTheFiles) {
  audio.outputNames.clear();
  prompter.answers = {Answer::Ok};
  EXPECT_TRUE(Run().AudioFailed());
  ASSERT_EQ(prompter.asked.size(), 1U);
  EXPECT_TRUE(prompter.asked[0].text.startsWith(QStringLiteral("No Audio Mixers Were Detected! ")));
  EXPECT_TRUE(prompter.asked[0].text.endsWith(QStringLiteral(" src: CMixer:Create")));
  EXPECT_TRUE(tree.Exists(QStringLiteral("program/RequestFiles/Messages.txt")));
}

TEST_F(Splash, TellsOfADisplayThatIsTooSmallAndGoesOn) {
  prompter.answers = {Answer::Ok, Answer::Ok};
  Run({800, 600});
  ASSERT_EQ(prompter.asked.size(), 2U);
  EXPECT_EQ(prompter.asked[0].text,
            QStringLiteral("Kelvo 2007 Cannot Continue at The Current Display Settings !"));
  EXPECT_THAT(prompter.asked[1].text.toStdString(),
              HasSubstr("Your Pc Cannot Display At The Minimum Display Resolution of 1024 x 768"));
  EXPECT_THAT(lines, Contains(QStringLiteral("Your Current Screen Resolution Is Set To 800 x 600")));
}

TEST_F(Splash, SaysOfADisplayOnlyWhatIsKnownToBeTrue) {
  const QString optimum =
      QStringLiteral("For Optimum Display, Kelvo 2007 Requires A Resolution Of 1280 x 1024 !");
  const QString cannot = QStringLiteral("Your P.C. Cannot Display At The Optimum Resolution of 1280 x 1024!");
  Run({1366, 768, {{1366, 768}, {1024, 768}}});
  EXPECT_TRUE(lines.contains(cannot));
  EXPECT_FALSE(lines.contains(optimum));
  lines.clear();
  Run({1024, 768, {{1920, 1080}, {1024, 768}}});
  EXPECT_TRUE(lines.contains(optimum)) << "it could";
  EXPECT_FALSE(lines.contains(cannot));
  EXPECT_TRUE(prompter.asked.empty());
  prompter.answers = {Answer::Ok};
  Run({800, 600, {{1920, 1080}, {800, 600}}});
  ASSERT_EQ(prompter.asked.size(), 1U) << "that it cannot show more is not true";
  lines.clear();
  Run({1280, 1024, {{800, 600}}});
  EXPECT_FALSE(lines.join(QLatin1Char('\n')).contains(QStringLiteral("1280 x 1024")));
}

TEST_F(Splash, WaitsWithThePointerToItsEnd) {
  Run();
  SplashWindow window(loop, *checks, facts);
  bool closed = false;
  QObject::connect(&window, &SplashWindow::Closed, [&] { closed = true; });
  window.show();
  loop.RunFor(9s);
  EXPECT_FALSE(closed);
  EXPECT_EQ(window.cursor().shape(), Qt::WaitCursor) << "its checks are through, the console is to come";
  loop.RunFor(2s);
  EXPECT_TRUE(closed);
}

TEST_F(Splash, IsEndedByEscapeEnterOrTheSpaceBarOnceItsChecksAreThrough) {
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
    Run();
    SplashWindow window(loop, *checks, facts);
    window.show();
    loop.RunFor(1s);
    EXPECT_TRUE(window.isVisible());
    QTest::keyClick(&window, key);
    EXPECT_FALSE(window.isVisible()) << key;
  }
}

TEST(DisplayModes, AreThoseThatTheKernelListsForEachConnector) {
  const TemporaryTree tree;
  tree.Write(QStringLiteral("card0-HDMI-A-1/modes"), "1920x1080\n1920x1080i\nodd\n");
  tree.Write(QStringLiteral("card0-DP-1/modes"), "");
  tree.Write(QStringLiteral("version"), "drm 1.1.0");
  const std::vector<DisplayMode> modes = ReadDisplayModes(tree.Path());
  ASSERT_EQ(modes.size(), 2U);
  EXPECT_EQ(modes[0].width, 1920);
  EXPECT_EQ(modes[1].height, 1080);
  EXPECT_TRUE(ReadDisplayModes(tree.Path(QStringLiteral("nowhere"))).empty());
}

TEST_F(Splash, ADataFolderThatCannotBeWrittenIsOneMessageAndTheStartGoesOn) {
  const ErrorLog log(loop, prompter, tree.Path(QStringLiteral("kelvo.log")));
  tree.Write(QStringLiteral("file"), "in the folder's place");
  programFolder = tree.Path(QStringLiteral("file/kelvo"));
  Run();
  EXPECT_FALSE(checks->AudioFailed());
  ASSERT_EQ(prompter.asked.size(), 1U);
  EXPECT_THAT(prompter.asked[0].text.toStdString(),
              HasSubstr(programFolder.toStdString() + " cannot be written to"));
}

TEST_F(Splash, PlacesTheProgramsMediaOnceAndNeverOverAFileOfTheOperator) {
  tree.Write(QStringLiteral("program/KELVOMX-Whoosh.mp3"), "mixer");
  tree.Write(QStringLiteral("program/KELVOIN-Hello.MP3"), "intro");
  tree.Write(QStringLiteral("program/KELVOJG-Bell.mp3"), "bell");
  tree.Write(QStringLiteral("program/KELVOJG-Notes.txt"), "no music");
  tree.Write(QStringLiteral("program/QzDrum.wav"), "drum");
  tree.Write(QStringLiteral("music/Kelvo2007_Jingles/Bell.mp3"), "the operator's own");
  Run();
  EXPECT_EQ(tree.Read(QStringLiteral("program/Quiz Mixers/Whoosh.mp3")), "mixer");
  EXPECT_EQ(tree.Read(QStringLiteral("program/Quiz Intros/Hello.MP3")), "intro");
  EXPECT_EQ(tree.Read(QStringLiteral("program/Quiz Mixers/QzDrum.wav")), "drum");
  EXPECT_EQ(tree.Read(QStringLiteral("music/Kelvo2007_Jingles/Bell.mp3")), "the operator's own");
  EXPECT_FALSE(tree.Exists(QStringLiteral("music/Kelvo2007_Jingles/Notes.txt")));
}

TEST_F(Splash, SeedsTheRequestListsWithoutTouchingOnesThatAreThere) {
  tree.Write(QStringLiteral("program/RequestFiles/NamesMale.txt"), "Zeno\r\n");
  Run();
  EXPECT_EQ(tree.Read(QStringLiteral("program/RequestFiles/NamesMale.txt")), "Zeno\r\n");
  EXPECT_EQ(tree.Read(QStringLiteral("program/RequestFiles/NamesFem.txt")),
            "Alice\r\nAnn\r\nBonnie\r\nCarol\r\nChristine\r\nCathy\r\n");
  EXPECT_EQ(tree.Read(QStringLiteral("program/RequestFiles/Messages.txt")),
            "Happy Birthday\r\nHappy Anniversary\r\nCongratulations On New Baby\r\n");
  for (const QString& folder : {QStringLiteral("Info Bank"), QStringLiteral("Pop Quizes"),
                                QStringLiteral("Quiz Mixers"), QStringLiteral("Quiz Intros")}) {
    EXPECT_TRUE(QFileInfo(tree.Path(QStringLiteral("program/") + folder)).isDir()) << folder.toStdString();
  }
}

TEST_F(Splash, AFileThatCannotBePlacedIsToldAndKeepsNoOtherFromItsPlace) {
  const ErrorLog log(loop, prompter, tree.Path(QStringLiteral("kelvo.log")));
  tree.Write(QStringLiteral("program/Quiz Mixers"), "a file in the folder's place");
  tree.Write(QStringLiteral("program/KELVOMX-Whoosh.mp3"), "mixer");
  tree.Write(QStringLiteral("program/QzDrum.wav"), "drum");
  tree.Write(QStringLiteral("program/KELVOIN-Hello.mp3"), "intro");
  tree.Write(QStringLiteral("program/KELVOJG-Bell.mp3"), "bell");
  tree.MakeFolder(QStringLiteral("program/RequestFiles"));
  QFile::link(tree.Path(QStringLiteral("nowhere/names.txt")),
              tree.Path(QStringLiteral("program/RequestFiles/NamesMale.txt")));
  Run();
  EXPECT_EQ(prompter.asked.size(), 4U) << "one for each that failed";
  EXPECT_THAT(prompter.Told().join(QLatin1Char('\n')).toStdString(), HasSubstr("names.txt"));
  EXPECT_EQ(tree.Read(QStringLiteral("program/Quiz Intros/Hello.mp3")), "intro");
  EXPECT_EQ(tree.Read(QStringLiteral("music/Kelvo2007_Jingles/Bell.mp3")), "bell");
  EXPECT_TRUE(tree.Exists(QStringLiteral("program/Pop Quizes")));
  EXPECT_TRUE(tree.Exists(QStringLiteral("program/RequestFiles/NamesFem.txt")));
  EXPECT_TRUE(tree.Exists(QStringLiteral("program/Info Bank")));
}

}  // namespace
