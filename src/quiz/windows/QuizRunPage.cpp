#include "quiz/windows/QuizRunPage.h"

#include "ui/Command.h"
#include "ui/Line.h"
#include "ui/WhyOff.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QShortcut>

namespace kelvo {
namespace {

RowModel<QuizTeam>::Columns TeamColumns(QuizScores& scores) {
  return {{{.head = QStringLiteral("Team"), .letters = 12},
           &QuizTeam::name,
           [&scores](int row, const QString& typed) { return scores.Rename(row, typed); }},
          {{.head = QStringLiteral("Points"), .letters = 9, .rank = 1, .number = true},
           [](const QuizTeam& team) { return QString::number(team.points); }}};
}

}  // namespace

QuizRunPage::QuizRunPage(PopQuiz& quiz, QWidget* parent)
    : QWidget(parent),
      quiz_(quiz),
      askedModel_(quiz.Asked(), {{{.head = QStringLiteral("Element"), .letters = 20}, &AskedRow::words}}),
      answerModel_(quiz.Answers(), {{{.head = QStringLiteral("Answer"), .letters = 30}, &AnswerRow::text}}),
      teamModel_(quiz.Scores().Teams(), TeamColumns(quiz.Scores())),
      asked_({.name = QStringLiteral("LstAsked"),
              .fixedName = QStringLiteral("List5"),
              .title = tr("REVISIT A QUESTION"),
              .accessible = tr("Questions so far"),
              .many = false},
             askedModel_, this),
      answers_({.name = QStringLiteral("LstAnswers"),
                .fixedName = QStringLiteral("List7"),
                .title = tr("ANSWERS"),
                .accessible = tr("Answers of the selected question"),
                .many = false},
               answerModel_, this),
      teams_({.name = QStringLiteral("LstTeams"),
              .title = tr("TEAMS"),
              .accessible = tr("Teams and their points"),
              .many = false},
             teamModel_, this) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(AskedLayout(), 4);
  layout->addLayout(AnswersLayout(), 6);
  layout->addLayout(TeamsLayout(), 4);
  teams_.Table().setToolTip(
      tr("The keys 1 to 9 give the team of that row a point, with Ctrl they take one; F2 renames"));
  for (ListPanel* each : {&asked_, &answers_}) each->Table().horizontalHeader()->hide();
  Join();
}

QLayout* QuizRunPage::AskedLayout() {
  showAnswers_ = AddCommand(*this, {.name = QStringLiteral("CmdShowAnswers"),
                                    .fixedName = QStringLiteral("Command9"),
                                    .words = QStringLiteral("Show Answer/s"),
                                    .tooltip = tr("Lists the answers here, not for the audience"),
                                    .key = QKeySequence(Qt::CTRL | Qt::Key_H),
                                    .icon = Icon::Information,
                                    .run = [this] { quiz_.ShowAnswers(); }});
  replay_ = AddCommand(*this, {.name = QStringLiteral("CmdReplay"),
                               .fixedName = QStringLiteral("Command11"),
                               .words = QStringLiteral("Replay Snippet/s"),
                               .tooltip = tr("Plays the snippets of the selected question again"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_P),
                               .icon = Icon::Rewind,
                               .run = [this] { quiz_.Replay(); }});
  auto* layout = new QVBoxLayout;
  layout->addWidget(&asked_, 1);
  layout->addWidget(showAnswers_);
  layout->addWidget(replay_);
  return layout;
}

QPushButton* QuizRunPage::AddHold(std::size_t number, const QString& words, Icon icon, int direction) {
  QPushButton* button =
      AddCommand(*this, {.name = QStringLiteral("CmdHold%1").arg(number),
                         .fixedName = QStringLiteral("Command18(%1)").arg(number),
                         .words = words,
                         .tooltip = tr("While a track plays and this is held down: two seconds at "
                                       "a time"),
                         .icon = icon});
  connect(button, &QPushButton::pressed, this, [this, direction] { quiz_.Players().Hold(direction); });
  connect(button, &QPushButton::released, this, [this] { quiz_.Players().Hold(0); });
  return button;
}

QLayout* QuizRunPage::AnswersLayout() {
  const auto play = [this](const QString& name, const QString& fixedName, const QString& words,
                           const QString& tooltip, PlayPart part) {
    return AddCommand(*this, {.name = name,
                              .fixedName = fixedName,
                              .words = words,
                              .tooltip = tooltip,
                              .icon = Icon::Play,
                              .run = [this, part] { quiz_.PlayAnswer(answers_.Current(), part); }});
  };
  playTrack_ =
      play(QStringLiteral("CmdPlayTrack"), QStringLiteral("Command15"), QStringLiteral("Play Whole Track"),
           tr("Plays the track of the selected answer"), PlayPart::WholeTrack);
  playSnippet_ =
      play(QStringLiteral("CmdPlaySnippet"), QStringLiteral("Command16"), QStringLiteral("Play Snippet"),
           tr("Plays the snippet of the selected answer"), PlayPart::Snippet);
  holds_ = {AddHold(0, tr("Back"), Icon::Rewind, -1), AddHold(1, tr("Forward"), Icon::Forward, 1)};
  auto* buttons = new QGridLayout;
  buttons->addWidget(playTrack_, 0, 0);
  buttons->addWidget(playSnippet_, 0, 1);
  buttons->addWidget(holds_[0], 1, 0);
  buttons->addWidget(holds_[1], 1, 1);
  auto* layout = new QVBoxLayout;
  layout->addWidget(&answers_, 1);
  layout->addLayout(buttons);
  return layout;
}

