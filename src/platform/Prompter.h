#pragma once

#include "platform/Job.h"

#include <QString>

#include <functional>
#include <optional>

namespace kelvo {

enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class PromptIcon { None, Information, Question, Exclamation, Critical };
enum class Answer { Ok, Cancel, Yes, No, Stop };

/// A box with help has a button for it, which shows these words below the text, and the topic's page.
struct PromptHelp {
  int topic = 0;  ///< its number in the program's help; 0: there is none
  QString words = {};
};

/// A message box: what it asks or tells, word for word.
struct Prompt {
  QString text;
  QString title;  ///< empty: the program's title
  Buttons buttons = Buttons::Ok;
  PromptIcon icon = PromptIcon::None;
  std::optional<Answer> safe = {};  ///< the answer of Enter; none: the first button
  bool onLockedScreen = false;      ///< shown while others are held back (see Prompter::HoldBack)
  PromptHelp help = {};
};

/// An answer to a question that may come again for the files that follow.
struct AnswerForFiles {
  Answer answer = Answer::Cancel;  ///< Stop: of all that is under way
  bool forAll = false;             ///< counts for all that follow
};

/// Asks the operator and tells them things. The logic awaits the answer; timers, fades and decks go on
/// meanwhile. Windows show the boxes (ui/), tests script the answers. Closing a box by its corner answers
/// Cancel, or No where there is no Cancel, or Ok where there is neither. Logic thread; must outlive the jobs
/// that ask.
class Prompter {
 public:
  virtual ~Prompter() = default;

  /// Shows the page of a help topic, when a box's help is pressed. Whoever has the manual sets it.
  std::function<void(int topic)> OnHelp = {};

  [[nodiscard]] virtual Job<Answer> Ask(Prompt prompt) = 0;
  /// A question about one file of many: the box can also answer for all that follow, and stop.
  [[nodiscard]] virtual Job<AnswerForFiles> AskForFiles(Prompt prompt) = 0;
  /// An input box. Cancel gives an empty text.
  [[nodiscard]] virtual Job<QString> AskText(QString title, QString prompt, QString initial) = 0;
  /// An input box that doesn't show what is typed: for passwords. Cancel gives an empty text.
  [[nodiscard]] virtual Job<QString> AskSecret(QString title, QString prompt) = 0;
  /// A folder picker. Cancel gives none.
  [[nodiscard]] virtual Job<std::optional<QString>> PickFolder(QString title, QString initial) = 0;
  /// A file picker; `filter` as "Words (*.ext)". Cancel gives none.
  [[nodiscard]] virtual Job<std::optional<QString>> PickFile(QString title, QString initial,
                                                             QString filter) = 0;
  /// A message that nothing waits for. One box a text: the same text while its box is up shows nothing more.
  virtual void Tell(Prompt prompt) = 0;
  /// The screen lock: while `held`, what is asked and told waits out of sight, that of before too. Secrets
  /// are asked all the same, for the code is one, and what its prompt excepts is shown.
  virtual void HoldBack(bool /*held*/) {}
};

}  // namespace kelvo
