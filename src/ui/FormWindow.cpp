#include "ui/FormWindow.h"

#include "ui/Command.h"
#include "ui/Line.h"

#include <QVBoxLayout>

namespace kelvo {

FormWindow::FormWindow(const Look& look, Prompter& prompter)
    : ToolWindow(look), prompter_(prompter), form_(new Form(this)) {
  ok_ = AddCommand(*this, {.name = QStringLiteral("CmdOk"),
                           .words = tr("OK"),
                           .tooltip = tr("Saves and closes"),
                           .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                           .role = QStringLiteral("primary"),
                           .run = [this] {
                             if (Keep()) close();
                           }});
  QPushButton* cancel = AddCommand(*this, {.name = QStringLiteral("CmdCancel"),
                                           .words = tr("Cancel"),
                                           .tooltip = tr("Closes without saving"),
                                           .run = [this] {
                                             form_->Restore();
                                             close();
                                           }});
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(form_, 1);
  layout->addLayout(Line({kRoom, ok_, cancel}));
  connect(form_, &Form::Changed, this, [this] { ShowState(); });
  connect(form_, &Form::Submitted, ok_, &QPushButton::click);
}

void FormWindow::Enter() {
  if (QWidget* first = form_->First()) first->setFocus();
}

void FormWindow::ShowState() {
  Check();
  ok_->setEnabled(form_->Fits());
}

bool FormWindow::Keep() {
  if (!form_->Fits() || !Save()) return false;
  form_->Settle();
  return true;
}

Job<bool> FormWindow::MayClose() {
  if (!form_->Dirty()) co_return true;
  Prompt question;
  question.text = tr("Save Changes ?");
  question.buttons = Buttons::YesNoCancel;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await prompter_.Ask(question);
  if (answer == Answer::No) form_->Restore();
  co_return answer == Answer::No || (answer == Answer::Yes && Keep());
}

}  // namespace kelvo
