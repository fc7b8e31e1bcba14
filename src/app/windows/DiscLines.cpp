#include "app/windows/DiscLines.h"

#include "console/Console.h"
#include "discs/windows/CdPlayerWindow.h"
#include "discs/windows/RipperWindow.h"

#include <QCoreApplication>

#include <algorithm>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(WindowLines)
};

/// What is told when the ripper puts another form away; the CD player stays beside it.
QString PutAwayWords(const QString& form, const QString& words) {
  if (form == QLatin1StringView("frmCdPlayer")) return {};
  return QStringLiteral(
             "The Task you Are Currently Working on Needs to be closed !\r\nTo Resume working with ") +
         words + QStringLiteral(", Please Exit the Ripper and Re-Select !");
}

WindowLine RipperLine(Console& desk, const WindowHost& host, const std::shared_ptr<DriveShelf>& shelf,
                      const std::function<void(const QString& id)>& open) {
  WindowLine line{.id = WindowId::kCdRipper,
                  .startsGroup = true,
                  .words = Text::tr("CD &Ripper..."),
                  .key = QStringLiteral("Ctrl+Shift+C"),
                  .guard = {.password = true},
                  .putsAway = &PutAwayWords,
                  .childForm = true,
                  .busyQuestion = Text::tr("A CD Is Still Being Ripped !\r\nStop That And Quit ?"),
                  .place = QStringLiteral("CDR")};
  line.make = [&desk, host, shelf, place = line.place] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<RipperWindow, Ripper>>(
        host, place,
        Ripper::Services{.loop = have.loop,
                         .prompter = have.prompter,
                         .catalogue = have.catalogue,
                         .paths = have.paths,
                         .settings = desk.Settings(),
                         .title = have.title,
                         .iniPath = have.programFolder + QStringLiteral("/cdrip.ini"),
                         .shelf = shelf,
                         .writers = OwnWriters()});
  };
  line.takesDrop = [shelf, open, id = line.id](const QStringList& files) {
    const auto image = std::find_if(files.begin(), files.end(), IsDiscImage);
    if (image == files.end()) return false;
    shelf->AddImage(*image);
    open(id);
    return true;
  };
  return line;
}

WindowLine PlayerLine(Console& desk, const WindowHost& host, const std::shared_ptr<DriveShelf>& shelf) {
  WindowLine line{.id = QStringLiteral("CdPlayer"),
                  .menu = DeskMenu::Desk,
                  .words = Text::tr("CD Pla&yer..."),
                  .key = QStringLiteral("Ctrl+Shift+Y"),
                  .guard = {.catalogue = false},
                  .childForm = true};
  line.make = [&desk, host, shelf, place = line.place] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<CdPlayerWindow, CdPlayer>>(host, place,
                                                              CdPlayer::Services{.loop = have.loop,
                                                                                 .prompter = have.prompter,
                                                                                 .audio = have.audio,
                                                                                 .settings = desk.Settings(),
                                                                                 .title = have.title,
                                                                                 .shelf = shelf});
  };
  return line;
}

}  // namespace

std::vector<WindowLine> DiscLines(Console& desk, const WindowHost& host,
                                  const std::function<void(const QString& id)>& open) {
  const Console::Services& have = desk.GetServices();
  const auto shelf =
      std::make_shared<DriveShelf>(DriveShelf::Services{have.loop, have.prompter, SystemDrives()});
  desk.OthersOnAir = [shelf] { return shelf->OnAir && shelf->OnAir(); };
  return {RipperLine(desk, host, shelf, open), PlayerLine(desk, host, shelf)};
}

}  // namespace kelvo
