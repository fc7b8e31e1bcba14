#include "app/windows/WindowLines.h"

#include "app/windows/HostedWindow.h"
#include "console/Console.h"
#include "database/windows/JingleImportWindow.h"
#include "database/windows/ScanWindow.h"
#include "database/windows/TransferWindow.h"
#include "database/windows/UtilityWindow.h"
#include "datamanager/windows/SearchWindow.h"

#include <QCoreApplication>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(WindowLines)
};

/// What changes the tracks of the database: behind its password, and not while the desk is on air.
constexpr WindowGuard kUpkeep{.idleDesk = true, .password = true};

QString StopsMusic() {
  return Text::tr("Music Is Still Being Imported Or Transferred !\r\nStop That And Quit ?");
}

WindowLine ImportLine(Console& desk, QWidget& console) {
  const auto make = [&desk, &console] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<ScanWindow>>(console, ScanWindow::Services{.loop = have.loop,
                                                                              .prompter = have.prompter,
                                                                              .settings = have.settings,
                                                                              .catalogue = have.catalogue,
                                                                              .paths = have.paths,
                                                                              .title = have.title});
  };
  return {.id = QStringLiteral("Import"),
          .words = Text::tr("&Import Music..."),
          .guard = kUpkeep,
          .busyQuestion = StopsMusic(),
          .make = make};
}

WindowLine TransferLine(Console& desk, QWidget& console) {
  const auto make = [&desk, &console] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<TransferWindow>>(
        console, TransferWindow::Services{.loop = have.loop,
                                          .prompter = have.prompter,
                                          .settings = have.settings,
                                          .audio = have.audio,
                                          .catalogue = have.catalogue,
                                          .paths = have.paths,
                                          .defaults = desk.Settings().defaults,
                                          .title = have.title});
  };
  return {.id = QStringLiteral("Transfer"),
          .words = Text::tr("&Transfer To Database..."),
          .guard = kUpkeep,
          .busyQuestion = StopsMusic(),
          .make = make};
}

WindowLine UtilityLine(Console& desk, QWidget& console) {
  const auto make = [&desk, &console] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<UtilityWindow>>(console,
                                                   UtilityFolder::Services{.loop = have.loop,
                                                                           .settings = have.settings,
                                                                           .audio = have.audio,
                                                                           .catalogue = have.catalogue,
                                                                           .paths = have.paths,
                                                                           .title = have.title});
  };
  return {.id = QStringLiteral("Utility"),
          .words = Text::tr("&Utility Folder..."),
          .guard = kUpkeep,
          .make = make};
}

WindowLine JinglesLine(Console& desk, QWidget& console) {
  const auto make = [&desk, &console] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<JingleImportWindow>>(
        console, JingleImportWindow::Services{.loop = have.loop,
                                              .prompter = have.prompter,
                                              .settings = have.settings,
                                              .catalogue = have.catalogue,
                                              .paths = have.paths,
                                              .title = have.title});
  };
  return {.id = QStringLiteral("Jingles"),
          .words = Text::tr("Import &Jingles..."),
          .guard = {.password = true},
          .busyQuestion = StopsMusic(),
          .make = make};
}

WindowLine SearchLine(Console& desk, QWidget& console) {
  const auto make = [&desk, &console] {
    const Console::Services& have = desk.GetServices();
    auto made = std::make_unique<Hosted<SearchWindow>>(console,
                                                       SearchWindow::Services{.loop = have.loop,
                                                                              .prompter = have.prompter,
                                                                              .settings = have.settings,
                                                                              .catalogue = have.catalogue,
                                                                              .title = have.title},
                                                       &console);
    made->window.OnAdd = [&desk, adding = std::make_shared<JobList>()](std::vector<Mref> tracks) {
      adding->Add(desk.Queue().AddTracks(std::move(tracks), PlayQueue::Route::Search));
    };
    return made;
  };
  return {
      .id = WindowId::kTrackSearch, .startsGroup = true, .words = Text::tr("Track &Search..."), .make = make};
}

}  // namespace

std::vector<WindowLine> WindowLines(Console& desk, QWidget& console) {
  return {ImportLine(desk, console), TransferLine(desk, console), UtilityLine(desk, console),
          JinglesLine(desk, console), SearchLine(desk, console)};
}

}  // namespace kelvo
