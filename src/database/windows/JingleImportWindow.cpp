#include "database/windows/JingleImportWindow.h"

#include "database/windows/DriveBox.h"
#include "database/windows/JingleModel.h"
#include "database/windows/PickedRows.h"
#include "ui/CommandButton.h"
#include "ui/ListTable.h"
#include "ui/Panel.h"
#include "ui/ProgressStrip.h"
#include "ui/ScalableIcon.h"
#include "ui/Tabular.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QShortcut>
#include <QVBoxLayout>

namespace kelvo {
namespace {

constexpr int kPerMille = 1000;

}  // namespace

QPushButton* JingleImportWindow::AddCommand(const QString& name, const QString& text, const QString& tooltip,
                                            const QKeySequence& key) {
  auto* button = new CommandButton(text, this);
  button->setObjectName(name);
  // A shortcut of its own: a button whose words change loses the one that it was given.
  connect(new QShortcut(key, this), &QShortcut::activated, button, &QPushButton::click);
  button->setToolTip(tooltip + QStringLiteral("  (") + key.toString(QKeySequence::NativeText) +
                     QLatin1Char(')'));
  return button;
}

JingleImportWindow::JingleImportWindow(const Services& services)
    : jingles_(JingleImport::Services{services.loop, services.prompter, services.catalogue, services.paths,
                                      services.title}),
      model_(new JingleModel(jingles_, this)),
      panel_(new Panel(Group::Bites, tr("SOUNDS FOUND"), this)),
      list_(new ListTable(panel_)),
      drives_(new DriveBox(jingles_.Drives(), DriveBox::Words::Short, this)),
      browse_(AddCommand(QStringLiteral("CmdBrowse"), tr("Browse..."), tr("Takes any folder to search"),
                         QKeySequence(Qt::CTRL | Qt::Key_O))),
      search_(AddCommand(QStringLiteral("Command6"), QStringLiteral("Search"),
                         tr("Lists the Mp3 and Wav files of the drive or folder; stops what goes on"),
                         QKeySequence(Qt::Key_F5))),
      selectAll_(AddCommand(QStringLiteral("CmdSelect"), tr("Select All"), tr("Selects all files"),
                            QKeySequence(Qt::CTRL | Qt::Key_A))),
      delete_(AddCommand(QStringLiteral("Command5"), tr("Delete Files"),
                         tr("Deletes the selected files from their drive"), QKeySequence(Qt::Key_Delete))),
      import_(AddCommand(QStringLiteral("CmdImport"), tr("Import"),
                         tr("Copies the selected files to the jingles"),
                         QKeySequence(Qt::CTRL | Qt::Key_Return))),
      progress_(new ProgressStrip(this)) {
  setObjectName(QStringLiteral("frmJingEdit"));
  setWindowTitle(tr("Import Jingles"));
  list_->setObjectName(QStringLiteral("Lstjing"));
  list_->setAccessibleName(tr("Sounds found"));
  list_->setModel(model_);
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setItemDelegate(new TabularDelegate(this));
  list_->SetColumns(JingleModel::NameColumn, 24,
                    {{JingleModel::SizeColumn, 12}, {JingleModel::PathColumn, 44}});
  drives_->setObjectName(QStringLiteral("Combo1"));
  drives_->setAccessibleName(tr("Drive to search"));
  progress_->setObjectName(QStringLiteral("ProgressBar1"));
  progress_->setAccessibleName(tr("Progress"));
  progress_->setRange(0, kPerMille);
  browse_->setIcon(ScalableIcon(Icon::Folder));
  selectAll_->setIcon(ScalableIcon(Icon::Check));
  delete_->setIcon(ScalableIcon(Icon::Clear));
  import_->setIcon(ScalableIcon(Icon::Load));
  Theme::SetRole(*import_, QStringLiteral("primary"));
  BuildLayout();
  Connect();
  resize(fontMetrics().averageCharWidth() * 100, fontMetrics().height() * 28);
  place_ = std::make_unique<WindowPlace>(
      *this, services.settings,
      PlaceKeys::Of(services.title, QStringLiteral("Startup"), QStringLiteral("Jingle")));
  Show();
}

// The list looks at the rows until it goes, and those go with the window's members.
JingleImportWindow::~JingleImportWindow() {
  list_->setModel(nullptr);
}

void JingleImportWindow::BuildLayout() {
  auto* label = new QLabel(tr("Dri&ve"), this);
  label->setBuddy(drives_);
  auto* line = new QHBoxLayout;
  line->addWidget(label);
  line->addWidget(drives_, 1);
  line->addWidget(browse_);
  line->addWidget(search_);
  auto* inside = new QVBoxLayout(panel_);
  inside->setContentsMargins(0, 0, 0, 0);
  inside->addWidget(list_);
  auto* commands = new QHBoxLayout;
  commands->addWidget(selectAll_);
  commands->addWidget(delete_);
  commands->addStretch(1);
  commands->addWidget(import_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(line);
  layout->addWidget(panel_, 1);
  layout->addWidget(progress_);
  layout->addLayout(commands);
}

void JingleImportWindow::Connect() {
  connect(browse_, &QPushButton::clicked, this, [this] { jingles_.Drives().Browse(); });
  connect(search_, &QPushButton::clicked, this, [this] { Command6_Click(); });
  connect(selectAll_, &QPushButton::clicked, list_, &QAbstractItemView::selectAll);
  connect(delete_, &QPushButton::clicked, this, [this] { jingles_.Delete(PickedRows(*list_)); });
  connect(import_, &QPushButton::clicked, this, [this] { jingles_.Import(PickedRows(*list_)); });
  connect(drives_, &QComboBox::currentIndexChanged, this, [this] { Show(); });
  connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { Show(); });
  connect(&jingles_, &JingleImport::Changed, this, [this] { Show(); });
  connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, &QWidget::close);
}

void JingleImportWindow::Command6_Click() {
  if (jingles_.Busy()) {
    jingles_.Stop();
  } else {
    jingles_.Search(drives_->Path());
  }
}

void JingleImportWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!event->spontaneous()) jingles_.Drives().Refresh();
}

void JingleImportWindow::Show() {
  const bool busy = jingles_.Busy();
  const bool picked = list_->selectionModel()->hasSelection();
  panel_->SetNote(QString::number(jingles_.Count()));
  list_->SetEmptyText(jingles_.Searching() ? tr("Looking for sounds...")
                                           : tr("Choose a drive and press Search."));
  search_->setText(busy ? QStringLiteral("STOP") : QStringLiteral("Search"));
  search_->setIcon(ScalableIcon(busy ? Icon::Stop : Icon::Search));
  Theme::SetRole(*search_, busy ? QStringLiteral("stop") : QString());
  search_->setEnabled(busy || !drives_->Path().isEmpty());
  selectAll_->setEnabled(jingles_.Count() > 0);
  delete_->setEnabled(!busy && picked);
  import_->setEnabled(!busy && picked);
  progress_->SetWords(jingles_.Words());
  progress_->SetPercentShown(busy && !jingles_.Searching());
  progress_->setValue(busy ? static_cast<int>(jingles_.Percent() * kPerMille / 100) : 0);
}

}  // namespace kelvo
