#include "app/windows/UnifyLines.h"

#include "console/Console.h"
#include "datamanager/windows/TapWindow.h"
#include "datamanager/windows/UnifyWindow.h"
#include "platform/SystemFacts.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(WindowLines)
};

/// A deck, the jingles or the monitor have the file. A deck that is being loaded may have any.
bool InUse(Console& desk, const QString& path) {
  const std::array decks{Deck::One, Deck::Two};
  const bool inDeck = std::any_of(decks.begin(), decks.end(), [&](Deck deck) {
    const DeckRecord& record = desk.Decks().Record(deck);
    return record.Loading || record.FilePath == path;
  });
  return inDeck || desk.Bites().FilePath() == path || desk.Pfl().FilePath() == path;
}

/// The monitor has a device for itself, apart from that of the programme.
bool HasMonitor(const Console& desk, const Monitor& monitor) {
  return monitor.Enabled() && !monitor.HeldBack() &&
         !desk.GetServices().audio.OutputNamed(monitor.Output()).isEmpty();
}

TapDevice DeviceForTaps(Console& desk) {
  const Monitor& monitor = desk.Pfl();
  TapDevice device;
  device.whyNot = [&desk, &monitor] {
    if (monitor.Shown()) return Text::tr("The monitor is open");
    if (HasMonitor(desk, monitor) || !desk.Plays()) return QString();
    return Text::tr("The desk is on air, and there is no second sound device for the track");
  };
  device.output = [&desk, &monitor] { return HasMonitor(desk, monitor) ? monitor.Output() : QString(); };
  return device;
}

WindowLine UnifyLine(Console& desk, const WindowHost& host) {
  WindowLine line{.id = WindowId::kUnifyVolume,
                  .words = Text::tr("Unif&y Volume..."),
                  .guard = {.password = true},
                  .busyQuestion = Text::tr("Volumes Are Still Being Unified !\r\nStop That And Quit ?"),
                  .place = QStringLiteral("Unify")};
  line.make = [&desk, host, place = line.place] {
    const Console::Services& have = desk.GetServices();
    VolumeUnify::Services services{
        .loop = have.loop,
        .disks = desk.SlowDisks(),
        .prompter = have.prompter,
        .settings = desk.Settings(),
        .files = std::make_shared<CatalogueGainFiles>(have.loop, have.catalogue, have.paths),
        .tool = GainTool(have.loop, GainTool::Find(have.programFolder)),
        .measuredFile = CacheFolder() + QStringLiteral("/gains.txt")};
    services.inUse = [&desk](const QString& path) { return InUse(desk, path); };
    return std::make_unique<Hosted<UnifyWindow, VolumeUnify>>(host, place, std::move(services));
  };
  return line;
}

WindowLine TapLine(Console& desk, const WindowHost& host) {
  WindowLine line{.id = WindowId::kCountBeats,
                  .words = Text::tr("Count &Beats..."),
                  .guard = {.password = true},
                  .onTrack = true,
                  .place = QStringLiteral("Taps")};
  line.make = [&desk, host, place = line.place] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<TapWindow, TapCounter>>(
        host, place,
        TapCounter::Services{.loop = have.loop,
                             .prompter = have.prompter,
                             .audio = have.audio,
                             .catalogue = have.catalogue,
                             .paths = have.paths,
                             .device = DeviceForTaps(desk)});
  };
  return line;
}

}  // namespace

std::vector<WindowLine> UnifyLines(Console& desk, const WindowHost& host) {
  std::vector<WindowLine> lines;
  lines.push_back(UnifyLine(desk, host));
  lines.push_back(TapLine(desk, host));
  return lines;
}

}  // namespace kelvo
