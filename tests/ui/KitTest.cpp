// The kit of which the windows beside the console are made.

#include "platform/SimulatedEventLoop.h"
#include "support/Lookup.h"
#include "support/ScriptedPrompter.h"
#include "support/TurnUntil.h"
#include "ui/Command.h"
#include "ui/FormWindow.h"
#include "ui/JobStrip.h"
#include "ui/LetterBox.h"
#include "ui/ListPanel.h"
#include "ui/Naming.h"
#include "ui/ProgressStrip.h"
#include "ui/Theme.h"

#include <QTest>

#include <gmock/gmock.h>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::FindNamed;
using testing::ScriptedPrompter;

struct Person {
  QString name;
  int age = 0;
};

class Kit : public ::testing::Test {
 protected:
  void SetUp() override { Theme::Apply(*qApp); }
  static void Open(QWidget& window) {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(testing::TurnUntil([&window] { return window.isActiveWindow(); }));
  }
};

/// A window with every part of the kit that a list can have.
class PeopleWindow : public ToolWindow {
 public:
  explicit PeopleWindow(RowStore<Person>& people)
      : ToolWindow({.name = u"People"_s, .fixedName = u"frmPeople"_s, .title = u"People"_s}),
        people_(people),
        model_(people, {{{.head = u"Age"_s, .rank = 1, .number = true},
                         [](const Person& person) { return QString::number(person.age); }},
                        {{.head = u"Name"_s},
                         &Person::name,
                         [this](int row, const QString& typed) {
                           if (typed.isEmpty()) return false;
                           people_.Alter(row, [&typed](Person& person) { person.name = typed; });
                           return true;
                         }}}),
        list({.name = u"LstPeople"_s,
              .title = u"PEOPLE"_s,
              .accessible = u"People"_s,
              .filter = u"TxtFilter"_s,
              .letters = u"CboLetters"_s},
             model_, this) {
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(&list);
    layout->addWidget(AddCommand(*this, {.name = u"CmdCount"_s,
                                         .fixedName = u"Command1"_s,
                                         .words = u"Count"_s,
                                         .tooltip = u"Counts"_s,
                                         .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                                         .run = [this] { ++counted; }}));
    connect(&list, &ListPanel::RowActivated, this, [this](int row) { activated = row; });
  }

  RowStore<Person>& people_;
  RowModel<Person> model_;
  ListPanel list;
  int counted = 0;
  int refreshed = 0;
  int left = 0;
  int activated = -1;

 protected:
  void Refresh() override { ++refreshed; }
  void Leave() override { ++left; }
};

class PeopleOnScreen : public Kit {
 protected:
  void SetUp() override {
    Kit::SetUp();
    people_.Append({{u"Ann"_s, 30}, {u"Bob"_s, 41}, {u"Bea"_s, 22}, {u"Cat"_s, 30}});
    window_.emplace(people_);
    Open(*window_);
    if (HasFatalFailure()) return;
  }
  ListTable& Table() { return window_->list.Table(); }
  QStringList Shown(int column = 1) {
    QStringList texts;
    for (int row = 0; row < Table().model()->rowCount(); ++row)
      texts.append(Table().model()->index(row, column).data().toString());
    return texts;
  }
  QPushButton& Count() { return *FindNamed<QPushButton>(*window_, u"Command1"_s); }

  RowStore<Person> people_;
  std::optional<PeopleWindow> window_;
};

TEST_F(PeopleOnScreen, TheListFollowsItsRowsAndKeepsWhatIsPicked) {
  Table().selectRow(2);
  people_.Remove(0);
  people_.Append({{u"Dan"_s, 5}});
  EXPECT_THAT(Shown(), ElementsAre(u"Bob"_s, u"Bea"_s, u"Cat"_s, u"Dan"_s));
  EXPECT_THAT(window_->list.Picked(), ElementsAre(1));
  EXPECT_EQ(window_->list.Note(), u"4"_s);
  people_.Replace({{u"Eve"_s, 9}});
  EXPECT_THAT(Shown(0), ElementsAre(u"9"_s));
  EXPECT_FALSE(window_->list.AnyPicked());
  window_->list.PickAllOrNone();
  EXPECT_TRUE(window_->list.AllPicked());
  window_->list.PickAllOrNone();
  EXPECT_FALSE(window_->list.AnyPicked());
  EXPECT_EQ(people_.TakeAll().size(), 1U);
  EXPECT_EQ(window_->list.Note(), u"0"_s);
}

