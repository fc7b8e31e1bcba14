#include "app/BesideTheDesk.h"
#include "datamanager/windows/UnifyWindow.h"
#include "quiz/windows/QuizWindow.h"
#include "support/Lookup.h"
#include "support/WindowParts.h"
#include "ui/ListTable.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class TheQuizBesideTheDesk : public BesideTheDesk {
 protected:
  void SetUp() override {
    BesideTheDesk::SetUp();
    QDir().mkpath(database_.paths(Paths::Categories) + u"/Rock"_s);
    audio_.SetDuration(database_.tree.Write(u"Quiz Mixers/QzDrum.wav"_s, "sound"), 1);
    OpenDesk();
    for (int track = 1; track <= 3; ++track) {
      TrackEdit edit;
      edit.genres = u"~ALL CATEGORIES,Rock"_s;
      edit.artists = u"~ALL ARTISTS,The Band"_s;
      catalogue_.Change(ToMref(track), edit);
    }
    loop_.RunFor(1s);
  }
  QuizWindow& OpenQuiz() {
    window_->activateWindow();
    EXPECT_TRUE(TurnUntil([this] { return window_->isActiveWindow(); }));
    QTest::keyClick(&*window_, Qt::Key_Q, Qt::ControlModifier | Qt::ShiftModifier);
    loop_.RunFor(1s);
    auto* window = Opened<QuizWindow>();
    EXPECT_NE(window, nullptr);
    window->activateWindow();
    EXPECT_TRUE(TurnUntil([window] { return window->isActiveWindow(); }));
    return *window;
  }
  template <typename Control>
  Control& The(const QString& name) {
    return *FindNamed<Control>(*Opened<QuizWindow>(), name);
  }
  void Click(const QString& button, Nanoseconds then = 100ms) {
    auto& found = The<QPushButton>(button);
    EXPECT_TRUE(found.isEnabled()) << button.toStdString() << ": " << found.toolTip().toStdString();
    QTest::mouseClick(&found, Qt::LeftButton);
    loop_.RunFor(then);
  }
  void Pick(const QString& list, int row) {
    auto& table = The<ListTable>(list);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                      table.visualRect(table.model()->index(row, 0)).center());
  }
  int RowsOf(const QString& list) { return The<ListTable>(list).model()->rowCount(); }
  QString Question() { return The<QLabel>(u"Label13"_s).text(); }
  void SetUpQuiz() {
    OpenQuiz();
    The<QComboBox>(u"Combo1"_s).setFocus();
    QTest::keyClick(&The<QComboBox>(u"Combo1"_s), Qt::Key_Down);
    Click(u"Command1(1)"_s);
    Pick(u"List3"_s, 1);
    Click(u"Command3(0)"_s);
    Pick(u"List3"_s, 2);
    Click(u"Command3(0)"_s);
    Click(u"Command4"_s);
  }
};

