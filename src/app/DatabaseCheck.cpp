#include "app/DatabaseCheck.h"

#include "platform/SettingsStore.h"

#include <QFileInfo>

namespace kelvo {
namespace {

const QString kStartup = QStringLiteral("Startup");
const QString kPathsKey = QStringLiteral("Paths");
const QString kNoPaths = QStringLiteral("NoPaths");

}  // namespace

DatabaseCheck::DatabaseCheck(EventLoop& loop, Prompter& prompter, SettingsStore& settings, ProgramFacts facts,
                             Install install)
    : loop_(loop),
      prompter_(prompter),
      settings_(settings),
      facts_(std::move(facts)),
      install_(std::move(install)) {}

void DatabaseCheck::Save(const Paths& paths) {
  settings_.SaveSetting(facts_.title, kStartup, kPathsKey, paths.ToSetting());
}

Job<Paths> DatabaseCheck::ThoseThere(Paths paths) {
  const auto look = [paths] {
    Paths present;
    for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) {
      if (!paths(slot).isEmpty() && QFileInfo(paths(slot)).isDir()) present.Set(slot, paths(slot));
    }
    return present;
  };
  const Paths present = co_await loop_.Offload(EventLoop::Lane::Import, look);
  co_return present;
}

Job<std::optional<Paths>> DatabaseCheck::Run() {
  const QString stored = settings_.GetSetting(facts_.title, kStartup, kPathsKey, kNoPaths);
  std::optional<Paths> result;
  if (stored == kNoPaths) {
    result = co_await install_(Paths());
    co_return result;
  }
  Paths paths = Paths::FromSetting(stored);
  for (;;) {
    const Paths present = co_await ThoseThere(paths);
    int missing = Paths::kFirst;
    while (missing <= Paths::kLast && !present(missing).isEmpty()) ++missing;
    if (missing > Paths::kLast) break;
    Prompt question;
    question.text =
        QStringLiteral("Cannot Find path ") + paths(missing) + QStringLiteral(" Run Install Again ?");
    question.buttons = Buttons::YesNo;
    question.icon = PromptIcon::Information;
    const Answer answer = co_await prompter_.Ask(question);
    if (answer == Answer::Yes) {
      result = co_await install_(present);
      co_return result;
    }
    const Repair repair = co_await RepairPath(&paths, missing);
    if (repair == Repair::GivenUp) co_return result;
  }
  result = paths;
  co_return result;
}

Job<DatabaseCheck::Repair> DatabaseCheck::RepairPath(Paths* paths, int slot) {
  for (;;) {
    const QString text = QStringLiteral("The Folder Path ") + (*paths)(slot) +
                         QStringLiteral(" Cannot Be Located !\r\nPlease Enter The Path To This Folder");
    const QString initial = (*paths)(slot);
    const QString entered = co_await prompter_.AskText(QStringLiteral("Path error"), text, initial);
    if (entered.contains(QLatin1Char(','))) {
      Prompt message;
      message.text =
          QStringLiteral("The path %1 holds a comma, which the settings use between paths !").arg(entered);
      message.icon = PromptIcon::Exclamation;
      co_await prompter_.Ask(message);
      continue;
    }
    if (!entered.trimmed().isEmpty()) {
      paths->Set(slot, entered.trimmed());
      Save(*paths);
      co_return Repair::Done;
    }
    Prompt question;
    question.text = QStringLiteral("Cancel resetting Paths ?");
    question.buttons = Buttons::YesNo;
    question.icon = PromptIcon::Question;
    const Answer answer = co_await prompter_.Ask(question);
    if (answer == Answer::Yes) co_return Repair::GivenUp;
  }
}

}  // namespace kelvo
