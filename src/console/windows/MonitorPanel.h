#pragma once

#include "console/monitor/Monitor.h"
#include "ui/Panel.h"

class QComboBox;
class QLabel;
class QPushButton;

namespace kelvo {

class ElidedLabel;
class Fader;

/// "MONITOR": what is heard on the second device, its place, its nudges and levels, and the commands that set
/// the deck by it. Shown while the monitor is open. Owned by the console window; GUI thread.
class MonitorPanel : public Panel {
  Q_OBJECT
 public:
  explicit MonitorPanel(Monitor& monitor, QWidget* parent = nullptr);

 private:
  void Build();
  void Lay();
  QPushButton* AddNudge(const QString& name, const QString& words, const QString& tooltip,
                        Monitor::Nudge nudge);
  void Show();
  void ShowDevices();

  Monitor& monitor_;
  ElidedLabel* title_;
  ElidedLabel* trouble_;
  QComboBox* device_;
  Fader* place_;
  QLabel* position_;
  QLabel* duration_;
  QPushButton* run_;
  QPushButton* pause_;
  QPushButton* toStart_;
  QPushButton* sync_;
  QPushButton* syncStart_;
  QPushButton* close_;
  std::vector<QPushButton*> nudges_;
  Fader* level_;
  QLabel* levelWords_;
  Fader* balance_;
  QLabel* balanceWords_;
};

/// A button that opens what `source` holds in the monitor; off, with its reason, where there is no second
/// output. Owned by `owner`.
[[nodiscard]] QPushButton* AddMonitorButton(Monitor& monitor, MonitorSource source, QWidget& owner);

}  // namespace kelvo
