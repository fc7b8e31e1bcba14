#include "app/windows/RequestLines.h"

#include "console/Console.h"
#include "requests/windows/RequestWindow.h"

#include <QCoreApplication>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(WindowLines)
};

}  // namespace

std::vector<WindowLine> RequestLines(Console& desk, const WindowHost& host) {
  WindowLine line{.id = WindowId::kRequest,
                  .words = Text::tr("Add As Re&quest..."),
                  .key = kRequestKey,
                  .onTrack = true,
                  .place = QStringLiteral("Request")};
  line.make = [&desk, host, place = line.place] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<RequestWindow, Requests>>(
        host, place,
        Requests::Services{.loop = have.loop,
                           .prompter = have.prompter,
                           .catalogue = have.catalogue,
                           .queue = desk.Queue(),
                           .paths = have.paths,
                           .wordFolder = have.programFolder + QStringLiteral("/RequestFiles")});
  };
  return {std::move(line)};
}

}  // namespace kelvo
