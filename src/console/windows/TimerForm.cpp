#include "console/windows/TimerForm.h"

#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShowEvent>
#include <QSpinBox>

namespace kelvo {

TimerForm::TimerForm(AutoPlay& automatic, const EventLoop& loop, QWidget* parent)
    : QDialog(parent),
      automatic_(automatic),
      loop_(loop),
      hour_(new QSpinBox(this)),
      minute_(new QSpinBox(this)),
      armed_(new QCheckBox(QStringLiteral("Timer Set"), this)),
      warning_(new QLabel(this)) {
  SetNames(*this, QStringLiteral("TimerForm"), QStringLiteral("FrmTimer"));
  setWindowTitle(tr("Set Timer"));
  SetNames(*armed_, QStringLiteral("ChkTimerSet"), QStringLiteral("Check1"));
  hour_->setObjectName(QStringLiteral("TimerHour"));
  hour_->setRange(0, 23);
  minute_->setObjectName(QStringLiteral("TimerMinute"));
  minute_->setRange(0, 59);
  QPalette amber = warning_->palette();
  amber.setColor(QPalette::WindowText, Theme::Palette().amber);
  warning_->setPalette(amber);
  warning_->setMinimumWidth(fontMetrics().averageCharWidth() * 30);
  auto* close = new QDialogButtonBox(QDialogButtonBox::Close, this);
  // Return ends the typing in a box, and not the form.
  close->button(QDialogButtonBox::Close)->setAutoDefault(false);
  close->button(QDialogButtonBox::Close)->setIcon({});
  auto* layout = new QFormLayout(this);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addRow(tr("Hour"), hour_);
  layout->addRow(tr("Minute"), minute_);
  layout->addRow(armed_);
  layout->addRow(warning_);
  layout->addRow(close);
  connect(close, &QDialogButtonBox::rejected, this, &QDialog::close);
  connect(armed_, &QCheckBox::clicked, this, [this] { Arm(); });
  for (QSpinBox* box : {hour_, minute_}) {
    box->setWrapping(true);
    // The first digit of an hour is an hour too, and may have come already: it must not start the show.
    box->setKeyboardTracking(false);
    connect(box, &QSpinBox::valueChanged, this, [this] {
      if (armed_->isChecked()) Arm();
      Show();
    });
    connect(box->findChild<QLineEdit*>(), &QLineEdit::textEdited, this, [this] { Show(); });
  }
  connect(&automatic_, &AutoPlay::Changed, this, [this] { Show(); });
  Show();
}

void TimerForm::showEvent(QShowEvent* event) {
  // The boxes have held the armed time since it was armed.
  if (!event->spontaneous() && !automatic_.Timer().TimerArmed) {
    const QTime now = loop_.Now().time();
    hour_->setValue(now.hour());
    minute_->setValue(now.minute());
  }
  if (!event->spontaneous()) {
    hour_->setFocus();
    hour_->selectAll();
  }
  QDialog::showEvent(event);
}

void TimerForm::Arm() {
  if (armed_->isChecked()) {
    automatic_.ArmTimer(hour_->value(), minute_->value());
  } else {
    automatic_.DisarmTimer();
  }
}

void TimerForm::Show() {
  const bool armed = automatic_.Timer().TimerArmed;
  armed_->setChecked(armed);
  const TimedStart wanted{true, hour_->cleanText().toInt(), minute_->cleanText().toInt()};
  const bool atOnce = !armed && wanted.Due(loop_.Now().time());
  warning_->setText(atOnce ? tr("Set now, it starts at once.") : QString());
}

}  // namespace kelvo
