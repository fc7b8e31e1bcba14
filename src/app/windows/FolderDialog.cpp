#include "app/windows/FolderDialog.h"

#include "ui/Naming.h"
#include "ui/ScalableIcon.h"
#include "ui/Theme.h"

#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

namespace kelvo {

QPushButton* FolderDialog::AddButton(const QString& name, const QString& text, const QString& tooltip) {
  auto* button = new QPushButton(text, this);
  button->setObjectName(name);
  button->setToolTip(tooltip);
  button->setAutoDefault(false);
  return button;
}

FolderDialog::FolderDialog(EventLoop& loop, const QString& start, QWidget* parent)
    : QDialog(parent),
      chooser_(loop, start),
      drives_(new QComboBox(this)),
      free_(new QLabel(this)),
      path_(new QLineEdit(this)),
      folders_(new QListWidget(this)),
      newName_(new QLineEdit(this)),
      trouble_(new QLabel(this)),
      ok_(AddButton(QStringLiteral("OKButton"), tr("&OK"), tr("Takes the folder that is shown above"))) {
  SetNames(*this, QStringLiteral("FolderDialog"), QStringLiteral("Dialog1"));
  setWindowTitle(tr("Choose A Folder"));
  SetNames(*drives_, QStringLiteral("CboDrive"), QStringLiteral("Drive1"));
  drives_->setToolTip(tr("The drives of this computer"));
  path_->setObjectName(QStringLiteral("Path"));
  path_->setToolTip(tr("The folder; another can be typed, then Enter"));
  SetNames(*folders_, QStringLiteral("FolderList"), QStringLiteral("Dir1"));
  folders_->setAccessibleName(tr("Folders"));
  folders_->setToolTip(tr("Enter or a double click opens a folder, Backspace goes up"));
  folders_->installEventFilter(this);
  newName_->setObjectName(QStringLiteral("NewName"));
  newName_->setPlaceholderText(tr("Name of a new folder"));
  newName_->setAccessibleName(tr("Name of a new folder"));
  trouble_->setObjectName(QStringLiteral("LblTrouble"));
  trouble_->setWordWrap(true);
  trouble_->setStyleSheet(QStringLiteral("color: ") + Theme::Palette().amber.name());
  QPushButton* up = AddButton(QStringLiteral("Up"), tr("&Up"), tr("To the folder above"));
  up->setIcon(ScalableIcon(Icon::Up));
  QPushButton* make =
      AddButton(QStringLiteral("NewFolder"), tr("&New Folder"), tr("Makes it in this folder"));
  QPushButton* cancel =
      AddButton(QStringLiteral("CancelButton"), tr("&Cancel"), tr("Changes nothing  (Esc)"));
  Theme::SetRole(*ok_, QStringLiteral("primary"));
  auto* driveLabel = new QLabel(tr("&Drive"), this);
  driveLabel->setBuddy(drives_);
  auto* pathLabel = new QLabel(tr("&Folder"), this);
  pathLabel->setBuddy(path_);

  auto* layout = new QGridLayout(this);
  layout->addWidget(driveLabel, 0, 0);
  layout->addWidget(drives_, 0, 1);
  layout->addWidget(free_, 0, 2);
  layout->addWidget(pathLabel, 1, 0);
  layout->addWidget(path_, 1, 1);
  layout->addWidget(up, 1, 2);
  layout->addWidget(folders_, 2, 0, 1, 3);
  layout->addWidget(newName_, 3, 0, 1, 2);
  layout->addWidget(make, 3, 2);
  layout->addWidget(trouble_, 4, 0, 1, 3);
  auto* ends = new QHBoxLayout;
  ends->addStretch(1);
  ends->addWidget(ok_);
  ends->addWidget(cancel);
  layout->addLayout(ends, 5, 0, 1, 3);
  layout->setColumnStretch(1, 1);
  layout->setRowStretch(2, 1);
  resize(sizeHint().expandedTo(QSize(560, 440)));

  connect(drives_, &QComboBox::activated, this, [this](int row) {
    wanted_ = false;
    chooser_.Open(chooser_.Drives().value(row));
  });
  connect(path_, &QLineEdit::returnPressed, this, [this] { chooser_.Open(path_->text()); });
  connect(up, &QPushButton::clicked, this, [this] { chooser_.Up(); });
  connect(folders_, &QListWidget::itemDoubleClicked, this, [this] { EnterCurrent(); });
  const auto makeFolder = [this] {
    making_ = !newName_->text().trimmed().isEmpty();
    if (!making_) newName_->setFocus();
    chooser_.MakeFolder(newName_->text());
  };
  connect(make, &QPushButton::clicked, this, makeFolder);
  connect(newName_, &QLineEdit::returnPressed, this, makeFolder);
  connect(ok_, &QPushButton::clicked, this, &FolderDialog::accept);
  connect(cancel, &QPushButton::clicked, this, &FolderDialog::reject);
  connect(&chooser_, &FolderChooser::Changed, this, [this] { Show(); });
  Show();
  folders_->setFocus();
}

void FolderDialog::Show() {
  const bool looking = chooser_.Looking();
  trouble_->setText(chooser_.Trouble());
  trouble_->setVisible(!chooser_.Trouble().isEmpty());
  if (looking) return;
  drives_->clear();
  drives_->addItems(chooser_.Drives());
  drives_->setCurrentIndex(chooser_.Drive());
  free_->setText(chooser_.FreeSpace().isEmpty() ? QString() : tr("Free %1").arg(chooser_.FreeSpace()));
  const bool made = std::exchange(making_, false);
  if (!chooser_.Trouble().isEmpty()) {
    wanted_ = false;
    if (made) newName_->selectAll();
    return;
  }
  if (made) newName_->clear();
  path_->setText(chooser_.Folder());
  folders_->clear();
  folders_->addItems(chooser_.Subfolders());
  if (folders_->count() > 0) {
    folders_->setCurrentRow(0);
  } else {
    folders_->addItem(tr("No folder in here. OK takes this one."));
    folders_->item(0)->setFlags(Qt::NoItemFlags);
  }
  if (wanted_) accept();
}

void FolderDialog::EnterCurrent() {
  wanted_ = false;
  if (folders_->currentItem() != nullptr) chooser_.Enter(folders_->currentItem()->text());
}

void FolderDialog::accept() {
  if (path_->text() != chooser_.Folder() && !path_->text().isEmpty()) {
    // What was typed is looked at first.
    wanted_ = true;
    chooser_.Open(path_->text());
    return;
  }
  if (chooser_.Looking()) {
    wanted_ = true;
    return;
  }
  if (OnChosen) OnChosen(chooser_.Folder());
  QDialog::accept();
}

bool FolderDialog::eventFilter(QObject* watched, QEvent* event) {
  if (watched == folders_ && event->type() == QEvent::KeyPress) {
    const int key = static_cast<const QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
      EnterCurrent();
      return true;
    }
    if (key == Qt::Key_Backspace) {
      chooser_.Up();
      return true;
    }
  }
  return QDialog::eventFilter(watched, event);
}

}  // namespace kelvo
