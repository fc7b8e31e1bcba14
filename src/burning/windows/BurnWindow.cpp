#include "burning/windows/BurnWindow.h"

#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/DroppedFiles.h"
#include "ui/ElidedLabel.h"
#include "ui/JobStrip.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Theme.h"
#include "ui/WhyOff.h"

#include <QComboBox>
#include <QDragEnterEvent>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSplitter>
#include <QVBoxLayout>

namespace kelvo {
namespace {

QString SizeText(const BurnRow& row) {
  return Format000(static_cast<double>(row.bytes) / 1048576);
}

}  // namespace

BurnWindow::BurnWindow(EventLoop& loop, BurnList& list)
    : ToolWindow({.name = QStringLiteral("Burner"),
                  .fixedName = QStringLiteral("frmCDBurner"),
                  .title = list.Title(),
                  .letters = 116,
                  .lines = 30}),
      list_(list),
      model_(list.Rows(), {{{.head = tr("File"), .letters = 28}, &BurnRow::NameText},
                           {{.head = tr("Size (MB)"), .letters = 12, .rank = 1, .number = true}, SizeText},
                           {{.head = tr("Path"), .letters = 36, .rank = 2, .path = true}, &BurnRow::path}}),
      logModel_(list.Log(), {{{.head = tr("What became of it"), .letters = 24},
                              [](const QString& line) { return line; }}}),
      files_({.name = QStringLiteral("LstFiles"),
              .title = tr("FILES FOR THE DISC"),
              .accessible = tr("Files for the disc")},
             model_, this),
      log_({.name = QStringLiteral("LstLog"),
            .title = tr("LOG"),
            .accessible = tr("What became of the discs"),
            .many = false},
           logModel_, this),
      kind_(new QComboBox(this)),
      target_(new QComboBox(this)),
      drive_(new ElidedLabel(this)),
      image_(new QLineEdit(this)),
      imageLabel_(new QLabel(tr("&Image"), this)),
      sum_(new QLabel(this)),
      progress_(new JobStrip(loop, QStringLiteral("PrgBurner"), tr("Progress"), this)) {
  setAcceptDrops(true);
  logModel_.Dress = [](const QString& line, int /*column*/, int role) {
    return role == Qt::ToolTipRole ? QVariant(line) : QVariant();
  };
  BuildSources();
  BuildStaging();
  BuildTarget();
  BuildLayout();
  connect(&files_, &ListPanel::PickedChanged, this, [this] { Show(); });
  connect(&files_, &ListPanel::CurrentChanged, this, [this] { Show(); });
  connect(&list_, &BurnList::Changed, this, [this] { Show(); });
  Show();
}

void BurnWindow::BuildSources() {
  addFile_ =
      AddCommand(*this, {.name = QStringLiteral("CmdAddFile"),
                         .words = tr("&Add File..."),
                         .tooltip = tr("Puts a file on the list. Files and folders can be dropped too"),
                         .key = QKeySequence(Qt::CTRL | Qt::Key_O),
                         .icon = Icon::Add,
                         .run = [this] { list_.AddFile(); }});
  addFolder_ =
      AddCommand(*this, {.name = QStringLiteral("CmdAddFolder"),
                         .words = tr("Add &Folder..."),
                         .tooltip = tr("Puts the music of a folder, and of all below it, on the list"),
                         .key = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O),
                         .icon = Icon::Folder,
                         .run = [this] { list_.AddFolder(); }});
  addQueue_ = AddCommand(*this, {.name = QStringLiteral("CmdAddQueue"),
                                 .words = tr("Add &Queue"),
                                 .tooltip = tr("Puts the tracks of the play queue on the list, in its order"),
                                 .key = QKeySequence(Qt::CTRL | Qt::Key_Q),
                                 .icon = Icon::Queue,
                                 .run = [this] { list_.AddQueue(); }});
  addPlaylist_ = AddCommand(*this, {.name = QStringLiteral("CmdAddPlaylist"),
                                    .words = tr("Add &Playlist..."),
                                    .tooltip = tr("Puts the tracks of a playlist on the list, in its order"),
                                    .key = QKeySequence(Qt::CTRL | Qt::Key_P),
                                    .icon = Icon::Queue,
                                    .run = [this] { list_.AddPlaylist(); }});
  up_ = AddCommand(*this, {.name = QStringLiteral("CmdUp"),
                           .words = tr("Up"),
                           .tooltip = tr("The row goes up: an audio CD has the order of the list"),
                           .key = QKeySequence(Qt::ALT | Qt::Key_Up),
                           .icon = Icon::Up,
                           .run = [this] { Move(-1); }});
  down_ = AddCommand(*this, {.name = QStringLiteral("CmdDown"),
                             .words = tr("Down"),
                             .tooltip = tr("The row goes down"),
                             .key = QKeySequence(Qt::ALT | Qt::Key_Down),
                             .icon = Icon::Down,
                             .run = [this] { Move(1); }});
}

