// What the editor of group playlists does with one element: in its panel, and on the time line.

#include "playlists/GroupEditor.h"

#include <utility>

namespace kelvo {

// The panel.

QString GroupEditor::WhyNoEdit() const {
  const QString why = WhyNoChange();
  if (!why.isEmpty()) return why;
  if (selected_ < 0) return tr("No element is selected");
  return edit_.At(selected_).code == SessionCode::Repeat ? tr("The repeat mark is set by its box")
                                                         : QString();
}

void GroupEditor::EditSelected() {
  if (!WhyNoEdit().isEmpty()) return;
  if (selected_ == 0) {
    Tell(QStringLiteral("Can't Edit First item"));
    return;
  }
  CancelDrag();
  panel_ = edit_.Begin(selected_);
  Q_EMIT Changed();
}

void GroupEditor::ChangePanel(const std::function<void(StepEdit&)>& change) {
  if (!panel_ || saving_) return;
  change(*panel_);
  Q_EMIT Changed();
}

void GroupEditor::SetSeconds(int seconds) {
  ChangePanel([&](StepEdit& edit) { edit_.SetSeconds(edit, seconds); });
}

void GroupEditor::SetEnd(int seconds) {
  ChangePanel([&](StepEdit& edit) { edit_.SetEnd(edit, seconds); });
}

void GroupEditor::SetFade(TransitionKind fade) {
  ChangePanel([&](StepEdit& edit) { edit_.SetFade(edit, fade); });
}

void GroupEditor::SetSpeed(int speed) {
  ChangePanel([&](StepEdit& edit) { edit_.SetSpeed(edit, speed); });
}

void GroupEditor::SetByHand() {
  if (panel_ && !panel_->byHand && !asking_.Running()) asking_ = AskByHand();
}

Job<> GroupEditor::AskByHand() {
  Prompt question;
  question.text = QStringLiteral(
      "Manually Setting Fade Values May Result in Upredictable playlist execution !\r\n\r\nContinue ?");
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer == Answer::Yes) ChangePanel([](StepEdit& edit) { edit.byHand = true; });
}

void GroupEditor::Apply() {
  if (!panel_ || saving_) return;
  const StepEdit change = *panel_;
  CancelEdit();
  GroupEdit edit = edit_;
  edit.Apply(change);
  Take(std::move(edit));
}

void GroupEditor::CancelEdit() {
  asking_.Cancel();
  panel_.reset();
  Q_EMIT Changed();
}

// The time line.

QString GroupEditor::WhyNoMove(int row) const {
  const QString why = WhyNoChange();
  if (!why.isEmpty()) return why;
  if (row == 0) return QStringLiteral("Can't Edit First item");
  return edit_.KindOf(row) == GroupEdit::Kind::Fixed ? tr("The repeat mark is set by its box") : QString();
}

void GroupEditor::MoveBy(int row, int seconds) {
  if (!WhyNoMove(row).isEmpty()) return;
  CancelDrag();
  GroupEdit edit = edit_;
  edit.Move(row, edit.At(row).seconds + seconds);
  Take(std::move(edit));
}

void GroupEditor::DragTo(int row, int seconds) {
  if (!WhyNoMove(row).isEmpty()) return;
  if (!beforeDrag_) beforeDrag_ = edit_;
  edit_ = *beforeDrag_;
  edit_.Move(row, seconds);
  ShowRows();
  Q_EMIT Changed();
}

void GroupEditor::EndDrag() {
  if (!beforeDrag_) return;
  GroupEdit moved = std::exchange(edit_, *std::exchange(beforeDrag_, std::nullopt));
  Take(std::move(moved));
}

void GroupEditor::CancelDrag() {
  if (!beforeDrag_) return;
  edit_ = *std::exchange(beforeDrag_, std::nullopt);
  ShowRows();
  Q_EMIT Changed();
}

void GroupEditor::MovePlayhead() {
  std::optional<double> now = services_.desk->Playhead();
  if (list_ && list_->left) now.reset();
  if (now == playhead_) return;
  const bool begins = now.has_value() != playhead_.has_value();
  playhead_ = now;
  Q_EMIT PlayheadMoved();
  if (begins) Q_EMIT Changed();
}

}  // namespace kelvo
