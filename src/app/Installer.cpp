#include "app/Installer.h"

#include "app/FolderChooser.h"
#include "console/DataManagerAccess.h"
#include "console/status/StatusTick.h"
#include "database/DatabaseSettings.h"
#include "database/GenreNames.h"
#include "platform/ChildProcess.h"
#include "platform/ErrorLog.h"
#include "platform/SystemFacts.h"
#include "platform/Words.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <filesystem>

namespace kelvo {
namespace {

constexpr SwitchSetting kDisclaim{{setting::kStartup, QLatin1StringView("Disclaim")}, false};
constexpr TextSetting kAppPath{{setting::kProgInfo, QLatin1StringView("AppPath")}};
constexpr TextSetting kVersion{{setting::kProgInfo, QLatin1StringView("Version")}};
constexpr TextSetting kInstallDate{{setting::kProgInfo, QLatin1StringView("InstallDate")}};
const QString kDemoName = QStringLiteral("demo");

/// `location` with the folder `name` in it, unless it is that folder.
QString Placed(const QString& location, const QString& name) {
  const QString clean = QDir::cleanPath(location);
  return QFileInfo(clean).fileName() == name ? clean : QDir(clean).filePath(name);
}

void MakeFolder(const QString& path) {
  std::error_code error;
  std::filesystem::create_directories(path.toStdString(), error);
  if (!error) return;
  throw Failure(
      QStringLiteral("Cannot create the folder %1: %2").arg(path, QString::fromStdString(error.message())),
      error.value(), path);
}

QString WhyNotOn(const QString& path) {
  const QString notKept = Paths::WhyNotKept(path);
  if (!notKept.isEmpty()) return notKept;
  QFileInfo there(path);
  while (!there.exists() && !there.isRoot()) there.setFile(there.path());
  if (!there.isDir()) return QStringLiteral("%1 is a file, not a folder !").arg(there.filePath());
  if (!there.isWritable()) return QStringLiteral("No permission to write in %1 !").arg(there.filePath());
  return {};
}

}  // namespace

Paths ApplyLocations(const Installer::Locations& locations, const QString& programFolder,
                     const Paths& present) {
  Paths paths;
  for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) {
    const bool utility = slot == Paths::Utility;
    const QString location = utility ? programFolder : locations[static_cast<std::size_t>(slot - 1)];
    const bool kept = !present(slot).isEmpty() && (utility || location == present(slot));
    paths.Set(slot, kept ? present(slot) : Placed(location, Paths::FolderName(slot)));
  }
  return paths;
}

QStringList SeedFolders(const Paths& paths) {
  QStringList folders;
  const auto add = [&](int slot, const QString& name) { folders.append(QDir(paths(slot)).filePath(name)); };
  for (int genre = 0; genre < kGenreCount; ++genre) add(Paths::Categories, GenreName(genre));
  add(Paths::Categories, kAllCategories);
  for (int number = 1; number <= 10; ++number)
    add(Paths::Artists, QStringLiteral("Artist-Band %1").arg(number));
  add(Paths::Artists, QStringLiteral("Pink Floyd"));
  add(Paths::Artists, kAllArtists);
  for (int number = 1; number <= 10; ++number) add(Paths::Albums, QStringLiteral("Album %1").arg(number));
  add(Paths::Albums, kAllAlbums);
  for (const QString& name : {QStringLiteral("Wedding Reception"), QStringLiteral("Stag Night"),
                              QStringLiteral("Hen Night"), QStringLiteral("Old Farts Gathering")}) {
    add(Paths::Playlists, name);
  }
  return folders;
}

QString WhyNotOn(const Paths& paths) {
  for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) {
    const QString why = WhyNotOn(paths(slot));
    if (!why.isEmpty())
      return QStringLiteral("The folder %1 cannot be made.\r\n%2").arg(Paths::FolderName(slot), why);
  }
  return {};
}

