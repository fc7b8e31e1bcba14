#include "playlists/PlaylistLoad.h"

#include "database/GroupElement.h"
#include "database/KeptTracks.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"
#include "playlists/M3uList.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(PlaylistLoad)
};

constexpr qint64 kLargestList = qint64{8} << 20;
/// So many of the tracks that were not found are named in the message; the log has all.
constexpr int kNamed = 15;

QString KindOfFile() {
  return Text::tr("Playlists of other players (*.m3u8 *.m3u *.M3U8 *.M3U)");
}

}  // namespace

bool PlaylistLoad::IsListFile(const QString& path) {
  const QString extension = UpperExtension(path);
  return extension == QLatin1StringView("M3U") || extension == QLatin1StringView("M3U8");
}

Job<PlaylistLoad::Room> PlaylistLoad::AskForRoom(QString name, bool group) {
  const PlaylistQueue& queue = *services_.queue;
  if (queue.Count() == 0) co_return Room::Clear;
  Prompt question;
  question.icon = PromptIcon::Question;
  if (group) {
    question.text = name + QStringLiteral(" Is A Group Playlist\r\nThe Play Queue will be Cleared First !");
    question.buttons = Buttons::OkCancel;
  } else if (queue.HoldsGroup()) {
    question.text = queue.GroupQuestion(QStringLiteral("Cant"));
    question.buttons = Buttons::YesNo;
  } else {
    question.text = QStringLiteral("Clear The Play Queue First ?");
    question.buttons = Buttons::YesNoCancel;
  }
  const bool mustClear = question.buttons != Buttons::YesNoCancel;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer == Answer::Yes || answer == Answer::Ok) co_return Room::Clear;
  co_return answer == Answer::No && !mustClear ? Room::Append : Room::Refused;
}

Job<bool> PlaylistLoad::Take(PlaylistQueue::Load load, Room room, bool asked) {
  PlaylistQueue& queue = *services_.queue;
  // The desk went on meanwhile: rows may have come into a queue that was empty, or a group list began to run.
  if (!asked && queue.Count() > 0) {
    std::vector<Mref> tracks;
    for (const PlaylistQueue::Addition& row : load.rows) tracks.push_back(row.track);
    const KeptTracks kept(services_.catalogue, std::move(tracks));
    room = co_await AskForRoom(load.name, load.group);
    if (room == Room::Refused) co_return false;
    for (std::size_t row = 0; row < load.rows.size(); ++row) {
      load.rows[row].track = kept[row];
      load.rows[row].line = RenumberedLine(load.rows[row].line, kept[row]);
    }
  }
  if (Closed()) co_return false;
  load.clearFirst = room == Room::Clear;
  queue.Take(load);
  co_return true;
}

Job<bool> PlaylistLoad::SkipsMissing(QString name) {
  Prompt question;
  question.text = name + QStringLiteral(
                             " File Or Track Not Found\r\n"
                             "Do You Want To Cancel Playlist Load ? (Press No To Just Skip this Track)");
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  co_return answer != Answer::Yes;
}

void PlaylistLoad::TellSilent(int silent) {
  if (silent == 0) return;
  services_.prompter.Tell({Text::tr("Tracks Not Added, Their Disk Does Not Answer : %1").arg(silent), {}});
}

void PlaylistLoad::TellMissing(const QString& sum, const QString& from, const QStringList& missing) {
  if (missing.isEmpty()) return;
  NoteInLog(from + QStringLiteral(" : ") + missing.join(QStringLiteral(", ")));
  QStringList lines{sum};
  lines += missing.mid(0, kNamed);
  if (missing.size() > kNamed)
    lines.append(Text::tr("and %1 more (see the log)").arg(missing.size() - kNamed));
  services_.prompter.Tell({lines.join(QStringLiteral("\r\n")), {}});
}

bool PlaylistLoad::Closed() {
  if (!services_.queue->Closed()) return false;
  services_.prompter.Tell({Text::tr("The Play Queue Takes Nothing While A Group Playlist Runs !"), {}});
  return true;
}

Job<bool> PlaylistLoad::FromStore(QString folder, QString name) {
  if (Closed()) co_return false;
  const auto look = [folder] { return ReadPlaylist(folder); };
  const std::optional<PlaylistFolder> found = co_await services_.disks.Look(folder, look);
  if (!found) services_.prompter.Tell({Text::tr("Disk Does Not Answer : %1").arg(folder), {}});
  if (!found || found->entries.empty()) co_return false;

  const bool group = name.contains(kGroupSuffix, Qt::CaseInsensitive);
  const bool asked = services_.queue->Count() > 0;
  const Room room = co_await AskForRoom(name, group);
  if (room == Room::Refused) co_return false;

  std::vector<LinkQuestion> links;
  std::vector<PlaylistEntry> entries;
  for (const PlaylistEntry& entry : found->entries) {
    if (!entry.IsLinkFile()) continue;
    links.push_back({entry.link ? entry.link->targetPath : QString(), entry.name.name});
    entries.push_back(entry);
  }
  std::vector<ResolvedLink> resolved =
      co_await ResolveLinks(services_.loop, services_.disks, services_.catalogue, {}, links);
  std::size_t missing = 0;
  for (std::size_t place = 0; place < entries.size(); ++place) {
    if (resolved[place].state != LinkState::NotFound) continue;
    ++missing;
    const bool skips = co_await SkipsMissing(entries[place].name.name);
    if (!skips) co_return false;
  }
  // The tracks may have other numbers since the first question.
  if (missing > 0) {
    resolved = co_await ResolveLinks(services_.loop, services_.disks, services_.catalogue, {}, links);
  }

  PlaylistQueue::Load load{.name = name, .folder = folder, .group = group, .clearFirst = false, .rows = {}};
  int silent = 0;
  for (std::size_t place = 0; place < entries.size(); ++place) {
    const ResolvedLink& link = resolved[place];
    if (link.state == LinkState::NoAnswer) ++silent;
    if (link.state != LinkState::Found) continue;
    const PlaylistEntry& entry = entries[place];
    if (group && !entry.line) {
      services_.prompter.Tell({QStringLiteral("An Error Occured While Loading Playlist"), {}});
      co_return false;
    }
    load.rows.push_back({.track = link.track,
                         .title = ProperCase(entry.name.name),
                         .path = link.path,
                         .note = group        ? QStringLiteral("Grp")
                                 : entry.link ? entry.link->arguments
                                              : QString(),
                         .line = RenumberedLine(entry.line.value_or(QString()), link.track)});
  }
  const bool taken = co_await Take(std::move(load), room, asked);
  TellSilent(silent);
  co_return taken;
}

