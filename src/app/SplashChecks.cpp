#include "app/SplashChecks.h"

#include "audio/CMixer.h"
#include "audio/MonitorSettings.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"
#include "platform/TextFile.h"
#include "platform/Words.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace kelvo {

namespace {

const QString kTag = QStringLiteral(" splsh");
const QString kMixers = QStringLiteral("Quiz Mixers");
const QString kIntros = QStringLiteral("Quiz Intros");
const QString kRequestFiles = QStringLiteral("RequestFiles");

constexpr DisplayMode kOptimum{1280, 1024};
constexpr DisplayMode kMinimum{1024, 768};

bool Holds(const DisplayMode& display, const DisplayMode& wanted) {
  return display.width >= wanted.width && display.height >= wanted.height;
}

enum class Ability { Unknown, Can, Cannot };

Ability AbilityFor(const DisplayFacts& display, const DisplayMode& wanted) {
  const auto holds = [&wanted](const DisplayMode& mode) { return Holds(mode, wanted); };
  if (holds({display.width, display.height})) return Ability::Can;
  if (display.modes.empty()) return Ability::Unknown;
  return std::any_of(display.modes.begin(), display.modes.end(), holds) ? Ability::Can : Ability::Cannot;
}

/// Steps of which each is tried, whatever became of the ones before.
struct FileSteps {
  template <typename Work>
  void Do(Work&& work) {
    try {
      work();
    } catch (...) {
      failures.push_back(std::current_exception());
    }
  }
  std::vector<std::exception_ptr> failures;
};

void MakeFolder(const QString& path) {
  if (!QDir().mkpath(path)) throw Failure(QStringLiteral("Cannot create the folder ") + path, 0, path);
}

void CopyUnlessThere(const QString& from, const QString& folder, const QString& name) {
  const QString to = QDir(folder).filePath(name);
  if (QFileInfo::exists(to)) return;
  ReplaceFile(to, ReadWholeFile(from));
}

void PlaceSystemMedia(const QDir& program, const QString& jinglesFolder, FileSteps& steps) {
  const QString mixers = program.filePath(kMixers);
  const std::array prefixes{std::pair{QStringLiteral("KELVOMX-"), mixers},
                            std::pair{QStringLiteral("KELVOIN-"), program.filePath(kIntros)},
                            std::pair{QStringLiteral("KELVOJG-"), jinglesFolder}};
  static const QStringList effects{QStringLiteral("QzCymbol.wav"), QStringLiteral("QzDrum.wav"),
                                   QStringLiteral("QzOink.WAV")};
  const QStringList files = program.entryList(QDir::Files);
  for (const QString& file : files) {
    const QString path = program.filePath(file);
    if (effects.contains(file, Qt::CaseInsensitive)) {
      steps.Do([&] { CopyUnlessThere(path, mixers, file); });
    }
    if (UpperExtension(file) != QStringLiteral("MP3")) continue;
    for (const auto& [prefix, folder] : prefixes) {
      if (!file.startsWith(prefix)) continue;
      steps.Do(
          [&, prefix = prefix, folder = folder] { CopyUnlessThere(path, folder, file.mid(prefix.size())); });
    }
  }
}

void SeedRequestFiles(const QDir& program, FileSteps& steps) {
  const std::array lists{
      std::pair{QStringLiteral("NamesMale.txt"), QStringLiteral("Andy,Adam,Alan,Brian,Brad,Barry,Clive")},
      std::pair{QStringLiteral("NamesFem.txt"), QStringLiteral("Alice,Ann,Bonnie,Carol,Christine,Cathy")},
      std::pair{QStringLiteral("Messages.txt"),
                QStringLiteral("Happy Birthday,Happy Anniversary,Congratulations On New Baby")},
  };
  const QDir folder(program.filePath(kRequestFiles));
  for (const auto& [name, entries] : lists) {
    steps.Do([&, path = folder.filePath(name), entries = entries] {
      if (!QFileInfo::exists(path)) TextFile(entries.split(QLatin1Char(','))).Write(path);
    });
  }
}

void TryDataFolder(const QString& folder) {
  try {
    QDir().mkpath(folder);
    TryToReplaceFile(QDir(folder).filePath(QStringLiteral(".writable")));
  } catch (const Failure& failure) {
    throw Failure(
        QStringLiteral("The folder %1 cannot be written to. The error log, the request lists and the "
                       "quiz files have no place. %2")
            .arg(folder, QString::fromUtf8(failure.what())),
        failure.Number(), folder);
  }
}

/// Makes the folders beside the program's own files, puts the media that come with it where they
/// belong and seeds the request files, each only where no file of that name is. What fails leaves the rest to
/// be done and is in the result. Blocks for the disk.
std::vector<std::exception_ptr> PlaceFiles(const QString& programFolder, const QString& jinglesFolder) {
  const QDir program(programFolder);
  FileSteps steps;
  // One message in place of one for each file that is to lie there.
  steps.Do([&] { TryDataFolder(programFolder); });
  if (!steps.failures.empty()) return steps.failures;
  for (const QString& name :
       {kMixers, kIntros, QStringLiteral("Pop Quizes"), kRequestFiles, QStringLiteral("Info Bank")}) {
    steps.Do([&] { MakeFolder(program.filePath(name)); });
  }
  PlaceSystemMedia(program, jinglesFolder, steps);
  SeedRequestFiles(program, steps);
  return steps.failures;
}

}  // namespace

