#include "support/TurnUntil.h"
#include "ui/MessageBoxPrompter.h"
#include "ui/PromptBox.h"
#include "ui/Theme.h"
#include "ui/ToldList.h"

#include <QApplication>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>
#include <QVBoxLayout>
#include <QWindow>

#include <gtest/gtest.h>

namespace kelvo {
namespace {

void LetTheLoopTurn() {
  for (int turn = 0; turn < 3; ++turn) QCoreApplication::processEvents();
}

template <typename Box>
std::vector<Box*> OpenBoxes() {
  std::vector<Box*> boxes;
  for (QWidget* each : QApplication::topLevelWidgets()) {
    auto* box = qobject_cast<Box*>(each);
    if (box && box->isVisible()) boxes.push_back(box);
  }
  return boxes;
}

PromptBox* OnlyBox() {
  const auto boxes = OpenBoxes<PromptBox>();
  return boxes.size() == 1 ? boxes.front() : nullptr;
}

void Press(QWidget& widget, int key, const QString& text = {}) {
  QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
  QCoreApplication::sendEvent(&widget, &down);
  LetTheLoopTurn();
}

Prompt Words(const QString& text, Buttons buttons = Buttons::Ok) {
  Prompt prompt;
  prompt.text = text;
  prompt.buttons = buttons;
  return prompt;
}

/// A person in front of the running program's boxes, and a job that waits for the answer.
class PrompterTest : public ::testing::Test {
 protected:
  Job<> Keep(Prompt prompt) { answer_ = co_await prompter_.Ask(prompt); }
  Job<> KeepForFiles(Prompt prompt) { forFiles_ = co_await prompter_.AskForFiles(prompt); }
  Job<> KeepText(QString prompt, QString initial) {
    text_ = co_await prompter_.AskText(QStringLiteral("Path error"), prompt, initial);
  }
  Job<> KeepSecret(QString prompt) {
    text_ = co_await prompter_.AskSecret(QStringLiteral("Data Manager Access"), prompt);
  }
  Job<> KeepFolder(QString initial) {
    folder_ = co_await prompter_.PickFolder(QString(), initial);
    picked_ = true;
  }