Job<> PlaylistLoad::Import(QString path) {
  try {
    (void)co_await FromFile(path);
  } catch (...) {
    basHandleError(QStringLiteral(" import"),
                   QStringLiteral("The playlist could not be imported: %1").arg(path));
  }
}

Job<bool> PlaylistLoad::FromPickedFile() {
  const std::optional<QString> path =
      co_await services_.prompter.PickFile(Text::tr("Import Playlist"), QString(), KindOfFile());
  if (!path) co_return false;
  const bool taken = co_await FromFile(*path);
  co_return taken;
}

Job<bool> PlaylistLoad::FromFile(QString path) {
  if (Closed()) co_return false;
  const QFileInfo file(path);
  const QString name = file.completeBaseName();
  const auto look = [path, folder = file.path()] {
    return M3uList::FromBytes(ReadWholeFile(path, kLargestList), folder);
  };
  const std::optional<M3uList> list = co_await services_.disks.Look(path, look);
  if (!list) services_.prompter.Tell({Text::tr("Disk Does Not Answer : %1").arg(path), {}});
  if (!list) co_return false;
  if (list->entries.empty()) {
    services_.prompter.Tell({Text::tr("%1 Holds No Tracks !").arg(file.fileName()), {}});
    co_return false;
  }
  const bool asked = services_.queue->Count() > 0;
  const Room room = co_await AskForRoom(name, false);
  if (room == Room::Refused) co_return false;

  std::vector<LinkQuestion> links;
  for (const M3uList::Entry& entry : list->entries) links.push_back({entry.path, entry.title});
  const std::vector<ResolvedLink> resolved =
      co_await ResolveLinks(services_.loop, services_.disks, services_.catalogue, {}, std::move(links));
  PlaylistQueue::Load load{.name = name, .folder = {}, .group = false, .clearFirst = false, .rows = {}};
  QStringList missing;
  int silent = 0;
  for (std::size_t place = 0; place < resolved.size(); ++place) {
    const ResolvedLink& link = resolved[place];
    if (link.state == LinkState::Found) {
      load.rows.push_back({.track = link.track,
                           .title = ProperCase(services_.catalogue.TrackNames[link.track]),
                           .path = link.path,
                           .note = QStringLiteral("Std")});
    } else if (link.state == LinkState::NoAnswer) {
      ++silent;
    } else {
      missing.append(list->entries[place].path);
    }
  }
  bool taken = false;
  const QString sum = Text::tr("%1 Of %2 Tracks Were Not Found In The Data Base :")
                          .arg(missing.size())
                          .arg(list->entries.size());
  if (!load.rows.empty()) taken = co_await Take(std::move(load), room, asked);
  TellSilent(silent);
  TellMissing(sum, path, missing);
  co_return taken;
}

Job<bool> PlaylistLoad::FromTracks(std::vector<Mref> tracks) {
  if (tracks.empty() || Closed()) co_return false;
  const Catalogue& catalogue = services_.catalogue;
  const KeptTracks kept(catalogue, std::move(tracks));
  const bool asked = services_.queue->Count() > 0;
  const Room room = co_await AskForRoom({}, false);
  if (room == Room::Refused) co_return false;
  QStringList paths;
  Turn turn(services_.loop);
  for (std::size_t place = 0; place < kept.Count(); ++place) {
    paths.append(catalogue.TrackPaths(kept[place]));
    co_await turn.Yield();
  }
  const std::function<bool(const QString&)> exists = [](const QString& path) {
    return QFileInfo::exists(path);
  };
  const Disks::Answers there = co_await services_.disks.LookAtEach(paths, exists);
  PlaylistQueue::Load load;
  std::vector<std::size_t> places;
  QStringList missing;
  int silent = 0;
  for (std::size_t place = 0; place < kept.Count(); ++place) {
    const Mref track = kept[place];
    if (track == Mref::None) continue;
    if (!there[place]) {
      ++silent;
    } else if (!*there[place]) {
      missing.append(paths[static_cast<qsizetype>(place)]);
    } else {
      load.rows.push_back({.track = track,
                           .title = ProperCase(catalogue.TrackNames[track]),
                           .path = catalogue.TrackPaths(track),
                           .note = QStringLiteral("Play Me")});
      places.push_back(place);
    }
    co_await turn.Yield();
  }
  // They may have other numbers since their row was made.
  for (std::size_t row = 0; row < places.size(); ++row) load.rows[row].track = kept[places[row]];
  bool taken = false;
  if (!load.rows.empty()) taken = co_await Take(std::move(load), room, asked);
  TellSilent(silent);
  TellMissing(Text::tr("%1 Of %2 Tracks Were Not Found :").arg(missing.size()).arg(kept.Count()),
              QStringLiteral("Generated list"), missing);
  co_return taken;
}

}  // namespace kelvo
