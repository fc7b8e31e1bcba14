#pragma once

#include <QPushButton>

namespace kelvo {

/// A push button of the desk with an icon before its word. Where there is no room for both, the word stays.
/// GUI thread.
class CommandButton : public QPushButton {
  Q_OBJECT
 public:
  explicit CommandButton(QWidget* parent = nullptr);
  explicit CommandButton(const QString& text, QWidget* parent = nullptr);
  CommandButton(const QIcon& icon, const QString& text, QWidget* parent = nullptr);

  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kelvo
