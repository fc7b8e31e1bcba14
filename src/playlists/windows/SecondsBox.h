#pragma once

#include <QSpinBox>

namespace kelvo {

/// A box with a time as elements have it, "00:12:34", that goes in seconds. GUI thread.
class SecondsBox : public QSpinBox {
  Q_OBJECT
 public:
  SecondsBox(const QString& accessible, QWidget* parent);

 protected:
  [[nodiscard]] QString textFromValue(int seconds) const override;
  [[nodiscard]] int valueFromText(const QString& text) const override;
  [[nodiscard]] QValidator::State validate(QString& text, int& place) const override;
};

/// Gives a box of numbers its name for those who can't see it, and lets it report what was typed at its end.
void SetUpBox(QSpinBox& box, const QString& accessible);

}  // namespace kelvo
