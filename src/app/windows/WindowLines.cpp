#include "app/windows/WindowLines.h"

#include "app/windows/DeskOfGroupEdit.h"
#include "app/windows/DeskOfPlayEdit.h"
#include "app/windows/DiscLines.h"
#include "app/windows/EncodingLines.h"
#include "app/windows/HostedWindow.h"
#include "app/windows/InfoLines.h"
#include "app/windows/ManagerLines.h"
#include "app/windows/QueueOfPlaylists.h"
#include "app/windows/QuizLines.h"
#include "app/windows/ReportLines.h"
#include "app/windows/RequestLines.h"
#include "app/windows/ScopeWindow.h"
#include "app/windows/SessionLines.h"
#include "app/windows/UnifyLines.h"
#include "app/windows/UpkeepLines.h"
#include "config/windows/ConfigWindow.h"
#include "console/Console.h"
#include "console/windows/ConsoleWindow.h"
#include "console/windows/RecorderWindow.h"
#include "database/windows/JingleImportWindow.h"
#include "database/windows/ScanWindow.h"
#include "database/windows/TransferWindow.h"
#include "database/windows/UtilityWindow.h"
#include "datamanager/windows/SearchWindow.h"
#include "platform/SystemFacts.h"
#include "playlists/windows/GeneratorWindow.h"
#include "playlists/windows/GroupEditWindow.h"
#include "playlists/windows/PlayEditWindow.h"
#include "playlists/windows/PlaylistWindow.h"
#include "render/RenderQueue.h"
#include "render/windows/RenderWindow.h"

#include <QCoreApplication>

#include <algorithm>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(WindowLines)
};

using OpenWindow = std::function<void(const QString& id)>;

/// What changes the tracks of the database or the settings of the desk: behind the password, and not while
/// the desk is on air.
constexpr WindowGuard kUpkeep{.idleDesk = true, .password = true};

QString StopsMusic() {
  return Text::tr("Music Is Still Being Imported Or Transferred !\r\nStop That And Quit ?");
}

WindowLine ImportLine(Console& desk, const WindowHost& host) {
  WindowLine line{.id = WindowId::kImport,
                  .words = Text::tr("&Import Music..."),
                  .key = QStringLiteral("Ctrl+I"),
                  .guard = kUpkeep,
                  .busyQuestion = StopsMusic(),
                  .place = QStringLiteral("Scan")};
  line.make = [&desk, host, place = line.place] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<ScanWindow, ScanImport>>(host, place,
                                                            ScanImport::Services{.loop = have.loop,
                                                                                 .prompter = have.prompter,
                                                                                 .catalogue = have.catalogue,
                                                                                 .paths = have.paths,
                                                                                 .title = have.title});
  };
  return line;
}

WindowLine TransferLine(Console& desk, const WindowHost& host, const EncodingDoor& door) {
  WindowLine line{.id = WindowId::kTransfer,
                  .words = Text::tr("&Transfer To Database..."),
                  .key = QStringLiteral("Ctrl+Shift+D"),
                  .guard = kUpkeep,
                  .busyQuestion = StopsMusic(),
                  .place = QStringLiteral("Transfer")};
  line.make = [&desk, host, door, place = line.place] {
    const Console::Services& have = desk.GetServices();
    auto made =
        std::make_unique<Hosted<TransferWindow, Transfer>>(host, place,
                                                           Transfer::Services{.loop = have.loop,
                                                                              .prompter = have.prompter,
                                                                              .audio = have.audio,
                                                                              .catalogue = have.catalogue,
                                                                              .paths = have.paths,
                                                                              .settings = desk.Settings()});
    made->window.SetEncode([door](const QStringList& files) { door.Encode(files); });
    return made;
  };
  return line;
}

WindowLine UtilityLine(Console& desk, const WindowHost& host) {
  WindowLine line{.id = QStringLiteral("Utility"),
                  .words = Text::tr("&Utility Folder..."),
                  .key = QStringLiteral("Ctrl+Shift+U"),
                  .guard = kUpkeep,
                  .place = QStringLiteral("Util")};
  line.make = [&desk, host, place = line.place] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<UtilityWindow, UtilityFolder>>(
        host, place,
        UtilityFolder::Services{.loop = have.loop,
                                .settings = desk.Settings(),
                                .audio = have.audio,
                                .catalogue = have.catalogue,
                                .paths = have.paths});
  };
  return line;
}

