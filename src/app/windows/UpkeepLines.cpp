#include "app/windows/UpkeepLines.h"

#include "console/Console.h"
#include "datamanager/windows/TrackEditorWindow.h"
#include "ui/WhyOff.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <utility>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(WindowLines)
};

using Picked = std::vector<Mref>;

/// The chosen name of the chosen set.
struct ChosenName {
  ReferenceSet set = ReferenceSet::Genres;
  QString name;
};

ChosenName Chosen(DataManager& manager) {
  return {manager.References().Set().value_or(ReferenceSet::Genres), manager.References().Chosen()};
}

QString NoSet(DataManager& manager) {
  return WhyOff({{!manager.References().Set(), Text::tr("Choose genres, artists, albums or playlists")}});
}

/// A command on the chosen name.
ManagerTool NameTool(DataManager& manager, const std::shared_ptr<Upkeep>& upkeep, const ManagerTool& look,
                     void (References::*command)(ReferenceSet, const QString&), bool onTracks) {
  ManagerTool tool = look;
  tool.run = [&manager, upkeep, command](const Picked&) {
    const ChosenName chosen = Chosen(manager);
    ((*upkeep->references).*command)(chosen.set, chosen.name);
  };
  tool.whyOff = [&manager, upkeep, onTracks](const Picked&) {
    const ChosenName chosen = Chosen(manager);
    const QString why = upkeep->references->WhyNot(chosen.name);
    const QString set = NoSet(manager);
    return WhyOff(
        {{!set.isEmpty(), set},
         {!why.isEmpty(), why},
         {onTracks && chosen.set == ReferenceSet::Playlists, Text::tr("Tracks bear no such names")}});
  };
  return tool;
}

/// A command that gives the chosen name to the selected tracks, or takes it from them.
ManagerTool BulkTool(DataManager& manager, const std::shared_ptr<Upkeep>& upkeep, const ManagerTool& look,
                     void (References::*command)(ReferenceSet, const QString&, const Picked&)) {
  ManagerTool tool = look;
  tool.run = [&manager, upkeep, command](const Picked& picked) {
    const ChosenName chosen = Chosen(manager);
    ((*upkeep->references).*command)(chosen.set, chosen.name, picked);
  };
  tool.whyOff = [&manager, upkeep](const Picked& picked) {
    const ChosenName chosen = Chosen(manager);
    const QString set = NoSet(manager);
    return set.isEmpty() ? upkeep->references->WhyNoTracks(chosen.set, chosen.name, picked) : set;
  };
  return tool;
}

/// "Delete" below the names of the selected track.
ManagerTool OfTrackTool(DataManager& manager, const std::shared_ptr<Upkeep>& upkeep, const QString& id,
                        ReferenceSet set) {
  const auto track = [&manager] {
    const Mref shown = manager.References().Track();
    return shown == Mref::None ? Picked() : Picked{shown};
  };
  return {.id = id,
          .words = QStringLiteral("Delete"),
          .tooltip = Text::tr("Takes the name that is chosen here from the selected track"),
          .run =
              [&manager, upkeep, set, track](const Picked&) {
                upkeep->references->RemoveFrom(set, manager.References().ChosenOfTrack(set), track());
              },
          .whyOff =
              [&manager, upkeep, set, track](const Picked&) {
                return upkeep->references->WhyNoTracks(set, manager.References().ChosenOfTrack(set), track());
              }};
}

ManagerTool EditTool(DataManager& manager, const std::shared_ptr<Upkeep>& upkeep) {
  return {.id = QStringLiteral("Command5"),
          .words = QStringLiteral("Edit"),
          .tooltip = Text::tr("Edits, renames or deletes the selected file"),
          .run =
              [&manager, upkeep](const Picked& picked) {
                upkeep->edit(picked.empty() ? manager.PickedFiles().value(0)
                                            : manager.Tracks().TrackPaths(picked.front()));
              },
          .whyOff =
              [&manager](const Picked& picked) {
                const bool jingles = manager.List().Mode() == DispMode::Jingles;
                const bool none = jingles ? manager.PickedFiles().isEmpty() : picked.empty();
                return WhyOff({{none, Text::tr("No file is selected")}});
              }};
}

ManagerTool UndoTool(const std::shared_ptr<Upkeep>& upkeep) {
  return {
      .id = QStringLiteral("UndoChange"),
      .words = Text::tr("Undo"),
      .tooltip = Text::tr("Takes back the last rename, delete or change of names"),
      .run = [upkeep](const Picked&) { upkeep->changes->Undo(); },
      .whyOff =
          [upkeep](const Picked&) {
            const QString why = upkeep->changes->WhyNot();
            return WhyOff({{!why.isEmpty(), why},
                           {upkeep->changes->LastChange().isEmpty(), Text::tr("There is nothing to undo")}});
          }};
}

/// The bar of the Data Manager tells of changes.
void JoinProgress(DataManager& manager, const std::shared_ptr<Upkeep>& upkeep) {
  // The bar may be another tool's.
  const auto shown = std::make_shared<bool>(false);
  QObject::connect(upkeep->changes.get(), &LibraryChanges::Changed, &manager, [&manager, upkeep, shown] {
    const LibraryChanges& now = *upkeep->changes;
    const bool showed = std::exchange(*shown, now.Shows());
    if (now.Shows()) {
      manager.ShowProgress(
          {.words = now.Words(), .share = now.Share(), .stop = [upkeep] { upkeep->changes->Stop(); }});
    } else if (showed) {
      manager.EndProgress();
    } else {
      manager.ToolsChanged();
    }
  });
  QObject::connect(upkeep->references.get(), &References::Changed, &manager, [&manager, upkeep] {
    if (!upkeep->references->Busy()) manager.SetNotice(upkeep->references->Notice());
    manager.ToolsChanged();
  });
}

}  // namespace

