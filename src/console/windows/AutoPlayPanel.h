#pragma once

#include "console/automatic/AutoPlay.h"
#include "ui/Panel.h"

class QAbstractButton;
class QCheckBox;
class QPushButton;
class QRadioButton;

namespace kelvo {

class ElidedLabel;
class TimerForm;

/// Automatic play: its switch, its mode, the pause, the timed start, and what it is about to do. Owned by the
/// console window; GUI thread.
class AutoPlayPanel : public Panel {
  Q_OBJECT
 public:
  AutoPlayPanel(AutoPlay& automatic, const EventLoop& loop, QWidget* parent = nullptr);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Show();
  void OpenTimer();
  void Bind(QAbstractButton* button, const QKeySequence& key);

  AutoPlay& automatic_;
  const EventLoop& loop_;
  QPushButton* start_;
  QRadioButton* kelvo_;
  QRadioButton* jukebox_;
  QRadioButton* preview_;
  QCheckBox* random_;
  QPushButton* pause_;
  QPushButton* timer_;
  ElidedLabel* status_;
  ElidedLabel* next_;
  TimerForm* timerForm_ = nullptr;
};

}  // namespace kelvo
