#include "database/windows/UtilityWindow.h"

#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/SampleVolume.h"
#include "ui/WhyOff.h"

#include <QVBoxLayout>

namespace kelvo {

UtilityWindow::UtilityWindow(UtilityFolder& folder)
    : ToolWindow({.name = QStringLiteral("UtilityFolder"),
                  .fixedName = QStringLiteral("frmUtil"),
                  .title = QStringLiteral("Utility Folder")}),
      folder_(folder),
      model_(
          folder.Rows(),
          {{{.head = QStringLiteral("File Name"), .letters = 26}, &WaitingFile::fileName},
           {{.head = QStringLiteral("Artist"), .letters = 22, .rank = 1}, &WaitingFile::artist},
           {{.head = QStringLiteral("Path"), .letters = 46, .rank = 2, .path = true}, &WaitingFile::path}}),
      files_({.name = QStringLiteral("LstWaiting"),
              .title = QStringLiteral("UTILITY FOLDER"),
              .accessible = tr("Files in the utility folder"),
              .many = false,
              .filter = QStringLiteral("TxtFilter"),
              .letters = QStringLiteral("CboLetter")},
             model_, this),
      playing_(new ElidedLabel(this)),
      play_(AddCommand(*this, {.name = QStringLiteral("CmdPlay"),
                               .words = tr("&Play"),
                               .tooltip = tr("Plays the selected file on the main output"),
                               .keyWords = tr("Return"),
                               .icon = Icon::Play,
                               .role = QStringLiteral("go"),
                               .run = [this] { PlayPicked(); }})),
      stop_(AddCommand(*this, {.name = QStringLiteral("CmdStop"),
                               .words = tr("&Stop"),
                               .tooltip = tr("Stops the sample"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_S),
                               .icon = Icon::Stop,
                               .run = [this] { folder_.Stop(); }})),
      volume_(new SampleVolume(UtilityFolder::kMostLoss, folder.Volume(), this)) {
  model_.Dress = [](const WaitingFile& file, int, int role) {
    return role == Qt::ToolTipRole ? QVariant(file.path) : QVariant();
  };
  playing_->setObjectName(QStringLiteral("LblPlaying"));
  SetNames(volume_->Slider(), QStringLiteral("SldVolume"), QStringLiteral("Slider1"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(&files_, 1);
  layout->addWidget(playing_);
  layout->addLayout(Line({play_, stop_, kRoom, {volume_, 2}}));
  connect(&files_, &ListPanel::RowActivated, this, [this] { PlayPicked(); });
  connect(&files_, &ListPanel::PickedChanged, this, [this] { Show(); });
  connect(&volume_->Slider(), &Fader::MovedByHand, this, [this](int loss) { folder_.SetVolume(loss); });
  connect(&folder_, &UtilityFolder::Changed, this, [this] { Show(); });
  Show();
}

void UtilityWindow::PlayPicked() {
  if (files_.AnyPicked()) folder_.Play(files_.Picked().front());
}

void UtilityWindow::Show() {
  files_.SetHint(folder_.Listing()
                     ? tr("Looking into the utility folder...")
                     : tr("The utility folder is empty.\nBring files in with \"Import Music\" first."));
  playing_->setText(folder_.PlayingWords());
  Offer(*play_, WhyOff({{!files_.AnyPicked(), tr("No file is selected")}}));
  Offer(*stop_, WhyOff({{!folder_.Playing(), tr("Nothing plays")}}));
}

}  // namespace kelvo
