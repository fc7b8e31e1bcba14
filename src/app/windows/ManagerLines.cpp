#include "app/windows/ManagerLines.h"

#include "app/windows/DeskOfManager.h"
#include "app/windows/DiscLines.h"
#include "console/Console.h"
#include "database/KeptTracks.h"
#include "datamanager/windows/DataManagerWindow.h"
#include "playlists/windows/PlaylistWindow.h"

#include <QCoreApplication>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(WindowLines)
};

using Picked = std::vector<Mref>;
using OpenWindow = std::function<void(const QString& id)>;

const QString kBrowseId = QStringLiteral("PlaylistBrowse");
const QString kSaveId = QStringLiteral("PlaylistSaveSelection");

/// The tracks that Playlist Manager was opened for, as they are called today.
class SavedSelection {
 public:
  explicit SavedSelection(Catalogue& catalogue) : catalogue_(catalogue) {}

  void Take(const Picked& picked) { tracks_ = std::make_unique<KeptTracks>(catalogue_, picked); }
  [[nodiscard]] std::vector<SaveRow> Rows() const {
    std::vector<SaveRow> rows;
    if (!tracks_) return rows;
    for (const Mref track : tracks_->All()) {
      if (track != Mref::None) rows.push_back({catalogue_.TrackNames[track], catalogue_.TrackPaths(track)});
    }
    return rows;
  }

 private:
  Catalogue& catalogue_;
  std::unique_ptr<KeptTracks> tracks_;
};

/// A tool that opens a window which changes the database: not while the desk is on air.
ManagerTool::WhyOff WhileIdle(Console& desk) {
  return [&desk](const Picked&) { return desk.Status().WhyBusy(); };
}

WindowLine PlaylistLine(const WindowHost& host, PlaylistMode mode,
                        const std::function<PlaylistServices()>& forPlaylists,
                        const std::shared_ptr<SavedSelection>& selection) {
  WindowLine line{.id = mode == PlaylistMode::Browse ? kBrowseId : kSaveId,
                  .childForm = true,
                  .busyQuestion = Text::tr("Playlists Are Still Being Worked On !\r\nStop That And Quit ?"),
                  .place = QStringLiteral("DPlaySave")};
  line.make = [host, mode, forPlaylists, selection, place = line.place] {
    return std::make_unique<Hosted<PlaylistWindow, PlaylistManager>>(
        host, place,
        PlaylistManager::Services{.playlists = forPlaylists(),
                                  .mode = mode,
                                  .rows = [selection] { return selection->Rows(); },
                                  .name = {}});
  };
  return line;
}

/// Without a selection it is there to look and to tidy up, with one to save that.
ManagerTool PlaylistTool(const OpenWindow& open, const std::shared_ptr<SavedSelection>& selection) {
  return {.id = QStringLiteral("Command30"),
          .words = QStringLiteral("Start Playlist Manager"),
          .tooltip =
              Text::tr("Saves the selected tracks as a playlist; without a selection, shows all playlists"),
          .run = [open, selection](const Picked& picked) {
            selection->Take(picked);
            open(picked.empty() ? kBrowseId : kSaveId);
          }};
}

/// The commands whose work is done in windows of their own.
std::vector<ManagerTool> ManagerTools(Console& desk, DataManager& manager, const OpenWindow& open) {
  return {
      {.id = QStringLiteral("Command13"),
       .words = manager.AddWords(),
       .tooltip = Text::tr("Brings the files that wait in the utility folder, or jingles, into the database"),
       .run =
           [&manager, open](const Picked&) {
             open(manager.List().Mode() == DispMode::Jingles ? WindowId::kJingles : WindowId::kTransfer);
           },
       .whyOff =
           [&manager, idle = WhileIdle(desk)](const Picked& picked) {
             return manager.List().Mode() == DispMode::Jingles ? QString() : idle(picked);
           }},
      {.id = QStringLiteral("Cmdimport"),
       .words = QStringLiteral("FILE IMPORT"),
       .tooltip = Text::tr("Looks for music on drives and brings it into the utility folder"),
       .run = [open](const Picked&) { open(WindowId::kImport); },
       .whyOff = WhileIdle(desk)},
      {.id = QStringLiteral("Command4"),
       .words = QStringLiteral("ISO CD RIPPER"),
       .tooltip = Text::tr("Rips the tracks of a CD, or of a disc image, into the utility folder"),
       .run = [open](const Picked&) { open(WindowId::kCdRipper); }},
      {.id = QStringLiteral("Command20"),
       .words = QStringLiteral("REPORTS"),
       .tooltip = Text::tr("Lists the database and what went on air, as text, CSV and PDF"),
       .run = [open](const Picked&) { open(WindowId::kReports); }},
  };
}

}  // namespace

std::vector<WindowLine> ManagerLines(Console& desk, const WindowHost& host,
                                     const std::function<PlaylistServices()>& forPlaylists,
                                     const OpenWindow& open, const std::shared_ptr<LibraryChanges>& changes,
                                     const std::vector<MoreManagerTools>& more) {
  const auto selection = std::make_shared<SavedSelection>(desk.Tracks());
  WindowLine line{.id = QStringLiteral("DataManager"),
                  .startsGroup = true,
                  .words = Text::tr("Data &Manager..."),
                  .key = QStringLiteral("Ctrl+D"),
                  .guard = {.password = true},
                  .busyQuestion = Text::tr("The Data Manager Is Still At Work !\r\nStop That And Quit ?"),
                  .place = QStringLiteral("Dman")};
  line.make = [&desk, host, open, changes, more, selection, place = line.place] {
    const Console::Services& have = desk.GetServices();
    DataManager::Services services{.loop = have.loop,
                                   .disks = desk.SlowDisks(),
                                   .prompter = have.prompter,
                                   .audio = have.audio,
                                   .catalogue = have.catalogue,
                                   .words = desk.Filter(),
                                   .paths = have.paths,
                                   .settings = desk.Settings(),
                                   .desk = std::make_shared<DeskOfManager>(desk),
                                   .changes = changes,
                                   .openTransfer = [open] { open(WindowId::kTransfer); },
                                   .tools = {}};
    services.tools = [&desk, open, more, selection](DataManager& manager) {
      std::vector<ManagerTool> tools = ManagerTools(desk, manager, open);
      tools.push_back(PlaylistTool(open, selection));
      for (const MoreManagerTools& each : more) {
        for (ManagerTool& tool : each(manager)) tools.push_back(std::move(tool));
      }
      return tools;
    };
    return std::make_unique<Hosted<DataManagerWindow, DataManager>>(host, place, std::move(services));
  };
  return {std::move(line), PlaylistLine(host, PlaylistMode::Browse, forPlaylists, selection),
          PlaylistLine(host, PlaylistMode::SaveSelection, forPlaylists, selection)};
}

}  // namespace kelvo
