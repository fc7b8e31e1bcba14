#pragma once

#include "console/DeskFixture.h"
#include "console/windows/ConsoleWindow.h"
#include "support/Lookup.h"
#include "support/TurnUntil.h"
#include "ui/ListTable.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace kelvo::testing {

/// The console on an offscreen screen, worked with keys and mouse; the loop behind it is simulated.
class ConsoleOnScreen : public DeskTest {
 protected:
  void SetUp() override {
    auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (application == nullptr) GTEST_SKIP() << "windows need a screen: QT_QPA_PLATFORM=offscreen";
    Theme::Apply(*application);
    AddThreeTracks();
  }
  void OpenWindow() {
    Make();
    window_.emplace(*desk_);
    window_->resize(1400, 850);
    window_->show();
    window_->activateWindow();
    ASSERT_TRUE(TurnUntil([this] { return window_->isActiveWindow(); }));
    ASSERT_TRUE(loop_.RunUntil([this] { return desk_->CatalogueLoaded(); }));
  }
  /// Gives the window this size and lets it lay itself out anew.
  void Resize(int width, int height) {
    window_->resize(width, height);
    QCoreApplication::processEvents();
    ASSERT_EQ(window_->size(), QSize(width, height));
  }
  template <typename Widget>
  Widget& Find(const QString& name) {
    return *FindNamed<Widget>(*window_, name);
  }
  ListTable& Library() { return Find<ListTable>(u"TrackList"_s); }
  ListTable& QueueList() { return Find<ListTable>(u"PlayQueueList"_s); }
  QString Cell(ListTable& list, int row, int column = 0) {
    return list.model()->index(row, column).data().toString();
  }
  void Click(const QString& name) { QTest::mouseClick(&Find<QPushButton>(name), Qt::LeftButton); }
  void DoubleClick(ListTable& list, int row) {
    const QPoint spot = list.visualRect(list.model()->index(row, 0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, spot);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, spot);
    loop_.RunFor(50ms);
  }

  std::optional<ConsoleWindow> window_;
};

}  // namespace kelvo::testing
