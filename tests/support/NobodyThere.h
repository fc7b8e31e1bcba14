#pragma once

#include "platform/Prompter.h"

#include <functional>

namespace kelvo::testing {

/// Nobody sits at the desk: every question is answered by No, and nothing is typed or picked.
class NobodyThere : public Prompter {
 public:
  /// Called with each message; may be empty.
  std::function<void(const Prompt&)> OnTell;

  [[nodiscard]] Job<Answer> Ask(Prompt /*prompt*/) override { co_return Answer::No; }
  [[nodiscard]] Job<AnswerForFiles> AskForFiles(Prompt /*prompt*/) override { co_return AnswerForFiles(); }
  [[nodiscard]] Job<QString> AskText(QString /*title*/, QString /*prompt*/, QString /*initial*/) override {
    co_return QString();
  }
  [[nodiscard]] Job<QString> AskSecret(QString /*title*/, QString /*prompt*/) override {
    co_return QString();
  }
  [[nodiscard]] Job<std::optional<QString>> PickFolder(QString /*title*/, QString /*initial*/) override {
    co_return std::nullopt;
  }
  [[nodiscard]] Job<std::optional<QString>> PickFile(QString /*title*/, QString /*initial*/,
                                                     QString /*filter*/) override {
    co_return std::nullopt;
  }
  void Tell(Prompt prompt) override {
    if (OnTell) OnTell(prompt);
  }
};

}  // namespace kelvo::testing
