#include "app/DatabaseCheck.h"

#include "database/TrackInfo.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"

#include <QDir>
#include <QFileInfo>

namespace kelvo {
namespace {

const QString kStartup = QStringLiteral("Startup");
const QString kPathsKey = QStringLiteral("Paths");
const QString kNoPaths = QStringLiteral("NoPaths");

bool IsFolder(const QString& path) {
  return !path.isEmpty() && QFileInfo(path).isDir();
}

}  // namespace

DatabaseCheck::DatabaseCheck(EventLoop& loop, Prompter& prompter, SettingsStore& settings, ProgramFacts facts,
                             QString programFolder)
    : loop_(loop),
      prompter_(prompter),
      settings_(settings),
      facts_(std::move(facts)),
      programFolder_(std::move(programFolder)) {}

void DatabaseCheck::Save(const Paths& paths) {
  settings_.SaveSetting(facts_.title, kStartup, kPathsKey, paths.ToSetting());
}

Job<> DatabaseCheck::MakeTree(Paths paths) {
  const auto make = [paths] {
    const std::array reserved{std::pair{Paths::Categories, kAllCategories},
                              std::pair{Paths::Artists, kAllArtists}, std::pair{Paths::Albums, kAllAlbums}};
    for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) {
      if (!paths(slot).isEmpty() && !QDir().mkpath(paths(slot))) {
        throw Failure(QStringLiteral("Cannot create the folder ") + paths(slot), 0, paths(slot));
      }
    }
    for (const auto& [slot, name] : reserved) QDir().mkpath(QDir(paths(slot)).filePath(name));
  };
  co_await loop_.Offload(EventLoop::Lane::Files, make);
}

Job<std::optional<Paths>> DatabaseCheck::Run() {
  const QString stored = settings_.GetSetting(facts_.title, kStartup, kPathsKey, kNoPaths);
  std::optional<Paths> result;
  if (stored == kNoPaths) {
    const Paths fresh = Paths::Below(programFolder_);
    if (!co_await TryToMakeTree(fresh)) co_return result;
    Save(fresh);
    result = fresh;
    co_return result;
  }
  Paths paths = Paths::FromSetting(stored);
  for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) {
    if (IsFolder(paths(slot))) continue;
    Prompt question;
    question.text =
        QStringLiteral("Cannot Find path ") + paths(slot) + QStringLiteral(" Run Install Again ?");
    question.buttons = Buttons::YesNo;
    question.icon = PromptIcon::Information;
    const Answer answer = co_await prompter_.Ask(question);
    if (answer == Answer::Yes) {
      // A slot that was never filled gets its place beside the program's own data.
      for (int each = Paths::kFirst; each <= Paths::kLast; ++each) {
        if (paths(each).isEmpty()) paths.Set(each, Paths::Below(programFolder_)(each));
      }
      if (!co_await TryToMakeTree(paths)) co_return result;
      Save(paths);
      break;
    }
    const Repair repair = co_await RepairPath(&paths, slot);
    if (repair == Repair::GivenUp) co_return result;
    slot = Paths::kFirst - 1;
  }
  result = paths;
  co_return result;
}

Job<bool> DatabaseCheck::TryToMakeTree(Paths paths) {
  bool made = true;
  try {
    co_await MakeTree(paths);
  } catch (...) {
    basHandleError(QStringLiteral(" instal"));
    made = false;
  }
  co_return made;
}

Job<DatabaseCheck::Repair> DatabaseCheck::RepairPath(Paths* paths, int slot) {
  for (;;) {
    const QString text = QStringLiteral("The Folder Path ") + (*paths)(slot) +
                         QStringLiteral(" Cannot Be Located !\r\nPlease Enter The Path To This Folder");
    const QString initial = (*paths)(slot);
    const QString entered = co_await prompter_.AskText(QStringLiteral("Path error"), text, initial);
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
