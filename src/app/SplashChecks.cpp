#include "app/SplashChecks.h"

#include "audio/CMixer.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"
#include "platform/TextFile.h"
#include "platform/Words.h"

#include <QDir>
#include <QFileInfo>

namespace kelvo {

namespace {

void CopyUnlessThere(const QString& from, const QString& folder, const QString& name) {
  const QString to = QDir(folder).filePath(name);
  if (QFileInfo::exists(to)) return;
  ReplaceFile(to, ReadWholeFile(from));
}

}  // namespace

void SplashChecks::Say(const QString& line) const {
  if (OnStatus) OnStatus(line);
}

Job<> SplashChecks::Run() {
  Say(QStringLiteral("Platform ") + services_.platform.name + QStringLiteral(" : ") +
      services_.platform.details);
  co_await CheckDisplay();
  co_await CheckAudio();
  co_await PlaceSystemFiles();
}

Job<> SplashChecks::CheckDisplay() {
  const QString& title = services_.facts.title;
  const auto [width, height] = services_.display;
  if (width < 1280 || height < 1024) {
    // There is no display mode to change to here: what is left of the check is its words.
    Say(QStringLiteral("Your P.C. Cannot Display At The Optimum Resolution of 1280 x 1024!"));
    Say(QStringLiteral("To Get the full benefit of ") + title +
        QStringLiteral("'s display, your video card may require upgrading."));
  }
  if (width < 1024 || height < 768) {
    Prompt message;
    message.text = title + QStringLiteral(" Cannot Continue at The Current Display Settings !");
    message.icon = PromptIcon::Exclamation;
    co_await services_.prompter.Ask(message);
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
      services_.settings.GetSetting(services_.facts.title, QStringLiteral("Startup"),
                                    QStringLiteral("PFLDeviceName"), QStringLiteral("None"));
  Say(QString::number(names.size()) + QStringLiteral(" Sound Output Devices Installed: PFL Was Enabled. ") +
      (monitor == QStringLiteral("None") ? QStringLiteral("(Please Select PFL Device In Configuration)")
                                         : QStringLiteral(" Current PFL Device is ") + monitor));
}

Job<> SplashChecks::PlaceSystemFiles() {
  try {
    const auto place = [programFolder = services_.programFolder, jingles = services_.paths(Paths::Jingles)] {
      PlaceSystemMedia(programFolder, jingles);
      SeedRequestFiles(programFolder);
    };
    co_await services_.loop.Offload(EventLoop::Lane::Files, place);
  } catch (...) {
    basHandleError(QStringLiteral(" splsh"));
  }
}

void PlaceSystemMedia(const QString& programFolder, const QString& jinglesFolder) {
  const QDir program(programFolder);
  const QString mixers = program.filePath(QStringLiteral("Quiz Mixers"));
  const QString intros = program.filePath(QStringLiteral("Quiz Intros"));
  for (const QString& folder : {mixers, intros}) {
    if (!QDir().mkpath(folder))
      throw Failure(QStringLiteral("Cannot create the folder ") + folder, 0, folder);
  }
  const std::array prefixes{std::pair{QStringLiteral("KELVOMX-"), mixers},
                            std::pair{QStringLiteral("KELVOIN-"), intros},
                            std::pair{QStringLiteral("KELVOJG-"), jinglesFolder}};
  static const QStringList effects{QStringLiteral("QzCymbol.wav"), QStringLiteral("QzDrum.wav"),
                                   QStringLiteral("QzOink.WAV")};
  const QStringList files = program.entryList(QDir::Files);
  for (const QString& file : files) {
    const QString path = program.filePath(file);
    if (effects.contains(file, Qt::CaseInsensitive)) CopyUnlessThere(path, mixers, file);
    if (UpperExtension(file) != QStringLiteral("MP3")) continue;
    for (const auto& [prefix, folder] : prefixes) {
      if (file.startsWith(prefix)) CopyUnlessThere(path, folder, file.mid(prefix.size()));
    }
  }
}

void SeedRequestFiles(const QString& programFolder) {
  const QDir program(programFolder);
  for (const QString& name : {QStringLiteral("RequestFiles"), QStringLiteral("Info Bank")}) {
    if (!program.mkpath(name))
      throw Failure(QStringLiteral("Cannot create the folder ") + program.filePath(name));
  }
  const std::array lists{
      std::pair{QStringLiteral("NamesMale.txt"), QStringLiteral("Andy,Adam,Alan,Brian,Brad,Barry,Clive")},
      std::pair{QStringLiteral("NamesFem.txt"), QStringLiteral("Alice,Ann,Bonnie,Carol,Christine,Cathy")},
      std::pair{QStringLiteral("Messages.txt"),
                QStringLiteral("Happy Birthday,Happy Anniversary,Congratulations On New Baby")},
  };
  for (const auto& [name, entries] : lists) {
    const QString path = program.filePath(QStringLiteral("RequestFiles/") + name);
    if (!QFileInfo::exists(path)) TextFile(entries.split(QLatin1Char(','))).Write(path);
  }
}

}  // namespace kelvo