TEST_F(TheQuizBesideTheDesk, IsSetUpRunShownAndScoredByItsControls) {
  SetUpQuiz();
  EXPECT_EQ(Question(), u"Pop Quiz Ready"_s);
  EXPECT_EQ(The<QLabel>(u"Label20"_s).text(), u"Set Up Elements 2   Tracks Required 2   Tracks Found 3"_s);
  EXPECT_FALSE(The<QPushButton>(u"Command10"_s).isEnabled());
  Click(u"Command5"_s, 2s);
  EXPECT_EQ(Question(), u"Playing Snippet"_s);
  EXPECT_FALSE(The<QPushButton>(u"Command4"_s).isEnabled());
  Click(u"Command10"_s, 1s);
  EXPECT_EQ(Question(), u"Play Snippet Cancelled"_s);
  // What is asked comes into sight, and the keyboard alone can go on.
  QTest::keyClick(Opened<QuizWindow>(), Qt::Key_Return, Qt::ControlModifier);
  loop_.RunFor(10s);
  QTest::keyClick(Opened<QuizWindow>(), Qt::Key_Return, Qt::ControlModifier);
  loop_.RunFor(1s);
  EXPECT_EQ(The<QPushButton>(u"Command5"_s).text(), u"Done"_s);
  EXPECT_EQ(RowsOf(u"List5"_s), 2);
  Pick(u"List5"_s, 0);
  EXPECT_TRUE(Question().endsWith(u"Who was the Artist And Track Just Played ?"_s));
  Click(u"Command9"_s);
  EXPECT_EQ(RowsOf(u"List7"_s), 1);
  EXPECT_FALSE(The<QPushButton>(u"Command15"_s).isEnabled());
  Pick(u"List7"_s, 0);
  Click(u"Command15"_s, 3s);
  // The track is sought in while it plays and the button is held down.
  QTest::mousePress(&The<QPushButton>(u"Command18(1)"_s), Qt::LeftButton);
  loop_.RunFor(2s);
  QTest::mouseRelease(&The<QPushButton>(u"Command18(1)"_s), Qt::LeftButton);
  Click(u"Command10"_s, 1s);
  Click(u"Command11"_s, 10s);

  QuizWindow& window = *Opened<QuizWindow>();
  EXPECT_FALSE(window.Audience().isVisible());
  QTest::keyClick(&window, Qt::Key_D, Qt::ControlModifier);
  ASSERT_TRUE(window.Audience().isVisible());
  EXPECT_TRUE(window.Audience().View().answers.isEmpty());
  Click(u"CmdReveal"_s);
  ASSERT_EQ(window.Audience().View().answers.size(), 1);
  EXPECT_TRUE(window.Audience().View().answers[0].startsWith(u"The Band, "_s));
  Click(u"CmdTeamAdd"_s);
  Click(u"CmdTeamAdd"_s);
  window.setFocus();
  QTest::keyClick(&window, Qt::Key_2);
  QTest::keyClick(&window, Qt::Key_2);
  QTest::keyClick(&window, Qt::Key_1);
  QTest::keyClick(&window, Qt::Key_1, Qt::ControlModifier);
  EXPECT_EQ(window.Audience().View().teams[0].points, 0);
  EXPECT_EQ(window.Audience().View().teams[1].points, 2);

  // A digit in a name is no point.
  Click(u"Savequiz"_s);
  auto& name = The<QLineEdit>(u"Text2"_s);
  name.setFocus();
  QTest::keyClicks(&name, u"2nd"_s);
  EXPECT_EQ(window.Audience().View().teams[1].points, 2);
  EXPECT_EQ(name.text(), u"2nd"_s);
  Click(u"Command13"_s);
  EXPECT_EQ(prompter_.Told().last(), u"Quiz 2nd Saved Successfully !"_s);
  prompter_.paths = {database_.tree.Path()};
  Click(u"CmdQuizSheet"_s);
  EXPECT_TRUE(database_.tree.Read(u"2nd.pdf"_s).startsWith("%PDF"));
  Click(u"norm"_s, 1s);
  ASSERT_NE(Opened<UnifyWindow>(), nullptr);
  Opened<UnifyWindow>()->close();
  Click(u"Loadquiz"_s);
  Pick(u"List6"_s, 0);
  Click(u"Command13"_s);
  EXPECT_EQ(RowsOf(u"List5"_s), 2);
}

TEST_F(TheQuizBesideTheDesk, HasRoomForItsWordsAndHoldsTheDecksDown) {
  QuizWindow& window = OpenQuiz();
  ExpectWellLaidOut(window);
  EXPECT_LE(window.minimumSizeHint().width(), 1024);
  EXPECT_LE(window.minimumSizeHint().height(), 680);
  window.close();
  SetUpQuiz();
  QTest::mouseClick(FindNamed<QAbstractButton>(*Opened<QuizWindow>(), u"ChkDip"_s), Qt::LeftButton);
  Enqueue({ToMref(1)});
  Load(Deck::One, 1);
  Decks().StartDeck(Deck::One);
  loop_.RunFor(1s);
  const int before = Record(Deck::One).Loss;
  Click(u"Command5"_s, 3s);
  EXPECT_GT(Record(Deck::One).Loss, before);
  // A voice that ends meanwhile does not bring them up.
  desk_->Speak().Press();
  desk_->Speak().Release();
  loop_.RunFor(1s);
  EXPECT_GT(Record(Deck::One).Loss, before);
  loop_.RunFor(10s);
  EXPECT_EQ(Record(Deck::One).Loss, before);
}

TEST_F(TheQuizBesideTheDesk, OffersAtTheStartToGoOnWithOneThatACrashHasLeft) {
  SetUpQuiz();
  Click(u"Command5"_s, 10s);
  const QByteArray kept = database_.tree.Read(u"Pop Quizes/.running-quiz"_s);
  ASSERT_FALSE(kept.isEmpty());
  beside_.reset();
  window_.reset();
  desk_.reset();
  loop_.RunFor(1s);
  database_.tree.Write(u"Pop Quizes/.running-quiz"_s, kept);
  prompter_.answers = {Answer::Yes};
  OpenDesk();
  loop_.RunFor(2s);
  ASSERT_NE(Opened<QuizWindow>(), nullptr);
  EXPECT_EQ(The<QPushButton>(u"Command5"_s).text(), u"Start Element 2 Of 2"_s);
}

}  // namespace
