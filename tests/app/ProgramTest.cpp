#include "app/windows/InstallerWindow.h"
#include "app/windows/Program.h"
#include "app/windows/SplashWindow.h"
#include "console/windows/ConsoleWindow.h"
#include "platform/SimulatedEventLoop.h"
#include "support/TemporaryTree.h"
#include "support/TurnUntil.h"
#include "ui/PromptBox.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <array>
#include <csignal>

using namespace kelvo;
using namespace kelvo::testing;
using namespace Qt::StringLiterals;

namespace {

constexpr int kNeverEnded = 99;

/// The program itself, from its start to its end, in real time and with folders of its own.
class WholeProgram : public ::testing::Test {
 protected:
  void SetUp() override {
    for (std::size_t index = 0; index < names_.size(); ++index) old_[index] = qgetenv(names_[index]);
    qputenv("XDG_CONFIG_HOME", tree_.MakeFolder(u"config"_s).toUtf8());
    qputenv("XDG_DATA_HOME", tree_.MakeFolder(u"data"_s).toUtf8());
    qputenv("KELVO_SILENT", "1");
    QApplication::setQuitOnLastWindowClosed(false);
    const Paths paths = Paths::Below(tree_.MakeFolder(u"music"_s));
    for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) QDir().mkpath(paths(slot));
    SimulatedEventLoop loop;
    SettingsStore(loop, SettingsStore::DefaultFilePath())
        .SaveSetting(ProgramFacts().title, u"Startup"_s, u"Paths"_s, paths.ToSetting());
  }
  void TearDown() override {
    QApplication::setQuitOnLastWindowClosed(true);
    for (std::size_t index = 0; index < names_.size(); ++index) {
      if (old_[index].isNull()) {
        qunsetenv(names_[index]);
      } else {
        qputenv(names_[index], old_[index]);
      }
    }
  }

  template <typename Window>
  [[nodiscard]] static Window* Shown() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* each : windows) {
      if (auto* found = qobject_cast<Window*>(each); found != nullptr && found->isVisible()) return found;
    }
    return nullptr;
  }
  /// The exit code of a program that `tell` ends while its desk is open, `width` wide.
  int EndBy(const std::function<void()>& tell, int width) {
    Program program;
    program.Start();
    EXPECT_TRUE(TurnUntil([] { return Shown<SplashWindow>() != nullptr; }));
    for (int click = 0; click < 6; ++click) QTest::mouseClick(Shown<SplashWindow>(), Qt::LeftButton);
    // The offscreen display is smaller than the program likes: it says so.
    EXPECT_TRUE(TurnUntil([] {
      if (auto* message = Shown<QDialog>()) message->accept();
      return Shown<ConsoleWindow>() != nullptr;
    }));
    Shown<ConsoleWindow>()->resize(width, 876);
    QTimer::singleShot(0, tell);
    return Run();
  }
  static int Run() {
    QTimer never;
    QObject::connect(&never, &QTimer::timeout, [] { QCoreApplication::exit(kNeverEnded); });
    never.start(100'000);
    return QApplication::exec();
  }
  /// The exit code of a program in whose start every box is answered by `answer`, the splash is clicked away
  /// and the installer is given up; what the boxes said is in `told_`.
  int StartWith(const std::function<void(QDialog&)>& answer) {
    Program program;
    program.Start();
    QTimer person;
    QObject::connect(&person, &QTimer::timeout, [&] {
      if (auto* box = Shown<QDialog>()) {
        told_ += box->accessibleDescription() + u'\n';
        answer(*box);
      } else if (auto* installer = Shown<InstallerWindow>()) {
        installer->close();
      } else if (auto* splash = Shown<SplashWindow>()) {
        QTest::mouseClick(splash, Qt::LeftButton);
      }
    });
    person.start(10);
    return Run();
  }
  [[nodiscard]] static QString Saved(const QString& key) {
    SimulatedEventLoop loop;
    return SettingsStore(loop, SettingsStore::DefaultFilePath())
        .GetSetting(ProgramFacts().title, u"ConStartup"_s, key);
  }

  TemporaryTree tree_;
  QString told_;

 private:
  const std::array<const char*, 3> names_{"XDG_CONFIG_HOME", "XDG_DATA_HOME", "KELVO_SILENT"};
  std::array<QByteArray, 3> old_;
};

