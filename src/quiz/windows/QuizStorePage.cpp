#include "quiz/windows/QuizStorePage.h"

#include "ui/Command.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/WhyOff.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace kelvo {

QuizStorePage::QuizStorePage(PopQuiz& quiz, QWidget* parent)
    : QWidget(parent),
      quiz_(quiz),
      model_(quiz.Store().Names(), {{{.head = QStringLiteral("Quiz"), .letters = 24}, &QuizName::name}}),
      list_({.name = QStringLiteral("LstQuizes"),
             .fixedName = QStringLiteral("List6"),
             .title = tr("SAVED QUIZES"),
             .accessible = tr("Saved quizes"),
             .many = false},
            model_, this),
      name_(new QLineEdit(this)),
      confirm_(AddCommand(*this, {.name = QStringLiteral("CmdStoreConfirm"),
                                  .fixedName = QStringLiteral("Command13"),
                                  .words = QStringLiteral("Save"),
                                  .icon = Icon::Check,
                                  .role = QStringLiteral("primary"),
                                  .run = [this] { quiz_.Store().Confirm(); }})),
      cancel_(AddCommand(*this, {.name = QStringLiteral("CmdStoreCancel"),
                                 .fixedName = QStringLiteral("Command14"),
                                 .words = QStringLiteral("Cancel"),
                                 .tooltip = tr("Closes the list of saved quizes"),
                                 .icon = Icon::Close,
                                 .run = [this] { quiz_.Store().Close(); }})),
      delete_(AddCommand(*this, {.name = QStringLiteral("CmdStoreDelete"),
                                 .fixedName = QStringLiteral("Command17"),
                                 .words = QStringLiteral("Delete"),
                                 .tooltip = tr("Deletes the named quiz"),
                                 .icon = Icon::Clear,
                                 .run = [this] { quiz_.Store().Delete(); }})) {
  SetNames(*name_, QStringLiteral("TxtQuizName"), QStringLiteral("Text2"));
  name_->setAccessibleName(tr("Name of the quiz"));
  auto* label = new QLabel(tr("Quiz &Name"), this);
  label->setBuddy(name_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(&list_, 1);
  layout->addLayout(Line({label, {name_, 1}, confirm_, delete_, cancel_}));
  list_.SetHint(tr("No quiz is saved."));
  list_.Table().horizontalHeader()->hide();
  connect(name_, &QLineEdit::textEdited, this, [this](const QString& text) { quiz_.Store().SetName(text); });
  connect(name_, &QLineEdit::returnPressed, confirm_, &QPushButton::click);
  const auto takeRow = [this] {
    const std::vector<int> picked = list_.Picked();
    if (quiz_.Store().GetMode() != QuizStore::Mode::Load || picked.size() != 1) return;
    quiz_.Store().SetName(quiz_.Store().Names()[picked.front()].name);
  };
  connect(&list_, &ListPanel::PickedChanged, this, takeRow);
  connect(&list_, &ListPanel::RowActivated, this, [this, takeRow] {
    takeRow();
    if (quiz_.Store().GetMode() == QuizStore::Mode::Load) quiz_.Store().Confirm();
  });
}

void QuizStorePage::Show() {
  const QuizStore& store = quiz_.Store();
  const bool load = store.GetMode() == QuizStore::Mode::Load;
  if (name_->text() != store.Name()) name_->setText(store.Name());
  name_->setReadOnly(load);
  name_->setToolTip(load ? tr("The quiz that is selected") : tr("The name to save under"));
  confirm_->setText(load ? QStringLiteral("Load") : QStringLiteral("Save"));
  const OffReason busy{store.Busy(), tr("The saved quizes are being worked on")};
  Offer(*confirm_, WhyOff({busy}));
  Offer(*delete_, WhyOff({busy,
                          {!load, tr("Open the list to load first")},
                          {store.Name().isEmpty(), tr("No quiz is selected")}}));
  if (shown_ == store.GetMode()) return;
  shown_ = store.GetMode();
  if (shown_ == QuizStore::Mode::Save) name_->setFocus();
  if (shown_ == QuizStore::Mode::Load) list_.Table().setFocus();
}

}  // namespace kelvo
