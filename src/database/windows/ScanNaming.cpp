#include "database/windows/ScanNaming.h"

#include "database/windows/ScanLook.h"
#include "ui/Command.h"
#include "ui/Line.h"
#include "ui/ListPanel.h"
#include "ui/WhyOff.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace kelvo {

ScanNaming::ScanNaming(ScanRows& rows, ListPanel& found, QWidget* parent)
    : QWidget(parent),
      rows_(rows),
      found_(found),
      separatorWords_(new QLabel(this)),
      insertColumn_(new QComboBox(this)),
      insertText_(AddField(QStringLiteral("TxtInsert"), tr("Text for the selected rows"))),
      existingArtist_(
          AddField(QStringLiteral("TxtExistingArtist"), QStringLiteral("Replace Existing Artist >"))),
      newArtist_(AddField(QStringLiteral("TxtNewArtist"), QStringLiteral("With New Artist >"))) {
  separatorWords_->setObjectName(QStringLiteral("LblSeparator"));
  insertColumn_->setObjectName(QStringLiteral("CboInsertColumn"));
  insertColumn_->setAccessibleName(QStringLiteral("Insert Into Selected Rows In Column"));
  for (const ScanColumn column : {ScanArtistColumn, ScanTitleColumn, ScanDateColumn, ScanCommentsColumn})
    insertColumn_->addItem(HeadOf(column), column);
  BuildCommands();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(Line({{extract_, 1}, {fromFolder_, 1}, {inFront_, 1}, {rename_, 1}}));
  layout->addLayout(InsertLine());
  layout->addLayout(ReplaceLine());
  for (QLineEdit* field : {insertText_, existingArtist_, newArtist_})
    connect(field, &QLineEdit::textChanged, this, [this] { Show(); });
  connect(insertText_, &QLineEdit::returnPressed, insert_, &QPushButton::click);
  connect(newArtist_, &QLineEdit::returnPressed, replace_, &QPushButton::click);
  connect(&rows_, &ScanRows::SeparatorChanged, this, [this] { Show(); });
  connect(&found_, &ListPanel::PickedChanged, this, [this] { Show(); });
  Show();
}

QLineEdit* ScanNaming::AddField(const QString& name, const QString& label) {
  auto* field = new QLineEdit(this);
  field->setObjectName(name);
  field->setAccessibleName(label);
  return field;
}

void ScanNaming::BuildCommands() {
  extract_ = AddCommand(*this, {.name = QStringLiteral("CmdExtractArtist"),
                                .fixedName = QStringLiteral("Command7"),
                                .words = QStringLiteral(">> Extract Artist From File Name >>"),
                                .tooltip = tr("Splits the titles of the selected rows at the separator"),
                                .key = QKeySequence(Qt::CTRL | Qt::Key_E),
                                .run = [this] { rows_.ExtractArtists(found_.Picked()); }});
  fromFolder_ =
      AddCommand(*this, {.name = QStringLiteral("CmdArtistFromFolder"),
                         .fixedName = QStringLiteral("Command6"),
                         .words = QStringLiteral("<< Get Artist From Folder Name <<"),
                         .tooltip = tr("Takes the folder's name as the artist of the selected rows"),
                         .key = QKeySequence(Qt::CTRL | Qt::Key_G),
                         .run = [this] { rows_.TakeArtistsFromFolders(found_.Picked()); }});
  inFront_ = AddCommand(*this, {.name = QStringLiteral("CmdArtistInFront"),
                                .fixedName = QStringLiteral("Command9"),
                                .words = QStringLiteral(" << Rename As Artist - File Name <<"),
                                .tooltip = tr("Puts the artist in front of the titles of the selected rows"),
                                .key = QKeySequence(Qt::CTRL | Qt::Key_R),
                                .run = [this] { rows_.PutArtistsInFront(found_.Picked()); }});
  rename_ = AddCommand(*this, {.name = QStringLiteral("CmdRenameTitle"),
                               .fixedName = QStringLiteral("Command10"),
                               .words = QStringLiteral("Rename Title"),
                               .tooltip = tr("Edits the title of the row"),
                               .keyWords = tr("F2"),
                               .icon = Icon::Edit,
                               .run = [this] { RenameTitle(); }});
  separator_ = AddCommand(*this, {.name = QStringLiteral("CmdSeparator"),
                                  .fixedName = QStringLiteral("Command8"),
                                  .words = tr("Change Se&parator..."),
                                  .tooltip = QStringLiteral("Change The Extraction Separator"),
                                  .run = [this] { rows_.ChangeSeparator(); }});
  insert_ = AddCommand(*this, {.name = QStringLiteral("CmdInsert"),
                               .words = tr("&Insert"),
                               .tooltip = tr("Puts the text into the column of all selected rows"),
                               .run = [this] { Insert(); }});
  replace_ = AddCommand(
      *this, {.name = QStringLiteral("CmdReplace"),
              .words = tr("Rep&lace"),
              .tooltip = tr("Puts the new artist in place of the existing one in all rows"),
              .run = [this] { rows_.ReplaceArtist(existingArtist_->text(), newArtist_->text()); }});
}

QHBoxLayout* ScanNaming::InsertLine() {
  auto* gap = new QWidget(this);
  gap->setFixedWidth(fontMetrics().height());
  auto* label = new QLabel(insertColumn_->accessibleName(), this);
  return Line({separator_, separatorWords_, gap, label, insertColumn_, {insertText_, 1}, insert_});
}

QHBoxLayout* ScanNaming::ReplaceLine() {
  auto* existing = new QLabel(existingArtist_->accessibleName(), this);
  auto* with = new QLabel(newArtist_->accessibleName(), this);
  return Line({existing, {existingArtist_, 1}, with, {newArtist_, 1}, replace_});
}

void ScanNaming::RenameTitle() {
  if (!found_.AnyPicked()) return;
  ListTable& table = found_.Table();
  const QModelIndex title = table.model()->index(found_.Picked().front(), ScanTitleColumn);
  table.setFocus();
  table.scrollTo(title);
  table.setCurrentIndex(title);
  table.edit(title);
}

void ScanNaming::Insert() {
  const auto column = static_cast<ScanColumn>(insertColumn_->currentData().toInt());
  rows_.Insert(found_.Picked(), column, insertText_->text());
}

void ScanNaming::Show() {
  const bool picked = found_.AnyPicked();
  const OffReason nothingPicked{!picked, tr("No file is selected")};
  for (QPushButton* button : {extract_, fromFolder_, inFront_, rename_})
    Offer(*button, WhyOff({nothingPicked}));
  Offer(*insert_, WhyOff({nothingPicked, {insertText_->text().isEmpty(), tr("Nothing is typed beside it")}}));
  const bool bothTyped = !existingArtist_->text().isEmpty() && !newArtist_->text().isEmpty();
  Offer(*replace_, WhyOff({{rows_.Count() == 0, tr("The list is empty")},
                           {!bothTyped, tr("Both artists have to be typed")}}));
  separatorWords_->setText(QStringLiteral("Use New Seperator=") + rows_.Separator());
}

}  // namespace kelvo
