// The rules that every window beside the desk obeys, in the joined window, by its menu entries.

#include "app/BesideTheDesk.h"
#include "app/windows/HostedWindow.h"
#include "console/windows/TimerForm.h"
#include "database/windows/UtilityWindow.h"
#include "datamanager/windows/SearchWindow.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

/// As busy as the test wants.
struct PlainWork {
  struct Services {
    QString name;
  };
  explicit PlainWork(Services services) : name(std::move(services.name)) {}
  [[nodiscard]] bool Busy() const { return busy; }
  QString name;
  bool busy = false;
};

class PlainWindow : public ToolWindow {
 public:
  explicit PlainWindow(PlainWork& shown)
      : ToolWindow({.name = shown.name, .title = shown.name}), work(shown) {}
  /// May it close? Nobody is asked while it has nothing to save.
  [[nodiscard]] Job<bool> MayClose() override { co_return saved; }
  PlainWork& work;
  bool saved = true;
};

class TheTable : public BesideTheDesk {
 protected:
  WindowLine Line(const QString& id) {
    WindowLine line{.id = id, .words = id};
    line.make = [this, id] {
      const WindowHost host{.console = *window_, .loop = loop_, .settings = settings_, .title = u"Kelvo"_s};
      auto made = std::make_unique<Hosted<PlainWindow, PlainWork>>(host, id, PlainWork::Services{.name = id});
      made_[id] = &made->window;
      return made;
    };
    return line;
  }
  [[nodiscard]] bool Shown(const QString& id) { return made_.contains(id) && made_[id]->isVisible(); }
  /// What is asked when the operator closes the console, up to the first No.
  QStringList AskedAtTheEnd(const std::deque<Answer>& answers) {
    prompter_.asked.clear();
    prompter_.answers = answers;
    window_->close();
    loop_.RunFor(1s);
    EXPECT_TRUE(prompter_.answers.empty());
    return prompter_.Told();
  }
  std::map<QString, PlainWindow*> made_;
};

TEST_F(TheTable, UpkeepIsClosedWhileTheDeskIsOnAir) {
  OpenDesk();
  EnqueueAll();
  Load(Deck::One, 1);
  EXPECT_TRUE(Offered(u"Utility"_s));
  Decks().ManualStart(Deck::One);
  // Between two beats the entry doesn't know yet.
  Press(u"Utility"_s);
  EXPECT_EQ(Opened<UtilityWindow>(), nullptr);
  EXPECT_EQ(prompter_.Told().last(), u"Not while deck 1 plays"_s);
  loop_.RunFor(2s);
  for (const QString& id : {u"Import"_s, u"Transfer"_s, u"Utility"_s}) {
    EXPECT_FALSE(Offered(id)) << id.toStdString();
    EXPECT_EQ(Entry(id).first->toolTip(), u"Not while deck 1 plays"_s);
  }
  EXPECT_TRUE(Offered(u"TrackSearch"_s));
  EXPECT_TRUE(Offered(u"Jingles"_s));
  Decks().StopDeck(Deck::One);
  loop_.RunFor(2s);
  Press(u"Utility"_s);
  ASSERT_NE(Opened<UtilityWindow>(), nullptr);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(2s);
  EXPECT_TRUE(Opened<UtilityWindow>()->isVisible()) << "what is open stays open";
}

TEST_F(TheTable, UpkeepIsBehindThePasswordAndTheSearchIsNot) {
  Set(u"DmanAccess"_s, u"False"_s);
  Set(u"DmanPassWord"_s, u"Secret"_s);
  OpenDesk();
  prompter_.texts = {u"guess"_s, u"Secret"_s};
  prompter_.answers = {Answer::Ok};
  Press(u"Utility"_s);
  EXPECT_EQ(Opened<UtilityWindow>(), nullptr);
  Press(u"Utility"_s);
  EXPECT_NE(Opened<UtilityWindow>(), nullptr);
  Press(u"TrackSearch"_s);
  EXPECT_EQ(prompter_.secretsAsked, 2);
}

TEST_F(TheTable, NoWindowOpensBeforeTheCatalogueIsLoadedUnlessItsLineSaysSo) {
  WindowLine free = Line(u"Free"_s);
  free.guard.catalogue = false;
  Make();
  window_.emplace(*desk_);
  beside_.emplace(*desk_, *window_, std::vector<WindowLine>{Line(u"Bound"_s), free});
  EXPECT_FALSE(Offered(u"Bound"_s));
  EXPECT_TRUE(Offered(u"Free"_s));
  desk_->Activate();
  ASSERT_TRUE(loop_.RunUntil([this] { return desk_->CatalogueLoaded(); }));
  EXPECT_TRUE(Offered(u"Bound"_s));
}

