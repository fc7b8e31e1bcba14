#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace kelvo {

/// Where the keyboard goes when the mouse gives a command: back to the list that had it last, of the play
/// queue or the library. There arrows, Enter and the space bar serve the show, while a box that was typed
/// into would swallow them. Owned by the console window; GUI thread.
class KeysHome : public QObject {
  Q_OBJECT
 public:
  /// `first` is that list until another one has had the keyboard.
  KeysHome(QWidget& window, QWidget& first);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  /// Whether a press on `widget` is a command of the window.
  [[nodiscard]] bool IsCommand(const QWidget* widget) const;

  QWidget& window_;
  QPointer<QWidget> list_;
};

}  // namespace kelvo
