#include "app/windows/Program.h"
#include "app/windows/SplashWindow.h"
#include "console/windows/ConsoleWindow.h"
#include "platform/SimulatedEventLoop.h"
#include "support/TemporaryTree.h"

#include <QApplication>
#include <QDialog>
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
    const Paths paths = Paths::Below(tree_.MakeFolder(u"music"_s));
    for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) QDir().mkpath(paths(slot));
    SimulatedEventLoop loop;
    SettingsStore(loop, SettingsStore::DefaultFilePath())
        .SaveSetting(ProgramFacts().title, u"Startup"_s, u"Paths"_s, paths.ToSetting());
  }
  void TearDown() override {
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
  /// The exit code of a program that is told to end by `tell` while its desk is open, `width` wide.
  int EndBy(const std::function<void()>& tell, int width) {
    Program program;
    program.Start();
    EXPECT_TRUE(QTest::qWaitFor([] { return Shown<SplashWindow>() != nullptr; }));
    for (int click = 0; click < 6; ++click) QTest::mouseClick(Shown<SplashWindow>(), Qt::LeftButton);
    // The offscreen display is smaller than the program likes: it says so.
    EXPECT_TRUE(QTest::qWaitFor([] {
      if (auto* message = Shown<QDialog>()) message->accept();
      return Shown<ConsoleWindow>() != nullptr;
    }));
    Shown<ConsoleWindow>()->resize(width, 876);
    QTimer::singleShot(0, tell);
    QTimer never;
    QObject::connect(&never, &QTimer::timeout, [] { QCoreApplication::exit(kNeverEnded); });
    never.start(10000);
    return QApplication::exec();
  }
  [[nodiscard]] static QString Saved(const QString& key) {
    SimulatedEventLoop loop;
    return SettingsStore(loop, SettingsStore::DefaultFilePath())
        .GetSetting(ProgramFacts().title, u"ConStartup"_s, key);
  }

 private:
  TemporaryTree tree_;
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

}  // namespace