  QWidget console_;
  MessageBoxPrompter prompter_{[this] { return &console_; }};
  std::optional<Answer> answer_;
  std::optional<AnswerForFiles> forFiles_;
  std::optional<QString> text_;
  std::optional<QString> folder_;
  bool picked_ = false;
  Job<> job_;
};

TEST_F(PrompterTest, EscapeAnswersWithTheLeastHarmfulButton) {
  const std::array<std::pair<Buttons, Answer>, 4> cases{{{Buttons::Ok, Answer::Ok},
                                                         {Buttons::OkCancel, Answer::Cancel},
                                                         {Buttons::YesNo, Answer::No},
                                                         {Buttons::YesNoCancel, Answer::Cancel}}};
  for (const auto& [buttons, expected] : cases) {
    answer_.reset();
    job_ = Keep(Words(QStringLiteral("Quit Kelvo 2007 ? "), buttons));
    ASSERT_NE(OnlyBox(), nullptr);
    Press(*OnlyBox(), Qt::Key_Escape);
    EXPECT_EQ(answer_, expected) << static_cast<int>(buttons);
    EXPECT_TRUE(OpenBoxes<PromptBox>().empty());
  }
}

TEST_F(PrompterTest, LettersAndEnterPressTheButtonsOfAQuestion) {
  job_ = Keep(Words(QStringLiteral("Sure ?"), Buttons::YesNoCancel));
  ASSERT_NE(OnlyBox(), nullptr);
  Press(*OnlyBox(), Qt::Key_N, QStringLiteral("n"));
  EXPECT_EQ(answer_, Answer::No);

  answer_.reset();
  job_ = Keep(Words(QStringLiteral("Sure ?"), Buttons::YesNo));
  Press(*OnlyBox(), Qt::Key_Return);
  EXPECT_EQ(answer_, Answer::Yes);
}

TEST_F(PrompterTest, HelpIsShownBelowTheTextAndTheQuestionStays) {
  Prompt refusal = Words(QStringLiteral("No gaps !"));
  job_ = Keep(refusal);
  ASSERT_NE(OnlyBox(), nullptr);
  EXPECT_EQ(OnlyBox()->findChild<QPushButton*>(QStringLiteral("CmdHelp")), nullptr);
  Press(*OnlyBox(), Qt::Key_Escape);
  refusal.help = {7, QStringLiteral("Hold Shift.")};
  job_ = Keep(refusal);
  ASSERT_NE(OnlyBox(), nullptr);
  const int height = OnlyBox()->height();
  Press(*OnlyBox(), Qt::Key_H, QStringLiteral("h"));
  ASSERT_NE(OnlyBox(), nullptr);
  EXPECT_EQ(OnlyBox()->Text(), QStringLiteral("No gaps !\n\nHold Shift."));
  EXPECT_GT(OnlyBox()->height(), height);
  Press(*OnlyBox(), Qt::Key_Return);
  EXPECT_TRUE(OpenBoxes<PromptBox>().empty());
}

TEST_F(PrompterTest, TheHelpOfAQuestionIsInFrontOfItAndTakesKeysOfItsOwn) {
  QWidget help;
  QWidget other;
  int topic = 0;
  prompter_.OnHelp = [&](int wanted) {
    topic = wanted;
    help.winId();
    help.windowHandle()->setTransientParent(OnlyBox()->windowHandle());
    help.show();
  };
  Prompt question = Words(QStringLiteral("Larger ?"), Buttons::YesNo);
  question.help = {7, QStringLiteral("It may clip.")};
  job_ = Keep(question);
  ASSERT_NE(OnlyBox(), nullptr);
  Press(*OnlyBox(), Qt::Key_H, QStringLiteral("h"));
  EXPECT_EQ(topic, 7);
  Press(help, Qt::Key_Escape);
  ASSERT_NE(OnlyBox(), nullptr) << "the key was for the help";
  other.show();
  Press(other, Qt::Key_Escape);
  EXPECT_EQ(answer_, Answer::No);
}

TEST_F(PrompterTest, EnterGivesTheSafeAnswerWhereThereIsOne) {
  Prompt question = Words(QStringLiteral("Continue With Delete ?"), Buttons::YesNo);
  question.safe = Answer::No;
  job_ = Keep(question);
  ASSERT_NE(OnlyBox(), nullptr);
  Press(*OnlyBox(), Qt::Key_Return);
  EXPECT_EQ(answer_, Answer::No);
}

TEST_F(PrompterTest, AQuestionAboutOneOfManyFilesCanAnswerForAllAndStop) {
  Prompt question = Words(QStringLiteral("Do You Wish To Replace the Existing Track "), Buttons::YesNoCancel);
  question.safe = Answer::Cancel;
  job_ = KeepForFiles(question);
  ASSERT_NE(OnlyBox(), nullptr);
  Press(*OnlyBox(), Qt::Key_S, QStringLiteral("s"));
  ASSERT_TRUE(forFiles_);
  EXPECT_EQ(forFiles_->answer, Answer::Stop);
  EXPECT_FALSE(forFiles_->forAll);

  job_ = KeepForFiles(question);
  ASSERT_NE(OnlyBox(), nullptr);
  auto* forAll = OnlyBox()->findChild<QCheckBox*>(QStringLiteral("ChkForAll"));
  ASSERT_TRUE(forAll && forAll->isVisible());
  forAll->click();
  Press(*OnlyBox(), Qt::Key_Return);
  EXPECT_EQ(forFiles_->answer, Answer::Cancel);
  EXPECT_TRUE(forFiles_->forAll);
}

TEST_F(PrompterTest, AQuestionHoldsItsWindowAndShowsItsTextAsItIs) {
  console_.show();
  job_ = Keep(Words(QStringLiteral("Delete <b>A & B</b>\n(2 files)"), Buttons::YesNo));
  PromptBox* box = OnlyBox();
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(QApplication::activeModalWidget(), box);
  EXPECT_EQ(box->windowTitle(), QStringLiteral("Kelvo 2007"));
  EXPECT_EQ(box->Text(), QStringLiteral("Delete <b>A & B</b>\n(2 files)"));
}

TEST_F(PrompterTest, CancellingTheJobClosesItsBoxEvenAfterTheClick) {
  job_ = Keep(Words(QStringLiteral("Sure ?"), Buttons::YesNo));
  ASSERT_NE(OnlyBox(), nullptr);
  job_.Cancel();
  EXPECT_TRUE(OpenBoxes<PromptBox>().empty());

  job_ = Keep(Words(QStringLiteral("Sure ?"), Buttons::YesNo));
  OnlyBox()->done(static_cast<int>(Answer::Yes));
  job_.Cancel();
  LetTheLoopTurn();
  EXPECT_FALSE(answer_.has_value());
}

TEST_F(PrompterTest, AQuestionOutlivesTheWindowThatItStoodOn) {
  auto window = std::make_unique<QWidget>();
  MessageBoxPrompter prompter([&window] { return window.get(); });
  window->show();
  Job<Answer> asked = prompter.Ask(Words(QStringLiteral("Sure ?"), Buttons::YesNo));
  window.reset();
  LetTheLoopTurn();
  ASSERT_NE(OnlyBox(), nullptr);
  Press(*OnlyBox(), Qt::Key_Escape);
  EXPECT_FALSE(asked.Running());
}

TEST_F(PrompterTest, AnInputBoxGivesItsLineAndNothingWhenCancelled) {
  job_ = KeepText(QStringLiteral("Please Enter The Path To This Folder"), QStringLiteral("old"));
  PromptBox* box = OnlyBox();
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->windowTitle(), QStringLiteral("Path error"));
  auto* line = box->findChild<QLineEdit*>();
  ASSERT_NE(line, nullptr);
  // The initial text is selected: typing replaces it, and letters are letters here, not buttons.
  Press(*line, Qt::Key_C, QStringLiteral("c"));
  Press(*line, Qt::Key_Return);
  EXPECT_EQ(text_, QStringLiteral("c"));

