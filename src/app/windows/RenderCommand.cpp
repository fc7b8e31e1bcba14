#include "app/windows/RenderCommand.h"

#include "app/ProgramFacts.h"
#include "app/windows/QueueOfPlaylists.h"
#include "database/DatabaseSettings.h"
#include "platform/EndSignals.h"
#include "platform/QtEventLoop.h"
#include "platform/SystemFacts.h"
#include "platform/Words.h"
#include "playlists/PlaylistLoad.h"
#include "render/RenderRun.h"
#include "render/Renderer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTimer>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(RenderCommand)
};

constexpr int kNotUnderstood = 2;
constexpr int kPassedOver = 3;
constexpr auto kLookEvery = 250ms;
constexpr Nanoseconds kLongestLoad = 1h;

void Say(const QString& words) {
  std::fprintf(stderr, "kelvo: %s\n", qPrintable(words));
}

PlaylistServices ForPlaylists(RenderDesk& desk) {
  Console& console = desk.Desk();
  const Console::Services& have = console.GetServices();
  return {.loop = have.loop,
          .disks = console.SlowDisks(),
          .prompter = have.prompter,
          .catalogue = have.catalogue,
          .paths = have.paths,
          .settings = console.Settings(),
          .queue = std::make_shared<QueueOfPlaylists>(console.Queue(), console.State())};
}

/// The folder of a playlist of the store: by its path, by category and name, or by its name alone. Empty when
/// there is none.
QString FolderOf(const QString& list, const QString& root) {
  if (QDir::isAbsolutePath(list)) return QFileInfo(list).isDir() ? list : QString();
  if (QFileInfo(root + QLatin1Char('/') + list).isDir() && list.contains(QLatin1Char('/')))
    return root + QLatin1Char('/') + list;
  const QStringList categories = QDir(root).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
  for (const QString& category : categories) {
    const QString folder = root + QLatin1Char('/') + category + QLatin1Char('/') + list;
    if (QFileInfo(folder).isDir()) return folder;
  }
  return QFileInfo(list).isDir() ? QFileInfo(list).absoluteFilePath() : QString();
}

/// Brings the list into the queue as the Playlist Manager does. Why it could not; empty when it could.
QString Fill(RenderDesk& desk, const QString& list) {
  SimulatedEventLoop& loop = desk.Loop();
  Console& console = desk.Desk();
  bool unreadable = false;
  console.OnMustEnd = [&unreadable] { unreadable = true; };
  console.Activate();
  const auto loaded = [&] { return console.CatalogueLoaded() || unreadable; };
  if (!loop.RunUntil(loaded, kLongestLoad) || unreadable)
    return Text::tr("The database could not be loaded.");
  PlaylistLoad load(ForPlaylists(desk));
  Job<bool> loading;
  if (PlaylistLoad::IsListFile(list)) {
    loading = load.FromFile(QFileInfo(list).absoluteFilePath());
  } else {
    const QString folder = FolderOf(list, console.GetServices().paths(Paths::Playlists));
    if (folder.isEmpty()) return Text::tr("There is no playlist %1.").arg(list);
    loading = load.FromStore(folder, QFileInfo(folder).fileName());
  }
  loop.RunUntil([&loading] { return !loading.Running(); }, kLongestLoad);
  return console.Queue().Count() > 0 ? QString() : Text::tr("%1 holds no tracks of the database.").arg(list);
}

RenderOrder OrderOf(const QString& list, const QString& file, const SettingsText& text, const Paths& paths,
                    const ProgramSettings& settings, const QDateTime& now) {
  const bool jukebox = settings.Get(setting::AutoMode) == static_cast<int>(AutoMode::Jukebox);
  const PlaySettings play =
      settings.Get(setting::PlaySettings).value_or(PlaySettings::Of(ReadTrackDefaults(settings)));
  RenderOrder order{.desk = {.title = ProgramFacts().title,
                             .settings = text,
                             .paths = paths,
                             .programFolder = ProgramFolder(),
                             .start = now,
                             .mode = jukebox ? AutoMode::Jukebox : AutoMode::Kelvo,
                             .fadeSpeed = play.fadeSpeed,
                             .delta = play.delta},
                    .fill = [list](RenderDesk& desk) { return Fill(desk, list); },
                    .path = QFileInfo(file).absoluteFilePath()};
  order.kind = RenderKindOf(file).value_or(RenderFile::Kind::Wav);
  order.mp3Kbps = settings.Get(setting::RenderMp3Kbps);
  return order;
}

/// Runs the render on a thread of its own, and answers signals and shows the progress on this one.
void RunToItsEnd(RenderRun& run) {
  const bool terminal = ::isatty(STDERR_FILENO) != 0;
  QTimer beat;
  QObject::connect(&beat, &QTimer::timeout, [&] {
    std::fprintf(stderr, "\r\033[K%3d %%  %s  %s", static_cast<int>(run.Share() * 100),
                 qPrintable(HoursMinutesSeconds(static_cast<qint64>(run.Seconds()))),
                 qPrintable(run.Title()));
  });
  if (terminal) beat.start(kLookEvery);
  const EndSignals signals([&run] { run.Stop(); });
  std::jthread worker([&run] {
    run.Run();
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [] { QCoreApplication::quit(); }, Qt::QueuedConnection);
  });
  QCoreApplication::exec();
  worker.join();
  if (terminal) std::fprintf(stderr, "\r\033[K");
}

}  // namespace

int RenderFromCommandLine(const QString& list, const QString& file) {
  if (!RenderKindOf(file)) {
    Say(Text::tr("the name of %1 does not end with .wav, .flac or .mp3").arg(file));
    return kNotUnderstood;
  }
  QtEventLoop loop;
  const SettingsStore store(loop, SettingsStore::DefaultFilePath());
  SettingsStore copy(loop, store.Text());
  const ProgramSettings settings(copy, ProgramFacts().title);
  const std::optional<Paths> paths = settings.Get(setting::Paths);
  if (!paths) {
    Say(Text::tr("there is no database yet: start kelvo once"));
    return EXIT_FAILURE;
  }
  if (QFileInfo::exists(file)) {
    Say(Text::tr("%1 is there already").arg(file));
    return EXIT_FAILURE;
  }
  RenderRun run(OrderOf(list, file, store.Text(), *paths, settings, loop.Now()));
  RunToItsEnd(run);
  const RenderResult& result = run.Result();
  for (const QString& each : result.told) Say(each);
  for (const QString& each : result.skipped) Say(Text::tr("passed over : %1").arg(each));
  Say(RenderWords(result, file));
  if (result.end != RenderResult::End::Done) return EXIT_FAILURE;
  return result.skipped.isEmpty() && result.told.isEmpty() && !result.endless ? EXIT_SUCCESS : kPassedOver;
}

}  // namespace kelvo
