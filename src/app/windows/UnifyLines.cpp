#include "app/windows/UnifyLines.h"

#include "console/Console.h"
#include "datamanager/DataManager.h"
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

/// A deck, the jingles or a player beside the programme have the file. A deck that is being loaded may have
/// any.
bool InUse(Console& desk, const UnifyParts& parts, const QString& path) {
  const std::array decks{Deck::One, Deck::Two};
  const bool inDeck = std::any_of(decks.begin(), decks.end(), [&](Deck deck) {
    const DeckRecord& record = desk.Decks().Record(deck);
    return record.Loading || record.FilePath == path;
  });
  if (inDeck || desk.Bites().FilePath() == path || desk.Pfl().FilePath() == path) return true;
  const bool tapped = parts.taps && parts.taps->Playing() && parts.taps->Path() == path;
  return tapped || (parts.preview && parts.preview->Playing() && parts.preview->File() == path);
}

TapDevice DeviceForTaps(Console& desk) {
  const Monitor& monitor = desk.Pfl();
  TapDevice device;
  device.whyNot = [&desk, &monitor] {
    if (monitor.Shown()) return Text::tr("The monitor is open");
    if (monitor.WhyNotApart().isEmpty() || !desk.Plays()) return QString();
    return Text::tr("The desk is on air, and there is no second sound device for the track");
  };
  // Without a device of its own it takes the programme's, while nobody else does.
  device.output = [&monitor] { return monitor.WhyNotApart().isEmpty() ? monitor.Output() : QString(); };
  return device;
}

WindowLine UnifyLine(Console& desk, const WindowHost& host, const UnifyPartsPtr& parts) {
  WindowLine line{.id = WindowId::kUnifyVolume,
                  .words = Text::tr("Unif&y Volume..."),
                  .guard = {.password = true},
                  .busyQuestion = Text::tr("Volumes Are Still Being Unified !\r\nStop That And Quit ?"),
                  .place = QStringLiteral("Unify")};
  line.make = [&desk, host, parts, place = line.place] {
    const Console::Services& have = desk.GetServices();
    VolumeUnify::Services services{
        .loop = have.loop,
        .disks = desk.SlowDisks(),
        .prompter = have.prompter,
        .settings = desk.Settings(),
        .files = std::make_shared<CatalogueGainFiles>(have.loop, have.catalogue, have.paths),
        .tool = GainTool(have.loop, GainTool::Find(have.programFolder)),
        .measuredFile = CacheFolder() + QStringLiteral("/gains.txt")};
    services.inUse = [&desk, parts](const QString& path) { return InUse(desk, *parts, path); };
    auto made = std::make_unique<Hosted<UnifyWindow, VolumeUnify>>(host, place, std::move(services));
    parts->unify = &made->work;
    made->work.ListOnly(std::exchange(parts->files, {}));
    return made;
  };
  return line;
}

WindowLine TapLine(Console& desk, const WindowHost& host, const UnifyPartsPtr& parts) {
  WindowLine line{.id = WindowId::kCountBeats,
                  .words = Text::tr("Count &Beats..."),
                  .guard = {.password = true},
                  .onTrack = true,
                  .place = QStringLiteral("Taps")};
  line.make = [&desk, host, parts, place = line.place] {
    const Console::Services& have = desk.GetServices();
    auto made =
        std::make_unique<Hosted<TapWindow, TapCounter>>(host, place,
                                                        TapCounter::Services{.loop = have.loop,
                                                                             .prompter = have.prompter,
                                                                             .audio = have.audio,
                                                                             .catalogue = have.catalogue,
                                                                             .paths = have.paths,
                                                                             .device = DeviceForTaps(desk)});
    parts->taps = &made->work;
    made->work.Take(std::exchange(parts->track, {}));
    return made;
  };
  return line;
}

/// The files of the rows that the command is for: the picked ones, else all that are listed; none where the
/// whole library is.
QStringList FilesFor(DataManager& manager, const std::vector<Mref>& picked) {
  const TrackList& list = manager.List();
  if (list.Mode() == DispMode::Jingles) {
    const QStringList jingles = manager.PickedFiles();
    return jingles.isEmpty() ? manager.Tracks().SoundBitePaths : jingles;
  }
  QStringList files;
  if (picked.empty() && (list.Filtered() || !list.Words().isEmpty())) {
    for (int row = 0; row < list.Count(); ++row) files.append(manager.Tracks().TrackPaths(list.Track(row)));
  }
  for (const Mref track : picked) files.append(manager.Tracks().TrackPaths(track));
  files.removeDuplicates();
  return files;
}

/// The first of the selected rows, track or jingle; empty when none is.
QString FirstPicked(DataManager& manager, const std::vector<Mref>& picked) {
  return picked.empty() ? manager.PickedFiles().value(0) : manager.Tracks().TrackPaths(picked.front());
}

}  // namespace

std::vector<WindowLine> UnifyLines(Console& desk, const WindowHost& host, const UnifyPartsPtr& parts) {
  std::vector<WindowLine> lines;
  lines.push_back(UnifyLine(desk, host, parts));
  lines.push_back(TapLine(desk, host, parts));
  return lines;
}

std::vector<ManagerTool> UnifyTools(DataManager& manager, const UnifyPartsPtr& parts,
                                    const std::function<void(const QString& id)>& open) {
  using Picked = std::vector<Mref>;
  parts->preview = &manager.Preview();
  return {{.id = QStringLiteral("Command8"),
           .words = QStringLiteral("UNIFY VOLUME"),
           .tooltip = Text::tr("Brings the selected tracks, or all that are listed, to one loudness"),
           .run =
               [&manager, parts, open](const Picked& picked) {
                 const QStringList files = FilesFor(manager, picked);
                 parts->unify ? parts->unify->ListOnly(files) : void(parts->files = files);
                 open(WindowId::kUnifyVolume);
               }},
          {.id = QStringLiteral("Command25"),
           .words = QStringLiteral("Count Bpm"),
           .tooltip = Text::tr("Counts the beats of the selected track by your taps"),
           .run =
               [&manager, parts, open](const Picked& picked) {
                 const QString track = FirstPicked(manager, picked);
                 parts->taps ? parts->taps->Take(track) : void(parts->track = track);
                 open(WindowId::kCountBeats);
               },
           .whyOff =
               [&manager](const Picked& picked) {
                 return FirstPicked(manager, picked).isEmpty() ? Text::tr("No track is selected") : QString();
               }},
          {.id = QStringLiteral("Command26"),
           .words = QStringLiteral("Save To Track"),
           .tooltip = Text::tr("Stores the beats that were counted with the selected track"),
           .run =
               [&manager, parts](const Picked& picked) {
                 if (parts->taps) parts->taps->SaveTo(FirstPicked(manager, picked));
               },
           .whyOff =
               [parts](const Picked&) {
                 return parts->taps ? parts->taps->WhyNoSave() : Text::tr("No beats were counted yet");
               }}};
}

}  // namespace kelvo