Installer::Installer(Services services, const Paths& present)
    : services_(std::move(services)), present_(present), demoLocation_(services_.programFolder) {
  for (int row = 0; row < kRows; ++row) {
    const QString& folder = present(row + 1);
    locations_[static_cast<std::size_t>(row)] = folder.isEmpty() ? services_.programFolder : folder;
  }
  reading_ = ReadFreeSpace();
}

Job<std::optional<Paths>> Installer::Run() {
  co_await ended_.Wait();
  // Out of the click that ended it: whoever waits takes the window away.
  co_await services_.loop.Yield();
  co_return made_;
}

QString Installer::Title() const {
  return services_.facts.title + QStringLiteral(" New Installation Settings");
}

QString Installer::Head() const {
  return services_.facts.title + QStringLiteral(" Will Create Directories On The Following Paths :");
}

void Installer::SetLocation(int row, const QString& path) {
  locations_[static_cast<std::size_t>(row)] = path;
  reading_ = ReadFreeSpace();
  Q_EMIT Changed();
}

void Installer::SetAllLocations(const QString& path) {
  locations_.fill(path);
  reading_ = ReadFreeSpace();
  Q_EMIT Changed();
}

QString Installer::DemoFolder() const {
  return Placed(demoLocation_, kDemoName);
}

void Installer::SetDemoLocation(const QString& path) {
  demoLocation_ = path;
  Q_EMIT Changed();
}

Job<> Installer::ReadFreeSpace() {
  const auto read = [locations = locations_] {
    QStringList texts;
    for (const QString& location : locations) texts.append(FreeSpaceText(FreeBytes(location)));
    return texts;
  };
  freeSpace_ = co_await services_.loop.Offload(EventLoop::Lane::Apart, read);
  Q_EMIT Changed();
}

void Installer::Install() {
  if (!Busy() && !ended_.IsSet()) work_ = Work(false);
}

void Installer::InstallDemo() {
  if (!Busy() && !ended_.IsSet() && OffersDemo()) work_ = Work(true);
}

void Installer::GiveUp() {
  if (stage_ == Stage::Waiting) ended_.Set(true);
  if (stage_ != Stage::Making) return;
  work_.Cancel();
  stage_ = Stage::Waiting;
  Show(0, 0, tr("Stopped. Nothing was saved; the next installation goes on from here."));
}

Job<> Installer::Work(bool demo) {
  stage_ = Stage::Making;
  Show(0, 0, tr("Looking at the folders"));
  try {
    const QString folder = DemoFolder();
    const Paths paths =
        demo ? Paths::Below(folder) : ApplyLocations(locations_, services_.programFolder, present_);
    const auto look = [paths] { return WhyNotOn(paths); };
    const QString why = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
    bool made = false;
    if (!why.isEmpty()) {
      co_await Refuse(why);
    } else if (demo) {
      made = co_await MakeDemo(folder);
    } else {
      made = co_await MakeTree(paths);
    }
    if (made && demo) KeepDemoWarning(folder);
    if (made && !services_.demoGenerator.isEmpty()) co_await MakeQuizSounds();
    if (made) co_await Finish(paths);
  } catch (...) {
    basHandleError(QStringLiteral(" instal"), tr("The database could not be set up. What was made stays; the "
                                                 "next installation goes on from here."));
  }
  stage_ = Stage::Waiting;
  Show(0, 0, {});
}

Job<bool> Installer::MakeTree(Paths paths) {
  const auto look = [paths] {
    QStringList missing;
    for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) {
      if (!QFileInfo(paths(slot)).isDir()) missing.append(paths(slot));
    }
    return missing;
  };
  QStringList folders = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
  if (!folders.isEmpty()) {
    // The last of them stays missing until all is seeded: a run that is stopped before is seeded by the next.
    const QString last = folders.takeLast();
    folders += SeedFolders(paths);
    folders += last;
  }
  const auto count = static_cast<int>(folders.size());
  for (int done = 0; done < count; ++done) {
    Show(done, count, folders[done]);
    const auto make = [folder = folders[done]] { MakeFolder(folder); };
    co_await services_.loop.Offload(EventLoop::Lane::Apart, make);
  }
  Show(count, count, {});
  co_return true;
}

