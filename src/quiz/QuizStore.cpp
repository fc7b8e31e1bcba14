#include "quiz/QuizStore.h"

#include "platform/ErrorLog.h"

#include <QPointer>

#include <algorithm>

namespace kelvo {
namespace {

constexpr qsizetype kLongestName = 20;

}  // namespace

void QuizStore::SetName(const QString& name) {
  if (name == name_) return;
  name_ = name;
  Q_EMIT Changed();
}

void QuizStore::Tell(const QString& text) {
  Prompt message;
  message.text = text;
  message.icon = PromptIcon::Information;
  services_.prompter.Tell(message);
}

void QuizStore::Begin(Job<> job) {
  work_ = Guard(std::move(job));
  Q_EMIT Changed();
}

Job<> QuizStore::Guard(Job<> job) {
  try {
    co_await std::move(job);
  } catch (...) {
    basHandleError(QStringLiteral(" quizst"), tr("The saved quizes could not be worked on."));
  }
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

void QuizStore::OpenToSave() {
  if (Held()) return;
  if (const QString why = services_.whyNoSave(); !why.isEmpty()) {
    Tell(why);
  } else {
    Begin(Open(Mode::Save));
  }
}

void QuizStore::OpenToLoad() {
  if (!Held()) Begin(Open(Mode::Load));
}

Job<> QuizStore::Open(Mode mode) {
  co_await List();
  name_.clear();
  mode_ = mode;
}

Job<> QuizStore::List() {
  const auto list = [folder = services_.folder] { return ListQuizes(folder); };
  const QStringList found = co_await services_.loop.Offload(EventLoop::Lane::Files, list);
  std::vector<QuizName> names;
  for (const QString& each : found) names.push_back({each});
  names_.Replace(std::move(names));
}

void QuizStore::Close() {
  mode_ = Mode::Closed;
  Q_EMIT Changed();
}

void QuizStore::Confirm() {
  if (Held() || mode_ == Mode::Closed) return;
  Begin(mode_ == Mode::Save ? Save() : Load());
}

Job<> QuizStore::Save() {
  if (name_.isEmpty()) {
    Tell(QStringLiteral("Please Enter A Name To Save this Quiz As !"));
    co_return;
  }
  // Blanks that are trimmed away later count.
  if (name_.size() > kLongestName) {
    Tell(QStringLiteral("Quiz Names can't be longer than 20 characters, Please rename !"));
    co_return;
  }
  name_ = CleanQuizName(name_);
  if (name_.isEmpty()) {
    Tell(QStringLiteral("Please Enter A Name To Save this Quiz As !"));
    co_return;
  }
  const auto& rows = names_.All();
  bool saved =
      std::none_of(rows.begin(), rows.end(), [this](const QuizName& row) { return row.name == name_; });
  if (saved) {
    const auto save = [folder = services_.folder, name = name_, setup = services_.setup(),
                       quiz = services_.quiz()] { return SaveQuiz(folder, name, setup, quiz); };
    saved = co_await services_.loop.Offload(EventLoop::Lane::Files, save);
  }
  if (!saved) {
    Tell(QStringLiteral("Name: ") + name_ + QStringLiteral(" Already Exists, Please Choose Another Name !"));
    co_return;
  }
  services_.onSaved();
  Tell(QStringLiteral("Quiz ") + name_ + QStringLiteral(" Saved Successfully !"));
  mode_ = Mode::Closed;
}

Job<> QuizStore::Load() {
  if (names_.Count() == 0) co_return;
  if (name_.isEmpty()) {
    Tell(QStringLiteral("Please Select A Quiz To Load !"));
    co_return;
  }
  // The set-up counts also when the rest of the quiz can't be read.
  const auto readSetup = [folder = services_.folder, name = name_] { return LoadSetup(folder, name); };
  const QStringList fields = co_await services_.loop.Offload(EventLoop::Lane::Files, readSetup);
  services_.takeSetup(fields);
  const auto read = [folder = services_.folder, name = name_] { return LoadQuiz(folder, name); };
  SavedQuiz quiz = co_await services_.loop.Offload(EventLoop::Lane::Files, read);
  co_await services_.takeQuiz(name_, std::move(quiz));
  mode_ = Mode::Closed;
}

void QuizStore::Delete() {
  if (!Held() && mode_ == Mode::Load && !name_.isEmpty()) Begin(RunDelete());
}

Job<> QuizStore::RunDelete() {
  Prompt question;
  question.text = QStringLiteral("Delete Quiz ") + name_ + QStringLiteral(" ?");
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  question.safe = Answer::No;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer != Answer::Yes) co_return;
  const auto remove = [folder = services_.folder, name = name_, trash = services_.trash] {
    DeleteQuiz(folder, name, trash);
  };
  co_await services_.loop.Offload(EventLoop::Lane::Files, remove);
  name_.clear();
  co_await List();
}

}  // namespace kelvo