  job_ = KeepText(QStringLiteral("Again"), QStringLiteral("old"));
  Press(*OnlyBox(), Qt::Key_Escape);
  EXPECT_EQ(text_, QString());
}

TEST_F(PrompterTest, ASecretIsTypedUnseen) {
  job_ = KeepSecret(QStringLiteral("Enter PassWord"));
  ASSERT_NE(OnlyBox(), nullptr);
  auto* line = OnlyBox()->findChild<QLineEdit*>();
  ASSERT_NE(line, nullptr);
  Press(*line, Qt::Key_C, QStringLiteral("c"));
  EXPECT_EQ(line->text(), QStringLiteral("c"));
  EXPECT_FALSE(line->displayText().contains(QLatin1Char('c')));
  Press(*line, Qt::Key_Return);
  EXPECT_EQ(text_, QStringLiteral("c"));
}

TEST_F(PrompterTest, AFolderIsPickedOrNoneWhenThePickerIsClosed) {
  const QTemporaryDir folder;
  job_ = KeepFolder(folder.path());
  ASSERT_EQ(OpenBoxes<QFileDialog>().size(), 1U);
  static_cast<QDialog*>(OpenBoxes<QFileDialog>().front())->done(QDialog::Accepted);
  LetTheLoopTurn();
  ASSERT_TRUE(folder_.has_value());
  EXPECT_EQ(*folder_, folder.path());

  picked_ = false;
  job_ = KeepFolder(folder.path());
  OpenBoxes<QFileDialog>().front()->reject();
  LetTheLoopTurn();
  EXPECT_TRUE(picked_);
  EXPECT_FALSE(folder_.has_value());
}

TEST_F(PrompterTest, TheSameMessageTwiceIsOneBoxUntilItIsClosed) {
  prompter_.Tell(Words(QStringLiteral("The disk is full")));
  prompter_.Tell(Words(QStringLiteral("The disk is full")));
  PromptBox* box = OnlyBox();
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "a message must not hold the desk";
  bool counted = false;
  for (const QLabel* each : box->findChildren<QLabel*>()) counted |= each->text().contains(QLatin1Char('2'));
  EXPECT_TRUE(counted);
  // It comes again in the very moment of the click that closes it.
  box->reject();
  EXPECT_TRUE(OpenBoxes<PromptBox>().empty());
  prompter_.Tell(Words(QStringLiteral("The disk is full")));
  LetTheLoopTurn();
  EXPECT_NE(OnlyBox(), nullptr);
}

TEST_F(PrompterTest, AStormOfMessagesBecomesOneList) {
  for (int error = 0; error < 700; ++error) prompter_.Tell(Words(QStringLiteral("ERROR %1").arg(error)));
  EXPECT_TRUE(OpenBoxes<PromptBox>().empty());
  ASSERT_EQ(OpenBoxes<ToldList>().size(), 1U);
  ToldList* list = OpenBoxes<ToldList>().front();
  EXPECT_EQ(list->Count(), 500) << "bounded, whatever comes";
  EXPECT_TRUE(list->Head().text().contains(QStringLiteral("700"))) << list->Head().text().toStdString();
  list->accept();
  LetTheLoopTurn();
  prompter_.Tell(Words(QStringLiteral("later")));
  EXPECT_NE(OnlyBox(), nullptr);
}

TEST_F(PrompterTest, EnterAndEscapeAnswerTheBoxInFrontWhicheverWindowGetsThem) {
  auto* layout = new QVBoxLayout(&console_);
  auto* line = new QLineEdit(&console_);
  layout->addWidget(line);
  int entered = 0;
  QObject::connect(line, &QLineEdit::returnPressed, [&] { ++entered; });
  int escaped = 0;
  auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), &console_);
  QObject::connect(escape, &QShortcut::activated, [&] { ++escaped; });
  console_.show();
  console_.activateWindow();
  ASSERT_TRUE(testing::TurnUntil([this] { return console_.isActiveWindow(); }));
  line->setFocus();
  const auto key = [](QWidget& window, Qt::Key each) {
    QTest::keyClick(window.windowHandle(), each);
    LetTheLoopTurn();
  };
  for (const Qt::Key each : {Qt::Key_Return, Qt::Key_Escape}) {
    prompter_.Tell(Words(QStringLiteral("The disk is full")));
    ASSERT_NE(OnlyBox(), nullptr);
    // As under a window manager that leaves the keyboard where it was.
    console_.activateWindow();
    LetTheLoopTurn();
    QTest::keyClicks(line, QStringLiteral("o"));
    EXPECT_NE(OnlyBox(), nullptr) << "letters go on into the line";
    key(console_, each);
    EXPECT_TRUE(OpenBoxes<PromptBox>().empty());
  }
  EXPECT_EQ(entered, 0);
  EXPECT_EQ(escaped, 0);
  EXPECT_EQ(line->text(), QStringLiteral("oo"));
  console_.activateWindow();
  LetTheLoopTurn();
  key(console_, Qt::Key_Return);
  key(console_, Qt::Key_Escape);
  EXPECT_EQ(entered, 1);
  EXPECT_EQ(escaped, 1);

  // A question that a message covers is answered behind it.
  job_ = Keep(Words(QStringLiteral("Sure ?"), Buttons::YesNo));
  PromptBox* question = OnlyBox();
  LetTheLoopTurn();
  prompter_.Tell(Words(QStringLiteral("And this came on top")));
  ASSERT_EQ(OpenBoxes<PromptBox>().size(), 2U);
  key(*question, Qt::Key_Return);
  EXPECT_EQ(OnlyBox(), question);
  EXPECT_FALSE(answer_.has_value());
  // A window manager that gives the keyboard to the window behind gets it back to the question.
  console_.activateWindow();
  EXPECT_TRUE(testing::TurnUntil([&] { return question->isActiveWindow(); }));
  key(*question, Qt::Key_Tab);
  key(*question, Qt::Key_Return);
  EXPECT_EQ(answer_, Answer::No) << "the button that has the focus";
}

