#include "playlists/windows/GroupEditWindow.h"

#include "database/GroupWords.h"
#include "playlists/windows/GroupStepPanel.h"
#include "playlists/windows/GroupTimeView.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QVBoxLayout>

namespace kelvo {

namespace {

QString Dash(bool there, const QString& text) {
  return there ? text : QStringLiteral("-");
}

RowModel<GroupRow>::Columns ColumnsOf(const GroupEditor& editor) {
  const auto head = [](const char* words, int letters, int rank, bool number = true) {
    return ColumnLook{.head = QString::fromLatin1(words), .letters = letters, .rank = rank, .number = number};
  };
  const auto number = [](int GroupElement::*field) {
    return [field](const GroupRow& row) { return QString::number(row.element.*field); };
  };
  const auto fade = [](const GroupRow& row) { return QString::number(static_cast<int>(row.element.fade)); };
  const auto code = [](const GroupRow& row) { return QString::number(static_cast<int>(row.element.code)); };
  return {
      {head("Ind", 6, 3),
       [](const GroupRow& row) {
         return row.element.code == SessionCode::Repeat ? QStringLiteral("Repeat")
                                                        : QString::number(row.element.index);
       }},
      {head("Time", 12, 1), [](const GroupRow& row) { return ElementTime(row.element.seconds); }},
      {head("Command Details", 30, 0, false), [&editor](const GroupRow& row) { return editor.Details(row); }},
      {head("Track", 7, 7), [](const GroupRow& row) { return QString::number(ToInt(row.element.track)); }},
      {head("Deck", 5, 2), number(&GroupElement::deck)},
      {head("Fade", 6, 4, false), [](const GroupRow& row) { return FadeWord(row.element.fade); }},
      {head("Speed", 6, 5),
       [](const GroupRow& row) { return Dash(row.element.speed >= 0, QString::number(row.element.speed)); }},
      {head("fade(lg)", 8, 9), fade},
      {head("Op(lg)", 7, 10), code},
      {head("Length", 7, 6),
       [](const GroupRow& row) {
         return Dash(row.element.code == SessionCode::Loaded, QString::number(row.element.length));
       }},
      {head("Pos", 8, 8),
       [](const GroupRow& row) {
         return Dash(row.element.position != -1, PositionText(row.element.position));
       }},
      {head("Len(lg)", 8, 11), number(&GroupElement::length)},
      {head("spd(lg)", 8, 12), number(&GroupElement::speed)},
      {head("Spd(lg)", 8, 13), [](const GroupRow& row) { return PositionText(row.element.position); }},
  };
}

}  // namespace

GroupEditWindow::GroupEditWindow(GroupEditor& editor)
    : ToolWindow({.name = QStringLiteral("GroupEdit"),
                  .fixedName = QStringLiteral("Spedit"),
                  .title = QStringLiteral("Group Playlist Edit"),
                  .letters = 128,
                  .lines = 36}),
      editor_(editor),
      model_(editor.Rows(), ColumnsOf(editor)),
      list_({.name = QStringLiteral("LstElements"),
             .fixedName = QStringLiteral("ListView1"),
             .title = tr("ELEMENTS"),
             .accessible = tr("Elements of the group playlist, by their times"),
             .many = false},
            model_, this),
      notice_(new ElidedLabel(this)),
      time_(new GroupTimeView(editor, this)),
      panel_(new GroupStepPanel(editor, this)),
      repeats_(new QCheckBox(QStringLiteral("Repeat Play List"), this)) {
  notice_->setObjectName(QStringLiteral("LblNotice"));
  QPalette amber = notice_->palette();
  amber.setColor(QPalette::WindowText, Theme::Palette().amber);
  notice_->setPalette(amber);
  SetNames(*time_, QStringLiteral("TimeLine"));
  SetNames(*repeats_, QStringLiteral("ChkRepeat"), QStringLiteral("Check1"));
  repeats_->setToolTip(tr("The list begins again at its end"));
  list_.SetHint(tr("No group playlist is in the play queue: load one (Ctrl+O)"));
  BuildCommands();
  BuildLayout();
  connect(&list_, &ListPanel::CurrentChanged, this, [this] {
    if (list_.Current() >= 0) editor_.Select(list_.Current());
  });
  connect(&list_, &ListPanel::RowActivated, this, [this](int row) {
    editor_.Select(row);
    editor_.EditSelected();
  });
  connect(repeats_, &QCheckBox::clicked, this, [this](bool on) {
    editor_.SetRepeats(on);
    Show();
  });
  connect(&editor_, &GroupEditor::Changed, this, [this] { Show(); });
  connect(&editor_, &GroupEditor::SelectedChanged, this, [this] { ShowSelected(); });
  connect(&editor_, &GroupEditor::Saved, this, &QWidget::close);
  Show();
}

void GroupEditWindow::TakeKeys() {
  list_.Table().setFocus();
}

void GroupEditWindow::closeEvent(QCloseEvent* event) {
  if (editor_.Panel() && isEnabled()) {
    // The panel is closed first.
    editor_.CancelEdit();
    event->ignore();
  } else {
    ToolWindow::closeEvent(event);
  }
}

void GroupEditWindow::BuildCommands() {
  edit_ = AddCommand(*this, {.name = QStringLiteral("CmdEdit"),
                             .fixedName = QStringLiteral("Command4"),
                             .words = QStringLiteral("Edit"),
                             .tooltip = tr("Changes the selected element; so does a double click"),
                             .key = QKeySequence(Qt::Key_F2),
                             .icon = Icon::Edit,
                             .run = [this] { editor_.EditSelected(); }});
  undo_ = AddCommand(*this, {.name = QStringLiteral("CmdUndo"),
                             .words = tr("Undo"),
                             .tooltip = tr("Takes the last change back"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_Z),
                             .icon = Icon::Undo,
                             .run = [this] { editor_.Undo(); }});
  bringBack_ = AddCommand(*this, {.name = QStringLiteral("CmdBringBack"),
                                  .words = tr("Bring Back Last Edit"),
                                  .tooltip = tr("Takes the list as it was last saved here, from its links"),
                                  .key = QKeySequence(Qt::CTRL | Qt::Key_B),
                                  .icon = Icon::Load,
                                  .run = [this] { editor_.BringBack(); }});
  save_ = AddCommand(*this, {.name = QStringLiteral("CmdSaveChanges"),
                             .fixedName = QStringLiteral("Command2"),
                             .words = QStringLiteral("Save Changes"),
                             .tooltip = tr("The desk plays the list like this from its next start on"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_S),
                             .icon = Icon::Save,
                             .role = QStringLiteral("primary"),
                             .run = [this] { editor_.Save(); }});
  exit_ = AddCommand(*this, {.name = QStringLiteral("CmdExit"),
                             .fixedName = QStringLiteral("Command1"),
                             .words = QStringLiteral("Exit"),
                             .tooltip = tr("Closes the window; asks when something was changed"),
                             .keyWords = tr("Esc"),
                             .icon = Icon::Close,
                             .run = [this] { close(); }});
}

void GroupEditWindow::BuildLayout() {
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(notice_);
  layout->addWidget(time_, 2);
  layout->addWidget(&list_, 3);
  layout->addWidget(panel_);
  layout->addLayout(Line({edit_, undo_, bringBack_, repeats_, kRoom, save_, exit_}));
}

void GroupEditWindow::ShowSelected() {
  const int row = editor_.Selected();
  if (row >= 0 && row != list_.Current()) list_.Table().setCurrentIndex(model_.index(row, 0));
  Offer(*edit_, editor_.WhyNoEdit());
}

void GroupEditWindow::Show() {
  setWindowTitle(editor_.Title());
  notice_->setText(editor_.Notice());
  notice_->setVisible(!editor_.Notice().isEmpty());
  repeats_->setChecked(editor_.Edit().Repeats());
  Offer(*repeats_, editor_.WhyNoChange());
  Offer(*edit_, editor_.WhyNoEdit());
  Offer(*undo_, editor_.WhyNoUndo());
  Offer(*bringBack_, editor_.WhyNoBringBack());
  Offer(*save_, editor_.WhyNoSave());
  const bool open = editor_.Panel().has_value();
  const bool opens = open && panel_->isHidden();
  panel_->Show();
  list_.Table().setEnabled(!open);
  panel_->setVisible(open);
  if (opens) panel_->TakeKeys();
}

}  // namespace kelvo