void SplashChecks::Say(const QString& line) const {
  if (OnStatus) OnStatus(line);
}

Job<> SplashChecks::Run() {
  Say(QStringLiteral("Platform ") + services_.platform.name + QStringLiteral(" : ") +
      services_.platform.details);
  co_await Step(CheckDisplay());
  co_await Step(CheckAudio());
  co_await Step(PlaceSystemFiles());
}

Job<> SplashChecks::Step(Job<> step) {
  try {
    co_await std::move(step);
  } catch (...) {
    basHandleError(kTag, QStringLiteral("A check at the start failed. The start goes on without it."));
  }
}

Job<> SplashChecks::CheckDisplay() {
  const QString& title = services_.facts.title;
  const DisplayFacts& display = services_.display;
  const DisplayMode now{display.width, display.height};
  // The mode of the display is the desktop's to change: what is left of the check is what it has to tell.
  if (AbilityFor(display, kOptimum) == Ability::Cannot) {
    Say(QStringLiteral("Your P.C. Cannot Display At The Optimum Resolution of 1280 x 1024!"));
    Say(QStringLiteral("To Get the full benefit of ") + title +
        QStringLiteral("'s display, your video card may require upgrading."));
  } else if (!Holds(now, kOptimum)) {
    Say(QStringLiteral("Your Current Screen Resolution Is Set To %1 x %2").arg(now.width).arg(now.height));
    Say(QStringLiteral("For Optimum Display, ") + title +
        QStringLiteral(" Requires A Resolution Of 1280 x 1024 !"));
  }
  if (!Holds(now, kMinimum)) {
    Prompt message;
    message.text = title + QStringLiteral(" Cannot Continue at The Current Display Settings !");
    message.icon = PromptIcon::Exclamation;
    co_await services_.prompter.Ask(message);
    if (AbilityFor(display, kMinimum) == Ability::Can) co_return;
    message.text =
        QStringLiteral(
            "Your Pc Cannot Display At The Minimum Display Resolution of 1024 x 768 Required By ") +
        title +
        QStringLiteral(" To Function Correctly !\r\nThe video card on this p.c. may require upgrading!");
    co_await services_.prompter.Ask(message);
  }
}

Job<> SplashChecks::CheckAudio() {
  co_await services_.audio.OutputsKnown();
  CMixer mixer(services_.audio);
  Prompt message;
  message.icon = PromptIcon::Exclamation;
  try {
    mixer.Create();
  } catch (const Failure& failure) {
    audioFailed_ = true;
    message.text = QStringLiteral("No Audio Mixers Were Detected! ") + QString::fromUtf8(failure.what()) +
                   QStringLiteral(" src: ") + failure.Source();
  }
  if (audioFailed_) {
    co_await services_.prompter.Ask(message);
    co_return;
  }
  QStringList names;
  for (int device = 0; device < mixer.numMixerDevs(); ++device) {
    mixer.SetMixerID(device);
    names.append(mixer.MixerName());
  }
  Say(QStringLiteral("Default Output Device is ") + names.first());
  pflEnabled_ = names.size() > 1;
  if (!pflEnabled_) {
    Say(QStringLiteral("Single Sound Output Device Installed : PFL Was Not Enabled !"));
    co_return;
  }
  const QString monitor =
      ProgramSettings(services_.settings, services_.facts.title).Get(setting::PFLDeviceName);
  Say(QString::number(names.size()) + QStringLiteral(" Sound Output Devices Installed: PFL Was Enabled. ") +
      (monitor == QStringLiteral("None") ? QStringLiteral("(Please Select PFL Device In Configuration)")
                                         : QStringLiteral(" Current PFL Device is ") + monitor));
}

Job<> SplashChecks::PlaceSystemFiles() {
  const auto place = [programFolder = services_.programFolder, jingles = services_.paths(Paths::Jingles)] {
    return PlaceFiles(programFolder, jingles);
  };
  const std::vector<std::exception_ptr> failures =
      co_await services_.loop.Offload(EventLoop::Lane::Files, place);
  for (const std::exception_ptr& failure : failures) basHandleError(kTag, failure);
}

}  // namespace kelvo
