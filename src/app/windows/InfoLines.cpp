#include "app/windows/InfoLines.h"

#include "app/windows/KeysWindow.h"
#include "console/Console.h"
#include "console/windows/ConsoleWindow.h"
#include "help/windows/HelpWindow.h"
#include "info/ProfileKeeper.h"
#include "info/windows/InfoCentreWindow.h"
#include "info/windows/ProfileWindow.h"

#include <QCoreApplication>

#include <utility>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(InfoLines)
};

/// Who may not change the database reads what is written about it, and no more.
std::function<bool()> OnlyReads(Console& desk) {
  return [&desk] { return !desk.ManagerAccess().Free(); };
}

WindowLine InfoCentreLine(Console& desk, const WindowHost& host) {
  WindowLine line{.id = QStringLiteral("InfoCentre"),
                  .menu = DeskMenu::Desk,
                  .words = Text::tr("&Info Centre..."),
                  .key = QStringLiteral("Ctrl+Shift+I"),
                  .guard = {.catalogue = false},
                  .place = QStringLiteral("Infoc")};
  line.make = [&desk, host, place = line.place] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<InfoCentreWindow, InfoCentre>>(
        host, place,
        InfoCentre::Services{.loop = have.loop,
                             .disks = desk.SlowDisks(),
                             .prompter = have.prompter,
                             .root = have.programFolder + QStringLiteral("/Info Bank"),
                             .pictures = have.documents,
                             .readOnly = OnlyReads(desk)});
  };
  return line;
}

/// The Data Manager's windows are behind its password, so whoever opens one may edit.
WindowLine ProfileLine(Console& desk, const WindowHost& host, ProfileKind kind, bool fromManager,
                       const std::shared_ptr<ProfileKeeper>& keeper) {
  const ProfileWords words = WordsOf(kind);
  const QString first = fromManager ? QStringLiteral("D") : QString();
  WindowLine line{.id = first + words.id, .place = first + words.place};
  line.make = [&desk, host, kind, fromManager, keeper, place = line.place] {
    const Console::Services& have = desk.GetServices();
    Profile::Services services{.loop = have.loop,
                               .disks = desk.SlowDisks(),
                               .prompter = have.prompter,
                               .catalogue = have.catalogue,
                               .paths = have.paths,
                               .pictures = have.documents,
                               .kind = kind};
    if (!fromManager) services.readOnly = OnlyReads(desk);
    return std::make_unique<Hosted<ProfileWindow, Profile>>(host, place, std::move(services));
  };
  return line;
}

WindowLine HelpLine(const WindowHost& host, const std::function<void(const QString& id)>& open) {
  WindowLine line{.id = WindowId::kHelp,
                  .menu = DeskMenu::Help,
                  .words = Text::tr("&Manual"),
                  .key = QStringLiteral("F1"),
                  .guard = {.catalogue = false},
                  .place = QStringLiteral("Help")};
  line.make = [host, open, place = line.place] {
    return std::make_unique<Hosted<HelpWindow, Help>>(
        host, place, Help::Services{.manual = Manual::OfProgram(), .open = open});
  };
  return line;
}

WindowLine KeysLine(const WindowHost& host) {
  WindowLine line{.id = QStringLiteral("Keys"),
                  .menu = DeskMenu::Help,
                  .words = Text::tr("&Keys"),
                  .key = QStringLiteral("Shift+F1"),
                  .guard = {.catalogue = false},
                  .place = QStringLiteral("Keys")};
  line.make = [host, place = line.place] {
    return std::make_unique<Hosted<KeysWindow, KeysOfDesk>>(host, place, KeysOfDesk::Services{host.console});
  };
  return line;
}

}  // namespace

QString ProfileWindowId(ReferenceSet set, bool fromManager) {
  for (const ProfileKind kind : kProfileKinds) {
    const ProfileWords words = WordsOf(kind);
    if (words.set == set) return fromManager ? QLatin1Char('D') + words.id : words.id;
  }
  return {};
}

ManagerTool ProfileTool(const WindowHost& host, DataManager& manager) {
  const auto id = [&manager] {
    const std::optional<ReferenceSet>& set = manager.References().Set();
    return set ? ProfileWindowId(*set, true) : QString();
  };
  return {.id = QStringLiteral("Command29"),
          .words = QStringLiteral("Show Info"),
          .tooltip = Text::tr("Shows what is written about the chosen genre, artist or album"),
          .run =
              [id, &manager, &console = host.console](const std::vector<Mref>&) {
                if (auto* desk = qobject_cast<ConsoleWindow*>(&console))
                  Q_EMIT desk->TrackWindowWanted(id(), manager.References().Chosen());
              },
          .whyOff =
              [id, &manager](const std::vector<Mref>&) {
                if (id().isEmpty()) return Text::tr("Choose genres, artists or albums first");
                return manager.References().Chosen().isEmpty() ? Text::tr("No name is chosen") : QString();
              }};
}

std::vector<WindowLine> InfoLines(Console& desk, const WindowHost& host,
                                  const std::function<void(const QString& id)>& open) {
  const Console::Services& have = desk.GetServices();
  // It lives as long as the lines do: profiles follow their names whether a window was opened or not.
  const auto keeper = std::make_shared<ProfileKeeper>(ProfileKeeper::Services{
      .loop = have.loop, .prompter = have.prompter, .catalogue = have.catalogue, .paths = have.paths});
  std::vector<WindowLine> lines{InfoCentreLine(desk, host)};
  for (const bool fromManager : {false, true}) {
    for (const ProfileKind kind : kProfileKinds)
      lines.push_back(ProfileLine(desk, host, kind, fromManager, keeper));
  }
  lines.push_back(HelpLine(host, open));
  lines.push_back(KeysLine(host));
  return lines;
}

}  // namespace kelvo
