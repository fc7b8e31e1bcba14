#pragma once

#include <QWidget>

#include <vector>

class QFormLayout;
class QLabel;
class QLineEdit;

namespace kelvo {

/// Labelled lines of text, one below the other, each with room for a message beside it. GUI thread.
class Form : public QWidget {
  Q_OBJECT
 public:
  struct Field {
    QString name;            ///< object name of the control
    QString fixedName = {};  ///< see SetNames
    QString label;           ///< with its mnemonic
    QString tooltip = {};
  };
  explicit Form(QWidget* parent = nullptr);

  QLineEdit& AddText(const Field& field);
  /// What is wrong with a field, in words beside it; empty: nothing.
  void SetMessage(const QLineEdit& field, const QString& words);
  /// Nothing is in any field.
  [[nodiscard]] bool IsEmpty() const;

 Q_SIGNALS:
  /// Something was typed.
  void Changed();
  /// Enter in a field.
  void Submitted();

 private:
  struct Row {
    QLineEdit* field;
    QLabel* message;
  };

  QFormLayout* layout_;
  std::vector<Row> rows_;
};

}  // namespace kelvo
