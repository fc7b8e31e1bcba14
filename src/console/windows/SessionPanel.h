#pragma once

#include <QWidget>

#include <functional>

class QPushButton;

namespace kelvo {

class StatusTick;

/// "Session List", a line of the clock's panel: the way to what was recorded. Owned by the console window;
/// GUI thread.
class SessionPanel : public QWidget {
  Q_OBJECT
 public:
  /// `whyClosed`: why the list can't be shown now, in words; empty when it can.
  SessionPanel(const StatusTick& tick, std::function<QString()> whyClosed, QWidget* parent = nullptr);

 Q_SIGNALS:
  void Wanted();

 private:
  QPushButton* show_;
};

}  // namespace kelvo
