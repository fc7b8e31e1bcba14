#include "console/windows/SpeakPanel.h"

#include "ui/CommandButton.h"
#include "ui/Fader.h"
#include "ui/KeyList.h"
#include "ui/Naming.h"
#include "ui/ScalableIcon.h"

#include <QGridLayout>
#include <QLabel>

namespace kelvo {

SpeakPanel::SpeakPanel(PressToSpeak& speak, QWidget* parent)
    : Panel(Group::Console, QStringLiteral("AUTO FADE"), parent),
      speak_(speak),
      talk_(new CommandButton(ScalableIcon(Icon::Microphone), tr("PRESS TO SPEAK"), this)),
      depth_(new Fader(Qt::Horizontal, 0, 2000, this)),
      depthWords_(new QLabel(this)),
      speed_(new Fader(Qt::Horizontal, 1, 10, this)),
      speedWords_(new QLabel(this)) {
  setObjectName(QStringLiteral("AutoFade"));
  SetNames(*talk_, QStringLiteral("CmdPressToSpeak"), QStringLiteral("Command10"));
  talk_->setToolTip(tr("Both decks step back while it is held"));
  TellKey(*talk_, tr("space bar"));
  talk_->setFocusPolicy(Qt::NoFocus);
  Theme::SetRole(*talk_, QStringLiteral("primary"));
  SetNames(*depth_, QStringLiteral("SldSpeakDepth"), QStringLiteral("SldAfade"));
  depth_->setAccessibleName(QStringLiteral("Auto Fade Depth Over Decks 1 and 2 "));
  depth_->setToolTip(QStringLiteral("Auto Fade Depth Over Decks 1 and 2 "));
  depth_->setInvertedAppearance(true);
  depth_->setPageStep(100);
  depth_->setSingleStep(25);
  SetNames(*speed_, QStringLiteral("SldSpeakSpeed"), QStringLiteral("SldAfSpd"));
  speed_->setAccessibleName(QStringLiteral("Auto Fade Attack / Decay"));
  speed_->setToolTip(QStringLiteral("Auto Fade Attack / Decay"));
  SetNames(*depthWords_, QStringLiteral("LblSpeakDepth"), QStringLiteral("Label11_4"));
  SetNames(*speedWords_, QStringLiteral("LblSpeakSpeed"), QStringLiteral("Label11_6"));
  for (QLabel* words : {depthWords_, speedWords_}) {
    words->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("-20.00 dB")));
    words->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  }
  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(talk_, 0, 0, 2, 1);
  layout->addWidget(new QLabel(tr("Depth"), this), 0, 1);
  layout->addWidget(depth_, 0, 2);
  layout->addWidget(depthWords_, 0, 3);
  layout->addWidget(new QLabel(QStringLiteral("AFD - Spd"), this), 1, 1);
  layout->addWidget(speed_, 1, 2);
  layout->addWidget(speedWords_, 1, 3);
  layout->setColumnStretch(2, 1);
  talk_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);

  connect(talk_, &QPushButton::pressed, this, [this] { speak_.Press(); });
  connect(talk_, &QPushButton::released, this, [this] { speak_.Release(); });
  connect(depth_, &Fader::MovedByHand, this, [this](int value) { speak_.SetDepthSlider(value); });
  connect(speed_, &Fader::MovedByHand, this, [this](int value) { speak_.SetSpeedSlider(value); });
  connect(&speak_, &PressToSpeak::Changed, this, [this] { Show(); });
  Show();
}

void SpeakPanel::hideEvent(QHideEvent* event) {
  Panel::hideEvent(event);
  speak_.Release();
}

void SpeakPanel::Show() {
  depth_->setValue(speak_.DepthSlider());
  speed_->setValue(speak_.SpeedSlider());
  depthWords_->setText(speak_.DepthText());
  speedWords_->setText(speak_.SpeedText());
}

}  // namespace kelvo