TEST_F(TheTable, AFormOfTheConsoleTakesThePlaceOfTheOneThatIsOpen) {
  std::vector<WindowLine> lines{Line(u"Session"_s), Line(u"Editor"_s), Line(u"Search"_s)};
  lines[0].childForm = lines[1].childForm = true;
  lines[1].key = u"Ctrl+E"_s;
  OpenDesk(lines);
  Press(u"Search"_s);
  Press(u"Session"_s);
  PlainWindow* const session = made_[u"Session"_s];
  window_->activateWindow();
  ASSERT_TRUE(TurnUntil([this] { return window_->isActiveWindow(); }));
  QTest::keyClick(&*window_, Qt::Key_E, Qt::ControlModifier);
  loop_.RunFor(10ms);
  EXPECT_FALSE(Shown(u"Session"_s));
  EXPECT_TRUE(Shown(u"Editor"_s));
  EXPECT_TRUE(Shown(u"Search"_s)) << "no form of the console";
  made_[u"Editor"_s]->close();
  Press(u"Session"_s);
  EXPECT_TRUE(Shown(u"Session"_s));
  EXPECT_EQ(made_[u"Session"_s], session) << "a window is kept";
}

TEST_F(TheTable, EachBusyWindowIsAskedForOnceBeforeTheEnd) {
  std::vector<WindowLine> lines{Line(u"Import"_s), Line(u"Transfer"_s), Line(u"Rip"_s), Line(u"Search"_s)};
  lines[0].busyQuestion = lines[1].busyQuestion = u"Music Is On Its Way !"_s;
  lines[2].busyQuestion = u"A Rip Goes On !"_s;
  OpenDesk(lines);
  for (const WindowLine& line : lines) Press(line.id);
  EXPECT_EQ(AskedAtTheEnd({Answer::No}), QStringList{u"Quit Kelvo ? "_s});
  for (const QString& id : {u"Import"_s, u"Transfer"_s, u"Rip"_s}) made_[id]->work.busy = true;
  EXPECT_EQ(AskedAtTheEnd({Answer::Yes, Answer::No}),
            (QStringList{u"Music Is On Its Way !"_s, u"A Rip Goes On !"_s}));
  EXPECT_TRUE(window_->isVisible());
  made_[u"Import"_s]->work.busy = false;
  made_[u"Rip"_s]->work.busy = false;
  made_[u"Search"_s]->saved = false;
  EXPECT_EQ(AskedAtTheEnd({Answer::Yes}), QStringList{u"Music Is On Its Way !"_s});
  EXPECT_TRUE(window_->isVisible()) << "a window with something to save may keep the desk open";
  made_[u"Search"_s]->saved = true;
  EXPECT_EQ(AskedAtTheEnd({Answer::Yes, Answer::Yes}),
            (QStringList{u"Music Is On Its Way !"_s, u"Quit Kelvo ? "_s}));
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(TheTable, ALockedScreenTakesNoHandInAnyWindowAndOpensNone) {
  OpenDesk(std::vector<WindowLine>{Line(u"Open"_s), Line(u"Other"_s)});
  Press(u"Open"_s);
  prompter_.texts = {u"code"_s, u"code"_s};
  PressLock();
  EXPECT_FALSE(made_[u"Open"_s]->isEnabled());
  EXPECT_FALSE(Offered(u"Other"_s));
  made_[u"Open"_s]->close();
  EXPECT_TRUE(Shown(u"Open"_s));
  Press(u"Other"_s);
  EXPECT_FALSE(made_.contains(u"Other"_s));
  PressLock();
  EXPECT_TRUE(made_[u"Open"_s]->isEnabled());
  Press(u"Other"_s);
  EXPECT_TRUE(Shown(u"Other"_s));
}

TEST_F(TheTable, LockedNoKeyNoMenuAndNoCloseAsksAnythingButTheCode) {
  OpenDesk(std::vector<WindowLine>{Line(u"Open"_s), Line(u"Other"_s)});
  EnqueueAll();
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  Decks().ManualStart(Deck::One);
  QTest::mouseClick(window_->findChild<QPushButton*>(u"CmdSetTimer"_s), Qt::LeftButton);
  Press(u"Open"_s);
  window_->activateWindow();
  ASSERT_TRUE(TurnUntil([this] { return window_->isActiveWindow(); }));
  prompter_.texts = {u"code"_s};
  PressLock();
  EXPECT_EQ(prompter_.secretsAsked, 1) << "the code is typed hidden";
  EXPECT_FALSE(Opened<TimerForm>()->isVisible()) << "nor could the form start the show";
  prompter_.asked.clear();
  const QStringList rows = Column(CommentColumn);
  for (QAction* action : window_->findChildren<QAction*>()) {
    if (action->objectName() == u"Lockscr"_s) continue;
    for (const QKeySequence& keys : action->shortcuts())
      QTest::keyClick(window_->windowHandle(), keys[0].key(), keys[0].keyboardModifiers());
  }
  for (int key = Qt::Key_F1; key <= Qt::Key_F12; ++key)
    QTest::keyClick(window_->windowHandle(), Qt::Key(key));
  for (const Qt::Key key :
       {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space, Qt::Key_Delete, Qt::Key_Y, Qt::Key_Tab}) {
    for (const Qt::KeyboardModifiers with : {Qt::NoModifier, Qt::ControlModifier}) {
      QTest::keyClick(window_->windowHandle(), key, with);
      QTest::keyClick(made_[u"Open"_s]->windowHandle(), key, with);
    }
  }
  QTest::keyClick(window_->windowHandle(), Qt::Key_1, Qt::ControlModifier | Qt::AltModifier);
  made_[u"Open"_s]->close();
  loop_.RunFor(3s);
  EXPECT_TRUE(prompter_.asked.empty()) << prompter_.Told().join(u'\n').toStdString();
  EXPECT_TRUE(made_[u"Open"_s]->isVisible());
  EXPECT_TRUE(window_->isVisible());
  EXPECT_EQ(Record(Deck::One).State, DeckState::Playing);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Loaded);
  EXPECT_EQ(Column(CommentColumn), rows);
  for (const QAction* menu : window_->menuBar()->actions()) {
    if (!menu->isEnabled()) continue;
    for (const QAction* entry : menu->menu()->actions())
      EXPECT_TRUE(!entry->isEnabled() || entry->isSeparator() || entry->objectName() == u"Lockscr"_s)
          << entry->text().toStdString();
  }

  // The corner of the window asks for the code: a wrong one, then the right one.
  prompter_.texts = {u"guess"_s, u"code"_s};
  prompter_.answers = {Answer::Ok};
  for (int times = 0; times < 2; ++times) {
    window_->close();
    loop_.RunFor(100ms);
  }
  EXPECT_EQ(prompter_.Told(),
            (QStringList{u"Enter Code To Unlock Screen"_s, u"Sorry, Screen Unlock Code Not Valid !"_s,
                         u"Enter Code To Unlock Screen"_s}));
  EXPECT_TRUE(window_->isVisible());
  prompter_.answers = {Answer::No};
  window_->close();
  loop_.RunFor(100ms);
  EXPECT_EQ(prompter_.Told().last(), u"Quit Kelvo ? "_s) << "unlocked all is as before";
}

