#pragma once

#include "console/AutoPlay.h"

#include <QDialog>

class QCheckBox;
class QSpinBox;

namespace kelvo {

/// `FrmTimer`: arms and disarms the timed start of automatic play. Owned by the panel that opens it; GUI
/// thread.
class TimerForm : public QDialog {
  Q_OBJECT
 public:
  explicit TimerForm(AutoPlay& automatic, QWidget* parent = nullptr);

 private:
  void Arm();
  void Show();

  AutoPlay& automatic_;
  QCheckBox* armed_;
  QSpinBox* hour_;
  QSpinBox* minute_;
};

}  // namespace kelvo
