#include "requests/Requests.h"

#include "database/PlaylistEntry.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"
#include "requests/RequestTally.h"

#include <QPointer>

namespace kelvo {

Requests::Requests(Services services)
    : services_(std::move(services)),
      lists_({.loop = services_.loop, .prompter = services_.prompter, .folder = services_.wordFolder}) {
  services_.catalogue.Listen(
      this,
      [this](const TrackRenamed& renamed) {
        if (renamed.pathBefore != path_) return;
        path_ = renamed.path;
        Q_EMIT Changed();
      },
      [this](const TrackRemoved& removed) {
        track_ = removed.Renumbered(track_);
        Q_EMIT Changed();
      },
      [this](const CatalogueReplaced&) { SetTrack(path_); });
}

void Requests::SetTrack(const QString& path) {
  path_ = path;
  track_ = services_.catalogue.Find(path);
  Q_EMIT Changed();
}

QString Requests::TrackName() const {
  return track_ == Mref::None ? QString() : ProperCase(services_.catalogue.TrackNames[track_]);
}

QString Requests::WhyNoAdd() const {
  if (track_ == Mref::None) return tr("No track is chosen: pick one in the library");
  return adding_.Running() ? tr("A request is being added") : QString();
}

void Requests::Add(const RequestWords& words) {
  // Silent where a field is empty: the caller is still on the line.
  if (!WhyNoAdd().isEmpty() || !words.Complete()) return;
  adding_ = RunAdd(words);
}

Job<> Requests::RunAdd(RequestWords words) {
  const QString path = path_;
  try {
    const PlayQueue::Requested requested = co_await services_.queue.AddRequest(track_, words.Text());
    if (requested.row == RowId::None) co_return;
    const int index = services_.queue.IndexOf(requested.row);
    if (index != 0) {
      words_ = tr("%1 : %2, row %3 of the queue")
                   .arg(services_.queue.Row(index).Text(CommentColumn), services_.queue.Row(index).title)
                   .arg(index);
    }
    const Mref track = services_.catalogue.Find(path);
    if (track != Mref::None) counting_.Add(Count(services_.catalogue.TrackNames[track], path));
    Q_EMIT Added();
  } catch (...) {
    basHandleError(QStringLiteral(" FrmRequest"), tr("The request could not be added to the queue."));
  }
  // The command is on again once this job has ended.
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

Job<> Requests::Count(QString name, QString path) {
  const QString folder = services_.paths(Paths::Playlists) + QLatin1Char('/') + kMostRequested;
  const auto work = [folder, name, path] { return CountRequest(folder, name, path); };
  try {
    static_cast<void>(co_await services_.loop.Offload(EventLoop::Lane::Files, work));
  } catch (...) {
    basHandleError(QStringLiteral(" FrmRequest count"),
                   tr("The request is in the queue, but it could not be counted: %1").arg(name));
  }
}

void Requests::AddToList(WordList list) {
  if (!editing_.Running()) editing_ = lists_.Add(list);
}

}  // namespace kelvo
