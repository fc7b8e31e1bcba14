#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "support/TemporaryTree.h"
#include "support/TurnUntil.h"
#include "ui/Fader.h"
#include "ui/NoticeBar.h"
#include "ui/Panel.h"
#include "ui/ProgressStrip.h"
#include "ui/Pulse.h"
#include "ui/ScalableIcon.h"
#include "ui/Tabular.h"
#include "ui/Theme.h"
#include "ui/TimeDisplay.h"
#include "ui/WindowPlace.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <set>

namespace kelvo {
namespace {

void Mouse(QWidget& widget, QEvent::Type type, QPointF at, Qt::MouseButton button = Qt::LeftButton) {
  const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
  QMouseEvent event(type, at, widget.mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : button, held,
                    Qt::NoModifier);
  QCoreApplication::sendEvent(&widget, &event);
}

TEST(ThemeTest, WordsCanBeReadOnEveryColourThatAnOperatorMayTake) {
  for (int red = 0; red <= 255; red += 17) {
    for (int green = 0; green <= 255; green += 17) {
      for (int blue = 0; blue <= 255; blue += 17) {
        const QColor colour(red, green, blue);
        ASSERT_GE(Theme::Contrast(colour, Theme::TextOn(colour)), 4.5) << colour.name().toStdString();
        const QColor before = Theme::GroupColour(Group::Lists);
        Theme::SetGroupColour(Group::Lists, colour);
        ASSERT_GE(Theme::Contrast(Theme::GroupGround(Group::Lists), Theme::Palette().text), 7.0);
        Theme::SetGroupColour(Group::Lists, before);
      }
    }
  }
}

TEST(ThemeTest, APanelShowsTheColourOfItsGroupAndKeepsItWhenTheNewOneIsNone) {
  Theme::Apply(*qobject_cast<QApplication*>(QCoreApplication::instance()));
  Panel panel(Group::Bites, QStringLiteral("JINGLES"));
  panel.resize(300, 100);
  const auto header = [&panel] { return panel.grab().toImage().pixelColor(200, 6); };
  Theme::SetGroupColour(Group::Bites, QColor(200, 30, 90));
  EXPECT_EQ(header(), QColor(200, 30, 90));
  Theme::SetGroupColour(Group::Bites, QColor());
  EXPECT_EQ(header(), QColor(200, 30, 90));
  panel.setEnabled(false);
  EXPECT_NE(header(), QColor(200, 30, 90)) << "a locked panel is seen as one";

  const QColor before = Theme::GroupColour(Group::Bites);
  Theme::SetGroupColour(Group::Bites, Qt::white);
  const QImage picture = panel.grab().toImage();
  double contrast = 0;
  for (int x = 8; x < 80; ++x) {
    for (int y = 2; y < 16; ++y)
      contrast = std::max(contrast, Theme::Contrast(header(), picture.pixelColor(x, y)));
  }
  EXPECT_GE(contrast, 4.5) << "its title reads on any colour";
  Theme::SetGroupColour(Group::Bites, before);
}

TEST(ThemeTest, EveryIconHasItsDrawing) {
  Theme::Apply(*qobject_cast<QApplication*>(QCoreApplication::instance()));
  std::set<QByteArray> drawings;
  for (int index = 0; index < iconCount; ++index) {
    const QImage image = IconPixmap(static_cast<Icon>(index), Qt::white, 24, 2).toImage();
    ASSERT_EQ(image.size(), QSize(48, 48));
    drawings.insert(QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes()));
  }
  EXPECT_EQ(drawings.size(), static_cast<std::size_t>(iconCount));
}

TEST(TimeDisplayTest, TheTimeIsSpokenInWords) {
  TimeDisplay display;
  EXPECT_EQ(display.accessibleDescription(), QStringLiteral("0 seconds"));
  display.SetText(QStringLiteral("03:25"));
  EXPECT_EQ(display.accessibleDescription(), QStringLiteral("3 minutes 25 seconds"));
  EXPECT_EQ(TimeDisplay::Spoken(QStringLiteral("61:01")), QStringLiteral("61 minutes 1 second"));
  EXPECT_EQ(TimeDisplay::Spoken(QStringLiteral("--:--")), QStringLiteral("--:--"));
}

TEST(ProgressStripTest, ShowsItsWordsAndHowFarItIs) {
  ProgressStrip strip;
  strip.setRange(0, 200);
  strip.setValue(50);
  EXPECT_EQ(strip.text(), QString());
  strip.SetWords(QStringLiteral("Copying"));
  EXPECT_EQ(strip.text(), QStringLiteral("Copying"));
  EXPECT_EQ(strip.accessibleDescription(), QStringLiteral("Copying"));
  strip.SetPercentShown(true);
  EXPECT_EQ(strip.text(), QStringLiteral("Copying 25 %"));
}

TEST(TabularTest, ACellOfTheSizeThatItAsksForShowsItsWholeText) {
  Theme::Apply(*qobject_cast<QApplication*>(QCoreApplication::instance()));
  QTableView view;
  QStandardItemModel model;
  view.setModel(&model);
  const TabularDelegate delegate;
  for (const QString& text : {QStringLiteral("11:11:11"), QStringLiteral("Under Pressure")}) {
    model.setItem(0, 0, new QStandardItem(text));
    QStyleOptionViewItem option;
    option.initFrom(&view);
    option.widget = &view;
    option.font = view.font();
    const QSize size = delegate.sizeHint(option, model.index(0, 0));
    const auto painted = [&](int room) {
      QImage image(size.width() + room, size.height(), QImage::Format_RGB32);
      image.fill(Qt::black);
      option.rect = image.rect();
      QPainter painter(&image);
      delegate.paint(&painter, option, model.index(0, 0));
      painter.end();
      return image.copy(QRect(QPoint(), size - QSize(5, 0)));
    };
    EXPECT_EQ(painted(0), painted(50)) << text.toStdString();
  }
}

TEST(TabularTest, TheTextOfACellIsBesideItsSign) {
  Theme::Apply(*qobject_cast<QApplication*>(QCoreApplication::instance()));
  QTableView view;
  QStandardItemModel model;
  view.setModel(&model);
  auto* item = new QStandardItem(ScalableIcon(Icon::Warning, Qt::red), QString());
  model.setItem(0, 0, item);
  QStyleOptionViewItem option;
  option.initFrom(&view);
  option.widget = &view;
  option.decorationSize = QSize(16, 16);
  option.rect = QRect(0, 0, 200, 24);
  const TabularDelegate delegate;
  const auto sign = [&](const QString& text) {
    item->setText(text);
    QImage image(option.rect.size(), QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    delegate.paint(&painter, option, model.index(0, 0));
    painter.end();
    return image.copy(0, 0, 18, 24);
  };
  EXPECT_EQ(sign(QString()), sign(QStringLiteral("WWWWWW")));
}

TEST(TimeDisplayTest, OnlyTheLastSecondsBlinkAndDigitsAreAllOfOneWidth) {
  SimulatedEventLoop loop;
  Pulse pulse(loop);
  TimeDisplay display;
  QObject::connect(&pulse, &Pulse::Beat, &display, &TimeDisplay::SetLit);
  display.resize(300, 100);
  for (const TimeDisplay::State state : {TimeDisplay::State::Amber, TimeDisplay::State::BlinkRed}) {
    display.SetState(state);
    const QImage before = display.grab().toImage();
    loop.RunFor(std::chrono::milliseconds(450));
    EXPECT_EQ(before == display.grab().toImage(), state == TimeDisplay::State::Amber);
  }
  const QFontMetricsF metrics(Theme::Font());
  EXPECT_DOUBLE_EQ(TabularWidth(metrics, QStringLiteral("11:11")),
                   TabularWidth(metrics, QStringLiteral("08:40")));
}

class FaderTest : public ::testing::Test {
 protected:
  FaderTest() {
    fader_.resize(420, 40);
    fader_.SetRestValue(0);
    QObject::connect(&fader_, &Fader::MovedByHand, [this](int value) { moved_.push_back(value); });
    QObject::connect(&fader_, &QAbstractSlider::sliderPressed, [this] { ++pressed_; });
    QObject::connect(&fader_, &QAbstractSlider::sliderReleased, [this] { ++released_; });
  }
  Fader fader_{Qt::Horizontal, -200, 200};
  std::vector<int> moved_;
  int pressed_ = 0;
  int released_ = 0;
};

TEST_F(FaderTest, ADragMovesFromWhereItStandsAndNeverJumps) {
  fader_.setValue(-200);
  EXPECT_TRUE(moved_.empty()) << "the program's own moves are not the hand's";
  Mouse(fader_, QEvent::MouseButtonPress, {300, 20});
  EXPECT_EQ(fader_.value(), -200);
  EXPECT_EQ(pressed_, 1);
  Mouse(fader_, QEvent::MouseMove, {310, 20});
  EXPECT_GT(fader_.value(), -200);
  EXPECT_LT(fader_.value(), -185);
  // A transition moves it meanwhile: the hand goes on from there.
  fader_.setValue(100);
  Mouse(fader_, QEvent::MouseMove, {311, 20});
  EXPECT_NEAR(fader_.value(), 101, 2);
  Mouse(fader_, QEvent::MouseButtonRelease, {311, 20});
  EXPECT_EQ(released_, 1);
  EXPECT_FALSE(fader_.isSliderDown());
}

TEST_F(FaderTest, AClickGoesOnePageAndADoubleClickToRest) {
  fader_.setValue(-100);
  Mouse(fader_, QEvent::MouseButtonPress, {400, 20});
  Mouse(fader_, QEvent::MouseButtonRelease, {400, 20});
  EXPECT_EQ(fader_.value(), -80);
  Mouse(fader_, QEvent::MouseButtonDblClick, {400, 20});
  Mouse(fader_, QEvent::MouseButtonRelease, {400, 20});
  EXPECT_EQ(fader_.value(), 0);
  Mouse(fader_, QEvent::MouseButtonPress, {0, 20}, Qt::MiddleButton);
  Mouse(fader_, QEvent::MouseButtonRelease, {0, 20}, Qt::MiddleButton);
  EXPECT_EQ(fader_.value(), -200);
  EXPECT_EQ(moved_, (std::vector<int>{-80, 0, -200}));
}

TEST_F(FaderTest, TheWheelRaisesALevelThatIsKeptAsLoss) {
  Fader level(Qt::Vertical, 0, 2000);
  level.setInvertedAppearance(true);
  level.resize(40, 300);
  level.setValue(1000);
  QWheelEvent up(QPointF(20, 20), QPointF(20, 20), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                 Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&level, &up);
  EXPECT_EQ(level.value(), 980);
  level.setValue(0);
  EXPECT_LT(level.HandleCentre().y(), 20) << "loudest is up";
}

TEST_F(FaderTest, TheKeysMoveALevelThatIsKeptAsLossTheWayTheyPoint) {
  fader_.setRange(0, 2000);
  fader_.setInvertedAppearance(true);
  fader_.setValue(1000);
  const auto after = [this](Qt::Key key) {
    QTest::keyClick(&fader_, key);
    return fader_.value();
  };
  EXPECT_LT(after(Qt::Key_Up), 1000) << "louder";
  EXPECT_EQ(after(Qt::Key_Down), 1000);
  EXPECT_EQ(after(Qt::Key_Home), fader_.maximum()) << "the lower end";
  EXPECT_EQ(after(Qt::Key_End), 0);
  fader_.setValue(500);
  EXPECT_EQ(after(Qt::Key_Return), 0) << "its rest";
}

TEST(FocusRingTest, OneRingIsAroundTheControlThatHasTheKeyboardAndSeenOnEveryColour) {
  Theme::Apply(*qApp);
  QWidget window;
  auto* layout = new QHBoxLayout(&window);
  auto* first = new QPushButton(QStringLiteral("Load"), &window);
  Theme::SetRole(*first, QStringLiteral("primary"));
  auto* second = new QPushButton(QStringLiteral("Stop"), &window);
  for (QPushButton* button : {first, second}) layout->addWidget(button);
  window.show();
  window.activateWindow();
  ASSERT_TRUE(testing::TurnUntil([&] { return window.isActiveWindow(); }));
  const auto ring = [&] { return window.findChildren<QWidget*>(QStringLiteral("FocusRing")); };
  for (QPushButton* button : {first, second}) {
    button->setFocus();
    ASSERT_EQ(ring().size(), 1);
    EXPECT_TRUE(ring().front()->isVisible());
    EXPECT_EQ(ring().front()->geometry(), button->geometry().adjusted(-4, -4, 4, 4));
    for (const QColor& ground : {QColor(Qt::white), QColor(Qt::black), QColor(200, 160, 40)}) {
      QPalette palette = window.palette();
      palette.setColor(QPalette::Window, ground);
      window.setPalette(palette);
      const QImage picture = window.grab().toImage();
      const QPoint edge(button->geometry().center().x(), button->geometry().top() - 2);
      double contrast = 1;
      for (int depth = -2; depth < 4; ++depth)
        contrast = std::max(contrast, Theme::Contrast(picture.pixelColor(edge + QPoint(0, depth)),
                                                      picture.pixelColor(edge + QPoint(0, depth + 1))));
      EXPECT_GE(contrast, 4.5);
    }
  }
  window.resize(window.width() + 50, window.height() + 20);
  QCoreApplication::processEvents();
  EXPECT_EQ(ring().front()->geometry(), second->geometry().adjusted(-4, -4, 4, 4)) << "it follows";
  second->clearFocus();
  EXPECT_FALSE(ring().front()->isVisible());
  // Without the focus two roles differ by their ground alone.
  EXPECT_FALSE(first->isDefault());
}

TEST(NoticeBarTest, TheGravestFactIsShownAndKeepsItsPlaceUntilItIsOver) {
  NoticeBar bar;
  const int height = bar.sizeHint().height();
  bar.Show(QStringLiteral("main"), NoticeBar::Severity::Critical, QStringLiteral("Sound device lost: Main"));
  bar.Show(QStringLiteral("show"), NoticeBar::Severity::Information, QStringLiteral("Rendering"));
  EXPECT_EQ(bar.Text(), QStringLiteral("Sound device lost: Main"));
  EXPECT_EQ(bar.accessibleName(), bar.Text());
  EXPECT_TRUE(bar.toolTip().contains(QStringLiteral("Rendering"))) << "what has no room on it";
  bar.Clear(QStringLiteral("main"));
  EXPECT_EQ(bar.Text(), QStringLiteral("Rendering"));
  bar.Clear(QStringLiteral("show"));
  EXPECT_EQ(bar.Text(), QString());
  EXPECT_EQ(bar.sizeHint().height(), height);
}

TEST(WindowPlaceTest, AWindowComesBackWhereItWasButNeverOffTheScreens) {
  const QList<QRect> screens{{0, 0, 1280, 800}, {1280, 0, 1024, 768}};
  EXPECT_EQ(ClampToScreens({100, 100, 400, 300}, screens), QRect(100, 100, 400, 300));
  EXPECT_EQ(ClampToScreens({5000, -900, 400, 300}, screens), QRect(880, 0, 400, 300));
  EXPECT_EQ(ClampToScreens({2200, 700, 400, 300}, screens), QRect(1904, 468, 400, 300));
  EXPECT_EQ(ClampToScreens({1400, 10, 4000, 3000}, screens).size(), QSize(1024, 768));

  const testing::TemporaryTree tree;
  SimulatedEventLoop loop;
  SettingsStore store(loop, tree.Path(QStringLiteral("settings.ini")));
  const PlaceKeys keys =
      PlaceKeys::Of(QStringLiteral("Kelvo 2007"), QStringLiteral("Startup"), QStringLiteral("Search"));
  {
    QWidget window;
    const WindowPlace place(window, store, keys);
    window.resize(300, 200);
    window.move(120, 90);
    window.show();
    window.hide();
  }
  EXPECT_EQ(store.GetSetting(keys.title, keys.section, QStringLiteral("SearchPosx")), QStringLiteral("120"));
  QWidget again;
  const WindowPlace place(again, store, keys);
  EXPECT_EQ(again.pos(), QPoint(120, 90));
  EXPECT_EQ(again.size(), QSize(300, 200));
}

}  // namespace
}  // namespace kelvo
