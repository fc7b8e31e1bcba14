#pragma once

#include <QWidget>

class QLabel;

namespace kelvo {

class ClockDial;
class StatusTick;

/// Clock, date, time of day and how long the session runs. Shows the DeskStatus; owned by the console window,
/// GUI thread.
class ClockPanel : public QWidget {
  Q_OBJECT
 public:
  explicit ClockPanel(const StatusTick& tick, QWidget* parent = nullptr);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Show();

  const StatusTick& tick_;
  ClockDial* dial_;
  QLabel* time_;
  QLabel* date_;
  QLabel* session_;
};

}  // namespace kelvo
