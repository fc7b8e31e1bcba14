#pragma once

#include "platform/Prompter.h"

#include <QStringList>

#include <deque>
#include <functional>
#include <vector>

namespace kelvo::testing {

/// A person made of answers: each question takes the next one and is remembered. A question without an answer
/// left is a failure of the test.
class ScriptedPrompter : public Prompter {
 public:
  [[nodiscard]] Job<Answer> Ask(Prompt prompt) override;
  [[nodiscard]] Job<QString> AskText(QString title, QString prompt, QString initial) override;
  /// Takes its answer from `answers`, for all that follow where `forAll` says so.
  [[nodiscard]] Job<AnswerForFiles> AskForFiles(Prompt prompt) override;
  /// Takes its answer from `texts` as AskText does, and counts.
  [[nodiscard]] Job<QString> AskSecret(QString title, QString prompt) override;
  [[nodiscard]] Job<std::optional<QString>> PickFolder(QString title, QString initial) override;
  [[nodiscard]] Job<std::optional<QString>> PickFile(QString title, QString initial, QString filter) override;
  void Tell(Prompt prompt) override;

  std::deque<Answer> answers;
  std::deque<QString> texts;
  std::deque<std::optional<QString>> paths;

  /// Called while an Ask is open, before its answer.
  std::function<void(const Prompt&)> meanwhile;
  bool forAll = false;
  bool away = false;  ///< an Ask gets no answer: it is open until it is dropped

  int secretsAsked = 0;
  std::vector<Prompt> asked;               ///< every Ask, AskText (title and prompt) and Tell, in order
  [[nodiscard]] QStringList Told() const;  ///< the texts of `asked`
};

}  // namespace kelvo::testing
