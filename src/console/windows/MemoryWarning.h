#pragma once

#include <QLabel>

namespace kelvo {

class StatusTick;

/// A red plate that is there only while the system runs short of memory. Shows the DeskStatus;
/// owned by the console window, GUI thread.
class MemoryWarning : public QLabel {
  Q_OBJECT
 public:
  explicit MemoryWarning(const StatusTick& tick, QWidget* parent = nullptr);
};

}  // namespace kelvo
