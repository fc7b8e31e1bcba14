#include "database/windows/ScanWindow.h"

#include "database/windows/DriveBox.h"
#include "database/windows/ScanLook.h"
#include "database/windows/ScanNaming.h"
#include "ui/Command.h"
#include "ui/DroppedFiles.h"
#include "ui/ElidedLabel.h"
#include "ui/JobStrip.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/WhyOff.h"

#include <QCheckBox>
#include <QDragEnterEvent>
#include <QVBoxLayout>

namespace kelvo {

ScanWindow::ScanWindow(EventLoop& loop, ScanImport& scan)
    : ToolWindow({.name = QStringLiteral("ImportMusic"),
                  .fixedName = QStringLiteral("frmCDview"),
                  .title = tr("Import Music"),
                  .letters = 132,
                  .lines = 36}),
      scan_(scan),
      model_(scan.Rows().Store(), ScanColumns(scan.Rows())),
      found_(
          {.name = QStringLiteral("LstFound"), .title = tr("FILES FOUND"), .accessible = tr("Files found")},
          model_, this),
      drives_(new DriveBox(scan.Drives(), DriveBox::Words::Full, this)),
      rowWords_(new ElidedLabel(this)),
      delete_(new QCheckBox(tr("&Delete source files after the import"), this)),
      progress_(new JobStrip(loop, QStringLiteral("PrgImport"), tr("Progress"), this)) {
  setAcceptDrops(true);
  model_.Dress = DressScanRow;
  found_.Table().setItemDelegate(new MarkDelegate(this));
  rowWords_->setObjectName(QStringLiteral("LblRow"));
  SetNames(*delete_, QStringLiteral("ChkDeleteSources"), QStringLiteral("Check1"));
  delete_->setToolTip(tr("Each file is deleted when its copy is safe on the disk"));
  BuildCommands();
  BuildLayout();
  Connect();
  Show();
}

void ScanWindow::BuildCommands() {
  browse_ = AddCommand(*this, {.name = QStringLiteral("CmdBrowse"),
                               .words = tr("&Browse..."),
                               .tooltip = tr("Takes any folder to search"),
                               .icon = Icon::Folder,
                               .run = [this] { scan_.Drives().Browse(); }});
  map_ = AddCommand(*this, {.name = QStringLiteral("CmdMapDrive"),
                            .words = QStringLiteral("Map Network Drive"),
                            .tooltip = tr("Brings in a folder of another computer"),
                            .key = QKeySequence(Qt::CTRL | Qt::Key_M),
                            .run = [this] { scan_.Drives().MapNetworkDrive(); }});
  search_ = AddCommand(
      *this, {.name = QStringLiteral("CmdSearch"),
              .fixedName = QStringLiteral("Command11"),
              .words = tr("Search"),
              .tooltip = tr("Lists the Mp3 and Wav files of the drive or folder; stops what goes on"),
              .keyWords = tr("F5 searches"),
              .run = [this] { SearchOrStop(); }});
  selectAll_ = AddCommand(*this, {.name = QStringLiteral("CmdSelectAll"),
                                  .words = tr("Select &All"),
                                  .tooltip = tr("Selects all rows"),
                                  .run = [this] { found_.Table().selectAll(); }});
  clear_ = AddCommand(*this, {.name = QStringLiteral("CmdClear"),
                              .words = tr("&Clear List"),
                              .tooltip = tr("Empties the list; the files stay where they are"),
                              .icon = Icon::Clear,
                              .run = [this] { scan_.ClearList(); }});
  import_ = AddCommand(*this, {.name = QStringLiteral("CmdImport"),
                               .fixedName = QStringLiteral("Command1"),
                               .words = tr("Import"),
                               .tooltip = tr("Copies the selected files to the utilities folder"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                               .icon = Icon::Load,
                               .role = QStringLiteral("primary"),
                               .run = [this] { scan_.Import(found_.Picked()); }});
}

void ScanWindow::BuildLayout() {
  auto* label = new QLabel(tr("Dri&ve"), this);
  label->setBuddy(drives_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Line({label, {drives_, 1}, browse_, map_, search_}));
  layout->addWidget(&found_, 1);
  layout->addWidget(rowWords_);
  layout->addWidget(new ScanNaming(scan_.Rows(), found_, this));
  layout->addLayout(Line({selectAll_, clear_, kRoom, delete_, import_}));
  layout->addWidget(progress_);
}

void ScanWindow::Connect() {
  // What is to be imported a second time has to be picked a second time.
  connect(&scan_, &ScanImport::Began, this, [this] { found_.Table().clearSelection(); });
  connect(delete_, &QCheckBox::clicked, this, [this](bool on) { scan_.SetDeletesSources(on); });
  connect(&found_, &ListPanel::PickedChanged, this, [this] { Show(); });
  connect(&found_, &ListPanel::CurrentChanged, this, [this] { ShowRow(); });
  connect(&model_, &QAbstractItemModel::dataChanged, this, [this] { ShowRow(); });
  connect(drives_, &QComboBox::currentIndexChanged, this, [this] { Show(); });
  connect(&scan_, &ScanImport::Changed, this, [this] { Show(); });
}

void ScanWindow::SearchOrStop() {
  if (scan_.Busy()) {
    scan_.Stop();
  } else {
    Refresh();
  }
}

void ScanWindow::Refresh() {
  if (!scan_.Busy() && !drives_->Path().isEmpty()) scan_.Search({drives_->Path()});
}

void ScanWindow::dragEnterEvent(QDragEnterEvent* event) {
  TakeAsCopy(*event, !scan_.Busy());
}

void ScanWindow::dragMoveEvent(QDragMoveEvent* event) {
  TakeAsCopy(*event, !scan_.Busy());
}

void ScanWindow::dropEvent(QDropEvent* event) {
  TakeAsCopy(*event, !scan_.Busy());
  if (event->isAccepted()) TakeFiles(DroppedFiles(*event->mimeData()));
}

void ScanWindow::TakeFiles(const QStringList& places) {
  if (scan_.Busy()) return;
  for (const QString& place : places) {
    if (!IsMediaName(place)) scan_.Drives().AddFolder(place);
  }
  scan_.Search(places);
}

void ScanWindow::Show() {
  const bool busy = scan_.Busy();
  const int rows = scan_.Rows().Count();
  found_.SetHint(scan_.Searching() ? tr("Looking for music...")
                                   : tr("Choose a drive and press Search,\nor drop folders here."));
  search_->setText(busy ? QStringLiteral("Stop") : tr("Search"));
  search_->setIcon(ScalableIcon(busy ? Icon::Stop : Icon::Search));
  Theme::SetRole(*search_, busy ? QStringLiteral("stop") : QString());
  const OffReason atWork{busy, tr("The list is at work: stop it first, or wait")};
  const OffReason empty{rows == 0, tr("The list is empty")};
  Offer(*search_, WhyOff({{!busy && drives_->Path().isEmpty(), tr("No drive is chosen")}}));
  Offer(*clear_, WhyOff({atWork, empty}));
  Offer(*selectAll_, WhyOff({empty}));
  Offer(*import_, WhyOff({atWork, {!found_.AnyPicked(), tr("No file is selected")}}));
  Offer(*delete_, WhyOff({{scan_.Importing(), tr("The import runs")}}));
  delete_->setChecked(scan_.DeletesSources());
  progress_->Show({.running = busy, .words = scan_.Words(), .share = scan_.Percent() / 100});
  ShowRow();
}

void ScanWindow::ShowRow() {
  const int row = found_.Current();
  const int rows = scan_.Rows().Count();
  if (row < 0 || row >= rows) {
    rowWords_->setText(
        rows == 0 ? QString() : tr("F2, Return or a double click edits title, artist, date and comments."));
    return;
  }
  const ScanRow& shown = scan_.Rows().Row(row);
  const QString words = WordsOf(shown);
  // A name may hold the end of a line; this is one line high.
  const QString path = QString(shown.Text(ScanPathColumn)).replace(QLatin1Char('\n'), QLatin1Char(' '));
  rowWords_->setText(words.isEmpty() ? path : words);
}

}  // namespace kelvo
