#include "app/windows/EncodingLines.h"

#include "burning/windows/BurnWindow.h"
#include "console/Console.h"
#include "database/LinkResolver.h"
#include "database/PlaylistEntry.h"
#include "datamanager/DataManager.h"
#include "discs/DiscDrive.h"
#include "encoding/RetargetLinks.h"
#include "encoding/windows/EncoderWindow.h"
#include "platform/SystemFacts.h"

#include <QCoreApplication>
#include <QPointer>

#include <utility>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(WindowLines)
};

const QString kEncoder = QStringLiteral("Encoder");
const QString kBurner = QStringLiteral("Burner");

/// The tracks of a playlist whose files are there, in its order.
Job<QStringList> FilesOfPlaylist(Console& desk, QString folder) {
  const Console::Services& have = desk.GetServices();
  const auto read = [folder] {
    std::vector<LinkQuestion> questions;
    for (const PlaylistEntry& entry : ReadPlaylist(folder).entries) {
      if (entry.link) questions.push_back({entry.link->targetPath, entry.name.name});
    }
    return questions;
  };
  std::vector<LinkQuestion> questions = co_await have.loop.Offload(EventLoop::Lane::Apart, read);
  const std::vector<ResolvedLink> links = co_await ResolveLinks(
      have.loop, desk.SlowDisks(), have.catalogue, have.paths(Paths::Music), std::move(questions));
  QStringList files;
  for (const ResolvedLink& link : links) {
    if (!link.path.isEmpty()) files.append(link.path);
  }
  co_return files;
}

QStringList FilesOfQueue(Console& desk) {
  QStringList files;
  for (int index = 1; index <= desk.Queue().Count(); ++index) files.append(desk.Queue().Row(index).path);
  return files;
}

}  // namespace

/// The lists of both windows, once they are made, and what waits until then.
struct EncodingDoor::Rooms {
  QPointer<EncodeList> encoder;
  QPointer<BurnList> burner;
  QStringList toEncode;
  QStringList toBurn;
};

EncodingDoor::EncodingDoor(std::function<void(const QString& id)> open)
    : rooms_(std::make_shared<Rooms>()), open_(std::move(open)) {}

void EncodingDoor::Encode(const QStringList& files) const {
  if (rooms_->encoder) {
    rooms_->encoder->Take(files);
  } else {
    rooms_->toEncode = files;
  }
  open_(kEncoder);
}

void EncodingDoor::Burn(const QStringList& files) const {
  if (rooms_->burner) {
    rooms_->burner->Add(files);
  } else {
    rooms_->toBurn = files;
  }
  open_(kBurner);
}

std::vector<WindowLine> EncodingDoor::Lines(Console& desk, const WindowHost& host) const {
  WindowLine encoder{.id = kEncoder,
                     .startsGroup = true,
                     .words = Text::tr("E&ncode To Mp3..."),
                     .key = QStringLiteral("Ctrl+Shift+N"),
                     .guard = {.password = true},
                     .busyQuestion = Text::tr("Files Are Still Being Encoded !\r\nStop That And Quit ?"),
                     .place = QStringLiteral("Mp3")};
  WindowHost ownSection = host;
  ownSection.section = QStringLiteral("Mp3Startup");
  encoder.make = [&desk, host = ownSection, rooms = rooms_, place = encoder.place] {
    const Console::Services& have = desk.GetServices();
    EncodeList::Services services{.loop = have.loop,
                                  .prompter = have.prompter,
                                  .catalogue = have.catalogue,
                                  .paths = have.paths,
                                  .settings = desk.Settings(),
                                  .title = have.title};
    services.relink = [playlists = have.paths(Paths::Playlists)](const QString& from, const QString& to) {
      RetargetLinks(playlists, from, to);
    };
    auto made = std::make_unique<Hosted<EncoderWindow, EncodeList>>(host, place, std::move(services));
    rooms->encoder = &made->work;
    const QStringList waiting = std::exchange(rooms->toEncode, {});
    if (!waiting.isEmpty()) made->work.Take(waiting);
    return made;
  };
  WindowLine burner{.id = kBurner,
                    .words = Text::tr("Burn A Dis&c..."),
                    .key = QStringLiteral("Ctrl+B"),
                    .busyQuestion = Text::tr("A Disc Is Still Being Burnt !\r\nStop That And Quit ?"),
                    .place = QStringLiteral("Burn")};
  burner.make = [&desk, host, rooms = rooms_, place = burner.place] {
    const Console::Services& have = desk.GetServices();
    BurnList::Services services{.loop = have.loop,
                                .prompter = have.prompter,
                                .title = have.title,
                                .stagingFolder = CacheFolder() + QStringLiteral("/burn"),
                                .documents = have.documents,
                                .playlists = have.paths(Paths::Playlists)};
    services.queue = [&desk] { return FilesOfQueue(desk); };
    services.reader = [drives = SystemDrives()](const QString& device) -> ReadSectors {
      const std::shared_ptr<DiscDrive> drive = drives->Open(device, std::make_shared<DriveBeat>());
      return [drive](int first, std::span<std::int16_t> target) { drive->Read(first, target); };
    };
    services.playlist = [&desk](QString folder) { return FilesOfPlaylist(desk, std::move(folder)); };
    auto made = std::make_unique<Hosted<BurnWindow, BurnList>>(host, place, std::move(services));
    rooms->burner = &made->work;
    const QStringList waiting = std::exchange(rooms->toBurn, {});
    if (!waiting.isEmpty()) made->work.Add(waiting);
    BurnWindow& window = made->window;
    QObject::connect(&desk.Queue(), &PlayQueue::RowsChanged, &window,
                     [&work = made->work] { Q_EMIT work.Changed(); });
    return made;
  };
  return {std::move(encoder), std::move(burner)};
}

std::vector<ManagerTool> EncodingDoor::Tools(DataManager& manager) const {
  const auto whyOff = [&manager](const std::vector<Mref>&) {
    return manager.PickedFiles().isEmpty() ? Text::tr("No file is selected") : QString();
  };
  return {{.id = QStringLiteral("Command11"),
           .words = QStringLiteral("BURN CD"),
           .tooltip = Text::tr("Puts the selected files on the list of the burner"),
           .run = [&manager, door = *this](const std::vector<Mref>&) { door.Burn(manager.PickedFiles()); }},
          {.id = QStringLiteral("Mp3"),
           .words = QStringLiteral("ENCODE TO MP3"),
           .tooltip = Text::tr("Encodes the selected wave files"),
           .run = [&manager, door = *this](const std::vector<Mref>&) { door.Encode(manager.PickedFiles()); },
           .whyOff = whyOff}};
}

}  // namespace kelvo
