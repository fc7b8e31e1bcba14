#include "console/ConsoleOnScreen.h"
#include "console/desk/ScopeSettings.h"
#include "console/windows/LevelMeter.h"
#include "console/windows/LimiterLamp.h"
#include "console/windows/ScopePictures.h"
#include "console/windows/ScopeView.h"
#include "ui/Panel.h"

#include <QMenu>

namespace {

using namespace kelvo;
using namespace kelvo::testing;

class MetersAndScope : public ConsoleOnScreen {
 protected:
  void SetUp() override {
    ConsoleOnScreen::SetUp();
    audio_.tap = std::make_shared<Tap>();
  }
  /// Half a second of a loud constant.
  void PlayLoud() {
    for (int i = 0; i < 30; ++i) {
      const FrameIndex at = std::max<FrameIndex>(audio_.tap->Settled(), 0);
      const std::vector<float> sound(735 * 2, 0.5F);
      audio_.tap->Write(at, sound);
      audio_.tap->Publish(at + 735, at + 735);
      loop_.RunFor(PictureBeat::kInterval);
    }
  }
  void Press(const QString& entry) {
    for (QMenu* menu : window_->menuBar()->findChildren<QMenu*>()) {
      for (QAction* action : menu->actions()) {
        if (action->objectName() != entry) continue;
        menu->popup(window_->mapToGlobal(QPoint(10, 30)));
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        menu->close();
        return;
      }
    }
    FAIL() << entry.toStdString();
  }
  [[nodiscard]] bool Shown(const QString& name) { return Find<QWidget>(name).isVisible(); }
  [[nodiscard]] bool ScopeMoves() { return desk_->Programme().scope.Watched(); }
};

TEST_F(MetersAndScope, AreShownAndHiddenByTheirEntriesAndReadNothingWhenHidden) {
  OpenWindow();
  Resize(1366, 768);
  EXPECT_TRUE(Shown(u"ScopePanel"_s));
  EXPECT_TRUE(Shown(u"LevelMeter"_s));
  EXPECT_TRUE(ScopeMoves());
  Press(u"mnuScope"_s);
  EXPECT_FALSE(Shown(u"ScopePanel"_s));
  EXPECT_FALSE(ScopeMoves());
  QTest::keyClick(&*window_, Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_FALSE(Shown(u"LevelMeter"_s));
  EXPECT_FALSE(desk_->Programme().levels.Watched());
  // The next start finds it so.
  window_.emplace(*desk_);
  window_->show();
  Resize(1366, 768);
  EXPECT_FALSE(Shown(u"ScopePanel"_s) || Shown(u"LevelMeter"_s));
  Press(u"mnuScope"_s);
  Press(u"mnuMeters"_s);
  EXPECT_TRUE(Shown(u"ScopePanel"_s) && Shown(u"LevelMeter"_s));
  window_->setWindowState(Qt::WindowMinimized);
  QCoreApplication::processEvents();
  EXPECT_FALSE(ScopeMoves() || desk_->Programme().levels.Watched()) << "nobody sees it";
  window_->setWindowState(Qt::WindowNoState);
  QCoreApplication::processEvents();
  EXPECT_TRUE(ScopeMoves());
}

TEST_F(MetersAndScope, ANarrowConsoleFoldsTheScopeAndSaysWhy) {
  OpenWindow();
  Resize(1024, 680);
  EXPECT_FALSE(Shown(u"ScopePanel"_s));
  EXPECT_TRUE(Shown(u"LevelMeter"_s));
  EXPECT_FALSE(ScopeMoves());
  const auto* entry = window_->findChild<QAction*>(u"mnuScope"_s);
  EXPECT_FALSE(entry->isEnabled());
  EXPECT_TRUE(entry->toolTip().contains(u"too narrow"_s)) << entry->toolTip().toStdString();
  Resize(1366, 768);
  EXPECT_TRUE(Shown(u"ScopePanel"_s));
  EXPECT_TRUE(entry->isEnabled());
}

TEST_F(MetersAndScope, FollowTheSoundOnTheScreen) {
  OpenWindow();
  Resize(1366, 768);
  const auto image = [this](const QString& name) {
    QCoreApplication::processEvents();
    return Find<QWidget>(name).grab().toImage();
  };
  const QImage silent = image(u"LevelMeter"_s);
  const auto& lamp = Find<LimiterLamp>(u"LimiterLamp"_s);
  const QString rests = lamp.toolTip();
  audio_.reduction = 2.5;
  PlayLoud();
  EXPECT_NE(image(u"LevelMeter"_s), silent);
  EXPECT_TRUE(lamp.Lit());
  EXPECT_TRUE(lamp.toolTip().contains(u"2.5 dB"_s)) << lamp.toolTip().toStdString();
  const auto& trace = Find<TracePicture>(u"Scope3_1"_s);
  const auto points = trace.Points();
  EXPECT_LT(points[0].x(), 0) << "the pen comes from the left";
  EXPECT_EQ(points[0].y(), trace.height() / 2.0);
  EXPECT_DOUBLE_EQ(points[100].y(), trace.height() / 4.0) << "half of full scale";
  audio_.reduction = 0;
  PlayLoud();
  EXPECT_FALSE(lamp.Lit());
  EXPECT_EQ(lamp.toolTip(), rests);
}

TEST_F(MetersAndScope, TheMenuOfTheScopeIsWorkedByKeys) {
  OpenWindow();
  Resize(1366, 768);
  auto& view = Find<ScopeView>(u"ScopeView"_s);
  view.setFocus(Qt::TabFocusReason);
  QTest::keyClick(&view, Qt::Key_Return);
  auto* menu = view.findChild<QMenu*>(u"ScopeMenu"_s);
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->actions().last()->text(), u"No sound input is there"_s);
  QTest::keyClick(menu, Qt::Key_S);
  EXPECT_TRUE(desk_->Settings().Get(setting::ScopeSpectrum));
  EXPECT_TRUE(Find<SpectrumPicture>(u"SpectrumPicture"_s).isVisible());
  PlayLoud();
  auto& spectrum = Find<SpectrumPicture>(u"SpectrumPicture"_s);
  EXPECT_GT(spectrum.BarOf(0).height(), spectrum.height() / 2);
  EXPECT_EQ(spectrum.BarOf(90).height(), 0);

  // With a microphone it is offered, and captured once it is chosen.
  microphone_.tap = std::make_shared<Tap>();
  QTest::keyClick(&view, Qt::Key_Return);
  menu = view.findChildren<QMenu*>(u"ScopeMenu"_s).last();
  EXPECT_EQ(menu->actions().last()->text(), u"Studio Microphone"_s);
  QTest::keyClick(menu, Qt::Key_Up);
  QTest::keyClick(menu, Qt::Key_Return);
  EXPECT_EQ(microphone_.chosen, u"mic.1"_s);
  EXPECT_EQ(Find<kelvo::Panel>(u"ScopePanel"_s).Note(), u"Studio Microphone"_s);
}

TEST_F(MetersAndScope, TheScopeLeavesTheMachineToAFade) {
  OpenWindow();
  Resize(1366, 768);
  EnqueueAll();
  for (const Deck deck : kDecks) Load(deck, DisplayNumber(deck));
  Click(u"CmdMan2"_s);
  int pictures = 0;
  QObject::connect(&desk_->Programme().scope, &Scope::Renewed, [&pictures] { ++pictures; });
  PlayLoud();
  EXPECT_GT(pictures, 25);
  desk_->Fades().PressPan(Deck::Two);
  ASSERT_TRUE(loop_.RunUntil([this] { return desk_->Fades().TimersSlowed(); }, 3s));
  pictures = 0;
  PlayLoud();
  EXPECT_LE(pictures, 2);
}

}  // namespace
