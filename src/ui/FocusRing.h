#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QWidget>

class QApplication;

namespace kelvo {

/// The ring around the control that has the keyboard, in every window of the program: white in black, so that
/// it shows on every colour, and one alone. Installed by Theme::Apply; owned by the application; GUI thread.
class FocusRing : public QObject {
  Q_OBJECT
 public:
  /// Once for each application; a second call does nothing.
  static void Install(QApplication& application);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  explicit FocusRing(QApplication& application);
  void Follow(QWidget* control);
  void Place();

  QPointer<QWidget> control_;  ///< has the keyboard
  QPointer<QWidget> line_;     ///< what is drawn: beside the control, above what else is there
};

}  // namespace kelvo
