#pragma once

#include "platform/Prompter.h"

#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTextEdit>
#include <QVBoxLayout>

namespace kelvo {

/// One message or input box: plain text word for word, whatever it contains and however long it is (it wraps,
/// and scrolls beyond half a screen); the text can be selected and copied. Its result (finished) is an Answer
/// as a number. Letters press the button that they begin; Escape and the corner answer as Prompter says. Made
/// and owned by MessageBoxPrompter. GUI thread.
class PromptBox : public QDialog {
  Q_OBJECT
 public:
  PromptBox(const Prompt& prompt, const QString& title);

  /// Makes it an input box, its text selected.
  void AskForLine(const QString& initial);
  /// The input line shows dots for what is typed, and none of it can be copied.
  void HideLetters() { line_.setEchoMode(QLineEdit::Password); }
  [[nodiscard]] QString Line() const { return line_.text(); }
  [[nodiscard]] QString Text() const { return text_.toPlainText(); }
  /// Adds an option for all that follow, and a Stop.
  void OfferForAll();
  [[nodiscard]] bool ForAll() const { return forAll_.isChecked(); }
  /// Tells that the same message came several times.
  void SetTimes(int times);
  [[nodiscard]] Answer ClosingAnswer() const;

  void reject() override;

 Q_SIGNALS:
  /// The help of this topic.
  void HelpWanted(int topic);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void AddButtons();
  void AddHelp(const PromptHelp& help);
  QPushButton* AddButton(const QString& words, Answer answer, QDialogButtonBox::ButtonRole role);
  void FitText();

  Buttons buttons_;
  std::optional<Answer> safe_;
  QVBoxLayout column_{this};
  QHBoxLayout row_;
  QVBoxLayout words_;
  QLabel sign_{this};
  QTextEdit text_{this};
  QLineEdit line_{this};
  QCheckBox forAll_{tr("For &all that follow"), this};
  QLabel times_{this};
  QDialogButtonBox buttonBox_{this};
  PromptIcon icon_;
};

}  // namespace kelvo
