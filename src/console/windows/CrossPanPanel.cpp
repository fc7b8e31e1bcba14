#include "console/windows/CrossPanPanel.h"

#include "console/automatic/AutoPlay.h"
#include "console/status/StatusTick.h"
#include "console/transitions/Transitions.h"
#include "console/windows/WarningLamp.h"
#include "ui/Fader.h"
#include "ui/Naming.h"

#include <QGridLayout>
#include <QLabel>

namespace kelvo {
namespace {

/// The longest overlap that the slider offers, seconds.
constexpr int kMostDelta = 60;

}  // namespace

CrossPanPanel::CrossPanPanel(Transitions& fades, AutoPlay& automatic, StatusTick& status, QWidget* parent)
    : Panel(Group::Decks, QString(), parent),
      fades_(fades),
      automatic_(automatic),
      crossPan_(new Fader(Qt::Horizontal, -200, 200, this)),
      speed_(new Fader(Qt::Horizontal, 0, 50, this)),
      speedWords_(new QLabel(this)),
      delta_(new Fader(Qt::Horizontal, 0, kMostDelta, this)),
      deltaWords_(new QLabel(this)) {
  setObjectName(QStringLiteral("CrossPan"));
  SetNames(*crossPan_, QStringLiteral("SldBetweenDecks"), QStringLiteral("SldCrossPan"));
  crossPan_->setAccessibleName(tr("Cross pan"));
  crossPan_->setToolTip(tr("Left: deck 1 alone. Right: deck 2 alone. Double click or Enter: both"));
  crossPan_->SetRestValue(0);
  crossPan_->SetFillFrom(0);
  crossPan_->SetTickInterval(100);
  crossPan_->setPageStep(20);
  SetNames(*speed_, QStringLiteral("SldFadeSpeed"), QStringLiteral("SldFadeSp"));
  speedWords_->setObjectName(QStringLiteral("LblFadeSpeed"));
  speed_->setAccessibleName(tr("Fade speed"));
  // To the right is quicker, as the number that is shown.
  speed_->setInvertedAppearance(true);
  speed_->setPageStep(5);
  SetNames(*delta_, QStringLiteral("SldFadeOutPosition"), QStringLiteral("SldDelta"));
  deltaWords_->setObjectName(QStringLiteral("LblFadeOutPosition"));
  delta_->setAccessibleName(QStringLiteral("Default Fade Out Position"));
  delta_->setToolTip(QStringLiteral("Default Fade Out Position"));
  delta_->setPageStep(5);
  for (QLabel* words : {speedWords_, deltaWords_}) {
    words->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Delta 60 s")));
  }
  auto* one = new QLabel(QStringLiteral("1"), this);
  auto* two = new QLabel(QStringLiteral("2"), this);
  for (QLabel* end : {one, two}) end->setFont(Theme::Font(1.2, QFont::Bold));

  auto* pan = new QHBoxLayout;
  pan->addWidget(new WarningLamp(status, Deck::One, this));
  pan->addWidget(one);
  pan->addWidget(crossPan_, 1);
  pan->addWidget(two);
  pan->addWidget(new WarningLamp(status, Deck::Two, this));
  auto* settings = new QHBoxLayout;
  settings->addWidget(speedWords_);
  settings->addWidget(speed_, 1);
  settings->addSpacing(fontMetrics().height());
  settings->addWidget(deltaWords_);
  settings->addWidget(delta_, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(pan);
  layout->addLayout(settings);

  crossPan_->setValue(fades_.CrossPan());
  connect(crossPan_, &Fader::sliderPressed, this, [this] { fades_.GrabSlider(); });
  connect(crossPan_, &Fader::MovedByHand, this, [this](int value) {
    // The wheel moves it too, and does not press it.
    if (!crossPan_->isSliderDown()) fades_.GrabSlider();
    fades_.MoveSlider(value);
  });
  connect(&fades_, &Transitions::CrossPanChanged, this, [this](int value) { crossPan_->setValue(value); });
  connect(speed_, &Fader::MovedByHand, this, [this](int value) { fades_.SetFadeSpeed(value); });
  connect(&fades_, &Transitions::FadeSpeedChanged, this, [this] { ShowSpeed(); });
  connect(delta_, &Fader::MovedByHand, this, [this](int value) { automatic_.SetDelta(value); });
  connect(&automatic_, &AutoPlay::Changed, this, [this] { ShowDelta(); });
  ShowSpeed();
  ShowDelta();
}

void CrossPanPanel::ShowSpeed() {
  speed_->setValue(fades_.FadeSpeed());
  speed_->setToolTip(Transitions::FadeSpeedTooltip(fades_.FadeSpeed()) + QStringLiteral("\n") +
                     tr("Controls Decks 1 and 2 Auto Pan Speed"));
  speedWords_->setText(tr("Speed %1").arg(Transitions::ShownFadeSpeed(fades_.FadeSpeed())));
}

void CrossPanPanel::ShowDelta() {
  delta_->setValue(automatic_.SldDelta());
  deltaWords_->setText(tr("Delta %1 s").arg(automatic_.SldDelta()));
}

}  // namespace kelvo
