#pragma once

#include "audio/ClockAudio.h"
#include "database/Catalogue.h"
#include "database/TaggedSound.h"
#include "database/TestDatabase.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "support/Lookup.h"
#include "support/ScriptedPrompter.h"
#include "support/TurnUntil.h"
#include "support/WindowParts.h"
#include "ui/ListTable.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

#include <optional>

namespace kelvo::testing {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// A window by which music or jingles come in, worked by its buttons over a database and a drive in a
/// temporary folder.
class ImportOnScreen : public ::testing::Test {
 protected:
  void SetUp() override {
    auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (application == nullptr) GTEST_SKIP() << "windows need a screen: QT_QPA_PLATFORM=offscreen";
    Theme::Apply(*application);
  }
  QString AddSource(const QString& relative, const QByteArray& bytes = SoundBytes()) {
    return database_.tree.Write(u"drive/"_s + relative, bytes);
  }
  [[nodiscard]] bool Holds(const QString& relative) { return database_.tree.Exists(u"drive/"_s + relative); }
  template <typename Window>
  void Show(Window& window) {
    window_ = &window;
    window.show();
    window.activateWindow();
    ASSERT_TRUE(testing::TurnUntil([&window] { return window.isActiveWindow(); }));
    ExpectWellLaidOut(window);
    loop_.RunFor(10ms);
  }
  template <typename Widget>
  Widget& Find(const QString& name) {
    return *FindNamed<Widget>(*window_, name);
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
    EXPECT_EQ(Find<QComboBox>(u"CboDrive"_s).currentData().toString(), database_.tree.Path(u"drive"_s));
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

/// One window over its work.
template <typename Window, typename Work>
class OnScreen : public ImportOnScreen {
 protected:
  void TearDown() override {
    shown_.reset();
    work_.reset();
  }
  void Open(typename Work::Services services) {
    shown_.reset();
    work_.emplace(std::move(services));
    if constexpr (std::is_constructible_v<Window, EventLoop&, Work&>) {
      shown_.emplace(loop_, *work_);
    } else {
      shown_.emplace(*work_);
    }
    Show(*shown_);
  }
  std::optional<Work> work_;
  std::optional<Window> shown_;
};

}  // namespace kelvo::testing
