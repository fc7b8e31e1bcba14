#include "info/windows/ProfileWindow.h"

#include "info/windows/NoteEdit.h"
#include "info/windows/PictureView.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/SpokenText.h"
#include "ui/Theme.h"
#include "ui/WhyOff.h"

#include <QLabel>
#include <QVBoxLayout>

namespace kelvo {

ProfileWindow::ProfileWindow(EventLoop& loop, Profile& profile)
    : ToolWindow({.name = profile.Words().id,
                  .fixedName = profile.Words().fixedName,
                  .title = profile.Words().title,
                  .letters = profile.Words().picture ? 108 : 76,
                  .lines = 26}),
      profile_(profile),
      nameTitle_(new QLabel(profile.Words().nameTitle, this)),
      name_(new ElidedLabel(this)),
      note_(new ElidedLabel(this)),
      text_(new NoteEdit(InfoPage::kMostLetters, this)),
      picture_(new PictureView(loop, this)) {
  BuildCommands();
  BuildFields();
  BuildLayout();
  connect(text_, &NoteEdit::Edited, this, [this] { profile_.Page().SetText(text_->toPlainText()); });
  connect(text_, &NoteEdit::TooLong, this, [this] { profile_.Page().RefuseLength(); });
  connect(text_, &NoteEdit::FilesDropped, this,
          [this](const QStringList& files) { profile_.DropText(files); });
  connect(picture_, &PictureView::PictureWanted, this, [this] { profile_.PickPicture(); });
  connect(picture_, &PictureView::FilesDropped, this,
          [this](const QStringList& files) { profile_.DropPicture(files); });
  connect(&profile_, &Profile::Changed, this, [this] { Show(); });
  connect(&profile_, &Profile::Done, this, &QWidget::close);
  connect(&profile_.Page(), &InfoPage::TextReplaced, this,
          [this] { text_->ShowText(profile_.Page().Text()); });
  Show();
}

void ProfileWindow::BuildCommands() {
  addPicture_ = AddCommand(*this, {.name = QStringLiteral("CmdAddPicture"),
                                   .words = tr("&Picture..."),
                                   .tooltip = tr("Adds a picture, or replaces it; one can be dropped too"),
                                   .key = QKeySequence(Qt::CTRL | Qt::Key_G),
                                   .icon = Icon::Folder,
                                   .run = [this] { profile_.PickPicture(); }});
  removePicture_ = AddCommand(*this, {.name = QStringLiteral("CmdRemovePicture"),
                                      .words = tr("Remo&ve Picture"),
                                      .tooltip = tr("Takes the picture away"),
                                      .icon = Icon::Clear,
                                      .run = [this] { profile_.RemovePicture(); }});
  delete_ = AddCommand(*this, {.name = QStringLiteral("CmdDeleteProfile"),
                               .fixedName = QStringLiteral("Command2"),
                               .words = QStringLiteral("Delete"),
                               .tooltip = tr("Deletes the text and its picture"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_Delete),
                               .icon = Icon::Clear,
                               .run = [this] { profile_.Delete(); }});
  save_ = AddCommand(*this, {.name = QStringLiteral("CmdSaveAndClose"),
                             .fixedName = QStringLiteral("Command3"),
                             .words = QStringLiteral("Save And Close"),
                             .tooltip = tr("Saves the text, of at most %1 lines").arg(Profile::kMostLines),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_S),
                             .icon = Icon::Save,
                             .role = QStringLiteral("primary"),
                             .run = [this] { profile_.SaveAndClose(); }});
  close_ = AddCommand(*this, {.name = QStringLiteral("CmdClose"),
                              .fixedName = QStringLiteral("Command1"),
                              .words = QStringLiteral("Close"),
                              .tooltip = tr("Closes the window; asks when the text was changed"),
                              .keyWords = tr("Esc"),
                              .icon = Icon::Close,
                              .run = [this] { close(); }});
}

void ProfileWindow::BuildFields() {
  name_->setObjectName(QStringLiteral("LblProfileName"));
  name_->setTextFormat(Qt::PlainText);
  name_->setFont(Theme::Font(1.3, QFont::Bold));
  note_->setObjectName(QStringLiteral("LblProfileNote"));
  QPalette amber = note_->palette();
  amber.setColor(QPalette::WindowText, Theme::Palette().amber);
  note_->setPalette(amber);
  SetNames(*text_, QStringLiteral("TxtProfile"), QStringLiteral("Text1"));
  text_->setAccessibleName(tr("Text of the profile"));
  SetNames(*picture_, QStringLiteral("ProfilePicture"), QStringLiteral("Image1"));
  picture_->setAccessibleName(tr("Picture of the profile"));
  picture_->SetHint(tr("Please Double Click Or Drag And Drop To Add A Graphic"));
}

void ProfileWindow::BuildLayout() {
  auto* columns = new QHBoxLayout;
  columns->addWidget(text_, 5);
  if (profile_.Words().picture) {
    auto* looking = new QVBoxLayout;
    looking->addWidget(picture_, 1);
    looking->addLayout(Line({addPicture_, removePicture_, kRoom}));
    columns->addLayout(looking, 3);
  } else {
    for (QWidget* each : {static_cast<QWidget*>(picture_), static_cast<QWidget*>(addPicture_),
                          static_cast<QWidget*>(removePicture_)})
      each->hide();
  }
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Line({nameTitle_, {name_, 1}}));
  layout->addLayout(columns, 1);
  layout->addWidget(note_);
  layout->addLayout(Line({delete_, kRoom, save_, close_}));
}

void ProfileWindow::TakeKeys() {
  text_->setFocus();
}

void ProfileWindow::TakeFiles(const QStringList& names) {
  if (!names.isEmpty()) profile_.Open(names.first());
}

void ProfileWindow::Show() {
  const ProfileWords& words = profile_.Words();
  const InfoPage& page = profile_.Page();
  const bool reads = profile_.ReadOnly();
  setWindowTitle(words.title + (reads ? QStringLiteral(" (Read Only)") : words.dropNote));
  SetSpokenText(*name_, words.nameTitle, profile_.Name());
  name_->setToolTip(profile_.Name());
  SetSpokenText(*note_, tr("Note"),
                profile_.Gone()
                    ? tr("This name is gone from the database; a save keeps the text all the same")
                    : QString());
  const bool edits = page.Editable() && !reads;
  text_->setReadOnly(!edits);
  picture_->SetTakes(edits && words.picture);
  picture_->SetHint(edits ? tr("Please Double Click Or Drag And Drop To Add A Graphic") : tr("No picture"));
  picture_->ShowPicture(page.Picture(), page.PictureTurn());
  for (QPushButton* each : {delete_, save_}) each->setVisible(!reads);
  for (QPushButton* each : {addPicture_, removePicture_}) each->setVisible(!reads && words.picture);
  const OffReason atWork{profile_.AtWork(), tr("It is at work")};
  const OffReason none{!page.Editable(), tr("No name is open")};
  Offer(*addPicture_, WhyOff({atWork, none}));
  Offer(*removePicture_, WhyOff({atWork, none, {page.Picture().isEmpty(), tr("There is no picture")}}));
  Offer(*delete_, WhyOff({atWork, none, {!page.Found(), tr("There is no text yet")}}));
  Offer(*save_, WhyOff({atWork, none}));
}

}  // namespace kelvo