void BurnWindow::BuildStaging() {
  selectAll_ = AddCommand(*this, {.name = QStringLiteral("CmdSelectAll"),
                                  .words = tr("Select All"),
                                  .tooltip = tr("Selects all files, or none"),
                                  .key = QKeySequence(Qt::CTRL | Qt::Key_A),
                                  .icon = Icon::Check,
                                  .run = [this] { files_.PickAllOrNone(); }});
  stage_ =
      AddCommand(*this, {.name = QStringLiteral("CmdStage"),
                         .words = tr("&Stage"),
                         .tooltip = tr("Copies the selected files to the staging area: what is there goes "
                                       "onto the data disc"),
                         .key = QKeySequence(Qt::CTRL | Qt::Key_S),
                         .icon = Icon::Load,
                         .run = [this] { list_.Stage(files_.Picked()); }});
  clear_ = AddCommand(*this, {.name = QStringLiteral("CmdClear"),
                              .words = tr("&Clear Staging"),
                              .tooltip = tr("Empties the staging area; the files themselves stay"),
                              .icon = Icon::Clear,
                              .run = [this] { list_.ClearStaging(); }});
  delete_ = AddCommand(*this, {.name = QStringLiteral("CmdDelete"),
                               .words = tr("&Remove"),
                               .tooltip = tr("Takes the selected files off the list and deletes their staged "
                                             "copies; the files themselves stay"),
                               .key = QKeySequence(Qt::Key_Delete),
                               .icon = Icon::Cut,
                               .run = [this] { list_.Delete(files_.Picked()); }});
}

