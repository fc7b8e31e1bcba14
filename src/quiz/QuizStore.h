#pragma once

#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"
#include "platform/RowStore.h"
#include "quiz/QuizFiles.h"

#include <QObject>

#include <functional>

namespace kelvo {

struct QuizName {
  QString name;
};

/// The panel of the saved quizes: saves the present quiz, loads and deletes others. Owned by the PopQuiz;
/// logic thread, the disk off it.
class QuizStore : public QObject {
  Q_OBJECT

 public:
  enum class Mode { Closed, Save, Load };
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    QString folder;
    /// Why the quiz is at something else, in words; empty when it isn't.
    std::function<QString()> whyHeld;
    /// Why the present quiz can't be saved, in the words of the refusal; empty when it can.
    std::function<QString()> whyNoSave;
    std::function<QuizSetup()> setup;
    std::function<SavedQuiz()> quiz;
    std::function<void()> onSaved;
    std::function<void(const QStringList& fields)> takeSetup;
    std::function<Job<>(QString name, SavedQuiz quiz)> takeQuiz;
    QuizTrash trash = DesktopQuizTrash();
  };

  explicit QuizStore(Services services) : services_(std::move(services)) {}

  [[nodiscard]] const QString& Folder() const { return services_.folder; }
  [[nodiscard]] Mode GetMode() const { return mode_; }
  [[nodiscard]] const RowStore<QuizName>& Names() const { return names_; }
  /// What is in the name box.
  [[nodiscard]] const QString& Name() const { return name_; }
  void SetName(const QString& name);
  [[nodiscard]] bool Busy() const { return work_.Running(); }

  /// Opens the panel, or tells why the present quiz can't be saved.
  void OpenToSave();
  void OpenToLoad();
  void Close();
  /// Saves or loads, by what the panel was opened for.
  void Confirm();
  void Delete();

 Q_SIGNALS:
  void Changed();

 private:
  [[nodiscard]] bool Held() const { return Busy() || !services_.whyHeld().isEmpty(); }
  void Begin(Job<> job);
  [[nodiscard]] Job<> Guard(Job<> job);
  [[nodiscard]] Job<> Open(Mode mode);
  [[nodiscard]] Job<> List();
  [[nodiscard]] Job<> Save();
  [[nodiscard]] Job<> Load();
  [[nodiscard]] Job<> RunDelete();
  void Tell(const QString& text);

  Services services_;
  Mode mode_ = Mode::Closed;
  RowStore<QuizName> names_;
  QString name_;
  Job<> work_;
};

}  // namespace kelvo
