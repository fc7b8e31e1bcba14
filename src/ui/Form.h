#pragma once

#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <vector>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;

namespace kelvo {

/// Labelled fields, one below the other, each with room for a message beside it. Knows whether what is in
/// them differs from what was there at first. GUI thread.
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

  QLineEdit& AddText(const Field& field, const QString& text);
  QCheckBox& AddOption(const Field& field, bool on);
  /// One of `names`; any other words too where `free` is set.
  QComboBox& AddChoice(const Field& field, const QStringList& names, const QString& chosen,
                       bool free = false);

  /// What is wrong with a field, in words beside it; empty: nothing.
  void SetMessage(const QWidget& control, const QString& words);
  /// No field has a message.
  [[nodiscard]] bool Fits() const;

  /// The first control; none before one was added.
  [[nodiscard]] QWidget* First() const { return rows_.empty() ? nullptr : rows_.front().control; }

  /// A field holds something else than at first, or than at the last Settle.
  [[nodiscard]] bool Dirty() const;
  /// What is in the fields has been kept.
  void Settle();
  /// Puts back what is kept.
  void Restore();

 Q_SIGNALS:
  /// Something was typed or chosen.
  void Changed();
  /// Enter in a line of text.
  void Submitted();

 private:
  struct Row {
    QWidget* control;
    QLabel* message;
    QVariant settled;
  };
  void Add(const Field& field, QWidget& control, bool labelled);

  QFormLayout* layout_;
  std::vector<Row> rows_;
};

}  // namespace kelvo
