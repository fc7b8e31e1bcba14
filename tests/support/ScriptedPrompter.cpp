#include "support/ScriptedPrompter.h"

#include <gtest/gtest.h>

namespace kelvo::testing {
namespace {

/// The next scripted answer; without one the test has failed and `otherwise` is the answer, as Cancel would
/// be.
template <typename T>
T Next(std::deque<T>& script, T otherwise, const QString& question) {
  if (script.empty()) {
    ADD_FAILURE() << "nobody scripted an answer to: " << question.toStdString();
    return otherwise;
  }
  const T answer = script.front();
  script.pop_front();
  return answer;
}

}  // namespace

Job<Answer> ScriptedPrompter::Ask(Prompt prompt) {
  asked.push_back(prompt);
  if (meanwhile) meanwhile(prompt);
  if (away) {
    OneShot<Answer> never;
    co_return co_await never.Wait();
  }
  co_return Next(answers, Answer::Cancel, prompt.text);
}

Job<AnswerForFiles> ScriptedPrompter::AskForFiles(Prompt prompt) {
  AnswerForFiles answer;
  answer.answer = co_await Ask(prompt);
  answer.forAll = forAll;
  co_return answer;
}

Job<QString> ScriptedPrompter::AskText(QString title, QString prompt, QString /*initial*/) {
  Prompt box;
  box.text = prompt;
  box.title = title;
  box.buttons = Buttons::OkCancel;
  asked.push_back(box);
  co_return Next(texts, QString(), prompt);
}

Job<QString> ScriptedPrompter::AskSecret(QString title, QString prompt) {
  ++secretsAsked;
  return AskText(title, prompt, QString());
}

Job<std::optional<QString>> ScriptedPrompter::PickFolder(QString title, QString /*initial*/) {
  co_return Next<std::optional<QString>>(paths, std::nullopt, title);
}

Job<std::optional<QString>> ScriptedPrompter::PickFile(QString title, QString /*initial*/,
                                                       QString /*filter*/) {
  co_return Next<std::optional<QString>>(paths, std::nullopt, title);
}

void ScriptedPrompter::Tell(Prompt prompt) {
  asked.push_back(std::move(prompt));
}

QStringList ScriptedPrompter::Told() const {
  QStringList told;
  for (const Prompt& prompt : asked) told.append(prompt.text);
  return told;
}

}  // namespace kelvo::testing