TEST_F(PrompterTest, ALockedScreenShowsWhatIsAskedAndToldWhenItIsUnlocked) {
  console_.show();
  prompter_.Tell(Words(QStringLiteral("before")));
  prompter_.HoldBack(true);
  prompter_.Tell(Words(QStringLiteral("The disk is full")));
  job_ = Keep(Words(QStringLiteral("Replace the file ?"), Buttons::YesNo));
  LetTheLoopTurn();
  EXPECT_TRUE(OpenBoxes<PromptBox>().empty());
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "or nobody could unlock it";
  Job<> code = KeepSecret(QStringLiteral("Enter Code To Unlock Screen"));
  ASSERT_NE(OnlyBox(), nullptr);
  Press(*OnlyBox(), Qt::Key_Escape);
  Prompt refusal = Words(QStringLiteral("Not Valid !"));
  refusal.onLockedScreen = true;
  Job<> told = Keep(refusal);
  ASSERT_NE(OnlyBox(), nullptr);
  Press(*OnlyBox(), Qt::Key_Escape);
  answer_.reset();

  prompter_.HoldBack(false);
  EXPECT_EQ(OpenBoxes<PromptBox>().size(), 3U);
  for (int box = 0; box < 3; ++box) Press(*OpenBoxes<PromptBox>().front(), Qt::Key_Escape);
  EXPECT_EQ(answer_, Answer::No);
  EXPECT_TRUE(OpenBoxes<PromptBox>().empty());
}

TEST_F(PrompterTest, AMessageCanBeClosedWhileAQuestionIsOpenAndAfterIt) {
  console_.show();
  job_ = Keep(Words(QStringLiteral("Sure ?"), Buttons::YesNo));
  PromptBox* question = OnlyBox();
  prompter_.Tell(Words(QStringLiteral("Sound device lost")));
  ASSERT_EQ(OpenBoxes<PromptBox>().size(), 2U);
  Press(*question, Qt::Key_Y, QStringLiteral("y"));
  EXPECT_EQ(answer_, Answer::Yes);
  ASSERT_NE(OnlyBox(), nullptr) << "the message stays when the question goes";
  Press(*OnlyBox(), Qt::Key_Return);
  EXPECT_TRUE(OpenBoxes<PromptBox>().empty());
}

}  // namespace
}  // namespace kelvo
