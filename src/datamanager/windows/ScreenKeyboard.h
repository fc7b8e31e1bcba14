#pragma once

#include <QPointer>
#include <QWidget>

class QLineEdit;

namespace kelvo {

/// Keys on the screen for whoever has no others at hand. They type into the text box of the window that has
/// the focus, or had it last. Owned by its window; GUI thread.
class ScreenKeyboard : public QWidget {
  Q_OBJECT
 public:
  /// `first` takes the letters until another box of the window gets the focus.
  explicit ScreenKeyboard(QLineEdit& first, QWidget* parent = nullptr);

 private:
  void Type(const QString& letter);

  QPointer<QLineEdit> box_;
};

}  // namespace kelvo