TEST_F(PeopleOnScreen, LettersFindTheNextNameWhereverTheCursorIs) {
  Table().setCurrentIndex(Table().model()->index(0, 0));
  QTest::keyClicks(&Table(), u"be"_s);
  EXPECT_EQ(Table().currentIndex().row(), 2);
  auto& letters = *FindNamed<LetterBox>(*window_, u"CboLetters"_s);
  letters.setCurrentText(u"C"_s);
  Q_EMIT letters.activated(letters.currentIndex());
  EXPECT_EQ(Table().currentIndex().row(), 3);
}

TEST_F(PeopleOnScreen, TheFilterShowsRowsWithAllItsWordsAndPickingCountsAsBefore) {
  QTest::keyClick(&*window_, Qt::Key_F, Qt::ControlModifier);
  auto& filter = *FindNamed<QLineEdit>(*window_, u"TxtFilter"_s);
  ASSERT_TRUE(filter.hasFocus());
  QTest::keyClicks(&filter, u"30 a"_s);
  EXPECT_THAT(Shown(), ElementsAre(u"Ann"_s, u"Cat"_s));
  EXPECT_EQ(window_->list.Note(), u"2 of 4"_s);
  Table().selectRow(1);
  EXPECT_THAT(window_->list.Picked(), ElementsAre(3)) << "a row of the model, not of what is shown";
  Table().setCurrentIndex(Table().model()->index(1, 0));
  QTest::keyClick(&Table(), Qt::Key_Return);
  EXPECT_EQ(window_->activated, 3);
}

TEST_F(PeopleOnScreen, ReturnEditsACellAndEscapeGivesUpTheEditBeforeTheWindow) {
  const QModelIndex name = Table().model()->index(0, 1);
  Table().setCurrentIndex(name);
  QTest::keyClick(&Table(), Qt::Key_Return);
  auto* editor = Table().viewport()->findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(window_->activated, -1);
  editor->setText(u"Zoe"_s);
  QTest::keyClick(editor, Qt::Key_Escape);
  EXPECT_EQ(people_[0].name, u"Ann"_s);
  EXPECT_TRUE(window_->isVisible());
  EXPECT_FALSE(Table().model()->setData(name, QString()));
  window_->model_.MayEdit = [] { return false; };
  EXPECT_FALSE(name.flags().testFlag(Qt::ItemIsEditable));
}

