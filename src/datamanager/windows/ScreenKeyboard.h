#pragma once

#include <QPointer>
#include <QWidget>

namespace kelvo {

/// Keys on the screen for whoever has no others at hand. They type into the text box of the window that has
/// the focus, or had it last. Owned by its window; GUI thread.
class ScreenKeyboard : public QWidget {
  Q_OBJECT
 public:
  /// `first`, a line or a box of text, takes the letters until another one of the window gets the focus.
  /// `backName` is the fixed name of the key that deletes.
  explicit ScreenKeyboard(QWidget& first, const QString& backName, QWidget* parent = nullptr);

 private:
  void Type(const QString& letter);
  void Back();

  QPointer<QWidget> box_;
};

}  // namespace kelvo
