#include "encoding/windows/EncoderWindow.h"

#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/DroppedFiles.h"
#include "ui/ElidedLabel.h"
#include "ui/JobStrip.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Theme.h"
#include "ui/WhyOff.h"

#include <QCheckBox>
#include <QDragEnterEvent>
#include <QSplitter>
#include <QVBoxLayout>

namespace kelvo {
namespace {

constexpr double kMegabyte = 1024.0 * 1024.0;

QString SizeText(const EncodeRow& row) {
  return Format000(static_cast<double>(row.bytes) / kMegabyte);
}

}  // namespace

EncoderWindow::EncoderWindow(EventLoop& loop, EncodeList& list)
    : ToolWindow({.name = QStringLiteral("Encoder"),
                  .fixedName = QStringLiteral("frmMp3"),
                  .title = list.Title(),
                  .letters = 116,
                  .lines = 28}),
      list_(list),
      model_(list.Rows(), {{{.head = tr("File"), .letters = 22}, &EncodeRow::name},
                           {{.head = tr("State"), .letters = 10, .rank = 1}, &EncodeRow::StateText},
                           {{.head = tr("Size (MB)"), .letters = 12, .rank = 2, .number = true}, SizeText},
                           {{.head = tr("Path"), .letters = 30, .rank = 3, .path = true}, &EncodeRow::path}}),
      logModel_(list.Log(), {{{.head = tr("What became of it"), .letters = 26},
                              [](const QString& line) { return line; }}}),
      files_({.name = QStringLiteral("LstSources"),
              .fixedName = QStringLiteral("List1"),
              .title = QStringLiteral("Source Folder"),
              .accessible = tr("Files to encode")},
             model_, this),
      log_({.name = QStringLiteral("LstLog"),
            .fixedName = QStringLiteral("List2"),
            .title = QStringLiteral("Encoding Log"),
            .accessible = tr("What became of the files"),
            .many = false},
           logModel_, this),
      lame_(new ElidedLabel(this)),
      presets_(new ElidedLabel(this)),
      plan_(new QLabel(this)),
      deletes_(new QCheckBox(QStringLiteral("&Delete Source Files After Encoding"), this)),
      progress_(new JobStrip(loop, QStringLiteral("PrgEncoding"), tr("Progress"), this)) {
  setAcceptDrops(true);
  logModel_.Dress = [](const QString& line, int /*column*/, int role) {
    return role == Qt::ToolTipRole ? QVariant(line) : QVariant();
  };
  SetNames(*lame_, QStringLiteral("LblLame"), QStringLiteral("Label3"));
  SetNames(*presets_, QStringLiteral("LblPresets"), QStringLiteral("Label4"));
  SetNames(*plan_, QStringLiteral("LblPlan"), QStringLiteral("Label2"));
  plan_->setWordWrap(true);
  SetNames(*deletes_, QStringLiteral("ChkDeleteSources"), QStringLiteral("Check2"));
  deletes_->setToolTip(tr("A wave file is deleted when its result was read back to its end and is as long"));
  connect(deletes_, &QCheckBox::clicked, this, [this](bool on) { list_.SetDeletesSources(on); });
  BuildCommands();
  BuildLayout();
  connect(&files_, &ListPanel::PickedChanged, this, [this] { Show(); });
  connect(&list_, &EncodeList::Changed, this, [this] { Show(); });
  Show();
}

void EncoderWindow::BuildCommands() {
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
  selectAll_ = AddCommand(*this, {.name = QStringLiteral("CmdSelectAll"),
                                  .words = tr("Select All"),
                                  .tooltip = tr("Selects all files, or none"),
                                  .key = QKeySequence(Qt::CTRL | Qt::Key_A),
                                  .icon = Icon::Check,
                                  .run = [this] { files_.PickAllOrNone(); }});
  remove_ = AddCommand(*this, {.name = QStringLiteral("CmdRemove"),
                               .words = tr("&Remove"),
                               .tooltip = tr("Takes the selected files off the list; they stay on the disk"),
                               .key = QKeySequence(Qt::Key_Delete),
                               .icon = Icon::Cut,
                               .run = [this] { list_.Remove(files_.Picked()); }});
  decode_ = AddCommand(*this, {.name = QStringLiteral("CmdDecode"),
                               .words = tr("Decode To &Wave"),
                               .tooltip = tr("Decodes the selected Mp3 files into wave files"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_D),
                               .icon = Icon::Undo,
                               .run = [this] { list_.Decode(files_.Picked()); }});
  start_ = AddCommand(*this, {.name = QStringLiteral("CmdStart"),
                              .fixedName = QStringLiteral("Command1"),
                              .words = QStringLiteral("Start Encoding"),
                              .tooltip = tr("Encodes the wave files of the list; cancels what goes on"),
                              .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                              .icon = Icon::Play,
                              .run = [this] { StartOrCancel(); }});
  close_ = AddCommand(*this, {.name = QStringLiteral("CmdClose"),
                              .fixedName = QStringLiteral("Command2"),
                              .words = QStringLiteral("Close"),
                              .tooltip = tr("Closes the window; what is being encoded goes on"),
                              .keyWords = tr("Escape"),
                              .icon = Icon::Close,
                              .run = [this] { close(); }});
}

void EncoderWindow::BuildLayout() {
  auto* lists = new QSplitter(Qt::Vertical, this);
  lists->setChildrenCollapsible(false);
  lists->addWidget(&files_);
  lists->addWidget(&log_);
  lists->setStretchFactor(0, 3);
  lists->setStretchFactor(1, 2);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(lame_);
  layout->addWidget(presets_);
  layout->addWidget(plan_);
  layout->addWidget(lists, 1);
  layout->addWidget(deletes_);
  layout->addWidget(progress_);
  layout->addLayout(Line({addFile_, addFolder_, selectAll_, remove_, decode_, kRoom, start_, close_}));
}

void EncoderWindow::StartOrCancel() {
  if (list_.Busy()) {
    list_.Cancel();
  } else {
    list_.Start();
  }
}

void EncoderWindow::dragEnterEvent(QDragEnterEvent* event) {
  TakeAsCopy(*event, true);
}

void EncoderWindow::dropEvent(QDropEvent* event) {
  TakeAsCopy(*event, true);
  list_.Add(DroppedFiles(*event->mimeData()));
}

void EncoderWindow::Show() {
  const bool busy = list_.Busy();
  if (list_.Decoding()) {
    setCursor(Qt::BusyCursor);
  } else {
    unsetCursor();
  }
  lame_->setText(QStringLiteral("Encoding With Lame ") + cLameEncoder::LameVersion() +
                 QStringLiteral("    Website ") + beVersion().HomePage);
  QStringList presets = list_.PresetWords();
  plan_->setText(presets.takeLast());
  presets_->setText(presets.join(QStringLiteral("   ")).trimmed());
  files_.SetHint(tr("Add wave files, or drop them here.\nOther windows send theirs with \"Encode To Mp3\"."));
  log_.SetHint(tr("Nothing was encoded yet."));
  deletes_->setChecked(list_.DeletesSources());
  Offer(*deletes_, WhyOff({{busy, tr("The list is at work")}}));
  const OffReason atWork{busy, tr("The list is at work: cancel it first, or wait")};
  Offer(*selectAll_, WhyOff({{model_.rowCount() == 0, tr("The list is empty")}}));
  Offer(*remove_, WhyOff({atWork, {!files_.AnyPicked(), tr("No file is selected")}}));
  Offer(*decode_, list_.WhyNoDecode(files_.Picked()));
  start_->setText(busy ? QStringLiteral("Cancel") : QStringLiteral("Start Encoding"));
  start_->setIcon(ScalableIcon(busy ? Icon::Stop : Icon::Play));
  Theme::SetRole(*start_, busy ? QStringLiteral("stop") : QStringLiteral("primary"));
  Offer(*start_, busy ? QString() : list_.WhyNoStart());
  progress_->Show({.running = busy,
                   .words = list_.Words(),
                   .share = list_.Share(),
                   .percentInWords = list_.Encoding() && !list_.Words().contains(QStringLiteral("   "))});
}

}  // namespace kelvo
