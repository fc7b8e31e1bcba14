#pragma once

#include <QComboBox>

namespace kelvo {

/// A small box of letters and digits that jumps through a list. GUI thread.
class LetterBox : public QComboBox {
  Q_OBJECT
 public:
  /// `list` is what the list shows, for those who can't see it.
  explicit LetterBox(const QString& list, QWidget* parent = nullptr);

 Q_SIGNALS:
  void Chosen(QChar letter);

 protected:
  /// All of them at once, in six columns.
  void showPopup() override;
};

}  // namespace kelvo