WindowLine JinglesLine(Console& desk, const WindowHost& host, const EncodingDoor& door) {
  WindowLine line{.id = WindowId::kJingles,
                  .words = Text::tr("Import &Jingles..."),
                  .key = QStringLiteral("Ctrl+J"),
                  .guard = {.password = true},
                  .busyQuestion = StopsMusic(),
                  .place = QStringLiteral("Jingle")};
  line.make = [&desk, host, door, place = line.place] {
    const Console::Services& have = desk.GetServices();
    auto made = std::make_unique<Hosted<JingleImportWindow, JingleImport>>(
        host, place,
        JingleImport::Services{.loop = have.loop,
                               .prompter = have.prompter,
                               .catalogue = have.catalogue,
                               .paths = have.paths,
                               .title = have.title});
    made->window.SetEncode([door](const QStringList& files) { door.Encode(files); });
    return made;
  };
  return line;
}

WindowLine SearchLine(Console& desk, const WindowHost& host,
                      const std::function<void(const std::vector<Mref>&)>& request) {
  WindowLine line{.id = WindowId::kTrackSearch,
                  .startsGroup = true,
                  // The key is that of the console's own button.
                  .words = Text::tr("Track &Search...\tCtrl+Shift+F"),
                  .place = QStringLiteral("Search")};
  line.make = [&desk, host, request, place = line.place] {
    const Console::Services& have = desk.GetServices();
    auto made = std::make_unique<Hosted<SearchWindow, TrackSearch>>(
        host, place,
        TrackSearch::Services{.loop = have.loop, .prompter = have.prompter, .catalogue = have.catalogue});
    made->window.OnAdd = [&desk, adding = std::make_shared<JobList>()](std::vector<Mref> tracks) {
      adding->Add(desk.Queue().AddTracks(std::move(tracks), PlayQueue::Route::Search));
    };
    made->window.OnRequest = request;
    return made;
  };
  return line;
}

WindowLine ConfigLine(Console& desk, const WindowHost& host) {
  WindowLine line{.id = QStringLiteral("Configuration"),
                  .menu = DeskMenu::Desk,
                  .startsGroup = true,
                  .words = Text::tr("&Configuration..."),
                  .key = QStringLiteral("Ctrl+,"),
                  .guard = kUpkeep,
                  .place = QStringLiteral("Config")};
  line.make = [&desk, host, place = line.place] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<ConfigWindow, Configuration>>(
        host, place,
        Configuration::Services{.loop = have.loop,
                                .prompter = have.prompter,
                                .audio = have.audio,
                                .settings = desk.Settings(),
                                .programFolder = have.programFolder,
                                .onAir = [&desk] { return desk.Plays(); }});
  };
  return line;
}

WindowLine RecorderLine(Console& desk, const WindowHost& host) {
  WindowLine line{.id = QStringLiteral("Recorder"),
                  .menu = DeskMenu::Desk,
                  .words = Text::tr("R&ecorder..."),
                  .key = QStringLiteral("Ctrl+Shift+R"),
                  .guard = {.catalogue = false},
                  .place = QStringLiteral("Recorder")};
  line.make = [&desk, host, place = line.place] {
    return std::make_unique<Hosted<RecorderWindow, RecordingList>>(
        host, place,
        RecordingList::Services{
            .loop = host.loop, .disks = desk.SlowDisks(), .recorder = desk.AirRecorder()});
  };
  return line;
}

WindowLine ScopeLine(Console& desk, const WindowHost& host) {
  WindowLine line{.id = QStringLiteral("ScopeWindow"),
                  .menu = DeskMenu::View,
                  .words = Text::tr("Scope &window"),
                  .key = QStringLiteral("Ctrl+Shift+W"),
                  .guard = {.catalogue = false},
                  .place = QStringLiteral("Scope")};
  line.make = [&desk, host, place = line.place] {
    return std::make_unique<Hosted<ScopeWindow, ScopeOfDesk>>(
        host, place, ScopeOfDesk::Services{.scope = desk.Programme().scope});
  };
  return line;
}

PlaylistServices ForPlaylists(Console& desk) {
  const Console::Services& have = desk.GetServices();
  PlaylistServices services{.loop = have.loop,
                            .disks = desk.SlowDisks(),
                            .prompter = have.prompter,
                            .catalogue = have.catalogue,
                            .paths = have.paths,
                            .settings = desk.Settings(),
                            .queue = std::make_shared<QueueOfPlaylists>(desk.Queue(), desk.State()),
                            .dmanAccess = desk.ManagerAccess().Free()};
  services.overlaps = [&desk](const std::vector<TrackPlaySettings>& tracks) {
    AutoSettings now;
    now.AutoDelta = desk.Automatic().SldDelta();
    return PlannedOverlaps(desk.Automatic().Mode(), tracks, now);
  };
  return services;
}

