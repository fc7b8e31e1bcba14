#include "console/windows/TimerForm.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QSpinBox>

namespace kelvo {

TimerForm::TimerForm(AutoPlay& automatic, QWidget* parent)
    : QDialog(parent),
      automatic_(automatic),
      armed_(new QCheckBox(QStringLiteral("Timer Set"), this)),
      hour_(new QSpinBox(this)),
      minute_(new QSpinBox(this)) {
  setObjectName(QStringLiteral("FrmTimer"));
  setWindowTitle(tr("Set Timer"));
  armed_->setObjectName(QStringLiteral("Check1"));
  hour_->setRange(0, 23);
  minute_->setRange(0, 59);
  hour_->setWrapping(true);
  minute_->setWrapping(true);
  auto* close = new QDialogButtonBox(QDialogButtonBox::Close, this);
  auto* layout = new QFormLayout(this);
  layout->addRow(tr("Hour"), hour_);
  layout->addRow(tr("Minute"), minute_);
  layout->addRow(armed_);
  layout->addRow(close);
  connect(close, &QDialogButtonBox::rejected, this, &QDialog::close);
  connect(armed_, &QCheckBox::clicked, this, [this] { Arm(); });
  for (QSpinBox* box : {hour_, minute_}) {
    connect(box, &QSpinBox::valueChanged, this, [this] {
      if (armed_->isChecked()) Arm();
    });
  }
  connect(&automatic_, &AutoPlay::Changed, this, [this] { Show(); });
  hour_->setValue(automatic_.Timer().TimerHour);
  minute_->setValue(automatic_.Timer().TimerMinute);
  Show();
}

void TimerForm::Arm() {
  if (armed_->isChecked()) {
    automatic_.ArmTimer(hour_->value(), minute_->value());
  } else {
    automatic_.DisarmTimer();
  }
}

void TimerForm::Show() {
  armed_->setChecked(automatic_.Timer().TimerArmed);
}

}  // namespace kelvo
