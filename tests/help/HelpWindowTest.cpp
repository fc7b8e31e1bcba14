#include "help/windows/HelpWindow.h"
#include "help/windows/ManualView.h"
#include "support/Lookup.h"
#include "support/TurnUntil.h"
#include "support/WindowParts.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QScrollBar>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;
using namespace Qt::StringLiterals;

namespace {

void LetItLayOut() {
  for (int turn = 0; turn < 5; ++turn) QCoreApplication::processEvents();
}

TEST(HelpWindowTest, ThePicturesOfAPageFitTheWindowInEverySize) {
  Theme::Apply(*qApp);
  Help help({.manual = Manual::OfProgram()});
  HelpWindow window(help);
  window.TakeFiles({u"Console"_s});
  window.show();
  auto& page = *FindNamed<ManualView>(window, u"ManualPage"_s);
  int before = 0;
  for (const QSize& size : {QSize(1000, 600), QSize(760, 600), QSize(1010, 640)}) {
    window.resize(size);
    LetItLayOut();
    const auto picture =
        page.document()->resource(QTextDocument::ImageResource, QUrl(u"console.png"_s)).value<QImage>();
    EXPECT_FALSE(picture.isNull());
    EXPECT_LE(picture.width(), page.viewport()->width());
    EXPECT_NE(picture.width(), before);
    EXPECT_EQ(page.horizontalScrollBar()->maximum(), 0) << size.width();
    before = picture.width();
  }
  ExpectWellLaidOut(window);
}

TEST(HelpWindowTest, AHeadingIsBroughtIntoSight) {
  Theme::Apply(*qApp);
  Help help({.manual = Manual::OfProgram()});
  HelpWindow window(help);
  window.show();
  LetItLayOut();
  window.TakeFiles({u"topic:9100"_s});
  LetItLayOut();
  EXPECT_EQ(window.windowTitle(), u"Help: The Data Manager"_s);
  EXPECT_GT(FindNamed<ManualView>(window, u"ManualPage"_s)->verticalScrollBar()->value(), 0);
  window.TakeFiles({u"Import"_s});
  EXPECT_EQ(FindNamed<ManualView>(window, u"ManualPage"_s)->verticalScrollBar()->value(), 0);
}

}  // namespace