WindowLine PlaylistLine(Console& desk, const WindowHost& host, PlaylistMode mode, const OpenWindow& open) {
  const bool load = mode == PlaylistMode::Load;
  WindowLine line{.id = load ? WindowId::kPlaylistLoad : WindowId::kPlaylistSave,
                  .startsGroup = load,
                  .words = load ? Text::tr("L&oad Playlist...") : Text::tr("Sa&ve Playlist..."),
                  .key = load ? QStringLiteral("Ctrl+O") : QStringLiteral("Ctrl+S"),
                  .childForm = true,
                  .busyQuestion = Text::tr("Playlists Are Still Being Worked On !\r\nStop That And Quit ?"),
                  .place = QStringLiteral("PlaySave")};
  line.make = [&desk, host, mode, open, place = line.place] {
    auto made = std::make_unique<Hosted<PlaylistWindow, PlaylistManager>>(
        host, place, PlaylistManager::Services{.playlists = ForPlaylists(desk), .mode = mode});
    made->window.OnGenerate = [open] { open(WindowId::kGeneratePlaylist); };
    return made;
  };
  return line;
}

WindowLine GeneratorLine(Console& desk, const WindowHost& host) {
  WindowLine line{.id = WindowId::kGeneratePlaylist,
                  .words = Text::tr("&Generate Play List..."),
                  .key = QStringLiteral("Ctrl+Shift+G"),
                  .busyQuestion = Text::tr("A Play List Is Still Being Made !\r\nStop That And Quit ?"),
                  .place = QStringLiteral("PlistGen")};
  line.make = [&desk, host, place = line.place] {
    PlaylistGenerator::Services services{.playlists = ForPlaylists(desk)};
    services.played = [&desk](Nanoseconds within) { return desk.Played().Within(within); };
    if (desk.GetServices().seed) services.random = RandomSource(*desk.GetServices().seed);
    return std::make_unique<Hosted<GeneratorWindow, PlaylistGenerator>>(host, place, std::move(services));
  };
  return line;
}

WindowLine PlayEditLine(Console& desk, const WindowHost& host) {
  WindowLine line{.id = WindowId::kPlayEdit,
                  .words = Text::tr("Edit Track &Data..."),
                  .key = QStringLiteral("Ctrl+E"),
                  .guard = {.password = true},
                  .onTrack = true,
                  .childForm = true,
                  .place = QStringLiteral("PlayEdit")};
  line.make = [&desk, host, place = line.place] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<PlayEditWindow, PlayEditor>>(
        host, place,
        PlayEditor::Services{.loop = have.loop,
                             .disks = desk.SlowDisks(),
                             .prompter = have.prompter,
                             .audio = have.audio,
                             .catalogue = have.catalogue,
                             .paths = have.paths,
                             .settings = desk.Settings(),
                             .title = have.title,
                             .desk = std::make_shared<DeskOfPlayEdit>(desk),
                             .cacheFolder = CacheFolder() + QStringLiteral("/waves")});
  };
  return line;
}

WindowLine GroupEditLine(Console& desk, const WindowHost& host) {
  WindowLine line{.id = WindowId::kGroupEdit,
                  .words = Text::tr("Edit Group &Playlist..."),
                  .key = QStringLiteral("Ctrl+Shift+E"),
                  .guard = {.password = true},
                  .childForm = true,
                  .place = QStringLiteral("Spedit")};
  line.make = [&desk, host, place = line.place] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<GroupEditWindow, GroupEditor>>(
        host, place,
        GroupEditor::Services{.loop = have.loop,
                              .disks = desk.SlowDisks(),
                              .prompter = have.prompter,
                              .catalogue = have.catalogue,
                              .desk = std::make_shared<DeskOfGroupEdit>(desk)});
  };
  return line;
}