QLayout* QuizRunPage::TeamsLayout() {
  const auto make = [this](const QString& name, const QString& words, const QString& tooltip, Icon icon,
                           std::function<void()> run) {
    return AddCommand(
        *this, {.name = name, .words = words, .tooltip = tooltip, .icon = icon, .run = std::move(run)});
  };
  QuizScores& scores = quiz_.Scores();
  addTeam_ = make(QStringLiteral("CmdTeamAdd"), tr("Add Team"), tr("Adds a team"), Icon::Add,
                  [&scores] { scores.Add(); });
  removeTeam_ = make(QStringLiteral("CmdTeamRemove"), tr("Remove"), tr("Removes the selected team"),
                     Icon::Cut, [this, &scores] { scores.Remove(teams_.Current()); });
  more_ = make(QStringLiteral("CmdPoint"), tr("Point"), tr("Gives the selected team a point (keys 1 to 9)"),
               Icon::Up, [this, &scores] { scores.Score(teams_.Current(), 1); });
  less_ = make(QStringLiteral("CmdPointBack"), tr("Take Back"),
               tr("Takes a point from the selected team (Ctrl+1 to Ctrl+9)"), Icon::Down,
               [this, &scores] { scores.Score(teams_.Current(), -1); });
  reset_ = make(QStringLiteral("CmdPointsReset"), tr("New Game"), tr("All teams begin again with no point"),
                Icon::Undo, [&scores] { scores.ResetPoints(); });
  auto* buttons = new QGridLayout;
  buttons->addWidget(more_, 0, 0);
  buttons->addWidget(less_, 0, 1);
  buttons->addWidget(addTeam_, 1, 0);
  buttons->addWidget(removeTeam_, 1, 1);
  buttons->addWidget(reset_, 2, 0, 1, 2);
  auto* layout = new QVBoxLayout;
  layout->addWidget(&teams_, 1);
  layout->addLayout(buttons);
  return layout;
}

void QuizRunPage::Join() {
  connect(&asked_, &ListPanel::PickedChanged, this, [this] {
    const std::vector<int> picked = asked_.Picked();
    if (!showing_ && picked.size() == 1) quiz_.Select(picked.front());
  });
  connect(&asked_, &ListPanel::RowActivated, this, [this](int row) { quiz_.Select(row); });
  connect(&answers_, &ListPanel::PickedChanged, this, [this] { ShowCommands(); });
  connect(&answers_, &ListPanel::RowActivated, this,
          [this](int row) { quiz_.PlayAnswer(row, PlayPart::Snippet); });
  connect(&teams_, &ListPanel::PickedChanged, this, [this] { ShowCommands(); });
  connect(&quiz_.Scores(), &QuizScores::Changed, this, [this] { ShowCommands(); });
}

void QuizRunPage::Show() {
  showing_ = true;
  const int selected = quiz_.Selected();
  if (selected < 0) {
    asked_.Pick({});
  } else if (asked_.Picked() != std::vector<int>{selected}) {
    asked_.Table().selectRow(selected);
  }
  showing_ = false;
  asked_.SetHint(tr("Nothing was asked yet."));
  answers_.SetHint(tr("\"Show Answer/s\" lists the answers of the selected question."));
  teams_.SetHint(tr("\"Add Team\" begins a score table."));
  ShowCommands();
}

void QuizRunPage::ShowCommands() {
  const QString locked = quiz_.WhyLocked();
  Offer(asked_.Table(), locked);
  Offer(answers_.Table(), locked);
  Offer(*showAnswers_, quiz_.WhyNoAnswers());
  Offer(*replay_, quiz_.WhyNoReplay());
  const std::vector<int> picked = answers_.Picked();
  const QString whyNoPlay = quiz_.WhyNoPlay(picked.empty() ? -1 : picked.front());
  Offer(*playTrack_, whyNoPlay);
  Offer(*playSnippet_, whyNoPlay);
  // They are held while the track plays.
  const bool byHand = quiz_.Locked() && quiz_.PlaysByHand();
  for (QPushButton* each : holds_) Offer(*each, byHand ? QString() : whyNoPlay);
  const int teams = quiz_.Scores().Teams().Count();
  const OffReason noTeam{teams == 0, tr("There is no team")};
  const OffReason nonePicked{!teams_.AnyPicked(), tr("No team is selected")};
  Offer(*addTeam_, teams < QuizScores::kMostTeams ? QString() : tr("More teams have no key"));
  for (QPushButton* each : {removeTeam_, more_, less_}) Offer(*each, WhyOff({noTeam, nonePicked}));
  Offer(*reset_, WhyOff({noTeam, {!quiz_.Scores().AnyPoints(), tr("No team has a point")}}));
}

}  // namespace kelvo
