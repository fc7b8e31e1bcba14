#pragma once

#include "platform/Prompter.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <vector>

class QDialog;
class QKeyEvent;
class QWidget;

namespace kelvo {

class PromptBox;
class ToldList;

/// The Prompter of the running program: boxes on the screen. A question belongs to its window and holds that
/// window's input until it is answered; a message that nothing waits for leaves the input where it is,
/// but Enter and Escape: they answer the box in front, whichever window they arrive at. Nothing blocks, and
/// an answer reaches its job at the loop's next turn, never inside the click. Cancelling the job that asks
/// closes its box. More than three messages at once are gathered into one list. Owned by the program's entry,
/// which makes it before the first window; must outlive the jobs that ask. Logic thread.
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
  void HoldBack(bool held) override;

  /// Gives the keys to the box in front.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Told {
    Prompt prompt;
    int times;
    std::unique_ptr<PromptBox> box;
  };
  class Lease;

  [[nodiscard]] Job<int> Run(QDialog& box, bool onLockedScreen = false);
  [[nodiscard]] Job<QString> AskLine(Prompt words, QString initial, bool secret);
  /// Its help button shows the page of its topic.
  void GiveHelp(PromptBox& box);
  void Stand(QDialog& box);
  void Leave(QDialog& box);
  /// A question, and a message unless all are held back.
  void Open(QDialog& box);
  void ShowMessage(QDialog& box);
  /// The box in front of all others; none when none is shown.
  [[nodiscard]] QDialog* Front() const;
  /// Keeps which box is in front, and gives the keyboard back to a question.
  void TellActive(QObject* window);
  /// Whether a key that arrived at `window` was one of the box in front.
  bool GiveToFront(const QWidget& window, QKeyEvent& key);
  void DropClosed();
  void Gather();
  [[nodiscard]] const QString& TitleOf(const Prompt& prompt) const;

  std::function<QWidget*()> parent_;
  QString programTitle_;
  bool held_ = false;
  std::vector<QDialog*> questions_;       ///< those that wait until nothing is held back
  std::vector<QPointer<QDialog>> boxes_;  ///< as they came to the front; the last one is in front
  std::vector<Told> told_;
  std::unique_ptr<ToldList> gathered_;
};

}  // namespace kelvo
