#include "app/DatabaseCheck.h"

#include "database/DatabaseSettings.h"
#include "database/OlderForm.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"

#include <QFileInfo>

#include <utility>
#include <vector>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// A hundred thousand names come slowly from a share that does answer.
constexpr Nanoseconds kListLimit = 30s;

}  // namespace

DatabaseCheck::DatabaseCheck(EventLoop& loop, Prompter& prompter, SettingsStore& settings, ProgramFacts facts,
                             Install install)
    : disks_(loop),
      prompter_(prompter),
      settings_(settings),
      facts_(std::move(facts)),
      install_(std::move(install)) {}

void DatabaseCheck::Save(const Paths& paths) {
  ProgramSettings(settings_, facts_.title).Set(setting::Paths, paths);
}

Job<Paths> DatabaseCheck::ThoseThere(Paths paths) {
  std::vector<std::pair<int, Job<std::optional<bool>>>> looks;
  for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) {
    if (paths(slot).isEmpty()) continue;
    const auto look = [folder = paths(slot)] { return QFileInfo(folder).isDir(); };
    looks.emplace_back(slot, disks_.Look(paths(slot), look));
  }
  Paths present;
  for (auto& [slot, look] : looks) {
    const std::optional<bool> there = co_await std::move(look);
    if (there.value_or(false)) present.Set(slot, paths(slot));
  }
  co_return present;
}

Job<std::optional<QString>> DatabaseCheck::OlderFile(QString infoFolder) {
  std::optional<QString> older;
  const auto list = [infoFolder] { return FirstFileOfOlderForm(infoFolder); };
  try {
    older = co_await disks_.Look(infoFolder, list, Disks::Patience::Person, kListLimit);
  } catch (...) {
    basHandleError(QStringLiteral(" Main"),
                   QStringLiteral("The folder of the track info files could not be looked through."));
  }
  co_return older;
}

Job<> DatabaseCheck::TellOlder(QString infoFolder, QString file) {
  Prompt message;
  message.text =
      facts_.title +
      QStringLiteral(
          " Has Detected that You Have a Pre Version 1.1.4 Of The Program Installed.\r\n"
          "The File %1 In The Folder %2 Is No Track Info File Of This Version ( .kif ) !\r\n"
          "This Data Base Needs To Be Converted Before It Can Be Used. Nothing In It Was Changed.\r\n"
          "If The File Does Not Belong There, Please Move It Away And Start Again.")
          .arg(file, infoFolder);
  message.icon = PromptIcon::Exclamation;
  co_await prompter_.Ask(message);
}

Job<bool> DatabaseCheck::SettingsWillDo() {
  const QString why = settings_.WhyUnreadable();
  if (why.isEmpty()) co_return true;
  Prompt question;
  question.text = QStringLiteral(
                      "The Settings File %1 Cannot Be Read !\r\n%2\r\n"
                      "Without It %3 Does Not Know Where Its Data Base Is.\r\n"
                      "Start As For The First Time ? (The File Is Kept Under Another Name)")
                      .arg(settings_.FilePath(), why, facts_.title);
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Critical;
  NoteInLog(QStringLiteral("The settings file %1 cannot be read: %2").arg(settings_.FilePath(), why));
  const Answer answer = co_await prompter_.Ask(question);
  co_return answer == Answer::Yes;
}

Job<> DatabaseCheck::TellUnwritable() {
  // One that cannot be read is out of the way before it is written.
  if (!settings_.WhyUnreadable().isEmpty()) co_return;
  QString why = QStringLiteral("The Disk Does Not Answer");
  const QString file = settings_.FilePath();
  const auto attempt = [file] {
    SettingsStore::TryToWrite(file);
    return true;
  };
  try {
    const std::optional<bool> written = co_await disks_.Look(file, attempt);
    if (written) co_return;
  } catch (const std::exception& failure) {
    why = QString::fromUtf8(failure.what());
  }
  NoteInLog(QStringLiteral("The settings cannot be saved: ") + why);
  Prompt message;
  message.text =
      QStringLiteral("The Settings Cannot Be Saved !\r\n%1\r\nWhat Is Changed In This Run Will Be Lost.")
          .arg(why);
  message.icon = PromptIcon::Exclamation;
  co_await prompter_.Ask(message);
}

Job<std::optional<Paths>> DatabaseCheck::Run() {
  if (!co_await SettingsWillDo()) co_return std::nullopt;
  co_await TellUnwritable();
  std::optional<Paths> paths = ProgramSettings(settings_, facts_.title).Get(setting::Paths);
  if (!paths) paths = co_await install_(Paths());
  while (paths) {
    const Paths present = co_await ThoseThere(*paths);
    int missing = Paths::kFirst;
    while (missing <= Paths::kLast && !present(missing).isEmpty()) ++missing;
    if (missing > Paths::kLast) {
      const QString infoFolder = (*paths)(Paths::Info);
      const std::optional<QString> older = co_await OlderFile(infoFolder);
      if (older == QString()) break;
      if (older) {
        co_await TellOlder(infoFolder, *older);
        paths.reset();
        break;
      }
      missing = Paths::Info;
    }
    paths = co_await AskFor(*paths, missing, present);
  }
  co_return paths;
}

Job<std::optional<Paths>> DatabaseCheck::AskFor(Paths paths, int missing, Paths present) {
  Prompt question;
  question.text =
      QStringLiteral("Cannot Find path ") + paths(missing) + QStringLiteral(" Run Install Again ?");
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Information;
  const Answer answer = co_await prompter_.Ask(question);
  std::optional<Paths> next;
  if (answer == Answer::Yes) {
    next = co_await install_(present);
    co_return next;
  }
  const Repair repair = co_await RepairPath(&paths, missing);
  if (repair == Repair::Done) next = paths;
  co_return next;
}

Job<DatabaseCheck::Repair> DatabaseCheck::RepairPath(Paths* paths, int slot) {
  for (;;) {
    const QString text = QStringLiteral("The Folder Path ") + (*paths)(slot) +
                         QStringLiteral(" Cannot Be Located !\r\nPlease Enter The Path To This Folder");
    const QString initial = (*paths)(slot);
    const QString entered = co_await prompter_.AskText(QStringLiteral("Path error"), text, initial);
    const QString path = entered.trimmed();
    if (!path.isEmpty()) {
      Prompt refusal;
      refusal.text = Paths::WhyNotKept(path);
      refusal.icon = PromptIcon::Exclamation;
      if (refusal.text.isEmpty()) {
        // Kept, a wrong folder would end every start from now on.
        std::optional<QString> older;
        if (slot == Paths::Info) older = co_await OlderFile(path);
        if (older && !older->isEmpty()) {
          co_await TellOlder(path, *older);
          continue;
        }
        paths->Set(slot, path);
        Save(*paths);
        co_return Repair::Done;
      }
      co_await prompter_.Ask(refusal);
      continue;
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
