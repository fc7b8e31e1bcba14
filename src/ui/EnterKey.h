#pragma once

#include <QObject>

class QWidget;

namespace kelvo {

/// Lets Enter work the control of a window that has the focus: a button, an option, a box of choices. Owned
/// by the window; GUI thread.
class EnterKey : public QObject {
  Q_OBJECT
 public:
  explicit EnterKey(QWidget& window);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget& window_;
};

}  // namespace kelvo
