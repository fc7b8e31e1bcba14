#include "datamanager/windows/PreviewPanel.h"

#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Fader.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/Tabular.h"
#include "ui/WhyOff.h"

#include <QVBoxLayout>

namespace kelvo {

PreviewPanel::PreviewPanel(DataManager& manager, QWidget* parent)
    : Panel(Group::Bites, tr("LISTEN"), parent),
      manager_(manager),
      words_(new ElidedLabel(this)),
      time_(new QLabel(this)),
      place_(new Fader(Qt::Horizontal, 0, 1, this)),
      play_(AddCommand(*this, {.name = QStringLiteral("CmdPlay"),
                               .fixedName = QStringLiteral("Command18"),
                               .words = tr("Play"),
                               .tooltip = tr("Plays the selected file in the monitor; nothing goes on air"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_M),
                               .icon = Icon::Play,
                               .role = QStringLiteral("go"),
                               .run = [this] { manager_.PlayCurrent(); }})),
      stop_(AddCommand(*this, {.name = QStringLiteral("CmdStop"),
                               .fixedName = QStringLiteral("Command19"),
                               .words = tr("Stop"),
                               .tooltip = tr("Stops it"),
                               .key = QKeySequence(Qt::CTRL | Qt::Key_Period),
                               .icon = Icon::Stop,
                               .run = [this] { manager_.Preview().Stop(); }})) {
  words_->setObjectName(QStringLiteral("LblPlaying"));
  time_->setObjectName(QStringLiteral("LblPlayTime"));
  SetNames(*place_, QStringLiteral("SldPlace"), QStringLiteral("Slider1"));
  place_->setAccessibleName(tr("Place in the file, seconds"));
  place_->setToolTip(tr("The place in the file that is heard"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(words_);
  layout->addLayout(Line({{place_, 1}, time_}));
  layout->addLayout(Line({{play_, 1}, {stop_, 1}}));
  connect(place_, &Fader::MovedByHand, this, [this](int seconds) { manager_.Preview().Seek(seconds); });
  connect(&manager_.Preview(), &PreviewPlayer::Changed, this, [this] { Show(); });
}

void PreviewPanel::Show() {
  const PreviewPlayer& player = manager_.Preview();
  words_->setText(player.Words());
  const bool open = !player.File().isEmpty();
  place_->setRange(0, std::max(static_cast<int>(player.Duration()), 1));
  if (!place_->isSliderDown()) place_->setValue(static_cast<int>(player.Position()));
  time_->setText(open ? MinutesSeconds(player.Position()) + QStringLiteral(" / ") +
                            MinutesSeconds(player.Duration())
                      : MinutesSeconds(0));
  Offer(*place_, WhyOff({{!open, tr("Nothing is open")}}));
  const QString why = player.WhyNot();
  Offer(*play_, WhyOff({{manager_.CurrentRow() < 0, tr("No row is selected")}, {!why.isEmpty(), why}}));
  Offer(*stop_, WhyOff({{!player.Playing(), tr("Nothing plays")}}));
}

}  // namespace kelvo
