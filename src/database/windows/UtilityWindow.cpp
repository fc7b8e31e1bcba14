#include "database/windows/UtilityWindow.h"

#include "ui/CommandButton.h"
#include "ui/ElidedLabel.h"
#include "ui/Fader.h"
#include "ui/ListTable.h"
#include "ui/Panel.h"
#include "ui/ScalableIcon.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QShortcut>
#include <QVBoxLayout>

namespace kelvo {

UtilityWindow::UtilityWindow(const UtilityFolder::Services& services)
    : folder_(services),
      panel_(new Panel(Group::Lists, QStringLiteral("UTILITY FOLDER"), this)),
      list_(new ListTable(panel_)),
      playing_(new ElidedLabel(this)),
      play_(new CommandButton(ScalableIcon(Icon::Play), tr("&Play"), this)),
      stop_(new CommandButton(ScalableIcon(Icon::Stop), tr("&Stop"), this)),
      volume_(new Fader(Qt::Horizontal, 0, UtilityFolder::kMostLoss, this)) {
  setObjectName(QStringLiteral("frmUtil"));
  setWindowTitle(QStringLiteral("Utility Folder"));
  list_->setObjectName(QStringLiteral("ListView1"));
  list_->setAccessibleName(tr("Files in the utility folder"));
  list_->setModel(&folder_);
  list_->setSelectionMode(QAbstractItemView::SingleSelection);
  list_->SetColumns(UtilityFolder::FileName, 26, {{UtilityFolder::Artist, 22}, {UtilityFolder::Path, 46}});
  playing_->setObjectName(QStringLiteral("Label1"));
  play_->setObjectName(QStringLiteral("CmdPlay"));
  play_->setToolTip(tr("Plays the selected file on the main output  (Return)"));
  stop_->setObjectName(QStringLiteral("CmdStop"));
  stop_->setToolTip(tr("Stops the sample  (Ctrl+S)"));
  Theme::SetRole(*play_, QStringLiteral("go"));
  volume_->setObjectName(QStringLiteral("Slider1"));
  volume_->setAccessibleName(tr("Sample volume"));
  volume_->setToolTip(tr("Volume of the sample  (arrow keys; a double click is full)"));
  volume_->setFocusPolicy(Qt::TabFocus);
  volume_->setInvertedAppearance(true);
  volume_->setInvertedControls(true);
  volume_->SetRestValue(0);
  volume_->SetFillFrom(UtilityFolder::kMostLoss);
  volume_->setSingleStep(UtilityFolder::kMostLoss / 60);
  volume_->setPageStep(UtilityFolder::kMostLoss / 10);
  volume_->setMaximumWidth(fontMetrics().averageCharWidth() * 28);
  volume_->setValue(folder_.Volume());

  auto* volumeLabel = new QLabel(this);
  const int icon = fontMetrics().height();
  volumeLabel->setPixmap(ScalableIcon(Icon::Volume).pixmap(icon, icon));
  auto* inside = new QVBoxLayout(panel_);
  inside->setContentsMargins(0, 0, 0, 0);
  inside->addWidget(list_);
  auto* commands = new QHBoxLayout;
  commands->addWidget(play_);
  commands->addWidget(stop_);
  commands->addStretch(1);
  commands->addWidget(volumeLabel);
  commands->addWidget(volume_, 2);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(panel_, 1);
  layout->addWidget(playing_);
  layout->addLayout(commands);

  const auto play = [this] {
    if (list_->currentIndex().isValid()) folder_.Play(list_->currentIndex().row());
  };
  connect(play_, &QPushButton::clicked, this, play);
  connect(list_, &ListTable::RowActivated, this, play);
  connect(stop_, &QPushButton::clicked, this, [this] { folder_.Stop(); });
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_S), this), &QShortcut::activated, stop_,
          &QPushButton::click);
  connect(new QShortcut(QKeySequence(Qt::Key_F5), this), &QShortcut::activated, this,
          [this] { folder_.List(); });
  connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, &QWidget::close);
  connect(volume_, &Fader::MovedByHand, this, [this](int loss) { folder_.SetVolume(loss); });
  connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { Show(); });
  connect(&folder_, &UtilityFolder::Changed, this, [this] { Show(); });
  resize(fontMetrics().averageCharWidth() * 110, fontMetrics().height() * 26);
  place_ = std::make_unique<WindowPlace>(
      *this, services.settings,
      PlaceKeys::Of(services.title, QStringLiteral("Startup"), QStringLiteral("Util")));
  Show();
}

// The list looks at the rows until it goes, and those go with the window's members.
UtilityWindow::~UtilityWindow() {
  list_->setModel(nullptr);
}

void UtilityWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!event->spontaneous()) folder_.List();
}

void UtilityWindow::closeEvent(QCloseEvent* event) {
  folder_.Stop();
  QWidget::closeEvent(event);
}

void UtilityWindow::Show() {
  panel_->SetNote(QString::number(folder_.rowCount()));
  list_->SetEmptyText(folder_.Listing()
                          ? tr("Looking into the utility folder...")
                          : tr("The utility folder is empty.\nBring files in with \"Import Music\" first."));
  playing_->setText(folder_.PlayingWords());
  play_->setEnabled(list_->currentIndex().isValid());
  stop_->setEnabled(folder_.Playing());
}

}  // namespace kelvo
