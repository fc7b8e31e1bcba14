#include "app/windows/InstallerWindow.h"

#include "app/windows/FolderDialog.h"
#include "ui/ElidedLabel.h"
#include "ui/Naming.h"
#include "ui/Panel.h"
#include "ui/ProgressStrip.h"
#include "ui/ScalableIcon.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QPushButton>

namespace kelvo {

InstallerWindow::InstallerWindow(EventLoop& loop, Installer& installer)
    : loop_(loop),
      installer_(installer),
      rows_(new Panel(Group::Console, tr("DATABASE FOLDERS"), this)),
      demo_(MakeDemoPart()),
      progress_(new ProgressStrip(this)),
      install_(AddButton(QStringLiteral("CmdInstall"), tr("&Install"),
                         tr("Makes what is missing of these folders  (Alt+I)"), QStringLiteral("Command1"))),
      giveUp_(AddButton(QStringLiteral("CmdGiveUp"), {}, {}, QStringLiteral("Command2"))) {
  SetNames(*this, QStringLiteral("InstallerWindow"), QStringLiteral("DjNewInst"));
  setWindowTitle(installer_.Title());
  auto* head = new QLabel(installer_.Head(), this);
  head->setFont(Theme::Font(1.3, QFont::DemiBold));
  head->setWordWrap(true);
  auto* words = new QLabel(tr("Folders that are there already keep all that is in them. The utility folder "
                              "goes into the program's "
                              "own folder."),
                           this);
  words->setWordWrap(true);
  auto* grid = new QGridLayout(rows_);
  AddRows(*grid);
  Theme::SetRole(*install_, QStringLiteral("primary"));
  SetNames(*progress_, QStringLiteral("InstallProgress"), QStringLiteral("ProgressBar1"));
  progress_->setAccessibleName(tr("Progress of the installation"));

  auto* ends = new QHBoxLayout;
  ends->addStretch(1);
  ends->addWidget(install_);
  ends->addWidget(giveUp_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(14, 12, 14, 12);
  layout->setSpacing(10);
  layout->addWidget(head);
  layout->addWidget(words);
  layout->addWidget(rows_);
  layout->addWidget(demo_);
  layout->addStretch(1);
  layout->addWidget(progress_);
  layout->addLayout(ends);
  demo_->setVisible(installer_.OffersDemo());

  connect(install_, &QPushButton::clicked, this, [this] { installer_.Install(); });
  connect(giveUp_, &QPushButton::clicked, this, [this] { installer_.GiveUp(); });
  connect(&installer_, &Installer::Changed, this, [this] { Show(); });
  Show();
  resize(sizeHint().expandedTo(QSize(860, 0)));
  install_->setFocus();
}

QPushButton* InstallerWindow::AddButton(const QString& name, const QString& text, const QString& tooltip,
                                        const QString& fixedName) {
  auto* button = new QPushButton(text, this);
  SetNames(*button, name, fixedName);
  button->setToolTip(tooltip);
  return button;
}

void InstallerWindow::AddRows(QGridLayout& grid) {
  for (int row = 0; row < Installer::kRows; ++row) {
    const auto place = static_cast<std::size_t>(row);
    auto* name = new QLabel(Installer::RowName(row), rows_);
    SetNames(*name, QStringLiteral("FolderName%1").arg(row), QStringLiteral("Label6_%1").arg(row));
    locations_[place] = new ElidedLabel(rows_);
    SetNames(*locations_[place], QStringLiteral("FolderPlace%1").arg(row),
             QStringLiteral("Label10_%1").arg(row));
    locations_[place]->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    freeSpace_[place] = new QLabel(rows_);
    freeSpace_[place]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QPushButton* choose =
        AddButton(QStringLiteral("CmdFolderPlace%1").arg(row), tr("Place &%1...").arg(row + 1),
                  tr("Chooses another place for this folder  (Alt+%1)").arg(row + 1),
                  QStringLiteral("Command3_%1").arg(row));
    choose->setAccessibleName(tr("Place of %1").arg(name->text()));
    connect(choose, &QPushButton::clicked, this, [this, row] {
      Choose(installer_.Location(row),
             [this, row](const QString& folder) { installer_.SetLocation(row, folder); });
    });
    grid.addWidget(name, row, 0);
    grid.addWidget(locations_[place], row, 1);
    grid.addWidget(freeSpace_[place], row, 2);
    grid.addWidget(choose, row, 3);
  }
  QPushButton* all = AddButton(QStringLiteral("AllPlaces"), tr("&One Place For All..."),
                               tr("Chooses the same place for the seven folders  (Alt+O)"));
  connect(all, &QPushButton::clicked, this, [this] {
    Choose(installer_.Location(0), [this](const QString& folder) { installer_.SetAllLocations(folder); });
  });
  grid.addWidget(all, Installer::kRows, 2, 1, 2);
  grid.setColumnStretch(1, 1);
  grid.setHorizontalSpacing(14);
}

QWidget* InstallerWindow::MakeDemoPart() {
  auto* part = new Panel(Group::Lists, tr("NO MUSIC AT HAND ?"), this);
  auto* words =
      new QLabel(tr("A small library of synthesised music, made here in about a minute, in:"), part);
  words->setWordWrap(true);
  demoFolder_ = new ElidedLabel(part);
  demoFolder_->setObjectName(QStringLiteral("DemoFolder"));
  QPushButton* place =
      AddButton(QStringLiteral("DemoPlace"), tr("&Place..."), tr("Chooses another place for it  (Alt+P)"));
  QPushButton* start = AddButton(QStringLiteral("StartDemo"), tr("&Start With The Demo Library"),
                                 tr("Makes the library, unless it is there, and starts with it  (Alt+S)"));
  auto* grid = new QGridLayout(part);
  grid->addWidget(words, 0, 0, 1, 2);
  grid->addWidget(demoFolder_, 1, 0);
  grid->addWidget(place, 1, 1);
  grid->addWidget(start, 2, 1);
  grid->setColumnStretch(0, 1);
  connect(place, &QPushButton::clicked, this, [this] {
    Choose(installer_.DemoFolder(), [this](const QString& folder) { installer_.SetDemoLocation(folder); });
  });
  connect(start, &QPushButton::clicked, this, [this] { installer_.InstallDemo(); });
  return part;
}

void InstallerWindow::Choose(const QString& start, std::function<void(const QString&)> chosen) {
  auto* dialog = new FolderDialog(loop_, start, this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->OnChosen = std::move(chosen);
  dialog->open();
}

void InstallerWindow::Show() {
  const bool busy = installer_.Busy();
  for (int row = 0; row < Installer::kRows; ++row) {
    const auto place = static_cast<std::size_t>(row);
    locations_[place]->setText(installer_.Location(row));
    locations_[place]->setToolTip(installer_.Location(row));
    const QString room = installer_.FreeSpace(row);
    freeSpace_[place]->setText(room.isEmpty() ? QString() : tr("Free %1").arg(room));
  }
  demoFolder_->setText(installer_.DemoFolder());
  demoFolder_->setToolTip(installer_.DemoFolder());
  const Installer::Progress& progress = installer_.GetProgress();
  progress_->setRange(0, progress.maximum);
  progress_->setValue(progress.value);
  progress_->SetWords(progress.words);
  progress_->SetPercentShown(progress.maximum > 0);
  rows_->setEnabled(!busy);
  demo_->setEnabled(!busy);
  install_->setEnabled(!busy);
  giveUp_->setText(busy ? tr("Stop") : tr("Exit"));
  giveUp_->setToolTip(busy ? tr("Stops the installation  (Esc)")
                           : tr("Ends the program, nothing is saved  (Esc)"));
  // Who stops does not end the program with the next press of the same key.
  if (busy != shownBusy_) (busy ? giveUp_ : install_)->setFocus();
  shownBusy_ = busy;
}

void InstallerWindow::closeEvent(QCloseEvent* event) {
  // The window goes when the installer has ended.
  event->ignore();
  installer_.GiveUp();
}

void InstallerWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    installer_.GiveUp();
    return;
  }
  QWidget::keyPressEvent(event);
}

}  // namespace kelvo
