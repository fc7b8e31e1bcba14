#pragma once

#include <QObject>

class QWidget;

namespace kelvo {

class Console;

/// The wait pointer over the console, from its first showing until its catalogue is loaded. It is the
/// window's own: it goes with it, and a message box on the window has none. Owned by the program's entry; GUI
/// thread.
class WaitPointer : public QObject {
  Q_OBJECT
 public:
  /// `window` and the console outlive it.
  WaitPointer(Console& console, QWidget& window);
};

}  // namespace kelvo