WindowLine RenderLine(Console& desk, const WindowHost& host) {
  WindowLine line{
      .id = QStringLiteral("Render"),
      .menu = DeskMenu::Desk,
      .startsGroup = true,
      .words = Text::tr("Re&nder To File..."),
      .key = QStringLiteral("Ctrl+Shift+M"),
      .busyQuestion = Text::tr("The Play Queue Is Still Being Rendered !\r\nStop That And Quit ?"),
      .place = QStringLiteral("Render")};
  line.make = [&desk, host, place = line.place] {
    const Console::Services& have = desk.GetServices();
    auto made = std::make_unique<Hosted<RenderWindow, Renderer>>(
        host, place,
        Renderer::Services{.loop = have.loop,
                           .prompter = have.prompter,
                           .settings = desk.Settings(),
                           .documents = have.documents,
                           .whyNot = [&desk] { return WhyNoRender(desk); },
                           .name = [&desk] { return NameOfQueue(desk); },
                           .order =
                               [&desk] {
                                 return RenderOrder{
                                     .desk = SetupOf(desk), .fill = CopyOfQueue(desk), .path = {}};
                               }});
    Renderer& work = made->work;
    QObject::connect(&desk.Queue(), &PlayQueue::RowsChanged, &work, [&work] { work.Propose(); });
    QObject::connect(&desk.Queue(), &PlayQueue::FactsChanged, &work, [&work] { work.Propose(); });
    QObject::connect(&desk.Automatic(), &AutoPlay::Changed, &work, [&work] { work.Propose(); });
    return made;
  };
  return line;
}

/// Playlists of other players that are dropped on the console come into the queue.
std::function<bool(const QStringList&)> TakesDroppedPlaylists(Console& desk) {
  struct Drop {
    PlaylistLoad load;
    Job<> job;
  };
  return
      [drop = std::make_shared<Drop>(Drop{PlaylistLoad(ForPlaylists(desk)), {}})](const QStringList& files) {
        const auto found = std::find_if(files.begin(), files.end(), PlaylistLoad::IsListFile);
        if (found == files.end()) return false;
        if (!drop->job.Running()) drop->job = drop->load.Import(*found);
        return true;
      };
}

std::vector<WindowLine> OtherLines(Console& desk, ConsoleWindow& console, const WindowHost& host,
                                   const OpenWindow& open, const EncodingDoor& door) {
  WindowLine load = PlaylistLine(desk, host, PlaylistMode::Load, open);
  load.takesDrop = TakesDroppedPlaylists(desk);
  return {
      ImportLine(desk, host),
      TransferLine(desk, host, door),
      UtilityLine(desk, host),
      JinglesLine(desk, host, door),
      SearchLine(desk, host, [&console](const std::vector<Mref>& tracks) { console.WantRequest(tracks); }),
      std::move(load),
      PlaylistLine(desk, host, PlaylistMode::SaveQueue, open),
      GeneratorLine(desk, host),
      PlayEditLine(desk, host),
      ConfigLine(desk, host),
      RecorderLine(desk, host),
      GroupEditLine(desk, host),
      RenderLine(desk, host),
      ScopeLine(desk, host)};
}

}  // namespace

std::vector<WindowLine> WindowLines(Console& desk, ConsoleWindow& console, const OpenWindow& open) {
  const Console::Services& have = desk.GetServices();
  const WindowHost host{
      .console = console, .loop = have.loop, .settings = have.settings, .title = have.title};
  const EncodingDoor door(open);
  std::vector<WindowLine> lines = OtherLines(desk, console, host, open, door);
  const auto add = [&lines](std::vector<WindowLine> more) {
    std::move(more.begin(), more.end(), std::back_inserter(lines));
  };
  const auto forPlaylists = [&desk] { return ForPlaylists(desk); };
  const auto unify = std::make_shared<UnifyParts>();
  const auto upkeep = std::make_shared<Upkeep>(desk);
  upkeep->edit = [&console](const QString& path) {
    Q_EMIT console.TrackWindowWanted(WindowId::kTrackEditor, path);
  };
  upkeep->encode = [door](const QString& path) { door.Encode({path}); };
  add(SessionLines(desk, host, forPlaylists, open));
  add(ManagerLines(desk, host, forPlaylists, open, upkeep->changes,
                   {[upkeep](DataManager& manager) { return UpkeepTools(manager, upkeep); },
                    [unify, open](DataManager& manager) { return UnifyTools(manager, unify, open); },
                    [door](DataManager& manager) { return door.Tools(manager); },
                    [host](DataManager& manager) { return std::vector{ProfileTool(host, manager)}; }}));
  lines.push_back(TrackEditorLine(desk, host, upkeep));
  add(UnifyLines(desk, host, unify));
  add(door.Lines(desk, host));
  add(DiscLines(desk, host, open));
  add(RequestLines(desk, host));
  add(ReportLines(desk, host, [&console](const QString& id, const QString& file) {
    Q_EMIT console.TrackWindowWanted(id, file);
  }));
  add(QuizLines(desk, host, open));
  add(InfoLines(desk, host, open));
  return lines;
}

}  // namespace kelvo