TEST_F(WholeProgram, EndsWithoutAQuestionAndWithItsSettingsSavedWhenTheSystemWantsIt) {
  const std::function<void()> signal = [] { ::raise(SIGTERM); };
  EXPECT_EQ(EndBy(signal, 1234), 0);
  EXPECT_EQ(Saved(u"Width"_s), u"1234"_s);
  EXPECT_EQ(Saved(u"Height"_s), u"876"_s);
  EXPECT_EQ(Saved(u"PlaySettings"_s), u"25,3,0"_s);
  const std::function<void()> endOfSession = [] { QCoreApplication::quit(); };
  EXPECT_EQ(EndBy(endOfSession, 1300), 0);
  EXPECT_EQ(Saved(u"Width"_s), u"1300"_s);
}

TEST_F(WholeProgram, ALockedScreenIsEndedByTheSystemWithoutAQuestionAndSaved) {
  const std::function<void()> lockAndSignal = [] {
    auto* desk = Shown<ConsoleWindow>();
    QTest::keyClick(desk->windowHandle(), Qt::Key_L, Qt::ControlModifier);
    auto* box = Shown<PromptBox>();
    ASSERT_NE(box, nullptr);
    for (const char letter : {'c', 'o', 'd', 'e'}) QTest::keyClick(box->windowHandle(), letter);
    EXPECT_EQ(box->Line(), u"code"_s);
    EXPECT_FALSE(box->findChild<QLineEdit*>()->displayText().contains(u'c')) << "typed hidden";
    QTest::keyClick(box->windowHandle(), Qt::Key_Return);
    ASSERT_TRUE(TurnUntil([] { return Shown<PromptBox>() == nullptr; }));
    QTest::keyClick(desk->windowHandle(), Qt::Key_Q, Qt::ControlModifier);
    QCoreApplication::processEvents();
    EXPECT_EQ(Shown<PromptBox>(), nullptr);
    desk->close();
    ASSERT_TRUE(TurnUntil([] { return Shown<PromptBox>() != nullptr; }));
    EXPECT_EQ(Shown<PromptBox>()->Text(), u"Enter Code To Unlock Screen"_s);
    ::raise(SIGTERM);
  };
  EXPECT_EQ(EndBy(lockAndSignal, 1250), 0);
  EXPECT_EQ(Saved(u"Width"_s), u"1250"_s);
}

TEST_F(WholeProgram, EndsWithAFailureWhenTheOperatorGivesUpTheStart) {
  const auto reject = [](QDialog& box) { box.reject(); };
  const QString settings = SettingsStore::DefaultFilePath();
  ASSERT_TRUE(QFile::remove(settings));
  EXPECT_EQ(StartWith(reject), 1) << "the installer";
  ASSERT_TRUE(QDir().mkpath(settings));
  EXPECT_EQ(StartWith(reject), 1);
  EXPECT_TRUE(told_.contains(u"Cannot Be Read !"_s)) << told_.toStdString();
  EXPECT_TRUE(QFileInfo(settings).isDir()) << "nothing is written over what could not be read";
}

TEST_F(WholeProgram, EndsWithAFailureWhenTheDatabaseCannotBeLoaded) {
  tree_.Write(u"music/Kelvo2007_Music files/song.mp3"_s, "sound");
  tree_.Write(u"music/Kelvo2007_Extra/song.kif"_s, "one line\r\n");
  EXPECT_EQ(StartWith([](QDialog& box) { box.accept(); }), 1);
  EXPECT_TRUE(told_.contains(u"Unstable File/s"_s)) << told_.toStdString();
}

TEST_F(WholeProgram, StartsWithoutAPlaceForItsDataAndSaysSo) {
  tree_.Write(u"nowhere"_s, "in the folder's place");
  qputenv("XDG_DATA_HOME", tree_.Path(u"nowhere/data"_s).toUtf8());
  tree_.Write(u"music/Kelvo2007_Music files/song.mp3"_s, "sound");
  tree_.Write(u"music/Kelvo2007_Extra/song.kif"_s, "one line\r\n");
  EXPECT_EQ(StartWith([](QDialog& box) { box.accept(); }), 1);
  EXPECT_TRUE(told_.contains(u"nowhere/data/kelvo cannot be written to"_s)) << told_.toStdString();
  EXPECT_TRUE(told_.contains(u"Unstable File/s"_s)) << "that far it came";
}

}  // namespace
