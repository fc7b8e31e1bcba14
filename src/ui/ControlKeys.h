#pragma once

#include <QObject>

class QApplication;
class QKeyEvent;
class QWidget;

namespace kelvo {

/// How the keyboard works the control that has the focus, alike in every window of the program: Enter presses
/// a button or an option for as long as it is held, and opens a box of choices. The space bar presses
/// nothing: an operator who reaches for it wants to speak. Nor does a click with the mouse take the keyboard
/// away from where it is; Tab goes to all of them. Installed by Theme::Apply; owned by the application; GUI
/// thread.
class ControlKeys : public QObject {
  Q_OBJECT
 public:
  /// Once for each application; a second call does nothing.
  static void Install(QApplication& application);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  explicit ControlKeys(QApplication& application);
};

}  // namespace kelvo