Job<bool> Installer::MakeDemo(QString folder) {
  ChildCommand command;
  command.program = services_.demoGenerator;
  command.arguments = QStringList{QStringLiteral("--if-missing"), QStringLiteral("--folder"), folder};
  Show(0, 100, tr("Making the demo library"));
  const std::function<void(const QByteArray&)> onOutput = [this](const QByteArray& output) {
    ReadDemoProgress(output);
  };
  const ChildResult result = co_await RunChild(services_.loop, command, onOutput);
  if (result.started && !result.crashed && result.exitCode == 0) co_return true;
  QString why = result.error.isEmpty() ? QString::fromUtf8(result.errorOutput).trimmed() : result.error;
  if (why.isEmpty()) why = tr("its program has ended early");
  co_await Refuse(tr("The demo library was not made: %1").arg(why));
  co_return false;
}

Job<> Installer::MakeQuizSounds() {
  ChildCommand command;
  command.program = services_.demoGenerator;
  command.arguments = QStringList{QStringLiteral("--quiz-sounds"), services_.programFolder};
  Show(0, 0, tr("Making the sounds of the quiz"));
  const ChildResult result = co_await RunChild(services_.loop, command);
  if (!result.started || result.crashed || result.exitCode != 0) {
    NoteInLog(QStringLiteral("The first sounds of the quiz were not made: ") + result.error +
              QString::fromUtf8(result.errorOutput).trimmed());
  }
}

/// Lines such as " 45%  Neon Harbour - Lights on the Quay.mp3"; the last one counts.
void Installer::ReadDemoProgress(const QByteArray& output) {
  static const QRegularExpression line(QStringLiteral("^ *([0-9]+)%  (.*)$"),
                                       QRegularExpression::MultilineOption);
  QRegularExpressionMatchIterator each = line.globalMatch(QString::fromUtf8(output));
  while (each.hasNext()) {
    const QRegularExpressionMatch match = each.next();
    Show(match.captured(1).toInt(), 100, match.captured(2));
  }
}

Job<> Installer::Finish(Paths paths) {
  stage_ = Stage::Ending;
  Save(paths);
  Prompt closing;
  closing.text = QStringLiteral("Thank You ! ") + services_.facts.title +
                 QStringLiteral(
                     " Is Installed And Ready For Use.\r\n"
                     "New Music Comes In By The Library Menu Of The Console.");
  closing.icon = PromptIcon::Information;
  co_await services_.prompter.Ask(closing);
  made_ = paths;
  ended_.Set(true);
}

void Installer::Save(const Paths& paths) {
  const ProgramFacts& facts = services_.facts;
  const ProgramSettings settings(services_.settings, facts.title);
  settings.Set(setting::Paths, paths);
  settings.Set(kDisclaim, false);
  settings.Set(setting::DmanAccess, true);
  settings.Set(kAppPath, services_.programFolder);
  settings.Set(kVersion, QStringLiteral("%1,%2,%3").arg(facts.major).arg(facts.minor).arg(facts.revision));
  settings.Set(kInstallDate, services_.loop.Now().toString(QStringLiteral("dd/MM/yyyy")));
}

void Installer::KeepDemoWarning(const QString& folder) {
  const ProgramSettings settings(services_.settings, services_.facts.title);
  if (!settings.Get(setting::AudioWarningFilePath).isEmpty()) return;
  settings.Set(setting::AudioWarningFilePath, QDir(folder).filePath(QStringLiteral("ello.Mp3")));
}

Job<> Installer::Refuse(QString why) {
  Prompt message;
  message.text = why;
  message.icon = PromptIcon::Exclamation;
  co_await services_.prompter.Ask(message);
}

void Installer::Show(int value, int maximum, const QString& words) {
  progress_ = {value, maximum, words};
  Q_EMIT Changed();
}

}  // namespace kelvo
