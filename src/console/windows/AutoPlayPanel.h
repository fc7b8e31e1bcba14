#pragma once

#include "console/AutoPlay.h"
#include "ui/Panel.h"

class QCheckBox;
class QDialog;
class QLabel;
class QPushButton;
class QRadioButton;

namespace kelvo {

/// Automatic play: its switch, its mode, the pause, the timed start, and what it is about to do. Owned by the
/// console window; GUI thread.
class AutoPlayPanel : public Panel {
  Q_OBJECT
 public:
  explicit AutoPlayPanel(AutoPlay& automatic, QWidget* parent = nullptr);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Show();
  void OpenTimer();

  AutoPlay& automatic_;
  QPushButton* start_;
  QRadioButton* kelvo_;
  QRadioButton* jukebox_;
  QRadioButton* preview_;
  QCheckBox* random_;
  QPushButton* pause_;
  QPushButton* timer_;
  QLabel* status_;
  QLabel* next_;
  QDialog* timerForm_ = nullptr;
};

}  // namespace kelvo