void BurnWindow::BuildTarget() {
  kind_->setObjectName(QStringLiteral("CboKind"));
  kind_->setAccessibleName(tr("Kind of disc"));
  kind_->setToolTip(
      tr("A data disc holds the staged files; an audio CD plays the list, one track right behind "
         "the other"));
  kind_->addItems({tr("Data disc"), tr("Audio CD")});
  connect(kind_, &QComboBox::activated, this,
          [this](int index) { list_.SetKind(static_cast<BurnKind>(index)); });
  target_->setObjectName(QStringLiteral("CboDrive"));
  target_->setAccessibleName(tr("Drive"));
  target_->setToolTip(tr("Where it is written: a drive, or a file that is the image of a disc"));
  target_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  target_->setMinimumContentsLength(22);
  connect(target_, &QComboBox::activated, this, [this](int index) { list_.SetTarget(index); });
  drive_->setObjectName(QStringLiteral("LblDrive"));
  image_->setObjectName(QStringLiteral("TxtImage"));
  image_->setAccessibleName(tr("Disc image"));
  image_->setToolTip(tr("The file that is made; an audio CD has a second one beside it, which ends in .bin"));
  imageLabel_->setBuddy(image_);
  connect(image_, &QLineEdit::textEdited, this, [this](const QString& path) { list_.SetImagePath(path); });
  sum_->setObjectName(QStringLiteral("LblSum"));
  folder_ = AddCommand(*this, {.name = QStringLiteral("CmdFolder"),
                               .words = tr("Fo&lder..."),
                               .tooltip = tr("Takes another folder for the image"),
                               .icon = Icon::Folder,
                               .run = [this] { list_.ChooseFolder(); }});
  burn_ = AddCommand(*this, {.name = QStringLiteral("CmdBurn"),
                             .words = tr("Burn"),
                             .tooltip = tr("Writes the disc and reads it back; stops what goes on"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                             .icon = Icon::Disc,
                             .run = [this] { BurnOrStop(); }});
}

void BurnWindow::BuildLayout() {
  auto* lists = new QSplitter(Qt::Vertical, this);
  lists->setChildrenCollapsible(false);
  lists->addWidget(&files_);
  lists->addWidget(&log_);
  lists->setStretchFactor(0, 3);
  lists->setStretchFactor(1, 1);
  auto* kindLabel = new QLabel(tr("&Kind"), this);
  kindLabel->setBuddy(kind_);
  auto* driveLabel = new QLabel(tr("Dri&ve"), this);
  driveLabel->setBuddy(target_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Line({addFile_, addFolder_, addQueue_, addPlaylist_, kRoom, up_, down_}));
  layout->addWidget(lists, 1);
  layout->addLayout(Line({selectAll_, stage_, clear_, delete_, kRoom, sum_}));
  layout->addLayout(Line({kindLabel, kind_, driveLabel, target_, {drive_, 1}}));
  layout->addLayout(Line({imageLabel_, {image_, 1}, folder_, burn_}));
  layout->addWidget(progress_);
}

void BurnWindow::Move(int step) {
  const int row = files_.Current();
  if (row < 0) return;
  if (step < 0) {
    list_.MoveUp(row);
  } else {
    list_.MoveDown(row);
  }
  files_.Pick({std::clamp(row + step, 0, model_.rowCount() - 1)});
}

void BurnWindow::BurnOrStop() {
  if (list_.AtWork()) {
    list_.Stop();
  } else {
    list_.Burn();
  }
}

void BurnWindow::dragEnterEvent(QDragEnterEvent* event) {
  TakeAsCopy(*event, true);
}

void BurnWindow::dropEvent(QDropEvent* event) {
  TakeAsCopy(*event, true);
  list_.Add(DroppedFiles(*event->mimeData()));
}

void BurnWindow::Show() {
  const bool busy = list_.AtWork();
  const bool audio = list_.Kind() == BurnKind::Audio;
  files_.SetHint(
      tr("Add files, or drop them here.\nA data disc holds what is staged, an audio CD plays the list."));
  log_.SetHint(tr("Nothing was written yet."));
  const OffReason atWork{busy, tr("The burner is at work: stop it first, or wait")};
  const OffReason noFile{!files_.AnyPicked(), tr("No file is selected")};
  const QString whyBusy = WhyOff({atWork});
  Offer(*addFile_, whyBusy);
  Offer(*addFolder_, whyBusy);
  Offer(*addQueue_, WhyOff({atWork, {!list_.WhyNoQueue().isEmpty(), list_.WhyNoQueue()}}));
  Offer(*addPlaylist_, whyBusy);
  const int row = files_.Current();
  const OffReason noRow{row < 0 || row >= model_.rowCount(), tr("No file is selected")};
  Offer(*up_, WhyOff({atWork, noRow, {row == 0, tr("It is the first one")}}));
  Offer(*down_, WhyOff({atWork, noRow, {row == model_.rowCount() - 1, tr("It is the last one")}}));
  Offer(*selectAll_, WhyOff({{model_.rowCount() == 0, tr("The list is empty")}}));
  Offer(*stage_,
        WhyOff({atWork, {audio, tr("An audio CD is made of the list; only a data disc is staged")}}));
  Offer(*clear_, whyBusy);
  Offer(*delete_, WhyOff({atWork, noFile}));
  ShowTarget();
  burn_->setText(busy ? tr("Stop") : tr("Burn"));
  burn_->setIcon(ScalableIcon(busy ? Icon::Stop : Icon::Disc));
  Theme::SetRole(*burn_, busy ? QStringLiteral("stop") : QStringLiteral("primary"));
  Offer(*burn_, busy ? QString() : list_.WhyNoBurn());
  progress_->Show({.running = busy, .words = list_.Words(), .share = list_.Share()});
}

void BurnWindow::ShowTarget() {
  const QString whyBusy = WhyOff({{list_.AtWork(), tr("The burner is at work")}});
  const QString whyNoImage =
      WhyOff({{list_.AtWork(), tr("The burner is at work")}, {!list_.ToImage(), tr("A drive is chosen")}});
  kind_->setCurrentIndex(static_cast<int>(list_.Kind()));
  QStringList shown;
  for (int index = 0; index < target_->count(); ++index) shown.append(target_->itemText(index));
  if (shown != list_.Targets()) {
    const QSignalBlocker quiet(target_);
    target_->clear();
    target_->addItems(list_.Targets());
  }
  target_->setCurrentIndex(list_.Target());
  drive_->setText(list_.DriveWords());
  if (image_->text() != list_.ImagePath()) image_->setText(list_.ImagePath());
  sum_->setText(list_.Sum());
  Offer(*kind_, whyBusy);
  Offer(*target_, whyBusy);
  Offer(*image_, whyNoImage);
  Offer(*folder_, whyNoImage);
}

}  // namespace kelvo