TEST_F(PeopleOnScreen, EveryWindowObeysTheSameKeys) {
  EXPECT_EQ(window_->refreshed, 1) << "when it comes up";
  EXPECT_TRUE(FindNamed<QLineEdit>(*window_, u"TxtFilter"_s)->hasFocus()) << "the first that is read";
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  EXPECT_TRUE(Table().hasFocus());
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  EXPECT_TRUE(Count().hasFocus());
  QTest::keyClick(&Table(), Qt::Key_F5);
  EXPECT_EQ(window_->refreshed, 2);
  Count().setFocus();
  QTest::keyClick(&Count(), Qt::Key_Return);
  QTest::keyClick(&Count(), Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ(window_->counted, 2);
  QTest::keyClick(&Table(), Qt::Key_Enter, Qt::ControlModifier);
  EXPECT_EQ(window_->counted, 3) << "the command's own key";
  EXPECT_TRUE(Count().toolTip().startsWith(u"Counts  (Ctrl+"_s)) << Count().toolTip().toStdString();
  QTest::keyClick(&Table(), Qt::Key_Escape);
  EXPECT_FALSE(window_->isVisible());
  EXPECT_EQ(window_->left, 1);
  EXPECT_EQ(FixedName(*window_), u"frmPeople"_s);
}

/// A form over one name and one option.
class NameWindow : public FormWindow {
 public:
  explicit NameWindow(Prompter& prompter)
      : FormWindow({.name = u"NameForm"_s, .title = u"Name"_s}, prompter),
        name(Fields().AddText({.name = u"TxtName"_s, .label = u"&Name"_s}, u"Ann"_s)),
        active(Fields().AddOption({.name = u"ChkActive"_s, .label = u"&Active"_s}, true)) {
    ShowState();
  }
  QLineEdit& name;
  QCheckBox& active;
  QStringList saved;
  bool disk = true;

 protected:
  void Check() override {
    Fields().SetMessage(name, name.text().isEmpty() ? u"Please Enter A Name"_s : QString());
  }
  bool Save() override {
    if (disk) saved.append(name.text());
    return disk;
  }
};

class FormOnScreen : public Kit {
 protected:
  void SetUp() override {
    Kit::SetUp();
    form_.emplace(prompter_);
    Open(*form_);
  }
  void Click(const QString& name) { QTest::mouseClick(FindNamed<QPushButton>(*form_, name), Qt::LeftButton); }
  ScriptedPrompter prompter_;
  std::optional<NameWindow> form_;
};

TEST_F(FormOnScreen, OkSavesWhatFitsAndCloses) {
  form_->name.clear();
  EXPECT_FALSE(FindNamed<QPushButton>(*form_, u"CmdOk"_s)->isEnabled());
  EXPECT_EQ(form_->name.accessibleDescription(), u"Please Enter A Name"_s);
  QTest::keyClick(&form_->name, Qt::Key_Return);
  EXPECT_TRUE(form_->saved.isEmpty());
  QTest::keyClicks(&form_->name, u"Bob"_s);
  form_->disk = false;
  Click(u"CmdOk"_s);
  EXPECT_TRUE(form_->isVisible()) << "nothing is lost when it can't be saved";
  form_->disk = true;
  QTest::keyClick(&form_->name, Qt::Key_Return);
  EXPECT_EQ(form_->saved, QStringList{u"Bob"_s});
  EXPECT_FALSE(form_->isVisible());
  EXPECT_TRUE(prompter_.asked.empty());
}

TEST_F(FormOnScreen, AnotherWayOutAsksOnlyWhenSomethingWasTyped) {
  form_->active.click();
  prompter_.answers = {Answer::Cancel, Answer::No};
  QTest::keyClick(&*form_, Qt::Key_Escape);
  EXPECT_TRUE(form_->isVisible());
  form_->close();
  EXPECT_FALSE(form_->isVisible());
  EXPECT_TRUE(form_->active.isChecked()) << "what was given up is not there the next time";
  EXPECT_EQ(prompter_.Told(), (QStringList{u"Save Changes ?"_s, u"Save Changes ?"_s}));

  Open(*form_);
  form_->active.click();
  form_->active.click();
  form_->close();
  EXPECT_EQ(prompter_.asked.size(), 2U) << "all is as it was";

  Open(*form_);
  form_->name.setText(u"Cat"_s);
  Click(u"CmdCancel"_s);
  EXPECT_EQ(form_->name.text(), u"Ann"_s);
  Open(*form_);
  form_->name.setText(u"Dan"_s);
  prompter_.answers = {Answer::Yes};
  form_->close();
  EXPECT_EQ(form_->saved, QStringList{u"Dan"_s});
}

TEST_F(Kit, AJobTellsWhatIsDoneWhatIsLeftAndCanBeStopped) {
  SimulatedEventLoop loop;
  QWidget window;
  JobStrip strip(loop, u"PrgCopy"_s, u"Copying"_s, &window);
  int stops = 0;
  strip.OfferStop(u"CmdStop"_s, u"Stops"_s, [&stops] { ++stops; });
  window.show();
  auto& stop = *FindNamed<QPushButton>(window, u"CmdStop"_s);
  auto& left = *FindNamed<QLabel>(window, u"PrgCopyLeft"_s);
  EXPECT_FALSE(stop.isVisible());
  strip.Show({.running = true, .words = u"Copying A"_s, .share = 0.0});
  EXPECT_TRUE(stop.isVisible());
  loop.RunFor(2s);
  strip.Show({.running = true, .words = u"Copying A"_s, .share = 0.2});
  EXPECT_FALSE(left.isVisible()) << "too soon for a guess";
  loop.RunFor(18s);
  strip.Show({.running = true, .words = u"Copying B"_s, .share = 0.25});
  EXPECT_EQ(strip.Bar().text(), u"Copying B 25 %"_s);
  EXPECT_EQ(left.text(), u"01:00 left"_s);
  stop.click();
  EXPECT_EQ(stops, 1);
  strip.Show({.words = u"Stopped"_s});
  EXPECT_EQ(strip.Bar().text(), u"Stopped"_s);
  EXPECT_FALSE(left.isVisible());
  // The next job's time is its own.
  loop.RunFor(1h);
  strip.Show({.running = true, .share = 0.0});
  loop.RunFor(10s);
  strip.Show({.running = true, .share = 0.5});
  EXPECT_EQ(left.text(), u"00:10 left"_s);
}

}  // namespace
}  // namespace kelvo
