// The kit of which the windows beside the console are made.

#include "platform/SimulatedEventLoop.h"
#include "support/Lookup.h"
#include "support/TurnUntil.h"
#include "support/WindowParts.h"
#include "ui/Command.h"
#include "ui/Form.h"
#include "ui/JobStrip.h"
#include "ui/LetterBox.h"
#include "ui/ListPanel.h"
#include "ui/Naming.h"
#include "ui/ProgressStrip.h"
#include "ui/Theme.h"
#include "ui/ToolWindow.h"

#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include <gmock/gmock.h>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::FindNamed;

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
    testing::ExpectWellLaidOut(window);
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

TEST_F(PeopleOnScreen, ATooltipShowsANameLetterForLetter) {
  window_->model_.Dress = [](const Person& person, int, int role) {
    return role == Qt::ToolTipRole ? QVariant(person.name) : QVariant();
  };
  people_.Append({{u"<b>A & B</b>"_s, 1}});
  const auto tip = [this](int row) { return window_->model_.index(row, 0).data(Qt::ToolTipRole).toString(); };
  EXPECT_EQ(tip(0), u"Ann"_s);
  EXPECT_EQ(tip(4), u"<qt>&lt;b&gt;A &amp; B&lt;/b&gt;</qt>"_s);
}

TEST_F(PeopleOnScreen, LettersFindTheNextNameWhereverTheCursorIs) {
  Table().setCurrentIndex(Table().model()->index(0, 0));
  QTest::keyClicks(&Table(), u"be"_s);
  EXPECT_EQ(Table().currentIndex().row(), 2);
  auto& letters = *FindNamed<LetterBox>(*window_, u"CboLetters"_s);
  letters.setCurrentText(u"C"_s);
  Q_EMIT letters.activated(letters.currentIndex());
  EXPECT_EQ(Table().currentIndex().row(), 3);
  QTest::keyClick(&Table(), Qt::Key_Home);
  EXPECT_THAT(window_->list.Picked(), ElementsAre(0)) << "the ends of a list are its rows";
  QTest::keyClick(&Table(), Qt::Key_End);
  EXPECT_THAT(window_->list.Picked(), ElementsAre(3));
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

TEST_F(Kit, AFormShowsWhatIsWrongBesideItsFields) {
  QWidget window;
  auto* layout = new QVBoxLayout(&window);
  auto* form = new Form(&window);
  layout->addWidget(form);
  QLineEdit& name = form->AddText({.name = u"TxtName"_s, .label = u"&Name"_s});
  QLineEdit& date = form->AddText({.name = u"TxtDate"_s, .label = u"&Date"_s});
  int changes = 0;
  int submits = 0;
  QObject::connect(form, &Form::Changed, [&changes] { ++changes; });
  QObject::connect(form, &Form::Submitted, [&submits] { ++submits; });
  Open(window);
  EXPECT_TRUE(form->IsEmpty());
  QTest::keyClick(&window, Qt::Key_D, Qt::AltModifier);
  ASSERT_TRUE(date.hasFocus());
  QTest::keyClicks(&date, u"x"_s);
  QTest::keyClick(&date, Qt::Key_Return);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(submits, 1);
  EXPECT_FALSE(form->IsEmpty());
  form->SetMessage(date, u"as 1999-Dec"_s);
  EXPECT_EQ(date.accessibleDescription(), u"as 1999-Dec"_s);
  EXPECT_TRUE(name.accessibleDescription().isEmpty());
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