Upkeep::Upkeep(Console& desk) {
  const Console::Services& have = desk.GetServices();
  changes = std::make_shared<LibraryChanges>(LibraryChanges::Services{
      .loop = have.loop, .prompter = have.prompter, .catalogue = have.catalogue, .paths = have.paths});
  references = std::make_shared<References>(References::Services{.loop = have.loop,
                                                                 .prompter = have.prompter,
                                                                 .catalogue = have.catalogue,
                                                                 .paths = have.paths,
                                                                 .title = have.title,
                                                                 .changes = changes});
}

QString WhyNotDeleted(Console& desk, const QString& path) {
  const QString name = QFileInfo(path).fileName();
  for (const Deck deck : kDecks) {
    const DeckRecord& record = desk.Decks().Record(deck);
    if (record.FilePath != path) continue;
    const int number = deck == Deck::One ? 1 : 2;
    if (record.State == DeckState::Playing)
      return Text::tr("%1 Is On Air On Deck %2 And Can Not Be Deleted Now").arg(name).arg(number);
    if (record.State == DeckState::Loaded)
      return Text::tr("%1 Is Loaded In Deck %2 And Can Not Be Deleted Now").arg(name).arg(number);
  }
  const bool sounds = desk.Bites().FilePath() == path && desk.Bites().Plays();
  return sounds ? Text::tr("%1 Is On Air And Can Not Be Deleted Now").arg(name) : QString();
}

WindowLine TrackEditorLine(Console& desk, const WindowHost& host, const std::shared_ptr<Upkeep>& upkeep) {
  WindowLine line{.id = WindowId::kTrackEditor,
                  .busyQuestion = Text::tr("The Data Manager Is Still At Work !\r\nStop That And Quit ?"),
                  .place = QStringLiteral("FileEd")};
  line.make = [&desk, host, upkeep, place = line.place] {
    const Console::Services& have = desk.GetServices();
    auto made = std::make_unique<Hosted<TrackEditorWindow, TrackEditor>>(
        host, place,
        TrackEditor::Services{
            .loop = have.loop,
            .disks = desk.SlowDisks(),
            .prompter = have.prompter,
            .catalogue = have.catalogue,
            .paths = have.paths,
            .changes = upkeep->changes,
            .whyNotDeleted = [&desk](const QString& path) { return WhyNotDeleted(desk, path); }});
    made->window.OnConvert = [upkeep, &work = made->work](const QString& path) {
      upkeep->encode(path);
      work.TakeConverted();
    };
    return made;
  };
  return line;
}

std::vector<ManagerTool> UpkeepTools(DataManager& manager, const std::shared_ptr<Upkeep>& upkeep) {
  JoinProgress(manager, upkeep);
  const auto tool = [](const char* id, const QString& words, const QString& tooltip) {
    return ManagerTool{.id = QString::fromLatin1(id), .words = words, .tooltip = tooltip, .run = {}};
  };
  ManagerTool fresh =
      tool("Command10", QStringLiteral("New"), Text::tr("Makes a new name in the chosen set"));
  fresh.run = [&manager, upkeep](const Picked&) { upkeep->references->New(Chosen(manager).set); };
  fresh.whyOff = [&manager, upkeep](const Picked&) {
    const QString set = NoSet(manager);
    return set.isEmpty() ? upkeep->references->WhyNot() : set;
  };
  return {
      EditTool(manager, upkeep),
      std::move(fresh),
      NameTool(manager, upkeep,
               tool("Command9", QStringLiteral("Rename"),
                    Text::tr("Gives the chosen name another spelling, in all tracks that bear it")),
               &References::Rename, false),
      NameTool(manager, upkeep,
               tool("Command2", QStringLiteral("Delete"),
                    Text::tr("Takes the chosen name from all tracks and out of the library")),
               &References::Delete, false),
      NameTool(manager, upkeep,
               tool("Command16", QStringLiteral("Delete"),
                    Text::tr("Takes the chosen name from all tracks that bear it; the name itself stays")),
               &References::RemoveFromAll, true),
      NameTool(manager, upkeep,
               tool("MergeReference", Text::tr("Merge Into..."),
                    Text::tr("The tracks bear another name in place of the chosen one, which goes")),
               &References::Merge, true),
      BulkTool(manager, upkeep,
               tool("Command12", QStringLiteral("Add Multiple"),
                    Text::tr("Gives the chosen name to the selected tracks")),
               &References::AddTo),
      BulkTool(manager, upkeep,
               tool("Command15", QStringLiteral("Delete Multiple"),
                    Text::tr("Takes the chosen name from the selected tracks")),
               &References::RemoveFrom),
      OfTrackTool(manager, upkeep, QStringLiteral("Command21"), ReferenceSet::Genres),
      OfTrackTool(manager, upkeep, QStringLiteral("Command23"), ReferenceSet::Albums),
      OfTrackTool(manager, upkeep, QStringLiteral("Command24"), ReferenceSet::Artists),
      UndoTool(upkeep),
  };
}

}  // namespace kelvo