TEST_F(TheTable, TheSpaceBarSpeaksInEveryWindowAndPressesNothingThere) {
  OpenDesk();
  EnqueueAll();
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(1s);
  Press(u"TrackSearch"_s);
  auto* search = Opened<SearchWindow>();
  ASSERT_NE(search, nullptr);
  search->activateWindow();
  ASSERT_TRUE(TurnUntil([&] { return search->isActiveWindow(); }));
  auto* title = search->findChild<QCheckBox*>(u"ChkTitleFirst"_s);
  title->setFocus();
  QTest::keyPress(search->windowHandle(), Qt::Key_Space);
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Loss, 1000);
  QTest::keyRelease(search->windowHandle(), Qt::Key_Space);
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::One).Loss, 0);
  EXPECT_FALSE(title->isChecked());
  QTest::keyClick(search->windowHandle(), Qt::Key_Return);
  EXPECT_TRUE(title->isChecked());
  auto* text = search->findChild<QLineEdit*>(u"TxtSearch"_s);
  text->setFocus();
  QTest::keyClick(search->windowHandle(), Qt::Key_Space);
  EXPECT_EQ(text->text(), u" "_s);
  EXPECT_EQ(Record(Deck::One).Loss, 0);
  // A click leaves the keyboard where it was.
  QTest::mouseClick(search->findChild<QPushButton*>(u"CmdSearch"_s), Qt::LeftButton);
  loop_.RunFor(1s);
  EXPECT_TRUE(text->hasFocus());
}

}  // namespace
