#pragma once

#include "platform/Prompter.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <vector>

class QDialog;
class QWidget;

namespace kelvo {

class PromptBox;
class ToldList;

/// The Prompter of the running program: boxes on the screen. A question belongs to its window and holds that
/// window's input until it is answered; a message that nothing waits for takes neither the input nor the
/// keyboard away. Nothing blocks, and an answer reaches its job at the loop's next turn, never inside the
/// click. Cancelling the job that asks closes its box. More than three messages at once are gathered into one
/// list. Owned by the program's entry, which makes it before the first window; must outlive the jobs that
/// ask. Logic thread.
class MessageBoxPrompter : public QObject, public Prompter {
  Q_OBJECT
 public:
  /// `parent` gives the window that boxes belong to at that moment, or none. An open modal window comes
  /// before it.
  explicit MessageBoxPrompter(std::function<QWidget*()> parent,
                              QString programTitle = QStringLiteral("Kelvo 2007"));
  ~MessageBoxPrompter() override;

  [[nodiscard]] Job<Answer> Ask(Prompt prompt) override;
  [[nodiscard]] Job<AnswerForFiles> AskForFiles(Prompt prompt) override;
  [[nodiscard]] Job<QString> AskText(QString title, QString prompt, QString initial) override;
  [[nodiscard]] Job<QString> AskSecret(QString title, QString prompt) override;
  [[nodiscard]] Job<std::optional<QString>> PickFolder(QString title, QString initial) override;
  [[nodiscard]] Job<std::optional<QString>> PickFile(QString title, QString initial, QString filter) override;
  void Tell(Prompt prompt) override;

 private:
  struct Told {
    Prompt prompt;
    int times;
    std::unique_ptr<PromptBox> box;
  };
  class Lease;

  [[nodiscard]] Job<int> Run(QDialog& box);
  [[nodiscard]] Job<QString> AskLine(Prompt words, QString initial, bool secret);
  void Stand(QWidget& box);
  void Leave(QWidget& box);
  void DropClosed();
  void Gather();
  [[nodiscard]] const QString& TitleOf(const Prompt& prompt) const;

  std::function<QWidget*()> parent_;
  QString programTitle_;
  std::vector<Told> told_;
  std::unique_ptr<ToldList> gathered_;
};

}  // namespace kelvo
