#include "playlists/RequestedTracks.h"

#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QFile>
#include <QFileInfo>

namespace kelvo {

RequestedTracks::RequestedTracks(const PlaylistServices& services) : services_(services) {
  services_.catalogue.Listen(
      this,
      [this](const TrackRemoved& removed) {
        for (int row = rows_.Count() - 1; row >= 0; --row) {
          const Mref track = removed.Renumbered(rows_[row].track);
          if (track == Mref::None) {
            rows_.Remove(row);
          } else if (track != rows_[row].track) {
            rows_.Alter(row, [track](RequestedTrack& each) { each.track = track; });
          }
        }
      },
      [this](const CatalogueReplaced&) { rows_.TakeAll(); });
}

QString RequestedTracks::Folder() const {
  return services_.paths(Paths::Playlists) + QLatin1Char('/') + kMostRequested;
}

void RequestedTracks::Say(const QString& words) {
  words_ = words;
  Q_EMIT Changed();
}

Job<> RequestedTracks::Compile() {
  const auto percent = [this](int done) {
    Say(QStringLiteral("Compiling Request List (") + Format0(done) + QStringLiteral("%)"));
  };
  percent(0);
  const auto look = [folder = Folder()] {
    return QFileInfo(folder).isDir() ? ReadPlaylist(folder) : PlaylistFolder();
  };
  std::vector<RequestedTrack> rows;
  try {
    const std::optional<PlaylistFolder> found = co_await services_.disks.Look(Folder(), look);
    percent(50);
    std::vector<LinkQuestion> links;
    for (const PlaylistEntry& entry : found ? found->entries : std::vector<PlaylistEntry>()) {
      if (!entry.link) continue;
      // Its whole name is the track's: there is no number in front.
      const QString name = BaseName(entry.file);
      links.push_back({entry.link->targetPath, name});
      rows.push_back({entry.file, name, entry.link->arguments, entry.link->targetPath});
    }
    const std::vector<ResolvedLink> resolved =
        co_await ResolveLinks(services_.loop, services_.disks, services_.catalogue, {}, std::move(links));
    for (std::size_t place = 0; place < rows.size(); ++place) {
      rows[place].track = resolved[place].track;
      if (!resolved[place].path.isEmpty()) rows[place].path = resolved[place].path;
    }
    std::erase_if(rows, [](const RequestedTrack& row) { return row.track == Mref::None; });
  } catch (...) {
    basHandleError(QStringLiteral(" PlaySave requests"),
                   QStringLiteral("The requested tracks could not be read."));
  }
  if (rows.empty()) services_.prompter.Tell({QStringLiteral("Requests List Is Empty !"), {}});
  rows_.Replace(std::move(rows));
  Say({});
}

Job<> RequestedTracks::AddToQueue(std::vector<int> rows) {
  if (rows_.Count() == 0 || services_.queue->Closed()) co_return;
  if (rows.empty()) {
    services_.prompter.Tell({QStringLiteral("Nothing Was Selected To Add !"), {}});
    co_return;
  }
  PlaylistQueue::Load load;
  if (services_.queue->Count() > 0 && services_.queue->HoldsGroup()) {
    Prompt question;
    question.text = services_.queue->GroupQuestion(QStringLiteral("Can't"));
    question.buttons = Buttons::YesNo;
    question.icon = PromptIcon::Question;
    // By their files: tracks may get other numbers while it is asked.
    QStringList files;
    for (const int row : rows) files.append(rows_[row].file);
    const Answer answer = co_await services_.prompter.Ask(question);
    if (answer != Answer::Yes || services_.queue->Closed()) co_return;
    load.clearFirst = true;
    rows.clear();
    for (int row = 0; row < rows_.Count(); ++row) {
      if (files.contains(rows_[row].file)) rows.push_back(row);
    }
  }
  for (const int row : rows) {
    const RequestedTrack& each = rows_[row];
    if (!load.clearFirst && services_.queue->Holds(each.track)) continue;
    load.rows.push_back({.track = each.track,
                         .title = ProperCase(each.name),
                         .path = each.path,
                         .note = QStringLiteral("Tot-Req= ") + each.count});
  }
  if (!load.rows.empty() || load.clearFirst) services_.queue->Take(load);
}

Job<> RequestedTracks::Delete(std::vector<int> rows) {
  if (rows.empty()) co_return;
  QStringList paths;
  for (const int row : rows) paths.append(Folder() + QLatin1Char('/') + rows_[row].file);
  Prompt question;
  question.text = QStringLiteral("Delete Selected Entries ?");
  question.buttons = Buttons::OkCancel;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer != Answer::Ok) co_return;
  const auto look = [folder = Folder()] { return QFileInfo::exists(folder); };
  const std::optional<bool> there = co_await services_.disks.Look(Folder(), look);
  if (!there) co_return;
  const auto work = [paths, trash = services_.trash] {
    for (const QString& path : paths) {
      if (!trash(path)) QFile::remove(path);
    }
  };
  co_await services_.loop.Offload(EventLoop::Lane::Files, work);
  co_await Compile();
}

}  // namespace kelvo
