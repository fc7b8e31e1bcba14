#include "database/windows/JingleImportWindow.h"

#include "database/windows/DriveBox.h"
#include "database/windows/FileLook.h"
#include "ui/Command.h"
#include "ui/JobStrip.h"
#include "ui/Line.h"
#include "ui/WhyOff.h"

#include <QLabel>
#include <QVBoxLayout>

namespace kelvo {

JingleImportWindow::JingleImportWindow(EventLoop& loop, JingleImport& jingles)
    : ToolWindow({.name = QStringLiteral("ImportJingles"),
                  .fixedName = QStringLiteral("frmJingEdit"),
                  .title = tr("Import Jingles"),
                  .letters = 100,
                  .lines = 28}),
      jingles_(jingles),
      model_(jingles.Rows(),
             {{{.head = tr("File"), .letters = 24}, &JingleRow::name},
              {{.head = tr("Size (MB)"), .letters = 12, .rank = 1, .number = true}, &JingleRow::SizeText},
              {{.head = tr("Path"), .letters = 44, .rank = 2, .path = true}, &JingleRow::path}}),
      sounds_({.name = QStringLiteral("LstSounds"),
               .fixedName = QStringLiteral("Lstjing"),
               .group = Group::Bites,
               .title = tr("SOUNDS FOUND"),
               .accessible = tr("Sounds found")},
              model_, this),
      drives_(new DriveBox(jingles.Drives(), DriveBox::Words::Short, this)),
      progress_(new JobStrip(loop, QStringLiteral("PrgJingles"), tr("Progress"), this)) {
  model_.Dress = [](const JingleRow& row, int column, int role) {
    return DressFile(row.path, row.trouble, column == 0, role);
  };
  BuildCommands();
  BuildLayout();
  connect(drives_, &QComboBox::currentIndexChanged, this, [this] { Show(); });
  connect(&sounds_, &ListPanel::PickedChanged, this, [this] { Show(); });
  connect(&jingles_, &JingleImport::Changed, this, [this] { Show(); });
  Show();
}

void JingleImportWindow::BuildCommands() {
  browse_ = AddCommand(*this, {.name = QStringLiteral("CmdBrowse"),
                               .words = tr("Browse..."),
                               .tooltip = tr("Takes any folder to search"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_O),
                               .icon = Icon::Folder,
                               .run = [this] { jingles_.Drives().Browse(); }});
  search_ = AddCommand(
      *this, {.name = QStringLiteral("CmdSearch"),
              .fixedName = QStringLiteral("Command6"),
              .words = QStringLiteral("Search"),
              .tooltip = tr("Lists the Mp3 and Wav files of the drive or folder; stops what goes on"),
              .keyWords = tr("F5 searches"),
              .run = [this] { SearchOrStop(); }});
  selectAll_ = AddCommand(*this, {.name = QStringLiteral("CmdSelectAll"),
                                  .words = tr("Select All"),
                                  .tooltip = tr("Selects all files"),
                                  .key = QKeySequence(Qt::CTRL | Qt::Key_A),
                                  .icon = Icon::Check,
                                  .run = [this] { sounds_.Table().selectAll(); }});
  delete_ = AddCommand(*this, {.name = QStringLiteral("CmdDelete"),
                               .fixedName = QStringLiteral("Command5"),
                               .words = tr("Delete Files"),
                               .tooltip = tr("Deletes the selected files from their drive"),
                               .key = QKeySequence(Qt::Key_Delete),
                               .icon = Icon::Clear,
                               .run = [this] { jingles_.Delete(sounds_.Picked()); }});
  encode_ = AddCommand(*this, {.name = QStringLiteral("CmdEncode"),
                               .words = tr("&Encode To Mp3"),
                               .tooltip = tr("Encodes the selected wave files, each beside itself"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_M),
                               .icon = Icon::Volume,
                               .run = [this] { Encode(); }});
  import_ = AddCommand(*this, {.name = QStringLiteral("CmdImport"),
                               .words = tr("Import"),
                               .tooltip = tr("Copies the selected files to the jingles"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                               .icon = Icon::Load,
                               .role = QStringLiteral("primary"),
                               .run = [this] { jingles_.Import(sounds_.Picked()); }});
}

void JingleImportWindow::BuildLayout() {
  auto* label = new QLabel(tr("Dri&ve"), this);
  label->setBuddy(drives_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Line({label, {drives_, 1}, browse_, search_}));
  layout->addWidget(&sounds_, 1);
  layout->addWidget(progress_);
  layout->addLayout(Line({selectAll_, delete_, encode_, kRoom, import_}));
}

void JingleImportWindow::SetEncode(std::function<void(const QStringList& files)> encode) {
  encodeFiles_ = std::move(encode);
  Show();
}

void JingleImportWindow::Encode() {
  QStringList files;
  for (const int row : sounds_.Picked()) files.append(jingles_.Rows()[row].path);
  encodeFiles_(files);
}

void JingleImportWindow::SearchOrStop() {
  if (jingles_.Busy()) {
    jingles_.Stop();
  } else {
    Refresh();
  }
}

void JingleImportWindow::Refresh() {
  if (!jingles_.Busy()) jingles_.Search(drives_->Path());
}

void JingleImportWindow::Show() {
  const bool busy = jingles_.Busy();
  sounds_.SetHint(jingles_.Searching() ? tr("Looking for sounds...")
                                       : tr("Choose a drive and press Search."));
  search_->setText(busy ? QStringLiteral("STOP") : QStringLiteral("Search"));
  search_->setIcon(ScalableIcon(busy ? Icon::Stop : Icon::Search));
  Theme::SetRole(*search_, busy ? QStringLiteral("stop") : QString());
  Offer(*search_, WhyOff({{!busy && drives_->Path().isEmpty(), tr("No drive is chosen")}}));
  Offer(*selectAll_, WhyOff({{model_.rowCount() == 0, tr("The list is empty")}}));
  const QString whyNotPicked = WhyOff({{busy, tr("The list is at work: stop it first, or wait")},
                                       {!sounds_.AnyPicked(), tr("No sound is selected")}});
  Offer(*delete_, whyNotPicked);
  encode_->setVisible(static_cast<bool>(encodeFiles_));
  Offer(*encode_, whyNotPicked);
  Offer(*import_, whyNotPicked);
  progress_->Show({.running = busy,
                   .words = jingles_.Words(),
                   .share = jingles_.Percent() / 100,
                   .percentInWords = jingles_.Searching()});
}

}  // namespace kelvo
