#pragma once

#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"
#include "quiz/QuizRecord.h"
#include "quiz/QuizScores.h"

#include <QByteArray>

#include <functional>
#include <optional>

namespace kelvo {

/// A quiz that is under way, with the scores of the evening: what the next start needs to go on with it. A
/// value.
struct QuizState {
  std::vector<QuizElement> elements;  ///< as they were formatted
  QStringList genres;
  QStringList setup;  ///< QuizSetup::Fields
  int next = 0;  ///< the element that runs next, from 1; beyond the last: all are done; 0: none is formatted
  SavedQuiz quiz;    ///< what was asked so far
  QStringList rows;  ///< of the list of questions, one for each item
  QStringList used;  ///< names of the tracks that were used
  std::vector<QuizTeam> teams;

  /// There is nothing in it that somebody would miss.
  [[nodiscard]] bool Empty() const;
  [[nodiscard]] QByteArray ToBytes() const;
  /// None for what is no such file.
  [[nodiscard]] static std::optional<QuizState> FromBytes(const QByteArray& bytes);
};

/// Keeps the running quiz in a file, anew with each change, so that a crash costs nothing. Owned by the
/// PopQuiz; logic thread, the disk off it.
class QuizKeeper {
 public:
  QuizKeeper(EventLoop& loop, QString path) : loop_(loop), path_(std::move(path)) {}
  /// Writes what is not written yet.
  ~QuizKeeper();
  QuizKeeper(const QuizKeeper&) = delete;
  QuizKeeper& operator=(const QuizKeeper&) = delete;

  /// The file of the running quiz in the folder of the saved quizes.
  [[nodiscard]] static QString PathIn(const QString& quizFolder);
  /// What an earlier run has left; none when there is nothing. Blocks for the disk; any thread.
  [[nodiscard]] static std::optional<QuizState> Read(const QString& path);

  /// Whether it is gone on with.
  [[nodiscard]] static Prompt Question(const QString& title);

  /// Writes the state at the loop's next turn; an empty one removes the file.
  void Keep(QuizState state);

 private:
  [[nodiscard]] Job<> Write();
  /// The work of a write, for another thread.
  [[nodiscard]] std::function<void()> WriteOf(const QuizState& state) const;

  EventLoop& loop_;
  QString path_;
  std::optional<QuizState> waiting_;
  bool toldTrouble_ = false;
  Job<> writing_;
};

}  // namespace kelvo
