#include "quiz/windows/QuizWindow.h"

#include "quiz/windows/QuizRunPage.h"
#include "quiz/windows/QuizSetupPage.h"
#include "quiz/windows/QuizSheetPdf.h"
#include "quiz/windows/QuizStorePage.h"
#include "quiz/windows/SnippetBarView.h"
#include "ui/Command.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Panel.h"
#include "ui/SpokenText.h"

#include <QCheckBox>
#include <QLabel>
#include <QShortcut>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

namespace kelvo {

QuizWindow::QuizWindow(PopQuiz& quiz)
    : ToolWindow({.name = QStringLiteral("PopQuiz"),
                  .fixedName = QStringLiteral("frmPopQuiz"),
                  .title = QStringLiteral("Pop Quiz"),
                  .letters = 128,
                  .lines = 38}),
      quiz_(quiz),
      board_(new Panel(Group::Decks, quiz.Heading(), this)),
      text_(new QLabel(board_)),
      bar_(new SnippetBarView(board_)),
      tabs_(new QTabBar(this)),
      pages_(new QStackedWidget(this)),
      setup_(new QuizSetupPage(quiz, this)),
      run_(new QuizRunPage(quiz, this)),
      store_(new QuizStorePage(quiz, this)),
      dip_(new QCheckBox(tr("Turn The Console &Down"), this)) {
  quiz_.DrawSheet = &DrawQuizSheet;
  BuildCommands();
  BuildKeys();
  BuildLayout();
  Join();
  Show();
}

QuizWindow::~QuizWindow() {
  quiz_.DrawSheet = nullptr;
}

void QuizWindow::BuildCommands() {
  format_ =
      AddCommand(*this, {.name = QStringLiteral("CmdFormat"),
                         .fixedName = QStringLiteral("Command4"),
                         .words = QStringLiteral("Format New Quiz"),
                         .tooltip = tr("Looks for the tracks of the included genres and begins a new quiz"),
                         .key = QKeySequence(Qt::CTRL | Qt::Key_N),
                         .icon = Icon::Queue,
                         .run = [this] { quiz_.Format(); }});
  start_ = AddCommand(*this, {.name = QStringLiteral("CmdStartElement"),
                              .fixedName = QStringLiteral("Command5"),
                              .words = quiz_.StartWords(),
                              .tooltip = tr("Runs the next element of the quiz, on air"),
                              .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                              .icon = Icon::Play,
                              .role = QStringLiteral("go"),
                              .run = [this] { quiz_.StartElement(); }});
  stop_ = AddCommand(*this, {.name = QStringLiteral("CmdQuizStop"),
                             .fixedName = QStringLiteral("Command10"),
                             .words = QStringLiteral("STOP"),
                             .tooltip = tr("Ends what sounds; an element that is stopped is offered again"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_Period),
                             .icon = Icon::Stop,
                             .role = QStringLiteral("stop"),
                             .run = [this] { quiz_.Stop(); }});
  reveal_ =
      AddCommand(*this, {.name = QStringLiteral("CmdReveal"),
                         .words = tr("Reveal Answer"),
                         .tooltip = tr("Shows the audience the answer of the selected question, or hides it"),
                         .key = QKeySequence(Qt::CTRL | Qt::Key_R),
                         .icon = Icon::Check,
                         .run = [this] { quiz_.SetRevealed(!quiz_.Revealed()); }});
  showAudience_ =
      AddCommand(*this, {.name = QStringLiteral("CmdAudience"),
                         .words = tr("Audience Window"),
                         .tooltip = tr("Shows or hides the window for the audience; it fills a second "
                                       "screen where there is one"),
                         .key = QKeySequence(Qt::CTRL | Qt::Key_D),
                         .icon = Icon::Disc,
                         .run = [this] {
                           if (audience_.isVisible()) {
                             audience_.hide();
                           } else {
                             audience_.ShowBeside(*this);
                           }
                         }});
  fullScreen_ =
      AddCommand(*this, {.name = QStringLiteral("CmdAudienceFull"),
                         .words = tr("Full Screen"),
                         .tooltip = tr("The audience's window fills its screen, or is a window again"),
                         .key = QKeySequence(Qt::Key_F11),
                         .icon = Icon::Up,
                         .run = [this] { audience_.SetFullScreen(!audience_.isFullScreen()); }});
  save_ = AddCommand(*this, {.name = QStringLiteral("CmdQuizSave"),
                             .fixedName = QStringLiteral("Savequiz"),
                             .words = QStringLiteral("&Save Current Quiz"),
                             .tooltip = tr("Saves the finished quiz"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_S),
                             .icon = Icon::Save,
                             .run = [this] { quiz_.Store().OpenToSave(); }});
  load_ = AddCommand(*this, {.name = QStringLiteral("CmdQuizLoad"),
                             .fixedName = QStringLiteral("Loadquiz"),
                             .words = QStringLiteral("&Load A Saved Quiz"),
                             .tooltip = tr("Opens a saved quiz, to show and to replay"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_O),
                             .icon = Icon::Folder,
                             .run = [this] { quiz_.Store().OpenToLoad(); }});
  sheet_ = AddCommand(
      *this, {.name = QStringLiteral("CmdQuizSheet"),
              .words = tr("&Quiz Sheet..."),
              .tooltip = tr("Writes the questions, and on a page of their own the answers, into a PDF"),
              .key = QKeySequence(Qt::CTRL | Qt::Key_T),
              .icon = Icon::Edit,
              .run = [this] { quiz_.WriteSheet(); }});
  if (quiz_.Unifies()) {
    unify_ = AddCommand(*this, {.name = QStringLiteral("CmdQuizUnify"),
                                .fixedName = QStringLiteral("norm"),
                                .words = QStringLiteral("&Unify Volume levels"),
                                .tooltip = tr("Evens out the loudness of the mixers and introductions"),
                                .icon = Icon::Volume,
                                .run = [this] { quiz_.Unify(); }});
  }
  exit_ = AddCommand(*this, {.name = QStringLiteral("CmdExit"),
                             .fixedName = QStringLiteral("Command2"),
                             .words = QStringLiteral("Exit"),
                             .tooltip = tr("Closes the window"),
                             .keyWords = tr("Esc"),
                             .icon = Icon::Close,
                             .run = [this] { close(); }});
}

void QuizWindow::BuildKeys() {
  for (int team = 0; team < QuizScores::kMostTeams; ++team) {
    const auto key = static_cast<Qt::Key>(Qt::Key_1 + team);
    const auto score = [this, team](int points) {
      return [this, team, points] { quiz_.Scores().Score(team, points); };
    };
    connect(new QShortcut(QKeySequence(key), this), &QShortcut::activated, this, score(1));
    connect(new QShortcut(QKeySequence(Qt::CTRL | key), this), &QShortcut::activated, this, score(-1));
  }
}

void QuizWindow::BuildLayout() {
  SetNames(*board_, QStringLiteral("QuizBoard"), QStringLiteral("Label11"));
  SetNames(*text_, QStringLiteral("LblQuestion"), QStringLiteral("Label13"));
  text_->setWordWrap(true);
  text_->setAlignment(Qt::AlignCenter);
  text_->setFont(Theme::Font(1.35, QFont::DemiBold));
  text_->setMinimumHeight(QFontMetrics(text_->font()).lineSpacing() * 3);
  text_->setTextFormat(Qt::PlainText);
  SetNames(*dip_, QStringLiteral("ChkDip"));
  dip_->setToolTip(tr("While the quiz is heard the decks are as low as behind the operator's voice"));
  tabs_->setObjectName(QStringLiteral("TabQuiz"));
  tabs_->setAccessibleName(tr("What is shown"));
  tabs_->addTab(tr("Set-U&p"));
  tabs_->addTab(tr("&Run And Answers"));
  tabs_->setDrawBase(false);
  for (QWidget* page :
       {static_cast<QWidget*>(setup_), static_cast<QWidget*>(run_), static_cast<QWidget*>(store_)}) {
    pages_->addWidget(page);
  }
  auto* board = new QVBoxLayout(board_);
  board->setContentsMargins(0, 0, 0, 0);
  board->addWidget(text_, 1);
  board->addWidget(bar_);
  auto* foot = Line({save_, load_, sheet_});
  if (unify_ != nullptr) foot->addWidget(unify_);
  foot->addStretch(1);
  foot->addWidget(exit_);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(board_, 2);
  layout->addLayout(Line({format_, {start_, 1}, stop_, reveal_}));
  layout->addLayout(Line({tabs_, kRoom, dip_, showAudience_, fullScreen_}));
  layout->addWidget(pages_, 5);
  layout->addLayout(foot);
}

void QuizWindow::Join() {
  connect(&quiz_, &PopQuiz::Changed, this, [this] { Show(); });
  connect(&quiz_, &PopQuiz::AudienceChanged, this, [this] {
    bar_->Show(quiz_.Players().Bar());
    if (audience_.isVisible()) audience_.SetView(quiz_.Audience());
  });
  connect(&audience_, &AudienceWindow::Changed, this, [this] { ShowAudience(); });
  connect(tabs_, &QTabBar::currentChanged, this, [this] {
    quiz_.Store().Close();
    ShowPage();
  });
  connect(tabs_, &QTabBar::tabBarClicked, this, [this] { quiz_.Store().Close(); });
  connect(dip_, &QCheckBox::clicked, this, [this](bool on) { quiz_.SetDipsConsole(on); });
}

void QuizWindow::TakeKeys() {
  setup_->TakeKeys();
}

void QuizWindow::Enter() {
  quiz_.Enter();
}

void QuizWindow::Leave() {
  quiz_.Plan().Keep();
}

void QuizWindow::Refresh() {
  quiz_.Enter();
}

void QuizWindow::ShowPage() {
  const bool store = quiz_.Store().GetMode() != QuizStore::Mode::Closed;
  QWidget* const page = store                        ? static_cast<QWidget*>(store_)
                        : tabs_->currentIndex() == 0 ? static_cast<QWidget*>(setup_)
                                                     : static_cast<QWidget*>(run_);
  if (pages_->currentWidget() != page) pages_->setCurrentWidget(page);
}

void QuizWindow::Show() {
  // What an element is about to ask, and what a loaded quiz has asked, is on the second page.
  const bool running = !quiz_.Asked().All().empty();
  if (running && !std::exchange(running_, running)) tabs_->setCurrentIndex(1);
  running_ = running;
  ShowPage();
  board_->SetTitle(quiz_.Heading());
  SetSpokenText(*text_, quiz_.Heading(), quiz_.Text());
  if (start_->text() != quiz_.StartWords()) start_->setText(quiz_.StartWords());
  const QString locked = quiz_.WhyLocked();
  Offer(*format_, quiz_.WhyNoFormat());
  Offer(*start_, quiz_.WhyNoStart());
  Offer(*stop_, quiz_.Locked() ? QString() : tr("Nothing is under way"));
  Offer(*reveal_, quiz_.WhyNoReveal());
  reveal_->setText(quiz_.Revealed() ? tr("Hide Answer") : tr("Reveal Answer"));
  Offer(*save_, locked);
  Offer(*load_, locked);
  Offer(*sheet_, quiz_.WhyNoSheet());
  if (unify_ != nullptr) Offer(*unify_, quiz_.WhyNoUnify());
  Offer(*exit_, locked);
  dip_->setChecked(quiz_.DipsConsole());
  setup_->Show();
  run_->Show();
  store_->Show();
  ShowAudience();
}

void QuizWindow::ShowAudience() {
  showAudience_->setCheckable(true);
  showAudience_->setChecked(audience_.isVisible());
  Offer(*fullScreen_, audience_.isVisible() ? QString() : tr("The audience's window is not open"));
  if (audience_.isVisible()) audience_.SetView(quiz_.Audience());
}

}  // namespace kelvo
