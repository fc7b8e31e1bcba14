#pragma once

#include "console/automatic/AutoPlay.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QSpinBox;

namespace kelvo {

/// `FrmTimer`: arms and disarms the timed start of automatic play. It opens with the present time, or the one
/// that is armed. Owned by the panel that opens it; GUI thread.
class TimerForm : public QDialog {
  Q_OBJECT
 public:
  TimerForm(AutoPlay& automatic, const EventLoop& loop, QWidget* parent = nullptr);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void Arm();
  void Show();

  AutoPlay& automatic_;
  const EventLoop& loop_;
  QSpinBox* hour_;
  QSpinBox* minute_;
  QCheckBox* armed_;
  QLabel* warning_;
};

}  // namespace kelvo
