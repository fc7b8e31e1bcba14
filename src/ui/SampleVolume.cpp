#include "ui/SampleVolume.h"

#include "ui/ScalableIcon.h"

#include <QHBoxLayout>
#include <QLabel>

namespace kelvo {

SampleVolume::SampleVolume(int mostLoss, int loss, QWidget* parent)
    : QWidget(parent), slider_(new Fader(Qt::Horizontal, 0, mostLoss, this)) {
  slider_->setAccessibleName(tr("Sample volume"));
  slider_->setToolTip(tr("Volume of the sample  (arrow keys; a double click is full)"));
  slider_->setInvertedAppearance(true);
  slider_->SetRestValue(0);
  slider_->SetFillFrom(mostLoss);
  slider_->setSingleStep(mostLoss / 60);
  slider_->setPageStep(mostLoss / 10);
  slider_->setValue(loss);
  auto* speaker = new QLabel(this);
  const int side = fontMetrics().height();
  setMaximumWidth(fontMetrics().averageCharWidth() * 28 + side);
  speaker->setPixmap(ScalableIcon(Icon::Volume).pixmap(side, side));
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(speaker);
  layout->addWidget(slider_, 1);
}

}  // namespace kelvo
